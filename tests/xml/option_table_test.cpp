#include "xml/option_table.hpp"

#include <string>

#include <gtest/gtest.h>

#include "tests/xml/parsed_config.hpp"

namespace {

using orvane::test::as_xml;
using orvane::test::differences;
using orvane::test::ParsedConfig;
using orvane::test::with_orvane;
using orvane::xml::Option;

/// Reads the example of each row, and then the default behind it.
template <typename Record>
void expect_examples(std::span<const Option<Record>> options, const std::string& path) {
    for (const Option<Record>& option : options) {
        const std::string name = path + option.description.name;
        if (option.type == orvane::xml::ValueType::ThreadSettings) {
            expect_examples(orvane::xml::thread_settings(), name + "/");
            continue;
        }
        if (!option.has_element()) {
            continue;
        }
        SCOPED_TRACE(name);
        const std::string element = name + (option.is_list() ? "/element" : "");
        const std::string example = as_xml(element, option.description.example);
        const ParsedConfig changed(with_orvane(example));
        EXPECT_FALSE(changed.has_failed());
        EXPECT_NE(differences(*changed.options()), "");
        if (option.description.by_default != nullptr) {
            const ParsedConfig back(
                with_orvane(example + as_xml(element, option.description.by_default)));
            EXPECT_FALSE(back.has_failed());
            EXPECT_EQ(differences(*back.options()), "");
        }
    }
}

TEST(OptionTable, HasExamplesThatTheParserTakesAndTheDefaults) {
    expect_examples(orvane::xml::options(), "");
}

}  // namespace
