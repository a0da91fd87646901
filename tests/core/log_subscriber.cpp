#include "tests/core/log_subscriber.hpp"

#include <chrono>
#include <utility>

#include "orvane/admin.h"
#include "pexa/qos.h"

namespace orvane::test {
namespace {

DDS_DataReader* make_reader(DDS_DomainParticipant* participant,
                            const DDS_DataReaderListener& listener) {
    QEL_KX_LogMessageTypeSupport_register_type(participant, QEL_KX_LOG_REGISTERED_TYPE_NAME);
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(
        participant, QEL_KX_LOG_TOPIC_NAME, QEL_KX_LOG_REGISTERED_TYPE_NAME, DDS_QOS_DEFAULT,
        nullptr, DDS_STATUS_MASK_NONE);
    DDS_Subscriber* subscriber = DDS_DomainParticipant_create_subscriber(
        participant, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    DDS_DataReaderQos qos;
    DDS_DataReaderQos_initialize(&qos);
    DDS_Subscriber_get_default_datareader_qos(subscriber, &qos);
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    DDS_DataReader* reader =
        DDS_Subscriber_create_datareader(subscriber, DDS_Topic_as_topicdescription(topic), &qos,
                                         &listener, DDS_DATA_AVAILABLE_STATUS);
    DDS_DataReaderQos_finalize(&qos);
    return reader;
}

}  // namespace

LogSubscriber::LogSubscriber(std::function<void()> on_message)
    : on_message_(std::move(on_message)),
      participant_(DDS_DomainParticipantFactory_create_participant(
          DDS_DomainParticipantFactory_get_instance(), ORVANE_TEST_DOMAIN, DDS_QOS_DEFAULT, nullptr,
          DDS_STATUS_MASK_NONE)) {
    DDS_DataReaderListener listener = {};
    listener.listener_data = this;
    listener.on_data_available = [](void* self, DDS_DataReader* reader) {
        auto* subscriber = static_cast<LogSubscriber*>(self);
        // The first data may come before the constructor knows the reader.
        {
            const std::lock_guard lock(subscriber->mutex_);
            subscriber->reader_ = reader;
        }
        subscriber->take();
    };
    DDS_DataReader* reader = make_reader(participant_, listener);
    const std::lock_guard lock(mutex_);
    reader_ = reader;
}

LogSubscriber::~LogSubscriber() {
    DDS_DomainParticipant_delete_contained_entities(participant_);
    DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                    participant_);
}

std::vector<Written> LogSubscriber::wait_for(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(10), [&] { return messages_.size() >= count; });
    return messages_;
}

void LogSubscriber::take() {
    QEL_KX_LogMessage sample = {};
    if (QEL_KX_LogMessage_initialize(&sample) == 0) {
        return;
    }
    DDS_SampleInfo info;
    while (QEL_KX_LogMessageDataReader_take_next_sample(reader_, &sample, &info) ==
           DDS_RETCODE_OK) {
        if (info.valid_data == 0) {
            continue;
        }
        {
            const std::lock_guard lock(mutex_);
            messages_.push_back({sample.hostAndAppId, sample.level, sample.category, sample.message,
                                 info.source_timestamp});
            changed_.notify_all();
        }
        on_message_();
    }
    QEL_KX_LogMessage_finalize(&sample);
}

}  // namespace orvane::test
