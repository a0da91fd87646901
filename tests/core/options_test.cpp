#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "faults.hpp"
#include "orvane/core.h"
#include "output.hpp"

namespace {

using orvane::test::Fault;
using orvane::test::Function;
using orvane::test::live_allocations;
using orvane::test::output_of;

struct Deleter {
    void operator()(QEL_KX_Options* options) const { QEL_KX_Options_delete(options); }
};
using OwnedOptions = std::unique_ptr<QEL_KX_Options, Deleter>;

OwnedOptions make_options() {
    return OwnedOptions(QEL_KX_Options_createDefault());
}

DDS_DomainParticipant* some_participant() {
    static int nothing = 0;
    return reinterpret_cast<DDS_DomainParticipant*>(&nothing);
}

std::string line(const char* level, const char* operation, const char* message) {
    return std::string("KX ") + level + ": QEL_KX_Options_" + operation + ": " + message + "\n";
}

TEST(Options, StartWithTheDefaults) {
    const OwnedOptions options = make_options();
    EXPECT_EQ(QEL_KX_Options_getDomainParticipant(options.get()), nullptr);
    EXPECT_EQ(options->enabled, 1);
    EXPECT_EQ(QEL_KX_Options_isRemoteAdministrationEnabled(options.get()), 1);
    EXPECT_EQ(QEL_KX_Options_getFilterLevel(options.get()), 600);
    EXPECT_EQ(QEL_KX_Options_getDomainId(options.get()), 0);
    EXPECT_EQ(QEL_KX_Options_getQosLibrary(options.get()), nullptr);
    EXPECT_EQ(QEL_KX_Options_getQosProfile(options.get()), nullptr);
    EXPECT_EQ(QEL_KX_Options_getQueueSize(options.get()), 128);
    EXPECT_EQ(QEL_KX_Options_getApplicationKind(options.get()), nullptr);
    EXPECT_EQ(QEL_KX_Options_getEchoToStdout(options.get()), 0);
    EXPECT_EQ(QEL_KX_Options_getLogInfrastructureMessages(options.get()), 1);
    DDS_ThreadSettings_t* thread = QEL_KX_Options_getThreadSettings(options.get());
    ASSERT_EQ(thread, &options->thread);
    EXPECT_EQ(thread->mask, 0U);
    EXPECT_EQ(thread->priority, -9999999);
    EXPECT_EQ(thread->stack_size, -1);
    EXPECT_EQ(thread->cpu_rotation, DDS_THREAD_SETTINGS_CPU_NO_ROTATION);
    EXPECT_EQ(DDS_LongSeq_get_maximum(&thread->cpu_list), 0);
    EXPECT_EQ(DDS_LongSeq_get_length(&thread->cpu_list), 0);
    EXPECT_NE(DDS_LongSeq_has_ownership(&thread->cpu_list), 0);
}

struct Number {
    DDS_ReturnCode_t (*set)(QEL_KX_Options*, DDS_Long);
    DDS_Long (*get)(const QEL_KX_Options*);
    const char* setter;
    const char* getter;
    DDS_Long accepted;
    /// NULL: no value is refused.
    const char* refusal;
    DDS_Long refused;
    DDS_Long of_nothing;
};

constexpr Number numbers[] = {
    {QEL_KX_Options_setFilterLevel, QEL_KX_Options_getFilterLevel, "setFilterLevel",
     "getFilterLevel", 0, "Filter Level must be positive or zero", -1, -1},
    {QEL_KX_Options_setDomainId, QEL_KX_Options_getDomainId, "setDomainId", "hetDomainId", 0,
     "Domain Id must be positive or zero", -1, -1},
    {QEL_KX_Options_setQueueSize, QEL_KX_Options_getQueueSize, "setQueueSize", "getQueueSize", 1,
     "Queue Size must be positive", 0, -1},
    {QEL_KX_Options_setRemoteAdministrationEnabled, QEL_KX_Options_isRemoteAdministrationEnabled,
     "setRemoteAdministrationEnabled", "isRemoteAdministrationEnabled", 256, nullptr, 0, 0},
    {QEL_KX_Options_setEchoToStdout, QEL_KX_Options_getEchoToStdout, "setEchoToStdout",
     "getEchoToStdout", -3, nullptr, 0, 0},
    {QEL_KX_Options_setLogInfrastructureMessages, QEL_KX_Options_getLogInfrastructureMessages,
     "setLogInfrastructureMessages", "getLogInfrastructureMessages", 2, nullptr, 0, 0},
};

TEST(Options, KeepANumberThatIsInRangeAndRefuseOneThatIsNot) {
    for (const Number& number : numbers) {
        SCOPED_TRACE(number.setter);
        const OwnedOptions options = make_options();
        const std::string silence = output_of([&] {
            EXPECT_EQ(number.set(options.get(), 2147483647), DDS_RETCODE_OK);
            EXPECT_EQ(number.get(options.get()), 2147483647);
            EXPECT_EQ(number.set(options.get(), number.accepted), DDS_RETCODE_OK);
        });
        EXPECT_EQ(silence, "");
        if (number.refusal != nullptr) {
            DDS_ReturnCode_t result = DDS_RETCODE_OK;
            EXPECT_EQ(output_of([&] { result = number.set(options.get(), number.refused); }),
                      line("Error", number.setter, number.refusal));
            EXPECT_EQ(result, DDS_RETCODE_BAD_PARAMETER);
        }
        EXPECT_EQ(number.get(options.get()), number.accepted);
    }
}

TEST(Options, RefuseToSetOrGetANumberOfNothing) {
    for (const Number& number : numbers) {
        DDS_Long result = 0;
        EXPECT_EQ(output_of([&] { result = number.set(nullptr, number.refused); }),
                  line("Error", number.setter, "QEL_KX_Options is null"));
        EXPECT_EQ(result, DDS_RETCODE_NO_DATA);
        EXPECT_EQ(output_of([&] { result = number.get(nullptr); }),
                  line("Error", number.getter, "QEL_KX_Options is null"));
        EXPECT_EQ(result, number.of_nothing) << number.getter;
    }
}

struct Text {
    DDS_ReturnCode_t (*set)(QEL_KX_Options*, const char*);
    const char* (*get)(const QEL_KX_Options*);
    const char* setter;
    const char* getter;
    const char* if_null;
    const char* without_memory;
};

constexpr Text texts[] = {
    {QEL_KX_Options_setQosLibrary, QEL_KX_Options_getQosLibrary, "setQoSLibrary", "getQoSLibrary",
     "QoS Library is NULL", "Unable to allocate memory for qosLibrary"},
    {QEL_KX_Options_setQosProfile, QEL_KX_Options_getQosProfile, "setQoSProfile", "getQoSProfile",
     "QoS Profile is NULL", "Unable to allocate memory for qosProfile"},
    {QEL_KX_Options_setApplicationKind, QEL_KX_Options_getApplicationKind, "setApplicationKind",
     "getApplicationKind", "application kind is NULL",
     "Unable to allocate memory for Application Kind"},
};

TEST(Options, OwnACopyOfTheLastTextSet) {
    for (const Text& text : texts) {
        SCOPED_TRACE(text.setter);
        const long allocations = live_allocations();
        {
            const OwnedOptions options = make_options();
            char mine[] = "first";
            EXPECT_EQ(text.set(options.get(), mine), DDS_RETCODE_OK);
            mine[0] = 'F';
            EXPECT_STREQ(text.get(options.get()), "first");
            EXPECT_EQ(text.set(options.get(), text.get(options.get())), DDS_RETCODE_OK);
            EXPECT_STREQ(text.get(options.get()), "first");
            EXPECT_EQ(text.set(options.get(), ""), DDS_RETCODE_OK);
            EXPECT_STREQ(text.get(options.get()), "");
        }
        EXPECT_EQ(live_allocations(), allocations);
    }
}

TEST(Options, KeepTheirTextWhenTheNewOneIsRefused) {
    for (const Text& text : texts) {
        const OwnedOptions options = make_options();
        text.set(options.get(), "kept");
        DDS_ReturnCode_t result = DDS_RETCODE_OK;
        EXPECT_EQ(output_of([&] { result = text.set(options.get(), nullptr); }),
                  line("Error", text.setter, text.if_null));
        EXPECT_EQ(result, DDS_RETCODE_BAD_PARAMETER);
        {
            const Fault fault(Function::DuplicateString);
            EXPECT_EQ(output_of([&] { result = text.set(options.get(), "new"); }),
                      line("Error", text.setter, text.without_memory));
        }
        EXPECT_EQ(result, DDS_RETCODE_ERROR);
        EXPECT_STREQ(text.get(options.get()), "kept");
    }
}

TEST(Options, RefuseToSetOrGetATextOfNothing) {
    for (const Text& text : texts) {
        DDS_ReturnCode_t result = DDS_RETCODE_OK;
        EXPECT_EQ(output_of([&] { result = text.set(nullptr, nullptr); }),
                  line("Error", text.setter, "QEL_KX_Options is null"));
        EXPECT_EQ(result, DDS_RETCODE_NO_DATA);
        const char* value = "";
        EXPECT_EQ(output_of([&] { value = text.get(nullptr); }),
                  line("Error", text.getter, "QEL_KX_Options is null"));
        EXPECT_EQ(value, nullptr);
    }
}

TEST(Options, BorrowTheParticipant) {
    const OwnedOptions options = make_options();
    DDS_ReturnCode_t result = DDS_RETCODE_ERROR;
    EXPECT_EQ(QEL_KX_Options_setDomainParticipant(options.get(), some_participant()),
              DDS_RETCODE_OK);
    EXPECT_EQ(
        output_of([&] { result = QEL_KX_Options_setDomainParticipant(options.get(), nullptr); }),
        line("Error", "setDomainParticipant", "domainParticipant is null"));
    EXPECT_EQ(result, DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(QEL_KX_Options_getDomainParticipant(options.get()), some_participant());
    EXPECT_EQ(output_of([&] { result = QEL_KX_Options_setDomainParticipant(nullptr, nullptr); }),
              line("Error", "setDomainParticipant", "QEL_KX_Options is null"));
    EXPECT_EQ(result, DDS_RETCODE_NO_DATA);
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Options_getDomainParticipant(nullptr), nullptr); }),
              line("Error", "getDomainParticipant", "QEL_KX_Options is null"));
}

TEST(Options, OwnADeepCopyOfTheThreadSettings) {
    const OwnedOptions options = make_options();
    DDS_ThreadSettings_t settings;
    DDS_ThreadSettings_t_initialize(&settings);
    settings.priority = 5;
    ASSERT_NE(DDS_LongSeq_ensure_length(&settings.cpu_list, 1, 1), 0);
    *DDS_LongSeq_get_reference(&settings.cpu_list, 0) = 3;
    EXPECT_EQ(QEL_KX_Options_setThreadSettings(options.get(), &settings), DDS_RETCODE_OK);
    *DDS_LongSeq_get_reference(&settings.cpu_list, 0) = 4;
    EXPECT_EQ(options->thread.priority, 5);
    EXPECT_EQ(DDS_LongSeq_get(&options->thread.cpu_list, 0), 3);
    DDS_ThreadSettings_t_finalize(&settings);
}

TEST(Options, RefuseThreadSettingsThatCannotBeCopied) {
    const OwnedOptions options = make_options();
    DDS_ReturnCode_t result = DDS_RETCODE_OK;
    EXPECT_EQ(output_of([&] { result = QEL_KX_Options_setThreadSettings(options.get(), nullptr); }),
              line("Error", "setThreadSettings", "couldn't copy thread settings"));
    EXPECT_EQ(result, DDS_RETCODE_ERROR);
    EXPECT_EQ(output_of([&] { result = QEL_KX_Options_setThreadSettings(nullptr, nullptr); }),
              line("Error", "setThreadSettings", "QEL_KX_Options is null"));
    EXPECT_EQ(result, DDS_RETCODE_NO_DATA);
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Options_getThreadSettings(nullptr), nullptr); }),
              line("Error", "getThreadSettings", "QEL_KX_Options is null"));
}

OwnedOptions make_origin() {
    OwnedOptions origin = make_options();
    origin->enabled = 0;
    origin->remote_administration_enabled = 0;
    origin->filter_level = 300;
    origin->domain_id = 7;
    origin->queue_size = 9;
    origin->domain_participant = some_participant();
    origin->echo_to_stdout = 1;
    origin->log_infrastructure_messages = 0;
    origin->thread.mask = DDS_THREAD_SETTINGS_STDIO;
    QEL_KX_Options_setApplicationKind(origin.get(), "kind");
    QEL_KX_Options_setQosLibrary(origin.get(), "library");
    QEL_KX_Options_setQosProfile(origin.get(), "profile");
    return origin;
}

TEST(Options, CopyEverythingButTheEchoAndTheInfrastructureMessages) {
    OwnedOptions origin = make_origin();
    const OwnedOptions copy = make_options();
    QEL_KX_Options_setQosLibrary(copy.get(), "replaced");
    EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 1);
    origin.reset();
    EXPECT_EQ(copy->enabled, 0);
    EXPECT_EQ(copy->remote_administration_enabled, 0);
    EXPECT_EQ(copy->filter_level, 300);
    EXPECT_EQ(copy->domain_id, 7);
    EXPECT_EQ(copy->queue_size, 9);
    EXPECT_EQ(copy->domain_participant, some_participant());
    EXPECT_EQ(copy->thread.mask, DDS_THREAD_SETTINGS_STDIO);
    EXPECT_STREQ(copy->application_kind, "kind");
    EXPECT_STREQ(copy->qos_library, "library");
    EXPECT_STREQ(copy->qos_profile, "profile");
    EXPECT_EQ(copy->echo_to_stdout, 0);
    EXPECT_EQ(copy->log_infrastructure_messages, 1);
}

TEST(Options, CopyLeavesATextThatTheOriginLacks) {
    const OwnedOptions origin = make_options();
    const OwnedOptions copy = make_origin();
    EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 1);
    EXPECT_STREQ(copy->application_kind, "kind");
    EXPECT_EQ(copy->filter_level, 600);
}

TEST(Options, CopyRefusesNothing) {
    const OwnedOptions options = make_options();
    EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Options_copy(nullptr, nullptr), 0); }),
              line("Error", "copy", "Pointer to destination QEL_KX_Options is NULL"));
    EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Options_copy(options.get(), nullptr), 0); }),
              line("Error", "copy", "Pointer to origin QEL_KX_Option s is NULL"));
}

TEST(Options, CopyStopsAtTheTextForWhichThereIsNoMemory) {
    constexpr const char* failures[] = {"Unable to to copy Application Kind",
                                        "Unable to copy QoS library", "Unable to copy QoS profile"};
    const OwnedOptions origin = make_origin();
    for (int copied = 0; copied < 3; ++copied) {
        const OwnedOptions copy = make_options();
        const Fault fault(Function::DuplicateString, copied + 1);
        EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 0); }),
                  line("Error", "copy", failures[copied]));
        EXPECT_EQ(copy->filter_level, 300);
        EXPECT_EQ(copy->application_kind != nullptr, copied > 0);
        EXPECT_EQ(copy->qos_library != nullptr, copied > 1);
        EXPECT_EQ(copy->qos_profile, nullptr);
        EXPECT_EQ(copy->domain_participant, nullptr);
    }
}

TEST(Options, CopyGoesOnWithoutTheThreadSettings) {
    const OwnedOptions origin = make_origin();
    const OwnedOptions copy = make_options();
    const Fault fault(Function::CopyThreadSettings);
    EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 1);
    EXPECT_TRUE(fault.has_struck());
    EXPECT_EQ(copy->domain_participant, some_participant());
}

TEST(Options, CreationReportsMissingMemory) {
    const Fault fault(Function::AllocateStructure);
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Options_createDefault(), nullptr); }),
              line("Warning", "createDefault", "Unable to allocate memory for QEL_KX_Options"));
}

TEST(Options, DeletionOfNothingIsNoted) {
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Options_delete(nullptr), DDS_RETCODE_OK); }),
              line("Info", "delete", "QEL_KX_Options was already NULL"));
}

}  // namespace
