// Plugin records, endpoint data, type support and type codes.
#include <gtest/gtest.h>

#include "tests/platform_core/heap_faults.hpp"
#include "tests/types/fake_endpoints.hpp"
#include "tests/types/sample.hpp"

namespace {

TEST(Plugin, OfAKeyedTypeHasTheTypesOwnOperations) {
    TULVTypePlugin* plugin = QEL_KX_LogMessagePlugin_new();
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->serialize, QEL_KX_LogMessagePlugin_serialize);
    EXPECT_EQ(plugin->deserialize, QEL_KX_LogMessagePlugin_deserialize);
    EXPECT_EQ(plugin->instance_to_keyhash, QEL_KX_LogMessagePlugin_instance_to_keyhash);
    EXPECT_EQ(plugin->get_key, TULVTypePluginDefaultEndpointData_getKey);
    EXPECT_EQ(plugin->get_sample, TULVTypePluginDefaultEndpointData_getSample);
    EXPECT_EQ(plugin->get_key_kind(), TULV_USER_KEY);
    EXPECT_EQ(plugin->reserved, nullptr);
    EXPECT_EQ(plugin->typeCode, QEL_KX_LogMessage_get_typecode());
    EXPECT_EQ(plugin->pluginKind, 5640756U);
    EXPECT_EQ(plugin->version.major, 2);
    EXPECT_STREQ(plugin->typeName, "QEL::KX::LogMessage");
    QEL_KX_LogMessagePlugin_delete(plugin);
    QEL_KX_LogMessagePlugin_delete(nullptr);
}

/// Operations that every plugin has.
void expect_complete(const TULVTypePlugin& plugin) {
    EXPECT_TRUE(plugin.on_participant_attached && plugin.on_participant_detached &&
                plugin.on_endpoint_attached && plugin.on_endpoint_detached && plugin.copy_sample &&
                plugin.create_sample && plugin.destroy_sample && plugin.serialize &&
                plugin.deserialize && plugin.get_sample && plugin.return_sample &&
                plugin.get_serialized_sample_max_size && plugin.get_serialized_sample_min_size &&
                plugin.get_serialized_sample_size && plugin.get_key_kind && plugin.get_buffer &&
                plugin.return_buffer)
        << plugin.typeName;
}

/// How many of the ten operations on keys a plugin has.
int key_operations(const TULVTypePlugin& plugin) {
    return (plugin.instance_to_keyhash != nullptr) +
           (plugin.serialized_sample_to_keyhash != nullptr) + (plugin.get_key != nullptr) +
           (plugin.return_key != nullptr) + (plugin.get_serialized_key_max_size != nullptr) +
           (plugin.instance_to_key != nullptr) + (plugin.key_to_instance != nullptr) +
           (plugin.serialize_key != nullptr) + (plugin.deserialize_key != nullptr) +
           (plugin.deserialize_key_sample != nullptr);
}

TEST(Plugin, HasOperationsOnKeysExactlyIfTheTypeHasAKey) {
    const struct {
        TULVTypePlugin* (*make)();
        void (*remove)(TULVTypePlugin*);
        const char* name;
        bool keyed;
    } plugins[] = {
        {QEL_KX_HostAndAppIdPlugin_new, QEL_KX_HostAndAppIdPlugin_delete, "QEL::KX::HostAndAppId",
         true},
        {QEL_KX_LogMessagePlugin_new, QEL_KX_LogMessagePlugin_delete, "QEL::KX::LogMessage", true},
        {QEL_KX_ADMIN_StatePlugin_new, QEL_KX_ADMIN_StatePlugin_delete, "QEL::KX::ADMIN::State",
         true},
        {QEL_KX_ADMIN_CommandResponsePlugin_new, QEL_KX_ADMIN_CommandResponsePlugin_delete,
         "QEL::KX::ADMIN::CommandResponse", true},
        {QEL_KX_ADMIN_CommandRequestPlugin_new, QEL_KX_ADMIN_CommandRequestPlugin_delete,
         "QEL::KX::ADMIN::CommandRequest", false},
        {QEL_KX_ADMIN_CommandPlugin_new, QEL_KX_ADMIN_CommandPlugin_delete,
         "QEL::KX::ADMIN::Command", false},
        {QEL_KX_ADMIN_QELLoggerCategoryAndVerbosityPlugin_new,
         QEL_KX_ADMIN_QELLoggerCategoryAndVerbosityPlugin_delete,
         "QEL::KX::ADMIN::QELLoggerCategoryAndVerbosity", false},
    };
    for (const auto& expected : plugins) {
        TULVTypePlugin* plugin = expected.make();
        ASSERT_NE(plugin, nullptr);
        EXPECT_STREQ(plugin->typeName, expected.name);
        EXPECT_STREQ(plugin->typeCode->name, expected.name);
        expect_complete(*plugin);
        EXPECT_EQ(key_operations(*plugin), expected.keyed ? 10 : 0) << expected.name;
        EXPECT_EQ(plugin->get_key_kind(), expected.keyed ? TULV_USER_KEY : TULV_NO_KEY);
        expected.remove(plugin);
    }
}

TEST(EndpointData, OfAWriterKnowsTheLargestSampleAndLendsBuffersForIt) {
    TULVParticipantData participant =
        QEL_KX_LogMessagePlugin_on_participant_attached(nullptr, nullptr);
    const TULVEndpointInfo info{TULV_ENDPOINT_WRITER, 1, 1};
    TULVEndpointData endpoint = QEL_KX_LogMessagePlugin_on_endpoint_attached(participant, &info);
    ASSERT_NE(endpoint, nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMaxSizeSerializedSample(endpoint), 4696U);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMD5Stream(endpoint)->size, 48U);
    std::size_t size = 0;
    char* buffer = TULVTypePluginDefaultEndpointData_getBuffer(endpoint, &size);
    EXPECT_EQ(size, 4700U);
    TULVTypePluginDefaultEndpointData_returnBuffer(endpoint, buffer);

    void* sample = TULVTypePluginDefaultEndpointData_getSample(endpoint, nullptr);
    ASSERT_NE(sample, nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getSample(endpoint, nullptr), nullptr);
    QEL_KX_LogMessagePlugin_return_sample(endpoint, sample, nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getSample(endpoint, nullptr), sample);
    QEL_KX_LogMessagePlugin_on_endpoint_detached(endpoint);
    QEL_KX_LogMessagePlugin_on_participant_detached(participant);
}

TEST(EndpointData, OfAKeylessReaderHasNeitherKeysNorDigests) {
    const TULVEndpointInfo info{TULV_ENDPOINT_READER, 1, DDS_LENGTH_UNLIMITED};
    TULVEndpointData endpoint =
        QEL_KX_ADMIN_CommandRequestPlugin_on_endpoint_attached(nullptr, &info);
    ASSERT_NE(endpoint, nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMD5Stream(endpoint), nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getKey(endpoint, nullptr), nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMaxSizeSerializedSample(endpoint), 0U);
    QEL_KX_ADMIN_CommandRequestPlugin_on_endpoint_detached(endpoint);
    EXPECT_EQ(QEL_KX_ADMIN_CommandRequestPlugin_on_endpoint_attached(nullptr, nullptr), nullptr);
}

TEST(WithoutMemory, EndpointsAndPluginsAreNotMadeByHalves) {
    heap_faults::sweep([] {
        const TULVEndpointInfo info{TULV_ENDPOINT_WRITER, 1, 1};
        TULVEndpointData endpoint = QEL_KX_LogMessagePlugin_on_endpoint_attached(nullptr, &info);
        QEL_KX_LogMessagePlugin_on_endpoint_detached(endpoint);
        return endpoint != nullptr;
    });
    heap_faults::sweep([] {
        TULVTypePlugin* plugin = QEL_KX_ADMIN_StatePlugin_new();
        QEL_KX_ADMIN_StatePlugin_delete(plugin);
        return plugin != nullptr;
    });
    heap_faults::sweep([] {
        QELKeyHash hash{};
        const QEL_KX_HostAndAppId instance{1, 2};
        return QEL_KX_HostAndAppIdPlugin_instance_to_keyhash(nullptr, &hash, &instance) != 0;
    });
}

TEST(TypeSupport, RegistersACopyOfThePluginUnderAnyName) {
    const long before = heap_faults::live_blocks();
    DDS_DomainParticipant participant;
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_register_type(&participant, "some::name"),
              DDS_RETCODE_OK);
    EXPECT_EQ(participant.registered_name, "some::name");
    EXPECT_EQ(participant.plugin.typeName, QEL_KX_ADMIN_StateTypeSupport_get_type_name());
    EXPECT_EQ(heap_faults::live_blocks(), before);

    participant.result = DDS_RETCODE_PRECONDITION_NOT_MET;
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_register_type(&participant, "some::name"),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_unregister_type(&participant, "some::name"),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(participant.registered_name, "not some::name");
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_register_type(nullptr, "x"), DDS_RETCODE_ERROR);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_unregister_type(nullptr, "x"), DDS_RETCODE_ERROR);
    heap_faults::fail_allocation(1);
    EXPECT_EQ(QEL_KX_ADMIN_StateTypeSupport_register_type(&participant, "x"), DDS_RETCODE_ERROR);
}

TEST(TypeSupport, TellsAFailedCopy) {
    Sample<QEL_KX_ADMIN_CommandResponse> source;
    Sample<QEL_KX_ADMIN_CommandResponse> destination;
    EXPECT_EQ(QEL_KX_ADMIN_CommandResponseTypeSupport_copy_data(destination.get(), source.get()),
              DDS_RETCODE_OK);
    EXPECT_EQ(QEL_KX_ADMIN_CommandResponseTypeSupport_copy_data(destination.get(), nullptr),
              DDS_RETCODE_ERROR);
}

struct ExpectedMember {
    const char* name;
    const DDS_TypeCode* type;
    bool key;
};

void expect_members(const DDS_TypeCode& code, const std::vector<ExpectedMember>& expected,
                    DDS_Long first_id = 0) {
    SCOPED_TRACE(code.name);
    ASSERT_EQ(code.memberCount, expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const DDS_TypeCodeMember& member = code.members[i];
        EXPECT_STREQ(member.name, expected[i].name);
        EXPECT_EQ(member.id, first_id + static_cast<DDS_Long>(i));
        EXPECT_EQ(member.flags,
                  expected[i].key ? DDS_TYPECODE_KEY_MEMBER : DDS_TYPECODE_NONKEY_REQUIRED_MEMBER);
        EXPECT_EQ(member.visibility, DDS_PUBLIC_MEMBER);
        if (expected[i].type != nullptr) {
            EXPECT_EQ(member.type, expected[i].type) << member.name;
        }
    }
}

TEST(TypeCodes, OfStructuresListTheirMembers) {
    const DDS_TypeCode* identity = QEL_KX_HostAndAppId_get_typecode();
    EXPECT_EQ(identity->kind, DDS_TK_STRUCT);
    EXPECT_EQ(identity->extensibility, DDS_FINAL_EXTENSIBILITY);
    expect_members(*identity,
                   {{"rtps_host_id", &DDS_g_tc_long, true}, {"rtps_app_id", &DDS_g_tc_long, true}});

    const DDS_TypeCode* message = QEL_KX_LogMessage_get_typecode();
    EXPECT_EQ(message->kind, DDS_TK_STRUCT);
    EXPECT_EQ(message->extensibility, DDS_MUTABLE_EXTENSIBILITY);
    expect_members(*message, {{"hostAndAppId", identity, true},
                              {"level", &DDS_g_tc_long, true},
                              {"category", nullptr, false},
                              {"message", nullptr, false}});
    for (const DDS_UnsignedLong index : {2U, 3U}) {
        EXPECT_EQ(message->members[index].type->kind, DDS_TK_STRING);
        EXPECT_EQ(message->members[index].type->bound, index == 2 ? 512U : 4096U);
    }

    expect_members(
        *QEL_KX_ADMIN_State_get_typecode(),
        {{"hostAndAppId", identity, true},
         {"administrationDomainId", &DDS_g_tc_long, false},
         {"state", QEL_KX_ADMIN_StateKind_get_typecode(), false},
         {"applicationKind", nullptr, false},
         {"filterLevel", &DDS_g_tc_long, false},
         {"qelLoggerVerbosities", nullptr, false},
         {"qelLoggerPrintFormat", QEL_KX_ADMIN_QELLoggerPrintFormat_get_typecode(), false}});
    const DDS_TypeCode* verbosities = QEL_KX_ADMIN_State_get_typecode()->members[5].type;
    EXPECT_EQ(verbosities->kind, DDS_TK_ARRAY);
    EXPECT_EQ(verbosities->bound, 5U);
    EXPECT_EQ(verbosities->element, QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity_get_typecode());

    expect_members(*QEL_KX_ADMIN_CommandRequest_get_typecode(),
                   {{"targetHostAndAppId", identity, false},
                    {"originatorHostAndAppId", identity, false},
                    {"invocation", &DDS_g_tc_long, false},
                    {"command", QEL_KX_ADMIN_Command_get_typecode(), false}});
    expect_members(*QEL_KX_ADMIN_CommandResponse_get_typecode(),
                   {{"hostAndAppId", identity, true},
                    {"originatorHostAndAppId", identity, false},
                    {"invocation", &DDS_g_tc_long, false},
                    {"commandResult", QEL_KX_ADMIN_CommandResult_get_typecode(), false},
                    {"message", nullptr, false}});
}

TEST(TypeCodes, OfTheUnionListTheBranchesWithTheirLabels) {
    const DDS_TypeCode* command = QEL_KX_ADMIN_Command_get_typecode();
    EXPECT_EQ(command->kind, DDS_TK_UNION);
    EXPECT_EQ(command->extensibility, DDS_MUTABLE_EXTENSIBILITY);
    EXPECT_EQ(command->element, QEL_KX_ADMIN_CommandKind_get_typecode());
    expect_members(*command,
                   {{"filterLevel", &DDS_g_tc_long, false},
                    {"categoryAndVerbosity", nullptr, false},
                    {"printFormat", QEL_KX_ADMIN_QELLoggerPrintFormat_get_typecode(), false}},
                   1);
    for (DDS_Long label = 0; label < 3; ++label) {
        EXPECT_EQ(command->members[label].label, label);
    }
    EXPECT_EQ(command->members[1].type->kind, DDS_TK_SEQUENCE);
    EXPECT_EQ(command->members[1].type->bound, 5U);
    EXPECT_EQ(command->members[1].type->element,
              QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity_get_typecode());
}

TEST(TypeCodes, OfEnumerationsListTheEnumeratorsWithTheirNumbers) {
    const DDS_TypeCode* format = QEL_KX_ADMIN_QELLoggerPrintFormat_get_typecode();
    EXPECT_EQ(format->kind, DDS_TK_ENUM);
    ASSERT_EQ(format->memberCount, 7U);
    EXPECT_STREQ(format->members[6].name, "QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL");
    EXPECT_EQ(format->members[6].id, QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL);
    EXPECT_EQ(QEL_KX_ADMIN_StateKind_get_typecode()->memberCount, 4U);
    EXPECT_EQ(QEL_KX_ADMIN_CommandKind_get_typecode()->memberCount, 3U);
    EXPECT_EQ(QEL_KX_ADMIN_CommandResult_get_typecode()->memberCount, 3U);
    EXPECT_EQ(QEL_KX_ADMIN_QELLoggerVerbosity_get_typecode()->memberCount, 6U);
    EXPECT_EQ(QEL_KX_ADMIN_QELLoggerCategory_get_typecode()->memberCount, 5U);
}

}  // namespace
