// A document, read twice: by a parser with an extension class, whose tree must read back the same
// after it was saved, and as QoS profiles.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "fuzz/demand.hpp"
#include "pexa/log.h"
#include "pexa/string.h"
#include "platform/dds/profiles/document.hpp"

namespace {

namespace dds = pexa::dds;

/// An object that keeps the texts of its element.
struct Texts : DDS_XMLObject {
    std::string all;

    static DDS_XMLObject* make(DDS_XMLExtensionClass* extension_class, DDS_XMLObject* parent,
                               const char* const* /*attributes*/, DDS_XMLContext* /*context*/) {
        auto texts = std::make_unique<Texts>();
        const bool made =
            DDS_XMLObject_initialize(texts.get(), extension_class, parent, "texts", 0) != 0;
        return made ? texts.release() : nullptr;
    }
    static void end(DDS_XMLObject* object) {
        DDS_XMLObject_finalize(object);
        delete static_cast<Texts*>(object);
    }
    static void on_end(DDS_XMLObject* object, const char* /*tag_name*/, const char* text,
                       DDS_XMLContext* context) {
        DDS_Boolean flag = 2;
        const bool accepted = DDS_XMLHelper_str_to_boolean(&flag, text, context) != 0;
        demand(accepted == (flag < 2) && accepted == (context->error == 0));
        static_cast<Texts*>(object)->all += text;
    }
    static void save(DDS_XMLObject* object, QELXMLSaveContext* context, void* /*reserved*/) {
        DDS_XMLHelper_save_string("texts", static_cast<Texts*>(object)->all.c_str(), context);
    }
};

/// @return the document as it is saved, empty when it has no tree.
std::string saved(const std::string& document) {
    static DDS_XMLExtensionClass* const extension_class =
        DDS_XMLExtensionClass_new("texts", nullptr, nullptr, nullptr, nullptr, Texts::on_end,
                                  Texts::make, Texts::end, Texts::save);
    DDS_XMLParser* parser = DDS_XMLParser_new();
    DDS_XMLParser_register_extension_class(parser, extension_class);
    const DDS_ReturnCode_t result =
        DDS_XMLParser_parse_string(parser, "input", document.data(), document.size());
    demand((result == DDS_RETCODE_OK) == (DDS_XMLParser_get_root(parser) != nullptr));
    char* text = result == DDS_RETCODE_OK ? DDS_XMLParser_save_string(parser) : nullptr;
    std::string copy = text != nullptr ? text : "";
    DDS_String_free(text);
    DDS_XMLParser_delete(parser);
    return copy;
}

void read_profiles(const std::string& text) {
    dds::xml::Parser document(dds::xml::ForeignElements::warnings);
    document.read_text("input", text);
    dds::ProfileStore store;
    if (!dds::add_profiles(document, store)) {
        return;
    }
    for (const std::string& library : store.libraries()) {
        for (const std::string& name : store.profiles(library)) {
            dds::OwnedQos<DDS_DomainParticipantQos> participant;
            dds::OwnedQos<DDS_DataWriterQos> writer;
            const dds::QosProfile* profile = store.find({library, name});
            if (!store.refusal(*profile).empty()) {
                continue;
            }
            demand(store.fill(*profile, nullptr, participant.get()) == pexa::Status::ok);
            demand(store.fill(*profile, "topic", writer.get()) == pexa::Status::ok);
            demand(store.fill(*profile, nullptr, writer.get()) == pexa::Status::ok);
            demand(!dds::fault_of_qos(writer.get()) && !dds::fault_of_qos(participant.get()));
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, 0);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::string once = saved(text);
    demand(once.empty() || once.size() >= DDS_XML_MAX_DOCUMENT_SIZE || saved(once) == once);
    read_profiles(text);
    return 0;
}
