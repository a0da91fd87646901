#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::vector<char>;

/// Bytes written out: pairs of hexadecimal digits, and text in quotes. "05 'demo' 00"
Bytes bytes(std::string_view written);

/// The other way round, for messages of failing tests.
std::string written(const Bytes& bytes);

/// `count` times the same character.
std::string repeated(char character, std::size_t count);
