#include "bench/child_process.hpp"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <thread>
#include <utility>

namespace orvane::bench {
namespace {

[[noreturn]] void give_up(const std::string& what) {
    std::perror(("bench: " + what).c_str());
    std::exit(1);
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> command, const std::string& output) {
    std::array<int, 2> to_child{};
    std::array<int, 2> from_child{};
    if (pipe2(to_child.data(), O_CLOEXEC) != 0 || pipe2(from_child.data(), O_CLOEXEC) != 0) {
        give_up("pipe2");
    }
    int file = -1;
    if (!output.empty()) {
        constexpr mode_t readable_and_writable = 0666;
        file =
            open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable_and_writable);
        if (file < 0) {
            give_up(output);
        }
    }
    std::vector<char*> arguments;
    for (std::string& word : command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
        dup2(to_child[0], STDIN_FILENO);
        dup2(file < 0 ? from_child[1] : file, STDOUT_FILENO);
        if (file >= 0) {
            dup2(from_child[1], STDERR_FILENO);
        }
        execv(arguments.front(), arguments.data());
        _exit(127);
    }
    close(to_child[0]);
    close(from_child[1]);
    if (file >= 0) {
        close(file);
    }
    input_ = to_child[1];
    output_ = from_child[0];
}

ChildProcess::~ChildProcess() {
    end_input();
    close(output_);
    // A viewer does not read its input.
    interrupt();
    wait();
}

std::string ChildProcess::read_line() {
    std::string line;
    char character = 0;
    while (read(output_, &character, 1) == 1 && character != '\n') {
        line += character;
    }
    return line;
}

void ChildProcess::end_input() {
    if (const int input = std::exchange(input_, -1); input >= 0) {
        close(input);
    }
}

void ChildProcess::interrupt() const {
    if (pid_ > 0) {
        kill(pid_, SIGINT);
    }
}

Clock::time_point ChildProcess::wait_for_rest() const {
    constexpr std::chrono::milliseconds step{10};
    constexpr std::chrono::milliseconds rest{300};
    constexpr double of_a_busy_step = 0.1;
    Clock::time_point begin = Clock::now();
    Clock::time_point last = begin;
    std::chrono::nanoseconds used = processor_time();
    while (last - begin < rest) {
        std::this_thread::sleep_for(step);
        const std::chrono::nanoseconds used_now = processor_time();
        const Clock::time_point now = Clock::now();
        if (static_cast<double>((used_now - used).count()) >
            of_a_busy_step * nanoseconds_between(last, now)) {
            begin = now;
        }
        used = used_now;
        last = now;
    }
    return begin;
}

std::chrono::nanoseconds ChildProcess::processor_time() const {
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(pid_, &clock) == 0) {
        clock_gettime(clock, &time);
    }
    return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

double ChildProcess::resident_kib() const {
    return number_in("/proc/" + std::to_string(pid_) + "/status", "VmRSS");
}

int ChildProcess::wait() {
    int status = 0;
    if (const pid_t pid = std::exchange(pid_, -1); pid > 0) {
        waitpid(pid, &status, 0);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace orvane::bench
