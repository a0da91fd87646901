#include "platform/dds/log/log_line.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "pexa/osapi.h"

namespace pexa::dds {
namespace {

constexpr PEXA_Config_LogPrintFormat shows_category = 0x002;
constexpr PEXA_Config_LogPrintFormat shows_microseconds = 0x020;
constexpr PEXA_Config_LogPrintFormat shows_time = 0x100;
constexpr PEXA_Config_LogPrintFormat shows_thread = 0x200;
constexpr PEXA_Config_LogPrintFormat shows_source = 0x800;

constexpr std::size_t longest_prefix = 128;

PEXA_Config_LogPrintFormat known_format(PEXA_Config_LogPrintFormat format) {
    switch (format) {
        case PEXA_CONFIG_LOG_PRINT_FORMAT_TIMESTAMPED:
        case PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE:
        case PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED:
        case PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG:
        case PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL:
        case PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL:
            return format;
        default:
            return PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT;
    }
}

const char* name_of(PEXA_Config_LogCategory category) {
    switch (category) {
        case PEXA_CONFIG_LOG_CATEGORY_PLATFORM:
            return "PLATFORM";
        case PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION:
            return "COMMUNICATION";
        case PEXA_CONFIG_LOG_CATEGORY_DATABASE:
            return "DATABASE";
        case PEXA_CONFIG_LOG_CATEGORY_ENTITIES:
            return "ENTITIES";
        case PEXA_CONFIG_LOG_CATEGORY_API:
            break;
    }
    return "API";
}

const char* name_of(PEXA_Config_LogLevel level) {
    switch (level) {
        case PEXA_CONFIG_LOG_LEVEL_ERROR:
            return "ERROR";
        case PEXA_CONFIG_LOG_LEVEL_WARNING:
            return "WARNING";
        case PEXA_CONFIG_LOG_LEVEL_STATUS_LOCAL:
            return "LOCAL";
        case PEXA_CONFIG_LOG_LEVEL_STATUS_REMOTE:
            return "REMOTE";
        case PEXA_CONFIG_LOG_LEVEL_DEBUG:
            break;
    }
    return "DEBUG";
}

/// Joins the parts of a line and keeps room for the newline.
class LineWriter {
public:
    explicit LineWriter(std::span<char> line) : line_(line) {}

    template <typename... Arguments>
    void print(const char* format, Arguments... arguments) {
        const std::size_t room = line_.size() - length_;
        const int wanted = std::snprintf(line_.data() + length_, room, format, arguments...);
        length_ += std::min(static_cast<std::size_t>(std::max(wanted, 0)), room - 1);
    }

    void time(const std::tm& time) {
        const std::size_t room = line_.size() - length_;
        length_ += std::strftime(line_.data() + length_, room, "%Y-%m-%d %H:%M:%S", &time);
    }

    std::size_t end() {
        line_[length_] = '\n';
        return length_ + 1;
    }

private:
    std::span<char> line_;
    std::size_t length_ = 0;
};

}  // namespace

std::size_t format_line(std::span<char> line, PEXA_Config_LogPrintFormat format,
                        const LogLine& content) {
    const PEXA_Config_LogPrintFormat shown = known_format(format);
    LineWriter writer(line);
    if ((shown & shows_time) != 0) {
        writer.time(content.local_time);
        if ((shown & shows_microseconds) != 0) {
            writer.print(".%06u ", content.microseconds);
        } else {
            writer.print(".%03u ", content.microseconds / 1000);
        }
    }
    if ((shown & shows_category) != 0) {
        writer.print("[%s|%s] ", name_of(content.category), name_of(content.level));
    }
    if ((shown & shows_thread) != 0) {
        writer.print("(%u) ", static_cast<unsigned>(content.thread));
    }
    if ((shown & shows_source) != 0) {
        writer.print("%s: ", content.source == LogSource::port ? "port" : "engine");
    }
    writer.print("%s", content.text);
    return writer.end();
}

void print_line(PEXA_Config_LogPrintFormat format, PEXA_Config_LogCategory category,
                PEXA_Config_LogLevel level, LogSource source, const char* text) {
    using std::chrono::system_clock;
    const auto now = system_clock::now();
    const auto microseconds =
        std::chrono::duration_cast<std::chrono::microseconds>(now.time_since_epoch()).count();
    const std::time_t seconds = system_clock::to_time_t(now);

    LogLine content;
    content.category = category;
    content.level = level;
    content.source = source;
    content.text = text;
    localtime_r(&seconds, &content.local_time);
    content.microseconds = static_cast<unsigned>(microseconds % 1'000'000);
    content.thread = QELOsapiThread_getCurrentThreadID();

    std::array<char, longest_message + longest_prefix> line;
    const std::size_t length = format_line(line, format, content);
    QELOsapi_printLine("%.*s", static_cast<int>(length), line.data());
}

}  // namespace pexa::dds
