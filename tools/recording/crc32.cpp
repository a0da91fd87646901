#include "tools/recording/crc32.hpp"

#include <array>
#include <cstddef>

namespace orvane::tools {
namespace {

using Remainders = std::array<std::uint32_t, 256>;

/// Bytes that are divided at a time.
constexpr std::size_t width = 8;

/// The remainders of each byte with as many zero bytes behind it as the number of the table.
constexpr std::array<Remainders, width> tables = [] {
    constexpr std::uint32_t reversed_polynomial = 0xEDB88320;
    std::array<Remainders, width> made{};
    for (std::uint32_t byte = 0; byte < made[0].size(); ++byte) {
        std::uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) {
            rest = (rest >> 1U) ^ ((rest & 1U) != 0 ? reversed_polynomial : 0);
        }
        made[0][byte] = rest;
    }
    for (std::size_t zeros = 1; zeros < made.size(); ++zeros) {
        for (std::size_t byte = 0; byte < made[0].size(); ++byte) {
            const std::uint32_t rest = made[zeros - 1][byte];
            made[zeros][byte] = (rest >> 8U) ^ made[0][rest & 0xFFU];
        }
    }
    return made;
}();

std::uint32_t word_of(std::string_view bytes) {
    std::uint32_t word = 0;
    for (std::size_t byte = 0; byte < sizeof word; ++byte) {
        word |= std::uint32_t{static_cast<unsigned char>(bytes[byte])} << (8 * byte);
    }
    return word;
}

/// @param zeros bytes behind the word
std::uint32_t remainder_of(std::uint32_t word, std::size_t zeros) {
    return tables[zeros + 3][word & 0xFFU] ^ tables[zeros + 2][word >> 8U & 0xFFU] ^
           tables[zeros + 1][word >> 16U & 0xFFU] ^ tables[zeros][word >> 24U];
}

}  // namespace

std::uint32_t crc32(std::string_view bytes, std::uint32_t before) {
    std::uint32_t rest = ~before;
    for (; bytes.size() >= width; bytes.remove_prefix(width)) {
        rest = remainder_of(rest ^ word_of(bytes), 4) ^ remainder_of(word_of(bytes.substr(4)), 0);
    }
    for (const char byte : bytes) {
        rest = tables[0][(rest ^ static_cast<unsigned char>(byte)) & 0xFFU] ^ (rest >> 8U);
    }
    return ~rest;
}

}  // namespace orvane::tools
