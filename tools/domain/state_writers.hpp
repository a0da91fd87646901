/// @file state_writers.hpp
/// @brief Which loggers are alive, by the writers of their States.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <vector>

#include "tools/records/endpoint.hpp"
#include "tools/records/state_update.hpp"

namespace orvane::tools {

/// A sample of a State as a reader hands it over.
struct StateSample {
    enum class Instance { alive, disposed, without_writers };

    Application application;
    std::optional<LoggerState> state;  ///< none: only the state of the instance has changed
    Instance instance = Instance::alive;
    Endpoint writer;
};

/// Makes news of loggers of samples of States.
///
/// Loggers that share HOST:APP share an instance, too. It is alive as long as it has any writer,
/// and disposed as soon as one of them disposes it. So the end of one of several loggers is seen by
/// its writer: it is no longer matched, or a sample without a State comes from it.
class StateWriters {
public:
    /// @param matched the writers that the reader was matched with before the samples were taken,
    /// and those that it has been matched with since
    std::vector<StateUpdate> judge(const std::vector<StateSample>& samples,
                                   const std::set<Endpoint>& matched);

private:
    using Writers = std::map<Application, std::set<Endpoint>>;

    void note_end(const StateSample& sample);

    /// Of the loggers that are alive. Several may publish States in the name of one application.
    Writers writers_;
};

}  // namespace orvane::tools
