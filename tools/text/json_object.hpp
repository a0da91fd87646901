/// @file json_object.hpp
/// @brief Writes JSON objects and arrays (RFC 8259).
#pragma once

#include <fmt/format.h>

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace orvane::tools {

class JsonArray;

/// An object as ASCII text, which grows by a member at a time. Each byte that is not UTF-8 becomes
/// U+FFFD.
class JsonObject {
public:
    JsonObject() { text_.reserve(usual_size); }

    /// @param name needs no escape; the object must not have it yet
    void add(std::string_view name, std::string_view value);
    void add(std::string_view name, JsonObject value) {
        add_name(name);
        text_ += value.take();
    }
    void add(std::string_view name, JsonArray value);
    void add(std::string_view name, std::integral auto value) {
        add_name(name);
        if constexpr (std::is_same_v<decltype(value), bool>) {
            text_ += value ? "true" : "false";
        } else {
            const fmt::format_int digits{value};
            text_.append(digits.data(), digits.size());
        }
    }
    void add(std::string_view name, std::floating_point auto value) {
        add_name(name);
        text_ += fmt::to_string(value);
    }

    /// @return the object, which must not be used any more
    std::string take() {
        text_ += text_.empty() ? "{}" : "}";
        return std::move(text_);
    }

private:
    static constexpr std::size_t usual_size = 512;

    void add_name(std::string_view name);

    std::string text_;  ///< without the brace at the end
};

/// An array of objects.
class JsonArray {
public:
    void add(JsonObject value) {
        text_ += text_.empty() ? '[' : ',';
        text_ += value.take();
    }

    /// @return the array, which must not be used any more
    std::string take() {
        text_ += text_.empty() ? "[]" : "]";
        return std::move(text_);
    }

private:
    std::string text_;  ///< without the bracket at the end
};

inline void JsonObject::add(std::string_view name, JsonArray value) {
    add_name(name);
    text_ += value.take();
}

}  // namespace orvane::tools
