#include <algorithm>
#include <vector>

#include "core/level_names.hpp"
#include "xml/documentation/sections.hpp"
#include "xml/option_table.hpp"
#include "xml/thread_setting_names.hpp"

namespace orvane::xml {
namespace {

constexpr const char* number_pattern = "[0-9]+|0[xX][0-9a-fA-F]+";

/// All spellings of a name: the part that a shorter spelling leaves out is optional.
std::string pattern_of(const SettingName& name) {
    std::vector<std::size_t> beginnings(name.beginnings.begin(), name.beginnings.end());
    std::sort(beginnings.begin(), beginnings.end());
    beginnings.erase(std::unique(beginnings.begin(), beginnings.end()), beginnings.end());
    const std::string longest = name.longest;
    std::string pattern;
    for (std::size_t i = 0; i + 1 < beginnings.size(); ++i) {
        const std::size_t length = beginnings[i + 1] - beginnings[i];
        pattern.insert(0, "(").append(longest, beginnings[i], length).append(")?");
    }
    return pattern + longest.substr(beginnings.back());
}

const SettingName& name_of(const SettingName& name) {
    return name;
}
template <typename Value>
const SettingName& name_of(const NamedSetting<Value>& setting) {
    return setting.name;
}

template <typename Names>
std::string pattern_of_any(const Names& names) {
    std::string pattern;
    for (const auto& name : names) {
        pattern += (pattern.empty() ? "" : "|") + pattern_of(name_of(name));
    }
    return pattern;
}

std::string pattern_of_levels() {
    std::string pattern;
    for (const core::LevelName& row : core::level_names) {
        pattern += std::string(row.configured) + "|";
    }
    return pattern + "[0-9]+";
}

std::string pattern_of_mask() {
    const std::string name = "(" + pattern_of_any(mask_bits) + "|" + pattern_of(no_mask_bits) + ")";
    return "(" + name + "( ?\\| ?" + name + ")*)?";
}

/// A type of the schema; a type without a pattern has children.
struct SchemaType {
    std::string name;
    std::string pattern;
};

SchemaType schema_type(ValueType type) {
    switch (type) {
        case ValueType::NoElement:
            break;
        case ValueType::TruthValue:
            return {"boolean", "[Tt][Rr][Uu][Ee]|[Yy][Ee][Ss]|1|[Ff][Aa][Ll][Ss][Ee]|[Nn][Oo]|0"};
        case ValueType::FilterLevel:
            return {"filter_level", pattern_of_levels()};
        case ValueType::PositiveNumber:
            return {"positive_number", "0*[1-9][0-9]*|0[xX]0*[1-9a-fA-F][0-9a-fA-F]*"};
        case ValueType::Mask:
            return {"mask", pattern_of_mask()};
        case ValueType::Priority:
            return {"priority", pattern_of_any(priorities) + "|[\\-+]?[0-9]+"};
        case ValueType::StackSize:
            return {"stack_size", pattern_of(default_stack_size) + "|" + number_pattern};
        case ValueType::CpuList:
            return {"numbers", ""};
        case ValueType::CpuRotation:
            return {"cpu_rotation", pattern_of_any(rotations)};
        case ValueType::ThreadSettings:
            return {"thread", ""};
    }
    return {};
}

std::string simple_type(const SchemaType& type) {
    return "    <xs:simpleType name=\"" + type.name +
           "\">\n"
           "        <xs:restriction base=\"xs:token\">\n"
           "            <xs:pattern value=\"" +
           type.pattern +
           "\"/>\n"
           "        </xs:restriction>\n"
           "    </xs:simpleType>\n";
}

/// The children may come in any order, each any number of times.
template <typename Options>
std::string children(const Options& options) {
    std::string text = "        <xs:choice minOccurs=\"0\" maxOccurs=\"unbounded\">\n";
    for (const auto& option : options) {
        if (option.description.has_element()) {
            text += std::string("            <xs:element name=\"") + option.description.name +
                    "\" type=\"" + schema_type(option.description.type).name + "\"/>\n";
        }
    }
    return text + "        </xs:choice>\n";
}

/// Adds the simple types of the options that are not there yet.
template <typename Options>
void add_simple_types(const Options& options, std::vector<SchemaType>& types) {
    for (const auto& option : options) {
        const SchemaType type = schema_type(option.description.type);
        const auto is_same = [&](const SchemaType& known) { return known.name == type.name; };
        if (!type.pattern.empty() && std::none_of(types.begin(), types.end(), is_same)) {
            types.push_back(type);
        }
    }
}

}  // namespace

std::string schema() {
    std::string text =
        "    <!-- The logger. The last of several children of the same name counts. -->\n"
        "    <xs:complexType name=\"orvane\">\n" +
        children(options()) +
        "        <xs:anyAttribute processContents=\"skip\"/>\n"
        "    </xs:complexType>\n"
        "    <xs:complexType name=\"thread\">\n" +
        children(thread_settings()) +
        "    </xs:complexType>\n"
        "    <xs:complexType name=\"numbers\">\n"
        "        <xs:sequence>\n"
        "            <xs:element name=\"element\" type=\"number\" minOccurs=\"0\" "
        "maxOccurs=\"unbounded\"/>\n"
        "        </xs:sequence>\n"
        "    </xs:complexType>\n";
    std::vector<SchemaType> types = {{"number", number_pattern}};
    add_simple_types(options(), types);
    add_simple_types(thread_settings(), types);
    for (const SchemaType& type : types) {
        text += simple_type(type);
    }
    return text;
}

}  // namespace orvane::xml
