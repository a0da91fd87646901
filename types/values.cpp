#include "types/values.hpp"

#include <cstring>

#include "pexa/string.h"
#include "types/record_access.hpp"
#include "types/value_operations.hpp"

namespace orvane::types {

namespace {

Success allocate_string(void* value, const MemberDescriptor& member) {
    char* text = DDS_String_alloc(member.bound);
    write_value(value, text);
    return text != nullptr;
}

Success allocate_sequence(PEXASequence* sequence, const MemberDescriptor& member,
                          const DDS_TypeAllocationParams_t& params) {
    return PEXASequence_initialize(sequence, member.element) != DDS_BOOLEAN_FALSE &&
           PEXASequence_set_element_allocation_params(sequence, member.element, &params) !=
               DDS_BOOLEAN_FALSE &&
           PEXASequence_set_maximum(sequence, member.element,
                                    static_cast<DDS_Long>(member.bound)) != DDS_BOOLEAN_FALSE;
}

Success allocate_member(void* value, const MemberDescriptor& member,
                        const DDS_TypeAllocationParams_t& params) {
    if (member.longs > 0) {
        std::memset(value, 0, member.longs * sizeof(DDS_Long));
        return true;
    }
    if (member.kind == MemberKind::String) {
        return allocate_string(value, member);
    }
    return member.kind == MemberKind::Sequence
               ? allocate_sequence(static_cast<PEXASequence*>(value), member, params)
               : initialise(*member.type, value, params);
}

/** Sets the pointers to NULL, so that a record can be finalised when its initialisation fails. */
void forget_buffers(const TypeTable& table, void* record) {
    for (const MemberDescriptor& member : table.rows) {
        void* value = field(record, member);
        if (member.kind == MemberKind::String) {
            write_value<char*>(value, nullptr);
        } else if (member.kind == MemberKind::Sequence) {
            PEXASequence_initialize(static_cast<PEXASequence*>(value), member.element);
        } else if (member.kind == MemberKind::Structure) {
            forget_buffers(*member.type, value);
        }
    }
}

Success copy_string(void* destination, const void* source, const MemberDescriptor& member) {
    return DDS_String_copyBounded(read_value<char*>(destination), read_value<const char*>(source),
                                  std::size_t{member.bound} + 1) != DDS_BOOLEAN_FALSE;
}

Success copy_member(void* destination, const void* source, const MemberDescriptor& member) {
    if (member.longs > 0) {
        std::memmove(destination, source, member.longs * sizeof(DDS_Long));
        return true;
    }
    if (member.kind == MemberKind::String) {
        return copy_string(destination, source, member);
    }
    if (member.kind == MemberKind::Sequence) {
        return PEXASequence_copy(static_cast<PEXASequence*>(destination), member.element,
                                 static_cast<const PEXASequence*>(source)) != nullptr;
    }
    return copy(*member.type, destination, source);
}

Success copy_field(void* destination, const void* source, const MemberDescriptor& member) {
    return copy_member(field(destination, member), field(source, member), member);
}

Success copy_union(const TypeTable& table, void* destination, const void* source) {
    const MemberDescriptor& discriminator = table.rows[0];
    const auto selected = read_value<DDS_Long>(field(source, discriminator));
    write_value(field(destination, discriminator), selected);
    const MemberDescriptor* branch = table.branch(selected);
    return branch == nullptr || copy_field(destination, source, *branch);
}

}  // namespace

Success initialise(const TypeTable& table, void* record, const DDS_TypeAllocationParams_t& params) {
    if (!table.is_mutable() || params.allocate_memory == DDS_BOOLEAN_FALSE) {
        reset(table, record);
        return true;
    }
    forget_buffers(table, record);
    for (const MemberDescriptor& member : table.rows) {
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

void reset_variable_value(void* value, const MemberDescriptor& member) {
    if (member.kind == MemberKind::Sequence) {
        const auto sequence = read_value<PEXASequence>(value);
        // It is nearly always empty. A shorter length needs no memory and cannot fail.
        if (sequence.length != 0 || sequence.sequenceInit != DDS_SEQUENCE_MAGIC) {
            static_cast<void>(
                PEXASequence_set_length(static_cast<PEXASequence*>(value), member.element, 0));
        }
    } else {
        reset(*member.type, value);
    }
}

void finalise(const TypeTable& table, void* record) {
    for (const MemberDescriptor& member : table.rows) {
        void* value = field(record, member);
        if (member.kind == MemberKind::String) {
            DDS_String_free(read_value<char*>(value));
            write_value<char*>(value, nullptr);
        } else if (member.kind == MemberKind::Sequence) {
            PEXASequence_finalize(static_cast<PEXASequence*>(value), member.element);
        } else if (member.kind == MemberKind::Structure) {
            finalise(*member.type, value);
        }
    }
}

Success copy(const TypeTable& table, void* destination, const void* source) {
    if (!table.is_mutable()) {
        std::memmove(destination, source, table.record_size);
        return true;
    }
    if (table.kind == TypeKind::Union) {
        return copy_union(table, destination, source);
    }
    for (const MemberDescriptor& member : table.rows) {
        if (!copy_field(destination, source, member)) {
            return false;
        }
    }
    return true;
}

Success copy_key(const TypeTable& table, void* destination, const void* source) {
    for (const MemberDescriptor& member : table.rows) {
        if (member.is_key && !copy_field(destination, source, member)) {
            return false;
        }
    }
    return true;
}

}  // namespace orvane::types

using orvane::types::ValueOperations;

#define DEFINE_VALUE(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                              \
        return ValueOperations<T>::operation arguments;                   \
    }
#define DEFINE_VALUES(T) ORVANE_VALUE_OPERATIONS(DEFINE_VALUE, T)

extern "C" {

ORVANE_TYPES(DEFINE_VALUES)

QEL_KX_ADMIN_CommandKind QEL_KX_ADMIN_Command_getDefaultDiscriminator() {
    return QEL_KX_SET_LOG_LEVEL;
}

}  // extern "C"
