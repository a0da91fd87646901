#include "tests/integration/child_process.hpp"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace orvane::tests {
namespace {

struct Pipe {
    int read_end = -1;
    int write_end = -1;
};

Pipe make_pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        std::perror("pipe2");
        std::abort();
    }
    return {ends[0], ends[1]};
}

/// Runs in the new process, where only async-signal-safe functions may be called.
[[noreturn]] void become(char* const* arguments, int input, int out, int error) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(input, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(error, STDERR_FILENO);
    execvp(arguments[0], arguments);
    _exit(127);
}

}  // namespace

std::string ending(int wait_status) {
    return WIFSIGNALED(wait_status) ? "signal " + std::to_string(WTERMSIG(wait_status))
                                    : "exit " + std::to_string(WEXITSTATUS(wait_status));
}

ChildProcess::ChildProcess(const std::vector<std::string>& command) {
    start(command);
    collector_ = std::thread{[this] { collect(); }};
}

ChildProcess::~ChildProcess() {
    close_input();
    send_signal(SIGKILL);
    collector_.join();
    close(out_.descriptor);
    close(error_.descriptor);
}

void ChildProcess::start(const std::vector<std::string>& command) {
    std::vector<std::string> words{command};
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);

    // A write to a process that has ended is a result and no reason to end as well.
    std::signal(SIGPIPE, SIG_IGN);
    const Pipe input = make_pipe();
    const Pipe out = make_pipe();
    const Pipe error = make_pipe();
    pid_ = fork();
    if (pid_ < 0) {
        std::perror("fork");
        std::abort();
    }
    if (pid_ == 0) {
        // The child gets the usual behaviour back.
        std::signal(SIGPIPE, SIG_DFL);
        become(arguments.data(), input.read_end, out.write_end, error.write_end);
    }
    close(input.read_end);
    close(out.write_end);
    close(error.write_end);
    input_ = input.write_end;
    out_.descriptor = out.read_end;
    error_.descriptor = error.read_end;
}

void ChildProcess::collect() {
    std::array<pollfd, 2> streams{{{out_.descriptor, POLLIN, 0}, {error_.descriptor, POLLIN, 0}}};
    while (streams[0].fd >= 0 || streams[1].fd >= 0) {
        if (poll(streams.data(), streams.size(), -1) < 0) {
            continue;
        }
        if (streams[0].revents != 0 && !read_from(out_, &Output::out)) {
            streams[0].fd = -1;
        }
        if (streams[1].revents != 0 && !read_from(error_, &Output::error)) {
            streams[1].fd = -1;
        }
    }
    reap();
}

bool ChildProcess::read_from(Stream& stream, std::vector<std::string> Output::*lines) {
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
        (output_.*lines).push_back(stream.unfinished.substr(start, end - start));
        start = end + 1;
    }
    stream.unfinished.erase(0, start);
    changed_.notify_all();
    return true;
}

void ChildProcess::reap() {
    // Under the lock, so that no signal is sent to a number that is somebody else's by then. The
    // process has closed its output: it is ending, and the wait is short.
    const std::lock_guard lock{mutex_};
    while (waitpid(pid_, &output_.wait_status, 0) < 0 && errno == EINTR) {
    }
    output_.ended = true;
    changed_.notify_all();
}

bool ChildProcess::send_line(std::string_view line) const {
    std::string text{line};
    text += '\n';
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
    if (!output_.ended) {
        kill(pid_, number);
    }
}

bool ChildProcess::wait_until(const std::function<bool(const Output&)>& condition,
                              std::chrono::milliseconds longest) {
    std::unique_lock lock{mutex_};
    bool holds = false;
    changed_.wait_for(lock, longest, [&] {
        holds = condition(output_);
        return holds || output_.ended;
    });
    return holds;
}

std::string ChildProcess::wait_for_end(std::chrono::milliseconds longest) {
    const bool ended = wait_until([](const Output& output) { return output.ended; }, longest);
    return ended ? ending(output().wait_status) : "still running";
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
    return text + (printed.ended ? ending(printed.wait_status) : "still running");
}

}  // namespace orvane::tests
