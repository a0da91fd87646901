#include "pexa/base.h"

#include <cstring>

const DDS_Duration_t DDS_DURATION_INFINITE = {DDS_DURATION_INFINITE_SEC,
                                              DDS_DURATION_INFINITE_NSEC};
const DDS_Duration_t DDS_DURATION_ZERO = {0, 0};
const DDS_Time_t DDS_TIME_INVALID = {-1, 0xffffffffU};
const DDS_InstanceHandle_t DDS_HANDLE_NIL = {};

DDS_Boolean DDS_InstanceHandle_is_valid(const DDS_InstanceHandle_t* handle) {
    return handle != nullptr && handle->isValid != 0 ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_Boolean DDS_InstanceHandle_equals(const DDS_InstanceHandle_t* left,
                                      const DDS_InstanceHandle_t* right) {
    const bool left_valid = DDS_InstanceHandle_is_valid(left) != 0;
    const bool right_valid = DDS_InstanceHandle_is_valid(right) != 0;
    if (!left_valid || !right_valid) {
        return left_valid == right_valid ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    }
    const bool same =
        left->keyHash.length == right->keyHash.length &&
        std::memcmp(left->keyHash.value, right->keyHash.value, sizeof left->keyHash.value) == 0;
    return same ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}
