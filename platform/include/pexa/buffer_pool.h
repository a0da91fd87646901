/**
 * @file buffer_pool.h
 * @brief A pool of buffers of one size.
 *
 * A pool is thread-safe only if its property asks for a lock. Otherwise its owner must make sure
 * that one thread at a time uses it.
 */
#ifndef PEXA_BUFFER_POOL_H
#define PEXA_BUFFER_POOL_H

#include "pexa/base.h"

PEXA_BEGIN_C

typedef struct MOSKFastBufferPool MOSKFastBufferPool;

/** How a pool grows. */
typedef struct MOSKFastBufferPoolProperty {
    /** Buffers made at creation, 0 or more. */
    DDS_Long initial;
    /** Most buffers at a time: @ref DDS_LENGTH_UNLIMITED, or at least @ref initial. */
    DDS_Long maximal;
    /** Buffers added when all are lent: 1 or more, or @ref DDS_LENGTH_UNLIMITED to double. */
    DDS_Long increment;
    /** Nonzero: the pool has a lock of its own. */
    QELBool multiThreaded;
} MOSKFastBufferPoolProperty;

/** initial 32, maximal unlimited, increment doubling, no lock. */
PEXA_API extern const MOSKFastBufferPoolProperty MOSK_FAST_BUFFER_POOL_PROPERTY_DEFAULT;

/** Called once for each new buffer. @return 0 when the buffer cannot be used. */
typedef DDS_Boolean (*MOSKFastBufferPoolInitialize)(void* buffer, void* userData);
/** Called once for each buffer before it is freed. */
typedef void (*MOSKFastBufferPoolFinalize)(void* buffer, void* userData);

/**
 * @param elementSize bytes of one buffer, 1 or more. @param alignment a power of two.
 * @param property NULL means the default.
 * @return the pool with its initial buffers, or NULL: bad argument or no memory.
 */
PEXA_API MOSKFastBufferPool* MOSKFastBufferPool_new(size_t elementSize, size_t alignment,
                                                    const MOSKFastBufferPoolProperty* property);
/**
 * As @ref MOSKFastBufferPool_new.
 * @param initialize NULL, or prepares the content of each buffer.
 * @param finalize NULL, or ends the content of each buffer.
 */
PEXA_API MOSKFastBufferPool* MOSKFastBufferPool_newWithCallbacks(
    size_t elementSize, size_t alignment, const MOSKFastBufferPoolProperty* property,
    MOSKFastBufferPoolInitialize initialize, MOSKFastBufferPoolFinalize finalize, void* userData);
/** Frees the pool and all its buffers, lent ones too; NULL is ignored. */
PEXA_API void MOSKFastBufferPool_delete(MOSKFastBufferPool* pool);
/** @return a buffer with the content that it had when it was returned, or NULL: all are lent, or no
 *  memory. */
PEXA_API void* MOSKFastBufferPool_getBuffer(MOSKFastBufferPool* pool);
/** Gives a buffer of this pool back; NULL is ignored. */
PEXA_API void MOSKFastBufferPool_returnBuffer(MOSKFastBufferPool* pool, void* buffer);

PEXA_END_C

#endif
