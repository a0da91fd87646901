#include <gtest/gtest.h>

#include "pexa/typecode.h"

namespace {

TEST(TypeCode, FindsMembersByNameAndById) {
    DDS_TypeCodeMember members[] = {
        {"id", 0, nullptr, DDS_TYPECODE_KEY_MEMBER, DDS_PUBLIC_MEMBER, 0},
        {"choice", 5, nullptr, DDS_TYPECODE_KEY_MEMBER, DDS_PUBLIC_MEMBER, 0}};
    const DDS_TypeCode type = {DDS_TK_STRUCT, DDS_FINAL_EXTENSIBILITY, "Record", 0, nullptr, 2,
                               members};
    EXPECT_EQ(DDS_TypeCode_findMember(&type, "choice"), &members[1]);
    EXPECT_EQ(DDS_TypeCode_findMemberById(&type, 5), &members[1]);
    EXPECT_EQ(DDS_TypeCode_findMember(&type, "Choice"), nullptr);
    EXPECT_EQ(DDS_TypeCode_findMember(&type, nullptr), nullptr);
    EXPECT_EQ(DDS_TypeCode_findMemberById(&type, 1), nullptr);
    EXPECT_EQ(DDS_TypeCode_findMember(&DDS_g_tc_long, "id"), nullptr);
    EXPECT_EQ(DDS_TypeCode_findMemberById(nullptr, 0), nullptr);
}

}  // namespace
