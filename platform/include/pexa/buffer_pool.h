/**
 * @file buffer_pool.h
 * @brief A pool of buffers of one size.
 *
 * A pool is not thread-safe by itself: its owner serialises the operations unless the property
 * asks for a lock of the pool's own.
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
    /** Most buffers that ever exist, @ref DDS_LENGTH_UNLIMITED or at least @ref initial. */
    DDS_Long maximal;
    /** Buffers added when none is left: 1 or more, or @ref DDS_LENGTH_UNLIMITED to double. */
    DDS_Long increment;
    /** Nonzero: the pool locks itself. */
    QELBool multiThreaded;
} MOSKFastBufferPoolProperty;

/** initial 32, maximal unlimited, increment doubling, no lock. */
PEXA_API extern const MOSKFastBufferPoolProperty MOSK_FAST_BUFFER_POOL_PROPERTY_DEFAULT;

/** Called once for each buffer when it is made (@return 0 fails its making) or when it is freed. */
typedef DDS_Boolean (*MOSKFastBufferPoolInitialize)(void* buffer, void* userData);
typedef void (*MOSKFastBufferPoolFinalize)(void* buffer, void* userData);

/**
 * @param elementSize bytes of one buffer, 1 or more. @param alignment a power of two.
 * @param property NULL means the default.
 * @return the pool with its initial buffers, or NULL: bad argument or no memory.
 */
PEXA_API MOSKFastBufferPool* MOSKFastBufferPool_new(size_t elementSize, size_t alignment,
                                                    const MOSKFastBufferPoolProperty* property);
/** As @ref MOSKFastBufferPool_new, with construction and destruction of each buffer's content. */
PEXA_API MOSKFastBufferPool* MOSKFastBufferPool_newWithCallbacks(
    size_t elementSize, size_t alignment, const MOSKFastBufferPoolProperty* property,
    MOSKFastBufferPoolInitialize initialize, MOSKFastBufferPoolFinalize finalize, void* userData);
/** Frees the pool and every buffer of it, also those still lent; NULL is ignored. */
PEXA_API void MOSKFastBufferPool_delete(MOSKFastBufferPool* pool);
/** @return a buffer (its content as it was returned), or NULL: exhausted or no memory. */
PEXA_API void* MOSKFastBufferPool_getBuffer(MOSKFastBufferPool* pool);
/** Gives a buffer of this pool back; NULL is ignored. */
PEXA_API void MOSKFastBufferPool_returnBuffer(MOSKFastBufferPool* pool, void* buffer);

PEXA_END_C

#endif
