#include "tests/types/bytes.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>

Bytes bytes(std::string_view written) {
    Bytes result;
    bool quoted = false;
    for (std::size_t i = 0; i < written.size(); ++i) {
        if (written[i] == '\'') {
            quoted = !quoted;
        } else if (quoted) {
            result.push_back(written[i]);
        } else if (written[i] != ' ') {
            const std::string digits(written.substr(i, 2));
            result.push_back(static_cast<char>(std::strtol(digits.c_str(), nullptr, 16)));
            ++i;
        }
    }
    return result;
}

std::string written(const Bytes& bytes) {
    std::string result;
    for (const char byte : bytes) {
        std::array<char, 4> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X ", static_cast<unsigned char>(byte));
        result += digits.data();
    }
    return result;
}

std::string repeated(char character, std::size_t count) {
    return std::string(count, character);
}
