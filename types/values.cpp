#include "types/values.hpp"

#include "pexa/string.h"
#include "types/record_access.hpp"

namespace orvane::types {

namespace {

bool initialise_string(char** text, const Member& member, bool allocate) {
    if (allocate) {
        *text = DDS_String_alloc(member.bound);
        return *text != nullptr;
    }
    if (*text != nullptr) {
        **text = '\0';
    }
    return true;
}

bool initialise_sequence(PEXASequence* sequence, const Member& member,
                         const DDS_TypeAllocationParams_t& params) {
    if (params.allocate_memory == DDS_BOOLEAN_FALSE) {
        return PEXASequence_set_length(sequence, member.element, 0) != DDS_BOOLEAN_FALSE;
    }
    return PEXASequence_initialize(sequence, member.element) != DDS_BOOLEAN_FALSE &&
           PEXASequence_set_element_allocation_params(sequence, member.element, &params) !=
               DDS_BOOLEAN_FALSE &&
           PEXASequence_set_maximum(sequence, member.element,
                                    static_cast<DDS_Long>(member.bound)) != DDS_BOOLEAN_FALSE;
}

bool initialise_member(void* value, const Member& member,
                       const DDS_TypeAllocationParams_t& params) {
    switch (member.kind) {
        case Kind::Long:
        case Kind::Enumeration:
            store<DDS_Long>(value, 0);
            return true;
        case Kind::String:
            return initialise_string(static_cast<char**>(value), member,
                                     params.allocate_memory != DDS_BOOLEAN_FALSE);
        case Kind::Structure:
            return initialise(*member.type, value, params);
        case Kind::Array:
            for (std::size_t i = 0; i < member.bound; ++i) {
                if (!initialise(*member.type, array_element(value, member, i), params)) {
                    return false;
                }
            }
            return true;
        case Kind::Sequence:
            return initialise_sequence(static_cast<PEXASequence*>(value), member, params);
    }
    return false;
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
    switch (member.kind) {
        case Kind::Long:
        case Kind::Enumeration:
            store(destination, load<DDS_Long>(source));
            return true;
        case Kind::String:
            return copy_string(destination, source, member);
        case Kind::Structure:
            return copy(*member.type, destination, source);
        case Kind::Array:
            for (std::size_t i = 0; i < member.bound; ++i) {
                if (!copy(*member.type, array_element(destination, member, i),
                          array_element(source, member, i))) {
                    return false;
                }
            }
            return true;
        case Kind::Sequence:
            return PEXASequence_copy(static_cast<PEXASequence*>(destination), member.element,
                                     static_cast<const PEXASequence*>(source)) != nullptr;
    }
    return false;
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
    if (table.category == Category::Enumeration) {
        store<DDS_Long>(record, 0);
        return true;
    }
    if (params.allocate_memory != DDS_BOOLEAN_FALSE) {
        forget_buffers(table, record);
    }
    for (const Member& member : table.members()) {
        if (!initialise_member(field(record, member), member, params)) {
            return false;
        }
    }
    return true;
}

void reset(const TypeTable& table, void* record) {
    constexpr DDS_TypeAllocationParams_t in_place{.allocate_pointers = DDS_BOOLEAN_FALSE,
                                                  .allocate_optional_members = DDS_BOOLEAN_FALSE,
                                                  .allocate_memory = DDS_BOOLEAN_FALSE};
    // Nothing that could fail happens without allocation.
    static_cast<void>(initialise(table, record, in_place));
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
    if (table.category == Category::Enumeration) {
        store(destination, load<DDS_Long>(source));
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
