/// @file export_sink.hpp
/// @brief Where records go.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "tools/export/export_record.hpp"

namespace orvane::tools {

/// What became of records that were to be sent.
struct Delivery {
    std::size_t done = 0;     ///< so many of the first are not to be sent again
    std::size_t refused = 0;  ///< so many of these were not taken, and never will be
    /// The least time before the others are tried again, when the receiver has said one.
    std::optional<std::chrono::milliseconds> pause{};
    std::string problem{};  ///< for the user, empty when all were taken
};

class ExportSink {
public:
    ExportSink() = default;
    ExportSink(const ExportSink&) = delete;
    ExportSink& operator=(const ExportSink&) = delete;
    virtual ~ExportSink() = default;

    /// The receiver, for the user.
    virtual std::string name() const = 0;

    /// Sends records, in this order, and waits for the receiver. Called by one thread.
    /// @param records at least one
    virtual Delivery send(std::span<const ExportRecord> records) = 0;

    /// Makes a send that is running end soon, and later ones at once. May be called by any thread.
    virtual void interrupt() = 0;
};

}  // namespace orvane::tools
