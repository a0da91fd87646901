#include <cstdio>
#include <cstring>

#include "pexa/typecode.h"
#include "platform/base/type_plugin/print.hpp"
#include "platform/base/type_plugin/type_code.hpp"

namespace pexa::base {

namespace {

constexpr char scope_separator[] = "::";

void print_line(DDS_UnsignedLong level, const char* text) {
    print_indent(level);
    std::puts(text);
}

// The format may end the line.
template <class... Arguments>
void print_format(DDS_UnsignedLong level, const char* format, Arguments... arguments) {
    print_indent(level);
    std::printf(format, arguments...);
}

const char* extensibility_annotation(DDS_ExtensibilityKind kind) {
    switch (kind) {
        case DDS_FINAL_EXTENSIBILITY:
            return "@final";
        case DDS_EXTENSIBLE_EXTENSIBILITY:
            return "@appendable";
        case DDS_MUTABLE_EXTENSIBILITY:
            return "@mutable";
    }
    return "";
}

// Prints the type in the form in which a member refers to it.
void print_reference(const DDS_TypeCode* type) {
    if (type == nullptr) {
        std::fputs("any", stdout);
    } else if (type->kind == DDS_TK_STRING) {
        std::printf("string<%u>", type->bound);
    } else if (type->kind == DDS_TK_SEQUENCE) {
        std::fputs("sequence<", stdout);
        print_reference(type->element);
        std::printf(", %u>", type->bound);
    } else if (type->kind == DDS_TK_ARRAY) {
        print_reference(type->element);
    } else {
        std::fputs(type->name == nullptr ? "any" : type->name, stdout);
    }
}

// The dimension of an array stands behind the declared name.
void print_dimension(const DDS_TypeCode* type) {
    if (type != nullptr && type->kind == DDS_TK_ARRAY) {
        std::printf("[%u]", type->bound);
    }
}

void print_declaration(const DDS_TypeCodeMember& member) {
    print_reference(member.type);
    std::printf(" %s", member.name);
    print_dimension(member.type);
    std::puts(";");
}

void print_struct_member(const DDS_TypeCodeMember& member, DDS_UnsignedLong level) {
    const bool is_key = member.flags == DDS_TYPECODE_KEY_MEMBER;
    print_format(level, "@id(%d) %s", member.id, is_key ? "@key " : "");
    print_declaration(member);
}

void print_branch(const DDS_TypeCode& type, const DDS_TypeCodeMember& member,
                  DDS_UnsignedLong level) {
    const DDS_TypeCodeMember* label = find_member(type.element, member.label);
    if (label != nullptr) {
        print_format(level, "case %s:\n", label->name);
    } else {
        print_format(level, "case %d:\n", member.label);
    }
    print_format(level + 1, "@id(%d) ", member.id);
    print_declaration(member);
}

void print_heading(const DDS_TypeCode& type, const char* own_name, DDS_UnsignedLong level) {
    if (type.kind == DDS_TK_ENUM) {
        print_format(level, "enum %s {\n", own_name);
        return;
    }
    print_line(level, extensibility_annotation(type.extensibility));
    if (type.kind == DDS_TK_UNION) {
        print_format(level, "union %s switch (", own_name);
        print_reference(type.element);
        std::puts(") {");
    } else {
        print_format(level, "struct %s {\n", own_name);
    }
}

void print_definition(const DDS_TypeCode& type, const char* own_name, DDS_UnsignedLong level) {
    print_heading(type, own_name, level);
    for (DDS_UnsignedLong index = 0; index < type.memberCount; ++index) {
        const DDS_TypeCodeMember& member = type.members[index];
        if (type.kind == DDS_TK_STRUCT) {
            print_struct_member(member, level + 1);
        } else if (type.kind == DDS_TK_UNION) {
            print_branch(type, member, level + 1);
        } else {
            const char* separator = index + 1 < type.memberCount ? "," : "";
            print_format(level + 1, "@value(%d) %s%s\n", member.id, member.name, separator);
        }
    }
    print_line(level, "};");
}

// Each scope of the name becomes a module around the rest.
void print_in_modules(const DDS_TypeCode& type, const char* name, DDS_UnsignedLong level) {
    const char* separator = std::strstr(name, scope_separator);
    if (separator == nullptr) {
        print_definition(type, name, level);
        return;
    }
    print_format(level, "module %.*s {\n", static_cast<int>(separator - name), name);
    print_in_modules(type, separator + std::strlen(scope_separator), level + 1);
    print_line(level, "};");
}

void print_idl(const DDS_TypeCode* self, DDS_UnsignedLong indent) {
    if (self == nullptr) {
        return;
    }
    const bool is_defined =
        self->kind == DDS_TK_STRUCT || self->kind == DDS_TK_UNION || self->kind == DDS_TK_ENUM;
    if (is_defined && self->name != nullptr) {
        print_in_modules(*self, self->name, indent);
        return;
    }
    // The others have no definition, so they are printed as a member would refer to them.
    print_indent(indent);
    print_reference(self);
    print_dimension(self);
    std::puts("");
}

}  // namespace

}  // namespace pexa::base

void DDS_TypeCode_printIDL(const DDS_TypeCode* self, DDS_UnsignedLong indent) {
    pexa::base::print_idl(self, indent);
}
