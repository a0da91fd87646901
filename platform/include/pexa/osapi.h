/**
 * @file osapi.h
 * @brief The operating-system layer: heap, clock, semaphores, threads and the global lock.
 */
#ifndef PEXA_OSAPI_H
#define PEXA_OSAPI_H

#include "pexa/base.h"

PEXA_BEGIN_C

/**
 * @name Heap
 * All memory of the middleware and of libraries on top of it comes from here. Allocation failure
 * is a normal result (NULL) and is never reported by the heap itself.
 * @{
 */
/** @return @p size bytes aligned for any record, not initialised, or NULL. Size 0 gives NULL. */
PEXA_API void* QELOsapiHeap_allocateBytes(size_t size);
/** Frees memory that any operation of this group allocated; NULL is ignored. */
PEXA_API void QELOsapiHeap_freeBytes(void* bytes);
/** @return @p count elements of @p size bytes, zero-filled, or NULL (also on overflow). */
PEXA_API void* QELOsapiHeap_allocateArrayOfSize(size_t count, size_t size);
/** Frees an array of @ref QELOsapiHeap_allocateArrayOfSize; NULL is ignored. */
PEXA_API void QELOsapiHeap_freeArray(void* array);
/** @return memory of @p size bytes aligned to @p alignment (a power of two), or NULL. */
PEXA_API void* QELOsapiHeap_allocateBufferAligned(size_t size, size_t alignment);
/** Frees a buffer of @ref QELOsapiHeap_allocateBufferAligned; NULL is ignored. */
PEXA_API void QELOsapiHeap_freeBufferAligned(void* buffer);
/** Allocates one record for @ref QELOsapiHeap_allocateStructure, not initialised. */
PEXA_API void* QELOsapiHeap_allocateStructureOfSize(size_t size);
/** Frees a record for @ref QELOsapiHeap_freeStructure; NULL is ignored. */
PEXA_API void QELOsapiHeap_freeStructureBytes(void* structure);
/** Stores a new record of type @p Type (not initialised) or NULL into `*result`. */
#define QELOsapiHeap_allocateStructure(result, Type) \
    (*(result) = (Type*)QELOsapiHeap_allocateStructureOfSize(sizeof(Type)))
/** Frees a record of @ref QELOsapiHeap_allocateStructure; NULL is ignored. */
#define QELOsapiHeap_freeStructure(structure) QELOsapiHeap_freeStructureBytes(structure)
/** @} */

/**
 * @name Time
 * @{
 */
/** Seconds and a binary fraction of a second (unit 2^-32 s), as NTP writes time. */
typedef struct QELNtpTime {
    DDS_Long sec;
    DDS_UnsignedLong frac;
} QELNtpTime;

/** Fraction units of one millisecond. */
#define QEL_NTP_TIME_FRAC_PER_MILLISECOND ((DDS_UnsignedLong)4294912)

/**
 * Converts to seconds and nanoseconds and rounds up. The nanoseconds are fraction x 2^29 /
 * 2305843009. A full second is carried over, unless the seconds are at their maximum.
 */
PEXA_API DDS_Time_t QELNtpTime_toTime(QELNtpTime time);

/**
 * The wall clock of the host. A clock has no state: a thread may read it while another thread
 * deletes it, and afterwards.
 */
typedef struct QELSystemClock QELSystemClock;

/** @return a clock, or NULL when the host's clock cannot be read. */
PEXA_API QELSystemClock* QELSystemClock_new(void);
/** Ends the use of a clock; NULL is ignored. */
PEXA_API void QELSystemClock_delete(QELSystemClock* clock);
/**
 * Reads the wall clock (comparable between hosts as far as their clocks are).
 * @return 1 and the time in `*now`, or 0 with `*now` untouched: NULL argument or clock failure.
 */
PEXA_API QELBool QELSystemClock_getTime(QELSystemClock* clock, QELNtpTime* now);
/** @} */

/**
 * @name Semaphores
 * @{
 */
/** Kind: a recursive mutex; only the thread that took it may give it. */
#define QEL_OSAPI_SEMAPHORE_KIND_MUTEX 0x0202000A
/** Kind: counting; give adds a unit, take waits for a unit and removes it. */
#define QEL_OSAPI_SEMAPHORE_KIND_COUNTING 0x02020009
/** Kind: binary; give sets it, take waits until it is set and clears it. */
#define QEL_OSAPI_SEMAPHORE_KIND_BINARY 0x02020008

#define QEL_OSAPI_SEMAPHORE_STATUS_OK 0x020200F8
#define QEL_OSAPI_SEMAPHORE_STATUS_TIMEOUT 0x020200F9
#define QEL_OSAPI_SEMAPHORE_STATUS_ERROR 0x020200FF

typedef struct QELOsapiSemaphore QELOsapiSemaphore;
typedef int QELOsapiSemaphoreKind;
typedef int QELOsapiSemaphoreStatus;

/** Properties of a new semaphore. */
typedef struct QELOsapiSemaphoreProperty {
    /** Units at the start, 0 or more (counting kind; 0 or 1 for the binary kind). */
    DDS_Long initialCount;
    /**
     * Counting kind. A thread that took a unit a moment ago does not wait to be woken. For 1.6 ms
     * it looks for the next unit by itself: about when it may come, judged by the last one, and
     * from then on every 0.08 ms. A give wakes it earlier only when the count reaches this number
     * (1 or more). 0: no give wakes it earlier.
     */
    DDS_Long wakeCount;
} QELOsapiSemaphoreProperty;

/**
 * @param property NULL means zeros.
 * @return NULL: unknown kind, a number out of its range, or no memory.
 */
PEXA_API QELOsapiSemaphore* QELOsapiSemaphore_new(QELOsapiSemaphoreKind kind,
                                                  const QELOsapiSemaphoreProperty* property);
/** Frees a semaphore on which no thread waits; NULL is ignored. */
PEXA_API void QELOsapiSemaphore_delete(QELOsapiSemaphore* semaphore);
/**
 * Waits for the semaphore. A cancellation of the thread does not end the wait.
 * @param timeout the longest wait, by the monotonic clock; NULL waits for ever, zero does not wait.
 * @return OK, TIMEOUT, or ERROR (NULL semaphore or system failure).
 */
PEXA_API QELOsapiSemaphoreStatus QELOsapiSemaphore_take(QELOsapiSemaphore* semaphore,
                                                        const QELNtpTime* timeout);
/**
 * Takes units of a semaphore of the counting kind, as many as there are but no more than @p most,
 * without waiting.
 * @return the number of units, 0 … most; 0 also for NULL or another kind.
 */
PEXA_API DDS_Long QELOsapiSemaphore_takeUpTo(QELOsapiSemaphore* semaphore, DDS_Long most);
/**
 * Gives the semaphore.
 * @return OK, or ERROR: NULL, a mutex that this thread does not hold, a count at its maximum.
 */
PEXA_API QELOsapiSemaphoreStatus QELOsapiSemaphore_give(QELOsapiSemaphore* semaphore);
/**
 * Gives a semaphore of the counting kind a unit if it has none.
 * @return OK, also when there was a unit, or ERROR: NULL or another kind.
 */
PEXA_API QELOsapiSemaphoreStatus QELOsapiSemaphore_giveIfEmpty(QELOsapiSemaphore* semaphore);
/** @} */

/**
 * @name Threads
 * @{
 */
typedef struct QELOsapiThread QELOsapiThread;
typedef void* (*QELOsapiThreadFunction)(void* parameter);

/** Option bits of a new thread. */
#define QEL_OSAPI_THREAD_OPTION_DEFAULT 0x00u
#define QEL_OSAPI_THREAD_OPTION_FLOATING_POINT 0x01u
#define QEL_OSAPI_THREAD_OPTION_STDIO 0x02u
/** Schedule with SCHED_FIFO instead of the default policy. */
#define QEL_OSAPI_THREAD_OPTION_REALTIME_PRIORITY 0x08u
/** Creation fails when the system refuses the priority, instead of falling back to the default. */
#define QEL_OSAPI_THREAD_OPTION_PRIORITY_ENFORCE 0x10u

#define QEL_OSAPI_THREAD_PRIORITY_DEFAULT (-9999999)
#define QEL_OSAPI_THREAD_STACK_SIZE_DEFAULT (-1)

/**
 * Starts a thread.
 * @param name shows in `ps -L`, cut to 15 characters by Linux.
 * @param priority @ref QEL_OSAPI_THREAD_PRIORITY_DEFAULT, or a SCHED_FIFO priority together with
 *   the option REALTIME_PRIORITY. Without that option Linux refuses any other priority.
 * @param options bits above. When the system refuses the priority, the thread starts with the
 *   default one and the log gets a warning; with PRIORITY_ENFORCE the creation fails.
 * @param stackSize bytes, raised to the system's minimum, or the default.
 * @param cpuBitmap NULL, or 1024 bits (16 x uint64_t, CPU 0 is bit 0 of word 0) of allowed CPUs.
 * @return the running thread, or NULL: bad argument, no memory, refused by the system.
 */
PEXA_API QELOsapiThread* QELOsapiThread_new(const char* name, DDS_Long priority,
                                            DDS_UnsignedLong options, DDS_Long stackSize,
                                            const uint64_t* cpuBitmap,
                                            QELOsapiThreadFunction function, void* parameter);
/** Waits until the thread's function has returned, then frees the record; NULL is ignored. A
 * cancellation of the calling thread does not end the wait. */
PEXA_API void QELOsapiThread_delete(QELOsapiThread* thread);
/** @return the kernel's id of the calling thread, never 0 on success; 0 on failure. */
PEXA_API DDS_UnsignedLong QELOsapiThread_getCurrentThreadID(void);
/** Sleeps at least for @p time; NULL or negative returns at once. A cancellation ends the sleep. */
PEXA_API void QELOsapiThread_sleep(const QELNtpTime* time);
/** Sleeps for @p duration. A cancellation ends the sleep. @return OK, or BAD_PARAMETER for NULL,
 * negative or infinite. */
PEXA_API DDS_ReturnCode_t PEXA_Utility_sleep(const DDS_Duration_t* duration);
/** @} */

/**
 * @name Global lock
 * One recursive mutex of the process. Creation and finalisation of everything shared hold it.
 * A thread that is inside a call of a logger device (see @ref QELOsapi_enterDeviceCall) waits for
 * it 10 ms at most and then fails. Such a thread may hold locks of the engine, and the owner of the
 * global lock may be waiting for these.
 * @{
 */
/** @return 0 with the lock held, or nonzero without it. */
PEXA_API int QELOsapi_global_lock(void);
/**
 * As @ref QELOsapi_global_lock, for a thread that the owner of the lock may be waiting for.
 * @param abandon read atomically before each sleep while the call waits; the call fails when the
 *   flag is nonzero. A sleep takes 1 ms at first, twice as long each time, and 256 ms at most. Must
 *   stay valid during the call. With NULL this is @ref QELOsapi_global_lock.
 * @return 0 with the lock held, or nonzero without it.
 */
PEXA_API int QELOsapi_global_lockUnless(const DDS_Long* abandon);
/** @return 0, or nonzero when the calling thread does not hold the lock. */
PEXA_API int QELOsapi_global_unlock(void);
/** Marks the calling thread as being inside a call of a logger device. Marks nest. */
PEXA_API void QELOsapi_enterDeviceCall(void);
/** Ends the innermost mark of @ref QELOsapi_enterDeviceCall. */
PEXA_API void QELOsapi_leaveDeviceCall(void);
/** @return nonzero while the calling thread is inside a device call. */
PEXA_API QELBool QELOsapi_isInDeviceCall(void);
/** @} */

/**
 * @name Fork
 * A child process that fork() makes has a copy of the memory, but only the one thread that forked.
 * The threads of the engine are missing, and its locks stay as they were at that moment. So a child
 * of a process that used the engine can never use it. In each child the global lock is free unless
 * the thread that forked holds it. Processes that are made without fork(), as by posix_spawn() and
 * system(), and programs that are executed are not concerned.
 * @{
 */
/** Tells that the engine is in use until @ref QELOsapi_endEngineUse. Uses add up. Thread-safe. */
PEXA_API void QELOsapi_beginEngineUse(void);
/** Ends a use that began with @ref QELOsapi_beginEngineUse. Thread-safe. */
PEXA_API void QELOsapi_endEngineUse(void);
/** @return nonzero in a process that was forked while the engine was in use, and in its children.
 *  Thread-safe. */
PEXA_API QELBool QELOsapi_isEngineLost(void);
/**
 * Calls @p function in each child process, on its thread, before fork() returns there. Functions
 * are called in the order of this call, after the global lock is free. It cannot be taken back.
 * @return 0, or nonzero when there are 16 functions already.
 */
PEXA_API int QELOsapi_callInChild(void (*function)(void));
/** @} */

/**
 * @name Standard output
 * All lines of the middleware and of libraries on top of it go there by these operations. A line
 * is written as a whole. It raises no SIGPIPE when nobody reads the pipe any more, and the thread
 * is not cancelled meanwhile. A thread may wait for a standard output that blocks, except inside a
 * device call (@ref QELOsapi_enterDeviceCall) and inside a call by the engine. There a line that
 * would have to wait is dropped. The next line that is printed follows a line with the number of
 * the dropped lines.
 * @{
 */
/** Prints like printf. Where the thread must not wait, a text of more than 4096 bytes is cut. */
PEXA_API void QELOsapi_printLine(const char* format, ...) __attribute__((format(printf, 1, 2)));
/**
 * Copies the last lines that the calling thread has printed, and forgets them. A thread keeps 511
 * bytes; what it prints when these are full is not kept.
 * @param buffer gets the lines, each with its newline, and a NUL behind them; NULL only forgets
 * @param size of the buffer, in bytes. Lines that do not fit are cut off.
 * @return the number of bytes before the NUL.
 */
PEXA_API DDS_UnsignedLong QELOsapi_takeLines(char* buffer, DDS_UnsignedLong size);
/** Flushes the buffer of standard output, as far as the thread may wait for that. */
PEXA_API void QELOsapi_flushLines(void);
/** Marks the calling thread as being called by the engine. Marks nest. */
PEXA_API void QELOsapi_enterEngineCall(void);
/** Ends the innermost mark of @ref QELOsapi_enterEngineCall. */
PEXA_API void QELOsapi_leaveEngineCall(void);
/** @} */

PEXA_END_C

#endif
