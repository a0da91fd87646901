// A wire between two network namespaces that loses and delays frames, for kernels whose traffic
// control cannot.
//
//   lossy_wire NAMESPACE_A NAMESPACE_B LOSS_PERCENT DELAY_MS
//
// Makes an interface "wire" in both, prints "> up", and carries frames until its input ends. Which
// frames are lost is the same in every run. In the end prints "> carried N lost N".

#include <fcntl.h>
#include <linux/if.h>
#include <linux/if_tun.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <queue>
#include <random>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Frame {
    Clock::time_point due;
    int to = -1;
    std::vector<char> bytes;
};

/// @return the interface's descriptor, or -1
int make_interface(const std::string& network_namespace) {
    const std::string path = "/run/netns/" + network_namespace;
    const int target = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (target < 0 || setns(target, CLONE_NEWNET) != 0) {
        return -1;
    }
    close(target);
    const int interface = open("/dev/net/tun", O_RDWR | O_CLOEXEC | O_NONBLOCK);
    ifreq request{};
    std::strcpy(request.ifr_name, "wire");
    request.ifr_flags = IFF_TAP | IFF_NO_PI;
    return interface >= 0 && ioctl(interface, TUNSETIFF, &request) == 0 ? interface : -1;
}

class Wire {
public:
    Wire(std::array<int, 2> ends, double loss, Clock::duration delay)
        : ends_(ends), loses_(loss), delay_(delay) {}

    void carry_until_input_ends() {
        while (true) {
            std::array<pollfd, 3> polled{
                {{ends_[0], POLLIN, 0}, {ends_[1], POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
            poll(polled.data(), polled.size(), time_to_next());
            if (polled[2].revents != 0) {
                return;
            }
            receive(ends_[0], ends_[1]);
            receive(ends_[1], ends_[0]);
            deliver();
        }
    }

    void print_summary() const { std::printf("> carried %d lost %d\n", carried_, lost_); }

private:
    [[nodiscard]] int time_to_next() const {
        if (under_way_.empty()) {
            return -1;
        }
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(under_way_.front().due - Clock::now());
        return static_cast<int>(std::max(left.count(), std::chrono::milliseconds::rep{0}));
    }

    void receive(int from, int to) {
        std::array<char, 65536> buffer;
        for (ssize_t size = read(from, buffer.data(), buffer.size()); size > 0;
             size = read(from, buffer.data(), buffer.size())) {
            if (loses_(random_)) {
                ++lost_;
                continue;
            }
            under_way_.push({Clock::now() + delay_, to, {buffer.data(), buffer.data() + size}});
        }
    }

    void deliver() {
        while (!under_way_.empty() && under_way_.front().due <= Clock::now()) {
            const Frame& frame = under_way_.front();
            if (write(frame.to, frame.bytes.data(), frame.bytes.size()) > 0) {
                ++carried_;
            }
            under_way_.pop();
        }
    }

    std::array<int, 2> ends_;
    std::bernoulli_distribution loses_;
    Clock::duration delay_;
    std::mt19937 random_{1};
    std::queue<Frame> under_way_;
    int carried_ = 0;
    int lost_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        return EXIT_FAILURE;
    }
    const std::array<int, 2> ends{make_interface(argv[1]), make_interface(argv[2])};
    if (ends[0] < 0 || ends[1] < 0) {
        std::perror("lossy_wire");
        return EXIT_FAILURE;
    }
    std::puts("> up");
    std::fflush(stdout);
    Wire wire{ends, std::stod(argv[3]) / 100, std::chrono::milliseconds{std::stoi(argv[4])}};
    wire.carry_until_input_ends();
    wire.print_summary();
    return EXIT_SUCCESS;
}
