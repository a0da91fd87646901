/**
 * @file typecode.h
 * @brief Type codes: the description of a data type that its plugin carries.
 *
 * Type codes are static records. They live as long as the process.
 */
#ifndef PEXA_TYPECODE_H
#define PEXA_TYPECODE_H

#include "pexa/base.h"

PEXA_BEGIN_C

typedef enum DDS_TCKind {
    DDS_TK_NULL = 0,
    DDS_TK_LONG = 2,
    DDS_TK_STRUCT = 10,
    DDS_TK_UNION = 11,
    DDS_TK_ENUM = 12,
    DDS_TK_STRING = 13,
    DDS_TK_SEQUENCE = 14,
    DDS_TK_ARRAY = 15
} DDS_TCKind;

/** How a type may change. Members of a mutable type have a header each when they are encoded. */
typedef enum DDS_ExtensibilityKind {
    DDS_FINAL_EXTENSIBILITY = 0,
    DDS_EXTENSIBLE_EXTENSIBILITY = 1,
    DDS_MUTABLE_EXTENSIBILITY = 2
} DDS_ExtensibilityKind;

typedef enum DDS_TypeCodeMemberFlags {
    DDS_TYPECODE_NONKEY_REQUIRED_MEMBER = 2,
    DDS_TYPECODE_KEY_MEMBER = 3
} DDS_TypeCodeMemberFlags;

typedef enum DDS_Visibility { DDS_PRIVATE_MEMBER = 0, DDS_PUBLIC_MEMBER = 1 } DDS_Visibility;

struct DDS_TypeCode;

/** A member of a structure or union, or an enumerator. */
typedef struct DDS_TypeCodeMember {
    const char* name;
    /** Member id on the wire (structure, union) or the enumerator's number. */
    DDS_Long id;
    /** NULL for an enumerator. Also NULL as long as the type code is incomplete. */
    const struct DDS_TypeCode* type;
    DDS_TypeCodeMemberFlags flags;
    DDS_Visibility visibility;
    /** Union branches: the discriminator value that selects the branch. */
    DDS_Long label;
} DDS_TypeCodeMember;

typedef struct DDS_TypeCode {
    DDS_TCKind kind;
    DDS_ExtensibilityKind extensibility;
    /** Type name such as "QEL::KX::LogMessage"; NULL for strings, sequences and arrays. */
    const char* name;
    /** String: most characters. Sequence: most elements. Array: the number of elements. */
    DDS_UnsignedLong bound;
    /** Sequence and array: the element's type. Union: the discriminator's (member id 0). */
    const struct DDS_TypeCode* element;
    DDS_UnsignedLong memberCount;
    DDS_TypeCodeMember* members;
} DDS_TypeCode;

/** The type code of a signed 32-bit number. */
PEXA_API extern const DDS_TypeCode DDS_g_tc_long;

/** @return the member of that name, or NULL. */
PEXA_API const DDS_TypeCodeMember* DDS_TypeCode_findMember(const DDS_TypeCode* self,
                                                           const char* name);
/** @return the member with that id (or enumerator with that number), or NULL. */
PEXA_API const DDS_TypeCodeMember* DDS_TypeCode_findMemberById(const DDS_TypeCode* self,
                                                               DDS_Long id);
/** Prints the definition of the type in IDL on standard output. @param indent level of indentation.
 */
PEXA_API void DDS_TypeCode_printIDL(const DDS_TypeCode* self, DDS_UnsignedLong indent);

PEXA_END_C

#endif
