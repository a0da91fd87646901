#include "tools/text/settings_text.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

#include "tools/text/level_names.hpp"
#include "tools/text/setting_names.hpp"

namespace orvane::tools {
namespace {

/// A setting by name and value.
struct Setting {
    std::string_view name;
    std::string value;
};

Setting filter_level(const LoggerState& state) {
    return {"filter level", filter_level_text(state.filter_level)};
}

Setting print_format(const LoggerState& state) {
    return {"print format", std::string{print_format_name(state.print_format)}};
}

Setting verbosity(const LoggerState& state, MiddlewareCategory category) {
    return {middleware_category_name(category),
            std::string{verbosity_name(state.verbosities[static_cast<std::size_t>(category)])}};
}

std::vector<Setting> settings_of(const LoggerState& state) {
    std::vector<Setting> settings{{"state", std::string{state_name(state.state)}},
                                  filter_level(state)};
    for (std::size_t category = 0; category < state.verbosities.size(); ++category) {
        settings.push_back(verbosity(state, static_cast<MiddlewareCategory>(category)));
    }
    settings.push_back(print_format(state));
    return settings;
}

/// The settings that a command changes.
struct ChangedSettings {
    const LoggerState& state;

    std::vector<Setting> operator()(const SetFilterLevel& /*command*/) const {
        return {filter_level(state)};
    }
    std::vector<Setting> operator()(const SetVerbosities& command) const {
        std::vector<Setting> settings;
        for (const auto& [category, unused] : command.pairs) {
            settings.push_back(verbosity(state, category));
        }
        return settings;
    }
    std::vector<Setting> operator()(const SetPrintFormat& /*command*/) const {
        return {print_format(state)};
    }
};

enum class Unchanged { shown, hidden };

std::string compare(const std::vector<Setting>& before, const std::vector<Setting>& now,
                    Unchanged unchanged) {
    std::string text;
    for (std::size_t i = 0; i < now.size(); ++i) {
        const bool differs = before[i].value != now[i].value;
        if (!differs && unchanged == Unchanged::hidden) {
            continue;
        }
        text += text.empty() ? "" : ", ";
        text += now[i].name;
        text += ' ';
        text += differs ? before[i].value + " -> " + now[i].value : now[i].value;
    }
    return text;
}

}  // namespace

std::string settings_text(const Command& command, const LoggerState& now) {
    return effect_text(command, now, now);
}

std::string difference_text(const LoggerState& before, const LoggerState& now) {
    return compare(settings_of(before), settings_of(now), Unchanged::hidden);
}

std::string effect_text(const Command& command, const LoggerState& before, const LoggerState& now) {
    return compare(std::visit(ChangedSettings{before}, command),
                   std::visit(ChangedSettings{now}, command), Unchanged::shown);
}

}  // namespace orvane::tools
