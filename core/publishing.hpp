/// @file publishing.hpp
/// @brief The work of the write thread: from the queue to the writer.
#pragma once

#include "orvane/core.h"

namespace orvane::core {

/// How long the queue's consumer waits for a message before it looks at its run flag again.
inline constexpr QELNtpTime wait_period = {0, 100 * QEL_NTP_TIME_FRAC_PER_MILLISECOND};

/// Publishes queued messages until the run flag is not 1. Flushes the writer before it returns.
void publish(LogMessageWriteThread& thread, const char* context);

}  // namespace orvane::core
