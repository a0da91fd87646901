#include "tools/log_subscription.hpp"

#include <algorithm>

#include "orvane/orvane.h"
#include "pexa/pexa.h"

namespace orvane::tools {
namespace {

/// Samples decoded at a time: a decoded message has buffers for the longest texts, so a long
/// history must not be decoded at once.
constexpr DDS_Long samples_per_take = 256;

template <auto Release>
struct Releaser {
    template <typename Resource>
    void operator()(Resource* resource) const {
        Release(resource);
    }
};
using WaitSet = std::unique_ptr<DDS_WaitSet, Releaser<DDS_WaitSet_delete>>;
using GuardCondition = std::unique_ptr<DDS_GuardCondition, Releaser<DDS_GuardCondition_delete>>;

void delete_with_contents(DDS_DomainParticipant* participant) {
    DDS_DomainParticipant_delete_contained_entities(participant);
    DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                    participant);
}
using Participant = std::unique_ptr<DDS_DomainParticipant, Releaser<delete_with_contents>>;

LogRecord to_record(const QEL_KX_LogMessage& sample, const DDS_Time_t& timestamp) {
    return {.nanoseconds = timestamp.sec * std::int64_t{1'000'000'000} + timestamp.nanosec,
            .application = {static_cast<std::uint32_t>(sample.hostAndAppId.rtps_host_id),
                            static_cast<std::uint32_t>(sample.hostAndAppId.rtps_app_id)},
            .level = sample.level,
            .category = sample.category,
            .message = sample.message};
}

QEL_KX_LogMessageDataReader* create_reader(DDS_DomainParticipant* participant) {
    if (QEL_KX_LogMessageTypeSupport_register_type(participant, QEL_KX_LOG_REGISTERED_TYPE_NAME) !=
        DDS_RETCODE_OK) {
        return nullptr;
    }
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(
        participant, QEL_KX_LOG_TOPIC_NAME, QEL_KX_LOG_REGISTERED_TYPE_NAME, DDS_QOS_DEFAULT,
        nullptr, DDS_STATUS_MASK_NONE);
    DDS_Subscriber* subscriber = DDS_DomainParticipant_create_subscriber(
        participant, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (topic == nullptr || subscriber == nullptr) {
        return nullptr;
    }
    DDS_DataReaderQos qos;
    DDS_DataReaderQos_initialize(&qos);
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    DDS_DataReader* reader = DDS_Subscriber_create_datareader(
        subscriber, DDS_Topic_as_topicdescription(topic), &qos, nullptr, DDS_STATUS_MASK_NONE);
    DDS_DataReaderQos_finalize(&qos);
    return reader == nullptr ? nullptr : QEL_KX_LogMessageDataReader_narrow(reader);
}

class TypedSubscription final : public LogSubscription {
public:
    bool start(std::int32_t domain_id) {
        participant_.reset(DDS_DomainParticipantFactory_create_participant(
            DDS_DomainParticipantFactory_get_instance(), domain_id, DDS_QOS_DEFAULT, nullptr,
            DDS_STATUS_MASK_NONE));
        if (!participant_) {
            return false;
        }
        reader_ = create_reader(participant_.get());
        if (reader_ == nullptr) {
            return false;
        }
        arrived_ = DDS_DataReader_create_readcondition(as_datareader(), DDS_ANY_SAMPLE_STATE,
                                                       DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
        interrupted_.reset(DDS_GuardCondition_new());
        wait_set_.reset(DDS_WaitSet_new());
        return arrived_ != nullptr && interrupted_ && wait_set_ &&
               attach(DDS_ReadCondition_as_condition(arrived_)) &&
               attach(DDS_GuardCondition_as_condition(interrupted_.get()));
    }

    void wait(std::chrono::milliseconds longest) override {
        const auto count = std::max<std::int64_t>(longest.count(), 0);
        const DDS_Duration_t timeout{static_cast<DDS_Long>(count / 1000),
                                     static_cast<DDS_UnsignedLong>(count % 1000 * 1'000'000)};
        DDS_ConditionSeq active{};
        DDS_WaitSet_wait(wait_set_.get(), &active, &timeout);
        DDS_ConditionSeq_finalize(&active);
    }

    void interrupt() override {
        DDS_GuardCondition_set_trigger_value(interrupted_.get(), DDS_BOOLEAN_TRUE);
    }

    bool take(std::vector<LogRecord>& records) override {
        const auto first = static_cast<std::ptrdiff_t>(records.size());
        DDS_ReturnCode_t result = DDS_RETCODE_OK;
        while (result == DDS_RETCODE_OK) {
            result = take_some(records);
        }
        // A take groups the messages by instance, which here means by application and level.
        std::stable_sort(records.begin() + first, records.end(), [](const auto& a, const auto& b) {
            return a.nanoseconds < b.nanoseconds;
        });
        return result == DDS_RETCODE_NO_DATA;
    }

    std::int32_t lost() override {
        DDS_SampleLostStatus status{};
        DDS_DataReader_get_sample_lost_status(as_datareader(), &status);
        return status.total_count;
    }

private:
    DDS_DataReader* as_datareader() { return QEL_KX_LogMessageDataReader_as_datareader(reader_); }

    bool attach(DDS_Condition* condition) {
        return DDS_WaitSet_attach_condition(wait_set_.get(), condition) == DDS_RETCODE_OK;
    }

    DDS_ReturnCode_t take_some(std::vector<LogRecord>& records) {
        QEL_KX_LogMessageSeq samples{};
        DDS_SampleInfoSeq infos{};
        const DDS_ReturnCode_t result = QEL_KX_LogMessageDataReader_take(
            reader_, &samples, &infos, samples_per_take, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
            DDS_ANY_INSTANCE_STATE);
        if (result != DDS_RETCODE_OK) {
            return result;
        }
        const DDS_Long count = QEL_KX_LogMessageSeq_get_length(&samples);
        for (DDS_Long i = 0; i < count; ++i) {
            const DDS_SampleInfo* info = DDS_SampleInfoSeq_get_reference(&infos, i);
            if (info->valid_data != 0) {
                records.push_back(to_record(*QEL_KX_LogMessageSeq_get_reference(&samples, i),
                                            info->source_timestamp));
            }
        }
        return QEL_KX_LogMessageDataReader_return_loan(reader_, &samples, &infos);
    }

    // The wait set goes first, then what is attached to it, then the entities.
    Participant participant_;
    QEL_KX_LogMessageDataReader* reader_ = nullptr;
    DDS_ReadCondition* arrived_ = nullptr;
    GuardCondition interrupted_;
    WaitSet wait_set_;
};

}  // namespace

std::unique_ptr<LogSubscription> LogSubscription::open(std::int32_t domain_id) {
    auto subscription = std::make_unique<TypedSubscription>();
    if (!subscription->start(domain_id)) {
        return nullptr;
    }
    return subscription;
}

}  // namespace orvane::tools
