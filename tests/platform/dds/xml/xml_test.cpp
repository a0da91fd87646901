#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "pexa/string.h"
#include "pexa/xml.h"
#include "tests/support/faults.hpp"
#include "tests/support/text.hpp"

namespace {

using orvane::test::repeated;
using orvane::test::Reports;
using Lines = std::vector<std::string>;

const std::string long_text(2000, 'x');

void save_everything(QELXMLSaveContext* context) {
    DDS_Long numbers[] = {0, -2};
    DDS_LongSeq list{};
    DDS_XMLHelper_save_tag("recorder", DDS_XML_TAG_OPEN, context);
    DDS_XMLHelper_save_long("number", -7, context);
    DDS_XMLHelper_save_string("text", "a<b & \"c\"", context);
    DDS_XMLHelper_save_string("nothing", nullptr, context);
    DDS_XMLHelper_save_long_seq("empty", &list, context);
    DDS_LongSeq_loan_contiguous(&list, numbers, 2, 2);
    DDS_XMLHelper_save_long_seq("list", &list, context);
    DDS_LongSeq_unloan(&list);
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<free>%s%d</free>\n", long_text.c_str(), 1);
    DDS_XMLHelper_save_tag("recorder", DDS_XML_TAG_CLOSE, context);
}

/// An object of the class for elements called `recorder`, which notes its calls. An element with
/// the attribute `refused` gets no object, one with the attribute `unwritable` cannot be saved.
struct Recorder {
    DDS_XMLObject base;
    Lines* calls;
    std::string attribute;

    static Recorder& of(DDS_XMLObject* object) { return *reinterpret_cast<Recorder*>(object); }

    static DDS_XMLObject* make(DDS_XMLExtensionClass* extension_class, DDS_XMLObject* parent,
                               const char* const* attributes, DDS_XMLContext* context) {
        EXPECT_EQ(DDS_XMLContext_get_current_line_number(context), context->line);
        auto* calls = static_cast<Lines*>(DDS_XMLExtensionClass_get_user_data(extension_class));
        const std::string attribute =
            attributes[0] != nullptr ? attributes[0] + std::string(attributes[1]) : "";
        calls->push_back("new in " + std::string(DDS_XMLObject_get_tag_name(parent)) + attribute);
        auto recorder = std::make_unique<Recorder>(Recorder{{}, calls, attribute});
        if (attribute == "refused" || DDS_XMLObject_initialize(&recorder->base, extension_class,
                                                               parent, "recorder", 0) == 0) {
            return nullptr;
        }
        return &recorder.release()->base;
    }
    static void end(DDS_XMLObject* object) {
        of(object).calls->push_back("delete");
        DDS_XMLObject_finalize(object);
        delete &of(object);
    }
    static void on_start(DDS_XMLObject* object, const char* tag_name,
                         const char* const* /*attributes*/, DDS_XMLContext* context) {
        EXPECT_STREQ(tag_name, context->tagName);
        of(object).calls->push_back(std::string("start ") + tag_name);
    }
    /// The text of `flag` is read as a truth value. `report` and `mark` make a fault.
    static void on_end(DDS_XMLObject* object, const char* tag_name, const char* text,
                       DDS_XMLContext* context) {
        EXPECT_EQ(context->error, 0);
        std::string call = std::string("end ") + tag_name + " '" + text + "'";
        if (std::string_view("flag") == tag_name) {
            DDS_Boolean flag = 2;
            DDS_XMLHelper_str_to_boolean(&flag, text, context);
            call += " " + std::to_string(flag);
        } else if (std::string_view("report") == tag_name) {
            DDS_XMLParser_report_error(text, "on_end", context->line);
            context->error = 1;
        } else if (std::string_view("mark") == tag_name) {
            context->error = 1;
        }
        of(object).calls->push_back(call);
    }
    static void save(DDS_XMLObject* object, QELXMLSaveContext* context, void* /*reserved*/) {
        save_everything(context);
        context->error = of(object).attribute == "unwritable" ? 1 : context->error;
    }
};

/// A text that is parsed with the class for elements called `recorder`.
class Document {
public:
    explicit Document(const std::string& text) {
        DDS_XMLParser_register_extension_class(parser, recorder);
        result = DDS_XMLParser_parse_string(parser, "text.xml", text.data(), text.size());
    }
    ~Document() {
        DDS_XMLParser_delete(parser);
        DDS_XMLExtensionClass_delete(recorder);
    }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    DDS_XMLObject* root() const { return DDS_XMLParser_get_root(parser); }
    /// @return the names: "name(child child(grandchild))", empty without a tree.
    std::string tree() const { return root() != nullptr ? outline(root()) : ""; }
    /// @return "line tag: message" of each error
    Lines errors() const {
        Lines lines;
        DDS_XMLError error;
        for (DDS_Long i = 0; DDS_XMLParser_get_error(parser, i, &error) == DDS_RETCODE_OK; ++i) {
            lines.push_back(std::to_string(error.line) + " " + error.tagName + ": " +
                            error.message);
        }
        return lines;
    }

    Lines calls;
    DDS_XMLExtensionClass* recorder =
        DDS_XMLExtensionClass_new("recorder", &calls, nullptr, nullptr, Recorder::on_start,
                                  Recorder::on_end, Recorder::make, Recorder::end, Recorder::save);
    DDS_XMLParser* parser = DDS_XMLParser_new();
    DDS_ReturnCode_t result;

private:
    static std::string outline(const DDS_XMLObject* object) {
        std::string children;
        for (const DDS_XMLObject* child = DDS_XMLObject_get_first_child(object); child != nullptr;
             child = DDS_XMLObject_get_next_sibling(child)) {
            EXPECT_EQ(DDS_XMLObject_get_parent(child), object);
            children += (children.empty() ? "" : " ") + outline(child);
        }
        const std::string name = DDS_XMLObject_get_tag_name(object);
        return children.empty() ? name : name + "(" + children + ")";
    }
};

TEST(XmlCallbacks, AClassGetsItsElementAndAllInside) {
    const Document document(
        "<dds><recorder a='1'>\n <x> &lt;t&gt;\n</x> <recorder/> own\n</recorder>"
        "<data><deep><recorder/></deep></data></dds>");
    EXPECT_EQ(document.errors(), Lines{});
    EXPECT_EQ(document.calls, (Lines{"new in ddsa1", "start recorder", "start x", "end x '<t>'",
                                     "start recorder", "end recorder ''", "end recorder 'own'",
                                     "new in deep", "start recorder", "end recorder ''"}));
    EXPECT_EQ(document.tree(), "dds(recorder data(deep(recorder)))");
    EXPECT_EQ(DDS_XMLObject_get_parent(document.root()), nullptr);
}

TEST(XmlCallbacks, ATextThatAClassRefusesIsAnErrorOnItsLineAndParsingGoesOn) {
    const Document document(
        "<dds>\n<recorder>\n<report>told</report>\n<mark/>\n<flag> YES "
        "</flag><flag>False</flag><flag>1</flag>"
        "<flag>no</flag>\n<flag>maybe</flag>\n"
        "</recorder>\n<recorder refused=''>\n<inner><recorder/></inner></recorder><types/></dds>");
    EXPECT_EQ(document.errors(),
              (Lines{"3 report: told", "4 mark: the content of the element is not accepted",
                     "6 flag: found \"maybe\", expected true, false, yes, no, 1 or 0",
                     "8 recorder: no object could be made of the element"}));
    for (const char* call : {"end flag 'YES' 1", "end flag 'False' 0", "end flag '1' 1",
                             "end flag 'no' 0", "end flag 'maybe' 2"}) {
        EXPECT_EQ(std::count(document.calls.begin(), document.calls.end(), call), 1) << call;
    }
    EXPECT_EQ(document.tree(), "dds(recorder types)");
}

TEST(XmlParser, ReadsOneDocumentWithTheClassesRegisteredOnceBefore) {
    const Document used("<dds><recorder/><recorder><x>");
    EXPECT_EQ(used.result, DDS_RETCODE_ERROR);
    EXPECT_EQ(std::count(used.calls.begin(), used.calls.end(), "delete"), 2);
    EXPECT_EQ(DDS_XMLParser_parse_string(used.parser, "again", "<dds/>", 6),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    DDS_XMLParser* fresh = DDS_XMLParser_new();
    for (const auto& [parser, result] :
         {std::pair(fresh, DDS_RETCODE_OK), std::pair(fresh, DDS_RETCODE_PRECONDITION_NOT_MET),
          std::pair(used.parser, DDS_RETCODE_PRECONDITION_NOT_MET)}) {
        EXPECT_EQ(DDS_XMLParser_register_extension_class(parser, used.recorder), result);
    }
    DDS_XMLParser_delete(fresh);
}

TEST(XmlParser, HasATreeOfMisplacedElementsButNoneOfWhatIsNoDocumentOrTooLarge) {
    std::string attributes;
    for (int i = 0; i <= DDS_XML_MAX_ATTRIBUTES; ++i) {
        attributes += " a" + std::to_string(i) + "=''";
    }
    const std::string too_long(DDS_XML_MAX_TEXT_LENGTH + 1, 'x');
    const struct {
        std::string document;
        const char* error;
        std::string tree{};
    } cases[] = {
        {"<profiles>\n</profiles>", "1 profiles: expected dds as the root element", "profiles"},
        {"<dds>\n<logger>\n<types/></logger>\n<types/></dds>",
         "2 logger: unknown element, expected types qos_library domain_library "
         "domain_participant_library application_library data recorder",
         "dds(logger(types) types)"},
        {std::string("<dds>\0</dds>", 12),
         "1 dds: not well-formed (invalid token), expected &amp; and &lt; for & and < in a text"},
        {"<!DOCTYPE dds [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;&a;']><dds>&b;</dds>",
         "1 : a document type declaration is not allowed here, expected none"},
        {"<dds>\n<types>\n</type></dds>",
         "3 types: not well-formed: mismatched tag </type>, expected </types> for the element of "
         "line 2"},
        {"<dds>\n<types>",
         "2 types: not well-formed: the document ends too early, expected </types> for the element "
         "of line 2"},
        {"", "1 : not well-formed: no element found, expected dds as the root element"},
        {"<dds><types>" + repeated("<x>", DDS_XML_MAX_DEPTH - 1) + "</types></dds>",
         "1 x: the elements are nested too deeply, expected at most 64 levels"},
        {"<dds><types>" + repeated("<x/>", DDS_XML_MAX_ELEMENTS) + "</types></dds>",
         "1 types: the document has too many elements, expected at most 65536"},
        {"<dds>" + too_long + "</dds>",
         "1 dds: the element's text is too long, expected at most 65536 bytes"},
        {"<dds><types x='" + too_long + "'/></dds>",
         "1 dds: an attribute is too long, expected at most 65536 bytes"},
        {"<dds" + attributes + "/>",
         "1 : the element has too many attributes, expected at most 32"},
        {"<dds>" + std::string(DDS_XML_MAX_DOCUMENT_SIZE, ' ') + "</dds>",
         "0 : the document is too long, expected at most 4194304 bytes"},
    };
    Reports reports;
    for (const auto& row : cases) {
        const Document document(row.document);
        EXPECT_EQ(document.result, row.tree.empty() ? DDS_RETCODE_ERROR : DDS_RETCODE_OK);
        EXPECT_EQ(DDS_XMLParser_has_failed(document.parser), 1) << row.error;
        EXPECT_EQ(document.errors(), Lines{row.error});
        EXPECT_EQ(document.tree(), row.tree);
        EXPECT_EQ(reports.take().size(), 1U) << row.error;
    }
    const int depth = DDS_XML_MAX_DEPTH - 2;
    const int others = DDS_XML_MAX_ELEMENTS - DDS_XML_MAX_DEPTH;
    const std::string allowed = attributes.substr(attributes.find(" a1="));
    const Document at_the_limits("<dds><types" + allowed + ">" + repeated("<x>", depth) +
                                 too_long.substr(1) + repeated("</x>", depth) +
                                 repeated("<y/>", others) + "</types></dds>");
    EXPECT_EQ(at_the_limits.errors(), Lines{});
}

TEST(XmlParser, ErrorsNameTheFileAndThoseBeyondTheLimitAreCounted) {
    const int count = DDS_XML_MAX_ERRORS + 5;
    Reports reports;
    const Document document("<dds>" + repeated("<x/>", count) + "</dds>");
    EXPECT_EQ(document.result, DDS_RETCODE_OK);
    EXPECT_EQ(DDS_XMLParser_get_error_count(document.parser), count);
    EXPECT_EQ(document.errors().size(), static_cast<std::size_t>(DDS_XML_MAX_ERRORS));
    EXPECT_EQ(reports.take().back(), "DDS_XMLParser_parse_string:text.xml: 5 more errors");
}

TEST(XmlParser, WithoutMemoryNothingStays) {
    orvane::test::sweep(orvane::test::new_expression, [] {
        constexpr std::string_view text = "<dds><types a='1'>text<x/></types></dds>";
        DDS_XMLParser* parser = DDS_XMLParser_new();
        const DDS_ReturnCode_t result =
            parser != nullptr ? DDS_XMLParser_parse_string(parser, "t", text.data(), text.size())
                              : DDS_RETCODE_OUT_OF_RESOURCES;
        EXPECT_TRUE(result == DDS_RETCODE_OK || result == DDS_RETCODE_OUT_OF_RESOURCES);
        DDS_XMLParser_delete(parser);
        return result == DDS_RETCODE_OK;
    });
}

/// Collects output until it has so many bytes.
struct Sink {
    std::string text;
    std::size_t room = 3000;
    QELXMLSaveContext context{0, 0, write, this};

    static DDS_Boolean write(void* self, const char* text, size_t length) {
        auto& sink = *static_cast<Sink*>(self);
        if (length > sink.room) {
            return 0;
        }
        sink.room -= length;
        sink.text.append(text, length);
        return 1;
    }
};

TEST(XmlSaving, AfterAFailureNothingIsWritten) {
    Sink complete;
    save_everything(&complete.context);
    for (std::size_t room = 0; room < complete.text.size(); room += 7) {
        Sink sink{{}, room};
        save_everything(&sink.context);
        EXPECT_EQ(sink.context.error, 1) << room;
        EXPECT_EQ(complete.text.substr(0, sink.text.size()), sink.text);
    }
}

/// A file that is removed at the end.
struct File {
    const std::string name = "xml_tree_" + std::to_string(getpid()) + ".xml";
    ~File() { std::filesystem::remove(name); }
    std::string content() const {
        std::ifstream stream(name);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST(XmlTree, ASavedTreeReadsBackAsTheSame) {
    const File file;
    const Document document(
        "<dds><recorder>ignored</recorder><types a='x&amp;&#10;&quot;y'>t&lt;<in/></types></dds>");
    const std::string expected =
        "<dds>\n"
        "    <recorder>\n"
        "        <number>-7</number>\n"
        "        <text>a&lt;b &amp; &quot;c&quot;</text>\n"
        "        <nothing></nothing>\n"
        "        <empty/>\n"
        "        <list>\n"
        "            <element>0</element>\n"
        "            <element>-2</element>\n"
        "        </list>\n"
        "        <free>" +
        long_text +
        "1</free>\n"
        "    </recorder>\n"
        "    <types a=\"x&amp;&#10;&quot;y\">t&lt;\n"
        "        <in/>\n"
        "    </types>\n"
        "</dds>\n";
    ASSERT_EQ(DDS_XMLParser_save_file(document.parser, file.name.c_str()), DDS_RETCODE_OK);
    EXPECT_EQ(file.content(), expected);
    char* again = DDS_XMLParser_save_string(Document(expected).parser);
    EXPECT_EQ(again, expected);
    DDS_String_free(again);
}

TEST(XmlTree, WhenSavingFailsTheFileStaysAsItWas) {
    const File file;
    std::ofstream(file.name) << "old";
    const Document unwritable("<dds><recorder unwritable=''/></dds>");
    EXPECT_EQ(DDS_XMLParser_save_file(unwritable.parser, file.name.c_str()), DDS_RETCODE_ERROR);
    EXPECT_EQ(DDS_XMLParser_save_string(unwritable.parser), nullptr);
    EXPECT_EQ(DDS_XMLParser_save_file(Document("<dds>").parser, file.name.c_str()),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(file.content(), "old");
    const File link{file.name + ".link"};
    std::filesystem::create_hard_link(file.name, link.name);
    EXPECT_EQ(DDS_XMLParser_save_file(Document("<dds/>").parser, file.name.c_str()),
              DDS_RETCODE_OK);
    EXPECT_EQ(link.content(), "old") << "a file that is being written is not the one to be read";
    std::filesystem::remove(file.name);
    std::filesystem::create_directory(file.name);
    EXPECT_EQ(DDS_XMLParser_save_file(Document("<dds/>").parser, file.name.c_str()),
              DDS_RETCODE_ERROR);
    EXPECT_FALSE(std::filesystem::exists(file.name + ".new"));
}

}  // namespace
