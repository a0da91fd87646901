#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

/// What a report calls the argument that an operation works on.
struct SelfName {
    static const char* of(DDS_Entity*) { return "entity"; }
    static const char* of(DDS_DomainParticipantFactory*) { return "factory"; }
    static const char* of(DDS_DomainParticipant*) { return "participant"; }
    static const char* of(DDS_TopicDescription*) { return "topic description"; }
    static const char* of(DDS_Topic*) { return "topic"; }
    static const char* of(DDS_ContentFilteredTopic*) { return "content-filtered topic"; }
    static const char* of(DDS_Publisher*) { return "publisher"; }
    static const char* of(DDS_DataWriter*) { return "writer"; }
    static const char* of(DDS_Subscriber*) { return "subscriber"; }
    static const char* of(DDS_DataReader*) { return "reader"; }
    static const char* of(DDS_ReadCondition*) { return "read condition"; }
    static const char* of(DDS_GuardCondition*) { return "guard condition"; }
    static const char* of(DDS_StatusCondition*) { return "status condition"; }
    static const char* of(DDS_Condition*) { return "condition"; }
    static const char* of(DDS_WaitSet*) { return "wait set"; }
    static const char* of(void*) { return "self"; }
};

template <typename Result>
bool is_refusal(Result result) {
    return result == Result{};
}
bool is_refusal(DDS_ReturnCode_t code) {
    return code == bad_parameter;
}
bool is_refusal(DDS_InstanceHandle_t handle) {
    return DDS_InstanceHandle_equals(&handle, &DDS_HANDLE_NIL) != 0;
}
bool is_refusal(DDS_DomainId_t domain) {
    return domain == -1;
}

struct NullCall {
    std::string report;
    std::function<bool()> is_refused;
};

/// An operation called with zero for every argument.
template <typename Result, typename Self, typename... Others>
NullCall null_call(const std::string& name, Result (*operation)(Self*, Others...)) {
    return {
        name + ":bad parameter: " + SelfName::of(static_cast<std::remove_const_t<Self>*>(nullptr)),
        [operation] { return is_refusal(operation(nullptr, Others{}...)); }};
}

#define NULL_CALL(operation) null_call(#operation, operation)

TEST(NullArguments, EveryExportedOperationOnANullEntityIsRefusedWithOneReport) {
    const NullCall calls[] = {
// One line per name of the list of exports.
#include "null_calls.inc"
    };
    orvane::test::Reports reports;
    for (const NullCall& call : calls) {
        EXPECT_TRUE(call.is_refused()) << call.report;
        EXPECT_EQ(reports.take(), std::vector<std::string>{call.report});
    }
}

#undef NULL_CALL

TEST(NullArguments, AnOperationSaysWhichOfItsArgumentsIsMissing) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    DDS_UntypedSampleSeqI data{};
    orvane::test::Reports reports;
    EXPECT_TRUE(is_refusal(DDS_DomainParticipant_create_topic(node.participant(), "name", nullptr,
                                                              nullptr, nullptr, 0)));
    EXPECT_TRUE(is_refusal(DDS_Publisher_delete_datawriter(node.publisher(), nullptr)));
    EXPECT_TRUE(is_refusal(DDS_DataWriter_get_qos(writer, nullptr)));
    EXPECT_TRUE(
        is_refusal(DDS_DataReader_read_or_take_untypedI(reader, &take_anything, &data, nullptr)));
    const std::vector<std::string> expected = {
        "DDS_DomainParticipant_create_topic:bad parameter: typeName",
        "DDS_Publisher_delete_datawriter:bad parameter: writer",
        "DDS_DataWriter_get_qos:bad parameter: qos",
        "DDS_DataReader_read_or_take_untypedI:bad parameter: infos"};
    EXPECT_EQ(reports.take(), expected);
}

}  // namespace
