#pragma once

#include <gtest/gtest.h>

#include "pexa/qos.h"
#include "pexa/string.h"

/// Appends a property to the sequence.
inline void add_property(DDS_PropertySeq& properties, const char* name, const char* value) {
    const DDS_Long length = DDS_PropertySeq_get_length(&properties);
    ASSERT_TRUE(DDS_PropertySeq_ensure_length(&properties, length + 1, length + 1));
    DDS_Property_t* property = DDS_PropertySeq_get_reference(&properties, length);
    DDS_String_replace(&property->name, name);
    DDS_String_replace(&property->value, value);
}
