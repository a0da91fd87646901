#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "pexa/log.h"
#include "tests/support/text.hpp"

namespace {

using Texts = std::vector<std::string>;

void report(QELLogModule module, DDS_UnsignedLong submodule, QELLogLevel level) {
    QELLog_printContextAndMsg(module, submodule, level, "Operation", &QEL_LOG_ANY_FAILURE_s, "it");
}

TEST(Log, WritesWhatBothMasksLetPass) {
    struct Case {
        DDS_UnsignedLong levels;
        DDS_UnsignedLong submodules;
        QELLogLevel level;
        DDS_UnsignedLong submodule;
        bool written;
    };
    const auto beyond = static_cast<QELLogLevel>(6);
    const auto below = static_cast<QELLogLevel>(0);
    const Case cases[] = {
        {0x01, 0xff, QEL_LOG_LEVEL_ERROR, 0x10, true},
        {0x01, 0xff, QEL_LOG_LEVEL_WARNING, 0x10, false},
        {0x10, 0xff, QEL_LOG_LEVEL_STATUS_ALL, 0x10, true},
        {0x10, 0xff, QEL_LOG_LEVEL_ERROR, 0x10, false},
        {0x1f, 0xef, QEL_LOG_LEVEL_ERROR, 0x10, false},
        {0xffffffff, 0xff, beyond, 0x10, false},
        {0xffffffff, 0xff, below, 0x10, false},
    };
    orvane::test::Reports reports;
    for (const Case& item : cases) {
        QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, item.levels);
        QELLog_setSubmoduleMask(QEL_LOG_MODULE_DDS, item.submodules);
        EXPECT_EQ(QELLog_isEnabled(QEL_LOG_MODULE_DDS, item.submodule, item.level), item.written);
        report(QEL_LOG_MODULE_DDS, item.submodule, item.level);
        EXPECT_EQ(reports.take(), item.written ? Texts{"Operation:it failed"} : Texts{});
    }
    QELLog_setSubmoduleMask(QEL_LOG_MODULE_DDS, DDS_SUBMODULE_MASK_ALL);

    const auto unknown = static_cast<QELLogModule>(3);
    QELLog_setInstrumentationMask(unknown, 0xffffffff);
    report(unknown, 1, QEL_LOG_LEVEL_ERROR);
    QELLog_printContextAndMsg(QEL_LOG_MODULE_CDR, 1, QEL_LOG_LEVEL_ERROR, "context", nullptr);
    EXPECT_EQ(reports.take(), Texts{});
}

TEST(Log, CutsTextAt1023Bytes) {
    orvane::test::Reports reports;
    const std::string longer(2000, 'x');
    QELLog_printContextAndMsg(QEL_LOG_MODULE_CDR, 1, QEL_LOG_LEVEL_ERROR, "c", &QEL_LOG_ANY_s,
                              longer.c_str());
    QELLog_printContextAndMsg(QEL_LOG_MODULE_CDR, 1, QEL_LOG_LEVEL_ERROR, longer.c_str(),
                              &QEL_LOG_ANY_s, "text");
    QELLog_printContextAndMsg(QEL_LOG_MODULE_CDR, 1, QEL_LOG_LEVEL_ERROR, nullptr,
                              &DDS_LOG_SEQUENCE_NOT_OWNER);
    EXPECT_EQ(reports.take(), (Texts{"c:" + longer.substr(0, 1021), longer.substr(0, 1023),
                                     ":sequence does not own its buffer"}));
}

// Each counts the calls that came with its own data, and those that did not.
struct Counter {
    std::atomic<int> calls{0};
};
Counter first;
Counter second;
std::atomic<int> mixed_up{0};

void first_sink(void* data, QELLogModule, QELLogLevel, const char*) {
    data == &first ? ++first.calls : ++mixed_up;
}
void second_sink(void* data, QELLogModule, QELLogLevel, const char*) {
    data == &second ? ++second.calls : ++mixed_up;
}

TEST(Log, SinkAndItsDataAreReplacedTogether) {
    constexpr int rounds = 3000;
    QELLog_setSink(first_sink, &first);
    const auto report_often = [] {
        for (int round = 0; round < rounds; ++round) {
            report(QEL_LOG_MODULE_DDS, 1, QEL_LOG_LEVEL_ERROR);
        }
    };
    std::thread one(report_often);
    std::thread other(report_often);
    for (int round = 0; round < rounds; ++round) {
        QELLog_setSink(second_sink, &second);
        QELLog_setSink(first_sink, &first);
    }
    one.join();
    other.join();
    QELLog_setSink(nullptr, nullptr);
    EXPECT_EQ(mixed_up, 0);
    EXPECT_EQ(first.calls + second.calls, 2 * rounds);
}

}  // namespace
