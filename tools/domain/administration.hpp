/// @file administration.hpp
/// @brief The loggers of a domain: their States, commands to them, their answers.
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

namespace orvane::tools {

/// News of one logger.
struct StateReport {
    Application application;
    std::optional<LoggerState> state;  ///< none: only the liveness has changed
    bool alive = true;
};

struct CommandAnswer {
    Application application;  ///< who answers
    Application originator;   ///< who had asked
    std::int32_t invocation = 0;
    QEL_KX_ADMIN_CommandResult result = QEL_KX_COMMAND_RESULT_OK;
    std::string message;
};

struct Arrivals {
    std::vector<StateReport> states;
    std::vector<CommandAnswer> answers;
};

class Administration {
public:
    using Clock = std::chrono::steady_clock;

    /// @return NULL when the domain cannot be joined; the middleware has said why
    static std::unique_ptr<Administration> open(std::int32_t domain_id);
    virtual ~Administration() = default;

    /// The time as @ref wait lets it pass.
    virtual Clock::time_point now() const = 0;

    /// Waits until there is news, the time is over, or @ref interrupt was called.
    virtual void wait(std::chrono::milliseconds longest) = 0;

    /// Ends this wait and all later ones. May be called from any thread.
    virtual void interrupt() = 0;
    virtual bool interrupted() const = 0;

    /// Everything that has arrived; answers may be to others too.
    /// @return nothing when a reader failed
    [[nodiscard]] virtual std::optional<Arrivals> take() = 0;

    /// Who publishes a State here, also before the State itself has arrived.
    virtual std::set<Application> publishers() = 0;

    /// Who is known to receive commands.
    virtual std::set<Application> receivers() = 0;

    /// What stands as the originator in the commands that are sent.
    virtual Application identity() const = 0;

    /// @return false when the command could not be written
    [[nodiscard]] virtual bool send(const Application& target, std::int32_t invocation,
                                    const Command& command) = 0;
};

}  // namespace orvane::tools
