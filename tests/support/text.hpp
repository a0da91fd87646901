// What the code under test prints and reports, and bytes written out.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pexa/log.h"

namespace orvane::test {

/// @return what @p action writes to standard output, by whatever thread.
template <typename Action>
std::string output_of(Action&& action) {
    testing::internal::CaptureStdout();
    std::forward<Action>(action)();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

/// @return a line of the library's own.
inline std::string line(std::string_view context, std::string_view text,
                        std::string_view level = "Error") {
    return "KX " + std::string(level) + ": " + std::string(context) + ": " + std::string(text) +
           "\n";
}

inline std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    while (count-- > 0) {
        result += text;
    }
    return result;
}

/// Catches what the middleware's log writes for as long as it lives; all levels of all modules
/// pass.
class Reports {
public:
    Reports();
    ~Reports();

    /// @return the texts since the last call.
    std::vector<std::string> take() { return std::exchange(texts_, {}); }

private:
    std::vector<std::string> texts_;
};

using Bytes = std::vector<char>;

/// @return bytes that are written as pairs of hexadecimal digits and as text in quotes:
/// "05 'demo' 00".
Bytes bytes(std::string_view written);

/// @return the bytes as pairs of hexadecimal digits, for comparisons and messages.
std::string hexadecimal(const void* data, std::size_t size);
inline std::string hexadecimal(const Bytes& bytes) {
    return hexadecimal(bytes.data(), bytes.size());
}

}  // namespace orvane::test
