/// @file administration.hpp
/// @brief The administration topics of a domain: States, command requests and responses.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/domain/participant_census.hpp"
#include "tools/records/command.hpp"
#include "tools/records/domain_options.hpp"
#include "tools/records/logger_statistics.hpp"
#include "tools/records/process.hpp"
#include "tools/records/result.hpp"
#include "tools/records/state_update.hpp"

namespace orvane::tools {

struct CommandResponse {
    Application application;  ///< of the logger that answers
    Application originator;   ///< of the request
    std::int32_t invocation = 0;
    QEL_KX_ADMIN_CommandResult result = QEL_KX_COMMAND_RESULT_OK;
    std::string message;
};

struct Arrivals {
    std::vector<std::pair<Application, Process>>
        processes;  ///< of applications not heard of before
    std::vector<StateUpdate> states;
    std::vector<LoggerStatistics> statistics;
    std::vector<CommandResponse> responses;
};

class Administration {
public:
    using Clock = std::chrono::steady_clock;

    /// What the tool does in the domain. A participant that may only read cannot command.
    enum class Access { read, command };

    /// @param failure says what could not be made, when nothing is returned; the middleware has
    /// said why
    static std::unique_ptr<Administration> open(const DomainOptions& domain, Access access,
                                                std::string& failure);
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

    /// The applications whose readers of command requests are matched; none for @ref Access::read.
    virtual std::set<Application> command_readers() = 0;

    /// Who else is in the domain.
    virtual ParticipantCensus census() = 0;

    /// The originator in the requests that are sent: HOST:APP, and no instance id.
    virtual Application identity() const = 0;

    /// Writes a command request. Only for @ref Access::command.
    virtual Status send(const Application& target, std::int32_t invocation,
                        const Command& command) = 0;
};

}  // namespace orvane::tools
