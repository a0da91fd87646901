/// @file self_trigger.hpp
/// @brief An application's own participant, and a topic on which it hears what it writes.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

#include "pexa/pexa.h"

namespace orvane::tests {

/// Every sample that is written makes a listener run in every process of the domain that has such
/// an object.
class SelfTrigger {
public:
    /// Runs in the reader's listener with the sample's text.
    using Action = std::function<void(std::string_view text)>;

    /// @return NULL when something could not be made
    static std::unique_ptr<SelfTrigger> open(int domain_id, Action action);
    /// Deletes the participant with all that it contains.
    ~SelfTrigger();
    SelfTrigger(const SelfTrigger&) = delete;
    SelfTrigger& operator=(const SelfTrigger&) = delete;

    [[nodiscard]] DDS_DomainParticipant* participant() const { return participant_; }

    bool pull(std::string_view text);
    /// How many times the listener has taken a sample.
    int heard();
    bool wait_until_heard(int count, std::chrono::milliseconds longest);

private:
    explicit SelfTrigger(Action action) : action_(std::move(action)) {}
    bool make_entities(int domain_id);
    bool make_endpoints(DDS_Topic* topic);
    void hear(std::string_view text);
    static void on_data_available(void* self, DDS_DataReader* reader);

    Action action_;
    DDS_DomainParticipant* participant_ = nullptr;
    DDS_DataWriter* writer_ = nullptr;
    DDS_DataReader* reader_ = nullptr;
    std::mutex mutex_;
    std::condition_variable changed_;
    int heard_ = 0;
};

}  // namespace orvane::tests
