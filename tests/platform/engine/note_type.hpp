/// @file note_type.hpp
/// @brief A type for the tests: a numbered note.
///
/// A payload is parameter-list encapsulation, the number (the key), the length of the text and the
/// text; a key payload ends after the number. A text that starts with '!' is corrupt.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/engine/engine.hpp"

namespace pexa::engine {

using Buffer = std::vector<std::byte>;

[[nodiscard]] Buffer note(std::uint32_t number, std::string_view text);
[[nodiscard]] Buffer note_key(std::uint32_t number);
[[nodiscard]] KeyHash note_hash(std::uint32_t number);
[[nodiscard]] std::uint32_t number_of(const KeyHash& hash);
/// @return the text of a payload, or "-" of a key payload.
[[nodiscard]] std::string text_of(std::span<const std::byte> payload);

class NoteType : public Type {
public:
    explicit NoteType(bool is_keyed = true) : keyed_(is_keyed) {}

    [[nodiscard]] const char* name() const override { return "test::Note"; }
    [[nodiscard]] bool keyed() const override { return keyed_; }
    [[nodiscard]] std::optional<KeyHash> accept(PayloadKind kind,
                                                std::span<const std::byte> payload) const override;
    [[nodiscard]] bool write_key(std::span<const std::byte> data,
                                 FunctionRef<std::byte*(std::size_t)> allocate) const override;

private:
    bool keyed_;
};

/// Writes a payload as it is.
[[nodiscard]] Status write_bytes(EntityId writer, WriteKind kind, std::uint32_t number,
                                 const Buffer& payload, Nanoseconds timestamp = 1);
[[nodiscard]] Status write_note(EntityId writer, std::uint32_t number, std::string_view text,
                                Nanoseconds timestamp = 1);
[[nodiscard]] Status dispose_note(EntityId writer, std::uint32_t number);
[[nodiscard]] Status unregister_note(EntityId writer, std::uint32_t number);

}  // namespace pexa::engine
