/// @file elements.hpp
/// @brief Walking the elements of a profile document. An element or attribute out of place is a
/// fault.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/dds/xml/parser.hpp"

namespace pexa::dds {

/// The objects of a tree without extension classes.
using Element = xml::PlainObject;

inline const Element* first_child(const Element& element) {
    return static_cast<const Element*>(element.firstChild);
}
inline const Element* next_sibling(const Element& element) {
    return static_cast<const Element*>(element.nextSibling);
}

/// @return the fault with its place, FILE:LINE: ELEMENT: MESSAGE.
std::string text_of(const DDS_XMLError& fault);

/// Adds a fault about an element.
void add_fault(xml::Parser& faults, const Element& element, std::string_view message);
/// Adds a fault about an unknown name, with the names that are known.
void add_unknown(xml::Parser& faults, const Element& element, std::string_view what,
                 std::span<const std::string_view> names);

/// Checks an element's attributes. Those of XML namespaces may stand anywhere.
void check_attributes(xml::Parser& faults, const Element& element,
                      std::span<const std::string_view> names = {});

/// Checks that an element contains nothing but text. @return the text
const std::string& text_of(xml::Parser& faults, const Element& element);

/// How often an element may have children of the same name.
enum class Repetition { refused, allowed };

/// The names of an element's children, 64 at most, and a note of the names that have occurred.
class ExpectedChildren {
public:
    ExpectedChildren(std::span<const std::string_view> names, Repetition repetition)
        : names_(names), repetition_(repetition) {}

    /// Adds a fault when the child must not be there.
    /// @return the place of the child's name, or nothing after a fault
    std::optional<std::size_t> place_of(xml::Parser& faults, const Element& child);

private:
    std::span<const std::string_view> names_;
    Repetition repetition_;
    std::uint64_t seen_ = 0;
};

/// Checks that an element contains nothing but elements.
void check_no_text(xml::Parser& faults, const Element& element);

/// Calls @p visit with each child that has one of these names, and with the place of its name.
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
