#include "tools/domain/process_discovery.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "tools/text/named_numbers.hpp"

namespace orvane::tools {
namespace {

/// @return an empty text for a property that is not there
std::string value_of(DDS_PropertyQosPolicy& properties, std::string_view name) {
    const DDS_Long count = DDS_PropertySeq_get_length(&properties.value);
    for (DDS_Long i = 0; i < count; ++i) {
        const DDS_Property_t& property = *DDS_PropertySeq_get_reference(&properties.value, i);
        if (property.name == name) {
            return property.value;
        }
    }
    return {};
}

/// @return nothing when the participant has gone or announces nothing
std::optional<Process> process_of(DDS_DomainParticipant* participant,
                                  const DDS_InstanceHandle_t& handle) {
    std::optional<Process> process;
    DDS_ParticipantBuiltinTopicData data;
    DDS_ParticipantBuiltinTopicData_initialize(&data);
    if (DDS_DomainParticipant_get_discovered_participant_data(participant, &data, &handle) ==
        DDS_RETCODE_OK) {
        DDS_PropertyQosPolicy& properties = data.property;
        process =
            Process{.host = value_of(properties, "__Hostname"),
                    .name = value_of(properties, "__ProcessName"),
                    .id = parse_number<std::int64_t>(value_of(properties, "__Pid"), 10).value_or(0),
                    .addresses = value_of(properties, "__NetworkAddresses")};
    }
    DDS_ParticipantBuiltinTopicData_finalize(&data);
    return process;
}

}  // namespace

ProcessDiscovery::Processes ProcessDiscovery::look_up(DDS_DomainParticipant* participant,
                                                      const std::set<Application>& applications) {
    std::set<Application> wanted;
    std::set_difference(applications.begin(), applications.end(), known_.begin(), known_.end(),
                        std::inserter(wanted, wanted.end()));
    Processes processes;
    if (wanted.empty()) {
        return processes;
    }
    std::set<Application> known = wanted;
    DDS_InstanceHandleSeq handles{};
    DDS_DomainParticipant_get_discovered_participants(participant, &handles);
    const DDS_Long count = DDS_InstanceHandleSeq_get_length(&handles);
    for (DDS_Long i = 0; i < count; ++i) {
        const DDS_InstanceHandle_t& handle = *DDS_InstanceHandleSeq_get_reference(&handles, i);
        const Application application = application_of(endpoint_of(handle));
        if (known_.contains(application)) {
            known.insert(application);
        }
        if (!wanted.contains(application)) {
            continue;
        }
        if (auto process = process_of(participant, handle)) {
            processes.emplace_back(application, *std::move(process));
        }
    }
    DDS_InstanceHandleSeq_finalize(&handles);
    known_ = std::move(known);
    return processes;
}

}  // namespace orvane::tools
