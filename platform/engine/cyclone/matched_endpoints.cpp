#include <dds/dds.h>

#include <cstring>
#include <memory>

#include "platform/engine/cyclone/guarded.hpp"
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

}  // namespace

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
