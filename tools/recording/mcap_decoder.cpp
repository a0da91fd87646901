#include "tools/recording/mcap_decoder.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "tools/recording/crc32.hpp"
#include "tools/recording/mcap_channels.hpp"
#include "tools/recording/zstd_frame.hpp"
#include "tools/text/json_event.hpp"

namespace orvane::tools {
namespace {

constexpr std::uint64_t largest_chunk = std::uint64_t{64} << 20U;
/// Compression can make a chunk a little larger.
constexpr std::uint64_t largest_record = largest_chunk + (std::uint64_t{1} << 20U);

bool carries_events(std::string_view topic) {
    return std::any_of(mcap_channels.begin(), mcap_channels.end(),
                       [&](const McapChannel& channel) { return channel.topic == topic; });
}

/// The members in front of a chunk's records, and the records.
struct Chunk {
    std::uint64_t size = 0;
    std::uint32_t checksum = 0;
    std::string_view compression;
    std::string_view stored;
};

/// @return what is wrong, or nothing
std::string unpack(const Chunk& chunk, std::string& records) {
    if (chunk.size > largest_chunk) {
        return fmt::format("a chunk of {} bytes, expected at most {}", chunk.size, largest_chunk);
    }
    if (chunk.compression.empty()) {
        records = chunk.stored;
    } else if (chunk.compression != "zstd") {
        return fmt::format("a chunk in the compression {}, expected zstd or none",
                           chunk.compression.substr(0, 16));
    } else if (auto unpacked = decompress(chunk.stored, static_cast<std::size_t>(chunk.size))) {
        records = *std::move(unpacked);
    } else {
        return fmt::format("a damaged chunk, expected a frame of Zstandard with {} bytes",
                           chunk.size);
    }
    if (records.size() != chunk.size) {
        return fmt::format("a chunk of {} bytes, expected {}", records.size(), chunk.size);
    }
    constexpr std::uint32_t unchecked = 0;
    const std::uint32_t checksum = crc32(records);
    if (chunk.checksum != unchecked && chunk.checksum != checksum) {
        return fmt::format("a damaged chunk: its checksum is {:08x}, expected {:08x}", checksum,
                           chunk.checksum);
    }
    return {};
}

}  // namespace

std::optional<DecodedEvent> McapDecoder::next() {
    while (!chunk_.empty() || section_ != Section::done) {
        std::optional<DecodedEvent> found;
        if (!chunk_.empty()) {
            found = next_in_chunk();
        } else if (!read_next(found)) {
            return end_of_file();
        }
        if (found) {
            return found;
        }
    }
    return std::nullopt;
}

std::optional<DecodedEvent> McapDecoder::end_of_file() {
    if (!is_finished()) {
        return std::nullopt;
    }
    section_ = Section::done;
    const bool is_between_records = rest().empty() && passed_over_ == 0;
    return Damage{offset_, is_between_records
                               ? "the file has no end, expected one: its writer was interrupted"
                               : "the file ends within a record, expected the rest of it"};
}

bool McapDecoder::read_next(std::optional<DecodedEvent>& found) {
    if (section_ == Section::magic) {
        return read_magic(found);
    }
    return pass_over() && read_record(found);
}

bool McapDecoder::read_magic(std::optional<DecodedEvent>& found) {
    if (rest().size() < mcap_magic.size()) {
        return false;
    }
    section_ = Section::data;
    if (!rest().starts_with(mcap_magic)) {
        section_ = Section::done;
        found = Damage{offset_, "expected the first bytes of an MCAP file"};
    }
    consume(mcap_magic.size());
    return true;
}

void McapDecoder::consume(std::size_t size) {
    use(size);
    offset_ += size;
}

bool McapDecoder::pass_over() {
    const auto size =
        static_cast<std::size_t>(std::min<std::uint64_t>(passed_over_, rest().size()));
    consume(size);
    passed_over_ -= size;
    return passed_over_ == 0;
}

bool McapDecoder::read_record(std::optional<DecodedEvent>& found) {
    McapContent bytes{rest()};
    const auto opcode = static_cast<McapOpcode>(bytes.number<std::uint8_t>());
    const auto size = bytes.number<std::uint64_t>();
    if (!bytes.is_whole()) {
        return false;
    }
    if (opcode == McapOpcode::invalid) {
        section_ = Section::done;
        found = Damage{offset_, "a byte 0, expected the number of a record's type"};
        return true;
    }
    if (opcode == McapOpcode::data_end || opcode == McapOpcode::footer) {
        // What follows says again what was before.
        section_ = Section::done;
        return true;
    }
    const bool matters = opcode == McapOpcode::channel || opcode == McapOpcode::message ||
                         opcode == McapOpcode::chunk;
    if (!matters || size > largest_record) {
        if (matters) {
            found = Damage{offset_, fmt::format("a record of {} bytes, expected at most {}", size,
                                                largest_record)};
        }
        consume(mcap_prefix_size);
        passed_over_ = size;
        return true;
    }
    const std::string_view content = bytes.take(size);
    if (!bytes.is_whole()) {
        return false;
    }
    found =
        opcode == McapOpcode::chunk ? read_chunk(content) : read_content(opcode, content, offset_);
    consume(mcap_prefix_size + content.size());
    return true;
}

std::optional<DecodedEvent> McapDecoder::read_chunk(std::string_view content) {
    McapContent members{content};
    // The times of its messages.
    members.take(2 * sizeof(std::uint64_t));
    Chunk chunk;
    chunk.size = members.number<std::uint64_t>();
    chunk.checksum = members.number<std::uint32_t>();
    chunk.compression = members.text();
    chunk.stored = members.take(members.number<std::uint64_t>());
    std::string problem = members.is_whole() ? unpack(chunk, chunk_)
                                             : "a chunk without all of its members, expected them";
    chunk_used_ = 0;
    chunk_position_ = offset_;
    if (problem.empty()) {
        return std::nullopt;
    }
    chunk_.clear();
    return Damage{offset_, std::move(problem)};
}

std::optional<DecodedEvent> McapDecoder::next_in_chunk() {
    McapContent bytes{std::string_view{chunk_}.substr(chunk_used_)};
    const auto opcode = static_cast<McapOpcode>(bytes.number<std::uint8_t>());
    const std::string_view content = bytes.take(bytes.number<std::uint64_t>());
    if (!bytes.is_whole()) {
        chunk_.clear();
        return Damage{chunk_position_, "the chunk ends within a record, expected the rest of it"};
    }
    auto found = read_content(opcode, content, chunk_position_);
    chunk_used_ += mcap_prefix_size + content.size();
    if (chunk_used_ == chunk_.size()) {
        chunk_.clear();
    }
    return found;
}

std::optional<DecodedEvent> McapDecoder::read_content(McapOpcode opcode, std::string_view content,
                                                      std::uint64_t position) {
    if (opcode == McapOpcode::channel) {
        read_channel(content);
        return std::nullopt;
    }
    return opcode == McapOpcode::message ? read_message(content, position) : std::nullopt;
}

void McapDecoder::read_channel(std::string_view content) {
    McapContent members{content};
    const auto id = members.number<std::uint16_t>();
    members.number<std::uint16_t>();  // its schema
    const std::string_view topic = members.text();
    const std::string_view encoding = members.text();
    if (encoding == "json" && carries_events(topic)) {
        channels_.insert(id);
    }
}

std::optional<DecodedEvent> McapDecoder::read_message(std::string_view content,
                                                      std::uint64_t position) {
    McapContent members{content};
    const auto channel = members.number<std::uint16_t>();
    // Its sequence number and two times.
    members.take(sizeof(std::uint32_t) + 2 * sizeof(std::uint64_t));
    if (!members.is_whole() || members.rest().size() > largest_json_event) {
        return Damage{position, fmt::format("a message of {} bytes, expected {} to {}",
                                            content.size(), mcap_message_head_size,
                                            mcap_message_head_size + largest_json_event)};
    }
    if (!channels_.contains(channel)) {
        return std::nullopt;
    }
    std::string problem;
    if (auto event = parse_json_event(members.rest(), problem)) {
        return *std::move(event);
    }
    return Damage{position, "a message: " + problem};
}

}  // namespace orvane::tools
