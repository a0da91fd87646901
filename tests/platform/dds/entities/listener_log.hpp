#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "pexa/entity.h"

/// Events that listeners note, from any thread.
class ListenerLog {
public:
    /// The data of a listener, with its name in a log.
    struct Author {
        ListenerLog* log;
        const char* name;
        /// Runs inside the callback, before the event is noted.
        std::function<void(void* entity)> inside = nullptr;
    };

    void add(const std::string& event) {
        const std::lock_guard guard(mutex_);
        events_.push_back(event);
        changed_.notify_all();
    }
    /// Waits until that many events have been noted. @return those, joined with blanks
    std::string await(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, std::chrono::seconds(20), [&] { return events_.size() >= count; });
        std::string joined;
        for (const std::string& event : std::exchange(events_, {})) {
            joined += (joined.empty() ? "" : " ") + event;
        }
        return joined;
    }
    /// @return the events since the last call, joined with blanks
    std::string take() { return await(0); }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> events_;
};

inline void note(void* listener_data, void* entity, const std::string& event) {
    const auto& author = *static_cast<ListenerLog::Author*>(listener_data);
    if (author.inside) {
        author.inside(entity);
    }
    author.log->add(std::string(author.name) + ":" + event);
}

/// Notes an event of this name, with a number of the status that tells it from others.
template <const char* name, typename Entity, typename Status>
void on_status(void* listener_data, Entity* entity, const Status* status) {
    std::string event = name;
    if constexpr (requires { status->last_policy_id; }) {
        event += "(" + std::to_string(status->last_policy_id) + ")";
    } else if constexpr (requires { status->current_count; }) {
        event += "(" + std::to_string(status->current_count) + ")";
    }
    note(listener_data, entity, event);
}

inline constexpr char incompatible[] = "incompatible";
inline constexpr char matched[] = "matched";
inline constexpr char deadline[] = "deadline";
inline constexpr char liveliness[] = "liveliness";
inline constexpr char rejected[] = "rejected";
inline constexpr char lost[] = "lost";
inline constexpr char inconsistent[] = "inconsistent";

/// A listener with all slots filled, each noting "name:event". Those of other entities are parts.
inline DDS_DomainParticipantListener listener_of(ListenerLog::Author& author) {
    return {{&author, on_status<inconsistent>},
            {{&author, on_status<deadline>, on_status<incompatible>, on_status<liveliness>,
              on_status<matched>}},
            {{&author, on_status<deadline>, on_status<incompatible>, on_status<rejected>,
              on_status<liveliness>,
              [](void* data, DDS_DataReader* reader) { note(data, reader, "data"); },
              on_status<matched>, on_status<lost>},
             [](void* data, DDS_Subscriber* subscriber) {
                 note(data, subscriber, "data_on_readers");
             }}};
}
