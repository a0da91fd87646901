/// @file peer_logger.hpp
/// @brief The logger of a program that a test runs.
#pragma once

#include <atomic>
#include <memory>

#include "orvane/orvane.h"

namespace orvane::tests {

struct DeleteOptions {
    void operator()(QEL_KX_Options* options) const { QEL_KX_Options_delete(options); }
};
using OptionsPointer = std::unique_ptr<QEL_KX_Options, DeleteOptions>;

/// The process's logger, which may be started and finished repeatedly.
///
/// @ref instance may be called from any thread at any time; the rest is for one thread.
class PeerLogger {
public:
    PeerLogger() = default;
    ~PeerLogger() { finish(); }
    PeerLogger(const PeerLogger&) = delete;
    PeerLogger& operator=(const PeerLogger&) = delete;

    /// @param options made by QEL_KX_Options_createDefault(). @return whether the logger runs
    bool start(OptionsPointer options);
    /// @return the library's result
    DDS_ReturnCode_t finish();

    /// The instance; a stale pointer once it has been finished, on purpose.
    [[nodiscard]] QEL_KX_Orvane* instance() const { return instance_; }

private:
    OptionsPointer options_;
    std::atomic<QEL_KX_Orvane*> instance_{nullptr};
};

}  // namespace orvane::tests
