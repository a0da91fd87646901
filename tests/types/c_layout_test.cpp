// The records as C, C++ and the tables see them.
#include <string>

#include <gtest/gtest.h>

#include "tests/types/c_layout.h"
#include "types/table.hpp"

namespace {

using orvane::types::Description;
using orvane::types::Member;
using orvane::types::TypeTable;

/// The type name of a C type: "QEL_KX_ADMIN_State" is "QEL::KX::ADMIN::State".
std::string type_name(std::string c_name) {
    for (std::size_t at = 0; (at = c_name.find('_', at)) != std::string::npos;) {
        c_name.replace(at, 1, "::");
    }
    return c_name;
}

TEST(CLayout, IsThatOfTheTables) {
    std::size_t index = 0;
    const auto expect_layout = [&](const TypeTable& table) {
        for (const Member& member : table.members()) {
            ASSERT_LT(index, c_layout_count);
            const CLayout& layout = c_layouts[index++];
            const bool is_branch = std::string(layout.member).starts_with("_u.");
            EXPECT_EQ(type_name(layout.type), table.name);
            EXPECT_EQ(layout.size, table.record_size) << layout.type;
            EXPECT_STREQ(layout.member + (is_branch ? 3 : 0), member.name);
            EXPECT_EQ(layout.offset, member.offset) << layout.type << " " << layout.member;
        }
    };
    expect_layout(Description<QEL_KX_HostAndAppId>::table);
    expect_layout(Description<QEL_KX_LogMessage>::table);
    expect_layout(Description<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity>::table);
    expect_layout(Description<QEL_KX_ADMIN_State>::table);
    expect_layout(Description<QEL_KX_ADMIN_Command>::table);
    expect_layout(Description<QEL_KX_ADMIN_CommandRequest>::table);
    expect_layout(Description<QEL_KX_ADMIN_CommandResponse>::table);
    EXPECT_EQ(index, c_layout_count);
}

TEST(CLayout, LetsAProgramInCUseTheTypes) {
    EXPECT_EQ(c_round_trip(), 1);
}

}  // namespace
