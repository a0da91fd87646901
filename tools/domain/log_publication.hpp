/// @file log_publication.hpp
/// @brief Publishes what other applications have logged, with their ids and times.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <set>

#include "tools/domain/entities.hpp"
#include "tools/records/application.hpp"
#include "tools/records/domain_options.hpp"
#include "tools/records/log_record.hpp"
#include "tools/records/logger_state.hpp"
#include "tools/records/result.hpp"

namespace orvane::tools {

/// Writers of log messages and of States. To viewers the applications look as if they ran. Used by
/// one thread.
///
/// No viewer is left behind: while one has much to receive yet, nothing more is published.
class LogPublication {
public:
    enum class [[nodiscard]] Written{
        yes,
        not_yet,  ///< viewers were waited for, for a tenth of a second
        failed,   ///< the middleware has said why
    };

    /// Whether the texts are as short as they have to be, and the time is in 1970 to 2038. Nothing
    /// else may be written.
    static bool is_publishable(const LogRecord& record);
    static bool is_publishable(const LoggerState& state);

    /// @return NULL when the domain cannot be joined; the middleware has said why
    static std::unique_ptr<LogPublication> open(const DomainOptions& domain);

    Written write(const LogRecord& record);

    /// Publishes the State of a logger that lives.
    Status write(const LoggerState& state);
    /// Ends a logger. Nothing happens when it has no State, or when another one lives that shares
    /// its HOST:APP: to viewers they are one.
    Status end(Application application);
    /// Ends all.
    Status end_all();

    /// Sends what has been collected to share packets. To be called before a pause.
    void flush();

    /// Sends everything, and waits until the viewers have it. @return whether they have
    bool wait_for_viewers(std::chrono::milliseconds longest);

    /// Whether somebody reads the messages.
    bool has_viewer() const;

    /// Who publishes, as other participants see it.
    const Application& identity() const { return identity_; }

private:
    explicit LogPublication(Participant participant) : participant_(std::move(participant)) {}
    Status start();

    Participant participant_;
    Application identity_;
    DDS_DataWriter* messages_ = nullptr;
    DDS_DataWriter* states_ = nullptr;
    std::set<Application> alive_;  ///< have a State
};

}  // namespace orvane::tools
