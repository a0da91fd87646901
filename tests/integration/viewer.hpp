/// @file viewer.hpp
/// @brief The tool's viewer as a process of a test.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/integration/child_process.hpp"

namespace orvane::tests {

/// A message as the viewer shows it.
struct ViewedMessage {
    std::int64_t nanoseconds = 0;  ///< when it was logged, since 1970-01-01 UTC
    std::int32_t level = 0;
    std::string application;
    std::string category;
    std::string text;
};

/// Runs `orvane` with arguments of the test's choice.
/// @param launcher a command that runs the program, such as one that enters a namespace
std::vector<std::string> tool_command(const std::vector<std::string>& arguments,
                                      const std::vector<std::string>& launcher = {});

/// `orvane tail --json` of one domain.
class Viewer {
public:
    explicit Viewer(int domain_id, const std::vector<std::string>& options = {},
                    const std::vector<std::string>& launcher = {});

    /// The messages of one category that have arrived so far.
    std::vector<ViewedMessage> messages(const std::string& category);

    /// Waits until @p condition holds for the messages of all categories.
    bool wait_until(const std::function<bool(const std::vector<ViewedMessage>&)>& condition,
                    std::chrono::milliseconds longest);
    /// Waits until there are @p count messages of @p category.
    bool wait_for(std::size_t count, const std::string& category,
                  std::chrono::milliseconds longest);

    ChildProcess& process() { return process_; }

private:
    void parse(const Output& output);

    ChildProcess process_;
    std::vector<ViewedMessage> messages_;
    std::size_t parsed_lines_ = 0;
};

}  // namespace orvane::tests
