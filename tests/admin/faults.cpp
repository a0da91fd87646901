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

// FAULTY<n>(result, function, type of each of the n parameters)
#define FAULTY0(R, f) FAULTY(R, f, (), ())
#define FAULTY1(R, f, A) FAULTY(R, f, (A a), (a))
#define FAULTY2(R, f, A, B) FAULTY(R, f, (A a, B b), (a, b))
#define FAULTY3(R, f, A, B, C) FAULTY(R, f, (A a, B b, C c), (a, b, c))
#define FAULTY4(R, f, A, B, C, D) FAULTY(R, f, (A a, B b, C c, D d), (a, b, c, d))
#define FAULTY5(R, f, A, B, C, D, E) FAULTY(R, f, (A a, B b, C c, D d, E e), (a, b, c, d, e))
#define FAULTY6(R, f, A, B, C, D, E, F) \
    FAULTY(R, f, (A a, B b, C c, D d, E e, F g), (a, b, c, d, e, g))
#define FAULTY(Result, function, parameters, arguments)                                    \
    extern "C" Result __real_##function parameters;                                        \
    extern "C" Result __wrap_##function parameters {                                       \
        return faults::intercept(#function,                                                \
                                 [&]() -> Result { return __real_##function arguments; }); \
    }

FAULTY1(void*, QELOsapiHeap_allocateStructureOfSize, size_t)
FAULTY4(DDS_Boolean, DDS_StringSeq_loan_contiguous, DDS_StringSeq*, char**, DDS_Long, DDS_Long)
FAULTY2(char*, DDS_String_replace, char**, const char*)
FAULTY0(PEXA_Config_Logger*, PEXA_Config_Logger_get_instance)
FAULTY2(DDS_ReturnCode_t, DDS_DomainParticipantFactory_get_default_participant_qos,
        DDS_DomainParticipantFactory*, DDS_DomainParticipantQos*)
FAULTY5(DDS_DomainParticipant*, DDS_DomainParticipantFactory_create_participant,
        DDS_DomainParticipantFactory*, DDS_DomainId_t, const DDS_DomainParticipantQos*,
        const DDS_DomainParticipantListener*, DDS_StatusMask)
FAULTY4(DDS_ReturnCode_t, DDS_DomainParticipant_register_type, DDS_DomainParticipant*, const char*,
        const TULVTypePlugin*, const void*)
FAULTY3(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_topic_qos_w_topic_name,
        DDS_DomainParticipant*, DDS_TopicQos*, const char*)
FAULTY6(DDS_Topic*, DDS_DomainParticipant_create_topic, DDS_DomainParticipant*, const char*,
        const char*, const DDS_TopicQos*, const DDS_TopicListener*, DDS_StatusMask)
FAULTY2(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_publisher_qos, DDS_DomainParticipant*,
        DDS_PublisherQos*)
FAULTY4(DDS_Publisher*, DDS_DomainParticipant_create_publisher, DDS_DomainParticipant*,
        const DDS_PublisherQos*, const DDS_PublisherListener*, DDS_StatusMask)
FAULTY2(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_subscriber_qos, DDS_DomainParticipant*,
        DDS_SubscriberQos*)
FAULTY4(DDS_Subscriber*, DDS_DomainParticipant_create_subscriber, DDS_DomainParticipant*,
        const DDS_SubscriberQos*, const DDS_SubscriberListener*, DDS_StatusMask)
FAULTY5(DDS_ContentFilteredTopic*, DDS_DomainParticipant_create_contentfilteredtopic,
        DDS_DomainParticipant*, const char*, DDS_Topic*, const char*, const DDS_StringSeq*)
FAULTY3(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name,
        DDS_DomainParticipant*, DDS_DataWriterQos*, const char*)
FAULTY5(DDS_DataWriter*, DDS_Publisher_create_datawriter, DDS_Publisher*, DDS_Topic*,
        const DDS_DataWriterQos*, const DDS_DataWriterListener*, DDS_StatusMask)
FAULTY3(DDS_ReturnCode_t, DDS_DataWriter_set_listener, DDS_DataWriter*,
        const DDS_DataWriterListener*, DDS_StatusMask)
FAULTY3(DDS_ReturnCode_t, DDS_DomainParticipant_get_default_datareader_qos_w_topic_name,
        DDS_DomainParticipant*, DDS_DataReaderQos*, const char*)
FAULTY5(DDS_DataReader*, DDS_Subscriber_create_datareader, DDS_Subscriber*, DDS_TopicDescription*,
        const DDS_DataReaderQos*, const DDS_DataReaderListener*, DDS_StatusMask)
FAULTY1(DDS_ReturnCode_t, DDS_Subscriber_delete_contained_entities, DDS_Subscriber*)
FAULTY2(DDS_ReturnCode_t, DDS_DomainParticipant_delete_subscriber, DDS_DomainParticipant*,
        DDS_Subscriber*)
FAULTY1(DDS_ReturnCode_t, DDS_Publisher_delete_contained_entities, DDS_Publisher*)
FAULTY2(DDS_ReturnCode_t, DDS_DomainParticipant_delete_publisher, DDS_DomainParticipant*,
        DDS_Publisher*)
FAULTY2(DDS_ReturnCode_t, DDS_DomainParticipant_delete_contentfilteredtopic, DDS_DomainParticipant*,
        DDS_ContentFilteredTopic*)
FAULTY2(DDS_ReturnCode_t, DDS_DomainParticipant_delete_topic, DDS_DomainParticipant*, DDS_Topic*)
FAULTY1(DDS_ReturnCode_t, DDS_DomainParticipant_delete_contained_entities, DDS_DomainParticipant*)
FAULTY2(DDS_ReturnCode_t, DDS_DomainParticipantFactory_delete_participant,
        DDS_DomainParticipantFactory*, DDS_DomainParticipant*)
FAULTY1(QEL_KX_ADMIN_StateDataWriter*, QEL_KX_ADMIN_StateDataWriter_as_datawriter,
        QEL_KX_ADMIN_StateDataWriter*)
FAULTY3(DDS_ReturnCode_t, DDS_DataWriter_write_untypedI, DDS_DataWriter*, const void*,
        const DDS_WriteParams_t*)
FAULTY3(DDS_InstanceHandle_t, DDS_DataWriter_register_instance_untypedI, DDS_DataWriter*,
        const void*, const DDS_WriteParams_t*)
FAULTY4(DDS_ReturnCode_t, DDS_DataReader_read_or_take_untypedI, DDS_DataReader*,
        const DDS_ReadSelectorI*, DDS_UntypedSampleSeqI*, DDS_SampleInfoSeq*)
FAULTY4(DDS_ReturnCode_t, DDS_DataReader_return_loan_untypedI, DDS_DataReader*, void**, DDS_Long,
        DDS_SampleInfoSeq*)

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
