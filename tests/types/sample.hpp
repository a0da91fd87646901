// Samples of the published types with known values, and their encodings.
#pragma once

#include <cstring>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "orvane/types.h"
#include "tests/support/text.hpp"
#include "types/type_support.hpp"

namespace orvane::types {

using test::Bytes;
using test::bytes;
using test::hexadecimal;

/// An initialised record that finalises itself.
template <typename T>
class Sample {
public:
    Sample() { EXPECT_TRUE(ValueOperations<T>::initialize(&record_)); }
    ~Sample() { ValueOperations<T>::finalize(&record_); }

    T* operator->() { return &record_; }
    T& operator*() { return record_; }
    T* get() { return &record_; }

private:
    T record_;
};

/// Endpoint data of a writer or reader.
template <typename T>
struct Endpoint {
    explicit Endpoint(TULVEndpointKind kind = TULV_ENDPOINT_READER) {
        const TULVEndpointInfo info{kind, 1, 1};
        data = Plugin<T>::on_endpoint_attached(nullptr, &info);
        EXPECT_NE(data, nullptr);
    }
    ~Endpoint() { Plugin<T>::on_endpoint_detached(data); }

    TULVEndpointData data;
};

/// A stream over bytes, which it does not own.
inline QELCdrStream stream_over(Bytes& bytes) {
    QELCdrStream stream;
    QELCdrStream_init(&stream, bytes.data(), bytes.size());
    return stream;
}

/// Encodes with the encapsulation header of identifier `id`; empty when that fails.
template <typename T>
Bytes encoded(T& sample, DDS_UnsignedShort id = 1, TULVEndpointData endpoint = nullptr) {
    Bytes buffer(8192, '\x55');
    QELCdrStream stream = stream_over(buffer);
    const bool done = Plugin<T>::serialize(endpoint, &sample, &stream, 1, id, 1, nullptr);
    buffer.resize(done ? stream.position : 0);
    return buffer;
}

/// Decodes a copy that is exactly as large as the bytes.
template <typename T>
bool decode(T& sample, const Bytes& bytes, QELCdrStream* after = nullptr) {
    Bytes exact(bytes.begin(), bytes.end());
    exact.shrink_to_fit();
    QELCdrStream stream = stream_over(exact);
    // As an earlier sample may have left the stream.
    stream.rejected = 1;
    void* target = &sample;
    const bool decoded = Plugin<T>::deserialize(nullptr, &target, nullptr, &stream, 1, 1, nullptr);
    if (after != nullptr) {
        *after = stream;
    }
    return decoded;
}

inline void set_pair(QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity& pair, int category,
                     int verbosity) {
    pair.category = static_cast<QEL_KX_ADMIN_QELLoggerCategory>(category);
    pair.verbosity = static_cast<QEL_KX_ADMIN_QELLoggerVerbosity>(verbosity);
}

inline void fill(QEL_KX_LogMessage& sample) {
    sample.hostAndAppId = {0x01020304, 0x0A0B0C0D};
    sample.level = 300;
    std::strcpy(sample.category, "net");
    std::strcpy(sample.message, "hi");
}

inline void fill(QEL_KX_ADMIN_State& sample) {
    sample.hostAndAppId = {1, -2};
    sample.administrationDomainId = 7;
    sample.state = QEL_KX_STATE_OPERATIONAL;
    std::strcpy(sample.applicationKind, "demo");
    sample.filterLevel = 400;
    for (int i = 0; i < 5; ++i) {
        set_pair(sample.qelLoggerVerbosities[i], i, i + 1);
    }
    sample.qelLoggerPrintFormat = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED;
}

inline void set_pairs(QEL_KX_ADMIN_Command& sample, DDS_Long count) {
    sample._d = QEL_KX_SET_QEL_LOGGER_LEVEL;
    auto* pairs = &sample._u.categoryAndVerbosity;
    ASSERT_TRUE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_length(pairs, count));
    for (DDS_Long i = 0; i < count; ++i) {
        set_pair(pairs->contiguousBuffer[i], i, i + 1);
    }
}

inline void fill(QEL_KX_ADMIN_CommandRequest& sample) {
    sample.targetHostAndAppId = {1, 2};
    sample.originatorHostAndAppId = {3, 4};
    sample.invocation = 5;
    set_pairs(sample.command, 2);
}

inline void fill(QEL_KX_ADMIN_CommandResponse& sample) {
    sample.hostAndAppId = {1, 2};
    sample.originatorHostAndAppId = {3, 4};
    sample.invocation = 5;
    sample.commandResult = QEL_KX_COMMAND_RESULT_NOT_SUPPORTED;
    std::strcpy(sample.message, "no");
}

/// A record with the values of its fill().
template <typename T>
class Filled : public Sample<T> {
public:
    Filled() { fill(**this); }
};

}  // namespace orvane::types
