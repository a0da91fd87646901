#include "types/type_support.hpp"

using orvane::types::TypeSupportOperations;

#define DEFINE_SUPPORT(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                                \
        return TypeSupportOperations<T>::operation arguments;               \
    }
#define DEFINE_TYPE(T) ORVANE_TYPE_SUPPORT_OPERATIONS(DEFINE_SUPPORT, T)

extern "C" {

ORVANE_TOPIC_TYPES(DEFINE_TYPE)

}  // extern "C"
