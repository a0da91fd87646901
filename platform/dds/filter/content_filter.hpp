/// @file content_filter.hpp
/// @brief Filter expressions on encoded samples.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

#include "pexa/osapi.h"
#include "pexa/sequence.h"
#include "platform/dds/filter/fault.hpp"
#include "platform/dds/filter/program.hpp"

namespace pexa::dds {

class ContentFilter;

struct FreeContentFilter {
    void operator()(const ContentFilter* filter) const;
};
using ContentFilterPointer = std::unique_ptr<const ContentFilter, FreeContentFilter>;

/// A compiled filter expression of the DDS SQL subset. Immutable, so that threads may share it.
///
/// Conditions are comparisons (= <> != < <= > >=), [NOT] BETWEEN low AND high, and [NOT] LIKE
/// 'pattern', where % stands for any characters and _ for one. AND, OR, NOT and brackets join them.
/// Keywords may be in any case. Fields are dotted names of members and may stand on either side.
/// Integers are decimal or hexadecimal (0xffffffff is -1). Texts stand in single quotes, and two
/// quotes inside stand for one. Enumerators may stand in quotes. %0 … %99 stand for parameters,
/// which are such integers, texts or enumerators.
class ContentFilter {
public:
    /// @param type must live as long as the filter, and so must the types of its members
    /// @param expression,parameters are copied; @p parameters may be NULL for none
    /// @param fault is filled in when the result is NULL
    static ContentFilterPointer compile(const DDS_TypeCode& type, std::string_view expression,
                                        const DDS_StringSeq* parameters,
                                        FilterFault& fault) noexcept;

    /// Allocates nothing. Members that the sample lacks count as 0 or the empty text.
    ///
    /// @param payload an encoded sample with its encapsulation header
    /// @return false also for a payload that is not an encoding of the type
    bool matches(std::span<const std::byte> payload) const noexcept;

private:
    struct FreeTexts {
        void operator()(char* texts) const { QELOsapiHeap_freeBytes(texts); }
    };

    friend struct FreeContentFilter;

    ContentFilter() = default;
    ~ContentFilter() = default;

    FilterProgram program_;
    std::unique_ptr<char, FreeTexts> texts_;  ///< the program's constants point into it
};

}  // namespace pexa::dds
