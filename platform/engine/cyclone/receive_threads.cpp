#include "platform/engine/cyclone/receive_threads.hpp"

#include <netinet/in.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <utility>

#include "platform/engine/cyclone/never_destroyed.hpp"
#include "platform/internal/signals.hpp"

namespace pexa::engine::cyclone {

namespace {

EntityTable<const Receivers>& receivers() {
    static NeverDestroyed<EntityTable<const Receivers>> table;
    return table.get();
}

/// Sends what Cyclone sends, one byte, which is no RTPS message and therefore ignored.
void wake(const CycloneReceiver& receiver) {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) {
        return;
    }
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(receiver.port);
    std::memcpy(&to.sin_addr, receiver.group, sizeof to.sin_addr);
    if (to.sin_addr.s_addr == 0) {
        to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    } else {
        // A host takes a group's datagrams from an interface that has a member there, and then
        // gives them to all sockets of the port that are members anywhere.
        ip_mreq membership{};
        membership.imr_multiaddr = to.sin_addr;
        membership.imr_interface.s_addr = htonl(INADDR_LOOPBACK);
        setsockopt(descriptor, IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership, sizeof membership);
        setsockopt(descriptor, IPPROTO_IP, IP_MULTICAST_IF, &membership.imr_interface,
                   sizeof membership.imr_interface);
    }
    const char byte = 0;
    static_cast<void>(sendto(descriptor, &byte, sizeof byte, MSG_DONTWAIT,
                             reinterpret_cast<const sockaddr*>(&to), sizeof to));
    close(descriptor);
}

/// Wakes receivers again and again, but not at first, from a thread of its own.
class Waker {
public:
    explicit Waker(const Receivers& receivers) : receivers_(receivers) {
        const ApplicationSignalsBlocked signals;
        // Without the thread a deletion that would wait for ever does so. No std::thread, because
        // a deletion needs no memory of ours.
        has_thread_ = pthread_create(&thread_, nullptr, run, this) == 0;
    }
    Waker(const Waker&) = delete;
    Waker& operator=(const Waker&) = delete;
    ~Waker() {
        {
            const std::lock_guard lock(mutex_);
            deleted_ = true;
        }
        changed_.notify_one();
        if (has_thread_) {
            pthread_join(thread_, nullptr);
        }
    }

private:
    static void* run(void* waker) {
        constexpr std::chrono::milliseconds usual_deletion{500};
        pthread_setname_np(pthread_self(), "pexa.wake");
        auto& self = *static_cast<Waker*>(waker);
        std::unique_lock lock(self.mutex_);
        while (!self.changed_.wait_for(lock, usual_deletion, [&] { return self.deleted_; })) {
            for (std::uint32_t i = 0; i < self.receivers_.count; ++i) {
                wake(self.receivers_.all[i]);
            }
        }
        return nullptr;
    }

    const Receivers& receivers_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool deleted_ = false;
    pthread_t thread_{};
    bool has_thread_ = false;
};

}  // namespace

void ReceiversNote::write(dds_entity_t participant, dds_domainid_t domain) noexcept {
    receivers_->count = pexa_cyclone_receivers(domain, receivers_->all.data());
    if (receivers_->count > 0) {
        receivers().add(participant, std::move(entry_));
    }
}

dds_return_t delete_participant(dds_entity_t participant) {
    const auto found = receivers().find(participant);
    if (!found) {
        return dds_delete(participant);
    }
    dds_return_t result = DDS_RETCODE_OK;
    {
        const Waker waker(*found);
        result = dds_delete(participant);
    }
    if (result == DDS_RETCODE_OK) {
        receivers().remove(participant);
    }
    return result;
}

}  // namespace pexa::engine::cyclone
