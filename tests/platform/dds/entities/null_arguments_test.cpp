#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

template <typename Result>
bool is_refusal(Result result) {
    return result == Result{};
}
bool is_refusal(DDS_ReturnCode_t code) {
    return code == bad_parameter;
}
bool is_refusal(DDS_InstanceHandle_t handle) {
    return equal(handle, DDS_HANDLE_NIL);
}
bool is_refusal(DDS_DomainId_t domain) {
    return domain == -1;
}

class NullArguments : public testing::Test {
protected:
    /// Calls an operation with zero for every argument.
    template <typename Result, typename... Arguments>
    void expect_refusal(const std::string& name, Result (*operation)(Arguments...)) {
        EXPECT_TRUE(is_refusal(operation(Arguments{}...))) << name;
        const std::vector<std::string> texts = reports_.take();
        EXPECT_EQ(texts.size(), 1U) << name;
        EXPECT_TRUE(texts.at(0).starts_with(name + ":bad parameter: ")) << texts.at(0);
    }

    orvane::test::Reports reports_;
};

TEST_F(NullArguments, EveryExportedOperationOnANullEntityIsRefusedWithOneReport) {
#define NULL_CALL(operation) [this] { expect_refusal(#operation, operation); }
    const std::function<void()> calls[] = {
// One line per name of the list of exports.
#include "null_calls.inc"
    };
#undef NULL_CALL
    for (const auto& call : calls) {
        call();
    }
}

TEST_F(NullArguments, AnOperationSaysWhichOfItsArgumentsIsMissing) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    DDS_UntypedSampleSeqI data{};
    reports_.take();
    EXPECT_EQ(node.make_topic("name", nullptr), nullptr);
    EXPECT_EQ(node.remove(static_cast<DDS_DataWriter*>(nullptr)), bad_parameter);
    EXPECT_EQ(DDS_DataWriter_get_qos(writer, nullptr), bad_parameter);
    EXPECT_EQ(DDS_DataReader_read_or_take_untypedI(reader, &take_anything, &data, nullptr),
              bad_parameter);
    EXPECT_EQ(reports_.take(), (std::vector<std::string>{
                                   "DDS_DomainParticipant_create_topic:bad parameter: typeName",
                                   "DDS_Publisher_delete_datawriter:bad parameter: writer",
                                   "DDS_DataWriter_get_qos:bad parameter: qos",
                                   "DDS_DataReader_read_or_take_untypedI:bad parameter: infos"}));
}

}  // namespace
