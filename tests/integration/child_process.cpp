#include "tests/integration/child_process.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace orvane::tests {
namespace {

/// The two ends of a pipe, the one to read from first.
using Pipe = std::array<int, 2>;

void require(bool success, const char* operation) {
    if (!success) {
        throw std::system_error{errno, std::system_category(), operation};
    }
}

Pipe make_pipe() {
    Pipe ends{};
    require(pipe2(ends.data(), O_CLOEXEC) == 0, "pipe2");
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

ChildProcess::ChildProcess(std::vector<std::string> command) {
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
    require(pid_ >= 0, "fork");
    if (pid_ == 0) {
        become(arguments.data(), input[0], out[1], error[1]);
    }
    for (const int end_of_child : {input[0], out[1], error[1]}) {
        close(end_of_child);
    }
    input_ = input[1];
    streams_[0].descriptor = out[0];
    streams_[1].descriptor = error[0];
    collector_ = std::thread{[this] { collect(); }};
}

ChildProcess::~ChildProcess() {
    close_input();
    send_signal(SIGKILL);
    collector_.join();
    for (const Stream& stream : streams_) {
        close(stream.descriptor);
    }
}

void ChildProcess::collect() {
    std::array<pollfd, 2> polled{
        {{streams_[0].descriptor, POLLIN, 0}, {streams_[1].descriptor, POLLIN, 0}}};
    while (polled[0].fd >= 0 || polled[1].fd >= 0) {
        if (poll(polled.data(), polled.size(), -1) < 0) {
            continue;
        }
        for (std::size_t i = 0; i < polled.size(); ++i) {
            if (polled[i].revents != 0 && !read_from(streams_[i])) {
                polled[i] = {-1, 0, 0};
            }
        }
    }
    reap();
}

bool ChildProcess::read_from(Stream& stream) {
    std::array<char, 65536> buffer{};
    const ssize_t count = read(stream.descriptor, buffer.data(), buffer.size());
    if (count <= 0) {
        return count < 0 && errno == EINTR;
    }
    stream.unfinished.append(buffer.data(), static_cast<std::size_t>(count));
    const std::lock_guard lock{mutex_};
    std::size_t start = 0;
    for (std::size_t end = stream.unfinished.find('\n'); end != std::string::npos;
         end = stream.unfinished.find('\n', start)) {
        (output_.*stream.lines).push_back(stream.unfinished.substr(start, end - start));
        start = end + 1;
    }
    stream.unfinished.erase(0, start);
    changed_.notify_all();
    return true;
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

std::string ChildProcess::wait_for_end(std::chrono::milliseconds longest) {
    wait_until([](const Output& output) { return !output.ending.empty(); }, longest);
    const std::string ending = output().ending;
    return ending.empty() ? "still running" : ending;
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
