/// @file shared_ids.hpp
/// @brief Warns of loggers that share HOST:APP.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/records/event.hpp"

namespace orvane::tools {

/// Finds loggers that are alive and share HOST:APP. Each pair is told once.
class SharedIds {
public:
    /// A logger is alive.
    /// @param publisher of its State in its name; NULL is the logger itself
    /// @return a text for each other logger that shares its HOST:APP: who they are, what follows
    /// and what helps. It cannot disturb a terminal
    std::vector<std::string> meet(const Logger& logger,
                                  const std::shared_ptr<const Publisher>& publisher);
    /// What is told because of an event.
    std::vector<std::string> note(const LoggerEvent& event);

private:
    struct Alive {
        Logger logger;
        std::shared_ptr<const Publisher> publisher;
    };

    std::map<Application, Alive> alive_;
    std::set<std::pair<Application, Application>> told_;
};

}  // namespace orvane::tools
