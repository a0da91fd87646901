/// @file http_client.hpp
/// @brief Requests to a service on the web.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/http/http_header.hpp"
#include "tools/http/http_url.hpp"

namespace orvane::tools {

struct HttpAnswer {
    int status = 0;
    std::string retry_after{};  ///< the header field, empty when it is missing
    std::string body{};         ///< its first 64 KiB
};

/// Keeps the connection from one request to the next. With https, a server is accepted whose
/// certificate is for its host and was issued by an authority that is trusted.
class HttpClient {
public:
    struct Options {
        HttpUrl url;
        std::vector<HttpHeader> headers{};
        std::string authorities{};  ///< file with certificates in PEM; empty for the system's
        std::chrono::seconds longest_wait{
            10};  ///< for a connection, and for each part of an answer
    };

    explicit HttpClient(Options options);
    ~HttpClient();

    /// Sends a request with a body in JSON. Called by one thread.
    /// @param problem the reason, when there is no answer
    std::optional<HttpAnswer> post(const std::string& json, std::string& problem);

    /// Makes a request that is running fail, and later ones at once. May be called by any thread.
    /// The look-up of a host's name is not interrupted.
    void interrupt();

private:
    class Connection;
    std::unique_ptr<Connection> connection_;
};

}  // namespace orvane::tools
