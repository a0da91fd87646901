#include "types/value_operations.hpp"

using orvane::types::PluginSupportOperations;
using orvane::types::ValueOperations;

#define DEFINE_VALUE(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                              \
        return ValueOperations<T>::operation arguments;                   \
    }
#define DEFINE_SUPPORT(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                                \
        return PluginSupportOperations<T>::operation arguments;             \
    }
#define DEFINE_TYPE(T)                       \
    ORVANE_VALUE_OPERATIONS(DEFINE_VALUE, T) \
    ORVANE_PRINT_OPERATIONS(DEFINE_SUPPORT, T)
#define DEFINE_DATA(T) ORVANE_PLUGIN_DATA_OPERATIONS(DEFINE_SUPPORT, T)
#define DEFINE_KEY_DATA(T) ORVANE_PLUGIN_KEY_DATA_OPERATIONS(DEFINE_SUPPORT, T)

extern "C" {

ORVANE_TYPES(DEFINE_TYPE)
ORVANE_STRUCTURES(DEFINE_DATA)
ORVANE_KEYED_TOPIC_TYPES(DEFINE_KEY_DATA)

QEL_KX_ADMIN_CommandKind QEL_KX_ADMIN_Command_getDefaultDiscriminator() {
    return QEL_KX_SET_LOG_LEVEL;
}

}  // extern "C"
