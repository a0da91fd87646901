/// @file config_logger_sources.hpp
/// @brief Where the middleware logger's messages come from, and how they are sorted.
///
/// | source                                       | category      | level                 |
/// |----------------------------------------------|---------------|-----------------------|
/// | port, module OSAPI                           | PLATFORM      | its own               |
/// | port, module CDR                             | DATABASE      | its own               |
/// | port, module DDS                             | API           | its own               |
/// | engine: fatal, error                         | COMMUNICATION | ERROR                 |
/// | engine: warning                              | COMMUNICATION | WARNING               |
/// | engine: info                                 | COMMUNICATION | STATUS_LOCAL          |
/// | engine: config                               | PLATFORM      | STATUS_LOCAL          |
/// | engine: discovery                            | ENTITIES      | STATUS_REMOTE         |
/// | engine: topic                                | ENTITIES      | DEBUG                 |
/// | engine: data, radmin, traffic, tcp, throttle | COMMUNICATION | DEBUG                 |
/// | engine: plist, content, whc, rhc             | DATABASE      | DEBUG                 |
/// | engine: timing, trace                        | PLATFORM      | DEBUG                 |
#pragma once

#include <array>

#include "pexa/config_logger.h"
#include "pexa/log.h"
#include "platform/engine/log.hpp"

namespace pexa::dds {

/// A verbosity for each category.
using Verbosities = std::array<PEXA_Config_LogVerbosity, PEXA_CONFIG_LOG_CATEGORY_COUNT>;

struct LogSorting {
    PEXA_Config_LogCategory category;
    PEXA_Config_LogLevel level;
};

[[nodiscard]] LogSorting sorting_of(engine::LogCategory category);
[[nodiscard]] PEXA_Config_LogCategory category_of(QELLogModule module);

/// @return whether a message of this level passes.
[[nodiscard]] constexpr bool passes(PEXA_Config_LogVerbosity verbosity,
                                    PEXA_Config_LogLevel level) {
    return (verbosity & QEL_LOG_BIT(level)) != 0;
}

/// Switches on in the port's modules and in the engine what passes the verbosities, and nothing
/// more: a trace that nobody asked for must cost nothing. Waits for running calls of the engine's
/// log, so it must not be called from one.
void choose_messages(const Verbosities& verbosities);

/// Leads both sources to the logger.
void install_sources();

}  // namespace pexa::dds
