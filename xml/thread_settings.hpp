/// @file thread_settings.hpp
/// @brief Each thread setting as a text.
///
/// A conversion that refuses a text reports it and leaves the setting as it was, if nothing else is
/// said.
#pragma once

#include "orvane/xml.h"
#include "xml/parse_report.hpp"

namespace orvane::xml {

/// @param mask becomes the bits of all names up to the first that is unknown
void read_mask(DDS_UnsignedLong& mask, const ElementText& element);
void write_mask(const char* name, DDS_UnsignedLong mask, QELXMLSaveContext* context);

/// @param priority becomes 0 after a refusal
void read_priority(DDS_Long& priority, const ElementText& element);
void write_priority(const char* name, DDS_Long priority, QELXMLSaveContext* context);

void read_stack_size(DDS_Long& size, const ElementText& element);
/// Writes nothing for the default.
void write_stack_size(const char* name, DDS_Long size, QELXMLSaveContext* context);

/// Appends a CPU; after a refusal its number is 0.
void add_cpu(DDS_LongSeq& cpus, const ElementText& element);
void write_cpus(const char* name, const DDS_LongSeq& cpus, QELXMLSaveContext* context);

void read_rotation(DDS_ThreadSettingsCpuRotationKind& rotation, const ElementText& element);
/// Sets the context's error indicator for an unknown rotation.
void write_rotation(const char* name, const DDS_ThreadSettingsCpuRotationKind& rotation,
                    QELXMLSaveContext* context);

}  // namespace orvane::xml
