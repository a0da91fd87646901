#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "pexa/entity.h"

/// Events that listeners note, from any thread. As listener data it gives its events the name of
/// the listener.
class ListenerLog {
public:
    /// A listener's name in a log.
    struct Author {
        ListenerLog* log;
        const char* name;
        /// Runs inside the callback, before the event is noted.
        std::function<void(void* entity)> inside = nullptr;
    };

    void add(const std::string& event);
    /// Waits until that many events have been noted. @return those, joined with blanks
    std::string await(std::size_t count);
    /// @return what was noted since the last call, joined with blanks
    std::string take();

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> events_;
};

/// Listeners with all slots filled, each noting "name:event".
DDS_TopicListener topic_listener(ListenerLog::Author& author);
DDS_DataWriterListener writer_listener(ListenerLog::Author& author);
DDS_DataReaderListener reader_listener(ListenerLog::Author& author);
DDS_SubscriberListener subscriber_listener(ListenerLog::Author& author);
DDS_DomainParticipantListener participant_listener(ListenerLog::Author& author);
