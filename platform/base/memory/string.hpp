/// @file string.hpp
/// @brief Heap strings. The contracts stand in pexa/string.h.
#pragma once

#include <cstddef>

#include "platform/internal/status.hpp"

namespace pexa::base {

char* allocate_string(size_t length);
char* duplicate_string(const char* text);
void free_string(char* text);
char* replace_string(char** text, const char* replacement);
/// @return ok, or bad_parameter for NULL or a source that does not fit.
Status copy_bounded(char* destination, const char* source, size_t maximum_size);
int compare_without_case(const char* left, const char* right);

}  // namespace pexa::base
