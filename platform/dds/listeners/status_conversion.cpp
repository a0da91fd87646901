#include "platform/dds/listeners/status_conversion.hpp"

namespace pexa::dds {

namespace {

DDS_SampleRejectedStatusKind to_kind(engine::RejectedReason reason) {
    switch (reason) {
        case engine::RejectedReason::not_rejected:
            return DDS_NOT_REJECTED;
        case engine::RejectedReason::instances_limit:
            return DDS_REJECTED_BY_INSTANCES_LIMIT;
        case engine::RejectedReason::samples_limit:
            return DDS_REJECTED_BY_SAMPLES_LIMIT;
        case engine::RejectedReason::samples_per_instance_limit:
            return DDS_REJECTED_BY_SAMPLES_PER_INSTANCE_LIMIT;
    }
    return DDS_NOT_REJECTED;
}

template <typename Status, typename Record>
void convert_counts(const Status& status, Record& record) {
    record.total_count = status.total_count;
    record.total_count_change = status.total_count_change;
}

template <typename Status, typename Record>
void convert_match(const Status& status, Record& record) {
    convert_counts(status, record);
    record.current_count = status.current_count;
    record.current_count_change = status.current_count_change;
}

}  // namespace

void convert(const engine::SampleRejected& status, DDS_SampleRejectedStatus& record,
             const PeerLookup& /*peer*/) {
    convert_counts(status, record);
    record.last_reason = to_kind(status.last_reason);
}

void convert(const engine::LivelinessChanged& status, DDS_LivelinessChangedStatus& record,
             const PeerLookup& peer) {
    record.alive_count = status.alive_count;
    record.not_alive_count = status.not_alive_count;
    record.alive_count_change = status.alive_count_change;
    record.not_alive_count_change = status.not_alive_count_change;
    record.last_publication_handle = peer(status.last_publication);
}

void convert(const engine::PublicationMatched& status, DDS_PublicationMatchedStatus& record,
             const PeerLookup& peer) {
    convert_match(status, record);
    record.last_subscription_handle = peer(status.last_subscription);
}

void convert(const engine::SubscriptionMatched& status, DDS_SubscriptionMatchedStatus& record,
             const PeerLookup& peer) {
    convert_match(status, record);
    record.last_publication_handle = peer(status.last_publication);
}

}  // namespace pexa::dds
