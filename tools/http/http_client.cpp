#include "tools/http/http_client.hpp"

#include <fmt/format.h>
#include <httplib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <utility>

namespace orvane::tools {
namespace {

/// The socket that the library uses at present, by a descriptor that only this object closes.
class SharedSocket {
public:
    SharedSocket() = default;
    SharedSocket(const SharedSocket&) = delete;
    SharedSocket& operator=(const SharedSocket&) = delete;
    ~SharedSocket() { release(); }

    void hold(int descriptor) {
        const std::lock_guard lock(mutex_);
        release();
        descriptor_ = dup(descriptor);
        ++count_;
        if (is_interrupted_) {
            shutdown(descriptor_, SHUT_RDWR);
        }
    }
    void interrupt() {
        const std::lock_guard lock(mutex_);
        is_interrupted_ = true;
        if (descriptor_ >= 0) {
            // Also ends the wait for a connection.
            shutdown(descriptor_, SHUT_RDWR);
        }
    }
    bool is_interrupted() const {
        const std::lock_guard lock(mutex_);
        return is_interrupted_;
    }
    std::size_t count() const { return count_; }

private:
    void release() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    mutable std::mutex mutex_;
    int descriptor_ = -1;
    std::size_t count_ = 0;  ///< sockets that there have been
    bool is_interrupted_ = false;
};

std::unique_ptr<httplib::ClientImpl> make_client(const HttpUrl& url,
                                                 const std::string& authorities) {
    if (!url.is_secure) {
        return std::make_unique<httplib::ClientImpl>(url.host, url.port);
    }
    auto client = std::make_unique<httplib::SSLClient>(url.host, url.port);
    if (!authorities.empty()) {
        client->set_ca_cert_path(authorities);
    }
    return client;
}

}  // namespace

class HttpClient::Connection {
public:
    explicit Connection(Options options)
        : options_(std::move(options)), client_(make_client(options_.url, options_.authorities)) {
        client_->set_keep_alive(true);
        client_->set_tcp_nodelay(true);
        client_->set_connection_timeout(options_.longest_wait);
        client_->set_read_timeout(options_.longest_wait);
        client_->set_write_timeout(options_.longest_wait);
        client_->set_socket_options([this](int descriptor) { socket_.hold(descriptor); });
    }

    std::optional<HttpAnswer> post(const std::string& json, std::string& problem) {
        constexpr std::size_t longest_body = 64U << 10U;
        if (socket_.is_interrupted()) {
            problem = "interrupted";
            return std::nullopt;
        }
        HttpAnswer answer;
        httplib::Request request;
        request.method = "POST";
        request.path = options_.url.target;
        request.body = json;
        request.set_header("Content-Type", "application/json");
        request.set_header("User-Agent", "orvane/" ORVANE_VERSION);
        for (const HttpHeader& header : options_.headers) {
            request.headers.erase(header.name);
            request.set_header(header.name, header.value);
        }
        request.content_receiver = [&](const char* bytes, std::size_t count, std::uint64_t /*at*/,
                                       std::uint64_t /*of*/) {
            answer.body.append(bytes, std::min(count, longest_body - answer.body.size()));
            return answer.body.size() < longest_body;
        };
        httplib::Response response;
        auto error = httplib::Error::Success;
        const std::size_t sockets = socket_.count();
        const auto start = std::chrono::steady_clock::now();
        const bool is_answered = client_->send(request, response, error);
        // Canceled: the body is longer than is wanted.
        if (!is_answered && error != httplib::Error::Canceled) {
            const bool is_slow = std::chrono::steady_clock::now() - start >= options_.longest_wait;
            problem = text_of(error, is_slow, socket_.count() > sockets);
            return std::nullopt;
        }
        answer.status = response.status;
        answer.retry_after = response.get_header_value("Retry-After");
        return answer;
    }

    void interrupt() { socket_.interrupt(); }

private:
    std::string text_of(httplib::Error error, bool is_slow, bool has_tried) const {
        const std::string wait = fmt::format("within {} s", options_.longest_wait.count());
        switch (error) {
            case httplib::Error::Connection:
            case httplib::Error::ConnectionTimeout:
                return !has_tried ? fmt::format("the host {} is not known", options_.url.host)
                       : is_slow  ? "no connection " + wait
                                  : "no connection: refused, or no way to the host";
            case httplib::Error::Write:
            case httplib::Error::Read:
                return is_slow ? "no answer " + wait : "the connection ended before an answer";
            case httplib::Error::SSLConnection:
                return "no secure connection";
            case httplib::Error::SSLLoadingCerts:
                return "could not read the certificates of the authorities";
            case httplib::Error::SSLServerVerification:
                return "the server's certificate is not trusted, or for another host";
            default:
                return httplib::to_string(error);
        }
    }

    const Options options_;
    SharedSocket socket_;
    std::unique_ptr<httplib::ClientImpl> client_;
};

HttpClient::HttpClient(Options options)
    : connection_(std::make_unique<Connection>(std::move(options))) {}

HttpClient::~HttpClient() = default;

std::optional<HttpAnswer> HttpClient::post(const std::string& json, std::string& problem) {
    return connection_->post(json, problem);
}

void HttpClient::interrupt() {
    connection_->interrupt();
}

}  // namespace orvane::tools
