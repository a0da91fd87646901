#include "tools/configuration/element_check.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "tools/configuration/value_remark.hpp"
#include "xml/vocabulary/option_descriptions.hpp"

namespace orvane::tools {
namespace {

using xml::OptionDescription;

constexpr std::string_view cpu_name = "element";

template <typename Descriptions>
const OptionDescription* find(const Descriptions& descriptions, std::string_view name) {
    const auto is_element = [&](const OptionDescription& each) {
        return each.has_element() && each.name == name;
    };
    const auto found = std::find_if(descriptions.begin(), descriptions.end(), is_element);
    return found != descriptions.end() ? &*found : nullptr;
}

/// The option of a child of `orvane`, of `thread` or of `cpu_list`, or NULL.
const OptionDescription* option_of(std::string_view name) {
    const OptionDescription* option = find(xml::option_descriptions, name);
    if (option == nullptr) {
        option = find(xml::thread_descriptions, name == cpu_name ? "cpu_list" : name);
    }
    return option;
}

template <typename Descriptions>
std::string names_of(const Descriptions& descriptions) {
    std::string names;
    for (const OptionDescription& each : descriptions) {
        if (each.has_element()) {
            names += (names.empty() ? "" : ", ") + std::string(each.name);
        }
    }
    return names;
}

/// The names of the elements that may stand inside an element; empty for an element with a value.
std::string children_of(std::string_view name) {
    if (name == "orvane") {
        return names_of(xml::option_descriptions);
    }
    if (name == cpu_name) {
        return "";
    }
    const OptionDescription* option = option_of(name);
    if (option == nullptr) {
        return "";
    }
    return option->type == xml::ValueType::ThreadSettings ? names_of(xml::thread_descriptions)
           : option->is_list()                            ? std::string(cpu_name)
                                                          : "";
}

/// What the library has refused since the list was emptied.
std::vector<std::string>& refusals() {
    static std::vector<std::string> texts;
    return texts;
}

void keep_refusal(const char* message, const char* /*function_name*/, DDS_Long /*line*/) {
    refusals().emplace_back(message);
}

bool is_of_namespace(std::string_view attribute) {
    return attribute == "xmlns" || attribute.find(':') != std::string_view::npos;
}

QEL_KX_XMLConfig& config_of(DDS_XMLObject* object) {
    return *reinterpret_cast<QEL_KX_XMLConfig*>(object);
}

}  // namespace

DDS_XMLExtensionClass* ElementCheck::make_class() {
    user_data_ = {{keep_refusal}, this};
    return DDS_XMLExtensionClass_new("orvane", &user_data_, nullptr, nullptr, on_start, on_end,
                                     QEL_KX_XMLConfig_new, QEL_KX_XMLConfig_delete,
                                     QEL_KX_XMLConfig_save);
}

ElementCheck& ElementCheck::of(DDS_XMLObject* object) {
    void* user_data = DDS_XMLExtensionClass_get_user_data(object->extensionClass);
    return *static_cast<UserData*>(user_data)->check;
}

void ElementCheck::on_start(DDS_XMLObject* object, const char* tag_name,
                            const char* const* attributes, DDS_XMLContext* context) {
    of(object).start(config_of(object), tag_name, attributes, context);
}

void ElementCheck::on_end(DDS_XMLObject* object, const char* tag_name, const char* text,
                          DDS_XMLContext* context) {
    of(object).end(config_of(object), tag_name, text, context);
}

void ElementCheck::start(QEL_KX_XMLConfig& config, const std::string& name,
                         const char* const* attributes, DDS_XMLContext* context) {
    line_ = DDS_XMLContext_get_current_line_number(context);
    check_attributes(name, attributes);
    if (open_.empty()) {
        start_orvane();
    } else if (open_.size() == 1) {
        // A refused level stays open, and the start of a second level would change nothing.
        config.currentElement = QEL_KX_XML_ELEMENT_NONE;
    }
    const DDS_UnsignedLong before = config.currentElement;
    QEL_KX_XMLConfig_onStartElement(&config.object, name.c_str(), attributes, context);
    if (!open_.empty()) {
        check_place(name, before, config.currentElement);
    }
    open_.push_back(name);
}

void ElementCheck::end(QEL_KX_XMLConfig& config, const std::string& name, const std::string& text,
                       DDS_XMLContext* context) {
    line_ = DDS_XMLContext_get_current_line_number(context);
    open_.pop_back();
    refusals().clear();
    const DDS_UnsignedLong before = config.currentElement;
    QEL_KX_XMLConfig_onEndElement(&config.object, name.c_str(), text.c_str(), context);
    const OptionDescription* option = option_of(name);
    if (option != nullptr && !refusals().empty()) {
        // What is found here is all that is to be said.
        context->error = 0;
        error(name, fmt::format("{}: found {}, expected {}", fmt::join(refusals(), ", "),
                                quoted(text), expected_text(*option)));
    } else if (const std::string children = children_of(name); !children.empty()) {
        check_text(name, text);
    } else if (option != nullptr && option->number == before) {
        if (const auto remark = value_remark(*option, text, *config.options)) {
            warn(name, *remark);
        }
    }
    if (open_.empty()) {
        end_orvane();
    }
}

void ElementCheck::start_orvane() {
    lines_ = {};
    if (++count_ == 1) {
        first_orvane_line_ = line_;
    } else {
        warn("orvane", fmt::format("has no effect, as the element of line {} counts, expected one "
                                   "element in a file",
                                   first_orvane_line_));
    }
}

void ElementCheck::end_orvane() {
    if (count_ != 1) {
        return;
    }
    first_lines_ = lines_;
    if (lines_[QEL_KX_XML_ELEMENT_ENABLED] == 0) {
        line_ = first_orvane_line_;
        warn("orvane", "starts no logger, expected an element enabled with true or false");
    }
}

void ElementCheck::check_attributes(const std::string& name, const char* const* attributes) {
    for (; *attributes != nullptr; attributes += 2) {
        if (!is_of_namespace(*attributes)) {
            warn(name, fmt::format("the attribute {} has no effect, expected none", *attributes));
        }
    }
}

void ElementCheck::check_unknown(const std::string& name) {
    const std::string& parent = open_.back();
    const std::string children = children_of(parent);
    if (!children.empty()) {
        error(name, "unknown element without effect, expected " + children);
    } else if (option_of(parent) != nullptr) {
        error(name, fmt::format("element without effect, expected nothing but text in {}", parent));
    }
}

/// @param before, after the element that is open for the library
void ElementCheck::check_place(const std::string& name, DDS_UnsignedLong before,
                               DDS_UnsignedLong after) {
    const OptionDescription* option = option_of(name);
    if (option == nullptr) {
        check_unknown(name);
        return;
    }
    const bool is_cpu = name == cpu_name;
    const bool is_taken = after == option->number;
    const bool is_option = find(xml::option_descriptions, name) != nullptr;
    const char* place = is_option ? "orvane" : is_cpu ? "cpu_list" : "thread";
    const std::size_t depth = is_option ? 1 : is_cpu ? 3 : 2;
    if (open_.size() != depth || open_.back() != place) {
        error(name, fmt::format("in the wrong place, and {}, expected directly inside {}",
                                is_taken ? "has an effect nevertheless" : "without effect", place));
    } else if (!is_taken) {
        error(name, "without effect, because an element in the wrong place stands before it");
    }
    if (is_taken && !is_cpu && before != after) {
        check_repetition(name, after);
    }
}

void ElementCheck::check_repetition(const std::string& name, DDS_UnsignedLong element) {
    const int earlier = std::exchange(lines_[element], line_);
    if (earlier == 0 || element == QEL_KX_XML_ELEMENT_THREAD) {
        return;
    }
    if (element == QEL_KX_XML_ELEMENT_CPU_LIST) {
        warn(name, fmt::format("adds to the list of line {}, expected one list", earlier));
    } else {
        warn(name, fmt::format("replaces the value of line {}, expected one value", earlier));
    }
}

void ElementCheck::check_text(const std::string& name, const std::string& text) {
    if (!text.empty()) {
        warn(name, fmt::format("the text {} has no effect, expected nothing but elements: {}",
                               quoted(text), children_of(name)));
    }
}

void ElementCheck::error(const std::string& element, std::string text) {
    findings_.add({Severity::error, line_, element, std::move(text)});
}

void ElementCheck::warn(const std::string& element, std::string text) {
    findings_.add({Severity::warning, line_, element, std::move(text)});
}

}  // namespace orvane::tools
