// What goes over the loopback interface, for whoever looks at it.
#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace orvane::tests {

/// Gives the process and its later children a network of their own, in which it may look at
/// packets, with nothing but a loopback interface. To be called before there are threads.
/// @return what stands in the way, empty when it was done
std::string enter_own_network();

/// Looks for a text in all packets, as long as the object lives.
class PacketWatch {
public:
    explicit PacketWatch(std::string text);

    bool has_seen_text() const { return has_seen_text_; }
    bool has_seen_packets() const { return has_seen_packets_; }
    void forget() { has_seen_text_ = has_seen_packets_ = false; }

private:
    void look(const std::stop_token& stop);

    const std::string text_;
    int socket_;
    std::atomic<bool> has_seen_text_ = false;
    std::atomic<bool> has_seen_packets_ = false;
    std::jthread looking_;
};

}  // namespace orvane::tests
