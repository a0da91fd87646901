#include "platform/dds/log/config_logger.hpp"

#include <type_traits>

#include "pexa/osapi.h"
#include "platform/dds/interface/operation.hpp"
#include "platform/dds/interface/scoped_call.hpp"
#include "platform/internal/cancellation.hpp"

namespace {

using pexa::Status;
using pexa::dds::LogSource;
using pexa::dds::Verbosities;

constinit PEXA_Config_Logger process_logger;
static_assert(std::is_trivially_destructible_v<PEXA_Config_Logger>,
              "threads of the engine report until the process ends");

bool is_known(PEXA_Config_LogCategory category) {
    return static_cast<unsigned>(category) < PEXA_CONFIG_LOG_CATEGORY_COUNT;
}

}  // namespace

PEXA_Config_Logger& PEXA_Config_Logger::instance() noexcept {
    if (!process_logger.installed_.load(std::memory_order_relaxed) &&
        !process_logger.installed_.exchange(true)) {
        pexa::dds::install_sources();
        process_logger.verbosity_changed();
    }
    return process_logger;
}

PEXA_Config_LogVerbosity PEXA_Config_Logger::verbosity(
    PEXA_Config_LogCategory category) const noexcept {
    return is_known(category) ? verbosities_[category].load(std::memory_order_relaxed) : 0;
}

pexa::Status PEXA_Config_Logger::set_verbosity(PEXA_Config_LogCategory category,
                                               PEXA_Config_LogVerbosity verbosity) noexcept {
    if (!is_known(category)) {
        return Status::bad_parameter;
    }
    verbosities_[category].store(verbosity);
    verbosity_changed();
    return Status::ok;
}

void PEXA_Config_Logger::set_verbosity(PEXA_Config_LogVerbosity verbosity) noexcept {
    for (auto& of_category : verbosities_) {
        of_category.store(verbosity);
    }
    verbosity_changed();
}

PEXA_Config_LogPrintFormat PEXA_Config_Logger::print_format() const noexcept {
    return print_format_.load(std::memory_order_relaxed);
}

void PEXA_Config_Logger::set_print_format(PEXA_Config_LogPrintFormat format) noexcept {
    print_format_.store(format, std::memory_order_relaxed);
}

const PEXA_Config_LoggerDevice* PEXA_Config_Logger::device() const noexcept {
    return device_.load(std::memory_order_acquire);
}

pexa::Status PEXA_Config_Logger::set_device(const PEXA_Config_LoggerDevice* device) noexcept {
    if (device != nullptr && device->write == nullptr) {
        return Status::bad_parameter;
    }
    const pexa::NoCancellation whole_change;
    const PEXA_Config_LoggerDevice* old = device_.exchange(device, std::memory_order_acq_rel);
    if (old != nullptr && old != device && old->close != nullptr) {
        old->close(old);
    }
    return Status::ok;
}

void PEXA_Config_Logger::receive(PEXA_Config_LogCategory category, PEXA_Config_LogLevel level,
                                 LogSource source, const char* text) const noexcept {
    if (!pexa::dds::passes(verbosity(category), level)) {
        return;
    }
    // The device is the application's, and the port or the engine may hold locks.
    const pexa::NoCancellation whole_report;
    const PEXA_Config_LoggerDevice* receiver = device();
    if (receiver == nullptr || QELOsapi_isInDeviceCall() != 0) {
        pexa::dds::print_line(print_format(), category, level, source, text);
        return;
    }
    const pexa::dds::DeviceCall mark;
    const PEXA_Config_LogMessage message{text, level};
    receiver->write(receiver, &message);
}

void PEXA_Config_Logger::verbosity_changed() noexcept {
    update_pending_.store(true);
    update_sources();
}

// Two threads may change verbosities at the same time. The sources must end up with the newer
// verbosities, and neither thread may wait for the other, which may wait for a device's call of
// this thread. So the thread that is already updating the sources does it once more for the other.
void PEXA_Config_Logger::update_sources() noexcept {
    if (QELOsapi_isEngineLost() != 0) {
        return;
    }
    while (update_pending_.load() && QELOsapi_isInDeviceCall() == 0 && !updating_.exchange(true)) {
        while (update_pending_.exchange(false)) {
            Verbosities now;
            for (std::size_t i = 0; i < now.size(); ++i) {
                now[i] = verbosities_[i].load();
            }
            pexa::dds::let_pass(now);
        }
        updating_.store(false);
    }
}

extern "C" {

PEXA_Config_Logger* PEXA_Config_Logger_get_instance(void) {
    return &PEXA_Config_Logger::instance();
}

PEXA_Config_LogVerbosity PEXA_Config_Logger_get_verbosity_by_category(
    PEXA_Config_Logger* self, PEXA_Config_LogCategory category) {
    return self != nullptr ? self->verbosity(category) : 0;
}

DDS_ReturnCode_t PEXA_Config_Logger_set_verbosity_by_category(PEXA_Config_Logger* self,
                                                              PEXA_Config_LogCategory category,
                                                              PEXA_Config_LogVerbosity verbosity) {
    return pexa::dds::exported(self != nullptr ? self->set_verbosity(category, verbosity)
                                               : Status::bad_parameter);
}

DDS_ReturnCode_t PEXA_Config_Logger_set_verbosity(PEXA_Config_Logger* self,
                                                  PEXA_Config_LogVerbosity verbosity) {
    if (self == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    self->set_verbosity(verbosity);
    return DDS_RETCODE_OK;
}

PEXA_Config_LogPrintFormat PEXA_Config_Logger_get_print_format(PEXA_Config_Logger* self) {
    return self != nullptr ? self->print_format() : PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT;
}

DDS_ReturnCode_t PEXA_Config_Logger_set_print_format(PEXA_Config_Logger* self,
                                                     PEXA_Config_LogPrintFormat format) {
    if (self == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    self->set_print_format(format);
    return DDS_RETCODE_OK;
}

DDS_Boolean PEXA_Config_Logger_set_output_device(PEXA_Config_Logger* self,
                                                 const PEXA_Config_LoggerDevice* device) {
    return pexa::dds::exported(self != nullptr && self->set_device(device) == Status::ok);
}

const PEXA_Config_LoggerDevice* PEXA_Config_Logger_get_output_device(PEXA_Config_Logger* self) {
    return self != nullptr ? self->device() : nullptr;
}
}
