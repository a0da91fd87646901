#include <dds/dds.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/entity_tree.hpp"
#include "platform/engine/cyclone/guarded.hpp"
#include "platform/engine/cyclone/instances.hpp"
#include "platform/engine/cyclone/listener_conversion.hpp"
#include "platform/engine/cyclone/payload_access.hpp"
#include "platform/engine/cyclone/qos_conversion.hpp"
#include "platform/engine/cyclone/results.hpp"
#include "platform/engine/cyclone/state_masks.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine {

namespace {

using cyclone::guarded;
using cyclone::status_of;

// Room for the samples that Cyclone returns from one call. Large room comes from the heap, where
// memory that is never used costs nothing.
class RawSamples {
public:
    explicit RawSamples(std::size_t capacity) {
        if (capacity <= few) {
            return;
        }
        large_.reset(std::malloc(capacity * (sizeof(void*) + sizeof(dds_sample_info_t))));
        infos_ = static_cast<dds_sample_info_t*>(large_.get());
        if (infos_ == nullptr) {
            return;
        }
        data_ = reinterpret_cast<ddsi_serdata**>(infos_ + capacity);
    }

    // Whether there is memory.
    explicit operator bool() const { return infos_ != nullptr; }
    ddsi_serdata** data() { return data_; }
    dds_sample_info_t* infos() { return infos_; }

private:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };
    static constexpr std::size_t few = 32;

    std::array<ddsi_serdata*, few> few_data_;
    std::array<dds_sample_info_t, few> few_infos_;
    std::unique_ptr<void, Free> large_;
    ddsi_serdata** data_ = few_data_.data();
    dds_sample_info_t* infos_ = few_infos_.data();
};

struct Request {
    EntityId reader;
    Access access;
    std::uint32_t states;
    std::uint32_t max_samples;
};

// Returns nothing for a bad number of samples.
std::optional<Request> make_request(EntityId reader, Access access, const StateMask& states,
                                    std::int32_t max_samples) {
    if (max_samples == unlimited) {
        max_samples = max_samples_per_call;
    }
    if (max_samples < 1) {
        return std::nullopt;
    }
    max_samples = std::min(max_samples, max_samples_per_call);
    return Request{reader, access, cyclone::to_cyclone(states),
                   static_cast<std::uint32_t>(max_samples)};
}

// @param instance 0 for all
dds_return_t fetch_raw(const Request& request, LocalHandle instance, RawSamples& raw) {
    const bool take = request.access == Access::take;
    if (instance == 0) {
        const auto fetch_all = take ? dds_takecdr : dds_readcdr;
        return fetch_all(request.reader, raw.data(), request.max_samples, raw.infos(),
                         request.states);
    }
    const auto fetch_instance = take ? dds_takecdr_instance : dds_readcdr_instance;
    return fetch_instance(request.reader, raw.data(), request.max_samples, raw.infos(), instance,
                          request.states);
}

Status fetch(const Request& request, LocalHandle instance, std::vector<Sample>& samples) {
    if (request.states == 0) {
        return Status::no_data;
    }
    RawSamples raw(request.max_samples);
    if (!raw) {
        return Status::out_of_resources;
    }
    const dds_return_t count = fetch_raw(request, instance, raw);
    if (count <= 0) {
        return count == 0 ? Status::no_data : status_of(count);
    }

    const Status room = guarded([&] {
        samples.reserve(samples.size() + static_cast<std::size_t>(count));
        return Status::ok;
    });
    for (dds_return_t i = 0; i < count; ++i) {
        cyclone::SerdataPtr data(static_cast<cyclone::Serdata*>(raw.data()[i]));
        if (room != Status::ok) {
            continue;
        }
        SampleInfo info = cyclone::from_cyclone(raw.infos()[i], data->key);
        // A sample that stands for its instance did not bring its valid data.
        if (info.valid_data) {
            info.origin = data->origin;
        }
        samples.push_back({PayloadAccess::adopt(std::move(data)), info});
    }
    return room;
}

}  // namespace

SampleInfo cyclone::from_cyclone(const dds_sample_info_t& info, const KeyHash& instance) {
    SampleInfo out;
    out.sample_state = info.sample_state;
    out.view_state = static_cast<std::uint32_t>(info.view_state) >> view_shift;
    out.instance_state = static_cast<std::uint32_t>(info.instance_state) >> instance_shift;
    out.valid_data = info.valid_data;
    out.source_timestamp = info.source_timestamp;
    out.instance = instance;
    out.publication = info.publication_handle;
    out.disposed_generation_count = static_cast<std::int32_t>(info.disposed_generation_count);
    out.no_writers_generation_count = static_cast<std::int32_t>(info.no_writers_generation_count);
    out.sample_rank = static_cast<std::int32_t>(info.sample_rank);
    out.generation_rank = static_cast<std::int32_t>(info.generation_rank);
    out.absolute_generation_rank = static_cast<std::int32_t>(info.absolute_generation_rank);
    return out;
}

Created create_reader(EntityId subscriber, EntityId topic, const Qos& qos,
                      ListenerSetting listener) noexcept {
    auto topic_record = cyclone::topics().find(topic);
    if (!topic_record) {
        return {Status::bad_parameter, no_entity};
    }
    return guarded([&] {
        cyclone::EntityTable<cyclone::ReaderRecord>::Entry entry(
            std::make_shared<cyclone::ReaderRecord>(std::move(topic_record)));
        cyclone::NewEntity entity(subscriber);
        const dds_entity_t reader = dds_create_reader(
            subscriber, topic, cyclone::to_cyclone(qos).get(), cyclone::to_cyclone(listener).get());
        if (reader > 0) {
            cyclone::readers().add(reader, std::move(entry));
        }
        return entity.note(reader);
    });
}

Status read_or_take(EntityId reader, Access access, const StateMask& states,
                    std::int32_t max_samples, std::vector<Sample>& samples) noexcept {
    const auto request = make_request(reader, access, states, max_samples);
    return request ? fetch(*request, 0, samples) : Status::bad_parameter;
}

Status read_or_take_instance(EntityId reader, Access access, const StateMask& states,
                             std::int32_t max_samples, const KeyHash& instance,
                             std::vector<Sample>& samples) noexcept {
    const auto request = make_request(reader, access, states, max_samples);
    const LocalHandle handle = cyclone::find_instance(reader, instance);
    if (!request || handle == 0) {
        return Status::bad_parameter;
    }
    const Status result = fetch(*request, handle, samples);
    // Known to the process, but not to this reader.
    return result == Status::precondition_not_met ? Status::bad_parameter : result;
}

Status read_or_take_next_instance(EntityId reader, Access access, const StateMask& states,
                                  std::int32_t max_samples, const KeyHash* previous,
                                  std::vector<Sample>& samples) noexcept {
    const auto request = make_request(reader, access, states, max_samples);
    const auto record = cyclone::readers().find(reader);
    if (!request || !record) {
        return Status::bad_parameter;
    }
    const cyclone::InstanceIndex& instances = *record->use.topic().type->instances();
    std::optional<KeyHash> instance = instances.next(previous);
    for (; instance; instance = instances.next(&*instance)) {
        const LocalHandle handle = cyclone::find_instance(reader, *instance);
        if (handle == 0) {
            continue;
        }
        const Status result = fetch(*request, handle, samples);
        if (result != Status::no_data && result != Status::precondition_not_met) {
            return result;
        }
    }
    return Status::no_data;
}

// Cyclone returns at once. Samples that writers of this process keep are there when create_reader()
// returns; those of other processes arrive after the writers have matched.
Status wait_for_historical_data(EntityId reader, Nanoseconds max_wait) noexcept {
    return status_of(dds_reader_wait_for_historical_data(reader, max_wait));
}

}  // namespace pexa::engine
