#include "platform/dds/qos/owned_policies.hpp"

#include <functional>
#include <string_view>

#include "pexa/string.h"
#include "platform/dds/interface/standard_sequences.hpp"

namespace pexa::dds {
namespace {

std::string_view text_of(const char* text) {
    return text != nullptr ? text : std::string_view();
}

const char* no_fault(const void*) {
    return nullptr;
}
void not_in_engine(const void*, engine::Qos&) {}
bool not_from_engine(const engine::Qos&, void*) {
    return true;
}

template <typename Policy, std::optional<engine::Bytes> engine::Qos::*Slot>
struct OctetsPolicy {
    static const DDS_OctetSeq& of(const void* policy) {
        return static_cast<const Policy*>(policy)->value;
    }
    static DDS_OctetSeq& of(void* policy) { return static_cast<Policy*>(policy)->value; }

    static void initialize(void* policy) { DDS_OctetSeq_initialize(&of(policy)); }
    static bool copy(void* policy, const void* from) {
        return DDS_OctetSeq_copy(&of(policy), &of(from)) != nullptr;
    }
    static void finalize(void* policy) { DDS_OctetSeq_finalize(&of(policy)); }
    static bool equal(const void* left, const void* right) {
        return equal_sequences(of(left), of(right), std::equal_to<>());
    }
    static void to_engine(const void* policy, engine::Qos& qos) {
        const DDS_OctetSeq& value = of(policy);
        engine::Bytes bytes;
        bytes.reserve(static_cast<std::size_t>(length_of(value)));
        for (DDS_Long i = 0; i < length_of(value); ++i) {
            bytes.push_back(std::byte{element_of(value, i)});
        }
        qos.*Slot = std::move(bytes);
    }
    static bool from_engine(const engine::Qos& qos, void* policy) {
        const auto& bytes = qos.*Slot;
        if (!bytes) {
            return true;
        }
        const auto length = static_cast<DDS_Long>(bytes->size());
        DDS_OctetSeq& value = of(policy);
        if (DDS_OctetSeq_ensure_length(&value, length, length) == 0) {
            return false;
        }
        for (DDS_Long i = 0; i < length; ++i) {
            *DDS_OctetSeq_get_reference(&value, i) =
                std::to_integer<DDS_Octet>((*bytes)[static_cast<std::size_t>(i)]);
        }
        return true;
    }

    static constexpr PolicyOperations operations{initialize, copy,      finalize,   equal,
                                                 no_fault,   to_engine, from_engine};
};

struct PartitionPolicy {
    static const DDS_StringSeq& of(const void* policy) {
        return static_cast<const DDS_PartitionQosPolicy*>(policy)->name;
    }
    static DDS_StringSeq& of(void* policy) {
        return static_cast<DDS_PartitionQosPolicy*>(policy)->name;
    }

    static void initialize(void* policy) { DDS_StringSeq_initialize(&of(policy)); }
    static bool copy(void* policy, const void* from) {
        return DDS_StringSeq_copy(&of(policy), &of(from)) != nullptr;
    }
    static void finalize(void* policy) { DDS_StringSeq_finalize(&of(policy)); }
    static bool equal(const void* left, const void* right) {
        return equal_sequences(of(left), of(right), [](const char* a, const char* b) {
            return text_of(a) == text_of(b);
        });
    }
    static void to_engine(const void* policy, engine::Qos& qos) {
        const DDS_StringSeq& names = of(policy);
        std::vector<std::string> partition;
        partition.reserve(static_cast<std::size_t>(length_of(names)));
        for (DDS_Long i = 0; i < length_of(names); ++i) {
            partition.emplace_back(text_of(element_of(names, i)));
        }
        qos.partition = std::move(partition);
    }
    static bool from_engine(const engine::Qos& qos, void* policy) {
        if (!qos.partition) {
            return true;
        }
        const auto length = static_cast<DDS_Long>(qos.partition->size());
        DDS_StringSeq& names = of(policy);
        if (DDS_StringSeq_ensure_length(&names, length, length) == 0) {
            return false;
        }
        for (DDS_Long i = 0; i < length; ++i) {
            char** name = DDS_StringSeq_get_reference(&names, i);
            const std::string& value = (*qos.partition)[static_cast<std::size_t>(i)];
            if (DDS_String_replace(name, value.c_str()) == nullptr) {
                return false;
            }
        }
        return true;
    }

    static constexpr PolicyOperations operations{initialize, copy,      finalize,   equal,
                                                 no_fault,   to_engine, from_engine};
};

struct EntityNamePolicy {
    static const char* of(const void* policy) {
        return static_cast<const DDS_EntityNameQosPolicy*>(policy)->name;
    }
    static char*& of(void* policy) { return static_cast<DDS_EntityNameQosPolicy*>(policy)->name; }

    static void initialize(void* policy) { of(policy) = nullptr; }
    static bool copy(void* policy, const void* from) {
        if (of(from) == nullptr) {
            finalize(policy);
            return true;
        }
        return of(policy) == of(from) || DDS_String_replace(&of(policy), of(from)) != nullptr;
    }
    static void finalize(void* policy) {
        DDS_String_free(of(policy));
        of(policy) = nullptr;
    }
    static bool equal(const void* left, const void* right) {
        return text_of(of(left)) == text_of(of(right));
    }
    static void to_engine(const void* policy, engine::Qos& qos) {
        if (of(policy) != nullptr) {
            qos.entity_name = of(policy);
        }
    }
    static bool from_engine(const engine::Qos& qos, void* policy) {
        return !qos.entity_name ||
               DDS_String_replace(&of(policy), qos.entity_name->c_str()) != nullptr;
    }

    static constexpr PolicyOperations operations{initialize, copy,      finalize,   equal,
                                                 no_fault,   to_engine, from_engine};
};

struct PropertyPolicy {
    static const DDS_PropertySeq& of(const void* policy) {
        return static_cast<const DDS_PropertyQosPolicy*>(policy)->value;
    }
    static DDS_PropertySeq& of(void* policy) {
        return static_cast<DDS_PropertyQosPolicy*>(policy)->value;
    }

    static void initialize(void* policy) { DDS_PropertySeq_initialize(&of(policy)); }
    static bool copy(void* policy, const void* from) {
        return DDS_PropertySeq_copy(&of(policy), &of(from)) != nullptr;
    }
    static void finalize(void* policy) { DDS_PropertySeq_finalize(&of(policy)); }
    static bool equal(const void* left, const void* right) {
        return equal_sequences(
            of(left), of(right), [](const DDS_Property_t& a, const DDS_Property_t& b) {
                return text_of(a.name) == text_of(b.name) && text_of(a.value) == text_of(b.value);
            });
    }
    static const char* fault(const void* policy) {
        const DDS_PropertySeq& properties = of(policy);
        for (DDS_Long i = 0; i < length_of(properties); ++i) {
            const std::string_view name = text_of(element_of(properties, i).name);
            if (name.empty()) {
                return "a property without name";
            }
            for (DDS_Long j = 0; j < i; ++j) {
                if (text_of(element_of(properties, j).name) == name) {
                    return "two properties of the same name";
                }
            }
        }
        return nullptr;
    }
    static void to_engine(const void* policy, engine::Qos& qos) {
        const DDS_PropertySeq& properties = of(policy);
        decltype(qos.properties) pairs;
        pairs.reserve(static_cast<std::size_t>(length_of(properties)));
        for (DDS_Long i = 0; i < length_of(properties); ++i) {
            const DDS_Property_t& property = element_of(properties, i);
            pairs.emplace_back(text_of(property.name), text_of(property.value));
        }
        qos.properties = std::move(pairs);
    }
    static bool from_engine(const engine::Qos& qos, void* policy) {
        const auto length = static_cast<DDS_Long>(qos.properties.size());
        DDS_PropertySeq& properties = of(policy);
        if (DDS_PropertySeq_ensure_length(&properties, length, length) == 0) {
            return false;
        }
        for (DDS_Long i = 0; i < length; ++i) {
            const auto& [name, value] = qos.properties[static_cast<std::size_t>(i)];
            DDS_Property_t* property = DDS_PropertySeq_get_reference(&properties, i);
            if (DDS_String_replace(&property->name, name.c_str()) == nullptr ||
                DDS_String_replace(&property->value, value.c_str()) == nullptr) {
                return false;
            }
        }
        return true;
    }

    static constexpr PolicyOperations operations{initialize, copy,      finalize,   equal,
                                                 fault,      to_engine, from_engine};
};

/// A policy that is the port's own business.
template <typename Policy, Policy Initial, auto Equal>
struct PortPolicy {
    static const Policy& of(const void* policy) { return *static_cast<const Policy*>(policy); }

    static void initialize(void* policy) { *static_cast<Policy*>(policy) = Initial; }
    static bool copy(void* policy, const void* from) {
        *static_cast<Policy*>(policy) = of(from);
        return true;
    }
    static void finalize(void*) {}
    static bool equal(const void* left, const void* right) { return Equal(of(left), of(right)); }

    static constexpr PolicyOperations operations{initialize, copy,          finalize,       equal,
                                                 no_fault,   not_in_engine, not_from_engine};
};

using EntityFactoryPolicy =
    PortPolicy<DDS_EntityFactoryQosPolicy, DDS_EntityFactoryQosPolicy{DDS_BOOLEAN_TRUE},
               [](const DDS_EntityFactoryQosPolicy& left, const DDS_EntityFactoryQosPolicy& right) {
                   return (left.autoenable_created_entities != 0) ==
                          (right.autoenable_created_entities != 0);
               }>;

using WireProtocolPolicy =
    PortPolicy<DDS_WireProtocolQosPolicy, DDS_WireProtocolQosPolicy{},
               [](const DDS_WireProtocolQosPolicy& left, const DDS_WireProtocolQosPolicy& right) {
                   return left.rtps_host_id == right.rtps_host_id &&
                          left.rtps_app_id == right.rtps_app_id &&
                          left.rtps_instance_id == right.rtps_instance_id;
               }>;

}  // namespace

constinit const PolicyOperations user_data_operations =
    OctetsPolicy<DDS_UserDataQosPolicy, &engine::Qos::user_data>::operations;
constinit const PolicyOperations topic_data_operations =
    OctetsPolicy<DDS_TopicDataQosPolicy, &engine::Qos::topic_data>::operations;
constinit const PolicyOperations group_data_operations =
    OctetsPolicy<DDS_GroupDataQosPolicy, &engine::Qos::group_data>::operations;
constinit const PolicyOperations partition_operations = PartitionPolicy::operations;
constinit const PolicyOperations entity_name_operations = EntityNamePolicy::operations;
constinit const PolicyOperations property_operations = PropertyPolicy::operations;
constinit const PolicyOperations entity_factory_operations = EntityFactoryPolicy::operations;
constinit const PolicyOperations wire_protocol_operations = WireProtocolPolicy::operations;

}  // namespace pexa::dds
