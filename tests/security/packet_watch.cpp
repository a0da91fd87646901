#include "tests/security/packet_watch.hpp"

#include <arpa/inet.h>
#include <linux/if_ether.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

namespace orvane::tests {
namespace {

bool start_loopback() {
    const int any = socket(AF_INET, SOCK_DGRAM, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    const bool started = ioctl(any, SIOCSIFFLAGS, &request) == 0;
    close(any);
    return started;
}

}  // namespace

std::string enter_own_network() {
    if (unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
        return std::string{"no network namespace can be made here: "} + std::strerror(errno);
    }
    return start_loopback() ? "" : std::string{"no loopback interface: "} + std::strerror(errno);
}

PacketWatch::PacketWatch(std::string text)
    : text_(std::move(text)),
      socket_(socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, htons(ETH_P_ALL))),
      looking_([this](const std::stop_token& stop) { look(stop); }) {}

void PacketWatch::look(const std::stop_token& stop) {
    std::array<char, 65536 + ETH_HLEN> packet;
    pollfd ready{socket_, POLLIN, 0};
    while (!stop.stop_requested()) {
        if (poll(&ready, 1, 100) <= 0) {
            continue;
        }
        const ssize_t length = recv(socket_, packet.data(), packet.size(), 0);
        if (length <= 0) {
            break;
        }
        has_seen_packets_ = true;
        const std::string_view seen{packet.data(), static_cast<std::size_t>(length)};
        if (seen.find(text_) != std::string_view::npos) {
            has_seen_text_ = true;
        }
    }
    close(socket_);
}

}  // namespace orvane::tests
