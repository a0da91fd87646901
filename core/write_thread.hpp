/// @file write_thread.hpp
/// @brief The life of the thread that publishes queued messages.
#pragma once

#include "orvane/core.h"

namespace orvane::core {

/// @name Contracts: LogMessageWriteThread_…
/// @{
LogMessageWriteThread* create_write_thread(QEL_KX_LogMessageDataWriter* writer, DDS_Long queue_size,
                                           const DDS_ThreadSettings_t& settings);
void delete_write_thread(LogMessageWriteThread* thread);
DDS_ReturnCode_t set_communications_verbosity(LogMessageWriteThread& thread,
                                              PEXA_Config_LogVerbosity verbosity);
/// @}

/// Wakes a thread whose run flag has been cleared, if it has had nothing to do for a while, and
/// gives it some milliseconds to end.
void end_rest(LogMessageWriteThread& thread);

}  // namespace orvane::core
