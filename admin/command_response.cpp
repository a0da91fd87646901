#include "admin/command_response.hpp"

#include "core/report.hpp"
#include "types/typed_writer.hpp"

namespace orvane::admin {

using pexa::Status;

Status write_response(const PendingResponse& response) {
    using Writer = types::DataWriter<QEL_KX_ADMIN_CommandResponse>;
    if (Writer::write(response.writer, &response.sample, &DDS_HANDLE_NIL) == DDS_RETCODE_OK) {
        return Status::ok;
    }
    refuse_response();
    return Status::error;
}

void refuse_response() {
    core::report("QEL_KX_Orvane_processCommand", "Unable to write Command Response");
}

}  // namespace orvane::admin
