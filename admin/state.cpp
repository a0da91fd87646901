#include "admin/state.hpp"

namespace orvane::admin {
namespace {

constexpr const char* initial_context = "QEL_KX_DDSEntities_stateWriterOnPublicationMatched";
constexpr const char* write_context = "QEL_KX_Orvane_writeState";
constexpr const char* no_writer = "could not get KX state data writer";

/// Publications have to follow the order of the changes, but no lock may be held while the engine
/// writes: on this very thread a write runs the logger device and the listeners of readers in this
/// process, which may change the State again, or wait for the global lock while its holder wants to
/// publish the end of the logger. So one thread at a time publishes, each time a copy made under
/// the mutex, and whoever comes meanwhile leaves a request that the publishing thread serves
/// after its own. Every change is then followed by a publication that contains it, none by an older
/// one, and nobody waits. Nothing is published too late: whoever publishes either holds the global
/// lock or is in a callback of the entities, and their deletion waits for its end.
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
    return QEL_KX_ADMIN_StateDataWriter_write(writer, &copy, &handle);
}

bool publish_reporting(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateDataWriter* writer) {
    if (publish(logger, writer) == DDS_RETCODE_OK) {
        return true;
    }
    QEL_KX_Orvane_printMessage("Unable to write State in DataWriter", write_context,
                               QEL_KX_LEVEL_ERROR);
    return false;
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

/// @return false when there is nothing to publish yet. A first publication that is just going on
/// made its copy before the change that this call is to publish, so it is asked for another one.
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

void initialize_logger(QEL_KX_Orvane* logger) {
    if (logger == nullptr) {
        QEL_KX_Orvane_printMessage("QEL_KX_Orvane is NULL", "QEL_KX_Orvane_initialize",
                                   QEL_KX_LEVEL_ERROR);
        return;
    }
    *logger = QEL_KX_Orvane{};
}

void set_state_kind(QEL_KX_Orvane& logger, QEL_KX_ADMIN_StateKind kind) noexcept {
    const std::lock_guard lock(state_mutex);
    std::atomic_ref(logger.state->state).store(kind, std::memory_order_release);
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
        writer != nullptr ? QEL_KX_ADMIN_StateDataWriter_narrow(writer) : nullptr;
    if (state_writer == nullptr) {
        QEL_KX_Orvane_printMessage(no_writer, initial_context, QEL_KX_LEVEL_ERROR);
        return;
    }
    QEL_KX_ADMIN_State copy;
    if (!take_initial_turn(logger, copy)) {
        return;
    }
    const DDS_InstanceHandle_t handle =
        QEL_KX_ADMIN_StateDataWriter_register_instance(state_writer, &copy);
    if (DDS_InstanceHandle_is_valid(&handle) == 0) {
        drop_turn();
        QEL_KX_Orvane_printMessage("Unable to register the State instance", initial_context,
                                   QEL_KX_LEVEL_ERROR);
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

bool write_state(QEL_KX_Orvane& logger) {
    if (!publication_begun()) {
        return true;
    }
    QEL_KX_ADMIN_StateDataWriter* const writer =
        QEL_KX_DDSEntities_getStateWriter(logger.ddsEntities);
    if (writer == nullptr) {
        QEL_KX_Orvane_printMessage(no_writer, write_context, QEL_KX_LEVEL_ERROR);
        return false;
    }
    DDS_DataWriter* const untyped = QEL_KX_ADMIN_StateDataWriter_as_datawriter(writer);
    if (untyped == nullptr) {
        QEL_KX_Orvane_printMessage("could not get State DataWriter as DDS DataWriter",
                                   write_context, QEL_KX_LEVEL_ERROR);
        return false;
    }
    if (DDS_Entity_is_enabled(DDS_DataWriter_as_entity(untyped)) == 0) {
        return true;
    }
    if (!take_turn()) {
        return true;
    }
    const bool written = publish_reporting(logger, writer);
    serve_requests(logger, writer);
    return written;
}

void disable() {
    QEL_KX_Orvane* const logger =
        std::atomic_ref(QEL_KX_Orvane_instance).load(std::memory_order_acquire);
    if (logger == nullptr) {
        return;
    }
    set_state_kind(*logger, QEL_KX_STATE_NONOPERATIONAL);
    if (logger->logMessageWriteThread != nullptr) {
        std::atomic_ref(logger->logMessageWriteThread->run).store(0, std::memory_order_relaxed);
    }
    if (!write_state(*logger)) {
        QEL_KX_Orvane_printMessage("Unable to Write State", "QEL_KX_Orvane_disable",
                                   QEL_KX_LEVEL_WARNING);
    }
}

}  // namespace orvane::admin

QELBool QEL_KX_DDSEntities_gInitialStateSent = 0;
