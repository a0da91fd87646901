#include "tests/integration/self_trigger.hpp"

#include <cstddef>
#include <utility>

#include "orvane/orvane.h"

namespace orvane::tests {
namespace {

constexpr const char* topic_name = "test/trigger";

}  // namespace

std::unique_ptr<SelfTrigger> SelfTrigger::open(int domain_id, Action action) {
    std::unique_ptr<SelfTrigger> trigger{new SelfTrigger{std::move(action)}};
    return trigger->make_entities(domain_id) ? std::move(trigger) : nullptr;
}

SelfTrigger::~SelfTrigger() {
    DDS_DomainParticipant_delete_contained_entities(participant_);
    DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                    participant_);
}

bool SelfTrigger::make_entities(int domain_id) {
    participant_ = DDS_DomainParticipantFactory_create_participant(
        DDS_DomainParticipantFactory_get_instance(), domain_id, DDS_QOS_DEFAULT, nullptr,
        DDS_STATUS_MASK_NONE);
    if (participant_ == nullptr ||
        QEL_KX_LogMessageTypeSupport_register_type(participant_, QEL_KX_LOG_REGISTERED_TYPE_NAME) !=
            DDS_RETCODE_OK) {
        return false;
    }
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(
        participant_, topic_name, QEL_KX_LOG_REGISTERED_TYPE_NAME, DDS_QOS_DEFAULT, nullptr,
        DDS_STATUS_MASK_NONE);
    return topic != nullptr && make_endpoints(topic);
}

bool SelfTrigger::make_endpoints(DDS_Topic* topic) {
    DDS_Publisher* publisher = DDS_DomainParticipant_create_publisher(
        participant_, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    DDS_Subscriber* subscriber = DDS_DomainParticipant_create_subscriber(
        participant_, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);

    DDS_DataWriterQos writer_qos;
    DDS_DataWriterQos_initialize(&writer_qos);
    writer_qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    writer_qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    writer_ = DDS_Publisher_create_datawriter(publisher, topic, &writer_qos, nullptr,
                                              DDS_STATUS_MASK_NONE);
    DDS_DataWriterQos_finalize(&writer_qos);

    DDS_DataReaderListener listener{};
    listener.listener_data = this;
    listener.on_data_available = on_data_available;
    DDS_DataReaderQos reader_qos;
    DDS_DataReaderQos_initialize(&reader_qos);
    reader_qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    reader_qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    reader_ = DDS_Subscriber_create_datareader(subscriber, DDS_Topic_as_topicdescription(topic),
                                               &reader_qos, &listener, DDS_DATA_AVAILABLE_STATUS);
    DDS_DataReaderQos_finalize(&reader_qos);
    return writer_ != nullptr && reader_ != nullptr;
}

void SelfTrigger::on_data_available(void* self, DDS_DataReader* reader) {
    auto* trigger = static_cast<SelfTrigger*>(self);
    QEL_KX_LogMessageDataReader* typed = QEL_KX_LogMessageDataReader_narrow(reader);
    QEL_KX_LogMessageSeq samples{};
    DDS_SampleInfoSeq infos{};
    while (QEL_KX_LogMessageDataReader_take(typed, &samples, &infos, DDS_LENGTH_UNLIMITED,
                                            DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                            DDS_ANY_INSTANCE_STATE) == DDS_RETCODE_OK) {
        for (DDS_Long i = 0; i < QEL_KX_LogMessageSeq_get_length(&samples); ++i) {
            if (DDS_SampleInfoSeq_get_reference(&infos, i)->valid_data != 0) {
                trigger->hear(QEL_KX_LogMessageSeq_get_reference(&samples, i)->message);
            }
        }
        QEL_KX_LogMessageDataReader_return_loan(typed, &samples, &infos);
    }
}

void SelfTrigger::hear(std::string_view text) {
    action_(text);
    const std::lock_guard lock{mutex_};
    ++heard_;
    changed_.notify_all();
}

bool SelfTrigger::pull(std::string_view text) {
    QEL_KX_LogMessage* sample = QEL_KX_LogMessageTypeSupport_create_data();
    if (sample == nullptr) {
        return false;
    }
    const std::size_t length = text.copy(sample->message, ORVANE_LOG_MESSAGE_BOUND);
    sample->message[length] = '\0';
    const DDS_ReturnCode_t result = QEL_KX_LogMessageDataWriter_write(
        QEL_KX_LogMessageDataWriter_narrow(writer_), sample, &DDS_HANDLE_NIL);
    QEL_KX_LogMessageTypeSupport_delete_data(sample);
    return result == DDS_RETCODE_OK;
}

int SelfTrigger::heard() {
    const std::lock_guard lock{mutex_};
    return heard_;
}

bool SelfTrigger::wait_until_heard(int count, std::chrono::milliseconds longest) {
    std::unique_lock lock{mutex_};
    return changed_.wait_for(lock, longest, [&] { return heard_ >= count; });
}

}  // namespace orvane::tests
