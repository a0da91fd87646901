/// @file command_response.hpp
/// @brief The response to a command.
#pragma once

#include "orvane/admin.h"
#include "platform/internal/status.hpp"

namespace orvane::admin {

/// A response on its way, and the writer for it.
struct PendingResponse {
    QEL_KX_ADMIN_CommandResponseDataWriter* writer;
    /// Its text is a constant: nothing is to be freed, and no memory can be missing.
    QEL_KX_ADMIN_CommandResponse sample;
};

/// @return an error after a report.
pexa::Status write_response(const PendingResponse& response);

/// Reports that a response is not written.
void refuse_response();

}  // namespace orvane::admin
