/// @file event_decoder.hpp
/// @brief Gets events from the bytes of recording files, damaged ones too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "tools/recording/recording_format.hpp"
#include "tools/records/recorded_event.hpp"

namespace orvane::tools {

/// Something in a recording that is no event.
struct Damage {
    std::uint64_t position = 0;  ///< the line from 1 on, or the offset in an MCAP file
    std::string text;            ///< what is wrong, and what was expected
};

using DecodedEvent = std::variant<RecordedEvent, Damage>;

/// Takes the bytes of a file in their order, in pieces of any size. Holds no more of them than one
/// line or one chunk.
class EventDecoder {
public:
    static std::unique_ptr<EventDecoder> make(RecordingFormat format);

    EventDecoder() = default;
    EventDecoder(const EventDecoder&) = delete;
    EventDecoder& operator=(const EventDecoder&) = delete;
    virtual ~EventDecoder() = default;

    /// Takes the next bytes, when @ref next has given nothing.
    void feed(std::string_view bytes);

    /// Says that no bytes will follow.
    void finish() { is_finished_ = true; }

    /// Bytes that it has been given and has not used.
    std::size_t unused() const { return rest().size(); }

    /// @return nothing when it needs more bytes, or has had the last ones
    virtual std::optional<DecodedEvent> next() = 0;

protected:
    /// The bytes that have not been used.
    std::string_view rest() const { return std::string_view{buffer_}.substr(used_); }
    /// @param size at most that of the rest
    void use(std::size_t size) { used_ += size; }
    bool is_finished() const { return is_finished_; }

private:
    std::string buffer_;
    std::size_t used_ = 0;
    bool is_finished_ = false;
};

/// A JSON object of an event is never larger.
inline constexpr std::size_t largest_json_event = std::size_t{256} << 10U;

}  // namespace orvane::tools
