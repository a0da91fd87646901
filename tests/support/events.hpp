// What happens on any thread, and a bounded wait for it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace orvane::test {

/// A list that any thread adds to.
template <typename Event>
class Events {
public:
    using List = std::vector<Event>;

    void add(Event event) {
        const std::lock_guard lock(mutex_);
        list_.push_back(std::move(event));
        changed_.notify_all();
    }
    /// Waits until the list has so many events. @return the list
    List await(std::size_t count) {
        await_if([count](const List& list) { return list.size() >= count; });
        const std::lock_guard lock(mutex_);
        return list_;
    }
    /// Waits until a condition holds for the list. @return whether it does
    template <typename Condition>
    bool await_if(Condition holds) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return holds(list_); });
    }
    /// @return the events since the last call
    List take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(list_, {});
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    List list_;
};

}  // namespace orvane::test
