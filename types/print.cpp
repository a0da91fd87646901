#include "types/print.hpp"

#include <algorithm>
#include <array>
#include <cstdio>

#include "types/record_access.hpp"

namespace orvane::types {

namespace {

/** Room for "[4294967295]" and for "_u." before a branch's name. */
using Label = std::array<char, 64>;

void print_heading(const char* description, DDS_UnsignedLong indent) {
    QELPrint_indent(indent);
    if (description == nullptr) {
        std::fputs("\n", stdout);
    } else {
        std::printf("%s:\n", description);
    }
}

void print_enumeration(const TypeTable& table, DDS_Long value, const char* label,
                       DDS_UnsignedLong indent) {
    const char* name =
        table.has_enumerator(value) ? table.enumerators[static_cast<std::size_t>(value)] : nullptr;
    QELPrint_enum(value, name, label, indent);
}

void print_element(const MemberDescriptor& member, const void* element, std::size_t index,
                   DDS_UnsignedLong indent) {
    Label label;
    std::snprintf(label.data(), label.size(), "[%zu]", index);
    print(*member.type, element, label.data(), indent);
}

void print_array(const MemberDescriptor& member, const void* array, const char* label,
                 DDS_UnsignedLong indent) {
    print_heading(label, indent);
    for (std::size_t i = 0; i < member.bound; ++i) {
        print_element(member, array_element(array, member, i), i, indent + 1);
    }
}

void print_sequence(const MemberDescriptor& member, const void* sequence, const char* label,
                    DDS_UnsignedLong indent) {
    const SequenceView view(sequence, member);
    print_heading(label, indent);
    for (std::size_t i = 0; i < static_cast<std::size_t>(std::max(view.length(), 0)); ++i) {
        print_element(member, view.element(i), i, indent + 1);
    }
}

void print_member(const MemberDescriptor& member, const void* record, const char* label,
                  DDS_UnsignedLong indent) {
    const void* value = field(record, member);
    switch (member.kind) {
        case MemberKind::Long:
            QELPrint_long(read_value<DDS_Long>(value), label, indent);
            return;
        case MemberKind::Enumeration:
            print_enumeration(*member.type, read_value<DDS_Long>(value), label, indent);
            return;
        case MemberKind::String:
            QELPrint_string(read_value<const char*>(value), label, indent);
            return;
        case MemberKind::Structure:
            print(*member.type, value, label, indent);
            return;
        case MemberKind::Array:
            print_array(member, value, label, indent);
            return;
        case MemberKind::Sequence:
            print_sequence(member, value, label, indent);
            return;
    }
}

void print_union(const TypeTable& table, const void* record, DDS_UnsignedLong indent) {
    const MemberDescriptor& discriminator = table.rows[0];
    print_member(discriminator, record, discriminator.name, indent);
    const MemberDescriptor* branch =
        table.branch(read_value<DDS_Long>(field(record, discriminator)));
    if (branch != nullptr) {
        Label label;
        std::snprintf(label.data(), label.size(), "_u.%s", branch->name);
        print_member(*branch, record, label.data(), indent);
    }
}

}  // namespace

void print(const TypeTable& table, const void* sample, const char* description,
           DDS_UnsignedLong indent) {
    if (sample != nullptr && table.kind == TypeKind::Enumeration) {
        print_enumeration(table, read_value<DDS_Long>(sample), description, indent);
        return;
    }
    print_heading(description, indent);
    if (sample == nullptr) {
        std::fputs("NULL\n", stdout);
    } else if (table.kind == TypeKind::Union) {
        print_union(table, sample, indent + 1);
    } else {
        for (const MemberDescriptor& member : table.rows) {
            print_member(member, sample, member.name, indent + 1);
        }
    }
}

}  // namespace orvane::types
