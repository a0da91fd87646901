#include "tools/export/journal_sink.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "tools/export/journal_entry.hpp"

namespace orvane::tools {
namespace {

/// Closed at the end.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { reset(-1); }

    void reset(int number) {
        if (number_ >= 0) {
            close(number_);
        }
        number_ = number;
    }
    int number() const { return number_; }

private:
    int number_;
};

class JournalSink final : public ExportSink {
public:
    explicit JournalSink(const std::string& path)
        : path_(path), interruption_(eventfd(0, EFD_CLOEXEC)) {
        if (interruption_.number() < 0) {
            throw std::system_error(errno, std::generic_category(), "eventfd");
        }
    }

    std::string name() const override { return path_; }

    Delivery send(std::span<const ExportRecord> records) override {
        Delivery delivery;
        for (const ExportRecord& record : records) {
            const int error = send_entry(journal_entry(record.event));
            if (error != 0) {
                delivery.problem = error == EAGAIN
                                       ? fmt::format("takes nothing for {} s", longest_wait)
                                       : std::strerror(error);
            }
            if (error != 0 && error != EMSGSIZE) {
                break;
            }
            delivery.refused += error == EMSGSIZE ? 1 : 0;
            ++delivery.done;
        }
        return delivery;
    }

    void interrupt() override { eventfd_write(interruption_.number(), 1); }

private:
    static constexpr int longest_wait = 2;  ///< seconds

    /// @return 0 or an error number
    int send_entry(const std::string& entry) {
        int error = open_socket();
        while (error == 0) {
            if (::send(socket_.number(), entry.data(), entry.size(), MSG_NOSIGNAL) >= 0) {
                return 0;
            }
            error = errno;
            if (error == EAGAIN) {
                error = wait_for_room();
            } else if (error == EINTR) {
                error = 0;
            }
        }
        if (error != EAGAIN && error != EMSGSIZE) {
            // The next attempt may find another journal there.
            socket_.reset(-1);
        }
        return error;
    }

    int open_socket() {
        if (socket_.number() >= 0) {
            return 0;
        }
        socket_.reset(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path_.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
        const bool is_connected =
            socket_.number() >= 0 &&
            connect(socket_.number(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        return is_connected ? 0 : errno;
    }

    /// @return 0 when there is room, EAGAIN when there is none for long
    int wait_for_room() {
        pollfd descriptors[] = {{.fd = socket_.number(), .events = POLLOUT, .revents = 0},
                                {.fd = interruption_.number(), .events = POLLIN, .revents = 0}};
        const int ready = poll(descriptors, 2, longest_wait * 1000);
        return ready > 0 && descriptors[1].revents == 0 ? 0 : EAGAIN;
    }

    const std::string path_;
    Descriptor socket_{-1};
    Descriptor interruption_;
};

}  // namespace

std::unique_ptr<ExportSink> make_journal_sink(const std::string& path) {
    return std::make_unique<JournalSink>(path);
}

std::size_t longest_socket_path() {
    return sizeof sockaddr_un::sun_path - 1;
}

}  // namespace orvane::tools
