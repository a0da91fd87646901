/**
 * @file string.h
 * @brief Heap strings of the middleware.
 */
#ifndef PEXA_STRING_H
#define PEXA_STRING_H

#include "pexa/base.h"

PEXA_BEGIN_C

/** @return an empty string with room for @p length characters and the NUL, or NULL without memory.
 *  All its bytes are 0. Free it with @ref DDS_String_free. */
PEXA_API char* DDS_String_alloc(size_t length);
/** @return a copy of @p text, or NULL (NULL text or no memory). Free with @ref DDS_String_free. */
PEXA_API char* DDS_String_dup(const char* text);
/** Frees a string of this group; NULL is ignored. */
PEXA_API void DDS_String_free(char* text);
/**
 * Frees `*text` and stores a copy of @p replacement there.
 * @return the copy, or NULL with `*text` unchanged: NULL argument or no memory.
 */
PEXA_API char* DDS_String_replace(char** text, const char* replacement);
/**
 * Copies a text with its NUL into a buffer.
 * @param maximumSize size of the buffer in bytes.
 * @return 1, or 0 with the buffer unchanged: NULL argument, or @p source does not fit.
 */
PEXA_API DDS_Boolean DDS_String_copyBounded(char* destination, const char* source,
                                            size_t maximumSize);
/** Compares without regard to ASCII case. @return <0, 0 or >0; NULL sorts before any text. */
PEXA_API int MOSKString_iCompare(const char* left, const char* right);

PEXA_END_C

#endif
