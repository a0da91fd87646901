/// @file logger_name.hpp
/// @brief The names of loggers, and what a viewer tells about loggers between their messages. No
/// text can disturb a terminal.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tools/records/event.hpp"
#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// "pump", "pump#2" for the second logger of this kind, or "0a141e28:0000c350" for a logger without
/// a kind.
std::string name_of(const Logger& logger);

/// " via planner" for what certificates say planner has published in another's name, else nothing.
std::string via_text(const std::shared_ptr<const Publisher>& publisher);

/// "process 4711 (planner) on host robot2", or the parts of it that are known.
std::string process_text(const Logger& logger);

/// "37 messages of pump lost: 30 queue full, 7 on the way".
std::string loss_text(const LossEvent& loss);

/// "--- 37 messages of pump lost: 30 queue full, 7 on the way ---" with a newline.
std::string loss_line(const LossEvent& loss);

/// "--- 12 events are not in the recording ---" with a newline.
std::string gap_line(const RecordingGap& gap);

/// Tells loggers of one kind apart as soon as there are several.
class Introductions {
public:
    /// @return the lines that a reader needs before the next text about the logger: "--- pump#2 is
    /// 0a141e28:0000c350, process 4711 (planner) on host robot2 ---", and one for the first of the
    /// kind. The instance id is told where HOST:APP is not enough
    std::string meet(const Logger& logger);

private:
    struct Kind {
        std::set<Application> met;
        std::vector<Logger> untold;  ///< met, and not introduced
        bool is_ambiguous = false;
    };
    std::map<std::string, Kind> kinds_;
};

}  // namespace orvane::tools
