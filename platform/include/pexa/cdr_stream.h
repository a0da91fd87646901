/**
 * @file cdr_stream.h
 * @brief A cursor over a buffer of CDR (OMG Common Data Representation, XCDR version 1).
 *
 * A stream does not own its buffer. It never reads or writes outside of it: an operation that would
 * have to returns 0, and the cursor stays where it was. Alignment counts from the origin, which is
 * the end of the encapsulation header. Not thread-safe.
 */
#ifndef PEXA_CDR_STREAM_H
#define PEXA_CDR_STREAM_H

#include "pexa/base.h"

PEXA_BEGIN_C

/** Encapsulation identifiers (RTPS 10.2.1.2). */
#define QEL_CDR_ENCAPSULATION_ID_CDR_BE 0u
#define QEL_CDR_ENCAPSULATION_ID_CDR_LE 1u
#define QEL_CDR_ENCAPSULATION_ID_PL_CDR_BE 2u
#define QEL_CDR_ENCAPSULATION_ID_PL_CDR_LE 3u
/** The little- or big-endian plain identifier of this host. */
#define QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE QEL_CDR_ENCAPSULATION_ID_CDR_LE
/** Bytes of the encapsulation header. */
#define QEL_CDR_ENCAPSULATION_HEADER_SIZE 4u

/** Parameter ids with a meaning of their own (XTypes 7.4.1.2.1, RTPS 9.6.3). */
#define QEL_CDR_PARAMETER_ID_EXTENDED 0x3F01u
#define QEL_CDR_PARAMETER_ID_LIST_END 0x3F02u
#define QEL_CDR_PARAMETER_ID_IGNORE 0x3F03u
/** A type whose largest sample has this size or more is written with extended member headers. */
#define QEL_CDR_EXTENDED_HEADER_THRESHOLD 65536u

typedef struct QELCdrStream {
    char* buffer;
    size_t size;
    /** Bytes from the start of the buffer to the cursor. */
    size_t position;
    /** Position from which alignment is counted. */
    size_t origin;
    /** Nonzero: numbers are little-endian. */
    QELBool littleEndian;
    /** The identifier last written or read. */
    DDS_UnsignedShort encapsulationId;
    /** Options field of the encapsulation header: the one to write, or the one last read. */
    DDS_UnsignedShort encapsulationOptions;
    /** Set while member headers of a mutable type are written in the extended form. */
    QELBool extendedHeaders;
    /** Set when the outermost mutable type has chosen the form of the member headers. */
    QELBool headerFormDecided;
    /** Rejection mark: the sample's type cannot hold a value that was read. */
    QELBool rejected;
} QELCdrStream;

/** Puts the cursor at the front of @p buffer. Numbers are little-endian; all other members are 0.
 */
PEXA_API void QELCdrStream_init(QELCdrStream* self, char* buffer, size_t size);
/** Moves cursor and origin to the front. Forgets the form of member headers and the rejection mark.
 */
PEXA_API void QELCdrStream_reset(QELCdrStream* self);
/** @return bytes between cursor and end. */
PEXA_API size_t QELCdrStream_remaining(const QELCdrStream* self);
/** Writes zeros up to the next multiple of @p alignment (1, 2 or 4), counted from the origin. */
PEXA_API QELBool QELCdrStream_alignForWrite(QELCdrStream* self, size_t alignment);
/** Skips the bytes up to the next multiple of @p alignment (1, 2 or 4), counted from the origin. */
PEXA_API QELBool QELCdrStream_alignForRead(QELCdrStream* self, size_t alignment);

/**
 * @name Encapsulation header
 * @{
 */
/** Writes the identifier and the options, most significant byte first. Sets the byte order: an odd
 *  identifier means little-endian. Moves the origin behind the header. Refuses ids above 3. */
PEXA_API QELBool QELCdrStream_serializeEncapsulation(QELCdrStream* self, DDS_UnsignedShort id);
/** Reads the header and sets byte order and origin by it. Refuses ids above 3. */
PEXA_API QELBool QELCdrStream_deserializeEncapsulation(QELCdrStream* self);
/** @} */

/**
 * @name Values
 * @{
 */
PEXA_API QELBool QELCdrStream_serializeUnsignedShort(QELCdrStream* self, DDS_UnsignedShort value);
PEXA_API QELBool QELCdrStream_deserializeUnsignedShort(QELCdrStream* self,
                                                       DDS_UnsignedShort* value);
PEXA_API QELBool QELCdrStream_serializeLong(QELCdrStream* self, DDS_Long value);
PEXA_API QELBool QELCdrStream_deserializeLong(QELCdrStream* self, DDS_Long* value);
/**
 * Writes a length of 32 bits, the characters and a NUL. The length counts the NUL.
 * @param maximumLength most characters without the NUL; a longer text is refused.
 */
PEXA_API QELBool QELCdrStream_serializeString(QELCdrStream* self, const char* text,
                                              DDS_UnsignedLong maximumLength);
/**
 * Reads a string. Refuses a length of 0 or above maximumLength + 1, and a NUL that is missing at
 * the end or stands before it.
 * @param text buffer of maximumLength + 1 bytes.
 */
PEXA_API QELBool QELCdrStream_deserializeString(QELCdrStream* self, char* text,
                                                DDS_UnsignedLong maximumLength);
/** Skips a string under the same rules. */
PEXA_API QELBool QELCdrStream_skipString(QELCdrStream* self, DDS_UnsignedLong maximumLength);
/** Skips @p count bytes. */
PEXA_API QELBool QELCdrStream_skipBytes(QELCdrStream* self, size_t count);
/** @} */

/**
 * @name Member headers of mutable types
 * Parameter-list headers, aligned to 4. Short form: 16-bit id with the must-understand flag 0x4000,
 * 16-bit length. Extended form: the id 0x3F01 with the must-understand flag and length 8, then
 * 32-bit member id with the flag 0x40000000 and 32-bit length.
 * @{
 */
/** A member whose header is written and whose length is not known yet. */
typedef struct QELCdrOpenParameter {
    size_t lengthPosition;
    size_t valuePosition;
    QELBool extended;
} QELCdrOpenParameter;

/** A member header that was read. */
typedef struct QELCdrParameterHeader {
    DDS_UnsignedLong id;
    DDS_UnsignedLong length;
    QELBool mustUnderstand;
    /** Nonzero for the short id 0x3F02, which ends the list. */
    QELBool isListEnd;
    /** Nonzero for the short id 0x3F03: the member is to be skipped. */
    QELBool isIgnored;
    size_t valuePosition;
} QELCdrParameterHeader;

/** Writes a header with length 0 for member @p id, in the extended form if @p extended. */
PEXA_API QELBool QELCdrStream_serializeParameterHeader(QELCdrStream* self,
                                                       QELCdrOpenParameter* parameter,
                                                       QELBool extended, DDS_UnsignedLong id,
                                                       QELBool mustUnderstand);
/** Writes the length into the header: the bytes between header and cursor. @return 0 when the form
 *  of the header has no room for it. */
PEXA_API QELBool QELCdrStream_serializeParameterLength(QELCdrStream* self,
                                                       const QELCdrOpenParameter* parameter);
/** Writes the list-end header: id 0x3F02, must-understand set, length 0. */
PEXA_API QELBool QELCdrStream_serializeListEnd(QELCdrStream* self);
/** Reads a header of either form. The length of a list end is ignored and given as 0. @return 0
 * when it is incomplete, its length exceeds the buffer, or an extended header has less than 8
 * bytes. */
PEXA_API QELBool QELCdrStream_deserializeParameterHeader(QELCdrStream* self,
                                                         QELCdrParameterHeader* header);
/** Moves to the end of the member by the length in its header, however much of it was read. */
PEXA_API QELBool QELCdrStream_moveToNextParameterHeader(QELCdrStream* self,
                                                        const QELCdrParameterHeader* header);
/** @} */

/** MD5 digest (RFC 1321) of @p size bytes. */
PEXA_API void QELMd5_compute(const void* bytes, size_t size, DDS_Octet digest[16]);

PEXA_END_C

#endif
