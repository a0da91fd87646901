#include "platform/engine/cyclone/domain_resources.hpp"

#include <fcntl.h>
#include <pthread.h>
#include <sched.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <mutex>

#include "platform/internal/signals.hpp"
#include "platform/internal/standard_error.hpp"

namespace pexa::engine::cyclone {

namespace {

// Three sockets to receive and one for each of up to four interfaces to send, two ends of a pipe,
// and a file of the configuration. With one interface and without a file there are six.
constexpr std::size_t most_descriptors = 10;

// gc, dq.builtins, dq.user, tev, recv, recvMC, recvUC, and one more with some configurations.
constexpr std::size_t most_threads = 8;

bool is_lack(int error) {
    return error == EMFILE || error == ENFILE || error == ENOMEM;
}

/// @return how many descriptors could be had that select() takes, which Cyclone uses; enough where
/// that cannot be found out
std::size_t free_descriptors() {
    std::array<int, most_descriptors> taken{};
    std::size_t count = 0;
    std::size_t usable = 0;
    bool is_known = true;
    while (count < taken.size()) {
        // The cheapest thing that has a descriptor and an open file of its own.
        const int descriptor = eventfd(0, EFD_CLOEXEC);
        if (descriptor < 0) {
            is_known = is_lack(errno);
            break;
        }
        taken[count++] = descriptor;
        usable += descriptor < FD_SETSIZE ? 1 : 0;
    }
    std::for_each_n(taken.begin(), count, close);
    return is_known ? usable : most_descriptors;
}

/// Threads that live at the same time.
class Crowd {
public:
    Crowd() {
        // With the attributes that Cyclone gives its threads.
        const ApplicationSignalsBlocked signals;
        const std::lock_guard until_all_are_there(gate_);
        for (Thread& thread : threads_) {
            thread.crowd = this;
            if (pthread_create(&thread.handle, nullptr, pass, &thread) != 0) {
                break;
            }
            ++count_;
        }
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;
    ~Crowd() {
        for (std::size_t i = 0; i < count_; ++i) {
            pthread_join(threads_[i].handle, nullptr);
            await_release_of(threads_[i].id);
        }
    }

    std::size_t size() const { return count_; }

private:
    struct Thread {
        Crowd* crowd;
        pthread_t handle;
        pid_t id;
    };

    static void* pass(void* self) {
        auto& thread = *static_cast<Thread*>(self);
        thread.id = gettid();
        const std::lock_guard lock(thread.crowd->gate_);
        return nullptr;
    }

    /// A thread counts for a moment longer than the join of it takes.
    static void await_release_of(pid_t thread) {
        constexpr int patience = 10'000;
        for (int i = 0; i < patience && syscall(SYS_tgkill, getpid(), thread, 0) == 0; ++i) {
            sched_yield();
        }
    }

    std::mutex gate_;
    std::array<Thread, most_threads> threads_{};
    std::size_t count_ = 0;
};

/// To make threads for a try takes as long as to start the domain. So it is done only where the
/// process may have few.
bool has_few_threads() {
    constexpr rlim_t plenty = 4096;
    rlimit limit{};
    return getrlimit(RLIMIT_NPROC, &limit) != 0 || limit.rlim_cur < plenty;
}

bool is_enough(dds_domainid_t domain, const char* what, std::size_t needed, std::size_t found) {
    if (found >= needed) {
        return true;
    }
    // Not a line of the log, which may be silent.
    std::array<char, 200> line{};
    const int length =
        std::snprintf(line.data(), line.size(),
                      "pexac: domain %u cannot be started: it may need %zu %s, and %zu can be had",
                      domain, needed, what, found);
    write_to_standard_error(0, std::string_view(line.data(), static_cast<std::size_t>(length)));
    return false;
}

}  // namespace

bool has_resources_for(dds_domainid_t domain) {
    const std::size_t descriptors = free_descriptors();
    const bool may_lack_threads = has_few_threads();
    if (descriptors >= most_descriptors && !may_lack_threads) {
        return true;
    }
    // While there is no participant, the question starts and stops Cyclone, so it comes late.
    return dds_lookup_participant(domain, nullptr, 0) > 0 ||
           (is_enough(domain, "file descriptors below 1024", most_descriptors, descriptors) &&
            (!may_lack_threads || is_enough(domain, "threads", most_threads, Crowd().size())));
}

StandardDescriptorsHeld::StandardDescriptorsHeld() {
    constexpr std::array standard{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
    const auto is_open = [](int descriptor) { return fcntl(descriptor, F_GETFD) >= 0; };
    while (count_ < held_.size() && !std::all_of(standard.begin(), standard.end(), is_open)) {
        // The lowest descriptor that is free comes first.
        const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        if (descriptor > STDERR_FILENO) {
            close(descriptor);
        }
        if (descriptor < 0 || descriptor > STDERR_FILENO) {
            return;
        }
        held_[count_++] = descriptor;
    }
}

StandardDescriptorsHeld::~StandardDescriptorsHeld() {
    std::for_each_n(held_.begin(), count_, close);
}

}  // namespace pexa::engine::cyclone
