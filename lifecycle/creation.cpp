#include "lifecycle/creation.hpp"

#include <cstring>
#include <utility>

#include "admin/commands.hpp"
#include "admin/entities.hpp"
#include "admin/logger_bridge.hpp"
#include "admin/state.hpp"
#include "core/filter.hpp"
#include "core/instance.hpp"
#include "core/logging_lock.hpp"
#include "core/message_queue.hpp"
#include "core/options.hpp"
#include "core/outcome.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "core/statistics.hpp"
#include "core/statistics_publication.hpp"
#include "core/write_thread.hpp"
#include "orvane/admin.h"
#include "pexa/config_logger.h"
#include "pexa/osapi.h"
#include "pexa/subscription.h"
#include "platform/internal/cancellation.hpp"
#include "platform/internal/status.hpp"
#include "types/plugin_support.hpp"

namespace orvane::lifecycle {
namespace {

using core::Outcome;
using core::report;
using pexa::Status;

using StateSample = types::PluginSupport<QEL_KX_ADMIN_State>;

constexpr const char* own_context = "QEL_KX_Orvane_createInstance";

/**
 * The options that the creation made itself. What the application hands over may change while an
 * instance is being made, so that the pointer handed over does not tell whose options the instance
 * has. Guarded by the global lock.
 */
QEL_KX_Options* options_made = nullptr;

/// An error has been reported.
Status choose_options(QEL_KX_Orvane& self) {
    self.options = core::load(gQEL_KX_Orvane_currentOptions);
    if (self.options == nullptr) {
        report(own_context, "Creating Orvane with default options", QEL_KX_LEVEL_INFO);
        options_made = core::create_default_options();
        self.options = options_made;
    }
    if (self.options == nullptr) {
        return Status::out_of_resources;
    }
    core::restart_statistics(self.options->queue_size);
    return Status::ok;
}

// The steps of a creation, in their order.

Outcome make_clock(QEL_KX_Orvane& self) {
    self.clock = QELSystemClock_new();
    core::call_start.clock.store(self.clock, std::memory_order_release);
    return Outcome::done_if(self.clock != nullptr, "Unable to create clock");
}

Outcome make_state(QEL_KX_Orvane& self) {
    self.state = StateSample::create_data();
    if (self.state == nullptr) {
        return Outcome::failed("Unable to initialize QEL_KX_ADMIN_State");
    }
    self.state->state = QEL_KX_STATE_INITIALIZING;
    if (const char* kind = self.options->application_kind; kind != nullptr) {
        const std::size_t length = strnlen(kind, ORVANE_APPLICATION_KIND_BOUND);
        std::memcpy(self.state->applicationKind, kind, length);
        self.state->applicationKind[length] = '\0';
    }
    self.state->filterLevel = self.options->filter_level;
    self.stateInstanceHandle = DDS_HANDLE_NIL;
    return Outcome::done();
}

Outcome make_entities(QEL_KX_Orvane& self) {
    self.ddsEntities = admin::create_entities(&self);
    return Outcome::done_if(self.ddsEntities != nullptr, "Unable to create DDSEntities");
}

/// Without remote administration there is no reader, and the creation ends here.
Outcome listen_to_commands(QEL_KX_Orvane& self) {
    DDS_DataReaderListener listener = {};
    listener.listener_data = &self;
    listener.on_data_available = QEL_KX_Orvane_CommandRequestListener_on_data_available;
    return Outcome::done_if(
        DDS_DataReader_set_listener(self.ddsEntities->commandRequestReader, &listener,
                                    DDS_DATA_AVAILABLE_STATUS) == DDS_RETCODE_OK,
        "Unable to set listener for CommandRequests");
}

Outcome start_write_thread(QEL_KX_Orvane& self) {
    self.logMessageWriteThread = core::create_write_thread(
        self.ddsEntities->logMessageWriter, self.options->queue_size, self.options->thread);
    if (self.logMessageWriteThread == nullptr) {
        return Outcome::failed("Unable to create LogMessage Thread");
    }
    self.messageQueue = self.logMessageWriteThread->messageQueue;
    core::count_messages_of(*self.messageQueue);
    core::note_written_by_calls(*self.messageQueue);
    return Outcome::done();
}

/// The State's identity and domain have been there since the entities exist, because a first reader
/// may match from then on.
Outcome adopt_settings(QEL_KX_Orvane& self) {
    core::store(self.filterLevel, self.options->filter_level);
    core::follow_filter_of(&self);
    admin::refresh_print_format(self);
    admin::refresh_verbosities(self);
    return Outcome::done();
}

Outcome serve_waiting_commands(QEL_KX_Orvane& self) {
    if (self.options->remote_administration_enabled == 1) {
        admin::take_commands(self, self.ddsEntities->commandRequestReader);
    }
    return Outcome::done();
}

Outcome become_operational(QEL_KX_Orvane& self) {
    admin::set_state_kind(self, QEL_KX_STATE_OPERATIONAL);
    return Outcome::done_if(admin::publish_state(self, {}, admin::for_result) == Status::ok,
                            "Unable to write State");
}

Outcome install_device(QEL_KX_Orvane& self) {
    if (core::load(self.options->log_infrastructure_messages) == 0) {
        return Outcome::done();
    }
    if (PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(),
                                             &QEL_KX_Orvane_localDevice) == 0) {
        return Outcome::failed("Unable to hoop up QEL Logger");
    }
    self.loggerDevice = &QEL_KX_Orvane_localDevice;
    return Outcome::done();
}

constexpr Outcome (*steps[])(QEL_KX_Orvane&) = {
    make_clock,         make_state,     make_entities,          listen_to_commands,
    start_write_thread, adopt_settings, serve_waiting_commands, become_operational,
    install_device};

/// An error has been reported.
Status build(QEL_KX_Orvane& self) {
    if (const Status chosen = choose_options(self); chosen != Status::ok) {
        return chosen;
    }
    if (const Outcome outcome = core::take_steps(steps, self); outcome.has_failed()) {
        report(own_context, outcome);
        return Status::error;
    }
    return Status::ok;
}

void initialize(QEL_KX_Orvane* self) {
    if (self == nullptr) {
        report("QEL_KX_Orvane_initialize", "QEL_KX_Orvane is NULL");
        return;
    }
    *self = QEL_KX_Orvane{};
}

void remove_device(const QEL_KX_Orvane& self) {
    if (self.loggerDevice != nullptr &&
        core::load(self.options->log_infrastructure_messages) != 0) {
        PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), nullptr);
    }
}

/// A command that is being executed may still want the write thread; the removal waits for it.
void stop_listening(const QEL_KX_Orvane& self) {
    if (self.ddsEntities == nullptr) {
        return;
    }
    DDS_DataReader* reader = self.ddsEntities->commandRequestReader;
    if (reader != nullptr) {
        DDS_DataReader_set_listener(reader, nullptr, DDS_STATUS_MASK_NONE);
    }
}

/// A reader that has lost the logger may be on its way back.
bool has_lost_readers(const QEL_KX_Orvane& self) {
    DDS_PublicationMatchedStatus matched = {};
    return self.ddsEntities == nullptr ||
           DDS_DataWriter_get_publication_matched_status(self.ddsEntities->logMessageWriter,
                                                         &matched) != DDS_RETCODE_OK ||
           matched.current_count < matched.total_count;
}

void stop_write_thread(QEL_KX_Orvane& self) {
    if (self.logMessageWriteThread == nullptr) {
        return;
    }
    const pexa::NoCancellation whole_end;
    core::store(self.logMessageWriteThread->run, 0);
    // What has been published lives as long as the writer. So there is no hurry where somebody may
    // still come for it: after a burst, and where there are fewer readers than there were.
    if (!has_lost_readers(self)) {
        core::end_rest(*self.logMessageWriteThread);
    }
    self.messageQueue = nullptr;
    core::delete_write_thread(std::exchange(self.logMessageWriteThread, nullptr));
}

void forget_options(QEL_KX_Orvane& self) {
    const QEL_KX_Options* options = std::exchange(self.options, nullptr);
    if (options_made != nullptr && options == options_made) {
        core::delete_options(std::exchange(options_made, nullptr));
    }
}

void delete_state(QEL_KX_Orvane& self) {
    if (self.state != nullptr) {
        StateSample::destroy_data(std::exchange(self.state, nullptr));
    }
}

}  // namespace

QEL_KX_Orvane* create_instance() {
    if (QEL_KX_Orvane* existing = core::instance(); existing != nullptr) {
        return existing;
    }
    QEL_KX_Orvane* self = nullptr;
    QELOsapiHeap_allocateStructure(&self, QEL_KX_Orvane);
    if (self == nullptr) {
        report(own_context, "Unable to allocate memory for Orvane Instance");
        return nullptr;
    }
    initialize(self);
    return build(*self) == Status::ok ? self : destroy(self);
}

// Each part ends before the parts that its callbacks use: device, commands, write thread, entities,
// the rest. The deletion of the entities may call a listener on this thread, and the listener may
// log, and so may a signal handler at any moment. They meet a record without the parts that are
// going, because each part is taken out of the record first.
QEL_KX_Orvane* destroy(QEL_KX_Orvane* self) {
    if (self == nullptr) {
        return nullptr;
    }
    const core::LifecycleChange change;
    remove_device(*self);
    stop_listening(*self);
    stop_write_thread(*self);
    core::end_statistics();
    admin::destroy_entities(self->ddsEntities);
    self->ddsEntities = nullptr;
    core::call_start.clock.store(nullptr, std::memory_order_release);
    QELSystemClock_delete(self->clock);
    core::follow_filter_of(nullptr);
    forget_options(*self);
    delete_state(*self);
    if (core::instance() == self) {
        core::store(QEL_KX_Orvane_instance, nullptr, std::memory_order_release);
    }
    QELOsapiHeap_freeStructure(self);
    return nullptr;
}

void free_copy(QEL_KX_Orvane& copy) {
    remove_device(copy);
    core::end_statistics();
    QELOsapiHeap_freeStructure(copy.logMessageWriteThread);
    QELOsapiHeap_freeStructure(copy.ddsEntities);
    QELSystemClock_delete(copy.clock);
    forget_options(copy);
    delete_state(copy);
    QELOsapiHeap_freeStructure(&copy);
}

}  // namespace orvane::lifecycle

namespace lifecycle = orvane::lifecycle;

QEL_KX_Orvane* QEL_KX_Orvane_createInstance(void) {
    return lifecycle::create_instance();
}

QEL_KX_Orvane* QEL_KX_Orvane_destroy(QEL_KX_Orvane* self) {
    return lifecycle::destroy(self);
}

void QEL_KX_Orvane_initialize(QEL_KX_Orvane* logger) {
    lifecycle::initialize(logger);
}
