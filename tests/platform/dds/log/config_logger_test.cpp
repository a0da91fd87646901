#include "platform/dds/log/config_logger.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "pexa/osapi.h"
#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/events.hpp"

namespace engine = pexa::engine;
using orvane::test::output_of;
using pexa::dds::format_line;
using pexa::dds::LogLine;
using pexa::dds::LogSource;

/// The categories that the engine was last asked for.
static std::atomic<engine::LogMask> chosen_mask = 0;

extern "C" {
void __real__ZN4pexa6engine12set_log_maskEj(engine::LogMask mask);
void __wrap__ZN4pexa6engine12set_log_maskEj(engine::LogMask mask) {
    chosen_mask = mask;
    __real__ZN4pexa6engine12set_log_maskEj(mask);
}
}

namespace {

using Texts = std::vector<std::string>;
constexpr auto at_most = std::chrono::seconds(20);

/// A device that remembers what it was given and does something of the test's with it.
class Device : public PEXA_Config_LoggerDevice {
public:
    explicit Device(std::function<void()> reaction = [] {})
        : PEXA_Config_LoggerDevice{this, receive, close}, reaction_(std::move(reaction)) {}
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;
    ~Device() { PEXA_Config_Logger_set_output_device(PEXA_Config_Logger_get_instance(), nullptr); }

    bool await_text(const std::string& part) {
        return texts.await_if([&](const Texts& list) {
            return std::ranges::any_of(
                list, [&](const std::string& text) { return text.find(part) != text.npos; });
        });
    }

    orvane::test::Events<std::string> texts;
    std::atomic<int> closed = 0;

private:
    static void receive(const PEXA_Config_LoggerDevice* device,
                        const PEXA_Config_LogMessage* message) {
        auto& self = *static_cast<Device*>(device->device_data);
        self.texts.add(std::to_string(message->level) + " " + message->text);
        self.reaction_();
    }
    static void close(const PEXA_Config_LoggerDevice* device) {
        ++static_cast<Device*>(device->device_data)->closed;
    }

    std::function<void()> reaction_;
};

void report(QELLogLevel level, const char* text, QELLogModule module = QEL_LOG_MODULE_DDS) {
    QELLog_printContextAndMsg(module, DDS_SUBMODULE_MASK_ENTITY, level, "Test", &QEL_LOG_ANY_s,
                              text);
}

class ConfigLogger : public testing::Test {
protected:
    ~ConfigLogger() override {
        remove_device();
        PEXA_Config_Logger_set_verbosity(logger_, PEXA_CONFIG_LOG_VERBOSITY_ERROR);
        PEXA_Config_Logger_set_print_format(logger_, PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT);
    }

    void install(const Device& device) {
        ASSERT_TRUE(PEXA_Config_Logger_set_output_device(logger_, &device));
    }
    void remove_device() { EXPECT_TRUE(PEXA_Config_Logger_set_output_device(logger_, nullptr)); }
    void set(PEXA_Config_LogCategory category, PEXA_Config_LogVerbosity verbosity) {
        ASSERT_EQ(PEXA_Config_Logger_set_verbosity_by_category(logger_, category, verbosity),
                  DDS_RETCODE_OK);
    }

    PEXA_Config_Logger* const logger_ = PEXA_Config_Logger_get_instance();
};

TEST_F(ConfigLogger, GivesItsDeviceExactlyTheLevelsWhoseBitsAreSet) {
    const std::pair<QELLogModule, PEXA_Config_LogCategory> sources[] = {
        {QEL_LOG_MODULE_OSAPI, PEXA_CONFIG_LOG_CATEGORY_PLATFORM},
        {QEL_LOG_MODULE_CDR, PEXA_CONFIG_LOG_CATEGORY_DATABASE},
        {QEL_LOG_MODULE_DDS, PEXA_CONFIG_LOG_CATEGORY_API},
    };
    Device device;
    install(device);
    for (const auto& [module, category] : sources) {
        for (PEXA_Config_LogVerbosity verbosity = 0; verbosity < 0x20; ++verbosity) {
            ASSERT_EQ(PEXA_Config_Logger_set_verbosity(logger_, ~verbosity & 0x1f), DDS_RETCODE_OK);
            set(category, verbosity);
            Texts expected;
            for (int level = 1; level <= 5; ++level) {
                report(static_cast<QELLogLevel>(level), "text", module);
                if ((verbosity & (1U << (level - 1))) != 0) {
                    expected.push_back(std::to_string(level) + " Test:text");
                }
            }
            EXPECT_EQ(device.texts.take(), expected) << module << " " << verbosity;
        }
    }
}

std::string line_of(PEXA_Config_LogPrintFormat format, const char* text, std::size_t room = 200) {
    LogLine content = {PEXA_CONFIG_LOG_CATEGORY_ENTITIES,
                       PEXA_CONFIG_LOG_LEVEL_STATUS_REMOTE,
                       LogSource::engine,
                       text,
                       {},
                       7'050,
                       4711};
    content.local_time.tm_year = 124;
    content.local_time.tm_mon = 4;
    content.local_time.tm_mday = 31;
    content.local_time.tm_hour = 9;
    std::string line(room, '?');
    line.resize(format_line(line, format, content));
    return line;
}

TEST_F(ConfigLogger, PrintsWhatTheFormatAsksFor) {
    const std::pair<PEXA_Config_LogPrintFormat, const char*> cases[] = {
        {0x412, "[ENTITIES|REMOTE] text\n"},
        {0xF16, "2024-05-31 09:00:00.007 [ENTITIES|REMOTE] (4711) engine: text\n"},
        {0x22F, "[ENTITIES|REMOTE] (4711) text\n"},
        {0x11, "text\n"},
        {0xF3F, "2024-05-31 09:00:00.007050 [ENTITIES|REMOTE] (4711) engine: text\n"},
        {0x100, "[ENTITIES|REMOTE] text\n"},
    };
    for (const auto& [format, line] : cases) {
        EXPECT_EQ(line_of(format, "text"), line);
        ASSERT_EQ(PEXA_Config_Logger_set_print_format(logger_, format), DDS_RETCODE_OK);
        EXPECT_EQ(PEXA_Config_Logger_get_print_format(logger_), format);
    }
    for (std::size_t room = 1; room < 30; ++room) {
        const std::string whole = "[ENTITIES|REMOTE] cut\n";
        const std::string line = line_of(0x412, "cut", room);
        EXPECT_EQ(line, room >= whole.size() ? whole : whole.substr(0, room - 1) + "\n");
    }
}

TEST_F(ConfigLogger, PrintsErrorsWithTimeAndThreadAtFirst) {
    PEXA_Config_Logger_set_print_format(logger_, PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL);
    const std::time_t before = std::time(nullptr);
    const std::string line = output_of([] {
        report(QEL_LOG_LEVEL_WARNING, "quiet");
        report(QEL_LOG_LEVEL_ERROR, "now");
    });
    EXPECT_EQ(line.find("quiet"), std::string::npos);
    std::tm time{};
    const char* rest = strptime(line.c_str(), "%Y-%m-%d %H:%M:%S", &time);
    ASSERT_NE(rest, nullptr);
    time.tm_isdst = -1;
    // time() reads a clock that may lag behind the precise one by a tick.
    EXPECT_TRUE(std::mktime(&time) >= before && std::mktime(&time) <= std::time(nullptr) + 1);
    const std::string thread = std::to_string(QELOsapiThread_getCurrentThreadID());
    EXPECT_TRUE(std::string(rest).ends_with(" [API|ERROR] (" + thread + ") port: Test:now\n"));
}

TEST_F(ConfigLogger, PrintsWhatADeviceCausesInsteadOfGivingItBack) {
    Device device([] {
        EXPECT_TRUE(QELOsapi_isInDeviceCall());
        report(QEL_LOG_LEVEL_ERROR, "echo");
    });
    install(device);
    EXPECT_EQ(output_of([] {
                  report(QEL_LOG_LEVEL_ERROR, "first");
                  report(QEL_LOG_LEVEL_ERROR, "second");
              }),
              "[API|ERROR] Test:echo\n[API|ERROR] Test:echo\n");
    EXPECT_EQ(device.texts.take(), (Texts{"1 Test:first", "1 Test:second"}));
}

TEST_F(ConfigLogger, ClosesADeviceOnceWhenAnotherTakesItsPlace) {
    Device first;
    Device second;
    install(first);
    install(first);
    EXPECT_EQ(PEXA_Config_Logger_get_output_device(logger_), &first);
    EXPECT_EQ(first.closed, 0);
    install(second);
    report(QEL_LOG_LEVEL_ERROR, "text");
    remove_device();
    remove_device();
    EXPECT_EQ(first.closed, 1);
    EXPECT_EQ(second.closed, 1);
    EXPECT_TRUE(first.texts.take().empty());
    EXPECT_EQ(second.texts.take().size(), 1U);
}

TEST_F(ConfigLogger, DoesNotWaitForADeviceThatItReplaces) {
    std::binary_semaphore inside(0);
    std::binary_semaphore released(0);
    Device slow([&] {
        inside.release();
        EXPECT_TRUE(released.try_acquire_for(at_most));
    });
    Device next;
    install(slow);
    std::jthread reporter([] { report(QEL_LOG_LEVEL_ERROR, "slow"); });
    ASSERT_TRUE(inside.try_acquire_for(at_most));
    install(next);
    EXPECT_EQ(slow.closed, 1);
    PEXA_Config_Logger_set_verbosity(logger_, PEXA_CONFIG_LOG_VERBOSITY_WARNING);
    report(QEL_LOG_LEVEL_WARNING, "meanwhile");
    EXPECT_EQ(next.texts.take(), Texts{"2 Test:meanwhile"});
    released.release();
    reporter.join();
    EXPECT_EQ(slow.texts.take(), Texts{"1 Test:slow"});
}

/// A writer, and a reader of another participant that cannot decode what it writes. The engine's
/// threads may still be in a device when that is removed, so the devices of these tests outlive the
/// domain.
class EngineLog : public ConfigLogger {
protected:
    ~EngineLog() override { undecodable_value = -1; }
    /// Writes a sample that the reader refuses, until the device hears of it.
    bool refused_sample_reaches(Device& device) {
        undecodable_value = 7;
        return write(writer_, 1, 7) == ok && device.await_text("Probe failed");
    }

    const ProbeNode node_{"refused"};
    const ProbeNode other_{"refused"};
    DDS_DataWriter* writer_ = node_.writer();
    DDS_DataReader* reader_ = other_.reader();
};

TEST_F(EngineLog, ReachesTheDeviceAsFarAsTheVerbosityLetsIt) {
    static Device device;
    const auto expect_levels = [](char level) {
        for (const std::string& text : device.texts.take()) {
            EXPECT_EQ(text.front(), level) << text;
            EXPECT_EQ(text.find('\n'), std::string::npos);
        }
    };
    install(device);
    set(PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, PEXA_CONFIG_LOG_VERBOSITY_WARNING);
    EXPECT_TRUE(refused_sample_reaches(device));
    expect_levels('2');
    set(PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, PEXA_CONFIG_LOG_VERBOSITY_SILENT);
    set(PEXA_CONFIG_LOG_CATEGORY_ENTITIES, PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE);
    ASSERT_EQ(other_.remove(reader_), ok);
    EXPECT_TRUE(device.await_text("")) << "discovery is remote status of the entities";
    expect_levels('4');
    set(PEXA_CONFIG_LOG_CATEGORY_ENTITIES, PEXA_CONFIG_LOG_VERBOSITY_SILENT);
}

TEST_F(EngineLog, TellsWhyThereIsNoParticipantOnceWhetherSilentOrNot) {
    static Device device;
    install(device);
    pexa::dds::OwnedQos<DDS_DomainParticipantQos> qos;
    DDS_PropertySeq& properties = qos.get().property.value;
    ASSERT_NE(DDS_PropertySeq_ensure_length(&properties, 1, 1), 0);
    DDS_Property_t& property = *DDS_PropertySeq_get_reference(&properties, 0);
    DDS_String_replace(&property.name, "dds.sec.auth.identity_ca");
    DDS_String_replace(&property.value, "file:/none");
    const std::string reason = "dds.sec.";
    const auto told = [&] {
        testing::internal::CaptureStderr();
        EXPECT_EQ(DDS_DomainParticipantFactory_create_participant(
                      DDS_DomainParticipantFactory_get_instance(), 0, &qos.get(), nullptr,
                      DDS_STATUS_MASK_NONE),
                  nullptr);
        return testing::internal::GetCapturedStderr();
    };
    PEXA_Config_Logger_set_verbosity(logger_, PEXA_CONFIG_LOG_VERBOSITY_SILENT);
    const std::string lines = told();
    EXPECT_EQ(lines.find("DDS_DomainParticipantFactory_create_participant:"), 0U) << lines;
    EXPECT_NE(lines.find(reason), std::string::npos) << lines;
    EXPECT_TRUE(device.texts.take().empty());
    PEXA_Config_Logger_set_verbosity(logger_, PEXA_CONFIG_LOG_VERBOSITY_ERROR);
    EXPECT_EQ(told(), "");
    EXPECT_TRUE(device.await_text(reason));
}

TEST_F(EngineLog, CanHaveItsVerbosityChangedFromInsideADevice) {
    static Device device([] {
        PEXA_Config_Logger_set_verbosity(PEXA_Config_Logger_get_instance(),
                                         PEXA_CONFIG_LOG_VERBOSITY_ERROR);
    });
    install(device);
    set(PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, PEXA_CONFIG_LOG_VERBOSITY_WARNING);
    EXPECT_TRUE(refused_sample_reaches(device));
    EXPECT_EQ(PEXA_Config_Logger_get_verbosity_by_category(logger_,
                                                           PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION),
              PEXA_CONFIG_LOG_VERBOSITY_ERROR);
    report(QEL_LOG_LEVEL_ERROR, "the next report of the port");
    EXPECT_EQ(chosen_mask.load() & engine::log_bit(engine::LogCategory::warning), 0U);
}

TEST_F(ConfigLogger, EndsWithTheSourcesThatTheLastVerbositiesAskFor) {
    constexpr int rounds = 2000;
    constexpr int threads = 4;
    Device device;
    Device other;
    std::vector<std::jthread> running;
    for (int thread = 0; thread < threads; ++thread) {
        running.emplace_back([&, thread] {
            const auto category = static_cast<PEXA_Config_LogCategory>(thread);
            for (int i = 0; i < rounds; ++i) {
                set(category, i % 2 == 0 ? 0U : 0x1fU);
                PEXA_Config_Logger_set_output_device(logger_, i % 3 == 0 ? &device : &other);
                report(QEL_LOG_LEVEL_ERROR, "text", QEL_LOG_MODULE_OSAPI);
            }
        });
    }
    running.clear();  // joins
    // All but API ended at everything, and nothing of the engine is sorted into API.
    EXPECT_EQ(chosen_mask.load(), engine::log_everything);
    EXPECT_EQ(QELLog_getInstrumentationMask(QEL_LOG_MODULE_OSAPI), 0x1fU);
    EXPECT_EQ(QELLog_getInstrumentationMask(QEL_LOG_MODULE_DDS), 0x01U);
    remove_device();
    EXPECT_GT(device.texts.take().size() + other.texts.take().size(), 0U);
}

}  // namespace
