/// @file engine.hpp
/// @brief What a program does that publishes log messages with the engine itself, without the
/// library: the yardstick for the library's own figures.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace orvane::bench::bare {

/// History of a writer: the library's default of ten messages, or all until every reader has them.
enum class History { last_ten, all };

/// Payload of an encoded message of @p text_length characters, encapsulation header included.
std::size_t encoded_size(std::size_t text_length);

/// A reliable, transient-local writer in a participant of its own.
class Writer {
public:
    struct Options {
        std::int32_t domain = 0;
        History history = History::last_ten;
        /// Samples are collected until a packet is full or flush() is called.
        bool batching = false;
    };

    /// Ends the program when the engine refuses something.
    explicit Writer(const Options& options);
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// Writes synchronously, with the present time as source timestamp.
    void write(const char* text);
    void flush();
    bool has_reader() const;

private:
    std::int32_t participant_;
    std::int32_t writer_;
};

/// A reliable, transient-local, keep-all reader in a participant of its own.
class Reader {
public:
    explicit Reader(std::int32_t domain);
    ~Reader();
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    /// Waits for samples, then takes up to 256 and appends their source timestamps, in nanoseconds
    /// since the epoch.
    void take(std::chrono::milliseconds longest_wait, std::vector<std::int64_t>& source_times);

private:
    std::int32_t participant_;
    std::int32_t reader_;
    std::int32_t wait_set_;
};

/// Every entity that a logger makes, with the same QoS: participant, four topics, publisher,
/// subscriber, three writers and a reader.
class LoggerEntities {
public:
    explicit LoggerEntities(std::int32_t domain);
    ~LoggerEntities();
    LoggerEntities(const LoggerEntities&) = delete;
    LoggerEntities& operator=(const LoggerEntities&) = delete;

private:
    std::int32_t participant_;
};

}  // namespace orvane::bench::bare
