/**
 * @file base.h
 * @brief Elementary types, return codes and time of the middleware's C interface.
 *
 * Every header of this folder compiles as C11 and as C++20. The following holds unless a comment
 * says otherwise. Any thread may call an operation. A string argument is NUL-terminated and may be
 * freed after the call. The middleware owns a record that an operation returns a pointer to.
 *
 * A thread may be cancelled while it is inside an operation, as long as its cancellation is
 * deferred (PTHREAD_CANCEL_DEFERRED, the default). The operation is then completed first.
 * Operations that say so, whose purpose is to wait, end early.
 */
#ifndef PEXA_BASE_H
#define PEXA_BASE_H

#include <stddef.h>
#include <stdint.h>

/** Marks a symbol as part of the exported interface of its library. */
#define PEXA_API __attribute__((visibility("default")))

/** Opens and closes a block of declarations with C linkage. */
#ifdef __cplusplus
#define PEXA_BEGIN_C extern "C" {
#define PEXA_END_C }
#else
#define PEXA_BEGIN_C
#define PEXA_END_C
#endif

PEXA_BEGIN_C

/** Truth value of one byte: 0 is false, 1 is true. */
typedef unsigned char DDS_Boolean;
#define DDS_BOOLEAN_FALSE ((DDS_Boolean)0)
#define DDS_BOOLEAN_TRUE ((DDS_Boolean)1)

/** Truth value of four bytes, for members of public records. */
typedef int32_t QELBool;

typedef char DDS_Char;
typedef unsigned char DDS_Octet;
typedef int16_t DDS_Short;
typedef uint16_t DDS_UnsignedShort;
typedef int32_t DDS_Long;
typedef uint32_t DDS_UnsignedLong;
typedef int64_t DDS_LongLong;
typedef uint64_t DDS_UnsignedLongLong;
/** Every enumeration is encoded as a signed 32-bit number. */
typedef int32_t DDS_Enum;

/** Results of DDS operations, with the numbers of the DDS standard. */
typedef enum DDS_ReturnCode_t {
    DDS_RETCODE_OK = 0,
    DDS_RETCODE_ERROR = 1,
    DDS_RETCODE_UNSUPPORTED = 2,
    DDS_RETCODE_BAD_PARAMETER = 3,
    DDS_RETCODE_PRECONDITION_NOT_MET = 4,
    DDS_RETCODE_OUT_OF_RESOURCES = 5,
    DDS_RETCODE_NOT_ENABLED = 6,
    DDS_RETCODE_IMMUTABLE_POLICY = 7,
    DDS_RETCODE_INCONSISTENT_POLICY = 8,
    DDS_RETCODE_ALREADY_DELETED = 9,
    DDS_RETCODE_TIMEOUT = 10,
    DDS_RETCODE_NO_DATA = 11,
    DDS_RETCODE_ILLEGAL_OPERATION = 12,
    /** The permissions of the participant (DDS Security) do not allow it. */
    DDS_RETCODE_NOT_ALLOWED_BY_SECURITY = 1000
} DDS_ReturnCode_t;

/** A point in time: seconds since 1970-01-01 UTC and nanoseconds 0 … 999999999. */
typedef struct DDS_Time_t {
    DDS_Long sec;
    DDS_UnsignedLong nanosec;
} DDS_Time_t;

/** A span of time; @ref DDS_DURATION_INFINITE never ends. */
typedef struct DDS_Duration_t {
    DDS_Long sec;
    DDS_UnsignedLong nanosec;
} DDS_Duration_t;

/** Value of both members that makes a duration infinite. */
#define DDS_DURATION_INFINITE_SEC ((DDS_Long)0x7fffffff)
#define DDS_DURATION_INFINITE_NSEC ((DDS_UnsignedLong)0x7fffffff)
PEXA_API extern const DDS_Duration_t DDS_DURATION_INFINITE;
PEXA_API extern const DDS_Duration_t DDS_DURATION_ZERO;
/** Both members are -1 and 0xffffffff: "no time given, take the present". */
PEXA_API extern const DDS_Time_t DDS_TIME_INVALID;

/** Stands for "no limit" as a number of samples, instances or bytes. */
#define DDS_LENGTH_UNLIMITED ((DDS_Long)-1)

/** Number of a DDS domain, 0 … 232 on the default port mapping. */
typedef DDS_Long DDS_DomainId_t;

/** A key hash of 16 bytes as RTPS defines it. @ref length is 16 when the hash has been computed. */
typedef struct QELKeyHash {
    DDS_Octet value[16];
    DDS_UnsignedLong length;
} QELKeyHash;

/** Identifies an instance of a keyed topic (by its key hash) or an entity (by its GUID). */
typedef struct DDS_InstanceHandle_t {
    QELKeyHash keyHash;
    DDS_Boolean isValid;
} DDS_InstanceHandle_t;

/** The handle that identifies nothing. All its bytes are zero. */
PEXA_API extern const DDS_InstanceHandle_t DDS_HANDLE_NIL;

/** @return nonzero when @p handle identifies something; NULL counts as nothing. */
PEXA_API DDS_Boolean DDS_InstanceHandle_is_valid(const DDS_InstanceHandle_t* handle);
/** @return nonzero when both handles identify the same thing, or both identify nothing. */
PEXA_API DDS_Boolean DDS_InstanceHandle_equals(const DDS_InstanceHandle_t* left,
                                               const DDS_InstanceHandle_t* right);

PEXA_END_C

#endif
