/// @file front_end_subjects.hpp
/// @brief What is called in the benchmark of the front ends: each call makes a text of two values.
#pragma once

#include <rcutils/logging.h>
#include <rcutils/logging_macros.h>
#include <spdlog/async.h>
#include <spdlog/sinks/null_sink.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "bench/call_subjects.hpp"
#include "orvane/log.hpp"
#include "orvane/rcutils_handler.h"
#include "orvane/spdlog_sink.h"

namespace orvane::bench {

/// The values, which the compiler does not know.
struct Measurement {
    volatile int pump = 7;
    volatile double pressure = 181.5;
};

/// orvane/log.hpp
class FormatSubject : public OrvaneSubject {
public:
    using OrvaneSubject::OrvaneSubject;
    void call(const char* /*text*/) {
        category_.log(static_cast<Level>(level()), "pump {} is at {:.1f} kPa",
                      static_cast<int>(values_.pump), static_cast<double>(values_.pressure));
    }

private:
    Category category_{bench::category};
    Measurement values_;
};

/// orvane/log.h
class PrintfSubject : public OrvaneSubject {
public:
    using OrvaneSubject::OrvaneSubject;
    void call(const char* /*text*/) {
        ORVANE_LOGF(level(), category, "pump %d is at %.1f kPa", values_.pump, values_.pressure);
    }

private:
    Measurement values_;
};

/// snprintf and the C interface, as one would write it without a front end.
class SnprintfSubject : public OrvaneSubject {
public:
    using OrvaneSubject::OrvaneSubject;
    void call(const char* /*text*/) {
        char text[128];
        std::snprintf(text, sizeof text, "pump %d is at %.1f kPa", values_.pump, values_.pressure);
        OrvaneSubject::call(text);
    }

private:
    Measurement values_;
};

/// spdlog formats, and the sink logs.
class SpdlogSinkSubject : public OrvaneSubject {
public:
    using OrvaneSubject::OrvaneSubject;
    void call(const char* /*text*/) {
        logger_.log(to_spdlog_level(level()), "pump {} is at {:.1f} kPa",
                    static_cast<int>(values_.pump), static_cast<double>(values_.pressure));
    }

private:
    spdlog::logger logger_ = [] {
        spdlog::logger logger{category, std::make_shared<SpdlogSink>()};
        logger.set_level(spdlog::level::trace);
        return logger;
    }();
    Measurement values_;
};

/// rcutils hands the format over, and the handler logs.
class RcutilsSubject : public OrvaneSubject {
public:
    explicit RcutilsSubject(const SubjectOptions& options) : OrvaneSubject{options} {
        if (rcutils_logging_initialize() != RCUTILS_RET_OK) {
            throw std::runtime_error("rcutils does not start");
        }
        rcutils_logging_set_default_logger_level(RCUTILS_LOG_SEVERITY_DEBUG);
        rcutils_logging_set_output_handler(orvane_rcutils_handler);
    }
    void call(const char* /*text*/) {
        static const rcutils_log_location_t location = {"call", __FILE__, __LINE__};
        rcutils_log(&location, orvane_to_rcutils_severity(level()), category,
                    "pump %d is at %.1f kPa", values_.pump, values_.pressure);
    }

private:
    Measurement values_;
};

/// spdlog's own asynchronous logger, which formats in the caller, and throws the text away.
class SpdlogFormatSubject : public SpdlogSubject {
public:
    using SpdlogSubject::SpdlogSubject;
    void call(const char* /*text*/) {
        logger().log(level(), "pump {} is at {:.1f} kPa", static_cast<int>(values_.pump),
                     static_cast<double>(values_.pressure));
    }

private:
    Measurement values_;
};

}  // namespace orvane::bench
