// What encoding costs, per type and operation, through the plugins as the middleware calls them.
// Beside it, for a typical log message, the least that can be done: code that knows the message's
// layout writes the same bytes, and reads them into the same record.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "bench/measure.hpp"
#include "orvane/types.h"

namespace {

using Buffer = std::array<char, 8192>;

constexpr std::string_view typical_text =
    "the message of a logger is about as long as this line of 60.";

/// A member of a sample has room for the longest text.
void assign(char* member, std::string_view text) {
    *std::copy(text.begin(), text.end(), member) = '\0';
}

void fill_log_message(void* memory) {
    auto& sample = *static_cast<QEL_KX_LogMessage*>(memory);
    sample.hostAndAppId = {1, 2};
    sample.level = 600;
    assign(sample.category, "bench");
    assign(sample.message, typical_text);
}

void fill_state(void* memory) {
    auto& sample = *static_cast<QEL_KX_ADMIN_State*>(memory);
    sample.hostAndAppId = {1, 2};
    assign(sample.applicationKind, "planner");
}

void fill_request(void* memory) {
    auto& sample = *static_cast<QEL_KX_ADMIN_CommandRequest*>(memory);
    sample.command._d = QEL_KX_SET_QEL_LOGGER_LEVEL;
    QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_length(
        &sample.command._u.categoryAndVerbosity, ORVANE_QEL_LOGGER_CATEGORY_COUNT);
}

void fill_response(void* memory) {
    auto& sample = *static_cast<QEL_KX_ADMIN_CommandResponse*>(memory);
    sample.hostAndAppId = {1, 2};
    assign(sample.message, "done");
}

struct Type {
    TULVTypePlugin* (*make)();
    void (*remove)(TULVTypePlugin* plugin);
    void (*fill)(void* sample);
};

constexpr Type log_message{QEL_KX_LogMessagePlugin_new, QEL_KX_LogMessagePlugin_delete,
                           fill_log_message};
constexpr Type state{QEL_KX_ADMIN_StatePlugin_new, QEL_KX_ADMIN_StatePlugin_delete, fill_state};
constexpr Type command_request{QEL_KX_ADMIN_CommandRequestPlugin_new,
                               QEL_KX_ADMIN_CommandRequestPlugin_delete, fill_request};
constexpr Type command_response{QEL_KX_ADMIN_CommandResponsePlugin_new,
                                QEL_KX_ADMIN_CommandResponsePlugin_delete, fill_response};

template <typename T>
char* put(char* at, T value) {
    std::memcpy(at, &value, sizeof value);
    return at + sizeof value;
}

char* put_header(char* at, std::uint16_t id, std::size_t length) {
    return put(put(at, id), static_cast<std::uint16_t>(length));
}

char* put_text_member(char* at, std::uint16_t id, const char* text) {
    const std::size_t length = std::strlen(text) + 1;
    const std::size_t padding = -length % 4;
    at = put_header(at, id, 4 + length);
    at = put(at, static_cast<std::uint32_t>(length));
    std::memcpy(at, text, length);
    std::memset(at + length, 0, padding);
    return at + length + padding;
}

std::size_t encode_by_hand(const QEL_KX_LogMessage& sample, Buffer& buffer) {
    char* at = put(buffer.data(), std::uint32_t{0x00000300});
    at = put(put_header(at, 0, 8), sample.hostAndAppId);
    at = put(put_header(at, 1, 4), sample.level);
    at = put_text_member(at, 2, sample.category);
    at = put_text_member(at, 3, sample.message);
    at = put_header(at, 0x7F02, 0);
    return static_cast<std::size_t>(at - buffer.data());
}

template <typename T>
const char* get(const char* at, T& value) {
    std::memcpy(&value, at, sizeof value);
    return at + sizeof value;
}

const char* get_text_member(const char* at, char* text) {
    std::uint16_t length = 0;
    std::uint32_t characters = 0;
    at = get(at + 2, length);
    get(at, characters);
    std::memcpy(text, at + 4, characters);
    const std::size_t padded = (length + std::size_t{3}) & ~std::size_t{3};
    return at + padded;
}

void decode_by_hand(const Buffer& buffer, QEL_KX_LogMessage& sample) {
    const char* at = get(buffer.data() + 8, sample.hostAndAppId);
    at = get(at + 4, sample.level);
    at = get_text_member(at, sample.category);
    get_text_member(at, sample.message);
}

/// A type's plugin with a writer's endpoint and a filled sample, and the sample's encoding.
class Subject {
public:
    explicit Subject(const Type& type) : type_{type}, plugin_{type.make()} {
        const TULVEndpointInfo info{TULV_ENDPOINT_WRITER, 1, 1};
        participant_ = plugin_->on_participant_attached(nullptr, plugin_->typeCode);
        endpoint_ = plugin_->on_endpoint_attached(participant_, &info);
        sample_ = plugin_->create_sample(endpoint_);
        type.fill(sample_);
        encoded_size_ = encode();
        if (encoded_size_ == 0) {
            std::fprintf(stderr, "bench: %s cannot be encoded\n", plugin_->typeName);
            std::exit(1);
        }
    }
    ~Subject() {
        plugin_->destroy_sample(endpoint_, sample_);
        plugin_->on_endpoint_detached(endpoint_);
        plugin_->on_participant_detached(participant_);
        type_.remove(plugin_);
    }
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    std::size_t encode() {
        QELCdrStream stream;
        QELCdrStream_init(&stream, buffer_.data(), buffer_.size());
        return plugin_->serialize(endpoint_, sample_, &stream, 1,
                                  QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE, 1, nullptr) != 0
                   ? stream.position
                   : 0;
    }
    std::size_t encode_by_hand() { return ::encode_by_hand(as_log_message(), buffer_); }
    bool decode_by_hand() {
        ::decode_by_hand(buffer_, as_log_message());
        return true;
    }
    bool decode() {
        QELCdrStream stream;
        QELCdrStream_init(&stream, buffer_.data(), encoded_size_);
        return plugin_->deserialize(endpoint_, &sample_, nullptr, &stream, 1, 1, nullptr) != 0;
    }
    std::uint32_t size() {
        return plugin_->get_serialized_sample_size(endpoint_, 1,
                                                   QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE, 0, sample_);
    }
    bool key_hash() {
        QELKeyHash hash{};
        return plugin_->instance_to_keyhash(endpoint_, &hash, sample_) != 0;
    }

    QEL_KX_LogMessage& as_log_message() { return *static_cast<QEL_KX_LogMessage*>(sample_); }
    Buffer& buffer() { return buffer_; }
    std::size_t encoded_size() const { return encoded_size_; }

private:
    const Type& type_;
    TULVTypePlugin* plugin_;
    TULVParticipantData participant_ = nullptr;
    TULVEndpointData endpoint_ = nullptr;
    void* sample_ = nullptr;
    Buffer buffer_{};
    std::size_t encoded_size_ = 0;
};

/// The yardstick must do the same work.
void require_equal_work() {
    Subject subject{log_message};
    Buffer by_hand{};
    const std::size_t size = encode_by_hand(subject.as_log_message(), by_hand);
    Subject decoded{log_message};
    assign(decoded.as_log_message().category, "other");
    assign(decoded.as_log_message().message, "another");
    decode_by_hand(by_hand, decoded.as_log_message());
    const std::size_t size_again = decoded.encode();
    if (size != subject.encoded_size() || size != subject.size() || size != size_again ||
        !std::equal(by_hand.data(), by_hand.data() + size, subject.buffer().data()) ||
        !std::equal(by_hand.data(), by_hand.data() + size, decoded.buffer().data())) {
        std::fprintf(stderr, "bench: the encoder by hand does not do what the library does\n");
        std::exit(1);
    }
}

template <typename Result>
void run(benchmark::State& iterations, const Type& type, Result (Subject::*operation)()) {
    Subject subject{type};
    for (auto _ : iterations) {
        benchmark::DoNotOptimize((subject.*operation)());
        benchmark::ClobberMemory();
    }
    iterations.counters["bytes"] = static_cast<double>(subject.encoded_size());
}

#define BENCH_TYPE(type)                                         \
    BENCHMARK_CAPTURE(run, type.encode, type, &Subject::encode); \
    BENCHMARK_CAPTURE(run, type.decode, type, &Subject::decode); \
    BENCHMARK_CAPTURE(run, type.size, type, &Subject::size)
#define BENCH_KEYED_TYPE(type) \
    BENCH_TYPE(type);          \
    BENCHMARK_CAPTURE(run, type.key_hash, type, &Subject::key_hash)

BENCH_KEYED_TYPE(log_message);
BENCH_KEYED_TYPE(state);
BENCH_TYPE(command_request);
BENCH_KEYED_TYPE(command_response);
BENCHMARK_CAPTURE(run, log_message.encode_by_hand, log_message, &Subject::encode_by_hand);
BENCHMARK_CAPTURE(run, log_message.decode_by_hand, log_message, &Subject::decode_by_hand);

/// Shows the figures and adds them to the file of results.
class ResultReporter : public benchmark::ConsoleReporter {
public:
    explicit ResultReporter(const std::string& path) : path_{path} {}
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            // Such as "run/log_message.encode".
            const std::string name = run.benchmark_name().substr(std::strlen("run/"));
            const std::size_t dot = name.find('.');
            orvane::bench::append_result(
                path_, {{"group", "types"},
                        {"type", name.substr(0, dot)},
                        {"operation", name.substr(dot + 1)},
                        {"figures",
                         {{"ns", run.GetAdjustedCPUTime()},
                          {"bytes", static_cast<double>(run.counters.at("bytes"))}}}});
        }
    }

private:
    std::string path_;
};

}  // namespace

int main(int argc, char** argv) try {
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: types_bench [--benchmark_…] RESULTS\n");
        return 2;
    }
    require_equal_work();
    ResultReporter reporter{argv[1]};
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "bench: %s\n", failure.what());
    return 1;
}
