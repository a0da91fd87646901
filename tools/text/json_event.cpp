#include "tools/text/json_event.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <utility>

#include "tools/text/logger_text.hpp"
#include "tools/text/setting_names.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

using Json = nlohmann::json;

/// Reads members of an object, and keeps the first problem.
class Members {
public:
    Members(const Json& object, std::string& problem) : object_(object), problem_(problem) {}

    bool has(const char* name) const { return object_.contains(name); }

    bool is_true(const char* name) {
        const Json* member = find(name, true);
        if (member == nullptr || member->is_boolean()) {
            return member != nullptr && member->get<bool>();
        }
        return fail<bool>(name, "true or false");
    }

    template <std::integral Number>
    Number number(const char* name, std::optional<Number> missing = std::nullopt) {
        const Json* member = find(name, missing.has_value());
        if (member == nullptr) {
            return missing.value_or(0);
        }
        // The parser makes a number that has no sign unsigned.
        if (member->is_number_unsigned() && std::in_range<Number>(member->get<std::uint64_t>())) {
            return static_cast<Number>(member->get<std::uint64_t>());
        }
        if (member->is_number_integer() && !member->is_number_unsigned() &&
            std::in_range<Number>(member->get<std::int64_t>())) {
            return static_cast<Number>(member->get<std::int64_t>());
        }
        return fail<Number>(
            name, fmt::format("a number from {} to {}", std::numeric_limits<Number>::min(),
                              std::numeric_limits<Number>::max()));
    }

    std::string text(const char* name, bool may_be_missing) {
        const Json* member = find(name, may_be_missing);
        if (member == nullptr) {
            return {};
        }
        return member->is_string() ? member->get<std::string>() : fail<std::string>(name, "a text");
    }

    /// A text that @p parse understands.
    template <typename Parse>
    auto parsed(const char* name, Parse parse, const std::string& valid) {
        const auto value = parse(text(name, false));
        using Value = typename decltype(value)::value_type;
        return value ? *value : fail<Value>(name, valid);
    }

    /// The members of a member; none when it is missing or no object.
    Members object(const char* name) {
        static const Json nothing = Json::object();
        const Json* member = find(name, false);
        if (member != nullptr && !member->is_object()) {
            fail<int>(name, "an object");
            member = nullptr;
        }
        return {member == nullptr ? nothing : *member, problem_};
    }

    template <typename Value>
    Value fail(const char* name, const std::string& expected) {
        if (problem_.empty()) {
            problem_ = fmt::format("member \"{}\": expected {}", name, expected);
        }
        return Value{};
    }

    const Json& json() const { return object_; }

private:
    const Json* find(const char* name, bool may_be_missing) {
        const auto member = object_.find(name);
        if (member != object_.end()) {
            return &*member;
        }
        if (!may_be_missing && problem_.empty()) {
            problem_ = fmt::format("no member \"{}\", expected one", name);
        }
        return nullptr;
    }

    const Json& object_;
    std::string& problem_;
};

std::int64_t read_time(Members& members) {
    return members.parsed("time", parse_time, "a time as in RFC 3339, from 1677 to 2262");
}

Logger read_logger(Members& members) {
    return {.application = {members.number<std::uint32_t>("host_id"),
                            members.number<std::uint32_t>("app_id"),
                            members.number<std::uint32_t>("instance_id", 0)},
            .kind = members.text("kind", true),
            .number = members.number<std::uint32_t>("number", 1),
            .host = members.text("host", true),
            .process = members.text("process", true),
            .process_id = members.number<std::int64_t>("pid", 0)};
}

std::shared_ptr<const Publisher> read_publisher(Members& members) {
    if (!members.has("publisher")) {
        return nullptr;
    }
    Members publisher = members.object("publisher");
    return std::make_shared<Publisher>(
        Publisher{read_logger(publisher), publisher.is_true("authenticated")});
}

MessageEvent read_message(Members& members) {
    const Logger logger = read_logger(members);
    return {.record = {.nanoseconds = read_time(members),
                       .application = logger.application,
                       .level = members.number<std::int32_t>(
                           members.has("orvane_level") ? "orvane_level" : "level"),
                       .category = members.text("category", true),
                       .message = members.text("message", false)},
            .logger = logger,
            .publisher = read_publisher(members)};
}

LossEvent read_loss(Members& members) {
    return {.nanoseconds = read_time(members),
            .logger = read_logger(members),
            .queue_full = members.number<std::uint64_t>("queue_full"),
            .no_memory = members.number<std::uint64_t>("no_memory"),
            .discarded = members.number<std::uint64_t>("discarded"),
            .on_the_way = members.number<std::uint64_t>("on_the_way")};
}

LoggerState read_state(Members& members, const Application& application) {
    LoggerState state;
    state.application = application;
    state.kind = members.text("kind", true);
    state.state = members.parsed("state", parse_state, state_names());
    state.filter_level = members.number<std::int32_t>("filter_level");
    state.domain_id = members.number<std::int32_t>("domain");
    Members verbosities = members.object("verbosities");
    for (const auto& [name, unused] : verbosities.json().items()) {
        // A category of a later version does not matter.
        if (const auto category = parse_middleware_category(name)) {
            state.verbosities[static_cast<std::size_t>(*category)] =
                verbosities.parsed(name.c_str(), parse_verbosity, verbosity_names());
        }
    }
    state.print_format = members.parsed("print_format", parse_print_format, print_format_names());
    return state;
}

std::optional<LoggerChange::Kind> parse_event_name(std::string_view text) {
    using Kind = LoggerChange::Kind;
    for (const Kind kind : {Kind::appeared, Kind::present, Kind::changed, Kind::gone}) {
        if (text == event_name(kind)) {
            return kind;
        }
    }
    return std::nullopt;
}

LoggerEvent read_logger_event(Members& members) {
    LoggerEvent event;
    event.nanoseconds = read_time(members);
    event.logger = read_logger(members);
    event.publisher = read_publisher(members);
    event.change.kind =
        members.parsed("event", parse_event_name, "appeared, present, changed or gone");
    event.change.now = read_state(members, event.logger.application);
    event.change.before = event.change.now;
    if (event.change.kind == LoggerChange::Kind::changed && members.has("before")) {
        Members before = members.object("before");
        event.change.before = read_state(before, event.logger.application);
    }
    return event;
}

RecordingGap read_gap(Members& members) {
    return {.nanoseconds = read_time(members), .events = members.number<std::uint64_t>("events")};
}

RecordedEvent read_event(Members& members) {
    static constexpr struct {
        std::string_view type;
        RecordedEvent (*read)(Members& members);
    } types[] = {
        {"message", [](Members& each) -> RecordedEvent { return read_message(each); }},
        {"loss", [](Members& each) -> RecordedEvent { return read_loss(each); }},
        {"logger", [](Members& each) -> RecordedEvent { return read_logger_event(each); }},
        {"gap", [](Members& each) -> RecordedEvent { return read_gap(each); }},
    };
    const std::string name = members.text("type", false);
    const auto* const type = std::find_if(std::begin(types), std::end(types),
                                          [&](const auto& each) { return each.type == name; });
    return type == std::end(types)
               ? members.fail<RecordedEvent>("type", "message, loss, logger or gap")
               : type->read(members);
}

}  // namespace

std::optional<RecordedEvent> parse_json_event(std::string_view text, std::string& problem) {
    constexpr bool throws = false;
    const Json object = Json::parse(text, nullptr, throws);
    if (!object.is_object()) {
        problem = "expected a JSON object";
        return std::nullopt;
    }
    problem.clear();
    Members members{object, problem};
    RecordedEvent event = read_event(members);
    return problem.empty() ? std::optional{std::move(event)} : std::nullopt;
}

}  // namespace orvane::tools
