#include "tools/domain/middleware_output.hpp"

#include <pexa/config_logger.h>

#include <cstdio>
#include <mutex>
#include <set>
#include <string>

#include "tools/domain/refusal.hpp"
#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

void print(const std::string& text) {
    std::fputs(("orvane: " + text + '\n').c_str(), stderr);
}

/// Told once each: the engine tries again and again. The middleware reports on any thread.
class Refusals {
public:
    void tell(const Refusal& refusal) {
        const std::lock_guard lock{mutex_};
        if (told_.insert(refusal).second) {
            print(refusal.cause + "\n  -> " + refusal.remedy);
        }
    }
    bool empty() {
        const std::lock_guard lock{mutex_};
        return told_.empty();
    }

private:
    std::mutex mutex_;
    std::set<Refusal> told_;
};

Refusals& told_refusals() {
    static auto* const all = new Refusals;  // reports may come while the process ends
    return *all;
}

void write_report(const PEXA_Config_LoggerDevice* /*device*/,
                  const PEXA_Config_LogMessage* message) {
    if (const auto refusal = refusal_of(message->text)) {
        told_refusals().tell(*refusal);
        return;
    }
    std::string text;
    append_displayable(text, message->text);
    print(text);
}

constexpr PEXA_Config_LoggerDevice standard_error{nullptr, write_report, nullptr};

}  // namespace

void print_middleware_reports() {
    PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), &standard_error);
}

void silence_middleware() {
    PEXA_Config_Logger_set_verbosity(PEXA_Config_Logger_get_instance(),
                                     PEXA_CONFIG_LOG_VERBOSITY_SILENT);
}

bool has_refused_somebody() {
    return !told_refusals().empty();
}

}  // namespace orvane::tools
