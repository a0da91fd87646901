#include "core/long_texts.hpp"

#include "pexa/string.h"
#include "platform/internal/prefetch.hpp"

namespace orvane::core {

template <std::size_t Size, std::size_t Most>
char* LongTexts::Shelf<Size, Most>::take() noexcept {
    if (count == 0) {
        return nullptr;
    }
    --count;
    // A thread that logs a long text will soon log another one.
    constexpr std::size_t cache_line = 64;
    for (std::size_t offset = 0; count > 0 && offset < Size; offset += cache_line) {
        pexa::prefetch_for_writing(texts[count - 1] + offset);
    }
    return texts[count];
}

template <std::size_t Size, std::size_t Most>
bool LongTexts::Shelf<Size, Most>::put(char* text) noexcept {
    if (count == Most) {
        return false;
    }
    texts[count] = text;
    ++count;
    return true;
}

template <typename Action>
auto LongTexts::with_shelf(std::size_t size, Action action) {
    if (size == decltype(small_)::size) {
        return action(small_);
    }
    return size == decltype(medium_)::size ? action(medium_) : action(large_);
}

std::size_t LongTexts::size_for(std::size_t length) noexcept {
    if (length <= decltype(small_)::size) {
        return decltype(small_)::size;
    }
    return length <= decltype(medium_)::size ? decltype(medium_)::size : decltype(large_)::size;
}

char* LongTexts::take(std::size_t size) {
    char* text = with_shelf(size, [](auto& shelf) { return shelf.take(); });
    return text == nullptr ? DDS_String_alloc(size) : text;
}

void LongTexts::give_back(char* text, std::size_t size) {
    if (!with_shelf(size, [text](auto& shelf) { return shelf.put(text); })) {
        DDS_String_free(text);
    }
}

void LongTexts::free_all() {
    const auto free_shelf = [](auto& shelf) {
        while (char* text = shelf.take()) {
            DDS_String_free(text);
        }
    };
    free_shelf(small_);
    free_shelf(medium_);
    free_shelf(large_);
}

}  // namespace orvane::core
