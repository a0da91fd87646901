/// @file profile_elements.hpp
/// @brief Walking the elements of a profile document: what does not belong there is a fault.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/dds/xml/parser.hpp"

namespace pexa::dds {

/// The objects of a tree without extension classes.
using Element = xml::PlainObject;

[[nodiscard]] inline const Element* first_child(const Element& element) {
    return static_cast<const Element*>(element.firstChild);
}
[[nodiscard]] inline const Element* next_sibling(const Element& element) {
    return static_cast<const Element*>(element.nextSibling);
}

/// Adds a fault about an element.
void add_fault(xml::Parser& faults, const Element& element, std::string_view message);
/// Adds that a name is unknown, and which ones are not.
void add_unknown(xml::Parser& faults, const Element& element, std::string_view what,
                 std::span<const std::string_view> names);

/// Checks an element's attributes. Those of XML namespaces may stand anywhere.
void check_attributes(xml::Parser& faults, const Element& element,
                      std::span<const std::string_view> names = {});

/// Checks that an element contains nothing but text, and returns that.
[[nodiscard]] const std::string& text_of(xml::Parser& faults, const Element& element);

/// How often an element may have children of the same name.
enum class Repetition { refused, allowed };

/// The children of these names that an element may have, 64 at most, and which it had so far.
class ExpectedChildren {
public:
    ExpectedChildren(std::span<const std::string_view> names, Repetition repetition)
        : names_(names), repetition_(repetition) {}

    /// @return the place of a child's name, nothing after a fault for one that must not be there.
    [[nodiscard]] std::optional<std::size_t> place_of(xml::Parser& faults, const Element& child);

private:
    std::span<const std::string_view> names_;
    Repetition repetition_;
    std::uint64_t seen_ = 0;
};

/// Checks that an element contains nothing but elements.
void check_no_text(xml::Parser& faults, const Element& element);

/// Calls @p visit with each child of one of these names and the name's place.
template <typename Visit>
void for_each_child(xml::Parser& faults, const Element& element,
                    std::span<const std::string_view> names, Repetition repetition, Visit visit) {
    check_no_text(faults, element);
    ExpectedChildren expected(names, repetition);
    for (const Element* child = first_child(element); child != nullptr;
         child = next_sibling(*child)) {
        if (const auto place = expected.place_of(faults, *child)) {
            visit(*child, *place);
        }
    }
}

}  // namespace pexa::dds
