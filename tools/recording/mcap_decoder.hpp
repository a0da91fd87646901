/// @file mcap_decoder.hpp
/// @brief Events from an MCAP file (https://mcap.dev), of this tool or filtered by another one.
#pragma once

#include <set>

#include "tools/recording/event_decoder.hpp"
#include "tools/recording/mcap_records.hpp"

namespace orvane::tools {

/// Goes over the data section from its beginning and needs no summary, so that a file without an
/// end can be read. A chunk with damage is passed over.
class McapDecoder : public EventDecoder {
public:
    std::optional<DecodedEvent> next() override;

private:
    enum class Section { magic, data, done };

    /// @name Each takes bytes off the rest. @return false when more of them are needed
    /// @{
    bool read_next(std::optional<DecodedEvent>& found);
    bool read_magic(std::optional<DecodedEvent>& found);
    bool read_record(std::optional<DecodedEvent>& found);
    bool pass_over();
    /// @}
    void consume(std::size_t size);

    std::optional<DecodedEvent> read_chunk(std::string_view content);
    std::optional<DecodedEvent> next_in_chunk();
    std::optional<DecodedEvent> read_content(McapOpcode opcode, std::string_view content,
                                             std::uint64_t position);
    void read_channel(std::string_view content);
    std::optional<DecodedEvent> read_message(std::string_view content, std::uint64_t position);
    std::optional<DecodedEvent> end_of_file();

    Section section_ = Section::magic;
    std::uint64_t offset_ = 0;          ///< of the rest, in the file
    std::uint64_t passed_over_ = 0;     ///< bytes of no interest that come next
    std::set<std::uint16_t> channels_;  ///< those that carry events
    std::string chunk_;                 ///< records of the present one, or empty
    std::size_t chunk_used_ = 0;
    std::uint64_t chunk_position_ = 0;  ///< in the file
};

}  // namespace orvane::tools
