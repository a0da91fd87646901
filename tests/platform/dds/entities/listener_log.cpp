#include "tests/platform/dds/entities/listener_log.hpp"

#include <chrono>
#include <utility>

namespace {

std::string join(const std::vector<std::string>& events) {
    std::string text;
    for (const std::string& event : events) {
        text += (text.empty() ? "" : " ") + event;
    }
    return text;
}

void note(void* listener_data, void* entity, const std::string& event) {
    const auto& author = *static_cast<ListenerLog::Author*>(listener_data);
    if (author.inside) {
        author.inside(entity);
    }
    author.log->add(std::string(author.name) + ":" + event);
}

std::string text(const DDS_OfferedIncompatibleQosStatus& status) {
    return "incompatible(" + std::to_string(status.last_policy_id) + ")";
}
std::string text(const DDS_RequestedIncompatibleQosStatus& status) {
    return "incompatible(" + std::to_string(status.last_policy_id) + ")";
}
std::string text(const DDS_PublicationMatchedStatus& status) {
    return "matched(" + std::to_string(status.current_count) + ")";
}
std::string text(const DDS_SubscriptionMatchedStatus& status) {
    return "matched(" + std::to_string(status.current_count) + ")";
}
std::string text(const DDS_OfferedDeadlineMissedStatus&) {
    return "deadline";
}
std::string text(const DDS_RequestedDeadlineMissedStatus&) {
    return "deadline";
}
std::string text(const DDS_LivelinessLostStatus&) {
    return "liveliness_lost";
}
std::string text(const DDS_LivelinessChangedStatus& status) {
    return "alive(" + std::to_string(status.alive_count) + ")";
}
std::string text(const DDS_SampleRejectedStatus& status) {
    return "rejected(" + std::to_string(status.last_reason) + ")";
}
std::string text(const DDS_SampleLostStatus&) {
    return "lost";
}
std::string text(const DDS_InconsistentTopicStatus&) {
    return "inconsistent";
}

template <typename Entity, typename Status>
void on_status(void* listener_data, Entity* entity, const Status* status) {
    note(listener_data, entity, text(*status));
}

}  // namespace

void ListenerLog::add(const std::string& event) {
    const std::lock_guard guard(mutex_);
    events_.push_back(event);
    changed_.notify_all();
}

std::string ListenerLog::await(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(20), [&] { return events_.size() >= count; });
    return join(std::exchange(events_, {}));
}

std::string ListenerLog::take() {
    const std::lock_guard guard(mutex_);
    return join(std::exchange(events_, {}));
}

DDS_TopicListener topic_listener(ListenerLog::Author& author) {
    return {&author, on_status<DDS_Topic, DDS_InconsistentTopicStatus>};
}

DDS_DataWriterListener writer_listener(ListenerLog::Author& author) {
    return {&author, on_status<DDS_DataWriter, DDS_OfferedDeadlineMissedStatus>,
            on_status<DDS_DataWriter, DDS_OfferedIncompatibleQosStatus>,
            on_status<DDS_DataWriter, DDS_LivelinessLostStatus>,
            on_status<DDS_DataWriter, DDS_PublicationMatchedStatus>};
}

DDS_DataReaderListener reader_listener(ListenerLog::Author& author) {
    return {
        &author,
        on_status<DDS_DataReader, DDS_RequestedDeadlineMissedStatus>,
        on_status<DDS_DataReader, DDS_RequestedIncompatibleQosStatus>,
        on_status<DDS_DataReader, DDS_SampleRejectedStatus>,
        on_status<DDS_DataReader, DDS_LivelinessChangedStatus>,
        [](void* listener_data, DDS_DataReader* reader) { note(listener_data, reader, "data"); },
        on_status<DDS_DataReader, DDS_SubscriptionMatchedStatus>,
        on_status<DDS_DataReader, DDS_SampleLostStatus>};
}

DDS_SubscriberListener subscriber_listener(ListenerLog::Author& author) {
    return {reader_listener(author), [](void* listener_data, DDS_Subscriber* subscriber) {
                note(listener_data, subscriber, "data_on_readers");
            }};
}

DDS_DomainParticipantListener participant_listener(ListenerLog::Author& author) {
    return {topic_listener(author), {writer_listener(author)}, subscriber_listener(author)};
}
