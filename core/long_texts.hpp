/// @file long_texts.hpp
/// @brief Memory for the texts of a queue that do not fit into its elements.
#pragma once

#include <array>
#include <cstddef>

namespace orvane::core {

/// Keeps some of the memory of texts that are gone for those that come, so that a call seldom needs
/// the heap. It keeps 320 KiB at most. Guarded by the queue's mutex. All bytes 0 is a valid object
/// without memory.
class LongTexts {
public:
    /// @param length of a text, 4096 at most.
    /// @return the size of the memory for it, beside the terminator.
    static std::size_t size_for(std::size_t length) noexcept;
    /// @param size as size_for() has told.
    /// @return memory that the heap's string operations can free, or NULL.
    char* take(std::size_t size);
    /// @param size as it was taken.
    void give_back(char* text, std::size_t size);
    void free_all();

private:
    template <std::size_t Size, std::size_t Most>
    struct Shelf {
        static constexpr std::size_t size = Size;

        std::size_t count;
        std::array<char*, Most> texts;

        char* take() noexcept;
        /// @return false when there is no room.
        bool put(char* text) noexcept;
    };

    /// Calls @p action with the shelf for that size.
    template <typename Action>
    auto with_shelf(std::size_t size, Action action);

    // Messages wait for up to a tenth of a millisecond while the write thread dozes. A shelf has
    // room for what is logged meanwhile, unless that is a flood.
    Shelf<512, 256> small_;
    Shelf<1024, 64> medium_;
    Shelf<4096, 32> large_;
};

}  // namespace orvane::core
