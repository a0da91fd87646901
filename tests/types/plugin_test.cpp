// Plugins, endpoint data, type codes and what is printed.
#include <sstream>

#include "tests/support/faults.hpp"
#include "tests/types/sample.hpp"

namespace orvane::types {
namespace {

TEST(EndpointData, OfAWriterKnowsTheLargestSampleAndLendsBuffersForIt) {
    const Endpoint<QEL_KX_LogMessage> endpoint(TULV_ENDPOINT_WRITER);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMaxSizeSerializedSample(endpoint.data), 4696U);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getMD5Stream(endpoint.data)->size, 48U);
    std::size_t size = 0;
    char* buffer = TULVTypePluginDefaultEndpointData_getBuffer(endpoint.data, &size);
    EXPECT_EQ(size, 4700U);
    TULVTypePluginDefaultEndpointData_returnBuffer(endpoint.data, buffer);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getBuffer(endpoint.data, &size), buffer);

    void* sample = TULVTypePluginDefaultEndpointData_getSample(endpoint.data, nullptr);
    EXPECT_NE(sample, nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getSample(endpoint.data, nullptr), nullptr);
    QEL_KX_LogMessagePlugin_return_sample(endpoint.data, sample, nullptr);
    EXPECT_EQ(TULVTypePluginDefaultEndpointData_getSample(endpoint.data, nullptr), sample);
}

TEST(WithoutMemory, EndpointsAndPluginsAreNotMadeByHalves) {
    test::sweep(test::heap_allocation, [] {
        const TULVEndpointInfo info{TULV_ENDPOINT_WRITER, 1, 1};
        TULVEndpointData endpoint = QEL_KX_LogMessagePlugin_on_endpoint_attached(nullptr, &info);
        QEL_KX_LogMessagePlugin_on_endpoint_detached(endpoint);
        return endpoint != nullptr;
    });
    test::sweep(test::heap_allocation, [] {
        TULVTypePlugin* plugin = QEL_KX_ADMIN_StatePlugin_new();
        QEL_KX_ADMIN_StatePlugin_delete(plugin);
        return plugin != nullptr;
    });
    test::sweep(test::heap_allocation, [] {
        QELKeyHash hash{};
        const QEL_KX_HostAndAppId instance{1, 2};
        return QEL_KX_HostAndAppIdPlugin_instance_to_keyhash(nullptr, &hash, &instance) != 0;
    });
}

/// What a type code prints, in one line and without the modules around it.
std::string idl_of(const DDS_TypeCode* code) {
    std::istringstream printed(test::output_of([&] { DDS_TypeCode_printIDL(code, 0); }));
    std::string idl;
    for (std::string line; std::getline(printed, line);) {
        line.erase(0, line.find_first_not_of(' '));
        idl += line.starts_with("module") || line == "};" ? "" : line + " ";
    }
    return idl;
}

TEST(TypeCodes, DescribeTheTypesAsOtherProductsSeeThem) {
    // Without a module, with a gap between the enumerators, and a member of unknown type.
    const auto member = [](const char* name, DDS_Long number, const DDS_TypeCode* type) {
        return DDS_TypeCodeMember{
            name, number, type, DDS_TYPECODE_NONKEY_REQUIRED_MEMBER, DDS_PUBLIC_MEMBER, number};
    };
    DDS_TypeCodeMember colours[] = {member("RED", 0, nullptr), member("GREEN", 5, nullptr)};
    DDS_TypeCodeMember cases[] = {member("green", 5, &DDS_g_tc_long), member("open", 9, nullptr)};
    const DDS_TypeCode colour = {DDS_TK_ENUM, DDS_FINAL_EXTENSIBILITY, "Colour", 0, nullptr, 2,
                                 colours};
    const DDS_TypeCode choice = {DDS_TK_UNION, DDS_MUTABLE_EXTENSIBILITY, "Choice", 0, &colour, 2,
                                 cases};
    const std::pair<const DDS_TypeCode*, const char*> types[] = {
        {nullptr, ""},
        {&DDS_g_tc_long, "long "},
        {&colour, "enum Colour { @value(0) RED, @value(5) GREEN "},
        {&choice,
         "@mutable union Choice switch (Colour) { case GREEN: @id(5) long green; "
         "case 9: @id(9) any open; "},
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

/// What the print operation of a type shows of a value.
template <typename T>
std::string printed(const T& sample, const char* description, DDS_UnsignedLong indent) {
    return test::output_of([&] { PluginSupport<T>::print_data(&sample, description, indent); });
}

TEST(Printing, ShowsMembersOneLevelDeeperThanTheDescriptionAndEnumeratorsByTheirNames) {
    EXPECT_EQ(printed(*Filled<QEL_KX_LogMessage>(), "record", 1),
              "   record:\n"
              "      hostAndAppId:\n"
              "         rtps_host_id: 16909060\n"
              "         rtps_app_id: 168496141\n"
              "      level: 300\n"
              "      category: \"net\"\n"
              "      message: \"hi\"\n");
    EXPECT_EQ(test::output_of([] { QEL_KX_LogMessageTypeSupport_print_data(nullptr); }),
              "\nNULL\n");
    EXPECT_NE(printed(*Filled<QEL_KX_ADMIN_State>(), "state", 0)
                  .find("      [4]:\n"
                        "         category: QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API (4)\n"
                        "         verbosity: QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL (5)\n"),
              std::string::npos);

    Sample<QEL_KX_ADMIN_Command> command;
    set_pairs(*command, 2);
    EXPECT_EQ(printed(*command, nullptr, 0),
              "\n"
              "   _d: QEL_KX_SET_QEL_LOGGER_LEVEL (1)\n"
              "   _u.categoryAndVerbosity:\n"
              "      [0]:\n"
              "         category: QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM (0)\n"
              "         verbosity: QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR (1)\n"
              "      [1]:\n"
              "         category: QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION (1)\n"
              "         verbosity: QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING (2)\n");
    command->_d = QEL_KX_SET_LOG_LEVEL;
    EXPECT_EQ(printed(*command, nullptr, 0),
              "\n   _d: QEL_KX_SET_LOG_LEVEL (0)\n   _u.filterLevel: 0\n");
    // No enumerator has this number, so that it can only be written as one.
    const DDS_Long nothing = 17;
    std::memcpy(&command->_d, &nothing, sizeof nothing);
    EXPECT_EQ(printed(*command, nullptr, 0), "\n   _d: 17\n");
}

}  // namespace
}  // namespace orvane::types
