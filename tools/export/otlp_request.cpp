#include "tools/export/otlp_request.hpp"

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <limits>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

#include "tools/export/export_entry.hpp"
#include "tools/export/severity.hpp"
#include "tools/text/application_text.hpp"
#include "tools/text/json_object.hpp"
#include "tools/text/level_names.hpp"
#include "tools/text/logger_name.hpp"

namespace orvane::tools {
namespace {

/// The service and the scope of what is not a message.
constexpr std::string_view own_name = "orvane";

JsonObject any_value(std::string_view text) {
    JsonObject value;
    value.add("stringValue", text);
    return value;
}

JsonObject any_value(std::integral auto number) {
    JsonObject value;
    value.add("intValue", std::to_string(number));
    return value;
}

template <typename Value>
void add_attribute(JsonArray& attributes, std::string_view key, const Value& value) {
    JsonObject attribute;
    attribute.add("key", key);
    attribute.add("value", any_value(value));
    attributes.add(std::move(attribute));
}

std::string service_name(const Logger& logger) {
    if (!logger.kind.empty()) {
        return logger.kind;
    }
    return logger.process.empty() ? "unknown_service" : "unknown_service:" + logger.process;
}

JsonObject resource_of(const Logger* logger) {
    JsonArray attributes;
    if (logger == nullptr) {
        add_attribute(attributes, "service.name", own_name);
    } else {
        add_attribute(attributes, "service.name", service_name(*logger));
        add_attribute(attributes, "service.instance.id", format_application(logger->application));
        if (logger->application.instance_id != 0) {
            add_attribute(attributes, "orvane.id", format_instance(logger->application));
        }
        if (!logger->host.empty()) {
            add_attribute(attributes, "host.name", logger->host);
        }
        if (logger->process_id != 0) {
            add_attribute(attributes, "process.pid", logger->process_id);
        }
        if (!logger->process.empty()) {
            add_attribute(attributes, "process.executable.name", logger->process);
        }
    }
    JsonObject resource;
    resource.add("attributes", std::move(attributes));
    return resource;
}

std::string time_text(std::int64_t nanoseconds) {
    return std::to_string(std::max<std::int64_t>(nanoseconds, 0));
}

JsonObject log_record(const ExportEntry& entry, std::int64_t observed) {
    JsonObject record;
    record.add("timeUnixNano", time_text(entry.nanoseconds));
    record.add("observedTimeUnixNano", time_text(observed));
    record.add("severityNumber", severity_of(entry.level).otlp);
    record.add("severityText", level_text(entry.level));
    record.add("body", any_value(entry.text));
    JsonArray attributes;
    add_attribute(attributes, "orvane.level", entry.level);
    if (!entry.event.empty()) {
        add_attribute(attributes, "orvane.event", entry.event);
    }
    for (const auto& [name, number] : entry.numbers) {
        // The protocol's integers have a sign.
        constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
        add_attribute(attributes, "orvane." + std::string{name}, std::min(number, largest));
    }
    if (entry.publisher != nullptr) {
        const Logger& publisher = entry.publisher->logger;
        add_attribute(attributes, "orvane.publisher", name_of(publisher));
        add_attribute(attributes, "orvane.publisher.id", format_instance(publisher.application));
    }
    record.add("attributes", std::move(attributes));
    return record;
}

JsonObject scope_logs(std::string_view name, JsonArray records) {
    JsonObject logs;
    if (!name.empty()) {
        JsonObject scope;
        scope.add("name", name);
        logs.add("scope", std::move(scope));
    }
    logs.add("logRecords", std::move(records));
    return logs;
}

/// What makes a resource differ from another one.
auto identity_of(const Logger& logger) {
    return std::tuple<Application, std::string_view, std::string_view, std::string_view,
                      std::int64_t>{logger.application, logger.kind, logger.host, logger.process,
                                    logger.process_id};
}

struct Resource {
    const Logger* logger = nullptr;
    std::map<std::string_view, JsonArray> scopes;
};

}  // namespace

std::string otlp_request(std::span<const ExportRecord> records) {
    const Logger nobody;
    std::map<decltype(identity_of(nobody)), Resource> resources;
    for (const ExportRecord& record : records) {
        const ExportEntry entry = entry_of(record.event);
        Resource& resource =
            resources[identity_of(entry.logger == nullptr ? nobody : *entry.logger)];
        resource.logger = entry.logger;
        resource.scopes[entry.event.empty() ? entry.category : own_name].add(
            log_record(entry, record.observed));
    }
    JsonArray resource_logs;
    for (auto& [identity, resource] : resources) {
        JsonArray scopes;
        for (auto& [name, scope_records] : resource.scopes) {
            scopes.add(scope_logs(name, std::move(scope_records)));
        }
        JsonObject logs;
        logs.add("resource", resource_of(resource.logger));
        logs.add("scopeLogs", std::move(scopes));
        resource_logs.add(std::move(logs));
    }
    JsonObject request;
    request.add("resourceLogs", std::move(resource_logs));
    return request.take();
}

}  // namespace orvane::tools
