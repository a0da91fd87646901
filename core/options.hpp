/// @file options.hpp
/// @brief The record of options: its life, and the values that it refuses.
#pragma once

#include "orvane/core.h"
#include "platform/internal/status.hpp"

namespace orvane::core {

/// @name Contracts: QEL_KX_Options_…
/// What fails has been reported.
/// @{
QEL_KX_Options* create_default_options();
void delete_options(QEL_KX_Options* options);
pexa::Status set_participant(QEL_KX_Options* options, DDS_DomainParticipant* participant);
pexa::Status set_filter_level(QEL_KX_Options* options, DDS_Long level);
pexa::Status set_queue_size(QEL_KX_Options* options, DDS_Long size);
pexa::Status set_application_kind(QEL_KX_Options* options, const char* kind);
/// @}

}  // namespace orvane::core
