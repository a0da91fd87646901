#include "platform/engine/cyclone/instances.hpp"

#include <dds/dds.h>

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/payload_access.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine {

namespace {

Status get_reader_key(EntityId reader, const KeyHash& instance, Payload& key) {
    const LocalHandle handle = cyclone::find_instance(reader, instance);
    if (handle == 0) {
        return Status::bad_parameter;
    }
    cyclone::SampleView view;
    const Status result = cyclone::status_of(dds_instance_get_key(reader, handle, &view));
    if (result != Status::ok) {
        return result;
    }
    cyclone::SerdataPtr found(const_cast<cyclone::Serdata*>(view.data));
    // There was no memory for the key when the instance became known.
    if (found->kind != SDK_KEY) {
        return Status::out_of_resources;
    }
    key = PayloadAccess::adopt(std::move(found));
    return Status::ok;
}

}  // namespace

LocalHandle cyclone::find_instance(EntityId endpoint, const KeyHash& instance) {
    const SampleView view{.key = instance};
    return dds_lookup_instance(endpoint, &view);
}

bool knows_instance(EntityId endpoint, const KeyHash& instance) noexcept {
    if (const auto writer = cyclone::writers().find(endpoint)) {
        return writer->instances.contains(instance);
    }
    return cyclone::find_instance(endpoint, instance) != 0;
}

Status get_key(EntityId endpoint, const KeyHash& instance, Payload& key) noexcept {
    if (const auto writer = cyclone::writers().find(endpoint)) {
        return writer->instances.get_key(instance, key);
    }
    return get_reader_key(endpoint, instance, key);
}

}  // namespace pexa::engine
