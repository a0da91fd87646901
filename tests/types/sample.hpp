#pragma once

#include <cstring>

#include <gtest/gtest.h>

#include "orvane/types.h"
#include "tests/types/bytes.hpp"
#include "types/plugin.hpp"
#include "types/value_operations.hpp"

/// An initialised record that finalises itself.
template <typename T>
class Sample {
public:
    Sample() { EXPECT_TRUE(Values::initialize(&record_)); }
    ~Sample() { Values::finalize(&record_); }
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;

    T* operator->() { return &record_; }
    T& operator*() { return record_; }
    T* get() { return &record_; }

private:
    using Values = orvane::types::ValueOperations<T>;
    T record_;
};

/// Encodes with the encapsulation header of identifier `id`; empty when that fails.
template <typename T>
Bytes encoded(T& sample, DDS_UnsignedShort id, TULVEndpointData endpoint = nullptr) {
    using Plugin = orvane::types::PluginOperations<T>;
    Bytes buffer(8192, '\x55');
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer.data(), buffer.size());
    if (!Plugin::serialize(endpoint, &sample, &stream, 1, id, 1, nullptr)) {
        return {};
    }
    buffer.resize(stream.position);
    return buffer;
}

/// Decodes a copy that is exactly as large as the bytes.
template <typename T>
bool decode(T& sample, const Bytes& bytes, QELCdrStream* after = nullptr) {
    using Plugin = orvane::types::PluginOperations<T>;
    Bytes exact(bytes.begin(), bytes.end());
    exact.shrink_to_fit();
    QELCdrStream stream;
    QELCdrStream_init(&stream, exact.data(), exact.size());
    void* target = &sample;
    const bool decoded = Plugin::deserialize(nullptr, &target, nullptr, &stream, 1, 1, nullptr);
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
