#include "tests/integration/child_process.hpp"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

#include <gtest/gtest.h>

namespace orvane::tests {
namespace {

/// The two ends of a pipe, the one to read from first.
using Pipe = std::array<int, 2>;

Pipe make_pipe() {
    Pipe ends{};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    return ends;
}

/// Runs in the new process, where only async-signal-safe functions may be called.
[[noreturn]] void become(char* const* arguments, int input, int out, int error) {
    std::signal(SIGPIPE, SIG_DFL);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(input, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(error, STDERR_FILENO);
    execvp(arguments[0], arguments);
    _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(Words command) {
    std::vector<char*> arguments;
    for (std::string& word : command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);

    // A write to a process that has ended must fail, and not end the test.
    std::signal(SIGPIPE, SIG_IGN);
    const Pipe input = make_pipe();
    const Pipe out = make_pipe();
    const Pipe error = make_pipe();
    pid_ = fork();
    EXPECT_GE(pid_, 0);
    if (pid_ == 0) {
        become(arguments.data(), input[0], out[1], error[1]);
    }
    for (const int end_of_child : {input[0], out[1], error[1]}) {
        close(end_of_child);
    }
    input_ = input[1];
    collector_ = std::jthread{[this, out, error] {
        std::thread errors{[&] { collect(error[0], &Output::error); }};
        collect(out[0], &Output::out);
        errors.join();
        reap();
    }};
}

ChildProcess::~ChildProcess() {
    close_input();
    send_signal(SIGKILL);
}

void ChildProcess::collect(int descriptor, std::vector<std::string> Output::*lines) {
    std::string unfinished;
    std::array<char, 65536> buffer{};
    for (ssize_t count = 0; (count = read(descriptor, buffer.data(), buffer.size())) > 0;) {
        unfinished.append(buffer.data(), static_cast<std::size_t>(count));
        const std::lock_guard lock{mutex_};
        for (std::size_t end = 0; (end = unfinished.find('\n')) != std::string::npos;) {
            (output_.*lines).push_back(unfinished.substr(0, end));
            unfinished.erase(0, end + 1);
        }
        changed_.notify_all();
    }
    close(descriptor);
}

void ChildProcess::reap() {
    // Under the lock, so that no signal is sent to a number that belongs to another process by
    // then. The process has closed its output: it is ending, and the wait is short.
    const std::lock_guard lock{mutex_};
    int status = 0;
    while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    output_.ending = WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                         : "exit " + std::to_string(WEXITSTATUS(status));
    changed_.notify_all();
}

bool ChildProcess::send_line(std::string_view line) const {
    const std::string text = std::string{line} + '\n';
    return write(input_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

void ChildProcess::close_input() {
    if (input_ >= 0) {
        close(input_);
        input_ = -1;
    }
}

void ChildProcess::send_signal(int number) {
    const std::lock_guard lock{mutex_};
    if (output_.ending.empty()) {
        kill(pid_, number);
    }
}

bool ChildProcess::wait_until(const std::function<bool(const Output&)>& condition,
                              std::chrono::milliseconds longest) {
    std::unique_lock lock{mutex_};
    bool holds = false;
    changed_.wait_for(lock, longest, [&] {
        holds = condition(output_);
        return holds || !output_.ending.empty();
    });
    return holds;
}

bool ChildProcess::wait_for_line(const std::string& line, std::chrono::milliseconds longest) {
    return wait_until(
        [&](const Output& output) { return std::ranges::count(output.out, line) > 0; }, longest);
}

std::string ChildProcess::wait_for_end(std::chrono::milliseconds longest) {
    const bool ended =
        wait_until([](const Output& output) { return !output.ending.empty(); }, longest);
    return ended ? output().ending : "still running";
}

Output ChildProcess::output() {
    const std::lock_guard lock{mutex_};
    return output_;
}

std::string ChildProcess::transcript() {
    const Output printed = output();
    std::string text;
    for (const std::string& line : printed.out) {
        text += line + '\n';
    }
    for (const std::string& line : printed.error) {
        text += "[stderr] " + line + '\n';
    }
    return text + (printed.ending.empty() ? "still running" : printed.ending);
}

}  // namespace orvane::tests
