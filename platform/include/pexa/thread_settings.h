/**
 * @file thread_settings.h
 * @brief How a thread is created.
 */
#ifndef PEXA_THREAD_SETTINGS_H
#define PEXA_THREAD_SETTINGS_H

#include "pexa/base.h"
#include "pexa/sequence.h"

PEXA_BEGIN_C

/** Bits of @ref DDS_ThreadSettings_t::mask; they equal the thread options of osapi.h. */
#define DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT 0x00u
#define DDS_THREAD_SETTINGS_FLOATING_POINT 0x01u
#define DDS_THREAD_SETTINGS_STDIO 0x02u
#define DDS_THREAD_SETTINGS_REALTIME_PRIORITY 0x08u
#define DDS_THREAD_SETTINGS_PRIORITY_ENFORCE 0x10u

#define DDS_THREAD_PRIORITY_DEFAULT (-9999999)
#define DDS_THREAD_STACK_SIZE_DEFAULT (-1)

typedef enum DDS_ThreadSettingsCpuRotationKind {
    DDS_THREAD_SETTINGS_CPU_NO_ROTATION = 0,
    DDS_THREAD_SETTINGS_CPU_RR_ROTATION = 1
} DDS_ThreadSettingsCpuRotationKind;

typedef struct DDS_ThreadSettings_t {
    DDS_UnsignedLong mask;
    DDS_Long priority;
    DDS_Long stack_size;
    /** CPU numbers. */
    DDS_LongSeq cpu_list;
    DDS_ThreadSettingsCpuRotationKind cpu_rotation;
} DDS_ThreadSettings_t;

/** Default settings: mask 0, default priority and stack size, no CPU list, no rotation. */
PEXA_API void DDS_ThreadSettings_t_initialize(DDS_ThreadSettings_t* self);
/** Frees the CPU list; NULL is ignored. */
PEXA_API void DDS_ThreadSettings_t_finalize(DDS_ThreadSettings_t* self);
/** Deep copy into initialised settings. @return 1, or 0: NULL argument or no memory. */
PEXA_API DDS_Boolean DDS_ThreadSettings_t_copy(DDS_ThreadSettings_t* self,
                                               const DDS_ThreadSettings_t* source);
/** @return 1 when all fields are equal, the CPU lists element by element. */
PEXA_API DDS_Boolean DDS_ThreadSettings_is_equal(const DDS_ThreadSettings_t* left,
                                                 const DDS_ThreadSettings_t* right);

PEXA_END_C

#endif
