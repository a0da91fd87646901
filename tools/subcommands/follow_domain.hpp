/// @file follow_domain.hpp
/// @brief The events of a domain for a subcommand, until it ends.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/records/domain_options.hpp"
#include "tools/records/event.hpp"

namespace orvane::tools {

/// A subcommand that gets the events of a domain.
class DomainFollower {
public:
    virtual ~DomainFollower() = default;

    /// The domain has been joined.
    /// @return an exit status when the subcommand cannot begin, nothing when it goes on
    virtual std::optional<int> begin() { return std::nullopt; }

    /// Whether the follower is interested in a logger.
    virtual bool wants(const Logger& logger) const = 0;

    /// Tells the user something that concerns the whole domain, on the standard error.
    virtual void warn(const std::string& text) = 0;

    /// @return an exit status when the subcommand ends, nothing when it goes on
    virtual std::optional<int> take(std::vector<Event> events) = 0;

    /// Ends the subcommand, before the domain is left.
    /// @param seconds the time that it took
    /// @param earlier messages of the wanted loggers that were logged before, and did not come
    /// @return the exit status of the process
    virtual int finish(int status, double seconds, std::uint64_t earlier) = 0;

    /// Ends what @ref finish has not waited for. After two seconds the process ends without it.
    virtual void let_go() {}
};

/// Joins a domain and hands its events over until the time is over, or SIGINT or SIGTERM comes.
/// @param seconds nothing for no limit
/// @return the exit status of the process
int follow_domain(const DomainOptions& domain, std::optional<double> seconds,
                  DomainFollower& follower);

}  // namespace orvane::tools
