#include "tools/records/command.hpp"

#include <algorithm>
#include <cstddef>

namespace orvane::tools {
namespace {

struct InForce {
    const LoggerState& state;

    bool operator()(const SetFilterLevel& command) const {
        return state.filter_level == command.level;
    }
    bool operator()(const SetVerbosities& command) const {
        return std::all_of(command.pairs.begin(), command.pairs.end(), [&](const auto& pair) {
            return state.verbosities[static_cast<std::size_t>(pair.first)] == pair.second;
        });
    }
    bool operator()(const SetPrintFormat& command) const {
        return state.print_format == command.format;
    }
};

}  // namespace

bool is_in_force(const Command& command, const LoggerState& state) {
    return std::visit(InForce{state}, command);
}

}  // namespace orvane::tools
