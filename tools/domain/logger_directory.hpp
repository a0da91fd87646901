/// @file logger_directory.hpp
/// @brief Who is behind the numbers of an application.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "tools/records/logger.hpp"
#include "tools/records/logger_state.hpp"
#include "tools/records/process.hpp"

namespace orvane::tools {

/// Knows every logger that has been seen, also after it has gone.
///
/// The first logger of a kind has the number 1, the next one 2. A logger keeps its number, and no
/// other one of the kind ever gets it. Used by one thread.
class LoggerDirectory {
public:
    /// Takes the kind from a State.
    void add(const LoggerState& state);
    /// Takes what a participant announces.
    void add(const Application& application, const Process& process);

    /// What is known of an application. Before its State it has no kind.
    Logger logger(const Application& application) const;
    /// What a participant has announced.
    Process process(const Application& application) const;

private:
    struct Entry {
        std::string kind;
        std::uint32_t number = 1;
        Process process;
    };
    Entry find(const Application& application) const;

    std::map<Application, Entry> entries_;
    std::map<std::string, std::uint32_t> last_numbers_;  ///< given to a logger of the kind
};

}  // namespace orvane::tools
