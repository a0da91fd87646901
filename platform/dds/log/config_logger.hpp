/// @file config_logger.hpp
/// @brief The middleware's own logger.
#pragma once

#include <array>
#include <atomic>

#include "pexa/config_logger.h"
#include "platform/dds/log/log_line.hpp"
#include "platform/dds/log/log_sources.hpp"
#include "platform/internal/status.hpp"

/// The process has one, which is never destroyed: the engine's threads log until the process ends.
/// It owns no lock. Its parts are separate atomics, so a message may be judged by a verbosity that
/// another thread is just replacing.
struct PEXA_Config_Logger {
public:
    /// @return the logger of the process; the first call leads the sources to it.
    static PEXA_Config_Logger& instance() noexcept;

    /// @return 0 for an unknown category
    PEXA_Config_LogVerbosity verbosity(PEXA_Config_LogCategory category) const noexcept;
    /// A device's call cannot change the engine's log. A verbosity that is set there reaches the
    /// engine's traces with the next change outside of such calls, or the port's next message.
    /// @return BAD_PARAMETER for an unknown category
    pexa::Status set_verbosity(PEXA_Config_LogCategory category,
                               PEXA_Config_LogVerbosity verbosity) noexcept;
    void set_verbosity(PEXA_Config_LogVerbosity verbosity) noexcept;

    PEXA_Config_LogPrintFormat print_format() const noexcept;
    void set_print_format(PEXA_Config_LogPrintFormat format) noexcept;

    const PEXA_Config_LoggerDevice* device() const noexcept;
    /// @return BAD_PARAMETER for a device without write operation
    pexa::Status set_device(const PEXA_Config_LoggerDevice* device) noexcept;

    /// Hands a message that passes to the device. Without a device, and inside a device's call, the
    /// message is printed.
    void receive(PEXA_Config_LogCategory category, PEXA_Config_LogLevel level,
                 pexa::dds::LogSource source, const char* text) const noexcept;

    /// Tells the sources which messages pass, if a verbosity has changed since they were told.
    void update_sources() noexcept;

private:
    void verbosity_changed() noexcept;

    std::array<std::atomic<PEXA_Config_LogVerbosity>, PEXA_CONFIG_LOG_CATEGORY_COUNT> verbosities_{
        PEXA_CONFIG_LOG_VERBOSITY_ERROR, PEXA_CONFIG_LOG_VERBOSITY_ERROR,
        PEXA_CONFIG_LOG_VERBOSITY_ERROR, PEXA_CONFIG_LOG_VERBOSITY_ERROR,
        PEXA_CONFIG_LOG_VERBOSITY_ERROR};
    std::atomic<PEXA_Config_LogPrintFormat> print_format_{PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT};
    std::atomic<const PEXA_Config_LoggerDevice*> device_{nullptr};
    std::atomic<bool> installed_{false};
    std::atomic<bool> update_pending_{false};
    std::atomic<bool> updating_{false};
};
