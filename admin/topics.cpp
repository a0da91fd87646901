#include "admin/topics.hpp"

#include <array>
#include <charconv>

#include "admin/creation.hpp"
#include "pexa/domain.h"
#include "platform/internal/status.hpp"
#include "types/type_support.hpp"

namespace orvane::admin {
namespace {

struct LoggerTopic {
    TopicRow row;
    DDS_Topic* QEL_KX_DDSEntities::*topic;
};

constexpr std::array<LoggerTopic, QEL_KX_TOPIC_COUNT> logger_topics{{
    {{QEL_KX_LOG_TOPIC_NAME, QEL_KX_LOG_REGISTERED_TYPE_NAME,
      types::TypeSupport<QEL_KX_LogMessage>::register_type,
      "Unable to register type for LogMessage", "Unable to create QoS for LogMessage Topic",
      "Unable to create logTopic"},
     &QEL_KX_DDSEntities::logTopic},
    {{QEL_KX_STATE_TOPIC_NAME, QEL_KX_STATE_REGISTERED_TYPE_NAME,
      types::TypeSupport<QEL_KX_ADMIN_State>::register_type, "Unable to register State type",
      "Unable to get QoS of State's Topic", "Unable to create stateTopic"},
     &QEL_KX_DDSEntities::stateTopic},
    {{QEL_KX_COMMAND_REQUEST_TOPIC_NAME, QEL_KX_COMMAND_REQUEST_REGISTERED_TYPE_NAME,
      types::TypeSupport<QEL_KX_ADMIN_CommandRequest>::register_type,
      "Unable to register CommandRequest type", "Unable to get QoS for CommandRequest's Topic",
      "Unable to create CommandRequest Topic"},
     &QEL_KX_DDSEntities::commandRequestTopic},
    {{QEL_KX_COMMAND_RESPONSE_TOPIC_NAME, QEL_KX_COMMAND_RESPONSE_REGISTERED_TYPE_NAME,
      types::TypeSupport<QEL_KX_ADMIN_CommandResponse>::register_type,
      "Unable to register CommandResponse Type", "Unable to get QoS for CommandResponse Topic",
      "Unable to create commandResponse Topic"},
     &QEL_KX_DDSEntities::commandResponseTopic},
}};

/// A 32-bit id as a signed decimal, for a filter parameter: the members that it is compared with
/// are signed.
class SignedDecimal {
public:
    explicit SignedDecimal(DDS_UnsignedLong id) noexcept {
        std::to_chars(text_.data(), text_.data() + text_.size() - 1, static_cast<DDS_Long>(id));
    }

    char* text() noexcept { return text_.data(); }

private:
    std::array<char, 16> text_{};
};

/// Two texts on loan to a sequence for the length of a scope.
class FilterParameters {
public:
    FilterParameters(char* first, char* second) noexcept : texts_{first, second} {}
    FilterParameters(const FilterParameters&) = delete;
    FilterParameters& operator=(const FilterParameters&) = delete;
    ~FilterParameters() {
        if (lent_) {
            DDS_StringSeq_unloan(&sequence_);
        }
    }

    pexa::Status lend() noexcept {
        constexpr auto count = static_cast<DDS_Long>(std::tuple_size_v<decltype(texts_)>);
        lent_ = DDS_StringSeq_loan_contiguous(&sequence_, texts_.data(), count, count) != 0;
        return lent_ ? pexa::Status::ok : pexa::Status::error;
    }
    const DDS_StringSeq* sequence() const noexcept { return &sequence_; }

private:
    std::array<char*, 2> texts_;
    DDS_StringSeq sequence_{};
    bool lent_ = false;
};

}  // namespace

core::Outcome obtain_topic(const QEL_KX_DDSEntities& entities, const TopicRow& row,
                           DDS_Topic*& topic, DDS_Topic*& created) {
    if (DDS_TopicDescription* const existing =
            DDS_DomainParticipant_lookup_topicdescription(entities.participant, row.name);
        existing != nullptr) {
        topic = DDS_Topic_narrow(existing);
        return core::Outcome::done_if(topic != nullptr, row.create_failure);
    }
    if (row.register_type(entities.participant, row.type_name) != DDS_RETCODE_OK) {
        return core::Outcome::failed(row.register_failure);
    }
    const core::Outcome outcome = create_with_qos<DDS_TopicQos>(
        topic, [&](DDS_TopicQos* qos) { return topic_qos(&entities, qos, row.name); },
        row.qos_failure,
        [&](const DDS_TopicQos* qos) {
            return DDS_DomainParticipant_create_topic(entities.participant, row.name, row.type_name,
                                                      qos, nullptr, DDS_STATUS_MASK_NONE);
        },
        row.create_failure);
    created = topic;
    return outcome;
}

core::Outcome obtain_topic(QEL_KX_DDSEntities& entities, TopicOf which) {
    const auto index = static_cast<std::size_t>(which);
    const LoggerTopic& known = logger_topics[index];
    return obtain_topic(entities, known.row, entities.*known.topic, entities.createdTopics[index]);
}

core::Outcome create_filtered_topic(QEL_KX_DDSEntities& entities) {
    SignedDecimal host_id{entities.rtpsHostId};
    SignedDecimal app_id{entities.rtpsAppId};
    FilterParameters parameters{host_id.text(), app_id.text()};
    if (parameters.lend() != pexa::Status::ok) {
        return core::Outcome::failed(
            "Unable to initialize the parameters of commandRequest's Content Filtered Topic");
    }
    entities.commandRequestFilteredTopic = DDS_DomainParticipant_create_contentfilteredtopic(
        entities.participant, QEL_KX_COMMAND_REQUEST_FILTERED_TOPIC_NAME,
        entities.commandRequestTopic, QEL_KX_COMMAND_REQUEST_FILTER_EXPRESSION,
        parameters.sequence());
    return core::Outcome::done_if(entities.commandRequestFilteredTopic != nullptr,
                                  "Unable to create commandRequest Content Filtered Topic");
}

}  // namespace orvane::admin
