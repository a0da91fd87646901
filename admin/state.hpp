/// @file state.hpp
/// @brief The published State: who may touch it when, and its publication.
///
/// The State sample, its instance handle and the flag of the first publication are guarded by one
/// mutex. It may be taken with the global lock held, never the other way round, and nothing that
/// could come back here or wait for the global lock is called while it is held: not the engine and
/// not the printer.
#pragma once

#include <chrono>
#include <mutex>
#include <utility>

#include "admin/command_response.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"
#include "platform/internal/status.hpp"

namespace orvane::admin {

inline constinit std::mutex state_mutex;

/// Runs @p change with the mutex held.
/// @param change gets the sample; must not call the engine, log, or print.
template <typename Change>
void with_state(QEL_KX_Orvane& logger, Change change) {
    const std::lock_guard lock(state_mutex);
    change(*logger.state);
}

void set_state_kind(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateKind kind) noexcept;

/// Fills who and where the logger is. Needed before the State writer exists, because the first
/// reader may match at once and the identity is the instance's key.
void identify_state(QEL_KX_Orvane& logger, DDS_UnsignedLong host_id, DDS_UnsignedLong app_id,
                    DDS_DomainId_t domain_id) noexcept;

/// @name Publication
/// @{
void set_initial_state_sent(QELBool sent) noexcept;
bool initial_state_sent() noexcept;
void publish_initial_state(QEL_KX_Orvane& logger, DDS_DataWriter* writer);

/// What the operation that changed the State says, as a warning, when it cannot be published.
struct StateFailure {
    const char* context = nullptr;
    const char* text = nullptr;

    bool operator==(const StateFailure&) const = default;
};

/// How long to wait for the result of a publication while another thread publishes. A thread that
/// does not need it must not wait: it may hold the global lock, or be the engine's thread for
/// acknowledgements. For a thread that does wait this is the end of a circle through the listeners
/// of the application.
inline constexpr std::chrono::milliseconds no_wait{0};
inline constexpr std::chrono::milliseconds for_result{5000};

/// Publishes the State as it is now. While another thread publishes, or inside a write of this one,
/// the publication is left to that thread or to the end of that write. @p failure is reported by
/// whoever publishes.
/// @param patience above no_wait: the call waits for the other thread. What it then returns is the
///   result of its own publication. Inside a write it does not wait.
/// @return ok for a publication that is left; otherwise an error after a report.
pexa::Status publish_state(QEL_KX_Orvane& logger, const StateFailure& failure,
                           std::chrono::milliseconds patience);
/// Does not wait. @param lock has the mutex.
pexa::Status publish_state(QEL_KX_Orvane& logger, const StateFailure& failure,
                           std::unique_lock<std::mutex> lock);

/// Publishes what other threads have left to this one, if it has the turn. @param lock has the
/// mutex.
void publish_left_changes(QEL_KX_Orvane& logger, std::unique_lock<std::mutex> lock);

/// Changes and publishes the State in one step: a command that finds the change made is answered
/// after its publication.
/// @param change as in with_state(); returns whether there is something to publish.
template <typename Change>
void publish_change(QEL_KX_Orvane& logger, Change change, const StateFailure& failure) {
    std::unique_lock lock(state_mutex);
    if (change(*logger.state)) {
        // Nobody waits for the result.
        static_cast<void>(publish_state(logger, failure, std::move(lock)));
    } else {
        publish_left_changes(logger, std::move(lock));
    }
}

/// Writes a response behind all States and responses that are under way, as publish_state() does.
void respond_in_turn(QEL_KX_Orvane& logger, const PendingResponse& response);

/// Keeps the turn to publish, if it is free, for States and a response between which nothing may
/// come.
class KeptTurn {
public:
    explicit KeptTurn(QEL_KX_Orvane& logger);
    // NOLINTNEXTLINE(bugprone-exception-escape): see its definition
    ~KeptTurn();
    KeptTurn(const KeptTurn&) = delete;
    KeptTurn& operator=(const KeptTurn&) = delete;

private:
    QEL_KX_Orvane& logger_;
    bool begins_;
};

/// In a child process that has just been forked: no thread publishes or holds the mutex there.
void forget_publication() noexcept;
/// @}

}  // namespace orvane::admin
