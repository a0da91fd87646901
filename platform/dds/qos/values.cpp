#include "platform/dds/qos/values.hpp"

#include <functional>

#include "pexa/string.h"
#include "platform/dds/interface/standard_sequences.hpp"
#include "platform/dds/interface/string_list.hpp"

namespace pexa::dds {
namespace {

Status status_of_memory(bool success) {
    return success ? Status::ok : Status::out_of_resources;
}

Status copy_string(void* value, const void* from) {
    char*& to = *static_cast<char**>(value);
    const char* source = *static_cast<char* const*>(from);
    if (source == nullptr) {
        DDS_String_free(to);
        to = nullptr;
        return Status::ok;
    }
    return status_of_memory(to == source || DDS_String_replace(&to, source) != nullptr);
}

/// The table of a sequence.
template <typename Sequence, Sequence* (*Copy)(Sequence*, const Sequence*), auto Finalize,
          auto EqualElements>
constexpr ValueType sequence_type(ValueKind kind) {
    return {kind,
            {},
            [](void* value, const void* from) {
                return status_of_memory(Copy(static_cast<Sequence*>(value),
                                             static_cast<const Sequence*>(from)) != nullptr);
            },
            [](void* value) { Finalize(static_cast<Sequence*>(value)); },
            [](const void* left, const void* right) {
                return equal_sequences(*static_cast<const Sequence*>(left),
                                       *static_cast<const Sequence*>(right), EqualElements);
            }};
}

bool equal_strings(const char* left, const char* right) {
    return view_of(left) == view_of(right);
}

bool equal_properties(const DDS_Property_t& left, const DDS_Property_t& right) {
    return equal_strings(left.name, right.name) && equal_strings(left.value, right.value);
}

}  // namespace

constinit const ValueType OwnedValue<char*>::type{
    ValueKind::string,
    {},
    copy_string,
    [](void* value) {
        DDS_String_free(*static_cast<char**>(value));
        *static_cast<char**>(value) = nullptr;
    },
    [](const void* left, const void* right) {
        return equal_strings(*static_cast<char* const*>(left), *static_cast<char* const*>(right));
    }};

void OwnedValue<char*>::to_engine(char* const& value, std::optional<std::string>& counterpart) {
    if (value != nullptr) {
        counterpart = value;
    }
}

Status OwnedValue<char*>::from_engine(const std::optional<std::string>& counterpart, char*& value) {
    return status_of_memory(!counterpart ||
                            DDS_String_replace(&value, counterpart->c_str()) != nullptr);
}

constinit const ValueType OwnedValue<DDS_OctetSeq>::type =
    sequence_type<DDS_OctetSeq, DDS_OctetSeq_copy, DDS_OctetSeq_finalize,
                  std::equal_to<DDS_Octet>{}>(ValueKind::octets);

void OwnedValue<DDS_OctetSeq>::to_engine(const DDS_OctetSeq& value,
                                         std::optional<engine::Bytes>& counterpart) {
    engine::Bytes bytes;
    bytes.reserve(static_cast<std::size_t>(length_of(value)));
    for (DDS_Long i = 0; i < length_of(value); ++i) {
        bytes.push_back(std::byte{element_of(value, i)});
    }
    counterpart = std::move(bytes);
}

Status OwnedValue<DDS_OctetSeq>::from_engine(const std::optional<engine::Bytes>& counterpart,
                                             DDS_OctetSeq& value) {
    if (!counterpart) {
        return Status::ok;
    }
    const auto length = static_cast<DDS_Long>(counterpart->size());
    if (DDS_OctetSeq_ensure_length(&value, length, length) == 0) {
        return Status::out_of_resources;
    }
    for (DDS_Long i = 0; i < length; ++i) {
        *DDS_OctetSeq_get_reference(&value, i) =
            std::to_integer<DDS_Octet>((*counterpart)[static_cast<std::size_t>(i)]);
    }
    return Status::ok;
}

constinit const ValueType OwnedValue<DDS_StringSeq>::type =
    sequence_type<DDS_StringSeq, DDS_StringSeq_copy, DDS_StringSeq_finalize, equal_strings>(
        ValueKind::strings);

void OwnedValue<DDS_StringSeq>::to_engine(const DDS_StringSeq& value,
                                          std::optional<Strings>& counterpart) {
    counterpart = to_strings(&value);
}

Status OwnedValue<DDS_StringSeq>::from_engine(const std::optional<Strings>& counterpart,
                                              DDS_StringSeq& value) {
    return counterpart ? store_strings(*counterpart, value) : Status::ok;
}

constinit const ValueType OwnedValue<DDS_PropertySeq>::type =
    sequence_type<DDS_PropertySeq, DDS_PropertySeq_copy, DDS_PropertySeq_finalize,
                  equal_properties>(ValueKind::properties);

QosFault OwnedValue<DDS_PropertySeq>::fault(const DDS_PropertySeq& value) {
    for (DDS_Long i = 0; i < length_of(value); ++i) {
        const std::string_view name = view_of(element_of(value, i).name);
        if (name.empty()) {
            return QosFault("has a property without name at place %d", i);
        }
        for (DDS_Long j = 0; j < i; ++j) {
            if (view_of(element_of(value, j).name) == name) {
                return QosFault("has two properties of the name %s", element_of(value, i).name);
            }
        }
    }
    return {};
}

void OwnedValue<DDS_PropertySeq>::to_engine(const DDS_PropertySeq& value, Pairs& counterpart) {
    Pairs pairs;
    pairs.reserve(static_cast<std::size_t>(length_of(value)));
    for (DDS_Long i = 0; i < length_of(value); ++i) {
        const DDS_Property_t& property = element_of(value, i);
        pairs.emplace_back(view_of(property.name), view_of(property.value));
    }
    counterpart = std::move(pairs);
}

Status OwnedValue<DDS_PropertySeq>::from_engine(const Pairs& counterpart, DDS_PropertySeq& value) {
    const auto length = static_cast<DDS_Long>(counterpart.size());
    if (DDS_PropertySeq_ensure_length(&value, length, length) == 0) {
        return Status::out_of_resources;
    }
    for (DDS_Long i = 0; i < length; ++i) {
        const auto& [name, text] = counterpart[static_cast<std::size_t>(i)];
        DDS_Property_t* property = DDS_PropertySeq_get_reference(&value, i);
        if (DDS_String_replace(&property->name, name.c_str()) == nullptr ||
            DDS_String_replace(&property->value, text.c_str()) == nullptr) {
            return Status::out_of_resources;
        }
    }
    return Status::ok;
}

}  // namespace pexa::dds
