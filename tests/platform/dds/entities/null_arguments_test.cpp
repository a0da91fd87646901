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

/// Calls an operation with zero for every argument.
template <typename Result, typename... Arguments>
void expect_refusal(const std::string& name, Result (*operation)(Arguments...)) {
    orvane::test::Reports reports;
    EXPECT_TRUE(is_refusal(operation(Arguments{}...))) << name;
    const std::vector<std::string> texts = reports.take();
    EXPECT_EQ(texts.size(), 1U) << name;
    EXPECT_TRUE(texts.at(0).starts_with(name + ":bad parameter: ")) << texts.at(0);
}

TEST(NullArguments, EveryExportedOperationOnANullEntityIsRefusedWithOneReport) {
#define NULL_CALL(operation) [] { expect_refusal(#operation, operation); }
    void (*const calls[])() = {
// One line per name of the list of exports.
#include "null_calls.inc"
    };
#undef NULL_CALL
    for (const auto call : calls) {
        call();
    }
}

}  // namespace
