/// @file spdlog_sink.h
/// @brief A sink for spdlog that logs with the process's logger. C++17, header only.
///
///     #include <orvane/spdlog_sink.h>
///
///     spdlog::logger pump{"pump", std::make_shared<orvane::SpdlogSink>()};
///     pump.info("started in {} s", seconds);
///
/// The name of the spdlog logger becomes the category. A message keeps the time at which it was
/// logged, also behind an asynchronous logger. Its text is what the caller has formatted: a pattern
/// is of no use here, because level, time and name travel by themselves.
#ifndef ORVANE_SPDLOG_SINK_H
#define ORVANE_SPDLOG_SINK_H

#include <spdlog/common.h>
#include <spdlog/sinks/sink.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "orvane/log.h"

namespace orvane {

/// @return the level of messages that spdlog gives this level. `off` is no level of a message.
constexpr DDS_Long from_spdlog_level(spdlog::level::level_enum level) noexcept {
    switch (level) {
        case spdlog::level::trace:
            return QEL_KX_LEVEL_TRACE;
        case spdlog::level::debug:
            return QEL_KX_LEVEL_DEBUG;
        case spdlog::level::info:
            return QEL_KX_LEVEL_INFO;
        case spdlog::level::warn:
            return QEL_KX_LEVEL_WARNING;
        case spdlog::level::err:
            return QEL_KX_LEVEL_ERROR;
        case spdlog::level::critical:
            return QEL_KX_LEVEL_FATAL;
        default:
            return QEL_KX_LEVEL_SILENT;
    }
}

/// @return the least severe level of spdlog that is at least as severe, for any level. So a filter
///   of spdlog's lets the same messages pass.
constexpr spdlog::level::level_enum to_spdlog_level(DDS_Long level) noexcept {
    return level <= QEL_KX_LEVEL_SILENT    ? spdlog::level::off
           : level <= QEL_KX_LEVEL_SEVERE  ? spdlog::level::critical
           : level <= QEL_KX_LEVEL_ERROR   ? spdlog::level::err
           : level <= QEL_KX_LEVEL_WARNING ? spdlog::level::warn
           : level <= QEL_KX_LEVEL_INFO    ? spdlog::level::info
           : level <= QEL_KX_LEVEL_DEBUG   ? spdlog::level::debug
                                           : spdlog::level::trace;
}

/// Any number of threads and loggers may use one sink. Without a logger of the process it does
/// nothing.
class SpdlogSink final : public spdlog::sinks::sink {
public:
    void log(const spdlog::details::log_msg& message) override {
        const DDS_Long level = from_spdlog_level(message.level);
        if (message.level == spdlog::level::off || QEL_KX_Orvane_isLevelEnabled(level) == 0) {
            return;
        }
        std::array<char, ORVANE_LOG_MESSAGE_BOUND + 1> text;
        std::array<char, ORVANE_LOG_CATEGORY_BOUND + 1> category;
        copy(message.payload, text);
        copy(message.logger_name, category);
        const QEL_KX_LogMessageParams params = {level, text.data(), category.data(),
                                                to_time(message.time)};
        QEL_KX_Orvane_logMessageWithParams(orvane_logger(), &params);
    }
    /// Waits until what was logged is published, half a second at most.
    void flush() override { orvane_wait_until_published(500); }
    void set_pattern(const std::string& /*pattern*/) override {}
    void set_formatter(std::unique_ptr<spdlog::formatter> /*formatter*/) override {}

private:
    template <std::size_t Size>
    static void copy(spdlog::string_view_t from, std::array<char, Size>& to) noexcept {
        const std::size_t length = orvane_utf8_truncate(from.data(), from.size(), Size - 1);
        std::copy_n(from.data(), length, to.data());
        to[length] = '\0';
    }

    static DDS_Time_t to_time(spdlog::log_clock::time_point time) noexcept {
        using std::chrono::duration_cast;
        const auto since = time.time_since_epoch();
        const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
        const auto rest = duration_cast<std::chrono::nanoseconds>(since - seconds);
        return {static_cast<DDS_Long>(seconds.count()),
                static_cast<DDS_UnsignedLong>(rest.count())};
    }
};

}  // namespace orvane

#endif
