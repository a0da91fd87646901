#include "lifecycle/singleton.hpp"

#include <atomic>

#include "admin/logger_bridge.hpp"
#include "admin/state.hpp"
#include "core/exported.hpp"
#include "core/filter.hpp"
#include "core/instance.hpp"
#include "core/logging_call.hpp"
#include "core/logging_lock.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "core/statistics_publication.hpp"
#include "lifecycle/creation.hpp"
#include "orvane/admin.h"
#include "pexa/config_logger.h"
#include "pexa/osapi.h"
#include "platform/internal/cancellation.hpp"

namespace orvane::lifecycle {
namespace {

using core::LifecycleChange;
using core::report;
using pexa::Status;

/// Publishes the instance to threads that do not take the lock.
void set_initialized(DDS_Long value) noexcept {
    core::store(gQEL_KX_Orvane_initialized, value, std::memory_order_release);
}

void set_instance(QEL_KX_Orvane* created) noexcept {
    core::store(QEL_KX_Orvane_instance, created, std::memory_order_release);
}

/// @name The global lock, while no signal handler of this thread logs
/// @{
int lock_global() noexcept {
    const core::LoggingCall no_nested_call;
    return QELOsapi_global_lock();
}

int unlock_global() noexcept {
    const core::LoggingCall no_nested_call;
    return QELOsapi_global_unlock();
}
/// @}

/// In a child process: the parent's instance, until it is finalised here.
constinit std::atomic<QEL_KX_Orvane*> copy_of_instance = nullptr;

/// In a child process that has just been forked. The instance has lost its thread and its engine,
/// so it ends for all logging calls, whatever locks its threads held.
void abandon_instance() {
    core::free_filter_lock();
    core::forget_statistics();
    admin::forget_publication();
    if (QELOsapi_isEngineLost() == 0) {
        return;
    }
    // A creation or destruction leaves a copy that nobody can make sense of.
    if (core::instance() != nullptr && !LifecycleChange::is_under_way()) {
        copy_of_instance.store(core::instance());
    }
    LifecycleChange::forget_all();
    set_initialized(0);
    set_instance(nullptr);
    core::call_start.clock.store(nullptr);
    core::silence_filter();
}

[[maybe_unused]] const int registration = QELOsapi_callInChild(abandon_instance);

/// With the global lock held. @return whether there is an instance.
bool create(const char* context) {
    const LifecycleChange change;
    PEXA_Config_LogVerbosity verbosities[PEXA_CONFIG_LOG_CATEGORY_COUNT] = {};
    admin::mask_verbosity(verbosities);
    QEL_KX_Orvane* created = create_instance();
    set_instance(created);
    if (created == nullptr) {
        // The middleware's logger stays silent. Its reports would be about an instance that does
        // not exist.
        report(context, "Unable to create Orvane singleton!");
        return false;
    }
    admin::unmask_verbosity(verbosities);
    admin::refresh_verbosities(*created);
    // A failure is reported.
    static_cast<void>(
        admin::publish_state(*created, {context, "Unable to Write State"}, admin::no_wait));
    return true;
}

void disable() {
    QEL_KX_Orvane* const logger = core::instance();
    if (logger == nullptr) {
        return;
    }
    admin::set_state_kind(*logger, QEL_KX_STATE_NONOPERATIONAL);
    if (logger->logMessageWriteThread != nullptr) {
        core::store(logger->logMessageWriteThread->run, 0);
    }
    // A failure is reported.
    static_cast<void>(admin::publish_state(
        *logger, {"QEL_KX_Orvane_disable", "Unable to Write State"}, admin::no_wait));
}

Status finalize() {
    constexpr const char* context = "QEL_KX_Orvane_finalizeInstance";
    if (!core::is_running()) {
        if (QEL_KX_Orvane* copy = copy_of_instance.exchange(nullptr); copy != nullptr) {
            free_copy(*copy);
            core::store(gQEL_KX_Orvane_currentOptions, nullptr);
        }
        return Status::ok;
    }
    const pexa::NoCancellation whole_end;
    if (lock_global() != 0) {
        report(context, "Unable to lock when finalizing Orvane singleton!");
        return Status::error;
    }
    if (QEL_KX_Orvane* self = core::instance();
        self != nullptr && !LifecycleChange::is_under_way()) {
        const LifecycleChange change;
        disable();
        // As long as there seems to be an instance, no new options are accepted that this would
        // forget.
        core::store(gQEL_KX_Orvane_currentOptions, nullptr);
        set_instance(destroy(self));
        set_initialized(0);
    }
    if (unlock_global() != 0) {
        report(context, "Unable to unlock when finalizing Orvane singleton!");
        return Status::error;
    }
    return Status::ok;
}

}  // namespace

QEL_KX_Orvane* get_instance() {
    constexpr const char* context = "QEL_Orvane_getInstance";
    if (core::is_running()) {
        return core::instance();
    }
    if (QELOsapi_isEngineLost() != 0) {
        report(context,
               "No logger in a process that was forked while DDS was in use: finalize before fork, "
               "or execute a program in the child");
        return nullptr;
    }
    const pexa::NoCancellation whole_creation;
    if (lock_global() != 0) {
        report(context, "Unable to lock when creating Orvane singleton!");
        return core::instance();
    }
    // A thread that sees the flag may log at once, so the change has ended by then.
    if (!core::is_running() && !LifecycleChange::is_under_way() && create(context)) {
        set_initialized(1);
    }
    if (unlock_global() != 0) {
        report(context, "Unable to unlock when creating Orvane singleton!");
    }
    return core::instance();
}

Status set_options(QEL_KX_Options* options) {
    if (core::instance() != nullptr) {
        return Status::precondition_not_met;
    }
    core::store(gQEL_KX_Orvane_currentOptions, options);
    return Status::ok;
}

}  // namespace orvane::lifecycle

namespace lifecycle = orvane::lifecycle;

QEL_KX_Orvane* QEL_KX_Orvane_getInstance(void) {
    return lifecycle::get_instance();
}

DDS_ReturnCode_t QEL_KX_Orvane_finalizeInstance(void) {
    return orvane::core::to_return_code(lifecycle::finalize());
}

DDS_Boolean QEL_KX_Orvane_setOptions(QEL_KX_Options* options) {
    return orvane::core::to_boolean(lifecycle::set_options(options));
}

void QEL_KX_Orvane_disable(void) {
    lifecycle::disable();
}
