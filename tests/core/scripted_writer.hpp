#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "orvane/core.h"

namespace orvane::test {

/// What a typed writer was asked to write.
struct Written {
    QEL_KX_HostAndAppId origin;
    DDS_Long level;
    std::string category;
    std::string message;
    DDS_Time_t timestamp;
};

/// As long as it lives, takes the writes of log messages and answers them from a list of results.
class ScriptedWriter {
public:
    /// Results of the first writes; the later ones succeed.
    explicit ScriptedWriter(std::vector<DDS_ReturnCode_t> results = {});
    ~ScriptedWriter();
    ScriptedWriter(const ScriptedWriter&) = delete;
    ScriptedWriter& operator=(const ScriptedWriter&) = delete;

    /// Something that stands for the middleware's writer.
    [[nodiscard]] QEL_KX_LogMessageDataWriter* handle();
    /// Waits for that many writes, for ten seconds at most. @return all writes so far.
    [[nodiscard]] std::vector<Written> wait_for(std::size_t count);

    /// Waits for that many flushes, for ten seconds at most. @return the number of writes before
    /// each so far.
    [[nodiscard]] std::vector<std::size_t> wait_for_flushes(std::size_t count);
    /// What the writing thread does in the middle of its first write. To be set before there is
    /// one.
    void during_first_write(std::function<void()> action) { action_ = std::move(action); }
    /// What it does in each flush, which is given the number of flushes before.
    void during_flushes(std::function<void(std::size_t)> action) {
        flush_action_ = std::move(action);
    }

    DDS_ReturnCode_t write(const QEL_KX_LogMessage& sample, const DDS_Time_t& timestamp);
    DDS_ReturnCode_t flush();

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<DDS_ReturnCode_t> results_;
    std::vector<Written> writes_;
    std::vector<std::size_t> flushes_;
    std::function<void()> action_;
    std::function<void(std::size_t)> flush_action_;
};

}  // namespace orvane::test
