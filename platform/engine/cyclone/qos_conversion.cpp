#include "platform/engine/cyclone/qos_conversion.hpp"

#include <array>

namespace pexa::engine::cyclone {

namespace {

static_assert(infinite == DDS_INFINITY);
static_assert(unlimited == DDS_LENGTH_UNLIMITED);

struct EngineFree {
    void operator()(void* memory) const { dds_free(memory); }
};
template <typename T>
using EnginePtr = std::unique_ptr<T, EngineFree>;

// One policy in both directions. Absent policies are left out, either way.
struct PolicyRow {
    void (*put)(const Qos& qos, dds_qos_t* out);
    void (*get)(const dds_qos_t* qos, Qos& out);
};

using PutBytes = void (*)(dds_qos_t*, const void*, size_t);
using GetBytes = bool (*)(const dds_qos_t*, void**, size_t*);

template <auto Member, PutBytes put_bytes, GetBytes get_bytes>
constexpr PolicyRow bytes_row{[](const Qos& qos, dds_qos_t* out) {
                                  if (const auto& bytes = qos.*Member) {
                                      put_bytes(out, bytes->data(), bytes->size());
                                  }
                              },
                              [](const dds_qos_t* qos, Qos& out) {
                                  void* value = nullptr;
                                  size_t size = 0;
                                  if (!get_bytes(qos, &value, &size)) {
                                      return;
                                  }
                                  const EnginePtr<std::byte> bytes(static_cast<std::byte*>(value));
                                  (out.*Member).emplace(bytes.get(), bytes.get() + size);
                              }};

template <auto Member, typename Value, void (*put_value)(dds_qos_t*, Value),
          bool (*get_value)(const dds_qos_t*, Value*)>
constexpr PolicyRow value_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (const auto& value = qos.*Member) {
            put_value(out, static_cast<Value>(*value));
        }
    },
    [](const dds_qos_t* qos, Qos& out) {
        using Ours = typename std::remove_reference_t<decltype(out.*Member)>::value_type;
        Value value{};
        if (get_value(qos, &value)) {
            out.*Member = static_cast<Ours>(value);
        }
    }};

constexpr PolicyRow entity_name_row{[](const Qos& qos, dds_qos_t* out) {
                                        if (qos.entity_name) {
                                            dds_qset_entity_name(out, qos.entity_name->c_str());
                                        }
                                    },
                                    [](const dds_qos_t* qos, Qos& out) {
                                        char* name = nullptr;
                                        if (!dds_qget_entity_name(qos, &name)) {
                                            return;
                                        }
                                        const EnginePtr<char> owner(name);
                                        out.entity_name = name;
                                    }};

constexpr PolicyRow properties_row{[](const Qos& qos, dds_qos_t* out) {
                                       for (const auto& [name, value] : qos.properties) {
                                           dds_qset_prop(out, name.c_str(), value.c_str());
                                       }
                                   },
                                   [](const dds_qos_t* qos, Qos& out) {
                                       std::uint32_t count = 0;
                                       char** found = nullptr;
                                       if (!dds_qget_propnames(qos, &count, &found)) {
                                           return;
                                       }
                                       const EnginePtr<char*> names(found);
                                       for (std::uint32_t i = 0; i < count; ++i) {
                                           const EnginePtr<char> name(names.get()[i]);
                                           char* value = nullptr;
                                           if (!dds_qget_prop(qos, name.get(), &value)) {
                                               continue;
                                           }
                                           const EnginePtr<char> owner(value);
                                           out.properties.emplace_back(name.get(), value);
                                       }
                                   }};

constexpr PolicyRow partition_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (!qos.partition) {
            return;
        }
        std::vector<const char*> names;
        for (const std::string& name : *qos.partition) {
            names.push_back(name.c_str());
        }
        dds_qset_partition(out, static_cast<std::uint32_t>(names.size()), names.data());
    },
    [](const dds_qos_t* qos, Qos& out) {
        std::uint32_t count = 0;
        char** found = nullptr;
        if (!dds_qget_partition(qos, &count, &found)) {
            return;
        }
        const EnginePtr<char*> names(found);
        auto& partition = out.partition.emplace();
        for (std::uint32_t i = 0; i < count; ++i) {
            partition.emplace_back(EnginePtr<char>(names.get()[i]).get());
        }
    }};

constexpr PolicyRow durability_service_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (const auto& service = qos.durability_service) {
            dds_qset_durability_service(
                out, service->cleanup_delay, static_cast<dds_history_kind_t>(service->history.kind),
                service->history.depth, service->limits.max_samples, service->limits.max_instances,
                service->limits.max_samples_per_instance);
        }
    },
    [](const dds_qos_t* qos, Qos& out) {
        DurabilityServicePolicy service;
        dds_history_kind_t kind{};
        if (!dds_qget_durability_service(qos, &service.cleanup_delay, &kind, &service.history.depth,
                                         &service.limits.max_samples, &service.limits.max_instances,
                                         &service.limits.max_samples_per_instance)) {
            return;
        }
        service.history.kind = static_cast<HistoryKind>(kind);
        out.durability_service = service;
    }};

constexpr PolicyRow presentation_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (const auto& presentation = qos.presentation) {
            dds_qset_presentation(
                out, static_cast<dds_presentation_access_scope_kind_t>(presentation->access_scope),
                presentation->coherent_access, presentation->ordered_access);
        }
    },
    [](const dds_qos_t* qos, Qos& out) {
        PresentationPolicy presentation;
        dds_presentation_access_scope_kind_t scope{};
        if (!dds_qget_presentation(qos, &scope, &presentation.coherent_access,
                                   &presentation.ordered_access)) {
            return;
        }
        presentation.access_scope = static_cast<AccessScope>(scope);
        out.presentation = presentation;
    }};

constexpr PolicyRow liveliness_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (const auto& liveliness = qos.liveliness) {
            dds_qset_liveliness(out, static_cast<dds_liveliness_kind_t>(liveliness->kind),
                                liveliness->lease_duration);
        }
    },
    [](const dds_qos_t* qos, Qos& out) {
        LivelinessPolicy liveliness;
        dds_liveliness_kind_t kind{};
        if (!dds_qget_liveliness(qos, &kind, &liveliness.lease_duration)) {
            return;
        }
        liveliness.kind = static_cast<LivelinessKind>(kind);
        out.liveliness = liveliness;
    }};

constexpr PolicyRow reliability_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (const auto& reliability = qos.reliability) {
            dds_qset_reliability(out, static_cast<dds_reliability_kind_t>(reliability->kind),
                                 reliability->max_blocking_time);
        }
    },
    [](const dds_qos_t* qos, Qos& out) {
        ReliabilityPolicy reliability;
        dds_reliability_kind_t kind{};
        if (!dds_qget_reliability(qos, &kind, &reliability.max_blocking_time)) {
            return;
        }
        reliability.kind = static_cast<ReliabilityKind>(kind);
        out.reliability = reliability;
    }};

constexpr PolicyRow history_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (const auto& history = qos.history) {
            dds_qset_history(out, static_cast<dds_history_kind_t>(history->kind), history->depth);
        }
    },
    [](const dds_qos_t* qos, Qos& out) {
        HistoryPolicy history;
        dds_history_kind_t kind{};
        if (!dds_qget_history(qos, &kind, &history.depth)) {
            return;
        }
        history.kind = static_cast<HistoryKind>(kind);
        out.history = history;
    }};

constexpr PolicyRow resource_limits_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (const auto& limits = qos.resource_limits) {
            dds_qset_resource_limits(out, limits->max_samples, limits->max_instances,
                                     limits->max_samples_per_instance);
        }
    },
    [](const dds_qos_t* qos, Qos& out) {
        ResourceLimitsPolicy limits;
        if (dds_qget_resource_limits(qos, &limits.max_samples, &limits.max_instances,
                                     &limits.max_samples_per_instance)) {
            out.resource_limits = limits;
        }
    }};

constexpr PolicyRow reader_data_lifecycle_row{
    [](const Qos& qos, dds_qos_t* out) {
        if (const auto& lifecycle = qos.reader_data_lifecycle) {
            dds_qset_reader_data_lifecycle(out, lifecycle->autopurge_nowriter_samples_delay,
                                           lifecycle->autopurge_disposed_samples_delay);
        }
    },
    [](const dds_qos_t* qos, Qos& out) {
        ReaderDataLifecyclePolicy lifecycle;
        if (dds_qget_reader_data_lifecycle(qos, &lifecycle.autopurge_nowriter_samples_delay,
                                           &lifecycle.autopurge_disposed_samples_delay)) {
            out.reader_data_lifecycle = lifecycle;
        }
    }};

constexpr std::array policies{
    bytes_row<&Qos::user_data, dds_qset_userdata, dds_qget_userdata>,
    bytes_row<&Qos::topic_data, dds_qset_topicdata, dds_qget_topicdata>,
    bytes_row<&Qos::group_data, dds_qset_groupdata, dds_qget_groupdata>,
    entity_name_row,
    properties_row,
    value_row<&Qos::durability, dds_durability_kind_t, dds_qset_durability, dds_qget_durability>,
    durability_service_row,
    presentation_row,
    value_row<&Qos::deadline, dds_duration_t, dds_qset_deadline, dds_qget_deadline>,
    value_row<&Qos::latency_budget, dds_duration_t, dds_qset_latency_budget,
              dds_qget_latency_budget>,
    value_row<&Qos::ownership, dds_ownership_kind_t, dds_qset_ownership, dds_qget_ownership>,
    value_row<&Qos::ownership_strength, std::int32_t, dds_qset_ownership_strength,
              dds_qget_ownership_strength>,
    liveliness_row,
    value_row<&Qos::time_based_filter, dds_duration_t, dds_qset_time_based_filter,
              dds_qget_time_based_filter>,
    partition_row,
    reliability_row,
    value_row<&Qos::transport_priority, std::int32_t, dds_qset_transport_priority,
              dds_qget_transport_priority>,
    value_row<&Qos::lifespan, dds_duration_t, dds_qset_lifespan, dds_qget_lifespan>,
    value_row<&Qos::destination_order, dds_destination_order_kind_t, dds_qset_destination_order,
              dds_qget_destination_order>,
    history_row,
    resource_limits_row,
    value_row<&Qos::autodispose_unregistered_instances, bool, dds_qset_writer_data_lifecycle,
              dds_qget_writer_data_lifecycle>,
    reader_data_lifecycle_row,
    value_row<&Qos::ignore_local, dds_ignorelocal_kind_t, dds_qset_ignorelocal,
              dds_qget_ignorelocal>,
};

}  // namespace

QosPtr to_engine(const Qos& qos) {
    QosPtr out(dds_create_qos());
    for (const PolicyRow& policy : policies) {
        policy.put(qos, out.get());
    }
    return out;
}

Qos from_engine(const dds_qos_t* qos) {
    Qos out;
    for (const PolicyRow& policy : policies) {
        policy.get(qos, out);
    }
    return out;
}

}  // namespace pexa::engine::cyclone
