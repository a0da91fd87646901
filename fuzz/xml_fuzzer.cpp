// A document, read twice: by a parser with an extension class, whose tree must read back the same
// after it was saved, and as QoS profiles.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "pexa/log.h"
#include "pexa/string.h"
#include "platform/dds/profiles/document.hpp"

namespace {

namespace dds = pexa::dds;

struct Delete {
    void operator()(DDS_XMLParser* parser) const { DDS_XMLParser_delete(parser); }
    void operator()(DDS_XMLExtensionClass* extension_class) const {
        DDS_XMLExtensionClass_delete(extension_class);
    }
};
using ParserPtr = std::unique_ptr<DDS_XMLParser, Delete>;

/// An object that keeps the texts of its element.
struct Texts {
    DDS_XMLObject base;
    std::string all;
};

DDS_XMLObject* make(DDS_XMLExtensionClass* extension_class, DDS_XMLObject* parent,
                    const char* const* /*attributes*/, DDS_XMLContext* /*context*/) {
    auto texts = std::make_unique<Texts>();
    if (DDS_XMLObject_initialize(&texts->base, extension_class, parent, "texts", 0) == 0) {
        return nullptr;
    }
    return &texts.release()->base;
}

void end_of_life(DDS_XMLObject* object) {
    DDS_XMLObject_finalize(object);
    delete reinterpret_cast<Texts*>(object);
}

void on_end(DDS_XMLObject* object, const char* /*tag_name*/, const char* text,
            DDS_XMLContext* context) {
    DDS_Boolean flag = 2;
    const DDS_Boolean accepted = DDS_XMLHelper_str_to_boolean(&flag, text, context);
    if ((accepted != 0) != (flag < 2) || (context->error == 0) != (accepted != 0)) {
        std::abort();
    }
    reinterpret_cast<Texts*>(object)->all += text;
}

void save(DDS_XMLObject* object, QELXMLSaveContext* context, void* /*reserved*/) {
    DDS_XMLHelper_save_string("texts", reinterpret_cast<Texts*>(object)->all.c_str(), context);
}

/// @return the document as it is saved, empty when it has no tree.
std::string saved(const std::string& document) {
    const std::unique_ptr<DDS_XMLExtensionClass, Delete> extension_class(DDS_XMLExtensionClass_new(
        "texts", nullptr, nullptr, nullptr, nullptr, on_end, make, end_of_life, save));
    const ParserPtr parser(DDS_XMLParser_new());
    DDS_XMLParser_register_extension_class(parser.get(), extension_class.get());
    const DDS_ReturnCode_t result =
        DDS_XMLParser_parse_string(parser.get(), "input", document.data(), document.size());
    if ((result == DDS_RETCODE_OK) != (DDS_XMLParser_get_root(parser.get()) != nullptr)) {
        std::abort();
    }
    if (result != DDS_RETCODE_OK) {
        return {};
    }
    char* text = DDS_XMLParser_save_string(parser.get());
    std::string copy = text != nullptr ? text : "";
    DDS_String_free(text);
    return copy;
}

void read_profiles(const std::string& text) {
    dds::xml::Parser document(dds::xml::ForeignElements::warnings);
    document.read_text("input", text);
    dds::ProfileStore store;
    dds::add_profiles(document, store);
    if (document.has_failed()) {
        return;
    }
    for (const std::string& library : store.libraries()) {
        for (const std::string& name : store.profiles(library)) {
            dds::OwnedQos<DDS_DomainParticipantQos> participant;
            dds::OwnedQos<DDS_DataWriterQos> writer;
            const dds::QosProfile* profile = store.find({library, name});
            if (store.fill(*profile, nullptr, participant.get()) != DDS_RETCODE_OK ||
                store.fill(*profile, "topic", writer.get()) != DDS_RETCODE_OK) {
                std::abort();
            }
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool silent = [] {
        QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, 0);
        return true;
    }();
    static_cast<void>(silent);
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string once = saved(text);
    if (!once.empty() && once.size() < DDS_XML_MAX_DOCUMENT_SIZE && saved(once) != once) {
        std::abort();
    }
    read_profiles(text);
    return 0;
}
