/// @file application.hpp
/// @brief An application that logs, as a process of a test.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/integration/child_process.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {

/// Longest wait for anything that is bound to happen.
inline constexpr std::chrono::seconds patience{60};

/// A message as the application logged it.
struct LoggedMessage {
    std::int32_t level = 0;
    std::string text;
    /// The wall clock before and after the call; equal when the application gave the time itself.
    std::int64_t before = 0;
    std::int64_t after = 0;
};

/// The program of logging_peer.cpp, which explains its commands.
class Application {
public:
    /// @param launcher a command that runs the program, such as one that enters a namespace
    explicit Application(int domain_id, const std::vector<std::string>& options = {},
                         const std::vector<std::string>& launcher = {});

    /// Sends a command whose answer comes later.
    void start(const std::string& command);
    /// @return the answer to the oldest command not answered yet, or "no answer"
    std::string answer();
    std::string ask(const std::string& command);

    /// What has been logged by commands that were answered.
    std::vector<LoggedMessage> logged();
    /// Lines that the library printed.
    std::vector<std::string> diagnostics();

    ChildProcess& process() { return process_; }

private:
    ChildProcess process_;
    std::size_t answers_ = 0;
};

/// Makes sure that the viewer receives what the application logs.
[[nodiscard]] bool connect(Application& application, Viewer& viewer);

/// Waits until the viewer has everything that the application has logged, by a last message that
/// comes behind late or doubled ones too. @return whether it came
[[nodiscard]] bool await_all(Application& application, Viewer& viewer);

/// Compares what was logged with what was seen: each message once, in order, and each with a time
/// within its call. @return the first difference, empty when there is none
std::string difference(const std::vector<LoggedMessage>& logged,
                       const std::vector<ViewedMessage>& viewed);

}  // namespace orvane::tests
