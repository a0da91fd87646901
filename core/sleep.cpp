#include "orvane/core.h"

namespace orvane::core {
namespace {

DDS_ReturnCode_t sleep_for(DDS_Long milliseconds) {
    // The remainder of a negative number would become a large number of nanoseconds.
    if (milliseconds < 0) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const DDS_Duration_t duration = {milliseconds / 1000,
                                     static_cast<DDS_UnsignedLong>(milliseconds % 1000)};
    return PEXA_Utility_sleep(&duration);
}

}  // namespace
}  // namespace orvane::core

DDS_ReturnCode_t QEL_KX_Utility_sleep(DDS_Long milliseconds) {
    return orvane::core::sleep_for(milliseconds);
}
