#include "admin/state.hpp"

#include <array>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <variant>

#include "admin/command_response.hpp"
#include "admin/entities.hpp"
#include "core/exported.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "platform/internal/cancellation.hpp"
#include "types/typed_writer.hpp"

namespace orvane::admin {
namespace {

using pexa::Status;

using StateWriter = types::DataWriter<QEL_KX_ADMIN_State>;

constexpr const char* initial_context = "QEL_KX_DDSEntities_stateWriterOnPublicationMatched";
constexpr const char* write_context = "QEL_KX_Orvane_writeState";
constexpr const char* no_writer = "could not get KX state data writer";

struct FirstState {
    QEL_KX_ADMIN_StateDataWriter* writer;
};
using Work = std::variant<StateFailure, FirstState, PendingResponse>;

/// Work that was left. Changes of the same kind in succession take one place.
struct LeftWork {
    Work work;
    unsigned times = 1;
};

/// The turn to write.
///
/// Publications follow the order of the changes, and a response follows the State that shows its
/// command's effect. Yet no lock is held while the engine writes. On the writing thread a write
/// runs the logger device and the listeners of readers in this process. They may change the State
/// again, or wait for the global lock while its holder publishes the end of the logger. They must
/// not use the writer, either, which the engine keeps locked meanwhile.
///
/// So only the thread that has the turn publishes. It publishes a copy that it made under the
/// mutex. Another thread leaves its work and goes on, and so does a listener inside a write of the
/// thread that has the turn. The thread with the turn does what was left, in its order, before it
/// gives the turn back. A command on it keeps the turn until it is answered. In this way every
/// change is followed by a publication that contains it, and no thread has to wait.
///
/// A thread without a turn waits only for a result that it has to return, and not for ever. See
/// publish_state().
///
/// No write comes too late: its thread holds the global lock, is in a callback of the entities, for
/// which the teardown waits before it deletes a writer, or is the application's, which does not
/// finalise meanwhile.
struct Turn {
    bool taken = false;
    /// Whether the thread that has the turn is inside a write.
    bool writing = false;
    std::size_t first = 0;
    std::size_t count = 0;
    /// A reader of commands keeps ten requests. Each leaves six works at most.
    std::array<LeftWork, 128> left;
};
constinit Turn turn;
constinit thread_local bool has_turn = false;

/// Never destroyed: the engine's threads may publish until the process has ended.
std::condition_variable& turn_ended() noexcept {
    alignas(std::condition_variable) static std::byte place[sizeof(std::condition_variable)];
    static auto* const made = new (place) std::condition_variable;
    return *made;
}

/// @name With the mutex held
/// @{
bool may_write() noexcept {
    return !turn.taken || (has_turn && !turn.writing);
}

/// @return false when there is no room.
bool leave(const Work& work) noexcept {
    const auto place = [](std::size_t index) -> LeftWork& {
        return turn.left[(turn.first + index) % turn.left.size()];
    };
    if (const auto* change = std::get_if<StateFailure>(&work);
        change != nullptr && turn.count > 0) {
        LeftWork& last = place(turn.count - 1);
        if (const auto* same = std::get_if<StateFailure>(&last.work);
            same != nullptr && *same == *change) {
            ++last.times;
            return true;
        }
    }
    if (turn.count == turn.left.size()) {
        return false;
    }
    place(turn.count++) = LeftWork{work};
    return true;
}

/// There is some.
Work take_left_work() noexcept {
    LeftWork& next = turn.left[turn.first];
    if (--next.times == 0) {
        turn.first = (turn.first + 1) % turn.left.size();
        --turn.count;
    }
    return next.work;
}
/// @}

Status publish(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateDataWriter* writer) {
    QEL_KX_ADMIN_State copy;
    DDS_InstanceHandle_t handle;
    {
        const std::lock_guard lock(state_mutex);
        // Shares the application kind's text, which is set before the entities exist and freed
        // after them.
        copy = *logger.state;
        handle = logger.stateInstanceHandle;
    }
    return StateWriter::write(writer, &copy, &handle) == DDS_RETCODE_OK ? Status::ok
                                                                        : Status::error;
}

void set_state_handle(QEL_KX_Orvane& logger, const DDS_InstanceHandle_t& handle) noexcept {
    const std::lock_guard lock(state_mutex);
    logger.stateInstanceHandle = handle;
}

/// @name What cannot be done
/// @{
void refuse(const StateFailure& failure, const char* text) {
    core::report(write_context, text);
    if (failure.text != nullptr) {
        core::report(failure.context, failure.text, QEL_KX_LEVEL_WARNING);
    }
}

void refuse(const StateFailure& failure) {
    refuse(failure, "Unable to write State in DataWriter");
}

void refuse(const FirstState&) {
    core::report(initial_context, "Unable to register the State instance");
}

void refuse(const PendingResponse&) {
    refuse_response();
}
/// @}

/// @name What is done with the turn
/// @return an error after a report, if there is one
/// @{
Status perform(QEL_KX_Orvane& logger, const StateFailure& failure) {
    // Without a reader there is nothing to do: the first one gets the State as a whole.
    if (!initial_state_sent()) {
        return Status::ok;
    }
    DDS_DataWriter* const writer = field_of<&QEL_KX_DDSEntities::stateWriter>(logger.ddsEntities);
    if (writer == nullptr) {
        refuse(failure, no_writer);
        return Status::error;
    }
    DDS_DataWriter* const untyped = StateWriter::as_datawriter(writer);
    if (untyped == nullptr) {
        refuse(failure, "could not get State DataWriter as DDS DataWriter");
        return Status::error;
    }
    if (DDS_Entity_is_enabled(DDS_DataWriter_as_entity(untyped)) == 0) {
        return Status::ok;
    }
    const Status written = publish(logger, writer);
    if (written != Status::ok) {
        refuse(failure);
    }
    return written;
}

Status perform(QEL_KX_Orvane& logger, const FirstState& first) {
    QEL_KX_ADMIN_State copy;
    {
        const std::lock_guard lock(state_mutex);
        if (DDS_InstanceHandle_is_valid(&logger.stateInstanceHandle) != 0) {
            return Status::ok;
        }
        copy = *logger.state;
    }
    const DDS_InstanceHandle_t handle = StateWriter::register_instance(first.writer, &copy);
    if (DDS_InstanceHandle_is_valid(&handle) == 0) {
        refuse(first);
        return Status::error;
    }
    set_state_handle(logger, handle);
    const Status written = publish(logger, first.writer);
    if (written == Status::ok) {
        set_initial_state_sent(1);
    }
    return written;
}

Status perform(QEL_KX_Orvane&, const PendingResponse& response) {
    return write_response(response);
}
/// @}

using Lock = std::unique_lock<std::mutex>;

/// @param lock is given back for the time of the writing.
Status do_now(QEL_KX_Orvane& logger, const Work& work, Lock& lock) {
    turn.writing = true;
    lock.unlock();
    const Status done = std::visit([&](const auto& what) { return perform(logger, what); }, work);
    lock.lock();
    turn.writing = false;
    return done;
}

void begin_turn() noexcept {
    turn.taken = true;
    has_turn = true;
}

void do_left_work(QEL_KX_Orvane& logger, Lock& lock) {
    while (turn.count > 0) {
        // A failure has been reported. The threads that left the work have gone on.
        static_cast<void>(do_now(logger, take_left_work(), lock));
    }
}

void end_turn(QEL_KX_Orvane& logger, Lock& lock) {
    do_left_work(logger, lock);
    turn.taken = false;
    has_turn = false;
    turn_ended().notify_all();
}

Status submit(QEL_KX_Orvane& logger, const Work& work, Lock lock) {
    if (!may_write()) {
        if (leave(work)) {
            return Status::ok;
        }
        lock.unlock();
        std::visit([](const auto& what) { refuse(what); }, work);
        return Status::out_of_resources;
    }
    const bool begins = !turn.taken;
    if (begins) {
        begin_turn();
    }
    const Status done = do_now(logger, work, lock);
    if (begins) {
        end_turn(logger, lock);
    }
    return done;
}

}  // namespace

void set_state_kind(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateKind kind) noexcept {
    const std::lock_guard lock(state_mutex);
    core::store(logger.state->state, kind, std::memory_order_release);
}

void identify_state(QEL_KX_Orvane& logger, DDS_UnsignedLong host_id, DDS_UnsignedLong app_id,
                    DDS_DomainId_t domain_id) noexcept {
    with_state(logger, [&](QEL_KX_ADMIN_State& state) {
        state.hostAndAppId = {static_cast<DDS_Long>(host_id), static_cast<DDS_Long>(app_id)};
        state.administrationDomainId = domain_id;
    });
}

void set_initial_state_sent(QELBool sent) noexcept {
    const std::lock_guard lock(state_mutex);
    QEL_KX_DDSEntities_gInitialStateSent = sent;
}

bool initial_state_sent() noexcept {
    const std::lock_guard lock(state_mutex);
    return QEL_KX_DDSEntities_gInitialStateSent != 0;
}

void publish_initial_state(QEL_KX_Orvane& logger, DDS_DataWriter* writer) {
    if (initial_state_sent()) {
        return;
    }
    QEL_KX_ADMIN_StateDataWriter* const state_writer =
        writer != nullptr ? StateWriter::narrow(writer) : nullptr;
    if (state_writer == nullptr) {
        core::report(initial_context, no_writer);
        return;
    }
    // Nobody waits for the result.
    static_cast<void>(submit(logger, FirstState{state_writer}, Lock(state_mutex)));
}

void publish_left_changes(QEL_KX_Orvane& logger, Lock lock) {
    if (has_turn && !turn.writing) {
        do_left_work(logger, lock);
    }
}

Status publish_state(QEL_KX_Orvane& logger, const StateFailure& failure, Lock lock) {
    return submit(logger, failure, std::move(lock));
}

Status publish_state(QEL_KX_Orvane& logger, const StateFailure& failure,
                     std::chrono::milliseconds patience) {
    const pexa::NoCancellation whole_publication;
    Lock lock(state_mutex);
    const auto needs_no_wait = [] { return !turn.taken || has_turn; };
    if (patience > no_wait && !turn_ended().wait_for(lock, patience, needs_no_wait)) {
        // Readers still get the State, if there is room.
        static_cast<void>(leave(StateFailure{}));
        lock.unlock();
        refuse(failure);
        return Status::timeout;
    }
    return submit(logger, failure, std::move(lock));
}

void respond_in_turn(QEL_KX_Orvane& logger, const PendingResponse& response) {
    // A failure has been reported.
    static_cast<void>(submit(logger, response, Lock(state_mutex)));
}

KeptTurn::KeptTurn(QEL_KX_Orvane& logger) : logger_(logger) {
    const std::lock_guard lock(state_mutex);
    begins_ = !turn.taken;
    if (begins_) {
        begin_turn();
    }
}

// NOLINTNEXTLINE(bugprone-exception-escape): work is never without a value
KeptTurn::~KeptTurn() {
    if (begins_) {
        Lock lock(state_mutex);
        end_turn(logger_, lock);
    }
}

void forget_publication() noexcept {
    std::construct_at(&state_mutex);
    std::construct_at(&turn_ended());
    turn = Turn{};
    QEL_KX_DDSEntities_gInitialStateSent = 0;
}

}  // namespace orvane::admin

namespace admin = orvane::admin;

QELBool QEL_KX_DDSEntities_gInitialStateSent = 0;

QELBool QEL_KX_DDSEntities_hasInitialStateBeenSent(void) {
    return admin::initial_state_sent() ? 1 : 0;
}

void QEL_KX_DDSEntities_stateWriterOnPublicationMatched(void* listenerData, DDS_DataWriter* writer,
                                                        const DDS_PublicationMatchedStatus*) {
    admin::publish_initial_state(*static_cast<QEL_KX_Orvane*>(listenerData), writer);
}

DDS_Boolean QEL_KX_Orvane_writeState(QEL_KX_Orvane* logger) {
    return orvane::core::to_boolean(admin::publish_state(*logger, {}, admin::for_result));
}
