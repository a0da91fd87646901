#include "pexa/thread_settings.h"

#include <cstring>
#include <functional>

#include "pexa/osapi.h"
#include "platform/dds/interface/standard_sequences.hpp"
#include "platform/internal/number_of.hpp"

static_assert(DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT == QEL_OSAPI_THREAD_OPTION_DEFAULT &&
              DDS_THREAD_SETTINGS_FLOATING_POINT == QEL_OSAPI_THREAD_OPTION_FLOATING_POINT &&
              DDS_THREAD_SETTINGS_STDIO == QEL_OSAPI_THREAD_OPTION_STDIO &&
              DDS_THREAD_SETTINGS_REALTIME_PRIORITY == QEL_OSAPI_THREAD_OPTION_REALTIME_PRIORITY &&
              DDS_THREAD_SETTINGS_PRIORITY_ENFORCE == QEL_OSAPI_THREAD_OPTION_PRIORITY_ENFORCE);

namespace pexa::dds {
namespace {

void initialize(DDS_ThreadSettings_t* self) {
    if (self == nullptr) {
        return;
    }
    self->mask = DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT;
    self->priority = DDS_THREAD_PRIORITY_DEFAULT;
    self->stack_size = DDS_THREAD_STACK_SIZE_DEFAULT;
    self->cpu_rotation = DDS_THREAD_SETTINGS_CPU_NO_ROTATION;
    DDS_LongSeq_initialize(&self->cpu_list);
}

DDS_Boolean copy(DDS_ThreadSettings_t* self, const DDS_ThreadSettings_t* source) {
    if (self == nullptr || source == nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    // The list comes first, because only its copy can fail.
    if (self != source && DDS_LongSeq_copy(&self->cpu_list, &source->cpu_list) == nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    self->mask = source->mask;
    self->priority = source->priority;
    self->stack_size = source->stack_size;
    // Not an assignment: a caller may have stored a number that is no value of the enumeration.
    std::memcpy(&self->cpu_rotation, &source->cpu_rotation, sizeof self->cpu_rotation);
    return DDS_BOOLEAN_TRUE;
}

bool equal(const DDS_ThreadSettings_t* left, const DDS_ThreadSettings_t* right) {
    if (left == nullptr || right == nullptr) {
        return left == right;
    }
    return left->mask == right->mask && left->priority == right->priority &&
           left->stack_size == right->stack_size &&
           number_of(left->cpu_rotation) == number_of(right->cpu_rotation) &&
           equal_sequences(left->cpu_list, right->cpu_list, std::equal_to<>());
}

}  // namespace
}  // namespace pexa::dds

extern "C" {

void DDS_ThreadSettings_t_initialize(DDS_ThreadSettings_t* self) {
    pexa::dds::initialize(self);
}

void DDS_ThreadSettings_t_finalize(DDS_ThreadSettings_t* self) {
    if (self != nullptr) {
        DDS_LongSeq_finalize(&self->cpu_list);
    }
}

DDS_Boolean DDS_ThreadSettings_t_copy(DDS_ThreadSettings_t* self,
                                      const DDS_ThreadSettings_t* source) {
    return pexa::dds::copy(self, source);
}

DDS_Boolean DDS_ThreadSettings_is_equal(const DDS_ThreadSettings_t* left,
                                        const DDS_ThreadSettings_t* right) {
    return pexa::dds::equal(left, right);
}
}
