#include "tools/subcommands/check_config.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <orvane/xml.h>
#include <pexa/config_logger.h>
#include <pexa/domain.h>
#include <pexa/xml.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/subcommands/exit_status.hpp"
#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

struct Problem {
    int line;
    std::string text;
    bool operator==(const Problem&) const = default;
};

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

/// User data of the class that checks; the library finds its own at the beginning.
struct Checks {
    XMLConfigListener listener{DDS_XMLParser_report_error};
    int depth = 0;  ///< elements that are open, from `orvane` on
};

Checks& checks_of(DDS_XMLObject* object) {
    return *static_cast<Checks*>(DDS_XMLExtensionClass_get_user_data(object->extensionClass));
}

/// How deep an element that the library reads should stand. Outside of `thread` the library takes
/// the children of `orvane` only.
int depth_of(const char* tag_name) {
    QEL_KX_XMLConfig outside_of_thread{};
    QEL_KX_XMLConfig_onStartElement(&outside_of_thread.object, tag_name, nullptr, nullptr);
    return outside_of_thread.currentElement != QEL_KX_XML_ELEMENT_NONE ? 2 : 3;
}

/// Hands an element to the library. Reports an element that the library ignores, and one that it
/// takes for a child of another element.
void check_start(DDS_XMLObject* object, const char* tag_name, const char* const* attributes,
                 DDS_XMLContext* context) {
    QEL_KX_XMLConfig& config = *reinterpret_cast<QEL_KX_XMLConfig*>(object);
    const int depth = ++checks_of(object).depth;
    if (depth == 2) {
        // A refused level stays open, and the start of a second level would change nothing.
        config.currentElement = QEL_KX_XML_ELEMENT_NONE;
    }
    const DDS_UnsignedLong before = config.currentElement;
    QEL_KX_XMLConfig_onStartElement(object, tag_name, attributes, context);
    const bool is_taken = config.currentElement != before;
    const bool is_cpu =
        before == QEL_KX_XML_ELEMENT_CPU_LIST && std::string_view(tag_name) == "element";
    const char* problem = nullptr;
    if (depth > 1 && !is_taken && !is_cpu) {
        problem = "unknown element, or in the wrong place: it has no effect";
    } else if (is_taken && depth != depth_of(tag_name)) {
        problem = "in the wrong place, and has an effect nevertheless";
    }
    if (problem != nullptr) {
        DDS_XMLParser_report_error(problem, "check-config",
                                   DDS_XMLContext_get_current_line_number(context));
        context->error = 1;
    }
}

void check_end(DDS_XMLObject* object, const char* tag_name, const char* text,
               DDS_XMLContext* context) {
    --checks_of(object).depth;
    QEL_KX_XMLConfig_onEndElement(object, tag_name, text, context);
}

/// A configuration file as the library reads it.
class ConfigFile {
public:
    explicit ConfigFile(const std::string& file_name)
        : class_(DDS_XMLExtensionClass_new("orvane", &checks_, nullptr, nullptr, check_start,
                                           check_end, QEL_KX_XMLConfig_new, QEL_KX_XMLConfig_delete,
                                           QEL_KX_XMLConfig_save)),
          parser_(DDS_XMLParser_new()) {
        DDS_XMLParser_register_extension_class(parser_.get(), class_.get());
        DDS_XMLParser_parse_file(parser_.get(), file_name.c_str());
    }

    bool is_well_formed() const { return DDS_XMLParser_get_root(parser_.get()) != nullptr; }
    /// NULL without one.
    DDS_XMLObject* orvane() const {
        return QEL_KX_XMLConfig_getKXXMLObjectFromRoot(DDS_XMLParser_get_root(parser_.get()));
    }

    void add_problems(std::vector<Problem>& problems) const {
        DDS_XMLError error{};
        DDS_Long kept = 0;
        for (; DDS_XMLParser_get_error(parser_.get(), kept, &error) == DDS_RETCODE_OK; ++kept) {
            const std::string element =
                *error.tagName != '\0' ? std::string(error.tagName) + ": " : "";
            problems.push_back({error.line, fmt::format("{}:{}: {}{}", error.fileName, error.line,
                                                        element, error.message)});
        }
        if (const DDS_Long count = DDS_XMLParser_get_error_count(parser_.get()); count > kept) {
            problems.push_back(
                {DDS_LENGTH_UNLIMITED, fmt::format("{} more problems", count - kept)});
        }
    }

private:
    struct Delete {
        void operator()(DDS_XMLExtensionClass* made) const { DDS_XMLExtensionClass_delete(made); }
        void operator()(DDS_XMLParser* parser) const { DDS_XMLParser_delete(parser); }
    };

    Checks checks_;
    std::unique_ptr<DDS_XMLExtensionClass, Delete> class_;
    std::unique_ptr<DDS_XMLParser, Delete> parser_;
};

/// The lines of the middleware's log, which would go to standard output.
std::vector<std::string>& middleware_reports() {
    static std::vector<std::string> reports;
    return reports;
}

void keep_report(const PEXA_Config_LoggerDevice* /*device*/,
                 const PEXA_Config_LogMessage* message) {
    middleware_reports().emplace_back(message->text);
}

constexpr PEXA_Config_LoggerDevice report_keeper{nullptr, keep_report, nullptr};

/// @param report "CONTEXT:FILE:LINE: …"
std::optional<Problem> problem_of(std::string_view report, const std::string& file_name) {
    const std::size_t context = report.find(":" + file_name + ":");
    if (context == std::string_view::npos) {
        return std::nullopt;
    }
    report.remove_prefix(context + 1);
    const std::string_view number = report.substr(file_name.size() + 1);
    int line = 0;
    std::from_chars(number.data(), number.data() + number.size(), line);
    while (report.ends_with('\n')) {
        report.remove_suffix(1);
    }
    return Problem{line, std::string(report)};
}

/// Reads the profiles as the middleware does, which reports their problems to its log.
void add_problems_of_profiles(const std::string& file_name, std::vector<Problem>& problems) {
    middleware_reports().clear();
    DDS_DomainParticipantFactory_load_qos_profiles(DDS_DomainParticipantFactory_get_instance(),
                                                   file_name.c_str());
    for (const std::string& report : middleware_reports()) {
        const auto problem = problem_of(report, file_name);
        // A problem of the whole file has been found before.
        if (problem && std::find(problems.begin(), problems.end(), *problem) == problems.end()) {
            problems.push_back(*problem);
        }
    }
}

/// Writes a line with text of a file, which may hold any character.
void print_error(std::string_view text) {
    std::string line;
    append_displayable(line, text);
    fmt::print(stderr, "{}\n", line);
}

void print_problems(std::vector<Problem> problems) {
    std::stable_sort(problems.begin(), problems.end(), [](const Problem& a, const Problem& b) {
        return static_cast<unsigned>(a.line) < static_cast<unsigned>(b.line);
    });
    for (const Problem& problem : problems) {
        print_error(problem.text);
    }
}

/// @return the exit status
int print_settings(DDS_XMLObject* orvane) {
    const auto write = [](void* /*data*/, const char* text, std::size_t length) -> DDS_Boolean {
        return std::fwrite(text, 1, length, stdout) == length ? DDS_BOOLEAN_TRUE
                                                              : DDS_BOOLEAN_FALSE;
    };
    QELXMLSaveContext context{0, 0, write, nullptr};
    QEL_KX_XMLConfig_save(orvane, &context, nullptr);
    if (std::fflush(stdout) != 0 || context.error != 0) {
        fmt::print(stderr, "orvane: cannot write to standard output\n");
        return exit_failure;
    }
    return exit_success;
}

}  // namespace

CLI::App* add_check_config_subcommand(CLI::App& app, CheckConfigOptions& options) {
    CLI::App* command = app.add_subcommand(
        "check-config", "Checks an XML configuration, and prints the settings that it means");
    command->add_option("FILE", options.file_name, "XML file with an orvane element, QoS profiles")
        ->required();
    command->footer(
        "Problems are lines FILE:LINE: ELEMENT: TEXT on standard error, and the exit status is 1.\n"
        "Example:\n"
        "  orvane check-config application.xml");
    return command;
}

int check_config(const CheckConfigOptions& options) {
    std::error_code unknown;
    if (std::filesystem::is_other(options.file_name, unknown)) {
        print_error("orvane: " + options.file_name +
                    " is not a regular file, and a pipe cannot be read twice");
        return exit_failure;
    }
    std::vector<Problem> problems;
    PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), &report_keeper);
    std::unique_ptr<ConfigFile> file;
    {
        const SilentOutput silence;
        file = std::make_unique<ConfigFile>(options.file_name);
    }
    file->add_problems(problems);
    if (file->is_well_formed()) {
        add_problems_of_profiles(options.file_name, problems);
    }
    const bool is_good = problems.empty();
    print_problems(std::move(problems));
    if (!file->is_well_formed()) {
        return exit_failure;
    }
    if (DDS_XMLObject* orvane = file->orvane(); orvane == nullptr) {
        print_error("orvane: no orvane element in " + options.file_name);
    } else if (print_settings(orvane) != exit_success) {
        return exit_failure;
    }
    return is_good ? exit_success : exit_failure;
}

}  // namespace orvane::tools
