/**
 * @file record_access.hpp
 * @brief Access to the members of a record through its table.
 *
 * Values are copied byte by byte: a member's C type may be an enumeration or a typed sequence,
 * which must not be accessed through a pointer to another type.
 */
#pragma once

#include <cstddef>
#include <cstring>

#include "types/table.hpp"

namespace orvane::types {

inline void* field(void* record, const MemberDescriptor& member) {
    return static_cast<char*>(record) + member.offset;
}

inline const void* field(const void* record, const MemberDescriptor& member) {
    return static_cast<const char*>(record) + member.offset;
}

/** @return element `index` of an array member. */
inline void* array_element(void* array, const MemberDescriptor& member, std::size_t index) {
    return static_cast<char*>(array) + index * member.type->record_size;
}

inline const void* array_element(const void* array, const MemberDescriptor& member,
                                 std::size_t index) {
    return static_cast<const char*>(array) + index * member.type->record_size;
}

template <typename Value>
Value read_value(const void* from) {
    Value value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <typename Value>
void write_value(void* to, Value value) {
    std::memcpy(to, &value, sizeof value);
}

/** A sequence member as it stands in the record. */
class SequenceView {
public:
    SequenceView(const void* sequence, const MemberDescriptor& member)
        : sequence_(read_value<PEXASequence>(sequence)), element_size_(member.type->record_size) {
        if (sequence_.sequenceInit != DDS_SEQUENCE_MAGIC) {
            sequence_.length = 0;
            sequence_.maximum = 0;
        }
    }

    DDS_Long length() const { return sequence_.length; }
    DDS_Long maximum() const { return sequence_.maximum; }
    /** @return element `index` below the maximum, or NULL when its buffer has none. */
    void* element(std::size_t index) const {
        if (sequence_.discontiguousBuffer != nullptr) {
            return sequence_.discontiguousBuffer[index];
        }
        if (sequence_.contiguousBuffer == nullptr) {
            return nullptr;
        }
        return static_cast<char*>(sequence_.contiguousBuffer) + index * element_size_;
    }

private:
    PEXASequence sequence_;
    std::size_t element_size_;
};

}  // namespace orvane::types
