#include "tests/integration/watchdog.hpp"

#include <execinfo.h>
#include <semaphore.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

namespace orvane::tests {
namespace {

// The one signal that no thread of the engine blocks.
constexpr int dump_signal = SIGXCPU;

sem_t stack_dumped;

void dump_own_stack(int /*signal*/) {
    void* frames[64];
    backtrace_symbols_fd(frames, backtrace(frames, std::size(frames)), STDERR_FILENO);
    sem_post(&stack_dumped);
}

/// The first use of backtrace() allocates, which a signal handler must not.
void load_unwinder() {
    void* frame = nullptr;
    backtrace(&frame, 1);
}

std::string name_of(const std::filesystem::path& thread) {
    std::ifstream file{thread / "comm"};
    std::string name;
    std::getline(file, name);
    return name;
}

void dump_stack_of(const std::filesystem::path& thread) {
    const std::string id = thread.filename();
    std::fprintf(stderr, "thread %s %s\n", id.c_str(), name_of(thread).c_str());
    if (syscall(SYS_tgkill, getpid(), std::stoi(id), dump_signal) != 0) {
        return;
    }
    std::timespec deadline{};
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += 2;
    sem_timedwait(&stack_dumped, &deadline);
}

void dump_all_stacks() {
    struct sigaction action {};
    action.sa_handler = dump_own_stack;
    sigaction(dump_signal, &action, nullptr);
    for (const auto& thread : std::filesystem::directory_iterator{"/proc/self/task"}) {
        dump_stack_of(thread.path());
    }
}

}  // namespace

Watchdog::Watchdog(std::chrono::milliseconds patience) : patience_(patience) {
    sem_init(&stack_dumped, 0, 0);
    load_unwinder();
    thread_ = std::thread{&Watchdog::watch, this};
}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock{mutex_};
        over_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void Watchdog::all_is_well() {
    {
        const std::lock_guard lock{mutex_};
        well_ = true;
    }
    changed_.notify_one();
}

void Watchdog::watch() {
    std::unique_lock lock{mutex_};
    while (!over_) {
        well_ = false;
        if (!changed_.wait_for(lock, patience_, [&] { return well_ || over_; })) {
            std::fprintf(stderr, "nothing has gone on for %lld ms\n",
                         static_cast<long long>(patience_.count()));
            dump_all_stacks();
            std::abort();
        }
    }
}

}  // namespace orvane::tests
