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
    const struct {
        DDS_UnsignedLong levels;
        DDS_UnsignedLong submodules;
        QELLogLevel level;
        bool written;
    } cases[] = {
        {0x01, 0xef, QEL_LOG_LEVEL_ERROR, true},
        {0x01, 0xff, QEL_LOG_LEVEL_WARNING, false},
        {0x10, 0xff, QEL_LOG_LEVEL_STATUS_ALL, true},
        {0x10, 0xff, QEL_LOG_LEVEL_ERROR, false},
        {0x1f, 0xcf, QEL_LOG_LEVEL_ERROR, false},
        {0xffffffff, 0xff, static_cast<QELLogLevel>(6), false},
        {0xffffffff, 0xff, static_cast<QELLogLevel>(0), false},
    };
    orvane::test::Reports reports;
    for (const auto& [levels, submodules, level, written] : cases) {
        QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, levels);
        QELLog_setSubmoduleMask(QEL_LOG_MODULE_DDS, submodules);
        EXPECT_EQ(QELLog_isEnabled(QEL_LOG_MODULE_DDS, 0x30, level), written);
        report(QEL_LOG_MODULE_DDS, 0x30, level);
        EXPECT_EQ(reports.take(), written ? Texts{"Operation:it failed"} : Texts{});
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
    for (const auto& [context, text] : {std::pair("c", longer.c_str()), {longer.c_str(), "text"}}) {
        QELLog_printContextAndMsg(QEL_LOG_MODULE_CDR, 1, QEL_LOG_LEVEL_ERROR, context,
                                  &QEL_LOG_ANY_s, text);
    }
    EXPECT_EQ(reports.take(), (Texts{"c:" + longer.substr(0, 1021), longer.substr(0, 1023)}));
}

std::atomic<int> calls[2];
std::atomic<int> mixed_up = 0;

template <int Own>
void install_sink() {
    const auto sink = [](void* data, QELLogModule, QELLogLevel, const char*) {
        data == &calls[Own] ? ++calls[Own] : ++mixed_up;
    };
    QELLog_setSink(sink, &calls[Own]);
}

TEST(Log, SinkAndItsDataAreReplacedTogether) {
    constexpr int rounds = 3000;
    install_sink<0>();
    std::thread reporter([] {
        for (int round = 0; round < rounds; ++round) {
            report(QEL_LOG_MODULE_DDS, 1, QEL_LOG_LEVEL_ERROR);
        }
    });
    for (int round = 0; round < rounds; ++round) {
        install_sink<1>();
        install_sink<0>();
    }
    reporter.join();
    QELLog_setSink(nullptr, nullptr);
    EXPECT_EQ(mixed_up, 0);
    EXPECT_EQ(calls[0] + calls[1], rounds);
}

}  // namespace
