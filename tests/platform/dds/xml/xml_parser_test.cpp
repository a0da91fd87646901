#include <gtest/gtest.h>

#include "tests/platform/dds/xml/xml_document.hpp"
#include "tests/support/failing_new.hpp"
#include "tests/support/heap_faults.hpp"
#include "tests/support/reports.hpp"

namespace {

using Errors = std::vector<std::string>;

std::string repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

TEST(XmlParser, MakesATreeInTheOrderOfTheDocument) {
    const XmlParserPtr parser = new_parser();
    ASSERT_EQ(DDS_RETCODE_OK, parse(parser,
                                    "<?xml version='1.0'?><dds><!-- c --><types><a/><b>t</b>"
                                    "</types><qos_library/></dds>"));
    EXPECT_EQ(0, DDS_XMLParser_has_failed(parser.get()));
    DDS_XMLObject* root = DDS_XMLParser_get_root(parser.get());
    EXPECT_EQ("dds(types(a b) qos_library)", outline(root));
    EXPECT_EQ(nullptr, DDS_XMLObject_get_parent(root));
    EXPECT_EQ(root, DDS_XMLObject_get_parent(DDS_XMLObject_get_first_child(root)));
}

TEST(XmlParser, AnElementInTheWrongPlaceIsAnErrorAndTheTreeIsThere) {
    constexpr const char* known =
        "types qos_library domain_library domain_participant_library application_library data";
    const struct {
        const char* document;
        std::string error;
        const char* tree;
    } cases[] = {
        {"<profiles>\n<dds/></profiles>", "1 profiles: expected dds as the root element", nullptr},
        {"<dds>\n<logger>\n<types/></logger>\n<types/></dds>",
         std::string("2 logger: unknown element, expected ") + known, "dds(logger(types) types)"},
    };
    for (const auto& row : cases) {
        const XmlParserPtr parser = new_parser();
        EXPECT_EQ(DDS_RETCODE_OK, parse(parser, row.document));
        EXPECT_EQ(1, DDS_XMLParser_has_failed(parser.get()));
        EXPECT_EQ(row.error, errors_of(parser).at(0));
        if (row.tree != nullptr) {
            EXPECT_EQ(row.tree, outline(DDS_XMLParser_get_root(parser.get())));
        }
    }
}

TEST(XmlParser, WhatIsNotADocumentOrTooLargeHasNoTree) {
    const std::string laughs =
        "<!DOCTYPE dds [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;'>]><dds>&b;</dds>";
    const std::string external = "<!DOCTYPE dds SYSTEM 'file:///etc/passwd'>\n<dds/>";
    const struct {
        std::string document;
        const char* error;
    } cases[] = {
        {"", "1 : not well-formed: no element found"},
        {"<dds>\n<types>\n</dds>", "3 types: not well-formed: mismatched tag"},
        {"<dds>&unknown;</dds>", "1 dds: not well-formed: undefined entity"},
        {"<dds>\xff</dds>", "1 dds: not well-formed: not well-formed (invalid token)"},
        {std::string("<dds>\0</dds>", 12),
         "1 dds: not well-formed: not well-formed (invalid token)"},
        {"<dds/><dds/>", "1 : not well-formed: junk after document element"},
        {laughs, "1 : a document type declaration is not allowed here"},
        {external, "1 : a document type declaration is not allowed here"},
        {"<dds><types>" + repeated("<x>", DDS_XML_MAX_DEPTH) + "</types></dds>",
         "1 x: the elements are nested too deeply"},
        {"<dds><types>" + repeated("<x/>", DDS_XML_MAX_ELEMENTS) + "</types></dds>",
         "1 types: the document has too many elements"},
        {"<dds>" + std::string(DDS_XML_MAX_TEXT_LENGTH + 1, 'x') + "</dds>",
         "1 dds: the element's text is too long"},
        {"<dds><types x='" + std::string(DDS_XML_MAX_TEXT_LENGTH + 1, 'x') + "'/></dds>",
         "1 dds: an attribute is too long"},
        {"<dds>" + std::string(DDS_XML_MAX_DOCUMENT_SIZE, ' ') + "</dds>",
         "0 : the document is too long"},
    };
    Reports reports;
    for (const auto& row : cases) {
        const XmlParserPtr parser = new_parser();
        EXPECT_EQ(DDS_RETCODE_ERROR, parse(parser, row.document)) << row.error;
        EXPECT_EQ(Errors{row.error}, errors_of(parser));
        EXPECT_EQ(nullptr, DDS_XMLParser_get_root(parser.get()));
        EXPECT_EQ(1u, reports.take().size()) << row.error;
    }
    std::string attributes;
    for (int i = 0; i <= DDS_XML_MAX_ATTRIBUTES; ++i) {
        attributes += " a" + std::to_string(i) + "=''";
    }
    const XmlParserPtr parser = new_parser();
    EXPECT_EQ(DDS_RETCODE_ERROR, parse(parser, "<dds" + attributes + "/>"));
}

TEST(XmlParser, ADocumentAtTheLimitsIsAccepted) {
    const int inner_depth = DDS_XML_MAX_DEPTH - 2;
    const int others = DDS_XML_MAX_ELEMENTS - DDS_XML_MAX_DEPTH;
    const XmlParserPtr parser = new_parser();
    EXPECT_EQ(DDS_RETCODE_OK, parse(parser, "<dds><types>" + repeated("<x>", inner_depth) +
                                                std::string(DDS_XML_MAX_TEXT_LENGTH, 'x') +
                                                repeated("</x>", inner_depth) +
                                                repeated("<y/>", others) + "</types></dds>"));
    EXPECT_EQ(Errors{}, errors_of(parser));
}

TEST(XmlParser, ErrorsNameTheFileAndThoseBeyondTheLimitAreCounted) {
    const XmlParserPtr parser = new_parser();
    const int count = DDS_XML_MAX_ERRORS + 5;
    Reports reports;
    EXPECT_EQ(DDS_RETCODE_OK, parse(parser, "<dds>" + repeated("<x/>", count) + "</dds>"));
    EXPECT_EQ(count, DDS_XMLParser_get_error_count(parser.get()));
    EXPECT_EQ(static_cast<std::size_t>(DDS_XML_MAX_ERRORS), errors_of(parser).size());
    const auto lines = reports.take();
    EXPECT_EQ(0u, lines.at(0).find("DDS_XMLParser_parse_string:text.xml:1: x: unknown element"));
    EXPECT_EQ("DDS_XMLParser_parse_string:text.xml: 5 more errors", lines.back());
}

TEST(XmlParser, AFileThatCannotBeReadIsOneError) {
    for (const char* name : {"no_such_file.xml", "/"}) {
        const XmlParserPtr parser = new_parser();
        EXPECT_EQ(DDS_RETCODE_ERROR, DDS_XMLParser_parse_file(parser.get(), name));
        EXPECT_EQ(Errors{"0 : the file cannot be read"}, errors_of(parser));
    }
}

TEST(XmlParser, ReadsOneDocumentOnly) {
    const XmlParserPtr parser = new_parser();
    EXPECT_EQ(DDS_RETCODE_ERROR, parse(parser, "<dds>"));
    EXPECT_EQ(DDS_RETCODE_PRECONDITION_NOT_MET, parse(parser, "<dds/>"));
    EXPECT_EQ(DDS_RETCODE_PRECONDITION_NOT_MET, DDS_XMLParser_parse_file(parser.get(), "x"));
}

TEST(XmlParser, WithoutMemoryThereIsNoTreeAndNothingStays) {
    const std::string document = "<dds><types a='1'>text<x/></types></dds>";
    heap_faults::sweep([&] {
        const XmlParserPtr parser = new_parser();
        const DDS_ReturnCode_t result = parse(parser, document);
        EXPECT_TRUE(result == DDS_RETCODE_OK || result == DDS_RETCODE_OUT_OF_RESOURCES);
        return result == DDS_RETCODE_OK;
    });
    const long before = heap_faults::live_blocks();
    int number = 0;
    DDS_ReturnCode_t result = DDS_RETCODE_OUT_OF_RESOURCES;
    while (result != DDS_RETCODE_OK && number < 100) {
        const XmlParserPtr parser = new_parser();
        failing_new::fail_allocation(++number);
        result = parse(parser, document);
        EXPECT_EQ(failing_new::was_out_of_reach(), result == DDS_RETCODE_OK);
        EXPECT_EQ(DDS_XMLParser_get_root(parser.get()) != nullptr, result == DDS_RETCODE_OK);
    }
    EXPECT_GT(number, 4);
    EXPECT_EQ(DDS_RETCODE_OK, result);
    EXPECT_EQ(before, heap_faults::live_blocks());
}

}  // namespace
