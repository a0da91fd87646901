/// @file logger.hpp
/// @brief A running logger, and the reader of a viewer.
#pragma once

#include <orvane/orvane.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/domain/entities.hpp"
#include "tools/domain/wait_set.hpp"

namespace orvane::bench {

constexpr const char* category = "bench";

/// Payload of an encoded message, encapsulation header included.
std::size_t encoded_size(const std::string& text);

/// The process's logger, from its creation to its finalisation.
class Logger {
public:
    struct Options {
        std::int32_t domain = 0;
        std::int32_t queue_size = 128;
        /// Every reader gets all messages, by the profile of bench/keep_all.xml or of the file that
        /// the environment names in BENCH_QOS_PROFILES.
        bool keep_all = false;
        /// By which viewers name the logger.
        const char* kind = "";
    };

    /// Ends the program when there is no logger.
    explicit Logger(const Options& options);
    ~Logger();
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    void log(DDS_Long level, const char* text) {
        QEL_KX_Orvane_logMessageWithLevelCategory(logger_, level, text, category);
    }
    /// Waits until no more than half of the queue is in use, then logs.
    void log_at_leisure(DDS_Long level, const char* text);
    /// Messages that wait for their publication.
    DDS_Long queued() const;
    bool has_reader() const;

private:
    DDS_Long half_of_queue_;
    QEL_KX_Options* options_;
    QEL_KX_Orvane* logger_;
};

/// The reader of a viewer: reliable, transient-local, keep-all.
class LogReader {
public:
    /// Ends the program when the middleware refuses something.
    explicit LogReader(std::int32_t domain);

    /// As of bare::Reader.
    void take(std::chrono::milliseconds longest_wait, std::vector<std::int64_t>& source_times);

private:
    // The wait set is deleted before its entities.
    tools::Participant participant_;
    DDS_DataReader* reader_;
    tools::WaitSet wait_set_;
};

}  // namespace orvane::bench
