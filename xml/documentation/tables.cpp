#include "xml/documentation/sections.hpp"
#include "xml/option_table.hpp"

namespace orvane::xml {
namespace {

/// A text as code in a cell, where Markdown wants a bar escaped.
std::string code(const std::string& text) {
    std::string cell = "`";
    for (const char letter : text) {
        cell += letter == '|' ? "\\|" : std::string(1, letter);
    }
    return cell + "`";
}

std::string default_of(const OptionDescription& option) {
    return option.by_default != nullptr ? code(option.by_default) : "none";
}

template <typename Record>
std::string rows_of_elements(std::span<const Option<Record>> options, const std::string& path) {
    std::string rows;
    for (const Option<Record>& option : options) {
        const OptionDescription& description = option.description;
        const std::string name = path + description.name;
        if (option.description.type == ValueType::ThreadSettings) {
            rows += rows_of_elements(thread_settings(), name + "/");
        } else if (option.description.has_element()) {
            rows += "| " + code(name + (option.description.is_list() ? "/element" : "")) + " | " +
                    code(description.example) + " | " + default_of(description) + " | " +
                    description.range + " | " + description.effect + " |\n";
        }
    }
    return rows;
}

}  // namespace

std::string table_of_elements() {
    return "| Element | Example | Default | Range | Effect |\n|---|---|---|---|---|\n" +
           rows_of_elements(options(), "");
}

std::string table_of_other_options() {
    std::string table = "| Option | Default | Range | Effect |\n|---|---|---|---|\n";
    for (const Option<QEL_KX_Options>& option : options()) {
        const OptionDescription& description = option.description;
        if (!option.description.has_element()) {
            table += "| " + code(description.name) + " | " + default_of(description) + " | " +
                     description.range + " | " + description.effect + " |\n";
        }
    }
    return table;
}

}  // namespace orvane::xml
