#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

#include "orvane/core.h"
#include "pexa/subscription.h"
#include "tests/core/scripted_writer.hpp"

namespace orvane::test {

/// An application's reader of log messages in the domain of this test, with a participant of its
/// own and a listener.
class LogSubscriber {
public:
    /// @param on_message called on the middleware's thread after each message.
    explicit LogSubscriber(std::function<void()> on_message = [] {});
    ~LogSubscriber();
    LogSubscriber(const LogSubscriber&) = delete;
    LogSubscriber& operator=(const LogSubscriber&) = delete;

    [[nodiscard]] bool is_complete() const { return reader_ != nullptr; }
    /// Waits for that many messages, for ten seconds at most. @return all messages so far.
    [[nodiscard]] std::vector<Written> wait_for(std::size_t count);

private:
    void take();

    std::function<void()> on_message_;
    DDS_DomainParticipant* participant_ = nullptr;
    DDS_DataReader* reader_ = nullptr;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Written> messages_;
};

}  // namespace orvane::test
