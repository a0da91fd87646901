#include "types/type_support.hpp"

namespace orvane::types {

DDS_ReturnCode_t register_type(DDS_DomainParticipant* participant, const char* type_name,
                               TULVTypePlugin* (*make)()) {
    TULVTypePlugin* plugin = participant == nullptr ? nullptr : make();
    if (plugin == nullptr) {
        return DDS_RETCODE_ERROR;
    }
    const DDS_ReturnCode_t result =
        DDS_DomainParticipant_register_type(participant, type_name, plugin, nullptr);
    delete_plugin(plugin);
    return result;
}

DDS_ReturnCode_t unregister_type(DDS_DomainParticipant* participant, const char* type_name) {
    return participant == nullptr ? DDS_RETCODE_ERROR
                                  : DDS_DomainParticipant_unregister_type(participant, type_name);
}

}  // namespace orvane::types

using orvane::types::TypeSupport;

#define DEFINE_TYPE_SUPPORT(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                                     \
        return TypeSupport<T>::operation arguments;                              \
    }
#define DEFINE_TYPE_SUPPORTS(T) ORVANE_TYPE_SUPPORT_OPERATIONS(DEFINE_TYPE_SUPPORT, T)

extern "C" {

ORVANE_TOPIC_TYPES(DEFINE_TYPE_SUPPORTS)

}  // extern "C"
