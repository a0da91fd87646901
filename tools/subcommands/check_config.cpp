#include "tools/subcommands/check_config.hpp"

#include <fmt/format.h>
#include <orvane/xml.h>

#include <cstdio>
#include <filesystem>

#include "tools/configuration/configuration_file.hpp"
#include "tools/subcommands/exit_status.hpp"

namespace orvane::tools {
namespace {

/// Prints a document with the settings of a file that has an `orvane` element.
/// @return the exit status
int print_settings(const ConfigurationFile& file) {
    const auto write = [](void* /*data*/, const char* text, std::size_t length) -> DDS_Boolean {
        return std::fwrite(text, 1, length, stdout) == length ? DDS_BOOLEAN_TRUE
                                                              : DDS_BOOLEAN_FALSE;
    };
    QELXMLSaveContext context{0, 0, write, nullptr};
    DDS_XMLHelper_save_tag("dds", DDS_XML_TAG_OPEN, &context);
    QELXMLSaveContext_indent(&context);
    const std::string memory = std::to_string(file.least_queue_memory());
    DDS_XMLHelper_save_freeform(&context, "<!-- The queue takes at least %s bytes of memory. -->\n",
                                memory.c_str());
    QEL_KX_XMLConfig_save(file.orvane(), &context, nullptr);
    DDS_XMLHelper_save_tag("dds", DDS_XML_TAG_CLOSE, &context);
    if (std::fflush(stdout) != 0 || context.error != 0) {
        fmt::print(stderr, "orvane: cannot write to standard output\n");
        return exit_failure;
    }
    return exit_success;
}

}  // namespace

int check_config(const CheckConfigOptions& options) {
    std::error_code unknown;
    if (std::filesystem::is_other(options.file_name, unknown)) {
        print_error("orvane: " + options.file_name +
                    " is a pipe or a device, expected a regular file, which can be read twice");
        return exit_failure;
    }
    const ConfigurationFile file(options.file_name);
    const Findings& findings = file.findings();
    findings.print(options.file_name);
    if (!file.is_well_formed()) {
        return exit_failure;
    }
    if (file.orvane() == nullptr) {
        print_error("orvane: no orvane element in " + options.file_name);
    } else if (print_settings(file) != exit_success) {
        return exit_failure;
    }
    const bool is_good = !findings.has_errors() && !(options.strict && findings.has_warnings());
    return is_good ? exit_success : exit_failure;
}

}  // namespace orvane::tools
