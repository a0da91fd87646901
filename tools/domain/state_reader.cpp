#include "tools/domain/state_reader.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace orvane::tools {
namespace {

LoggerState to_state(const QEL_KX_ADMIN_State& sample, const Application& application) {
    LoggerState state{.application = application,
                      .kind = sample.applicationKind,
                      .state = sample.state,
                      .filter_level = sample.filterLevel,
                      .domain_id = sample.administrationDomainId,
                      .verbosities = {},
                      .print_format = sample.qelLoggerPrintFormat};
    for (const auto& pair : sample.qelLoggerVerbosities) {
        state.verbosities[static_cast<std::size_t>(pair.category)] = pair.verbosity;
    }
    return state;
}

StateSample::Instance instance_of(const DDS_SampleInfo& info) {
    using Instance = StateSample::Instance;
    switch (info.instance_state) {
        case DDS_ALIVE_INSTANCE_STATE:
            return Instance::alive;
        case DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE:
            return Instance::disposed;
        default:
            return Instance::without_writers;
    }
}

StateSample to_state_sample(const QEL_KX_ADMIN_State& sample, const DDS_SampleInfo& info) {
    const Endpoint writer = endpoint_of(info.publication_handle);
    const Application application = application_of(sample.hostAndAppId, writer);
    return {
        .application = application,
        .state = info.valid_data != 0 ? std::optional{to_state(sample, application)} : std::nullopt,
        .instance = instance_of(info),
        .writer = writer};
}

}  // namespace

Status StateReader::open(DDS_DomainParticipant* participant) {
    // Writers of one instance must not overwrite each other's last State.
    reader_ = create_reader<QEL_KX_ADMIN_State>(participant, DDS_TRANSIENT_LOCAL_DURABILITY_QOS,
                                                DDS_KEEP_ALL_HISTORY_QOS);
    return reader_ != nullptr ? Status::ok : Status::failed;
}

std::set<Endpoint> StateReader::matched() const {
    return matched_endpoints(reader_, DDS_DataReader_get_matched_publications);
}

Status StateReader::take(std::vector<StateUpdate>& updates) {
    // A writer that is missing here has sent its last sample.
    DDS_SubscriptionMatchedStatus status{};
    DDS_DataReader_get_subscription_matched_status(reader_, &status);
    const bool is_changed = status.total_count_change != 0 || status.current_count_change != 0;
    if (is_changed) {
        matched_ = matched();
    }
    std::vector<StateSample> samples;
    const auto add = [&](const QEL_KX_ADMIN_State& sample, const DDS_SampleInfo& info) {
        samples.push_back(to_state_sample(sample, info));
    };
    if (take_all<QEL_KX_ADMIN_State>(reader_, add) == Status::failed) {
        return Status::failed;
    }
    // Most calls are made because of messages.
    if (samples.empty() && !is_changed) {
        return Status::ok;
    }
    const bool is_new_writer =
        std::any_of(samples.begin(), samples.end(),
                    [&](const StateSample& each) { return !matched_.contains(each.writer); });
    if (is_new_writer) {
        matched_.merge(matched());
    }
    const std::vector<StateUpdate> news = writers_.judge(samples, matched_);
    updates.insert(updates.end(), news.begin(), news.end());
    return Status::ok;
}

}  // namespace orvane::tools
