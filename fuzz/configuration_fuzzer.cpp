// An XML document with an `orvane` element. Its values must be within their ranges, and be the same
// when they are written and read once more.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include "fuzz/demand.hpp"
#include "orvane/xml.h"
#include "pexa/log.h"

namespace {

void check_ranges(const QEL_KX_Options& options) {
    const DDS_ThreadSettings_t& thread = options.thread;
    demand(options.filter_level >= 0 && options.queue_size >= 1);
    demand((options.enabled & ~1) == 0 && (options.echo_to_stdout & ~1) == 0);
    demand((thread.mask & ~0x1BU) == 0 && thread.stack_size >= DDS_THREAD_STACK_SIZE_DEFAULT);
    for (DDS_Long i = 0; i < thread.cpu_list.length; ++i) {
        demand(thread.cpu_list.contiguousBuffer[i] >= 0);
    }
}

/// The first `orvane` element of a document, as the library writes it.
std::optional<std::string> rewrite(const char* text, std::size_t length) {
    DDS_XMLExtensionClass* extension_class =
        QEL_KX_XMLConfig_createXMLExtensionClass(DDS_XMLParser_report_error);
    DDS_XMLParser* parser = DDS_XMLParser_new();
    DDS_XMLParser_register_extension_class(parser, extension_class);
    DDS_XMLParser_parse_string(parser, "input", text, length);
    std::optional<std::string> written;
    if (QEL_KX_XMLConfig* config =
            QEL_KX_XMLConfig_getXMLConfigFromXMLRoot(DDS_XMLParser_get_root(parser))) {
        check_ranges(*QEL_KX_XMLConfig_getKXOptions(config));
        const auto append = [](void* whole, const char* part, std::size_t size) -> DDS_Boolean {
            static_cast<std::string*>(whole)->append(part, size);
            return DDS_BOOLEAN_TRUE;
        };
        QELXMLSaveContext context{0, 0, append, &written.emplace()};
        QEL_KX_XMLConfig_save(&config->object, &context, nullptr);
        demand(context.error == 0);
    }
    DDS_XMLParser_delete(parser);
    QEL_KX_XMLConfig_destroyXMLExtensionClass(extension_class);
    return written;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    // The library prints a line for each refused size.
    return std::freopen("/dev/null", "w", stdout) != nullptr ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, 0);
    const auto written = rewrite(reinterpret_cast<const char*>(data), size);
    if (written) {
        const std::string document = "<dds>" + *written + "</dds>";
        demand(rewrite(document.data(), document.size()) == written);
    }
    return 0;
}
