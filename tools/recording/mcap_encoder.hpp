/// @file mcap_encoder.hpp
/// @brief Events as an MCAP file (https://mcap.dev).
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/recording/event_encoder.hpp"
#include "tools/recording/mcap_channels.hpp"
#include "tools/recording/zstd_frame.hpp"

namespace orvane::tools {

/// A block is a chunk with the indexes of its messages. The schemas and channels are in the head,
/// so that a chunk can be written to any file. The time of a message is that of its event, so that
/// a viewer shows it when it was logged and not when it arrived.
class McapEncoder : public EventEncoder {
public:
    McapEncoder() { begin_file(); }

    void add(const RecordedEvent& event) override;
    std::size_t size() const override { return records_.size(); }
    std::string_view block() override;
    void block_is_written() override;
    std::string head() const override;
    void begin_file() override;
    std::string end() const override;

private:
    /// The time of a message, and the position of its record in the chunk.
    struct IndexEntry {
        std::uint64_t time;
        std::uint64_t position;
    };
    struct Times {
        std::uint64_t first = std::numeric_limits<std::uint64_t>::max();
        std::uint64_t last = 0;

        void extend(const Times& others);
    };
    /// What the end of the file tells of a chunk.
    struct Chunk {
        Times times;
        std::uint64_t offset = 0;  ///< in the file
        std::uint64_t size = 0;
        /// Channels, and the offsets of their indexes behind the chunk.
        std::vector<std::pair<std::uint16_t, std::uint64_t>> indexes{};
        std::uint64_t indexes_size = 0;
        std::string_view compression;
        std::uint64_t compressed_size = 0;
        std::uint64_t uncompressed_size = 0;
    };

    void append_chunk();
    void append_message_indexes();
    std::string summary_of_chunk(const Chunk& chunk) const;
    std::string statistics() const;

    // Of the block.
    std::string records_;
    std::array<std::vector<IndexEntry>, mcap_channels.size()> indexes_;
    Times times_;
    ZstdCompressor compressor_;
    std::string block_;
    Chunk chunk_;

    // Of the file.
    std::uint64_t offset_ = 0;
    std::uint32_t crc_ = 0;
    std::vector<Chunk> chunks_;
    std::array<std::uint64_t, mcap_channels.size()> counts_{};
    Times file_times_;

    std::array<std::uint32_t, mcap_channels.size()> sequence_numbers_{};
};

}  // namespace orvane::tools
