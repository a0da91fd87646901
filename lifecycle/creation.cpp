#include <cstring>

#include "admin/state.hpp"
#include "core/filter.hpp"
#include "core/instance.hpp"
#include "core/logging_lock.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"
#include "pexa/config_logger.h"
#include "pexa/osapi.h"
#include "pexa/subscription.h"

namespace orvane::core {
namespace {

constexpr const char* context = "QEL_KX_Orvane_createInstance";

/**
 * The options that the creation made itself. What the application hands over may change while an
 * instance is being made, so that the pointer handed over does not tell whose options the instance
 * has. Guarded by the global lock.
 */
QEL_KX_Options* options_made = nullptr;

/// False without memory, which has been reported.
[[nodiscard]] bool choose_options(QEL_KX_Orvane& self) {
    self.options = load(gQEL_KX_Orvane_currentOptions);
    if (self.options == nullptr) {
        report(context, "Creating Orvane with default options", QEL_KX_LEVEL_INFO);
        options_made = QEL_KX_Options_createDefault();
        self.options = options_made;
    }
    return self.options != nullptr;
}

// The steps of a creation, in their order. Each gives the reason for which it failed, or NULL.

const char* make_clock(QEL_KX_Orvane& self) {
    self.clock = QELSystemClock_new();
    live_clock.store(self.clock, std::memory_order_release);
    return self.clock == nullptr ? "Unable to create clock" : nullptr;
}

const char* make_state(QEL_KX_Orvane& self) {
    self.state = QEL_KX_ADMIN_StateTypeSupport_create_data();
    if (self.state == nullptr) {
        return "Unable to initialize QEL_KX_ADMIN_State";
    }
    self.state->state = QEL_KX_STATE_INITIALIZING;
    if (const char* kind = self.options->application_kind; kind != nullptr) {
        const std::size_t length = strnlen(kind, ORVANE_APPLICATION_KIND_BOUND);
        std::memcpy(self.state->applicationKind, kind, length);
        self.state->applicationKind[length] = '\0';
    }
    self.state->filterLevel = self.options->filter_level;
    self.stateInstanceHandle = DDS_HANDLE_NIL;
    return nullptr;
}

const char* make_entities(QEL_KX_Orvane& self) {
    self.ddsEntities = QEL_KX_DDSEntities_create(&self);
    return self.ddsEntities == nullptr ? "Unable to create DDSEntities" : nullptr;
}

/// Without remote administration there is no reader, and the creation ends here.
const char* listen_to_commands(QEL_KX_Orvane& self) {
    DDS_DataReaderListener listener = {};
    listener.listener_data = &self;
    listener.on_data_available = QEL_KX_Orvane_CommandRequestListener_on_data_available;
    return DDS_DataReader_set_listener(QEL_KX_DDSEntities_getCommandRequestReader(self.ddsEntities),
                                       &listener, DDS_DATA_AVAILABLE_STATUS) == DDS_RETCODE_OK
               ? nullptr
               : "Unable to set listener for CommandRequests";
}

const char* start_write_thread(QEL_KX_Orvane& self) {
    self.logMessageWriteThread =
        LogMessageWriteThread_create(QEL_KX_DDSEntities_getLogMessageWriter(self.ddsEntities),
                                     self.options->queue_size, &self.options->thread);
    if (self.logMessageWriteThread == nullptr) {
        return "Unable to create LogMessage Thread";
    }
    self.messageQueue = self.logMessageWriteThread->messageQueue;
    return nullptr;
}

/// The State's identity and domain have been there since the entities exist, because a first reader
/// may match from then on.
const char* adopt_settings(QEL_KX_Orvane& self) {
    store(self.filterLevel, self.options->filter_level);
    follow_filter_of(&self);
    QEL_KX_Orvane_updateQELLoggerPrintFormatState(&self);
    QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(&self);
    return nullptr;
}

const char* serve_waiting_commands(QEL_KX_Orvane& self) {
    if (self.options->remote_administration_enabled == 1) {
        QEL_KX_Orvane_CommandRequestListener_on_data_available(
            &self, QEL_KX_DDSEntities_getCommandRequestReader(self.ddsEntities));
    }
    return nullptr;
}

const char* become_operational(QEL_KX_Orvane& self) {
    admin::set_state_kind(self, QEL_KX_STATE_OPERATIONAL);
    return QEL_KX_Orvane_writeState(&self) == 0 ? "Unable to write State" : nullptr;
}

const char* install_device(QEL_KX_Orvane& self) {
    if (load(self.options->log_infrastructure_messages) == 0) {
        return nullptr;
    }
    if (PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(),
                                             &QEL_KX_Orvane_localDevice) == 0) {
        return "Unable to hoop up QEL Logger";
    }
    self.loggerDevice = &QEL_KX_Orvane_localDevice;
    return nullptr;
}

using Step = const char* (*)(QEL_KX_Orvane&);

constexpr Step steps[] = {
    make_clock,         make_state,     make_entities,          listen_to_commands,
    start_write_thread, adopt_settings, serve_waiting_commands, become_operational,
    install_device};

/// False after a reported failure.
[[nodiscard]] bool build(QEL_KX_Orvane& self) {
    if (!choose_options(self)) {
        return false;
    }
    for (const Step step : steps) {
        if (const char* failure = step(self); failure != nullptr) {
            report(context, failure);
            return false;
        }
    }
    return true;
}

QEL_KX_Orvane* create() {
    if (QEL_KX_Orvane* existing = load(QEL_KX_Orvane_instance); existing != nullptr) {
        return existing;
    }
    QEL_KX_Orvane* self = nullptr;
    QELOsapiHeap_allocateStructure(&self, QEL_KX_Orvane);
    if (self == nullptr) {
        report(context, "Unable to allocate memory for Orvane Instance");
        return nullptr;
    }
    QEL_KX_Orvane_initialize(self);
    return build(*self) ? self : QEL_KX_Orvane_destroy(self);
}

void remove_device(const QEL_KX_Orvane& self) {
    if (self.loggerDevice != nullptr && load(self.options->log_infrastructure_messages) != 0) {
        PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), nullptr);
    }
}

/// A command that is being executed may still want the write thread; the removal waits for it.
void stop_listening(const QEL_KX_Orvane& self) {
    if (self.ddsEntities == nullptr) {
        return;
    }
    DDS_DataReader* reader = QEL_KX_DDSEntities_getCommandRequestReader(self.ddsEntities);
    if (reader != nullptr) {
        DDS_DataReader_set_listener(reader, nullptr, DDS_STATUS_MASK_NONE);
    }
}

void stop_write_thread(QEL_KX_Orvane& self) {
    if (self.logMessageWriteThread == nullptr) {
        return;
    }
    store(self.logMessageWriteThread->run, 0);
    LogMessageWriteThread_delete(self.logMessageWriteThread);
    self.logMessageWriteThread = nullptr;
    self.messageQueue = nullptr;
}

void forget_options(QEL_KX_Orvane& self) {
    if (options_made != nullptr && self.options == options_made) {
        QEL_KX_Options_delete(options_made);
        options_made = nullptr;
    }
    self.options = nullptr;
}

void delete_state(QEL_KX_Orvane& self) {
    if (self.state != nullptr) {
        QEL_KX_ADMIN_StateTypeSupport_delete_data_ex(self.state, DDS_BOOLEAN_TRUE);
        self.state = nullptr;
    }
}

/**
 * Each part ends before what its callbacks use: device, commands, write thread, entities, the rest.
 * A listener that the deletion of the entities calls on this thread may log; it finds a record that
 * lacks what is gone.
 */
QEL_KX_Orvane* destroy(QEL_KX_Orvane& self) {
    const LifecycleChange change;
    remove_device(self);
    stop_listening(self);
    stop_write_thread(self);
    QEL_KX_DDSEntities_destroy(self.ddsEntities);
    self.ddsEntities = nullptr;
    live_clock.store(nullptr, std::memory_order_release);
    QELSystemClock_delete(self.clock);
    follow_filter_of(nullptr);
    forget_options(self);
    delete_state(self);
    QELOsapiHeap_freeStructure(&self);
    return nullptr;
}

}  // namespace
}  // namespace orvane::core

namespace core = orvane::core;

QEL_KX_Orvane* QEL_KX_Orvane_createInstance(void) {
    return core::create();
}

QEL_KX_Orvane* QEL_KX_Orvane_destroy(QEL_KX_Orvane* self) {
    return self == nullptr ? nullptr : core::destroy(*self);
}
