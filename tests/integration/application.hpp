/// @file application.hpp
/// @brief The program test_peer as a process of a test, above all as an application that logs.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tests/integration/child_process.hpp"
#include "tests/integration/viewer.hpp"

namespace orvane::tests {

/// Longest wait for anything that is bound to happen.
inline constexpr std::chrono::seconds patience{60};

/// Runs test_peer.cpp, which explains the modes and their options.
/// @param launcher a command that runs the program, such as one that enters a namespace
std::vector<std::string> peer_command(const std::string& mode, int domain_id,
                                      const std::vector<std::string>& options = {},
                                      const std::vector<std::string>& launcher = {});

/// A message as the application logged it.
struct LoggedMessage {
    std::int32_t level = 0;
    std::string text;
    /// The wall clock before and after the call; equal when the application gave the time itself.
    std::int64_t before = 0;
    std::int64_t after = 0;
};

/// The mode "log".
class Application {
public:
    explicit Application(int domain_id, const std::vector<std::string>& options = {},
                         const std::vector<std::string>& launcher = {})
        : process_{peer_command("log", domain_id, options, launcher)} {}

    /// Sends a command whose answer comes later.
    void start(const std::string& command) { process_.send_line(command); }
    /// @return the answer to the oldest command not answered yet, or "no answer"
    std::string answer();
    std::string ask(const std::string& command);
    /// Logs a message of any bytes. @return whether the application answered
    bool say(int level, std::string_view category, std::string_view text);

    /// What has been logged by commands that were answered.
    std::vector<LoggedMessage> logged();
    /// Lines that the library printed.
    std::vector<std::string> diagnostics();

    ChildProcess& process() { return process_; }

private:
    ChildProcess process_;
    std::size_t answers_ = 0;
};

/// Logs until the viewer receives the messages of the application.
bool connect(Application& application, Viewer& viewer);

/// Waits until the viewer has everything that the application has logged, by a last message that
/// comes behind late or doubled ones too. @return whether it came
bool await_all(Application& application, Viewer& viewer);

/// Compares the messages that were logged and seen: each once, in order, and each with a time
/// within its call. @return the first difference, empty when there is none
std::string difference(const std::vector<LoggedMessage>& logged,
                       const std::vector<ViewedMessage>& viewed);

}  // namespace orvane::tests
