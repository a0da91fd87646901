/// @file note_type.hpp
/// @brief A type for the tests: a numbered note.
///
/// A payload is parameter-list encapsulation, the number (the key) and the text; a key payload ends
/// after the number.
#pragma once

#include <memory>
#include <string_view>

#include "platform/engine/engine.hpp"

namespace pexa::engine {

/// @name The parts of a note
/// @{
Bytes note(std::uint32_t number, std::string_view text);
KeyHash note_hash(std::uint32_t number);
/// @}

class NoteType : public Type {
public:
    const char* name() const override { return "test::Note"; }
    bool keyed() const override { return true; }
    std::optional<KeyHash> accept(PayloadKind kind,
                                  std::span<const std::byte> payload) const override;
    bool write_key(std::span<const std::byte> data,
                   FunctionRef<std::byte*(std::size_t)> allocate) const override;
};

Status write_note(EntityId writer, std::uint32_t number, std::string_view text);

}  // namespace pexa::engine
