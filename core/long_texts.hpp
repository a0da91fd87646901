/// @file long_texts.hpp
/// @brief Memory for the texts of a queue that do not fit into its elements.
#pragma once

#include <array>
#include <cstddef>

namespace orvane::core {

/// Keeps some of the memory of texts that are gone for those that come, so that a call seldom needs
/// the heap. Guarded by the queue's mutex. All bytes 0 is a valid object without memory.
class LongTexts {
public:
    /// Of memory, beside the terminator.
    static constexpr std::size_t small = 512;
    static constexpr std::size_t large = 4096;

    /// The sizes that memory has. @param length of a text, @ref large at most.
    static std::size_t size_for(std::size_t length) noexcept {
        return length <= small ? small : large;
    }
    /// @param size @ref small or @ref large.
    /// @return memory that the heap's string operations can free, or NULL.
    char* take(std::size_t size);
    /// @param size as it was taken.
    void give_back(char* text, std::size_t size);
    void free_all();

private:
    // A thread that dozes leaves so many messages behind that come a microsecond apart. Both kinds
    // take up 128 KiB at most.
    template <std::size_t Most>
    struct Shelf {
        std::size_t count;
        std::array<char*, Most> texts;

        char* take() noexcept { return count == 0 ? nullptr : texts[--count]; }
        bool keeps(char* text) noexcept;
        void free_all();
    };

    Shelf<256> small_;
    Shelf<32> large_;
};

}  // namespace orvane::core
