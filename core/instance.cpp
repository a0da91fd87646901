#include "core/instance.hpp"

#include "orvane/core.h"

QEL_KX_Orvane* QEL_KX_Orvane_instance = nullptr;
DDS_Long gQEL_KX_Orvane_initialized = 0;
QEL_KX_Options* gQEL_KX_Orvane_currentOptions = nullptr;

namespace orvane::core {
namespace {

/// A part of the instance, NULL without one.
template <auto Part>
auto part_of_instance() {
    const QEL_KX_Orvane* self = instance();
    return self == nullptr ? nullptr : self->*Part;
}

}  // namespace
}  // namespace orvane::core

namespace core = orvane::core;

DDS_Long QEL_KX_Orvane_isOrvaneRunning(void) {
    return core::is_running() ? 1 : 0;
}

QEL_KX_MessageQueue* QEL_KX_Orvane_getMessageQueue(void) {
    return core::part_of_instance<&QEL_KX_Orvane::messageQueue>();
}

LogMessageWriteThread* QEL_KX_Orvane_getLogMessageWriteThread(void) {
    return core::part_of_instance<&QEL_KX_Orvane::logMessageWriteThread>();
}
