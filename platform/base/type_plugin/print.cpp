#include <cstdio>

#include "pexa/type_plugin.h"

namespace {

void print_label(const char* label, DDS_UnsignedLong level) {
    QELPrint_indent(level);
    if (label != nullptr) {
        std::printf("%s: ", label);
    }
}

}  // namespace

void QELPrint_indent(DDS_UnsignedLong level) {
    for (DDS_UnsignedLong done = 0; done < level; ++done) {
        std::fputs("   ", stdout);
    }
}

void QELPrint_long(DDS_Long value, const char* label, DDS_UnsignedLong level) {
    print_label(label, level);
    std::printf("%d\n", value);
}

void QELPrint_string(const char* value, const char* label, DDS_UnsignedLong level) {
    print_label(label, level);
    if (value == nullptr) {
        std::puts("NULL");
    } else {
        std::printf("\"%s\"\n", value);
    }
}

void QELPrint_enum(DDS_Long value, const char* name, const char* label, DDS_UnsignedLong level) {
    print_label(label, level);
    if (name == nullptr) {
        std::printf("%d\n", value);
    } else {
        std::printf("%s (%d)\n", name, value);
    }
}
