#include "core/long_texts.hpp"

#include "pexa/string.h"

namespace orvane::core {

template <std::size_t Most>
bool LongTexts::Shelf<Most>::keeps(char* text) noexcept {
    if (count == Most) {
        return false;
    }
    texts[count] = text;
    ++count;
    return true;
}

template <std::size_t Most>
void LongTexts::Shelf<Most>::free_all() {
    while (char* text = take()) {
        DDS_String_free(text);
    }
}

char* LongTexts::take(std::size_t size) {
    char* text = size == small ? small_.take() : large_.take();
    return text == nullptr ? DDS_String_alloc(size) : text;
}

void LongTexts::give_back(char* text, std::size_t size) {
    if (!(size == small ? small_.keeps(text) : large_.keeps(text))) {
        DDS_String_free(text);
    }
}

void LongTexts::free_all() {
    small_.free_all();
    large_.free_all();
}

}  // namespace orvane::core
