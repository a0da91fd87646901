#include "platform/engine/cyclone/qos_conversion.hpp"

#include <array>
#include <functional>
#include <tuple>

namespace pexa::engine::cyclone {

namespace {

static_assert(infinite == DDS_INFINITY);
static_assert(unlimited == DDS_LENGTH_UNLIMITED);

struct CycloneFree {
    void operator()(void* memory) const { dds_free(memory); }
};
template <typename T>
using CyclonePtr = std::unique_ptr<T, CycloneFree>;

// Strings that Cyclone returned.
struct CycloneStrings {
    std::uint32_t count = 0;
    char** strings = nullptr;

    CycloneStrings() = default;
    CycloneStrings(const CycloneStrings&) = delete;
    CycloneStrings& operator=(const CycloneStrings&) = delete;
    ~CycloneStrings() {
        for (char* string : *this) {
            dds_free(string);
        }
        dds_free(strings);
    }
    char* const* begin() const { return strings; }
    char* const* end() const { return strings + count; }
};

// One policy in both directions. Absent policies are left out, either way.
struct PolicyRow {
    void (*put)(const Qos& qos, dds_qos_t* out);
    void (*get)(const dds_qos_t* qos, Qos& out);
};

using PutBytes = void (*)(dds_qos_t*, const void*, size_t);
using GetBytes = bool (*)(const dds_qos_t*, void**, size_t*);

// A number in Cyclone's type for it, into ours.
template <typename Ours, typename Theirs>
void assign(Ours& ours, const Theirs& theirs) {
    ours = static_cast<Ours>(theirs);
}

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
                                  const CyclonePtr<std::byte> bytes(static_cast<std::byte*>(value));
                                  (out.*Member).emplace(bytes.get(), bytes.get() + size);
                              }};

// A policy of numbers, enumerators and truth values. Each part names one of them in the policy's
// record, in the order of Cyclone's arguments.
template <auto member, auto put, auto get, auto... part>
constexpr PolicyRow numbers_row = []<typename... Value>(void (*)(dds_qos_t*, Value...)) {
    return PolicyRow{[](const Qos& qos, dds_qos_t* out) {
                         if (const auto& policy = qos.*member) {
                             put(out, static_cast<Value>(std::invoke(part, *policy))...);
                         }
                     },
                     [](const dds_qos_t* qos, Qos& out) {
                         std::tuple<Value...> values{};
                         const auto get_all = [qos](Value&... value) {
                             return get(qos, &value...);
                         };
                         if (!std::apply(get_all, values)) {
                             return;
                         }
                         auto& policy = (out.*member).emplace();
                         const auto set_all = [&policy](const Value&... value) {
                             (assign(std::invoke(part, policy), value), ...);
                         };
                         std::apply(set_all, values);
                     }};
}(put);

// A policy that is one value.
constexpr auto whole = [](auto& policy) -> auto& {
    return policy;
};
template <auto member, auto put, auto get>
constexpr PolicyRow value_row = numbers_row<member, put, get, whole>;

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
                                        const CyclonePtr<char> owner(name);
                                        out.entity_name = name;
                                    }};

constexpr PolicyRow properties_row{[](const Qos& qos, dds_qos_t* out) {
                                       for (const auto& [name, value] : qos.properties) {
                                           dds_qset_prop(out, name.c_str(), value.c_str());
                                       }
                                   },
                                   [](const dds_qos_t* qos, Qos& out) {
                                       CycloneStrings names;
                                       if (!dds_qget_propnames(qos, &names.count, &names.strings)) {
                                           return;
                                       }
                                       for (const char* name : names) {
                                           char* value = nullptr;
                                           if (!dds_qget_prop(qos, name, &value)) {
                                               continue;
                                           }
                                           const CyclonePtr<char> owner(value);
                                           out.properties.emplace_back(name, value);
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
        CycloneStrings names;
        if (dds_qget_partition(qos, &names.count, &names.strings)) {
            out.partition.emplace(names.begin(), names.end());
        }
    }};

constexpr auto history_kind = [](auto& service) -> auto& {
    return service.history.kind;
};
constexpr auto history_depth = [](auto& service) -> auto& {
    return service.history.depth;
};
constexpr auto limit_of_samples = [](auto& service) -> auto& {
    return service.limits.max_samples;
};
constexpr auto limit_of_instances = [](auto& service) -> auto& {
    return service.limits.max_instances;
};
constexpr auto limit_per_instance = [](auto& service) -> auto& {
    return service.limits.max_samples_per_instance;
};

constexpr std::array policies{
    bytes_row<&Qos::user_data, dds_qset_userdata, dds_qget_userdata>,
    bytes_row<&Qos::topic_data, dds_qset_topicdata, dds_qget_topicdata>,
    bytes_row<&Qos::group_data, dds_qset_groupdata, dds_qget_groupdata>,
    entity_name_row,
    properties_row,
    value_row<&Qos::durability, dds_qset_durability, dds_qget_durability>,
    numbers_row<&Qos::durability_service, dds_qset_durability_service, dds_qget_durability_service,
                &DurabilityServicePolicy::cleanup_delay, history_kind, history_depth,
                limit_of_samples, limit_of_instances, limit_per_instance>,
    numbers_row<&Qos::presentation, dds_qset_presentation, dds_qget_presentation,
                &PresentationPolicy::access_scope, &PresentationPolicy::coherent_access,
                &PresentationPolicy::ordered_access>,
    value_row<&Qos::deadline, dds_qset_deadline, dds_qget_deadline>,
    value_row<&Qos::latency_budget, dds_qset_latency_budget, dds_qget_latency_budget>,
    value_row<&Qos::ownership, dds_qset_ownership, dds_qget_ownership>,
    value_row<&Qos::ownership_strength, dds_qset_ownership_strength, dds_qget_ownership_strength>,
    numbers_row<&Qos::liveliness, dds_qset_liveliness, dds_qget_liveliness, &LivelinessPolicy::kind,
                &LivelinessPolicy::lease_duration>,
    value_row<&Qos::time_based_filter, dds_qset_time_based_filter, dds_qget_time_based_filter>,
    partition_row,
    numbers_row<&Qos::reliability, dds_qset_reliability, dds_qget_reliability,
                &ReliabilityPolicy::kind, &ReliabilityPolicy::max_blocking_time>,
    value_row<&Qos::transport_priority, dds_qset_transport_priority, dds_qget_transport_priority>,
    value_row<&Qos::lifespan, dds_qset_lifespan, dds_qget_lifespan>,
    value_row<&Qos::destination_order, dds_qset_destination_order, dds_qget_destination_order>,
    numbers_row<&Qos::history, dds_qset_history, dds_qget_history, &HistoryPolicy::kind,
                &HistoryPolicy::depth>,
    numbers_row<&Qos::resource_limits, dds_qset_resource_limits, dds_qget_resource_limits,
                &ResourceLimitsPolicy::max_samples, &ResourceLimitsPolicy::max_instances,
                &ResourceLimitsPolicy::max_samples_per_instance>,
    value_row<&Qos::autodispose_unregistered_instances, dds_qset_writer_data_lifecycle,
              dds_qget_writer_data_lifecycle>,
    numbers_row<&Qos::reader_data_lifecycle, dds_qset_reader_data_lifecycle,
                dds_qget_reader_data_lifecycle,
                &ReaderDataLifecyclePolicy::autopurge_nowriter_samples_delay,
                &ReaderDataLifecyclePolicy::autopurge_disposed_samples_delay>,
};

}  // namespace

QosPtr to_cyclone(const Qos& qos) {
    QosPtr out(dds_create_qos());
    for (const PolicyRow& policy : policies) {
        policy.put(qos, out.get());
    }
    return out;
}

Qos from_cyclone(const dds_qos_t* qos) {
    Qos out;
    for (const PolicyRow& policy : policies) {
        policy.get(qos, out);
    }
    return out;
}

}  // namespace pexa::engine::cyclone
