#include "tools/recording/crc32.hpp"

#include <array>

namespace orvane::tools {
namespace {

/// The remainders of all bytes.
constexpr std::array<std::uint32_t, 256> remainders = [] {
    constexpr std::uint32_t reversed_polynomial = 0xEDB88320;
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest >> 1U) ^ ((rest & 1U) != 0 ? reversed_polynomial : 0);
        }
        table[byte] = rest;
    }
    return table;
}();

}  // namespace

std::uint32_t crc32(std::string_view bytes, std::uint32_t before) {
    std::uint32_t rest = ~before;
    for (const char byte : bytes) {
        rest = remainders[(rest ^ static_cast<unsigned char>(byte)) & 0xFFU] ^ (rest >> 8U);
    }
    return ~rest;
}

}  // namespace orvane::tools
