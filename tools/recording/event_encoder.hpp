/// @file event_encoder.hpp
/// @brief Turns events into the bytes of recording files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tools/recording/recording_format.hpp"
#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// A file is its head, blocks, and its end. A file without end can be read, too.
///
/// The encoder collects events. @ref block makes a block of them, which stays the same until @ref
/// block_is_written. So a block can be tried again, even in another file.
class EventEncoder {
public:
    static std::unique_ptr<EventEncoder> make(RecordingFormat format);

    EventEncoder() = default;
    EventEncoder(const EventEncoder&) = delete;
    EventEncoder& operator=(const EventEncoder&) = delete;
    virtual ~EventEncoder() = default;

    /// Must not be called between @ref block and @ref block_is_written.
    virtual void add(const RecordedEvent& event) = 0;

    /// Bytes that have been collected.
    virtual std::size_t size() const = 0;

    /// The bytes of the events that have been collected.
    virtual std::string_view block() = 0;

    /// The block is the next part of the file now. The encoder collects anew.
    virtual void block_is_written() = 0;

    virtual std::string head() const = 0;
    /// A file begins that has its head and nothing else.
    virtual void begin_file() = 0;
    virtual std::string end() const = 0;
};

}  // namespace orvane::tools
