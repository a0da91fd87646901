#include <dds/dds.h>

#include <cstring>
#include <memory>

#include "platform/engine/cyclone/guarded.hpp"
#include "platform/engine/cyclone/listener_call.hpp"
#include "platform/engine/cyclone/listener_conversion.hpp"
#include "platform/engine/cyclone/qos_conversion.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine {

namespace {

struct EndpointFree {
    void operator()(dds_builtintopic_endpoint_t* endpoint) const {
        dds_builtintopic_free_endpoint(endpoint);
    }
};
using EndpointPtr = std::unique_ptr<dds_builtintopic_endpoint_t, EndpointFree>;

using GetHandles = dds_return_t (*)(dds_entity_t, dds_instance_handle_t*, size_t);

Status get_handles(GetHandles get, EntityId endpoint, std::vector<LocalHandle>& handles) {
    handles.clear();
    return cyclone::guarded([&] {
        dds_return_t count = get(endpoint, nullptr, 0);
        // The number may grow between counting and reading.
        while (count > 0 && handles.size() < static_cast<std::size_t>(count)) {
            handles.resize(static_cast<std::size_t>(count));
            count = get(endpoint, handles.data(), handles.size());
        }
        if (count < 0) {
            return cyclone::status_of(count);
        }
        handles.resize(static_cast<std::size_t>(count));
        return Status::ok;
    });
}

Guid guid_of(const dds_guid_t& guid) {
    Guid out;
    std::memcpy(out.data(), guid.v, out.size());
    return out;
}

Status fill(const EndpointPtr& endpoint, EndpointData& data) {
    if (!endpoint) {
        return Status::bad_parameter;
    }
    return cyclone::guarded([&] {
        data.guid = guid_of(endpoint->key);
        data.topic_name = endpoint->topic_name;
        data.type_name = endpoint->type_name;
        data.qos = cyclone::from_cyclone(endpoint->qos);
        return Status::ok;
    });
}

// A reader of what Cyclone knows of participants. It has all of that when it has been made.
class ParticipantReader {
public:
    explicit ParticipantReader(EntityId participant)
        : id_(dds_create_reader(participant, DDS_BUILTIN_TOPIC_DCPSPARTICIPANT, nullptr,
                                cyclone::to_cyclone({&deaf_, data_available_status}).get())) {}
    ParticipantReader(const ParticipantReader&) = delete;
    ParticipantReader& operator=(const ParticipantReader&) = delete;
    ~ParticipantReader() {
        if (id_ > 0) {
            dds_delete(id_);
        }
    }

    dds_entity_t id() const { return id_; }

private:
    // A listener of the application's participant would take the data for that of its own readers.
    Listener deaf_;
    dds_entity_t id_;
};

// One participant, in memory of Cyclone's.
class ParticipantLoan {
public:
    explicit ParticipantLoan(dds_entity_t reader)
        : reader_(reader), count_(dds_take_next(reader, &sample_, &info_)) {}
    ParticipantLoan(const ParticipantLoan&) = delete;
    ParticipantLoan& operator=(const ParticipantLoan&) = delete;
    ~ParticipantLoan() {
        if (count_ > 0) {
            dds_return_loan(reader_, &sample_, count_);
        }
    }

    // The number of participants, or a failure.
    dds_return_t count() const { return count_; }
    // Whether it has not left meanwhile.
    bool is_there() const { return info_.valid_data; }
    const dds_builtintopic_participant_t& operator*() const {
        return *static_cast<const dds_builtintopic_participant_t*>(sample_);
    }

private:
    dds_entity_t reader_;
    void* sample_ = nullptr;
    dds_sample_info_t info_;
    dds_return_t count_;
};

Status read_participants(dds_entity_t reader, const Guid& own,
                         std::vector<ParticipantData>& found) {
    for (;;) {
        const ParticipantLoan loan(reader);
        if (loan.count() <= 0) {
            return cyclone::status_of(loan.count());
        }
        if (loan.is_there() && guid_of((*loan).key) != own) {
            found.push_back({guid_of((*loan).key), cyclone::from_cyclone((*loan).qos)});
        }
    }
}

}  // namespace

Status get_discovered_participants(EntityId participant,
                                   std::vector<ParticipantData>& found) noexcept {
    found.clear();
    // The deletion of the reader waits for the ends of all callbacks.
    if (cyclone::is_in_callback()) {
        return Status::illegal_operation;
    }
    Guid own{};
    const Status status = get_guid(participant, own);
    if (status != Status::ok) {
        return status;
    }
    return cyclone::guarded([&] {
        const ParticipantReader reader(participant);
        return reader.id() > 0 ? read_participants(reader.id(), own, found)
                               : cyclone::status_of(reader.id());
    });
}

Status get_matched_subscriptions(EntityId writer, std::vector<LocalHandle>& handles) noexcept {
    return get_handles(dds_get_matched_subscriptions, writer, handles);
}

Status get_matched_publications(EntityId reader, std::vector<LocalHandle>& handles) noexcept {
    return get_handles(dds_get_matched_publications, reader, handles);
}

Status get_matched_subscription(EntityId writer, LocalHandle handle, EndpointData& data) noexcept {
    return fill(EndpointPtr(dds_get_matched_subscription_data(writer, handle)), data);
}

Status get_matched_publication(EntityId reader, LocalHandle handle, EndpointData& data) noexcept {
    return fill(EndpointPtr(dds_get_matched_publication_data(reader, handle)), data);
}

}  // namespace pexa::engine
