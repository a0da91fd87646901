#include "platform/dds/profiles/elements.hpp"

#include <algorithm>

namespace pexa::dds {
namespace {

bool is_of_namespace(std::string_view attribute) {
    return attribute == "xmlns" || attribute.find(':') != std::string_view::npos;
}

}  // namespace

std::string text_of(const DDS_XMLError& fault) {
    return xml::text_of_fault(fault.fileName, fault.line, fault.tagName, fault.message);
}

void add_fault(xml::Parser& faults, const Element& element, std::string_view message) {
    faults.add_fault(element.line, element.tagName, message);
}

void add_unknown(xml::Parser& faults, const Element& element, std::string_view what,
                 std::span<const std::string_view> names) {
    std::string message = "unknown ";
    message.append(what).append(names.empty() ? ", expected none" : ", expected");
    for (const std::string_view name : names) {
        message.append(" ").append(name);
    }
    add_fault(faults, element, message);
}

void check_attributes(xml::Parser& faults, const Element& element,
                      std::span<const std::string_view> names) {
    for (const auto& [name, value] : element.attributes) {
        if (!is_of_namespace(name) && std::find(names.begin(), names.end(), name) == names.end()) {
            add_unknown(faults, element, "attribute " + name, names);
        }
    }
}

const std::string& text_of(xml::Parser& faults, const Element& element) {
    check_attributes(faults, element);
    if (const Element* child = first_child(element)) {
        add_fault(faults, *child, std::string("no element expected inside ") + element.tagName);
    }
    return element.text;
}

void check_no_text(xml::Parser& faults, const Element& element) {
    if (!element.text.empty()) {
        add_fault(faults, element, "no text expected beside the elements");
    }
}

std::optional<std::size_t> ExpectedChildren::place_of(xml::Parser& faults, const Element& child) {
    const auto found = std::find(names_.begin(), names_.end(), child.tagName);
    if (found == names_.end()) {
        add_unknown(faults, child, "element", names_);
        return std::nullopt;
    }
    const auto place = static_cast<std::size_t>(found - names_.begin());
    const std::uint64_t bit = std::uint64_t{1} << place;
    if (repetition_ == Repetition::refused && (seen_ & bit) != 0) {
        add_fault(faults, child, std::string("expected once only inside ") + child.parent->tagName);
        return std::nullopt;
    }
    seen_ |= bit;
    return place;
}

}  // namespace pexa::dds
