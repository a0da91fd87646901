#include "platform/dds/log/log_sources.hpp"

#include <algorithm>
#include <cstring>

#include "pexa/osapi.h"
#include "platform/dds/interface/scoped_call.hpp"
#include "platform/dds/log/config_logger.hpp"

namespace pexa::dds {
namespace {

constexpr QELLogModule modules[] = {QEL_LOG_MODULE_OSAPI, QEL_LOG_MODULE_CDR, QEL_LOG_MODULE_DDS};

void receive_from_port(void* /*context*/, QELLogModule module, QELLogLevel level,
                       const char* text) {
    PEXA_Config_Logger& logger = PEXA_Config_Logger::instance();
    logger.receive(category_of(module), static_cast<PEXA_Config_LogLevel>(level), LogSource::port,
                   text);
    logger.update_sources();
}

void receive_from_engine(void* /*context*/, engine::LogCategory category, std::string_view text) {
    const EngineCall mark;
    std::array<char, longest_message + 1> terminated;
    const std::size_t length = std::min(text.size(), longest_message);
    std::memcpy(terminated.data(), text.data(), length);
    terminated[length] = '\0';

    const auto [sorted, level] = sorting_of(category);
    PEXA_Config_Logger::instance().receive(sorted, level, LogSource::engine, terminated.data());
    if (category == engine::LogCategory::fatal) {
        // The engine ends the process without flushing standard output.
        QELOsapi_flushLines();
    }
}

}  // namespace

LogSorting sorting_of(engine::LogCategory category) {
    switch (category) {
        case engine::LogCategory::fatal:
        case engine::LogCategory::error:
            return {PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, PEXA_CONFIG_LOG_LEVEL_ERROR};
        case engine::LogCategory::warning:
            return {PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, PEXA_CONFIG_LOG_LEVEL_WARNING};
        case engine::LogCategory::info:
            return {PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, PEXA_CONFIG_LOG_LEVEL_STATUS_LOCAL};
        case engine::LogCategory::configuration:
            return {PEXA_CONFIG_LOG_CATEGORY_PLATFORM, PEXA_CONFIG_LOG_LEVEL_STATUS_LOCAL};
        case engine::LogCategory::discovery:
            return {PEXA_CONFIG_LOG_CATEGORY_ENTITIES, PEXA_CONFIG_LOG_LEVEL_STATUS_REMOTE};
        case engine::LogCategory::topics:
            return {PEXA_CONFIG_LOG_CATEGORY_ENTITIES, PEXA_CONFIG_LOG_LEVEL_DEBUG};
        case engine::LogCategory::traffic:
            return {PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, PEXA_CONFIG_LOG_LEVEL_DEBUG};
        case engine::LogCategory::storage:
            return {PEXA_CONFIG_LOG_CATEGORY_DATABASE, PEXA_CONFIG_LOG_LEVEL_DEBUG};
        case engine::LogCategory::internals:
            break;
    }
    return {PEXA_CONFIG_LOG_CATEGORY_PLATFORM, PEXA_CONFIG_LOG_LEVEL_DEBUG};
}

PEXA_Config_LogCategory category_of(QELLogModule module) {
    switch (module) {
        case QEL_LOG_MODULE_OSAPI:
            return PEXA_CONFIG_LOG_CATEGORY_PLATFORM;
        case QEL_LOG_MODULE_CDR:
            return PEXA_CONFIG_LOG_CATEGORY_DATABASE;
        case QEL_LOG_MODULE_DDS:
            break;
    }
    return PEXA_CONFIG_LOG_CATEGORY_API;
}

void let_pass(const Verbosities& verbosities) {
    for (const QELLogModule module : modules) {
        // Levels and their bits are the same on both sides.
        QELLog_setInstrumentationMask(module, verbosities[category_of(module)]);
    }
    engine::LogMask mask = 0;
    for (int i = 0; i < engine::log_category_count; ++i) {
        const auto category = static_cast<engine::LogCategory>(i);
        const auto [sorted, level] = sorting_of(category);
        if (passes(verbosities[sorted], level)) {
            mask |= engine::log_bit(category);
        }
    }
    engine::set_log_mask(mask);
}

void install_sources() {
    engine::set_log_sink(receive_from_engine, nullptr);
    QELLog_setSink(receive_from_port, nullptr);
}

}  // namespace pexa::dds
