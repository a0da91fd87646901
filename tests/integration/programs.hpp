// The tool and the program test_peer as processes of a test.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/integration/child_process.hpp"
#include "tests/integration/peer_protocol.hpp"

namespace orvane::tests {

/// The DDS domain of the test, which CTest sets in the environment.
std::string domain();

/// `orvane` with these arguments, in the test's domain if it is told to be.
/// @param launcher a command that runs the program, such as one that enters a namespace
Words tool_command(const Words& arguments, const Words& launcher = {});
Words tool_in_domain(Words arguments, const Words& launcher = {});
/// test_peer.cpp, which explains the modes and their options, in the domain of the test.
Words peer_command(const std::string& mode, const Words& options = {}, const Words& launcher = {});

/// A message as the viewer shows it.
struct ViewedMessage {
    std::int64_t nanoseconds = 0;  ///< when it was logged, since 1970-01-01 UTC
    std::int32_t level = 0;
    std::string application;
    std::string category;
    std::string text;
};

/// `orvane tail --json`.
class Viewer {
public:
    explicit Viewer(const Words& options = {}, const Words& launcher = {});

    /// The messages of one category that have arrived so far.
    std::vector<ViewedMessage> messages(const std::string& category);
    /// Waits until @p condition holds for the messages of all categories.
    bool wait_until(const std::function<bool(const std::vector<ViewedMessage>&)>& condition,
                    std::chrono::milliseconds longest = patience);
    /// Waits until there are @p count messages of @p category.
    bool wait_for(std::size_t count, const std::string& category,
                  std::chrono::milliseconds longest = patience);

    ChildProcess& process() { return process_; }

private:
    ChildProcess process_;
    std::vector<ViewedMessage> messages_;
    std::size_t parsed_lines_ = 0;
};

/// A message as the application logged it.
struct LoggedMessage {
    std::int32_t level = 0;
    std::string text;
    /// The wall clock before and after the call; equal when the application gave the time itself.
    std::int64_t before = 0;
    std::int64_t after = 0;
};

/// The mode "log" of test_peer.
class Application {
public:
    explicit Application(const Words& options = {}, const Words& launcher = {})
        : process_{peer_command("log", options, launcher)} {}

    /// Sends a command whose answer comes later.
    void start(const std::string& command) { process_.send_line(command); }
    /// @return the answer to the oldest command not answered yet, or "no answer"
    std::string answer();
    std::string ask(const std::string& command);
    /// Logs a message of any bytes. @return whether the application answered
    bool say(int level, const std::string& category, const std::string& text);

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
