/// @file log_sources.hpp
/// @brief Where the middleware logger's messages come from, and how they are sorted.
///
/// | source                | category      | level         |
/// |-----------------------|---------------|---------------|
/// | port, module OSAPI    | PLATFORM      | its own       |
/// | port, module CDR      | DATABASE      | its own       |
/// | port, module DDS      | API           | its own       |
/// | engine: fatal, error, refused participants | COMMUNICATION | ERROR |
/// | engine: warning       | COMMUNICATION | WARNING       |
/// | engine: info          | COMMUNICATION | STATUS_LOCAL  |
/// | engine: configuration | PLATFORM      | STATUS_LOCAL  |
/// | engine: discovery     | ENTITIES      | STATUS_REMOTE |
/// | engine: topics        | ENTITIES      | DEBUG         |
/// | engine: traffic       | COMMUNICATION | DEBUG         |
/// | engine: storage       | DATABASE      | DEBUG         |
/// | engine: internals     | PLATFORM      | DEBUG         |
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

LogSorting sorting_of(engine::LogCategory category);
PEXA_Config_LogCategory category_of(QELLogModule module);

/// @return whether a message of this level passes.
constexpr bool passes(PEXA_Config_LogVerbosity verbosity, PEXA_Config_LogLevel level) {
    return (verbosity & QEL_LOG_BIT(level)) != 0;
}

/// Switches the messages that pass the verbosities on, in the port's modules and in the engine, and
/// all others off: a trace that does not pass must cost nothing. It waits for running calls of the
/// engine's log, so such a call must not use it.
void let_pass(const Verbosities& verbosities);

/// Leads both sources to the logger.
void install_sources();

}  // namespace pexa::dds
