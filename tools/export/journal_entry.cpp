#include "tools/export/journal_entry.hpp"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string_view>

#include "tools/export/export_entry.hpp"
#include "tools/export/severity.hpp"
#include "tools/text/application_text.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/logger_name.hpp"
#include "tools/text/time_text.hpp"
#include "tools/text/utf8.hpp"

namespace orvane::tools {
namespace {

/// Adds a field unless it is empty.
void add_field(std::string& fields, std::string_view name, std::string_view text) {
    const std::string value = well_formed(text);
    if (value.empty()) {
        return;
    }
    fields += name;
    if (value.find('\n') == std::string::npos) {
        fields += '=';
    } else {
        fields += '\n';
        for (unsigned shift = 0; shift < 64; shift += 8) {
            fields += static_cast<char>(std::uint64_t{value.size()} >> shift & 0xFFU);
        }
    }
    fields += value;
    fields += '\n';
}

std::string upper_case(std::string_view name) {
    std::string text{name};
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    });
    return text;
}

std::string_view identifier_of(const Logger* logger) {
    if (logger == nullptr || (logger->kind.empty() && logger->process.empty())) {
        return "orvane";
    }
    return logger->kind.empty() ? logger->process : logger->kind;
}

}  // namespace

std::string journal_entry(const RecordedEvent& event) {
    const ExportEntry entry = entry_of(event);
    std::string fields;
    add_field(fields, "MESSAGE", entry.text);
    add_field(fields, "PRIORITY", std::to_string(severity_of(entry.level).syslog));
    add_field(fields, "SYSLOG_IDENTIFIER", identifier_of(entry.logger));
    add_field(fields, "ORVANE_TIME", json_time(entry.nanoseconds));
    add_field(fields, "ORVANE_LEVEL", std::to_string(entry.level));
    add_field(fields, "ORVANE_LEVEL_NAME", level_text(entry.level));
    add_field(fields, "ORVANE_CATEGORY", entry.category);
    add_field(fields, "ORVANE_EVENT", entry.event);
    for (const auto& [name, number] : entry.numbers) {
        add_field(fields, "ORVANE_" + upper_case(name), std::to_string(number));
    }
    if (entry.logger != nullptr) {
        const Logger& logger = *entry.logger;
        if (logger.process_id != 0) {
            add_field(fields, "SYSLOG_PID", std::to_string(logger.process_id));
        }
        add_field(fields, "ORVANE_APP", format_application(logger.application));
        if (logger.application.instance_id != 0) {
            add_field(fields, "ORVANE_ID", format_instance(logger.application));
        }
        add_field(fields, "ORVANE_KIND", logger.kind);
        add_field(fields, "ORVANE_HOST", logger.host);
        add_field(fields, "ORVANE_PROCESS", logger.process);
    }
    if (entry.publisher != nullptr) {
        const Logger& publisher = entry.publisher->logger;
        add_field(fields, "ORVANE_PUBLISHER", name_of(publisher));
        add_field(fields, "ORVANE_PUBLISHER_ID", format_instance(publisher.application));
    }
    return fields;
}

}  // namespace orvane::tools
