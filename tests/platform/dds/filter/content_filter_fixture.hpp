#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/dds/filter/content_filter.hpp"
#include "tests/platform/dds/filter/content_filter_types.hpp"
#include "tests/support/text.hpp"

namespace filter_test {

using orvane::test::Bytes;
using orvane::test::bytes;

/// target (-1062731775, 42), level 500, kind BUSY, name "it's on", command FAILED with note
/// "motor 7", history (1, 2) and (3, 4), extra (-1, "x", ON): of the mutable type with short
/// headers in little-endian order, and with extended headers in big-endian order.
inline const Bytes mutable_sample = bytes(
    "00030000 00000800 0100a8c0 2a000000 01000400 f4010000 02000400 01000000 03000c00 08000000 "
    "69742773 206f6e00 04001c00 00000400 07000000 03000c00 08000000 'motor 7' 00 027f0000 05001000 "
    "01000000 02000000 03000000 04000000 2c012000 00000400 ffffffff 01000600 02000000 78000000 "
    "02000400 01000000 027f0000 027f0000");
inline const Bytes mutable_big_endian = bytes(
    "00020000 7f010008 00000000 00000008 c0a80001 0000002a 7f010008 00000001 00000004 000001f4 "
    "7f010008 00000002 00000004 00000001 7f010008 00000003 0000000c 00000008 69742773 206f6e00 "
    "7f010008 00000004 0000002c 7f010008 00000000 00000004 00000007 7f010008 00000003 0000000c "
    "00000008 'motor 7' 00 7f020000 7f010008 00000005 00000010 00000001 00000002 00000003 00000004 "
    "7f010008 0000012c 00000038 7f010008 00000000 00000004 ffffffff 7f010008 00000001 00000006 "
    "00000002 78000000 7f010008 00000002 00000004 00000001 7f020000 7f020000");
/// The same of the final type.
inline const Bytes final_sample = bytes(
    "00010000 0100a8c0 2a000000 f4010000 01000000 08000000 69742773 206f6e00 07000000 08000000 "
    "'motor 7' 00 01000000 02000000 03000000 04000000 ffffffff 02000000 78000000 01000000");
inline const Bytes final_big_endian = bytes(
    "00000000 c0a80001 0000002a 000001f4 00000001 00000008 69742773 206f6e00 00000007 00000008 "
    "'motor 7' 00 00000001 00000002 00000003 00000004 ffffffff 00000002 78000000 00000001");

using Parameters = std::vector<const char*>;

/// Compiles with parameters of which a NULL one is missing.
inline pexa::dds::ContentFilterPointer compile(const DDS_TypeCode& type,
                                               const std::string& expression,
                                               const Parameters& parameters,
                                               pexa::dds::FilterFault& fault) {
    std::vector<char*> texts;
    for (const char* parameter : parameters) {
        texts.push_back(const_cast<char*>(parameter));
    }
    const auto count = static_cast<DDS_Long>(texts.size());
    DDS_StringSeq sequence{};
    DDS_StringSeq_loan_contiguous(&sequence, texts.data(), count, count);
    auto filter = pexa::dds::ContentFilter::compile(type, expression, &sequence, fault);
    DDS_StringSeq_unloan(&sequence);
    return filter;
}

/// Decides about a copy in a block of exactly its size, so that a sanitizer sees a read behind it.
inline bool matches(const DDS_TypeCode& type, const std::string& expression,
                    std::span<const char> payload, const Parameters& parameters = {}) {
    pexa::dds::FilterFault fault;
    const auto filter = compile(type, expression, parameters, fault);
    EXPECT_NE(filter, nullptr) << expression << ": " << fault.text.data();
    const Bytes copy(payload.begin(), payload.end());
    return filter != nullptr && filter->matches(std::as_bytes(std::span(copy)));
}

}  // namespace filter_test
