#include "platform/base/memory/string.hpp"

#include <cstdint>
#include <cstring>

#include "pexa/osapi.h"
#include "pexa/string.h"
#include "platform/base/result.hpp"

namespace pexa::base {

namespace {

int lower(char character) {
    const int code = static_cast<unsigned char>(character);
    return code >= 'A' && code <= 'Z' ? code - 'A' + 'a' : code;
}

}  // namespace

char* allocate_string(size_t length) {
    if (length == SIZE_MAX) {
        return nullptr;
    }
    auto* text = static_cast<char*>(QELOsapiHeap_allocateBytes(length + 1));
    if (text != nullptr) {
        std::memset(text, 0, length + 1);
    }
    return text;
}

char* duplicate_string(const char* text) {
    if (text == nullptr) {
        return nullptr;
    }
    const size_t size = std::strlen(text) + 1;
    auto* copy = static_cast<char*>(QELOsapiHeap_allocateBytes(size));
    return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

void free_string(char* text) {
    QELOsapiHeap_freeBytes(text);
}

char* replace_string(char** text, const char* replacement) {
    char* copy = text == nullptr ? nullptr : duplicate_string(replacement);
    if (copy == nullptr) {
        return nullptr;
    }
    free_string(*text);
    *text = copy;
    return copy;
}

Status copy_bounded(char* destination, const char* source, size_t maximum_size) {
    if (destination == nullptr || source == nullptr) {
        return Status::bad_parameter;
    }
    const size_t length = strnlen(source, maximum_size);
    if (length == maximum_size) {
        return Status::bad_parameter;
    }
    // The source may be the destination itself or a tail of it.
    std::memmove(destination, source, length + 1);
    return Status::ok;
}

int compare_without_case(const char* left, const char* right) {
    if (left == nullptr || right == nullptr) {
        return static_cast<int>(left != nullptr) - static_cast<int>(right != nullptr);
    }
    while (*left != '\0' && lower(*left) == lower(*right)) {
        ++left;
        ++right;
    }
    return lower(*left) - lower(*right);
}

}  // namespace pexa::base

char* DDS_String_alloc(size_t length) {
    return pexa::base::allocate_string(length);
}

char* DDS_String_dup(const char* text) {
    return pexa::base::duplicate_string(text);
}

void DDS_String_free(char* text) {
    pexa::base::free_string(text);
}

char* DDS_String_replace(char** text, const char* replacement) {
    return pexa::base::replace_string(text, replacement);
}

DDS_Boolean DDS_String_copyBounded(char* destination, const char* source, size_t maximumSize) {
    return pexa::base::to_boolean(pexa::base::copy_bounded(destination, source, maximumSize));
}

int MOSKString_iCompare(const char* left, const char* right) {
    return pexa::base::compare_without_case(left, right);
}
