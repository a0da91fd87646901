/// @file administration.hpp
/// @brief The administration topics of a domain: States, command requests and responses.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/records/command.hpp"
#include "tools/records/logger_state.hpp"
#include "tools/records/result.hpp"

namespace orvane::tools {

/// A sample of a State, or the end of its writer.
struct StateUpdate {
    Application application;
    std::optional<LoggerState> state;  ///< none: only the liveness has changed
    bool alive = true;
};

struct CommandResponse {
    Application application;  ///< of the logger that answers
    Application originator;   ///< of the request
    std::int32_t invocation = 0;
    QEL_KX_ADMIN_CommandResult result = QEL_KX_COMMAND_RESULT_OK;
    std::string message;
};

struct Arrivals {
    std::vector<StateUpdate> states;
    std::vector<CommandResponse> responses;
};

class Administration {
public:
    using Clock = std::chrono::steady_clock;

    /// @return NULL when the domain cannot be joined; the middleware has said why
    static std::unique_ptr<Administration> open(std::int32_t domain_id);
    virtual ~Administration() = default;

    /// The clock of @ref wait.
    virtual Clock::time_point now() const = 0;

    /// Waits until there is news, the time is over, or @ref interrupt was called.
    virtual void wait(std::chrono::milliseconds longest) = 0;

    /// Ends this wait and all later ones. May be called from any thread.
    virtual void interrupt() = 0;
    virtual bool interrupted() const = 0;

    /// Everything that has arrived. Responses may be to the requests of other tools.
    /// @return nothing when a reader failed
    virtual Result<Arrivals> take() = 0;

    /// The applications whose State writers are matched. Their States may arrive later.
    virtual std::set<Application> state_writers() = 0;

    /// The applications whose readers of command requests are matched.
    virtual std::set<Application> command_readers() = 0;

    /// The originator in the requests that are sent.
    virtual Application identity() const = 0;

    /// Writes a command request.
    virtual Status send(const Application& target, std::int32_t invocation,
                        const Command& command) = 0;
};

}  // namespace orvane::tools
