#include "pexa/string.h"

#include <cstdint>
#include <cstring>

#include "pexa/osapi.h"

namespace {

int lower(char character) {
    const int code = static_cast<unsigned char>(character);
    return code >= 'A' && code <= 'Z' ? code - 'A' + 'a' : code;
}

}  // namespace

char* DDS_String_alloc(size_t length) {
    if (length == SIZE_MAX) {
        return nullptr;
    }
    auto* text = static_cast<char*>(QELOsapiHeap_allocateBytes(length + 1));
    if (text != nullptr) {
        std::memset(text, 0, length + 1);
    }
    return text;
}

char* DDS_String_dup(const char* text) {
    if (text == nullptr) {
        return nullptr;
    }
    const size_t size = std::strlen(text) + 1;
    auto* copy = static_cast<char*>(QELOsapiHeap_allocateBytes(size));
    return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

void DDS_String_free(char* text) {
    QELOsapiHeap_freeBytes(text);
}

char* DDS_String_replace(char** text, const char* replacement) {
    char* copy = text == nullptr ? nullptr : DDS_String_dup(replacement);
    if (copy == nullptr) {
        return nullptr;
    }
    DDS_String_free(*text);
    *text = copy;
    return copy;
}

DDS_Boolean DDS_String_copyBounded(char* destination, const char* source, size_t maximumSize) {
    if (destination == nullptr || source == nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    const size_t length = strnlen(source, maximumSize);
    if (length == maximumSize) {
        return DDS_BOOLEAN_FALSE;
    }
    // The source may be the destination itself or a tail of it.
    std::memmove(destination, source, length + 1);
    return DDS_BOOLEAN_TRUE;
}

int MOSKString_iCompare(const char* left, const char* right) {
    if (left == nullptr || right == nullptr) {
        return static_cast<int>(left != nullptr) - static_cast<int>(right != nullptr);
    }
    while (*left != '\0' && lower(*left) == lower(*right)) {
        ++left;
        ++right;
    }
    return lower(*left) - lower(*right);
}
