#include <cstring>

#include <gtest/gtest.h>

#include "tests/platform/dds/xml/xml_document.hpp"
#include "tests/support/heap_faults.hpp"
#include "tests/support/reports.hpp"

namespace {

using Lines = std::vector<std::string>;

/// An object of the class under test. Its class writes down what it is called for.
struct Recorder {
    DDS_XMLObject base;
    Lines* calls;
};

void note(DDS_XMLObject* object, const std::string& call) {
    reinterpret_cast<Recorder*>(object)->calls->push_back(call);
}

DDS_XMLObject* make(DDS_XMLExtensionClass* extension_class, DDS_XMLObject* parent,
                    const char* const* attributes, DDS_XMLContext* context) {
    auto* calls = static_cast<Lines*>(DDS_XMLExtensionClass_get_user_data(extension_class));
    calls->push_back("new in " + std::string(DDS_XMLObject_get_tag_name(parent)));
    for (; *attributes != nullptr; attributes += 2) {
        if (std::strcmp(attributes[0], "refused") == 0) {
            return nullptr;
        }
        calls->back() += std::string(" ") + attributes[0] + "=" + attributes[1];
    }
    EXPECT_EQ(DDS_XMLContext_get_current_line_number(context), context->line);
    auto recorder = std::make_unique<Recorder>(Recorder{{}, calls});
    if (DDS_XMLObject_initialize(&recorder->base, extension_class, parent, "recorder", 0) == 0) {
        return nullptr;
    }
    return &recorder.release()->base;
}

void end_of_life(DDS_XMLObject* object) {
    note(object, "delete");
    DDS_XMLObject_finalize(object);
    delete reinterpret_cast<Recorder*>(object);
}

void on_start(DDS_XMLObject* object, const char* tag_name, const char* const* /*attributes*/,
              DDS_XMLContext* context) {
    EXPECT_STREQ(tag_name, context->tagName);
    note(object, std::string("start ") + tag_name);
}

void on_end(DDS_XMLObject* object, const char* tag_name, const char* text,
            DDS_XMLContext* context) {
    note(object, std::string("end ") + tag_name + " '" + text + "'");
    EXPECT_EQ(0, context->error);
    if (std::strcmp(tag_name, "flag") == 0) {
        DDS_Boolean flag = 2;
        DDS_XMLHelper_str_to_boolean(&flag, text, context);
        note(object, "flag " + std::to_string(flag) + " " + std::to_string(context->error));
    } else if (std::strcmp(text, "report") == 0) {
        DDS_XMLParser_report_error("told", "on_end", context->line);
        context->error = 1;
    } else if (std::strcmp(text, "mark") == 0) {
        context->error = 1;
    }
}

class XmlCallbacks : public testing::Test {
public:
    ~XmlCallbacks() override {
        parser_.reset();
        DDS_XMLExtensionClass_delete(class_);
    }

protected:
    Lines calls_;
    DDS_XMLExtensionClass* class_ = DDS_XMLExtensionClass_new(
        "recorder", &calls_, nullptr, nullptr, on_start, on_end, make, end_of_life, nullptr);
    XmlParserPtr parser_ = new_parser();
};

TEST_F(XmlCallbacks, AClassGetsItsElementAndAllInside) {
    ASSERT_EQ(DDS_RETCODE_OK, DDS_XMLParser_register_extension_class(parser_.get(), class_));
    ASSERT_EQ(DDS_RETCODE_OK,
              parse(parser_,
                    "<dds><recorder a='1'>\n <x> &lt;t&gt;\n</x> <recorder/> own\n</recorder>"
                    "<data><deep><recorder/></deep></data></dds>"));
    EXPECT_EQ(Lines{}, errors_of(parser_));
    EXPECT_EQ((Lines{"new in dds a=1", "start recorder", "start x", "end x '<t>'", "start recorder",
                     "end recorder ''", "end recorder 'own'", "new in deep", "start recorder",
                     "end recorder ''"}),
              calls_);
    EXPECT_EQ("dds(recorder data(deep(recorder)))", outline(DDS_XMLParser_get_root(parser_.get())));
    calls_.clear();
    parser_.reset();
    EXPECT_EQ((Lines{"delete", "delete"}), calls_);
}

TEST_F(XmlCallbacks, WhatAClassRefusesIsAnErrorOnItsLineAndParsingGoesOn) {
    ASSERT_EQ(DDS_RETCODE_OK, DDS_XMLParser_register_extension_class(parser_.get(), class_));
    ASSERT_EQ(DDS_RETCODE_OK, parse(parser_,
                                    "<dds>\n<recorder>\n<a>report</a>\n<b>mark</b>\n<flag>YES"
                                    "</flag>\n<flag>maybe</flag>\n</recorder>\n<recorder "
                                    "refused=''>\n<inner><recorder/></inner></recorder><types/>"
                                    "</dds>"));
    EXPECT_EQ((Lines{"3 a: told", "4 b: the content of the element is not accepted",
                     "6 flag: expected true, false, yes, no, 1 or 0",
                     "8 recorder: no object could be made of the element"}),
              errors_of(parser_));
    EXPECT_EQ(1, std::count(calls_.begin(), calls_.end(), "flag 1 0"));
    EXPECT_EQ(1, std::count(calls_.begin(), calls_.end(), "flag 2 1")) << "left as it was";
    EXPECT_EQ("dds(recorder types)", outline(DDS_XMLParser_get_root(parser_.get())));
}

TEST_F(XmlCallbacks, ATextThatBreaksOffEndsTheObjectsThatWereMade) {
    ASSERT_EQ(DDS_RETCODE_OK, DDS_XMLParser_register_extension_class(parser_.get(), class_));
    EXPECT_EQ(DDS_RETCODE_ERROR, parse(parser_, "<dds><recorder/><recorder><x>"));
    EXPECT_EQ(2, std::count(calls_.begin(), calls_.end(), "delete"));
}

TEST_F(XmlCallbacks, AClassIsRegisteredOnceAndBeforeParsing) {
    EXPECT_EQ(DDS_RETCODE_OK, DDS_XMLParser_register_extension_class(parser_.get(), class_));
    EXPECT_EQ(DDS_RETCODE_PRECONDITION_NOT_MET,
              DDS_XMLParser_register_extension_class(parser_.get(), class_));
    const XmlParserPtr used = new_parser();
    ASSERT_EQ(DDS_RETCODE_OK, parse(used, "<dds/>"));
    EXPECT_EQ(DDS_RETCODE_PRECONDITION_NOT_MET,
              DDS_XMLParser_register_extension_class(used.get(), class_));
}

TEST_F(XmlCallbacks, WithoutMemoryTheElementIsAnError) {
    heap_faults::sweep([&] {
        const XmlParserPtr parser = new_parser();
        EXPECT_EQ(DDS_RETCODE_OK, DDS_XMLParser_register_extension_class(parser.get(), class_));
        const bool parsed = parse(parser, "<dds><recorder/></dds>") == DDS_RETCODE_OK;
        return parsed && DDS_XMLParser_has_failed(parser.get()) == 0;
    });
}

TEST(XmlExtensionClass, IsNotMadeOfIncompleteArguments) {
    int something = 0;
    Reports reports;
    EXPECT_EQ(nullptr, DDS_XMLExtensionClass_new(nullptr, nullptr, nullptr, nullptr, nullptr,
                                                 nullptr, make, end_of_life, nullptr));
    EXPECT_EQ(nullptr, DDS_XMLExtensionClass_new("x", nullptr, &something, nullptr, nullptr,
                                                 nullptr, make, end_of_life, nullptr));
    EXPECT_EQ(nullptr, DDS_XMLExtensionClass_new("x", nullptr, nullptr, nullptr, nullptr, nullptr,
                                                 nullptr, end_of_life, nullptr));
    EXPECT_EQ((Lines{"DDS_XMLExtensionClass_new:bad parameter: tagName",
                     "DDS_XMLExtensionClass_new:bad parameter: reserved1",
                     "DDS_XMLExtensionClass_new:bad parameter: newObject"}),
              reports.take());
}

}  // namespace
