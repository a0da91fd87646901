/// @file typed_topic.hpp
/// @brief The topic and the typed operations of each published type, for generic code.
#pragma once

#include "orvane/orvane.h"
#include "pexa/pexa.h"
#include "tools/records/result.hpp"

namespace orvane::tools {

template <typename Sample>
struct TypedTopic;

template <>
struct TypedTopic<QEL_KX_LogMessage> {
    using Sequence = QEL_KX_LogMessageSeq;
    static constexpr const char* name = QEL_KX_LOG_TOPIC_NAME;
    static constexpr const char* type_name = QEL_KX_LOG_REGISTERED_TYPE_NAME;
    static constexpr auto register_type = QEL_KX_LogMessageTypeSupport_register_type;
    static constexpr auto take = QEL_KX_LogMessageDataReader_take;
    static constexpr auto return_loan = QEL_KX_LogMessageDataReader_return_loan;
    static constexpr auto get_length = QEL_KX_LogMessageSeq_get_length;
    static constexpr auto get_reference = QEL_KX_LogMessageSeq_get_reference;
};

template <>
struct TypedTopic<QEL_KX_ADMIN_State> {
    using Sequence = QEL_KX_ADMIN_StateSeq;
    static constexpr const char* name = QEL_KX_STATE_TOPIC_NAME;
    static constexpr const char* type_name = QEL_KX_STATE_REGISTERED_TYPE_NAME;
    static constexpr auto register_type = QEL_KX_ADMIN_StateTypeSupport_register_type;
    static constexpr auto take = QEL_KX_ADMIN_StateDataReader_take;
    static constexpr auto return_loan = QEL_KX_ADMIN_StateDataReader_return_loan;
    static constexpr auto get_length = QEL_KX_ADMIN_StateSeq_get_length;
    static constexpr auto get_reference = QEL_KX_ADMIN_StateSeq_get_reference;
};

template <>
struct TypedTopic<QEL_KX_ADMIN_CommandResponse> {
    using Sequence = QEL_KX_ADMIN_CommandResponseSeq;
    static constexpr const char* name = QEL_KX_COMMAND_RESPONSE_TOPIC_NAME;
    static constexpr const char* type_name = QEL_KX_COMMAND_RESPONSE_REGISTERED_TYPE_NAME;
    static constexpr auto register_type = QEL_KX_ADMIN_CommandResponseTypeSupport_register_type;
    static constexpr auto take = QEL_KX_ADMIN_CommandResponseDataReader_take;
    static constexpr auto return_loan = QEL_KX_ADMIN_CommandResponseDataReader_return_loan;
    static constexpr auto get_length = QEL_KX_ADMIN_CommandResponseSeq_get_length;
    static constexpr auto get_reference = QEL_KX_ADMIN_CommandResponseSeq_get_reference;
};

template <>
struct TypedTopic<QEL_KX_ADMIN_Statistics> {
    using Sequence = QEL_KX_ADMIN_StatisticsSeq;
    static constexpr const char* name = QEL_KX_STATISTICS_TOPIC_NAME;
    static constexpr const char* type_name = QEL_KX_STATISTICS_REGISTERED_TYPE_NAME;
    static constexpr auto register_type = QEL_KX_ADMIN_StatisticsTypeSupport_register_type;
    static constexpr auto take = QEL_KX_ADMIN_StatisticsDataReader_take;
    static constexpr auto return_loan = QEL_KX_ADMIN_StatisticsDataReader_return_loan;
    static constexpr auto get_length = QEL_KX_ADMIN_StatisticsSeq_get_length;
    static constexpr auto get_reference = QEL_KX_ADMIN_StatisticsSeq_get_reference;
};

template <>
struct TypedTopic<QEL_KX_ADMIN_CommandRequest> {
    static constexpr const char* name = QEL_KX_COMMAND_REQUEST_TOPIC_NAME;
    static constexpr const char* type_name = QEL_KX_COMMAND_REQUEST_REGISTERED_TYPE_NAME;
    static constexpr auto register_type = QEL_KX_ADMIN_CommandRequestTypeSupport_register_type;
};

/// Samples decoded at a time: a decoded sample has buffers for the longest texts, so a long history
/// must not be decoded at once.
inline constexpr DDS_Long samples_per_take = 256;

/// Hands samples that are taken from a reader to @p visit, with their infos.
/// @param most samples decoded at a time
/// @return OK after some, NO_DATA when there were none, else the code of the failure
template <typename Sample, typename Visit>
DDS_ReturnCode_t take_some(DDS_DataReader* reader, DDS_Long most, const Visit& visit) {
    using Topic = TypedTopic<Sample>;
    typename Topic::Sequence samples{};
    DDS_SampleInfoSeq infos{};
    const DDS_ReturnCode_t result =
        Topic::take(reader, &samples, &infos, most, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                    DDS_ANY_INSTANCE_STATE);
    if (result != DDS_RETCODE_OK) {
        return result;
    }
    const DDS_Long count = Topic::get_length(&samples);
    for (DDS_Long i = 0; i < count; ++i) {
        visit(*Topic::get_reference(&samples, i), *DDS_SampleInfoSeq_get_reference(&infos, i));
    }
    return Topic::return_loan(reader, &samples, &infos);
}

/// Hands all samples that have arrived to @p visit.
/// @return failed when the reader failed
template <typename Sample, typename Visit>
Status take_all(DDS_DataReader* reader, const Visit& visit) {
    DDS_ReturnCode_t result = DDS_RETCODE_OK;
    while (result == DDS_RETCODE_OK) {
        result = take_some<Sample>(reader, samples_per_take, visit);
    }
    return result == DDS_RETCODE_NO_DATA ? Status::ok : Status::failed;
}

}  // namespace orvane::tools
