#include "tests/platform/engine/note_type.hpp"

#include <algorithm>
#include <cstring>

namespace pexa::engine {

namespace {

constexpr std::byte header[4] = {std::byte{0}, std::byte{3}, std::byte{0}, std::byte{0}};
constexpr std::size_t key_size = 8;
constexpr std::size_t text_offset = 12;

void append_number(std::uint32_t number, Buffer& out) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
        out.push_back(static_cast<std::byte>(number >> shift));
    }
}

std::uint32_t number_at(std::span<const std::byte> payload, std::size_t offset) {
    std::uint32_t number = 0;
    if (payload.size() >= offset + sizeof number) {
        std::memcpy(&number, payload.data() + offset, sizeof number);
    }
    return number;
}

}  // namespace

Buffer note_key(std::uint32_t number) {
    Buffer out(header, header + sizeof header);
    append_number(number, out);
    return out;
}

Buffer note(std::uint32_t number, std::string_view text) {
    Buffer out = note_key(number);
    append_number(static_cast<std::uint32_t>(text.size()), out);
    for (const char character : text) {
        out.push_back(static_cast<std::byte>(character));
    }
    return out;
}

KeyHash note_hash(std::uint32_t number) {
    KeyHash hash{};
    for (std::size_t i = 0; i < 4; ++i) {
        hash[i] = static_cast<std::byte>(number >> (24 - 8 * i));
    }
    return hash;
}

std::uint32_t number_of(const KeyHash& hash) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8U | static_cast<std::uint32_t>(hash[i]);
    }
    return number;
}

std::string text_of(std::span<const std::byte> payload) {
    if (payload.size() < text_offset) {
        return "-";
    }
    const std::size_t length =
        std::min<std::size_t>(number_at(payload, key_size), payload.size() - text_offset);
    return {reinterpret_cast<const char*>(payload.data()) + text_offset, length};
}

std::optional<KeyHash> NoteType::accept(PayloadKind kind,
                                        std::span<const std::byte> payload) const {
    if (payload.size() < key_size || !std::equal(header, header + 2, payload.data())) {
        return std::nullopt;
    }
    if (kind == PayloadKind::data && text_of(payload).front() == '!') {
        return std::nullopt;
    }
    return note_hash(number_at(payload, sizeof header));
}

bool NoteType::write_key(std::span<const std::byte> data,
                         FunctionRef<std::byte*(std::size_t)> allocate) const {
    std::byte* const out = allocate(key_size);
    if (out == nullptr) {
        return false;
    }
    std::copy_n(data.data(), key_size, out);
    return true;
}

Status write_bytes(EntityId writer, WriteKind kind, std::uint32_t number, const Buffer& payload,
                   Nanoseconds timestamp) {
    return write(
        writer, kind, note_hash(number), payload.size(),
        [&](std::span<std::byte> out) {
            std::copy(payload.begin(), payload.end(), out.begin());
            return true;
        },
        timestamp);
}

Status write_note(EntityId writer, std::uint32_t number, std::string_view text,
                  Nanoseconds timestamp) {
    return write_bytes(writer, WriteKind::data, number, note(number, text), timestamp);
}

Status dispose_note(EntityId writer, std::uint32_t number) {
    return write_bytes(writer, WriteKind::dispose, number, note_key(number));
}

Status unregister_note(EntityId writer, std::uint32_t number) {
    return write_bytes(writer, WriteKind::unregister, number, note_key(number));
}

}  // namespace pexa::engine
