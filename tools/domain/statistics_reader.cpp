#include "tools/domain/statistics_reader.hpp"

namespace orvane::tools {
namespace {

std::uint64_t number_of(DDS_Long high, DDS_Long low) {
    return std::uint64_t{static_cast<std::uint32_t>(high)} << 32U | static_cast<std::uint32_t>(low);
}

std::uint64_t number_of(const QEL_KX_ADMIN_Count& count) {
    return number_of(count.high, count.low);
}

Endpoint reader_of(const QEL_KX_ADMIN_Viewer& viewer) {
    return {{static_cast<std::uint32_t>(viewer.host), static_cast<std::uint32_t>(viewer.app),
             static_cast<std::uint32_t>(viewer.instance),
             static_cast<std::uint32_t>(viewer.entity)}};
}

/// What the operations of a sequence want, also those that do not change it.
QEL_KX_ADMIN_ViewerSeq* changeable(const QEL_KX_ADMIN_ViewerSeq& viewers) {
    return const_cast<QEL_KX_ADMIN_ViewerSeq*>(&viewers);
}

DDS_Long length_of(const QEL_KX_ADMIN_ViewerSeq& viewers) {
    return QEL_KX_ADMIN_ViewerSeq_get_length(changeable(viewers));
}

std::optional<MessageCounts> counts_at_match(const QEL_KX_ADMIN_ViewerSeq& viewers,
                                             const Endpoint& self) {
    for (DDS_Long i = 0; i < length_of(viewers); ++i) {
        const QEL_KX_ADMIN_Viewer& viewer =
            *QEL_KX_ADMIN_ViewerSeq_get_reference(changeable(viewers), i);
        if (reader_of(viewer) == self) {
            return MessageCounts{
                .published = number_of(viewer.publishedHigh, viewer.publishedLow),
                .queue_full = number_of(viewer.refusedForRoomHigh, viewer.refusedForRoomLow),
                .no_memory = number_of(viewer.refusedForMemoryHigh, viewer.refusedForMemoryLow),
                .discarded = number_of(viewer.discardedHigh, viewer.discardedLow)};
        }
    }
    return std::nullopt;
}

/// The writer of messages is of the participant that sends the statistics.
Endpoint log_writer(const QEL_KX_ADMIN_Statistics& sample, const DDS_SampleInfo& info) {
    Endpoint writer = endpoint_of(info.publication_handle);
    writer.guid[3] = static_cast<std::uint32_t>(sample.logWriter);
    return writer;
}

LoggerStatistics to_statistics(const QEL_KX_ADMIN_Statistics& sample, const DDS_SampleInfo& info,
                               const Endpoint& viewer) {
    return {
        .nanoseconds = nanoseconds_of(info.source_timestamp),
        .application = application_of(sample.hostAndAppId, endpoint_of(info.publication_handle)),
        .writer = log_writer(sample, info),
        .now = {.published = number_of(sample.published),
                .queue_full = number_of(sample.refusedForRoom),
                .no_memory = number_of(sample.refusedForMemory),
                .discarded = number_of(sample.discarded)},
        .accepted = number_of(sample.accepted),
        .queued = sample.queued,
        .most_queued = sample.mostQueued,
        .queue_size = sample.queueSize,
        .is_last = sample.isLast != 0,
        .at_match = counts_at_match(sample.viewers, viewer),
        .has_forgotten_viewers = length_of(sample.viewers) == ORVANE_VIEWER_BOUND};
}

}  // namespace

DDS_DataReader* create_statistics_reader(DDS_DomainParticipant* participant) {
    return create_reader<QEL_KX_ADMIN_Statistics>(participant, DDS_TRANSIENT_LOCAL_DURABILITY_QOS,
                                                  DDS_KEEP_ALL_HISTORY_QOS);
}

Status take_statistics(DDS_DataReader* reader, const Endpoint& viewer,
                       std::vector<LoggerStatistics>& statistics) {
    return reader == nullptr
               ? Status::ok
               : take_all<QEL_KX_ADMIN_Statistics>(
                     reader,
                     [&](const QEL_KX_ADMIN_Statistics& sample, const DDS_SampleInfo& info) {
                         if (info.valid_data != 0) {
                             statistics.push_back(to_statistics(sample, info, viewer));
                         }
                     });
}

}  // namespace orvane::tools
