#include "platform/dds/profiles/values.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <new>

#include "pexa/domain.h"
#include "pexa/string.h"
#include "platform/dds/interface/standard_sequences.hpp"
#include "platform/dds/interface/string_list.hpp"
#include "platform/dds/qos/duration.hpp"
#include "platform/dds/xml/truth_value.hpp"
#include "platform/dds/xml/white_space.hpp"

namespace pexa::dds {
namespace {

constexpr std::string_view prefix = "DDS_";

std::string_view without_prefix(std::string_view text) {
    return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

template <typename Number>
std::optional<Number> to_number(std::string_view text) {
    const char* const end = text.data() + text.size();
    std::from_chars_result result{};
    Number number{};
    if (text.starts_with("0x") || text.starts_with("0X")) {
        // From 0x80000000 on, the bits of a negative number.
        DDS_UnsignedLong bits = 0;
        result = std::from_chars(text.data() + 2, end, bits, 16);
        number = static_cast<Number>(bits);
    } else {
        result = std::from_chars(text.data(), end, number);
    }
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

/// @return whether the list is short enough, else after a fault.
bool is_within_limit(xml::Parser& faults, const Element& list) {
    std::size_t count = 0;
    for (const Element* child = first_child(list); child != nullptr; child = next_sibling(*child)) {
        ++count;
    }
    if (count <= DDS_QOS_PROFILE_MAX_LIST_LENGTH) {
        return true;
    }
    add_fault(faults, list,
              "expected at most " + std::to_string(DDS_QOS_PROFILE_MAX_LIST_LENGTH) + " elements");
    return false;
}

void require(bool success) {
    if (!success) {
        throw std::bad_alloc();
    }
}

DDS_Long read_seconds(xml::Parser& faults, const Element& element) {
    const std::string_view text = without_prefix(text_of(faults, element));
    if (text == "DURATION_INFINITE_SEC" || text == "DURATION_INFINITY") {
        return DDS_DURATION_INFINITE_SEC;
    }
    const auto number = to_number<DDS_Long>(text);
    if (number && *number >= 0) {
        return *number;
    }
    add_fault(faults, element,
              "expected a number from 0 to 2147483647, DURATION_INFINITE_SEC or DURATION_INFINITY");
    return 0;
}

DDS_UnsignedLong read_nanoseconds(xml::Parser& faults, const Element& element) {
    const std::string_view text = without_prefix(text_of(faults, element));
    if (text == "DURATION_INFINITE_NSEC" || text == "DURATION_INFINITY") {
        return DDS_DURATION_INFINITE_NSEC;
    }
    const auto number = to_number<DDS_UnsignedLong>(text);
    if (number && (*number < nanoseconds_per_second || *number == DDS_DURATION_INFINITE_NSEC)) {
        return *number;
    }
    add_fault(faults, element,
              "expected a number from 0 to 999999999, DURATION_INFINITE_NSEC or DURATION_INFINITY");
    return 0;
}

constexpr int base64_value(char letter) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::size_t place = alphabet.find(letter);
    return place != std::string_view::npos ? static_cast<int>(place) : -1;
}

/// @return nothing when the text is not base64. White space does not count.
std::optional<std::vector<DDS_Octet>> decode_base64(std::string_view text) {
    std::vector<DDS_Octet> octets;
    unsigned bits = 0;
    std::size_t digits = 0;
    std::size_t padding = 0;
    for (const char letter : text) {
        if (xml::white_space.find(letter) != std::string_view::npos) {
            continue;
        }
        ++digits;
        padding += letter == '=' ? 1 : 0;
        const int value = letter == '=' ? 0 : base64_value(letter);
        if (value < 0 || (padding > 0 && letter != '=')) {
            return std::nullopt;
        }
        bits = (bits << 6U) | static_cast<unsigned>(value);
        if (digits % 4 == 0) {
            octets.push_back(static_cast<DDS_Octet>(bits >> 16U));
            octets.push_back(static_cast<DDS_Octet>(bits >> 8U));
            octets.push_back(static_cast<DDS_Octet>(bits));
        }
    }
    if (digits % 4 != 0 || padding > 2) {
        return std::nullopt;
    }
    octets.resize(octets.size() - padding);
    return octets;
}

/// @return nothing when the text is not a list of octets, in decimal or hexadecimal, with commas.
std::optional<std::vector<DDS_Octet>> decode_octet_list(std::string_view text) {
    std::vector<DDS_Octet> octets;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find(',');
        const std::string_view number = xml::trimmed(text.substr(0, end));
        const auto octet = to_number<DDS_Long>(number);
        // Four digits are base64.
        const bool is_short = number.size() <= (number.find_first_of("xX") == 1 ? 4 : 3);
        if (!is_short || !octet || *octet < 0 || *octet > 255) {
            return std::nullopt;
        }
        octets.push_back(static_cast<DDS_Octet>(*octet));
        text.remove_prefix(end != std::string_view::npos ? end + 1 : 0);
    }
    return octets;
}

/// Adds the property of that name if there is none. @return NULL without memory
DDS_Property_t* find_or_add(DDS_PropertySeq& properties, const char* name) {
    const DDS_Long length = DDS_PropertySeq_get_length(&properties);
    for (DDS_Long i = 0; i < length; ++i) {
        DDS_Property_t* known = DDS_PropertySeq_get_reference(&properties, i);
        if (view_of(known->name) == view_of(name)) {
            return known;
        }
    }
    if (DDS_PropertySeq_ensure_length(&properties, length + 1, length + 1) == 0) {
        return nullptr;
    }
    DDS_Property_t* added = DDS_PropertySeq_get_reference(&properties, length);
    return DDS_String_replace(&added->name, name) != nullptr ? added : nullptr;
}

bool set_property(DDS_PropertySeq& properties, const char* name, const char* value) {
    DDS_Property_t* property = find_or_add(properties, name);
    return property != nullptr && DDS_String_replace(&property->value, value) != nullptr;
}

void read_enumerator(xml::Parser& faults, const Element& element, const Enumeration& enumeration,
                     void* value) {
    const std::string_view text = without_prefix(text_of(faults, element));
    std::string message = "expected";
    for (std::size_t i = 0; i < enumeration.names.size(); ++i) {
        const std::string_view name = without_prefix(enumeration.names[i]);
        if (text == name || text == name.substr(0, name.size() - enumeration.suffix.size())) {
            // Enumerations of the C interface have the size of int.
            const auto number = static_cast<int>(i);
            std::memcpy(value, &number, sizeof number);
            return;
        }
        message.append(" ").append(name);
    }
    add_fault(faults, element, message);
}

void read_boolean(xml::Parser& faults, const Element& element, DDS_Boolean& value) {
    if (const auto read = xml::to_truth_value(text_of(faults, element))) {
        value = *read ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    } else {
        add_fault(faults, element, xml::truth_value_expected);
    }
}

void read_number(xml::Parser& faults, const Element& element, DDS_Long& value) {
    if (const auto number = to_number<DDS_Long>(text_of(faults, element))) {
        value = *number;
    } else {
        add_fault(faults, element, "expected a number from -2147483648 to 2147483647");
    }
}

void read_limit(xml::Parser& faults, const Element& element, DDS_Long& value) {
    const std::string_view text = text_of(faults, element);
    const auto number = to_number<DDS_Long>(text);
    if (without_prefix(text) == "LENGTH_UNLIMITED") {
        value = DDS_LENGTH_UNLIMITED;
    } else if (number && (*number > 0 || *number == DDS_LENGTH_UNLIMITED)) {
        value = *number;
    } else {
        add_fault(faults, element, "expected a number from 1 to 2147483647 or LENGTH_UNLIMITED");
    }
}

void read_duration(xml::Parser& faults, const Element& element, DDS_Duration_t& value) {
    static constexpr std::array<std::string_view, 2> names{"sec", "nanosec"};
    check_attributes(faults, element);
    if (first_child(element) == nullptr) {
        if (without_prefix(element.text) == "DURATION_INFINITY") {
            value = DDS_DURATION_INFINITE;
        } else {
            add_fault(faults, element, "expected sec, nanosec or DURATION_INFINITY");
        }
        return;
    }
    value = {0, 0};
    for_each_child(faults, element, names, Repetition::refused,
                   [&](const Element& child, std::size_t place) {
                       if (place == 0) {
                           value.sec = read_seconds(faults, child);
                       } else {
                           value.nanosec = read_nanoseconds(faults, child);
                       }
                   });
    if (value.sec == DDS_DURATION_INFINITE_SEC) {
        value = DDS_DURATION_INFINITE;
    } else if (value.nanosec == DDS_DURATION_INFINITE_NSEC) {
        add_fault(faults, element, "expected sec to be infinite too");
    }
}

void read_string(xml::Parser& faults, const Element& element, char*& value) {
    require(DDS_String_replace(&value, text_of(faults, element).c_str()) != nullptr);
}

void read_octets(xml::Parser& faults, const Element& element, DDS_OctetSeq& value) {
    const std::string& text = text_of(faults, element);
    auto octets = std::string_view(element.tagName).ends_with(base64_suffix)
                      ? std::nullopt
                      : decode_octet_list(text);
    if (!octets) {
        octets = decode_base64(text);
    }
    if (!octets) {
        add_fault(faults, element, "expected bytes in base64, or as numbers with commas between");
        return;
    }
    const auto count = static_cast<DDS_Long>(octets->size());
    require(DDS_OctetSeq_ensure_length(&value, count, count) != 0);
    std::copy(octets->begin(), octets->end(), DDS_OctetSeq_get_contiguous_buffer(&value));
}

void read_strings(xml::Parser& faults, const Element& element, DDS_StringSeq& value) {
    static constexpr std::array<std::string_view, 1> names{"element"};
    check_attributes(faults, element);
    if (!is_within_limit(faults, element)) {
        return;
    }
    std::vector<std::string> texts;
    for_each_child(
        faults, element, names, Repetition::allowed,
        [&](const Element& child, std::size_t) { texts.push_back(text_of(faults, child)); });
    require(store_strings(texts, value) == Status::ok);
}

void read_properties(xml::Parser& faults, const Element& element, DDS_PropertySeq& value) {
    static constexpr std::array<std::string_view, 1> names{"element"};
    static constexpr std::array<std::string_view, 3> parts{"name", "value", "propagate"};
    check_attributes(faults, element);
    if (!is_within_limit(faults, element)) {
        return;
    }
    for_each_child(faults, element, names, Repetition::allowed,
                   [&](const Element& child, std::size_t) {
                       std::array<std::string, parts.size()> texts;
                       check_attributes(faults, child);
                       for_each_child(faults, child, parts, Repetition::refused,
                                      [&](const Element& part, std::size_t place) {
                                          texts[place] = text_of(faults, part);
                                      });
                       if (xml::to_truth_value(texts[2].empty() ? "false" : texts[2]) != false) {
                           add_fault(faults, child,
                                     "propagate: expected false: properties are not sent to other "
                                     "participants");
                       }
                       if (texts[0].empty()) {
                           add_fault(faults, child, "expected a property with a name");
                       }
                       require(set_property(value, texts[0].c_str(), texts[1].c_str()));
                   });
}

Status add_properties(DDS_PropertySeq& to, const DDS_PropertySeq& from) {
    for (DDS_Long i = 0; i < length_of(from); ++i) {
        const DDS_Property_t& property = element_of(from, i);
        if (!set_property(to, property.name, property.value)) {
            return Status::out_of_resources;
        }
    }
    return Status::ok;
}

}  // namespace

void read_value(xml::Parser& faults, const Element& element, const ValueType& type, void* value) {
    switch (type.kind) {
        case ValueKind::boolean:
            return read_boolean(faults, element, *static_cast<DDS_Boolean*>(value));
        case ValueKind::enumerator:
            return read_enumerator(faults, element, type.enumeration, value);
        case ValueKind::number:
            return read_number(faults, element, *static_cast<DDS_Long*>(value));
        case ValueKind::limit:
            return read_limit(faults, element, *static_cast<DDS_Long*>(value));
        case ValueKind::duration:
            return read_duration(faults, element, *static_cast<DDS_Duration_t*>(value));
        case ValueKind::string:
            return read_string(faults, element, *static_cast<char**>(value));
        case ValueKind::octets:
            return read_octets(faults, element, *static_cast<DDS_OctetSeq*>(value));
        case ValueKind::strings:
            return read_strings(faults, element, *static_cast<DDS_StringSeq*>(value));
        case ValueKind::properties:
            return read_properties(faults, element, *static_cast<DDS_PropertySeq*>(value));
    }
}

Status put_over(const ValueType& type, void* value, const void* from) {
    if (type.kind == ValueKind::properties) {
        return add_properties(*static_cast<DDS_PropertySeq*>(value),
                              *static_cast<const DDS_PropertySeq*>(from));
    }
    return type.copy(value, from);
}

}  // namespace pexa::dds
