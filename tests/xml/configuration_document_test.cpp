#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>

#include "tests/xml/parsed_config.hpp"
#include "xml/config_element.hpp"

namespace {

using orvane::test::as_xml;
using orvane::test::differences;
using orvane::test::ParsedConfig;
using orvane::test::with_orvane;

TEST(ConfigurationDocument, KnowsEveryElementWithAnExampleThatTheParserTakesAndItsDefault) {
    const std::regex row(R"(\| `([a-z_/]+)` \| `([^`]+)` \| (?:`([^`]+)`|none) \|.*)");
    std::ifstream document(ORVANE_SOURCE_DIR "/docs/configuration.md");
    std::set<std::string> documented;
    std::smatch cells;
    for (std::string line; std::getline(document, line);) {
        if (!std::regex_match(line, cells, row)) {
            continue;
        }
        SCOPED_TRACE(line);
        const std::string path = cells[1];
        // Markdown wants a bar in a table escaped.
        const std::string example =
            as_xml(path, std::regex_replace(cells[2].str(), std::regex(R"(\\\|)"), "|"));
        const ParsedConfig changed(with_orvane(example));
        EXPECT_FALSE(changed.has_failed());
        EXPECT_NE(differences(*changed.options()), "");
        if (cells[3].matched) {
            const ParsedConfig back(with_orvane(example + as_xml(path, cells[3])));
            EXPECT_FALSE(back.has_failed());
            EXPECT_EQ(differences(*back.options()), "");
        }
        for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
            end = path.find('/', begin);
            documented.insert(path.substr(begin, end - begin));
        }
    }
    std::set<std::string> known = {"element"};
    for (const orvane::xml::ChildElement& child : orvane::xml::child_elements()) {
        known.insert(child.tag_name);
    }
    EXPECT_EQ(documented, known);
}

}  // namespace
