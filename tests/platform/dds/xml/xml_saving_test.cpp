#include <cstdio>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "pexa/string.h"
#include "tests/platform/dds/xml/xml_document.hpp"

namespace {

/// Collects output until it has so many bytes.
struct Sink {
    std::string text;
    std::size_t room = 1000;
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

void save_everything(QELXMLSaveContext* context) {
    DDS_Long numbers[] = {0, -2, 5};
    DDS_LongSeq list{};
    DDS_XMLHelper_save_tag("outer", DDS_XML_TAG_OPEN, context);
    DDS_XMLHelper_save_long("number", -7, context);
    DDS_XMLHelper_save_string("text", "a<b & \"c\"", context);
    DDS_XMLHelper_save_string("nothing", nullptr, context);
    DDS_XMLHelper_save_long_seq("empty", &list, context);
    DDS_LongSeq_loan_contiguous(&list, numbers, 3, 3);
    DDS_XMLHelper_save_long_seq("list", &list, context);
    DDS_LongSeq_unloan(&list);
    QELXMLSaveContext_indent(context);
    DDS_XMLHelper_save_freeform(context, "<free>%s%d</free>\n", "x", 1);
    DDS_XMLHelper_save_tag("outer", DDS_XML_TAG_CLOSE, context);
}

TEST(XmlSaving, EachHelperWritesItsLayout) {
    Sink sink;
    sink.context.indentDepth = 1;
    save_everything(&sink.context);
    EXPECT_EQ(
        "    <outer>\n"
        "        <number>-7</number>\n"
        "        <text>a&lt;b &amp; &quot;c&quot;</text>\n"
        "        <nothing></nothing>\n"
        "        <empty/>\n"
        "        <list>\n"
        "            <element>0</element>\n"
        "            <element>-2</element>\n"
        "            <element>5</element>\n"
        "        </list>\n"
        "        <free>x1</free>\n"
        "    </outer>\n",
        sink.text);
    EXPECT_EQ(1, sink.context.indentDepth);
    EXPECT_EQ(0, sink.context.error);
}

TEST(XmlSaving, FreeformTextMayBeLong) {
    Sink sink{{}, 3000};
    const std::string text(2000, 'x');
    DDS_XMLHelper_save_freeform(&sink.context, "%s%s", text.c_str(), "y");
    EXPECT_EQ(text + "y", sink.text);
}

TEST(XmlSaving, AfterAFailureNothingIsWritten) {
    Sink complete;
    save_everything(&complete.context);
    for (std::size_t room = 0; room < complete.text.size(); room += 7) {
        Sink sink{{}, room};
        save_everything(&sink.context);
        EXPECT_EQ(1, sink.context.error) << room;
        EXPECT_EQ(complete.text.substr(0, sink.text.size()), sink.text);
    }
    Sink sink;
    DDS_XMLHelper_save_tag("tag", 8, &sink.context);
    EXPECT_EQ(1, sink.context.error) << "no such kind";
    save_everything(&sink.context);
    EXPECT_EQ("", sink.text);
}

struct Saved {
    DDS_XMLObject base;
    bool fails;
};

DDS_XMLObject* make(DDS_XMLExtensionClass* extension_class, DDS_XMLObject* parent,
                    const char* const* attributes, DDS_XMLContext* /*context*/) {
    auto saved = std::make_unique<Saved>(Saved{{}, attributes[0] != nullptr});
    DDS_XMLObject_initialize(&saved->base, extension_class, parent, "saved", 0);
    return &saved.release()->base;
}

void end_of_life(DDS_XMLObject* object) {
    DDS_XMLObject_finalize(object);
    delete reinterpret_cast<Saved*>(object);
}

void save(DDS_XMLObject* object, QELXMLSaveContext* context, void* /*reserved*/) {
    DDS_XMLHelper_save_string("saved", "by its class", context);
    context->error = reinterpret_cast<Saved*>(object)->fails ? 1 : context->error;
}

class XmlTree : public testing::Test {
public:
    ~XmlTree() override {
        parser_.reset();
        DDS_XMLExtensionClass_delete(class_);
        std::filesystem::remove(file_);
    }

protected:
    void parse_with_class(const char* document) {
        DDS_XMLParser_register_extension_class(parser_.get(), class_);
        ASSERT_EQ(DDS_RETCODE_OK, parse(parser_, document));
    }
    [[nodiscard]] std::string content() const {
        std::ifstream stream(file_);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    DDS_XMLExtensionClass* class_ = DDS_XMLExtensionClass_new(
        "saved", nullptr, nullptr, nullptr, nullptr, nullptr, make, end_of_life, save);
    XmlParserPtr parser_ = new_parser();
    const std::string file_ = "xml_tree_" + std::to_string(getpid()) + ".xml";
};

TEST_F(XmlTree, ASavedTreeReadsBackAsTheSame) {
    parse_with_class(
        "<dds><saved>ignored</saved><types a='x&amp;&#10;&quot;y'>t&lt;<in/></types></dds>");
    const std::string expected =
        "<dds>\n"
        "    <saved>by its class</saved>\n"
        "    <types a=\"x&amp;&#10;&quot;y\">t&lt;\n"
        "        <in/>\n"
        "    </types>\n"
        "</dds>\n";
    ASSERT_EQ(DDS_RETCODE_OK, DDS_XMLParser_save_file(parser_.get(), file_.c_str()));
    EXPECT_EQ(expected, content());
    const XmlParserPtr again = new_parser();
    DDS_XMLParser_register_extension_class(again.get(), class_);
    ASSERT_EQ(DDS_RETCODE_OK, DDS_XMLParser_parse_file(again.get(), file_.c_str()));
    char* text = DDS_XMLParser_save_string(again.get());
    EXPECT_EQ(expected, text);
    DDS_String_free(text);
}

TEST_F(XmlTree, WhenAClassFailsTheFileStaysAsItWas) {
    std::ofstream(file_) << "old";
    parse_with_class("<dds><saved fails=''/></dds>");
    EXPECT_EQ(DDS_RETCODE_ERROR, DDS_XMLParser_save_file(parser_.get(), file_.c_str()));
    EXPECT_EQ("old", content());
    EXPECT_EQ(nullptr, DDS_XMLParser_save_string(parser_.get()));
    EXPECT_EQ(DDS_RETCODE_ERROR, DDS_XMLParser_save_file(parser_.get(), "no_folder/file.xml"));
    EXPECT_EQ(DDS_RETCODE_PRECONDITION_NOT_MET,
              DDS_XMLParser_save_file(new_parser().get(), file_.c_str()));
}

TEST(XmlConversion, TruthValuesHaveSixNamesInAnyCase) {
    const struct {
        const char* text;
        DDS_Boolean accepted;
        DDS_Boolean flag;
    } cases[] = {{"true", 1, 1},  {"True", 1, 1},   {" yes\n", 1, 1}, {"1", 1, 1},
                 {"FALSE", 1, 0}, {"No", 1, 0},     {"0", 1, 0},      {"", 0, 2},
                 {"2", 0, 2},     {"truely", 0, 2}, {"y", 0, 2},      {nullptr, 0, 2}};
    for (const auto& row : cases) {
        DDS_XMLContext context{};
        DDS_Boolean flag = 2;
        EXPECT_EQ(row.accepted, DDS_XMLHelper_str_to_boolean(&flag, row.text, &context));
        EXPECT_EQ(row.flag, flag);
        EXPECT_EQ(row.accepted == 0 ? 1 : 0, context.error);
    }
}

TEST(XmlConversion, TrimmingMovesTheTextToTheFront) {
    const std::pair<const char*, const char*> cases[] = {
        {" \t\r\n a b \n", "a b"}, {"a", "a"}, {"", ""}, {" \n ", ""}};
    for (const auto& [text, trimmed] : cases) {
        std::string buffer(text);
        EXPECT_EQ(buffer.data(), QELXMLHelper_strTrim(buffer.data()));
        EXPECT_STREQ(trimmed, buffer.c_str());
    }
    EXPECT_EQ(nullptr, QELXMLHelper_strTrim(nullptr));
}

}  // namespace
