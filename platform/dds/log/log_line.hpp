/// @file log_line.hpp
/// @brief A middleware message as a line of text.
///
/// The bits of a print format's number say which parts of a line it shows:
///
/// | bit   | shows                                              |
/// |-------|----------------------------------------------------|
/// | 0x002 | category and level, "[ENTITIES|WARNING]"           |
/// | 0x020 | microseconds instead of milliseconds, with 0x100   |
/// | 0x100 | local time, "2024-05-31 12:00:00.123"              |
/// | 0x200 | number of the reporting thread, "(4711)"           |
/// | 0x800 | source of the message, "port:" or "engine:"        |
///
/// The seven formats print, in this order:
///
/// | format              | time         | category and level | thread | source | text |
/// |---------------------|--------------|--------------------|--------|--------|------|
/// | MINIMAL             |              |                    |        |        | yes  |
/// | DEFAULT             |              | yes                |        |        | yes  |
/// | TIMESTAMPED         | milliseconds | yes                |        |        | yes  |
/// | DEBUG               |              | yes                | yes    |        | yes  |
/// | VERBOSE             |              | yes                | yes    | yes    | yes  |
/// | VERBOSE_TIMESTAMPED | milliseconds | yes                | yes    | yes    | yes  |
/// | MAXIMAL             | microseconds | yes                | yes    | yes    | yes  |
#pragma once

#include <cstdint>
#include <ctime>
#include <span>

#include "pexa/config_logger.h"

namespace pexa::dds {

/// The largest number of characters of a message; the rest of a longer message is cut off.
inline constexpr std::size_t longest_message = 2047;

enum class LogSource { port, engine };

struct LogLine {
    PEXA_Config_LogCategory category = PEXA_CONFIG_LOG_CATEGORY_PLATFORM;
    PEXA_Config_LogLevel level = PEXA_CONFIG_LOG_LEVEL_ERROR;
    LogSource source = LogSource::port;
    const char* text = "";
    std::tm local_time{};
    unsigned microseconds = 0;  ///< 0 … 999999
    DDS_UnsignedLong thread = 0;
};

/// @param line has room for the longest message and its prefix; otherwise the end is cut off
/// @return the number of characters, the newline at the end included, no NUL
std::size_t format_line(std::span<char> line, PEXA_Config_LogPrintFormat format,
                        const LogLine& content);

/// Prints a message on standard output in one piece, with the present time and this thread.
void print_line(PEXA_Config_LogPrintFormat format, PEXA_Config_LogCategory category,
                PEXA_Config_LogLevel level, LogSource source, const char* text);

}  // namespace pexa::dds
