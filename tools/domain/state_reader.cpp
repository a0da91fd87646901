#include "tools/domain/state_reader.hpp"

#include <cstddef>

namespace orvane::tools {
namespace {

LoggerState to_state(const QEL_KX_ADMIN_State& sample) {
    LoggerState state{.application = application_of(sample.hostAndAppId),
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

StateUpdate to_update(const QEL_KX_ADMIN_State& sample, const DDS_SampleInfo& info) {
    return {.application = application_of(sample.hostAndAppId),
            .state = info.valid_data != 0 ? std::optional{to_state(sample)} : std::nullopt,
            .alive = info.instance_state == DDS_ALIVE_INSTANCE_STATE,
            .writer = application_of(endpoint_of(info.publication_handle))};
}

}  // namespace

DDS_DataReader* create_state_reader(DDS_DomainParticipant* participant) {
    return create_reader<QEL_KX_ADMIN_State>(participant, DDS_TRANSIENT_LOCAL_DURABILITY_QOS,
                                             DDS_KEEP_LAST_HISTORY_QOS);
}

Status take_states(DDS_DataReader* reader, std::vector<StateUpdate>& updates) {
    return take_all<QEL_KX_ADMIN_State>(
        reader, [&](const QEL_KX_ADMIN_State& sample, const DDS_SampleInfo& info) {
            updates.push_back(to_update(sample, info));
        });
}

}  // namespace orvane::tools
