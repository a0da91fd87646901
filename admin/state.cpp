#include "admin/state.hpp"

#include <memory>

#include "admin/entities.hpp"
#include "core/exported.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "types/typed_writer.hpp"

namespace orvane::admin {
namespace {

using pexa::Status;

using StateWriter = types::DataWriter<QEL_KX_ADMIN_State>;

constexpr const char* initial_context = "QEL_KX_DDSEntities_stateWriterOnPublicationMatched";
constexpr const char* write_context = "QEL_KX_Orvane_writeState";
constexpr const char* no_writer = "could not get KX state data writer";

/// Publications follow the order of the changes, and yet no lock is held while the engine writes.
/// On the writing thread a write runs the logger device and the listeners of readers in this
/// process. They may change the State again, or wait for the global lock while its holder publishes
/// the end of the logger.
///
/// So only the thread that has the turn publishes. It publishes a copy that it made under the
/// mutex. Another thread leaves a request and goes on. The publishing thread then publishes a new
/// copy for the requests. In this way every change is followed by a publication that contains it,
/// and no thread waits.
///
/// No publication comes too late: its thread either holds the global lock or is in a callback of
/// the entities, and the deletion of the entities waits for the end of their callbacks.
struct Turn {
    bool taken = false;
    unsigned requests = 0;
};
constinit Turn turn;

/// @return false when another thread is publishing; it then publishes once more.
bool take_turn() noexcept {
    const std::lock_guard lock(state_mutex);
    if (turn.taken) {
        ++turn.requests;
        return false;
    }
    turn.taken = true;
    return true;
}

/// Gives the turn back although requests may be left, which only a first publication that failed
/// does: then nothing is published at all.
void drop_turn() noexcept {
    const std::lock_guard lock(state_mutex);
    turn = Turn{};
}

DDS_ReturnCode_t publish(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateDataWriter* writer) {
    QEL_KX_ADMIN_State copy;
    DDS_InstanceHandle_t handle;
    {
        const std::lock_guard lock(state_mutex);
        // Shares the application kind's text, which is set before the entities exist and freed
        // after them.
        copy = *logger.state;
        handle = logger.stateInstanceHandle;
    }
    return StateWriter::write(writer, &copy, &handle);
}

Status publish_reporting(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateDataWriter* writer) {
    if (publish(logger, writer) == DDS_RETCODE_OK) {
        return Status::ok;
    }
    core::report(write_context, "Unable to write State in DataWriter");
    return Status::error;
}

/// @return false when no request was left, and the turn is given back.
bool take_request() noexcept {
    const std::lock_guard lock(state_mutex);
    if (turn.requests == 0) {
        turn.taken = false;
        return false;
    }
    --turn.requests;
    return true;
}

void serve_requests(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateDataWriter* writer) {
    while (take_request()) {
        // A failure has been reported. The threads of the requests have gone on.
        static_cast<void>(publish_reporting(logger, writer));
    }
}

void set_state_handle(QEL_KX_Orvane& logger, const DDS_InstanceHandle_t& handle) noexcept {
    const std::lock_guard lock(state_mutex);
    logger.stateInstanceHandle = handle;
}

/// @return whether this call is the one that has to publish the first State.
bool take_initial_turn(QEL_KX_Orvane& logger, QEL_KX_ADMIN_State& copy) noexcept {
    const std::lock_guard lock(state_mutex);
    if (DDS_InstanceHandle_is_valid(&logger.stateInstanceHandle) != 0 || turn.taken) {
        return false;
    }
    turn.taken = true;
    copy = *logger.state;
    return true;
}

/// @return false before the first publication, when there is no reader. A first publication that is
/// under way made its copy before this call's change, so it gets a request for another one.
bool publication_begun() noexcept {
    const std::lock_guard lock(state_mutex);
    if (QEL_KX_DDSEntities_gInitialStateSent != 0) {
        return true;
    }
    if (turn.taken) {
        ++turn.requests;
    }
    return false;
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
    QEL_KX_ADMIN_State copy;
    if (!take_initial_turn(logger, copy)) {
        return;
    }
    const DDS_InstanceHandle_t handle = StateWriter::register_instance(state_writer, &copy);
    if (DDS_InstanceHandle_is_valid(&handle) == 0) {
        drop_turn();
        core::report(initial_context, "Unable to register the State instance");
        return;
    }
    set_state_handle(logger, handle);
    if (publish(logger, state_writer) != DDS_RETCODE_OK) {
        drop_turn();
        return;
    }
    set_initial_state_sent(1);
    serve_requests(logger, state_writer);
}

Status write_state(QEL_KX_Orvane& logger) {
    if (!publication_begun()) {
        return Status::ok;
    }
    DDS_DataWriter* const writer = field_of<&QEL_KX_DDSEntities::stateWriter>(logger.ddsEntities);
    if (writer == nullptr) {
        core::report(write_context, no_writer);
        return Status::error;
    }
    DDS_DataWriter* const untyped = StateWriter::as_datawriter(writer);
    if (untyped == nullptr) {
        core::report(write_context, "could not get State DataWriter as DDS DataWriter");
        return Status::error;
    }
    if (DDS_Entity_is_enabled(DDS_DataWriter_as_entity(untyped)) == 0) {
        return Status::ok;
    }
    if (!take_turn()) {
        return Status::ok;
    }
    const Status written = publish_reporting(logger, writer);
    serve_requests(logger, writer);
    return written;
}

void forget_publication() noexcept {
    std::construct_at(&state_mutex);
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
    return orvane::core::to_boolean(admin::write_state(*logger));
}
