#include "tests/integration/peer_logger.hpp"

#include <utility>

namespace orvane::tests {

bool PeerLogger::start(OptionsPointer options) {
    options_ = std::move(options);
    if (QEL_KX_Orvane_setOptions(options_.get()) == 0) {
        return false;
    }
    instance_ = QEL_KX_Orvane_getInstance();
    return instance_ != nullptr;
}

DDS_ReturnCode_t PeerLogger::finish() {
    return QEL_KX_Orvane_finalizeInstance();
}

}  // namespace orvane::tests
