/// @file exporter.hpp
/// @brief Sends records on a thread of its own.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tools/export/export_sink.hpp"

namespace orvane::tools {

struct ExportLimits {
    std::uint64_t buffer = 16U << 20U;  ///< bytes of records that wait or are being sent
    // A batch is sent when it has one of these.
    std::size_t batch_records = 512;
    std::size_t batch_bytes = 1U << 20U;
    std::chrono::milliseconds batch_age{1000};
    // The pause after a failure is doubled each time.
    std::chrono::milliseconds first_pause{500};
    std::chrono::milliseconds longest_pause{30'000};
    std::chrono::milliseconds longest_end{1500};  ///< what waits at the end is sent within this
};

/// Each record that was added is sent, given up, or still waits.
struct ExportCounts {
    std::uint64_t added = 0;
    std::uint64_t sent = 0;
    std::uint64_t given_up = 0;
};

/// The thread that adds records never waits for the receiver. While that takes nothing, records
/// wait, and a batch is tried again after pauses that grow. What has no room, and what the receiver
/// refuses for good, is given up and counted. When the receiver takes records again, it gets an
/// event of the type "gap" that says how many were given up.
class Exporter {
public:
    /// Tells the user of a failure and its end. It is called on the exporter's thread.
    using Report = std::function<void(const std::string& text)>;

    Exporter(std::unique_ptr<ExportSink> sink, const ExportLimits& limits, Report report);
    Exporter(const Exporter&) = delete;
    Exporter& operator=(const Exporter&) = delete;
    /// Waits for the thread, which may still be looking up the name of a host.
    ~Exporter();

    /// @param observed when they reached this process, since 1970-01-01 UTC
    void add(std::vector<RecordedEvent> events, std::int64_t observed);

    ExportCounts counts() const;

    /// Sends what waits, within the time for that, and gives up the rest.
    ExportCounts stop();

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;

    void run();
    /// Waits until there is something to send. @return false when the thread has to end
    bool wait_for_batch(Lock& lock);
    bool has_gap_to_tell() const { return given_up_ > told_ && takes_records_; }
    void fill_batch();
    void settle(const Delivery& delivery);
    void report(const Delivery& delivery, std::uint64_t given_up);
    void pause(Lock& lock, const Delivery& delivery);
    Clock::duration next_pause();

    const std::unique_ptr<ExportSink> sink_;
    const ExportLimits limits_;
    const Report report_;

    // Of the thread.
    std::vector<ExportRecord> batch_;
    std::chrono::milliseconds last_pause_{0};
    std::minstd_rand random_{std::random_device{}()};
    std::string reported_problem_;
    std::uint64_t reported_given_up_ = 0;
    Clock::time_point next_report_ = Clock::time_point::min();

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::condition_variable ended_;
    std::deque<ExportRecord> queue_;
    Clock::time_point oldest_;    ///< when the first record of the queue came, or later
    std::uint64_t bytes_ = 0;     ///< of the queue and the batch
    bool is_full_ = false;        ///< until half of the buffer is free
    std::uint64_t added_ = 0;     ///< records
    std::uint64_t sent_ = 0;      ///< records
    std::uint64_t given_up_ = 0;  ///< records
    std::uint64_t told_ = 0;      ///< of those given up, in gaps that were sent or are in the batch
    bool takes_records_ = false;  ///< the receiver, the last time
    bool stopping_ = false;
    Clock::time_point end_ = Clock::time_point::max();  ///< nothing is tried again behind it
    bool has_to_end_ = false;                           ///< at once
    bool has_ended_ = false;
    std::thread thread_;
};

}  // namespace orvane::tools
