/// @file logger_directory.hpp
/// @brief Who is behind the numbers of an application.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "tools/records/event.hpp"
#include "tools/records/logger.hpp"
#include "tools/records/logger_state.hpp"
#include "tools/records/process.hpp"

namespace orvane::tools {

/// Knows the loggers that have been seen, and many of them also after they have gone.
///
/// The first logger of a kind has the number 1, the next one 2. A logger keeps its number, and no
/// other one of the kind ever gets it. Used by one thread.
class LoggerDirectory {
public:
    /// Takes the kind from a State.
    void add(const LoggerState& state);
    /// Takes what a participant announces.
    void add(const Application& application, const Process& process);
    /// The logger has gone. It is forgotten when @ref most_gone others have gone since.
    void note_end(const Application& application);

    static constexpr std::size_t most_gone = 10'000;

    /// What is known of an application. Before its State it has no kind. One whose instance id is
    /// not known may be any that has its HOST:APP.
    Logger logger(const Application& application) const;
    /// What is known of who publishes in another's name. @return NULL for nobody
    std::shared_ptr<const Publisher> publisher(const std::optional<Application>& application,
                                               bool is_authenticated) const;
    /// What a participant has announced.
    Process process(const Application& application) const;

private:
    struct Entry {
        std::string kind;
        std::uint32_t number = 1;
        Process process;
        bool has_gone = false;
    };
    using Entries = std::map<Application, Entry>;

    Entries::const_iterator find(const Application& application) const;

    Entries entries_;
    std::deque<Application> gone_;                       ///< in the order of their ends
    std::map<std::string, std::uint32_t> last_numbers_;  ///< given to a logger of the kind
};

}  // namespace orvane::tools
