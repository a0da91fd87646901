#include "platform/base/type_plugin/print.hpp"

#include <cstdio>

#include "pexa/type_plugin.h"

namespace pexa::base {

void print_indent(DDS_UnsignedLong level) {
    for (DDS_UnsignedLong done = 0; done < level; ++done) {
        std::fputs("   ", stdout);
    }
}

namespace {

void print_label(const char* label, DDS_UnsignedLong level) {
    print_indent(level);
    if (label != nullptr) {
        std::printf("%s: ", label);
    }
}

void print_long(DDS_Long value, const char* label, DDS_UnsignedLong level) {
    print_label(label, level);
    std::printf("%d\n", value);
}

void print_string(const char* value, const char* label, DDS_UnsignedLong level) {
    print_label(label, level);
    if (value == nullptr) {
        std::puts("NULL");
    } else {
        std::printf("\"%s\"\n", value);
    }
}

void print_enum(DDS_Long value, const char* name, const char* label, DDS_UnsignedLong level) {
    print_label(label, level);
    if (name == nullptr) {
        std::printf("%d\n", value);
    } else {
        std::printf("%s (%d)\n", name, value);
    }
}

}  // namespace

}  // namespace pexa::base

void QELPrint_indent(DDS_UnsignedLong level) {
    pexa::base::print_indent(level);
}

void QELPrint_long(DDS_Long value, const char* label, DDS_UnsignedLong level) {
    pexa::base::print_long(value, label, level);
}

void QELPrint_string(const char* value, const char* label, DDS_UnsignedLong level) {
    pexa::base::print_string(value, label, level);
}

void QELPrint_enum(DDS_Long value, const char* name, const char* label, DDS_UnsignedLong level) {
    pexa::base::print_enum(value, name, label, level);
}
