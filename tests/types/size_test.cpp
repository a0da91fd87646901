// Sizes, worked out by hand. "H" is an extended header of 12 bytes, "h" a short one of 4.
#include "tests/types/sample.hpp"

namespace orvane::types {
namespace {

template <typename T>
void expect_sizes(DDS_UnsignedLong maximum, DDS_UnsignedLong minimum) {
    SCOPED_TRACE(Description<T>::table.name);
    using Sizes = Plugin<T>;
    EXPECT_EQ(Sizes::get_serialized_sample_max_size(nullptr, 0, 4, 0), maximum);
    EXPECT_EQ(Sizes::get_serialized_sample_min_size(nullptr, 0, 4, 0), minimum);
    for (DDS_UnsignedShort id = 0; id <= 4; ++id) {
        const bool known = id <= 3;
        EXPECT_EQ(Sizes::get_serialized_sample_max_size(nullptr, 1, id, 0),
                  known ? maximum + 4 : 1);
        EXPECT_EQ(Sizes::get_serialized_sample_min_size(nullptr, 1, id, 0),
                  known ? minimum + 4 : 1);
    }
    T record{};
    EXPECT_EQ(Sizes::get_serialized_sample_size(nullptr, 1, 4, 0, &record), 1U);
    EXPECT_EQ(Sizes::get_serialized_sample_size(nullptr, 0, 1, 0, nullptr), 0U);
}

TEST(Sizes, AreThoseWorkedOutByHand) {
    expect_sizes<QEL_KX_ADMIN_StateKind>(4, 4);
    expect_sizes<QEL_KX_HostAndAppId>(8, 8);
    expect_sizes<QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity>(8, 8);
    // max: H+8 20, H+4 36, H+4+513 565 pad 568, H+4+4097 4681 pad 4684, H 4696
    // min: H+8 20, h+4 28, H+4+1 45 pad 48, H+4+1 65 pad 68, h 72
    expect_sizes<QEL_KX_LogMessage>(4696, 72);
    // max: H+8 20, H+4 36, H+4 52, H+4+257 325 pad 328, H+4 344, H+40 396, H+4 412, H 424
    // min: H+8 20, h+4 28, h+4 36, H+4+1 53 pad 56, h+4 64, H+40 116, h+4 124, h 128
    expect_sizes<QEL_KX_ADMIN_State>(424, 128);
    // The headers are always short.
    // max: h+4 8, h+4+40 56, h 60.  min: h+4 8, h+4 16, h 20
    expect_sizes<QEL_KX_ADMIN_Command>(60, 20);
    // max: H+8 20, H+8 40, H+4 56, H+60 128, H 140.  min: H+8 20, H+8 40, h+4 48, H+20 80, h 84
    expect_sizes<QEL_KX_ADMIN_CommandRequest>(140, 84);
    // max: H+8 20, H+8 40, H+4 56, H+4 72, H+4+2049 2137 pad 2140, H 2152
    // min: H+8 20, H+8 40, h+4 48, h+4 56, H+4+1 73 pad 76, h 80
    expect_sizes<QEL_KX_ADMIN_CommandResponse>(2152, 80);
}

TEST(Sizes, OfKeysCountTheKeyMembersOnly) {
    const auto key_size = [](const auto& size) { return size(nullptr, 0, 1, 0); };
    // H+8 20, H+4 36, H 48
    EXPECT_EQ(key_size(QEL_KX_LogMessagePlugin_get_serialized_key_max_size), 48U);
    // H+8 20, H 32
    EXPECT_EQ(key_size(QEL_KX_ADMIN_StatePlugin_get_serialized_key_max_size), 32U);
    EXPECT_EQ(key_size(QEL_KX_ADMIN_CommandResponsePlugin_get_serialized_key_max_size), 32U);
    EXPECT_EQ(key_size(QEL_KX_HostAndAppIdPlugin_get_serialized_key_max_size), 8U);
    EXPECT_EQ(QEL_KX_HostAndAppIdPlugin_get_serialized_key_max_size(nullptr, 1, 3, 0), 12U);
    EXPECT_EQ(QEL_KX_HostAndAppIdPlugin_get_serialized_key_max_size(nullptr, 1, 4, 0), 1U);
}

TEST(Sizes, IncludeThePaddingAtTheirStart) {
    // To the first number's multiple of 4, or to the encapsulation header's multiple of 2, behind
    // which counting starts anew.
    const auto size = QEL_KX_HostAndAppIdPlugin_get_serialized_sample_max_size;
    EXPECT_EQ(size(nullptr, 0, 1, 3), 1U + 8);
    EXPECT_EQ(size(nullptr, 1, 1, 3), 1U + 4 + 8);
    EXPECT_EQ(size(nullptr, 1, 1, 6), 4U + 8);
}

TEST(Sizes, StopAtTheLargestThatTheMiddlewareAccepts) {
    constexpr DDS_UnsignedLong most = 2147482623;
    constexpr DDS_UnsignedLong last_start = most - 3 - 4696;  // a multiple of 4
    const auto size = QEL_KX_LogMessagePlugin_get_serialized_sample_max_size_ex;
    DDS_Boolean overflow = 0;
    EXPECT_EQ(size(nullptr, &overflow, 0, 1, last_start), 4696U);
    EXPECT_EQ(overflow, 0);
    EXPECT_EQ(size(nullptr, &overflow, 0, 1, last_start + 4), most);
    EXPECT_NE(overflow, 0);
    EXPECT_EQ(size(nullptr, nullptr, 0, 1, last_start + 4), most);
}

TEST(Sizes, OfASampleWithATextThatCannotBeEncodedAreThoseOfOneThatCan) {
    std::string too_long(5000, 'x');
    const QEL_KX_LogMessage sample{{}, 0, nullptr, too_long.data()};
    // h+8 12, h+4 20, h+4+1 29 pad 32, h+4+4097 4137 pad 4140, h 4144
    EXPECT_EQ(QEL_KX_LogMessagePlugin_get_serialized_sample_size(nullptr, 0, 1, 0, &sample), 4144U);
}

}  // namespace
}  // namespace orvane::types
