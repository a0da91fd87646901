#include "tests/platform/engine/note_type.hpp"

#include <algorithm>

namespace pexa::engine {

namespace {
constexpr std::size_t header_size = 4;
constexpr std::size_t key_size = header_size + 4;
}  // namespace

Bytes note(std::uint32_t number, std::string_view text) {
    Bytes payload{std::byte{0}, std::byte{3}, std::byte{0}, std::byte{0}};
    for (unsigned shift = 0; shift < 32; shift += 8) {
        payload.push_back(static_cast<std::byte>(number >> shift));
    }
    for (const char character : text) {
        payload.push_back(static_cast<std::byte>(character));
    }
    return payload;
}

KeyHash note_hash(std::uint32_t number) {
    const Bytes key = note(number, "");
    KeyHash hash{};
    std::reverse_copy(key.begin() + header_size, key.end(), hash.begin());
    return hash;
}

std::optional<KeyHash> NoteType::accept(PayloadKind /*kind*/,
                                        std::span<const std::byte> payload) const {
    if (payload.size() < key_size) {
        return std::nullopt;
    }
    KeyHash hash{};
    std::reverse_copy(payload.begin() + header_size, payload.begin() + key_size, hash.begin());
    return hash;
}

bool NoteType::write_key(std::span<const std::byte> data,
                         FunctionRef<std::byte*(std::size_t)> allocate) const {
    std::byte* const out = allocate(key_size);
    if (out != nullptr) {
        std::copy_n(data.data(), key_size, out);
    }
    return out != nullptr;
}

Status write_note(EntityId writer, std::uint32_t number, std::string_view text) {
    const Bytes payload = note(number, text);
    const auto fill = [&](std::span<std::byte> out) {
        std::copy(payload.begin(), payload.end(), out.begin());
        return true;
    };
    return write(writer, WriteKind::data, note_hash(number), payload.size(), fill, 1);
}

}  // namespace pexa::engine
