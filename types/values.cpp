#include "types/values.hpp"

#include <cstring>

#include "pexa/string.h"
#include "types/record_access.hpp"

namespace orvane::types {

namespace {

bool allocate_string(void* value, const Member& member) {
    char* text = DDS_String_alloc(member.bound);
    store(value, text);
    return text != nullptr;
}

bool allocate_sequence(PEXASequence* sequence, const Member& member,
                       const DDS_TypeAllocationParams_t& params) {
    return PEXASequence_initialize(sequence, member.element) != DDS_BOOLEAN_FALSE &&
           PEXASequence_set_element_allocation_params(sequence, member.element, &params) !=
               DDS_BOOLEAN_FALSE &&
           PEXASequence_set_maximum(sequence, member.element,
                                    static_cast<DDS_Long>(member.bound)) != DDS_BOOLEAN_FALSE;
}

bool allocate_member(void* value, const Member& member, const DDS_TypeAllocationParams_t& params) {
    if (member.words > 0) {
        std::memset(value, 0, member.words * sizeof(DDS_Long));
        return true;
    }
    if (member.kind == Kind::String) {
        return allocate_string(value, member);
    }
    return member.kind == Kind::Sequence
               ? allocate_sequence(static_cast<PEXASequence*>(value), member, params)
               : initialise(*member.type, value, params);
}

/** Makes pointers that may be garbage safe to finalise. */
void forget_buffers(const TypeTable& table, void* record) {
    for (const Member& member : table.members()) {
        void* value = field(record, member);
        if (member.kind == Kind::String) {
            store<char*>(value, nullptr);
        } else if (member.kind == Kind::Sequence) {
            PEXASequence_initialize(static_cast<PEXASequence*>(value), member.element);
        } else if (member.kind == Kind::Structure) {
            forget_buffers(*member.type, value);
        }
    }
}

bool copy_string(void* destination, const void* source, const Member& member) {
    return DDS_String_copyBounded(load<char*>(destination), load<const char*>(source),
                                  std::size_t{member.bound} + 1) != DDS_BOOLEAN_FALSE;
}

bool copy_member(void* destination, const void* source, const Member& member) {
    if (member.words > 0) {
        std::memmove(destination, source, member.words * sizeof(DDS_Long));
        return true;
    }
    if (member.kind == Kind::String) {
        return copy_string(destination, source, member);
    }
    return member.kind == Kind::Sequence
               ? PEXASequence_copy(static_cast<PEXASequence*>(destination), member.element,
                                   static_cast<const PEXASequence*>(source)) != nullptr
               : copy(*member.type, destination, source);
}

bool copy_field(void* destination, const void* source, const Member& member) {
    return copy_member(field(destination, member), field(source, member), member);
}

bool copy_union(const TypeTable& table, void* destination, const void* source) {
    const Member& discriminator = table.rows[0];
    const auto selected = load<DDS_Long>(field(source, discriminator));
    store(field(destination, discriminator), selected);
    const Member* branch = table.branch(selected);
    return branch == nullptr || copy_field(destination, source, *branch);
}

}  // namespace

bool initialise(const TypeTable& table, void* record, const DDS_TypeAllocationParams_t& params) {
    if (!table.is_mutable() || params.allocate_memory == DDS_BOOLEAN_FALSE) {
        reset(table, record);
        return true;
    }
    forget_buffers(table, record);
    for (const Member& member : table.members()) {
        if (!allocate_member(field(record, member), member, params)) {
            return false;
        }
    }
    return true;
}

void reset(const TypeTable& table, void* record) {
    if (table.is_mutable()) {
        table.compiled->reset(record);
    } else {
        std::memset(record, 0, table.record_size);
    }
}

void reset_open_value(void* value, const Member& member) {
    if (member.kind == Kind::Sequence) {
        // A sequence that is shortened allocates nothing.
        static_cast<void>(
            PEXASequence_set_length(static_cast<PEXASequence*>(value), member.element, 0));
    } else {
        reset(*member.type, value);
    }
}

void finalise(const TypeTable& table, void* record) {
    for (const Member& member : table.members()) {
        void* value = field(record, member);
        if (member.kind == Kind::String) {
            DDS_String_free(load<char*>(value));
            store<char*>(value, nullptr);
        } else if (member.kind == Kind::Sequence) {
            PEXASequence_finalize(static_cast<PEXASequence*>(value), member.element);
        } else if (member.kind == Kind::Structure) {
            finalise(*member.type, value);
        }
    }
}

bool copy(const TypeTable& table, void* destination, const void* source) {
    if (!table.is_mutable()) {
        std::memmove(destination, source, table.record_size);
        return true;
    }
    if (table.category == Category::Union) {
        return copy_union(table, destination, source);
    }
    for (const Member& member : table.members()) {
        if (!copy_field(destination, source, member)) {
            return false;
        }
    }
    return true;
}

bool copy_key(const TypeTable& table, void* destination, const void* source) {
    for (const Member& member : table.members()) {
        if (member.is_key && !copy_field(destination, source, member)) {
            return false;
        }
    }
    return true;
}

}  // namespace orvane::types
