#include "tools/configuration/configuration_file.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/sysinfo.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

#include "pexa/config_logger.h"
#include "pexa/domain.h"
#include "pexa/osapi.h"

namespace orvane::tools {
namespace {

/// While it lives nothing reaches standard output. The library prints lines there about errors that
/// it also hands over, and they would stand among the settings.
class SilentOutput {
public:
    SilentOutput() : kept_(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~SilentOutput() {
        std::fflush(stdout);
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }
    SilentOutput(const SilentOutput&) = delete;
    SilentOutput& operator=(const SilentOutput&) = delete;

private:
    int kept_;
};

struct Report {
    Severity severity;
    std::string text;
};

/// The lines of the middleware's log, which would go to standard output.
std::vector<Report>& middleware_reports() {
    static std::vector<Report> reports;
    return reports;
}

void keep_report(const PEXA_Config_LoggerDevice* /*device*/,
                 const PEXA_Config_LogMessage* message) {
    const bool is_error = message->level <= PEXA_CONFIG_LOG_LEVEL_ERROR;
    middleware_reports().push_back({is_error ? Severity::error : Severity::warning, message->text});
}

constexpr PEXA_Config_LoggerDevice report_keeper{nullptr, keep_report, nullptr};

/// Takes a number off the front of a text.
std::optional<int> take_number(std::string_view& text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{}) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// Adds a report "OPERATION:FILE:LINE: ELEMENT: TEXT" or "OPERATION:FILE: NUMBER more errors".
void add_report(const Report& report, const std::string& file_name, Findings& findings) {
    std::string_view rest = report.text;
    const std::size_t place = rest.find(":" + file_name + ":");
    if (place == std::string_view::npos) {
        return;
    }
    rest.remove_prefix(place + file_name.size() + 2);
    const bool has_line = !rest.starts_with(' ');
    if (!has_line) {
        rest.remove_prefix(1);
    }
    const int number = take_number(rest).value_or(0);
    if (!has_line) {
        findings.add_unnamed(number);
        return;
    }
    rest.remove_prefix(rest.starts_with(": ") ? 2 : 0);
    while (rest.ends_with('\n')) {
        rest.remove_suffix(1);
    }
    const std::size_t element_end = rest.find(": ");
    const std::string element(element_end != std::string_view::npos ? rest.substr(0, element_end)
                                                                    : std::string_view());
    // The reader of the profiles warns of elements that are for another reader, or for none.
    const bool is_foreign = element == "orvane" || findings.has_error_about(number, element);
    if (report.severity == Severity::error || !is_foreign) {
        rest.remove_prefix(element.empty() ? 0 : element_end + 2);
        findings.add({report.severity, number, element, std::string(rest)});
    }
}

/// The memory is not written to, and the system may promise more than it has.
bool can_allocate(std::uint64_t bytes) {
    struct sysinfo machine {};
    if (sysinfo(&machine) == 0 &&
        bytes / machine.mem_unit >= machine.totalram + machine.totalswap) {
        return false;
    }
    void* memory = QELOsapiHeap_allocateBufferAligned(bytes, alignof(QEL_KX_MessageQueueElement));
    QELOsapiHeap_freeBufferAligned(memory);
    return memory != nullptr;
}

}  // namespace

ConfigurationFile::ConfigurationFile(const std::string& name)
    : name_(name), class_(check_.make_class()), parser_(DDS_XMLParser_new()) {
    PEXA_Config_Logger* logger = PEXA_Config_Logger_get_instance();
    PEXA_Config_Logger_set_output_device(logger, &report_keeper);
    PEXA_Config_Logger_set_verbosity(logger, PEXA_CONFIG_LOG_VERBOSITY_WARNING);
    DDS_XMLParser_register_extension_class(parser_.get(), class_.get());
    {
        const SilentOutput silence;
        DDS_XMLParser_parse_file(parser_.get(), name.c_str());
    }
    add_faults();
    if (is_well_formed()) {
        // The profiles. The parser's reports of its own faults and warnings are there, too.
        middleware_reports().clear();
        DDS_DomainParticipantFactory_load_qos_profiles(DDS_DomainParticipantFactory_get_instance(),
                                                       name.c_str());
        add_reports();
    }
    if (orvane() != nullptr) {
        check_queue_memory();
    }
}

bool ConfigurationFile::is_well_formed() const {
    return DDS_XMLParser_get_root(parser_.get()) != nullptr;
}

DDS_XMLObject* ConfigurationFile::orvane() const {
    return QEL_KX_XMLConfig_getKXXMLObjectFromRoot(DDS_XMLParser_get_root(parser_.get()));
}

std::uint64_t ConfigurationFile::least_queue_memory() const {
    const QEL_KX_XMLConfig& config = *reinterpret_cast<QEL_KX_XMLConfig*>(orvane());
    return static_cast<std::uint64_t>(config.options->queue_size) *
           sizeof(QEL_KX_MessageQueueElement);
}

void ConfigurationFile::add_faults() {
    DDS_XMLError error{};
    DDS_Long kept = 0;
    for (; DDS_XMLParser_get_error(parser_.get(), kept, &error) == DDS_RETCODE_OK; ++kept) {
        findings_.add({Severity::error, error.line, error.tagName, error.message});
    }
    findings_.add_unnamed(DDS_XMLParser_get_error_count(parser_.get()) - kept);
}

void ConfigurationFile::add_reports() {
    for (const Report& report : middleware_reports()) {
        add_report(report, name_, findings_);
    }
}

void ConfigurationFile::check_queue_memory() {
    const std::uint64_t bytes = least_queue_memory();
    if (!can_allocate(bytes)) {
        findings_.add({Severity::error, check_.line_of(QEL_KX_XML_ELEMENT_QUEUE_SIZE), "queue_size",
                       fmt::format("the queue takes at least {} bytes of memory, expected no more "
                                   "than this machine provides",
                                   bytes)});
    }
}

}  // namespace orvane::tools
