#include <cstring>

#include "pexa/base.h"
#include "platform/base/result.hpp"

const DDS_InstanceHandle_t DDS_HANDLE_NIL = {};

namespace pexa::base {
namespace {

bool is_valid(const DDS_InstanceHandle_t* handle) {
    return handle != nullptr && handle->isValid != 0;
}

bool are_equal(const DDS_InstanceHandle_t* left, const DDS_InstanceHandle_t* right) {
    if (!is_valid(left) || !is_valid(right)) {
        return is_valid(left) == is_valid(right);
    }
    return left->keyHash.length == right->keyHash.length &&
           std::memcmp(left->keyHash.value, right->keyHash.value, sizeof left->keyHash.value) == 0;
}

}  // namespace
}  // namespace pexa::base

DDS_Boolean DDS_InstanceHandle_is_valid(const DDS_InstanceHandle_t* handle) {
    return pexa::base::to_boolean(pexa::base::is_valid(handle));
}

DDS_Boolean DDS_InstanceHandle_equals(const DDS_InstanceHandle_t* left,
                                      const DDS_InstanceHandle_t* right) {
    return pexa::base::to_boolean(pexa::base::are_equal(left, right));
}
