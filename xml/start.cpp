#include "core/exported.hpp"
#include "core/instance.hpp"
#include "core/options.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "lifecycle/singleton.hpp"
#include "orvane/xml.h"
#include "platform/internal/status.hpp"

namespace orvane::xml {
namespace {

using pexa::Status;

constexpr const char* own_context = "QEL_KX_XMLConfig_startWithXMLConfiguration";

Status refuse_start(const char* reason) {
    core::report(own_context, reason);
    return Status::error;
}

/// The options want no logger, or none that is new.
Status leave_alone(const char* reason) {
    core::report(own_context, reason, QEL_KX_LEVEL_INFO);
    return Status::ok;
}

Status start(DDS_DomainParticipant* participant, QEL_KX_Options* options,
             const char* application_kind) {
    if (options == nullptr) {
        return refuse_start("no options found in XML configuration");
    }
    if (participant == nullptr) {
        return refuse_start("invalid DomainParticipant");
    }
    if (core::load(options->enabled) == 0) {
        return leave_alone("KX not enabled in XML Options. It won't be created");
    }
    if (core::is_running()) {
        return leave_alone("KX already running. XML Options don't apply");
    }
    // Only NULL is refused.
    static_cast<void>(core::set_participant(options, participant));
    if (application_kind != nullptr &&
        core::set_application_kind(options, application_kind) != Status::ok) {
        return refuse_start("could not set the application kind");
    }
    if (lifecycle::set_options(options) != Status::ok) {
        return refuse_start("could not set KX options; instance already created");
    }
    return lifecycle::get_instance() != nullptr ? Status::ok
                                                : refuse_start("Orvane could not be started");
}

}  // namespace
}  // namespace orvane::xml

DDS_Boolean QEL_KX_XMLConfig_startWithXMLConfiguration(DDS_DomainParticipant* participant,
                                                       QEL_KX_Options* options,
                                                       const char* applicationKind) {
    return orvane::core::to_boolean(orvane::xml::start(participant, options, applicationKind));
}
