#include "core/options.hpp"

#include <cstring>

#include "core/exported.hpp"
#include "core/filter.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "pexa/osapi.h"
#include "pexa/string.h"
#include "platform/internal/record_members.hpp"

namespace orvane::core {
namespace {

using pexa::Status;

bool is_missing(const QEL_KX_Options* self, const char* context) {
    if (self != nullptr) {
        return false;
    }
    report(context, "QEL_KX_Options is null");
    return true;
}

Status refuse(const char* context, const char* reason, Status result = Status::bad_parameter) {
    report(context, reason);
    return result;
}

template <auto Field>
pexa::ValueOfMember<Field> get(const QEL_KX_Options* self, pexa::ValueOfMember<Field> if_missing,
                               const char* context) {
    return is_missing(self, context) ? if_missing : load(self->*Field);
}

template <auto Field>
Status set(QEL_KX_Options* self, pexa::ValueOfMember<Field> value, const char* context) {
    if (is_missing(self, context)) {
        return Status::no_data;
    }
    store(self->*Field, value);
    return Status::ok;
}

template <auto Field>
Status set_at_least(DDS_Long minimum, QEL_KX_Options* self, DDS_Long value, const char* refusal,
                    const char* context) {
    if (is_missing(self, context)) {
        return Status::no_data;
    }
    return value < minimum ? refuse(context, refusal) : set<Field>(self, value, context);
}

/// Puts a copy of @p text into the place of an owned string.
Status replace(char*& owned, const char* text) {
    char* copy = DDS_String_dup(text);
    if (copy == nullptr) {
        return Status::out_of_resources;
    }
    DDS_String_free(owned);
    owned = copy;
    return Status::ok;
}

template <auto Field>
Status set_text(QEL_KX_Options* self, const char* text, const char* if_null,
                const char* without_memory, const char* context) {
    if (is_missing(self, context)) {
        return Status::no_data;
    }
    if (text == nullptr) {
        return refuse(context, if_null);
    }
    return replace(self->*Field, text) == Status::ok
               ? Status::ok
               : refuse(context, without_memory, Status::error);
}

struct OwnedText {
    char* QEL_KX_Options::*field;
    const char* without_memory;
};

constexpr OwnedText copied_texts[] = {
    {&QEL_KX_Options::application_kind, "Unable to to copy Application Kind"},
    {&QEL_KX_Options::qos_library, "Unable to copy QoS library"},
    {&QEL_KX_Options::qos_profile, "Unable to copy QoS profile"},
};

Status copy(QEL_KX_Options* self, const QEL_KX_Options* origin) {
    constexpr const char* context = "QEL_KX_Options_copy";
    if (self == nullptr) {
        report(context, "Pointer to destination QEL_KX_Options is NULL");
        return Status::bad_parameter;
    }
    if (origin == nullptr) {
        report(context, "Pointer to origin QEL_KX_Option s is NULL");
        return Status::bad_parameter;
    }
    self->enabled = origin->enabled;
    self->remote_administration_enabled = origin->remote_administration_enabled;
    self->filter_level = origin->filter_level;
    self->queue_size = origin->queue_size;
    self->domain_id = origin->domain_id;
    for (const OwnedText& text : copied_texts) {
        const char* value = origin->*text.field;
        if (value != nullptr && replace(self->*text.field, value) != Status::ok) {
            report(context, text.without_memory);
            return Status::out_of_resources;
        }
    }
    DDS_ThreadSettings_t_copy(&self->thread, &origin->thread);
    self->domain_participant = origin->domain_participant;
    return Status::ok;
}

Status set_echo(QEL_KX_Options* self, QELBool echo) {
    const Status result =
        set<&QEL_KX_Options::echo_to_stdout>(self, echo, "QEL_KX_Options_setEchoToStdout");
    refresh_filter();
    return result;
}

DDS_ThreadSettings_t* thread_settings(QEL_KX_Options* self) {
    return is_missing(self, "QEL_KX_Options_getThreadSettings") ? nullptr : &self->thread;
}

Status set_thread_settings(QEL_KX_Options* self, const DDS_ThreadSettings_t* settings) {
    constexpr const char* context = "QEL_KX_Options_setThreadSettings";
    if (is_missing(self, context)) {
        return Status::no_data;
    }
    return DDS_ThreadSettings_t_copy(&self->thread, settings) != 0
               ? Status::ok
               : refuse(context, "couldn't copy thread settings", Status::error);
}

}  // namespace

QEL_KX_Options* create_default_options() {
    QEL_KX_Options* options = nullptr;
    QELOsapiHeap_allocateStructure(&options, QEL_KX_Options);
    if (options == nullptr) {
        report("QEL_KX_Options_createDefault", "Unable to allocate memory for QEL_KX_Options",
               QEL_KX_LEVEL_WARNING);
        return nullptr;
    }
    std::memset(options, 0, sizeof *options);
    options->enabled = 1;
    options->remote_administration_enabled = 1;
    options->filter_level = QEL_KX_LEVEL_INFO;
    options->queue_size = 128;
    options->log_infrastructure_messages = 1;
    DDS_ThreadSettings_t_initialize(&options->thread);
    return options;
}

void delete_options(QEL_KX_Options* self) {
    if (self == nullptr) {
        report("QEL_KX_Options_delete", "QEL_KX_Options was already NULL", QEL_KX_LEVEL_INFO);
        return;
    }
    DDS_ThreadSettings_t_finalize(&self->thread);
    DDS_String_free(self->qos_library);
    DDS_String_free(self->qos_profile);
    DDS_String_free(self->application_kind);
    QELOsapiHeap_freeStructure(self);
}

Status set_participant(QEL_KX_Options* self, DDS_DomainParticipant* participant) {
    constexpr const char* context = "QEL_KX_Options_setDomainParticipant";
    if (is_missing(self, context)) {
        return Status::no_data;
    }
    return participant == nullptr
               ? refuse(context, "domainParticipant is null")
               : set<&QEL_KX_Options::domain_participant>(self, participant, context);
}

Status set_filter_level(QEL_KX_Options* self, DDS_Long level) {
    return set_at_least<&QEL_KX_Options::filter_level>(
        0, self, level, "Filter Level must be positive or zero", "QEL_KX_Options_setFilterLevel");
}

Status set_queue_size(QEL_KX_Options* self, DDS_Long size) {
    return set_at_least<&QEL_KX_Options::queue_size>(1, self, size, "Queue Size must be positive",
                                                     "QEL_KX_Options_setQueueSize");
}

Status set_application_kind(QEL_KX_Options* self, const char* kind) {
    return set_text<&QEL_KX_Options::application_kind>(
        self, kind, "application kind is NULL", "Unable to allocate memory for Application Kind",
        "QEL_KX_Options_setApplicationKind");
}

}  // namespace orvane::core

namespace core = orvane::core;
using core::to_return_code;

QEL_KX_Options* QEL_KX_Options_createDefault(void) {
    return core::create_default_options();
}

DDS_Boolean QEL_KX_Options_copy(QEL_KX_Options* self, const QEL_KX_Options* origin) {
    return core::to_boolean(core::copy(self, origin));
}

DDS_ReturnCode_t QEL_KX_Options_delete(QEL_KX_Options* self) {
    core::delete_options(self);
    return DDS_RETCODE_OK;
}

DDS_DomainParticipant* QEL_KX_Options_getDomainParticipant(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::domain_participant>(self, nullptr,
                                                          "QEL_KX_Options_getDomainParticipant");
}

DDS_ReturnCode_t QEL_KX_Options_setDomainParticipant(QEL_KX_Options* self,
                                                     DDS_DomainParticipant* participant) {
    return to_return_code(core::set_participant(self, participant));
}

QELBool QEL_KX_Options_isRemoteAdministrationEnabled(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::remote_administration_enabled>(
        self, 0, "QEL_KX_Options_isRemoteAdministrationEnabled");
}

DDS_ReturnCode_t QEL_KX_Options_setRemoteAdministrationEnabled(QEL_KX_Options* self,
                                                               QELBool enabled) {
    return to_return_code(core::set<&QEL_KX_Options::remote_administration_enabled>(
        self, enabled, "QEL_KX_Options_setRemoteAdministrationEnabled"));
}

DDS_Long QEL_KX_Options_getFilterLevel(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::filter_level>(self, -1, "QEL_KX_Options_getFilterLevel");
}

DDS_ReturnCode_t QEL_KX_Options_setFilterLevel(QEL_KX_Options* self, DDS_Long level) {
    return to_return_code(core::set_filter_level(self, level));
}

DDS_Long QEL_KX_Options_getDomainId(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::domain_id>(self, -1, "QEL_KX_Options_hetDomainId");
}

DDS_ReturnCode_t QEL_KX_Options_setDomainId(QEL_KX_Options* self, DDS_Long domainId) {
    return to_return_code(core::set_at_least<&QEL_KX_Options::domain_id>(
        0, self, domainId, "Domain Id must be positive or zero", "QEL_KX_Options_setDomainId"));
}

const char* QEL_KX_Options_getQosLibrary(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::qos_library>(self, nullptr, "QEL_KX_Options_getQoSLibrary");
}

DDS_ReturnCode_t QEL_KX_Options_setQosLibrary(QEL_KX_Options* self, const char* qosLibrary) {
    return to_return_code(core::set_text<&QEL_KX_Options::qos_library>(
        self, qosLibrary, "QoS Library is NULL", "Unable to allocate memory for qosLibrary",
        "QEL_KX_Options_setQoSLibrary"));
}

const char* QEL_KX_Options_getQosProfile(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::qos_profile>(self, nullptr, "QEL_KX_Options_getQoSProfile");
}

DDS_ReturnCode_t QEL_KX_Options_setQosProfile(QEL_KX_Options* self, const char* qosProfile) {
    return to_return_code(core::set_text<&QEL_KX_Options::qos_profile>(
        self, qosProfile, "QoS Profile is NULL", "Unable to allocate memory for qosProfile",
        "QEL_KX_Options_setQoSProfile"));
}

DDS_Long QEL_KX_Options_getQueueSize(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::queue_size>(self, -1, "QEL_KX_Options_getQueueSize");
}

DDS_ReturnCode_t QEL_KX_Options_setQueueSize(QEL_KX_Options* self, DDS_Long queueSize) {
    return to_return_code(core::set_queue_size(self, queueSize));
}

DDS_ThreadSettings_t* QEL_KX_Options_getThreadSettings(QEL_KX_Options* self) {
    return core::thread_settings(self);
}

DDS_ReturnCode_t QEL_KX_Options_setThreadSettings(QEL_KX_Options* self,
                                                  const DDS_ThreadSettings_t* settings) {
    return to_return_code(core::set_thread_settings(self, settings));
}

const char* QEL_KX_Options_getApplicationKind(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::application_kind>(self, nullptr,
                                                        "QEL_KX_Options_getApplicationKind");
}

DDS_ReturnCode_t QEL_KX_Options_setApplicationKind(QEL_KX_Options* self,
                                                   const char* applicationKind) {
    return to_return_code(core::set_application_kind(self, applicationKind));
}

QELBool QEL_KX_Options_getEchoToStdout(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::echo_to_stdout>(self, 0, "QEL_KX_Options_getEchoToStdout");
}

DDS_ReturnCode_t QEL_KX_Options_setEchoToStdout(QEL_KX_Options* self, QELBool echo) {
    return to_return_code(core::set_echo(self, echo));
}

QELBool QEL_KX_Options_getLogInfrastructureMessages(const QEL_KX_Options* self) {
    return core::get<&QEL_KX_Options::log_infrastructure_messages>(
        self, 0, "QEL_KX_Options_getLogInfrastructureMessages");
}

DDS_ReturnCode_t QEL_KX_Options_setLogInfrastructureMessages(QEL_KX_Options* self,
                                                             QELBool enabled) {
    return to_return_code(core::set<&QEL_KX_Options::log_infrastructure_messages>(
        self, enabled, "QEL_KX_Options_setLogInfrastructureMessages"));
}
