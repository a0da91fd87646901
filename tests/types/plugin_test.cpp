// Plugin records, endpoint data, type support and type codes.
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/heap_faults.hpp"
#include "tests/types/sample.hpp"

namespace {

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
        EXPECT_EQ(plugin->pluginKind, 5640756U);
        EXPECT_EQ(plugin->version.major, 2);
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

TEST(TypeSupport, TellsAFailedCopy) {
    Sample<QEL_KX_ADMIN_CommandResponse> source;
    Sample<QEL_KX_ADMIN_CommandResponse> destination;
    EXPECT_EQ(QEL_KX_ADMIN_CommandResponseTypeSupport_copy_data(destination.get(), source.get()),
              DDS_RETCODE_OK);
    EXPECT_EQ(QEL_KX_ADMIN_CommandResponseTypeSupport_copy_data(destination.get(), nullptr),
              DDS_RETCODE_ERROR);
}

/// What a type code prints, in one line and without the modules around it.
std::string idl_of(const DDS_TypeCode* code) {
    testing::internal::CaptureStdout();
    DDS_TypeCode_printIDL(code, 0);
    std::istringstream printed(testing::internal::GetCapturedStdout());
    std::string idl;
    for (std::string line; std::getline(printed, line);) {
        line.erase(0, line.find_first_not_of(' '));
        idl += line.starts_with("module") || line == "};" ? "" : line + " ";
    }
    return idl;
}

TEST(TypeCodes, DescribeTheTypesAsOtherProductsSeeThem) {
    const std::pair<const DDS_TypeCode*, const char*> types[] = {
        {QEL_KX_HostAndAppId_get_typecode(),
         "@final struct HostAndAppId { @id(0) @key long rtps_host_id; "
         "@id(1) @key long rtps_app_id; "},
        {QEL_KX_LogMessage_get_typecode(),
         "@mutable struct LogMessage { @id(0) @key QEL::KX::HostAndAppId hostAndAppId; "
         "@id(1) @key long level; @id(2) string<512> category; @id(3) string<4096> message; "},
        {QEL_KX_ADMIN_State_get_typecode(),
         "@mutable struct State { @id(0) @key QEL::KX::HostAndAppId hostAndAppId; "
         "@id(1) long administrationDomainId; @id(2) QEL::KX::ADMIN::StateKind state; "
         "@id(3) string<256> applicationKind; @id(4) long filterLevel; "
         "@id(5) QEL::KX::ADMIN::QELLoggerCategoryAndVerbosity qelLoggerVerbosities[5]; "
         "@id(6) QEL::KX::ADMIN::QELLoggerPrintFormat qelLoggerPrintFormat; "},
        {QEL_KX_ADMIN_Command_get_typecode(),
         "@mutable union Command switch (QEL::KX::ADMIN::CommandKind) { "
         "case QEL_KX_SET_LOG_LEVEL: @id(1) long filterLevel; "
         "case QEL_KX_SET_QEL_LOGGER_LEVEL: @id(2) "
         "sequence<QEL::KX::ADMIN::QELLoggerCategoryAndVerbosity, 5> categoryAndVerbosity; "
         "case QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT: "
         "@id(3) QEL::KX::ADMIN::QELLoggerPrintFormat printFormat; "},
        {QEL_KX_ADMIN_CommandRequest_get_typecode(),
         "@mutable struct CommandRequest { @id(0) QEL::KX::HostAndAppId targetHostAndAppId; "
         "@id(1) QEL::KX::HostAndAppId originatorHostAndAppId; @id(2) long invocation; "
         "@id(3) QEL::KX::ADMIN::Command command; "},
        {QEL_KX_ADMIN_CommandResponse_get_typecode(),
         "@mutable struct CommandResponse { @id(0) @key QEL::KX::HostAndAppId hostAndAppId; "
         "@id(1) QEL::KX::HostAndAppId originatorHostAndAppId; @id(2) long invocation; "
         "@id(3) QEL::KX::ADMIN::CommandResult commandResult; @id(4) string<2048> message; "},
        {QEL_KX_ADMIN_CommandResult_get_typecode(),
         "enum CommandResult { @value(0) QEL_KX_COMMAND_RESULT_OK, "
         "@value(1) QEL_KX_COMMAND_RESULT_NOT_SUPPORTED, @value(2) QEL_KX_COMMAND_RESULT_ERROR "},
    };
    for (const auto& [type, idl] : types) {
        EXPECT_EQ(idl_of(type), idl);
    }
}

}  // namespace
