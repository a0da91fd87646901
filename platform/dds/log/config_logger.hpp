/// @file config_logger.hpp
/// @brief The middleware's own logger.
#pragma once

#include <array>
#include <atomic>

#include "pexa/config_logger.h"
#include "platform/dds/log/log_line.hpp"
#include "platform/dds/log/log_sources.hpp"

/// One per process, made before any code runs and never destroyed, for the engine's threads log
/// until the process ends. It owns no lock: its parts are atomics of their own, and a message may
/// be judged by a verbosity that is just being replaced.
struct PEXA_Config_Logger {
public:
    /// @return the logger of the process; the first call leads the sources to it.
    [[nodiscard]] static PEXA_Config_Logger& instance() noexcept;

    /// @return 0 for an unknown category
    [[nodiscard]] PEXA_Config_LogVerbosity verbosity(
        PEXA_Config_LogCategory category) const noexcept;
    /// On a thread that is inside a device's call a verbosity that lets more pass than before takes
    /// effect on the engine's traces only with the next change from outside, or the next report of
    /// the port: the engine's log cannot be changed from within.
    [[nodiscard]] DDS_ReturnCode_t set_verbosity(PEXA_Config_LogCategory category,
                                                 PEXA_Config_LogVerbosity verbosity) noexcept;
    void set_verbosity(PEXA_Config_LogVerbosity verbosity) noexcept;

    [[nodiscard]] PEXA_Config_LogPrintFormat print_format() const noexcept;
    void set_print_format(PEXA_Config_LogPrintFormat format) noexcept;

    [[nodiscard]] const PEXA_Config_LoggerDevice* device() const noexcept;
    /// @return false for a device without write operation
    [[nodiscard]] bool set_device(const PEXA_Config_LoggerDevice* device) noexcept;

    /// Hands a message that passes to the device. A message that arises inside a device's call is
    /// printed instead, like all messages without a device.
    void report(PEXA_Config_LogCategory category, PEXA_Config_LogLevel level,
                pexa::dds::LogSource source, const char* text) const noexcept;

    /// Has the sources report what the verbosities let pass, if a change of them waits for it.
    void choose_messages() noexcept;

private:
    void verbosity_changed() noexcept;

    std::array<std::atomic<PEXA_Config_LogVerbosity>, PEXA_CONFIG_LOG_CATEGORY_COUNT> verbosities_{
        PEXA_CONFIG_LOG_VERBOSITY_ERROR, PEXA_CONFIG_LOG_VERBOSITY_ERROR,
        PEXA_CONFIG_LOG_VERBOSITY_ERROR, PEXA_CONFIG_LOG_VERBOSITY_ERROR,
        PEXA_CONFIG_LOG_VERBOSITY_ERROR};
    std::atomic<PEXA_Config_LogPrintFormat> print_format_{PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT};
    std::atomic<const PEXA_Config_LoggerDevice*> device_{nullptr};
    std::atomic<bool> installed_{false};
    std::atomic<bool> choice_pending_{false};
    std::atomic<bool> choosing_{false};
};
