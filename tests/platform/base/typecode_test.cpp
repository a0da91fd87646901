#include <gtest/gtest.h>

#include "pexa/type_plugin.h"
#include "pexa/typecode.h"

namespace {

constexpr DDS_TypeCodeMemberFlags plain = DDS_TYPECODE_NONKEY_REQUIRED_MEMBER;
constexpr DDS_TypeCodeMemberFlags key = DDS_TYPECODE_KEY_MEMBER;

DDS_TypeCodeMember member(const char* name, DDS_Long id, const DDS_TypeCode* type,
                          DDS_TypeCodeMemberFlags flags = plain, DDS_Long label = 0) {
    return {name, id, type, flags, DDS_PUBLIC_MEMBER, label};
}

DDS_TypeCodeMember colours[] = {member("RED", 0, nullptr), member("GREEN", 5, nullptr)};
const DDS_TypeCode colour = {DDS_TK_ENUM, DDS_FINAL_EXTENSIBILITY, "Colour", 0, nullptr, 2,
                             colours};
const DDS_TypeCode text = {DDS_TK_STRING, DDS_FINAL_EXTENSIBILITY, nullptr, 80, nullptr, 0,
                           nullptr};
const DDS_TypeCode texts = {DDS_TK_SEQUENCE, DDS_FINAL_EXTENSIBILITY, nullptr, 3, &text, 0,
                            nullptr};
const DDS_TypeCode numbers = {DDS_TK_ARRAY, DDS_FINAL_EXTENSIBILITY, nullptr, 5, &DDS_g_tc_long, 0,
                              nullptr};
DDS_TypeCodeMember branches[] = {member("number", 1, &DDS_g_tc_long, plain, 5),
                                 member("texts", 2, &texts, plain, 9)};
const DDS_TypeCode choice = {DDS_TK_UNION, DDS_MUTABLE_EXTENSIBILITY, "A::Choice", 0, &colour, 2,
                             branches};
DDS_TypeCodeMember fields[] = {member("id", 0, &DDS_g_tc_long, key), member("numbers", 4, &numbers),
                               member("choice", 5, &choice), member("open", 6, nullptr)};
const DDS_TypeCode record = {DDS_TK_STRUCT, DDS_FINAL_EXTENSIBILITY, "A::B::Record", 0, nullptr, 4,
                             fields};

TEST(TypeCode, FindsMembersByNameAndById) {
    EXPECT_EQ(DDS_TypeCode_findMember(&record, "choice"), &fields[2]);
    EXPECT_EQ(DDS_TypeCode_findMemberById(&record, 4), &fields[1]);
    EXPECT_EQ(DDS_TypeCode_findMemberById(&colour, 5), &colours[1]);
    EXPECT_EQ(DDS_TypeCode_findMember(&record, "Choice"), nullptr);
    EXPECT_EQ(DDS_TypeCode_findMember(&record, nullptr), nullptr);
    EXPECT_EQ(DDS_TypeCode_findMemberById(&record, 1), nullptr);
    EXPECT_EQ(DDS_TypeCode_findMember(&DDS_g_tc_long, "id"), nullptr);
    EXPECT_EQ(DDS_TypeCode_findMemberById(nullptr, 0), nullptr);
}

TEST(TypeCode, PrintsItselfAsIdl) {
    const std::pair<const DDS_TypeCode*, const char*> cases[] = {
        {&colour,
         "   enum Colour {\n"
         "      @value(0) RED,\n"
         "      @value(5) GREEN\n"
         "   };\n"},
        {&choice,
         "   module A {\n"
         "      @mutable\n"
         "      union Choice switch (Colour) {\n"
         "         case GREEN:\n"
         "            @id(1) long number;\n"
         "         case 9:\n"
         "            @id(2) sequence<string<80>, 3> texts;\n"
         "      };\n"
         "   };\n"},
        {&record,
         "   module A {\n"
         "      module B {\n"
         "         @final\n"
         "         struct Record {\n"
         "            @id(0) @key long id;\n"
         "            @id(4) long numbers[5];\n"
         "            @id(5) A::Choice choice;\n"
         "            @id(6) any open;\n"
         "         };\n"
         "      };\n"
         "   };\n"},
        {&text, "   string<80>\n"},
        {&numbers, "   long[5]\n"},
        {nullptr, ""},
    };
    for (const auto& [type, expected] : cases) {
        testing::internal::CaptureStdout();
        DDS_TypeCode_printIDL(type, 1);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
    }
}

TEST(Print, WritesOneIndentedLinePerValue) {
    testing::internal::CaptureStdout();
    QELPrint_long(-3, "level", 0);
    QELPrint_string("a \"b\"", "category", 1);
    QELPrint_string(nullptr, "message", 2);
    QELPrint_enum(5, "GREEN", "colour", 1);
    QELPrint_enum(6, nullptr, nullptr, 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "level: -3\n"
              "   category: \"a \"b\"\"\n"
              "      message: NULL\n"
              "   colour: GREEN (5)\n"
              "   6\n");
}

}  // namespace
