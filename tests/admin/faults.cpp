#include "tests/admin/faults.hpp"

#include <algorithm>
#include <map>
#include <mutex>
#include <type_traits>

#include "orvane/types.h"
#include "pexa/config_logger.h"
#include "pexa/domain.h"
#include "pexa/osapi.h"
#include "pexa/publication.h"
#include "pexa/string.h"
#include "pexa/subscription.h"

namespace faults {
namespace {

std::mutex mutex;
std::vector<Fault> armed;
std::map<std::string, std::function<void()>> actions;
std::vector<std::string> called;

}  // namespace

void reset() {
    const std::lock_guard lock(mutex);
    armed.clear();
    actions.clear();
    called.clear();
    identity.reset();
    profile = nullptr;
}

void add(Fault fault) {
    const std::lock_guard lock(mutex);
    armed.push_back(std::move(fault));
}

void before(const std::string& function, std::function<void()> action) {
    const std::lock_guard lock(mutex);
    actions[function] = std::move(action);
}

int calls(const std::string& function) {
    const std::lock_guard lock(mutex);
    return static_cast<int>(std::count(called.begin(), called.end(), function));
}

std::vector<std::string> sequence() {
    const std::lock_guard lock(mutex);
    return called;
}

std::optional<Fault> strike(const char* function) {
    std::function<void()> action;
    std::optional<Fault> hit;
    {
        const std::lock_guard lock(mutex);
        called.emplace_back(function);
        const auto call = std::count(called.begin(), called.end(), function);
        for (const Fault& fault : armed) {
            if (fault.function == function && (fault.call == 0 || fault.call == call)) {
                hit = fault;
            }
        }
        if (const auto found = actions.find(function); found != actions.end()) {
            action = found->second;
        }
    }
    if (action) {
        action();
    }
    return hit;
}

namespace {

template <typename Real>
auto intercept(const char* function, Real real) -> decltype(real()) {
    using Result = decltype(real());
    const std::optional<Fault> fault = strike(function);
    if (!fault) {
        return real();
    }
    if (fault->after) {
        static_cast<void>(real());
    }
    if constexpr (std::is_same_v<Result, DDS_ReturnCode_t>) {
        return fault->code;
    } else {
        return Result{};
    }
}

}  // namespace
}  // namespace faults

#define FAULTY(Result, function, parameters, arguments)                                    \
    extern "C" Result __real_##function parameters;                                        \
    extern "C" Result __wrap_##function parameters {                                       \
        return faults::intercept(#function,                                                \
                                 [&]() -> Result { return __real_##function arguments; }); \
    }

// clang-format off
FAULTY(void*, QELOsapiHeap_allocateStructureOfSize, (size_t size), (size))
FAULTY(DDS_Boolean, DDS_StringSeq_loan_contiguous,
       (DDS_StringSeq* self, char** buffer, DDS_Long length, DDS_Long maximum),
       (self, buffer, length, maximum))
FAULTY(char*, DDS_String_replace, (char** text, const char* replacement), (text, replacement))
FAULTY(PEXA_Config_Logger*, PEXA_Config_Logger_get_instance, (), ())

FAULTY(DDS_ReturnCode_t, DDS_DomainParticipantFactory_get_default_participant_qos,
       (DDS_DomainParticipantFactory* self, DDS_DomainParticipantQos* qos), (self, qos))
FAULTY(DDS_DomainParticipant*, DDS_DomainParticipantFactory_create_participant,
       (DDS_DomainParticipantFactory* self, DDS_DomainId_t domain,
        const DDS_DomainParticipantQos* qos, const DDS_DomainParticipantListener* listener,
        DDS_StatusMask mask),
       (self, domain, qos, listener, mask))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_register_type,
       (DDS_DomainParticipant* self, const char* name, const TULVTypePlugin* plugin,
        const void* properties),
       (self, name, plugin, properties))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_topic_qos_w_topic_name,
       (DDS_DomainParticipant* self, DDS_TopicQos* qos, const char* name), (self, qos, name))
FAULTY(DDS_Topic*, DDS_DomainParticipant_create_topic,
       (DDS_DomainParticipant* self, const char* name, const char* type, const DDS_TopicQos* qos,
        const DDS_TopicListener* listener, DDS_StatusMask mask),
       (self, name, type, qos, listener, mask))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_publisher_qos,
       (DDS_DomainParticipant* self, DDS_PublisherQos* qos), (self, qos))
FAULTY(DDS_Publisher*, DDS_DomainParticipant_create_publisher,
       (DDS_DomainParticipant* self, const DDS_PublisherQos* qos,
        const DDS_PublisherListener* listener, DDS_StatusMask mask),
       (self, qos, listener, mask))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_subscriber_qos,
       (DDS_DomainParticipant* self, DDS_SubscriberQos* qos), (self, qos))
FAULTY(DDS_Subscriber*, DDS_DomainParticipant_create_subscriber,
       (DDS_DomainParticipant* self, const DDS_SubscriberQos* qos,
        const DDS_SubscriberListener* listener, DDS_StatusMask mask),
       (self, qos, listener, mask))
FAULTY(DDS_ContentFilteredTopic*, DDS_DomainParticipant_create_contentfilteredtopic,
       (DDS_DomainParticipant* self, const char* name, DDS_Topic* topic, const char* expression,
        const DDS_StringSeq* parameters),
       (self, name, topic, expression, parameters))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name,
       (DDS_DomainParticipant* self, DDS_DataWriterQos* qos, const char* name), (self, qos, name))
FAULTY(DDS_DataWriter*, DDS_Publisher_create_datawriter,
       (DDS_Publisher* self, DDS_Topic* topic, const DDS_DataWriterQos* qos,
        const DDS_DataWriterListener* listener, DDS_StatusMask mask),
       (self, topic, qos, listener, mask))
FAULTY(DDS_ReturnCode_t, DDS_DataWriter_set_listener,
       (DDS_DataWriter* self, const DDS_DataWriterListener* listener, DDS_StatusMask mask),
       (self, listener, mask))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_datareader_qos_w_topic_name,
       (DDS_DomainParticipant* self, DDS_DataReaderQos* qos, const char* name), (self, qos, name))
FAULTY(DDS_DataReader*, DDS_Subscriber_create_datareader,
       (DDS_Subscriber* self, DDS_TopicDescription* topic, const DDS_DataReaderQos* qos,
        const DDS_DataReaderListener* listener, DDS_StatusMask mask),
       (self, topic, qos, listener, mask))

FAULTY(DDS_ReturnCode_t, DDS_Subscriber_delete_contained_entities, (DDS_Subscriber* self), (self))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_delete_subscriber,
       (DDS_DomainParticipant* self, DDS_Subscriber* subscriber), (self, subscriber))
FAULTY(DDS_ReturnCode_t, DDS_Publisher_delete_contained_entities, (DDS_Publisher* self), (self))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_delete_publisher,
       (DDS_DomainParticipant* self, DDS_Publisher* publisher), (self, publisher))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_delete_contentfilteredtopic,
       (DDS_DomainParticipant* self, DDS_ContentFilteredTopic* topic), (self, topic))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_delete_topic,
       (DDS_DomainParticipant* self, DDS_Topic* topic), (self, topic))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipant_delete_contained_entities,
       (DDS_DomainParticipant* self), (self))
FAULTY(DDS_ReturnCode_t, DDS_DomainParticipantFactory_delete_participant,
       (DDS_DomainParticipantFactory* self, DDS_DomainParticipant* participant),
       (self, participant))

FAULTY(QEL_KX_ADMIN_StateDataWriter*, QEL_KX_ADMIN_StateDataWriter_as_datawriter,
       (QEL_KX_ADMIN_StateDataWriter* writer), (writer))
FAULTY(DDS_ReturnCode_t, DDS_DataWriter_write_untypedI,
       (DDS_DataWriter* self, const void* sample, const DDS_WriteParams_t* params),
       (self, sample, params))
FAULTY(DDS_InstanceHandle_t, DDS_DataWriter_register_instance_untypedI,
       (DDS_DataWriter* self, const void* sample, const DDS_WriteParams_t* params),
       (self, sample, params))
FAULTY(DDS_ReturnCode_t, DDS_DataReader_read_or_take_untypedI,
       (DDS_DataReader* self, const DDS_ReadSelectorI* selector, DDS_UntypedSampleSeqI* data,
        DDS_SampleInfoSeq* infos),
       (self, selector, data, infos))
FAULTY(DDS_ReturnCode_t, DDS_DataReader_return_loan_untypedI,
       (DDS_DataReader* self, void** samples, DDS_Long count, DDS_SampleInfoSeq* infos),
       (self, samples, count, infos))

extern "C" DDS_ReturnCode_t __real_DDS_DomainParticipant_get_qos(DDS_DomainParticipant* self,
                                                                 DDS_DomainParticipantQos* qos);
extern "C" DDS_ReturnCode_t __wrap_DDS_DomainParticipant_get_qos(DDS_DomainParticipant* self,
                                                                 DDS_DomainParticipantQos* qos) {
    return faults::intercept("DDS_DomainParticipant_get_qos", [&] {
        const DDS_ReturnCode_t result = __real_DDS_DomainParticipant_get_qos(self, qos);
        if (faults::identity) {
            qos->wire_protocol.rtps_host_id = faults::identity->first;
            qos->wire_protocol.rtps_app_id = faults::identity->second;
        }
        return result;
    });
}

extern "C" DDS_ReturnCode_t __real_DDS_DomainParticipantFactory_get_qos_profiles(
    DDS_DomainParticipantFactory* self, DDS_StringSeq* names, const char* library);
extern "C" DDS_ReturnCode_t __wrap_DDS_DomainParticipantFactory_get_qos_profiles(
    DDS_DomainParticipantFactory* self, DDS_StringSeq* names, const char* library) {
    if (faults::profile == nullptr) {
        return __real_DDS_DomainParticipantFactory_get_qos_profiles(self, names, library);
    }
    const char* const all[] = {"Another", faults::profile};
    DDS_StringSeq_ensure_length(names, 2, 2);
    for (DDS_Long index = 0; index < 2; ++index) {
        __real_DDS_String_replace(DDS_StringSeq_get_reference(names, index), all[index]);
    }
    return DDS_RETCODE_OK;
}
// clang-format on

namespace {

template <typename Qos>
void fill_endpoint(Qos* qos) {
    qos->liveliness.kind = DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS;
    qos->destination_order.kind = DDS_BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS;
    qos->ownership.kind = DDS_EXCLUSIVE_OWNERSHIP_QOS;
    qos->latency_budget.duration = {7, 0};
    qos->deadline.period = {8, 0};
    qos->history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    qos->history.depth = 3;
}

void fill_group(DDS_PresentationQosPolicy& presentation) {
    presentation = {DDS_GROUP_PRESENTATION_QOS, 1, 1};
}

}  // namespace

extern "C" DDS_ReturnCode_t __wrap_DDS_DomainParticipantFactory_get_participant_qos_from_profile(
    DDS_DomainParticipantFactory*, DDS_DomainParticipantQos* qos, const char*, const char*) {
    qos->participant_name.name = DDS_String_dup("name in the profile");
    return DDS_RETCODE_OK;
}
extern "C" DDS_ReturnCode_t __wrap_DDS_DomainParticipantFactory_get_publisher_qos_from_profile(
    DDS_DomainParticipantFactory*, DDS_PublisherQos* qos, const char*, const char*) {
    fill_group(qos->presentation);
    return DDS_RETCODE_OK;
}
extern "C" DDS_ReturnCode_t __wrap_DDS_DomainParticipantFactory_get_subscriber_qos_from_profile(
    DDS_DomainParticipantFactory*, DDS_SubscriberQos* qos, const char*, const char*) {
    fill_group(qos->presentation);
    return DDS_RETCODE_OK;
}
extern "C" DDS_ReturnCode_t
__wrap_DDS_DomainParticipantFactory_get_topic_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory*, DDS_TopicQos* qos, const char*, const char*, const char*) {
    qos->reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
    qos->durability.kind = DDS_VOLATILE_DURABILITY_QOS;
    return DDS_RETCODE_OK;
}
extern "C" DDS_ReturnCode_t
__wrap_DDS_DomainParticipantFactory_get_datawriter_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory*, DDS_DataWriterQos* qos, const char*, const char*, const char*) {
    fill_endpoint(qos);
    qos->reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
    return DDS_RETCODE_OK;
}
extern "C" DDS_ReturnCode_t
__wrap_DDS_DomainParticipantFactory_get_datareader_qos_from_profile_w_topic_name(
    DDS_DomainParticipantFactory*, DDS_DataReaderQos* qos, const char*, const char*, const char*) {
    fill_endpoint(qos);
    qos->reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
    return DDS_RETCODE_OK;
}
