#include "tools/recording/mcap_encoder.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "tools/recording/crc32.hpp"
#include "tools/recording/mcap_records.hpp"
#include "tools/text/json_line.hpp"

namespace orvane::tools {
namespace {

/// Times before 1970 have no number in this format; the JSON object of the event has them.
std::uint64_t mcap_time(const RecordedEvent& event) {
    return static_cast<std::uint64_t>(std::max<std::int64_t>(time_of(event), 0));
}

std::string schema_record(std::size_t position) {
    const McapChannel& channel = mcap_channels[position];
    std::string content;
    append_number(content, mcap_channel_id(position));
    append_text(content, channel.schema_name);
    append_text(content, "jsonschema");
    append_text(content, channel.schema);
    std::string record;
    append_record(record, McapOpcode::schema, content);
    return record;
}

std::string channel_record(std::size_t position) {
    std::string content;
    append_number(content, mcap_channel_id(position));
    append_number(content, mcap_channel_id(position));
    append_text(content, mcap_channels[position].topic);
    append_text(content, "json");
    constexpr std::string_view no_metadata;
    append_text(content, no_metadata);
    std::string record;
    append_record(record, McapOpcode::channel, content);
    return record;
}

/// The records of all channels.
std::string for_each_channel(std::string (*record)(std::size_t position)) {
    std::string records;
    for (std::size_t position = 0; position < mcap_channels.size(); ++position) {
        records += record(position);
    }
    return records;
}

/// Collects the groups of the summary, and where they are.
class Summary {
public:
    explicit Summary(std::uint64_t offset) : start_(offset) {}

    void add_group(McapOpcode opcode, std::string_view records) {
        if (records.empty()) {
            return;
        }
        std::string content;
        append_number(content, static_cast<std::uint8_t>(opcode));
        append_number(content, start_ + groups_.size());
        append_number(content, std::uint64_t{records.size()});
        append_record(offsets_, McapOpcode::summary_offset, content);
        groups_ += records;
    }

    /// The summary, the offsets of its groups, and the footer.
    std::string finish() const {
        constexpr std::uint64_t footer_size = 8 + 8 + 4;
        std::string bytes = groups_ + offsets_;
        append_number(bytes, static_cast<std::uint8_t>(McapOpcode::footer));
        append_number(bytes, footer_size);
        append_number(bytes, start_);
        append_number(bytes, start_ + groups_.size());
        append_number(bytes, crc32(bytes));
        return bytes;
    }

private:
    std::uint64_t start_;
    std::string groups_;
    std::string offsets_;
};

}  // namespace

void McapEncoder::Times::extend(const Times& others) {
    first = std::min(first, others.first);
    last = std::max(last, others.last);
}

void McapEncoder::add(const RecordedEvent& event) {
    const std::uint64_t time = mcap_time(event);
    indexes_[event.index()].push_back({time, records_.size()});
    times_.extend({time, time});
    const std::string text = foxglove_json(event);
    append_prefix(records_, McapOpcode::message, mcap_message_head_size + text.size());
    append_number(records_, mcap_channel_id(event.index()));
    append_number(records_, sequence_numbers_[event.index()]++);
    append_number(records_, time);
    append_number(records_, time);
    records_ += text;
}

std::string_view McapEncoder::block() {
    if (block_.empty() && !records_.empty()) {
        append_chunk();
        append_message_indexes();
    }
    return block_;
}

void McapEncoder::append_chunk() {
    const std::optional<std::string_view> compressed = compressor_.compress(records_);
    const std::string_view stored = compressed ? *compressed : records_;
    chunk_ = {.times = times_,
              .compression = compressed ? "zstd" : "",
              .compressed_size = stored.size(),
              .uncompressed_size = records_.size()};
    std::string content;
    append_number(content, times_.first);
    append_number(content, times_.last);
    append_number(content, chunk_.uncompressed_size);
    append_number(content, crc32(records_));
    append_text(content, chunk_.compression);
    append_number(content, chunk_.compressed_size);
    content += stored;
    append_record(block_, McapOpcode::chunk, content);
    chunk_.size = block_.size();
}

void McapEncoder::append_message_indexes() {
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        if (indexes_[i].empty()) {
            continue;
        }
        std::string entries;
        for (const IndexEntry& entry : indexes_[i]) {
            append_number(entries, entry.time);
            append_number(entries, entry.position);
        }
        std::string content;
        append_number(content, mcap_channel_id(i));
        append_text(content, entries);
        chunk_.indexes.emplace_back(mcap_channel_id(i), block_.size());
        append_record(block_, McapOpcode::message_index, content);
    }
    chunk_.indexes_size = block_.size() - chunk_.size;
}

void McapEncoder::block_is_written() {
    chunk_.offset = offset_;
    chunks_.push_back(std::move(chunk_));
    offset_ += block_.size();
    crc_ = crc32(block_, crc_);
    file_times_.extend(times_);
    for (std::size_t i = 0; i < indexes_.size(); ++i) {
        counts_[i] += indexes_[i].size();
        indexes_[i].clear();
    }
    records_.clear();
    block_.clear();
    times_ = {};
}

std::string McapEncoder::head() const {
    constexpr std::string_view no_profile;
    std::string content;
    append_text(content, no_profile);
    append_text(content, "orvane " ORVANE_VERSION);
    std::string bytes{mcap_magic};
    append_record(bytes, McapOpcode::header, content);
    return bytes + for_each_channel(schema_record) + for_each_channel(channel_record);
}

void McapEncoder::begin_file() {
    const std::string bytes = head();
    offset_ = bytes.size();
    crc_ = crc32(bytes);
    chunks_.clear();
    counts_ = {};
    file_times_ = {};
}

std::string McapEncoder::summary_of_chunk(const Chunk& chunk) const {
    std::string offsets;
    for (const auto& [channel, offset] : chunk.indexes) {
        append_number(offsets, channel);
        append_number(offsets, chunk.offset + offset);
    }
    std::string content;
    append_number(content, chunk.times.first);
    append_number(content, chunk.times.last);
    append_number(content, chunk.offset);
    append_number(content, chunk.size);
    append_text(content, offsets);
    append_number(content, chunk.indexes_size);
    append_text(content, chunk.compression);
    append_number(content, chunk.compressed_size);
    append_number(content, chunk.uncompressed_size);
    std::string record;
    append_record(record, McapOpcode::chunk_index, content);
    return record;
}

std::string McapEncoder::statistics() const {
    std::string channel_counts;
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < counts_.size(); ++i) {
        append_number(channel_counts, mcap_channel_id(i));
        append_number(channel_counts, counts_[i]);
        count += counts_[i];
    }
    std::string content;
    append_number(content, count);
    append_number(content, static_cast<std::uint16_t>(mcap_channels.size()));
    append_number(content, static_cast<std::uint32_t>(mcap_channels.size()));
    constexpr std::uint32_t no_attachments = 0;
    constexpr std::uint32_t no_metadata = 0;
    append_number(content, no_attachments);
    append_number(content, no_metadata);
    append_number(content, static_cast<std::uint32_t>(chunks_.size()));
    append_number(content, count == 0 ? 0 : file_times_.first);
    append_number(content, file_times_.last);
    append_text(content, channel_counts);
    std::string record;
    append_record(record, McapOpcode::statistics, content);
    return record;
}

std::string McapEncoder::end() const {
    std::string checksum;
    append_number(checksum, crc_);
    std::string bytes;
    append_record(bytes, McapOpcode::data_end, checksum);

    std::string chunks;
    for (const Chunk& chunk : chunks_) {
        chunks += summary_of_chunk(chunk);
    }
    Summary summary{offset_ + bytes.size()};
    summary.add_group(McapOpcode::schema, for_each_channel(schema_record));
    summary.add_group(McapOpcode::channel, for_each_channel(channel_record));
    summary.add_group(McapOpcode::statistics, statistics());
    summary.add_group(McapOpcode::chunk_index, chunks);
    bytes += summary.finish();
    return bytes.append(mcap_magic);
}

}  // namespace orvane::tools
