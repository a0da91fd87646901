#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <utility>

namespace orvane::test {

/// What @p action writes to standard output, by whatever thread.
template <typename Action>
[[nodiscard]] std::string output_of(Action&& action) {
    testing::internal::CaptureStdout();
    std::forward<Action>(action)();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

}  // namespace orvane::test
