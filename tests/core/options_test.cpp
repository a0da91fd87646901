#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "orvane/core.h"
#include "tests/core/faults.hpp"
#include "tests/core/output.hpp"

namespace {

using orvane::test::Fault;
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

/// Checks the result and the one line of a call that is refused.
template <typename Call, typename Result>
void expect_refusal(Call call, Result result, const char* operation, const char* message) {
    EXPECT_EQ(output_of([&] { EXPECT_EQ(call(), result) << operation; }),
              line("Error", operation, message));
}

TEST(Options, StartWithTheDefaults) {
    const OwnedOptions options = make_options();
    EXPECT_EQ(options->domain_participant, nullptr);
    EXPECT_EQ(options->enabled, 1);
    EXPECT_EQ(options->remote_administration_enabled, 1);
    EXPECT_EQ(options->filter_level, 600);
    EXPECT_EQ(options->domain_id, 0);
    EXPECT_EQ(options->qos_library, nullptr);
    EXPECT_EQ(options->qos_profile, nullptr);
    EXPECT_EQ(options->queue_size, 128);
    EXPECT_EQ(options->application_kind, nullptr);
    EXPECT_EQ(options->echo_to_stdout, 0);
    EXPECT_EQ(options->log_infrastructure_messages, 1);
    const DDS_ThreadSettings_t* thread = QEL_KX_Options_getThreadSettings(options.get());
    ASSERT_EQ(thread, &options->thread);
    EXPECT_EQ(thread->mask, 0U);
    EXPECT_EQ(thread->priority, -9999999);
    EXPECT_EQ(thread->stack_size, -1);
    EXPECT_EQ(thread->cpu_rotation, DDS_THREAD_SETTINGS_CPU_NO_ROTATION);
    EXPECT_EQ(thread->cpu_list.length, 0);
}

struct Number {
    DDS_ReturnCode_t (*set)(QEL_KX_Options*, DDS_Long);
    DDS_Long (*get)(const QEL_KX_Options*);
    const char* setter;
    const char* getter;
    DDS_Long least;
    /// NULL: no value is refused.
    const char* refusal;
    DDS_Long of_nothing;
};

constexpr Number numbers[] = {
    {QEL_KX_Options_setFilterLevel, QEL_KX_Options_getFilterLevel, "setFilterLevel",
     "getFilterLevel", 0, "Filter Level must be positive or zero", -1},
    {QEL_KX_Options_setDomainId, QEL_KX_Options_getDomainId, "setDomainId", "hetDomainId", 0,
     "Domain Id must be positive or zero", -1},
    {QEL_KX_Options_setQueueSize, QEL_KX_Options_getQueueSize, "setQueueSize", "getQueueSize", 1,
     "Queue Size must be positive", -1},
    {QEL_KX_Options_setRemoteAdministrationEnabled, QEL_KX_Options_isRemoteAdministrationEnabled,
     "setRemoteAdministrationEnabled", "isRemoteAdministrationEnabled", 256, nullptr, 0},
    {QEL_KX_Options_setEchoToStdout, QEL_KX_Options_getEchoToStdout, "setEchoToStdout",
     "getEchoToStdout", -3, nullptr, 0},
    {QEL_KX_Options_setLogInfrastructureMessages, QEL_KX_Options_getLogInfrastructureMessages,
     "setLogInfrastructureMessages", "getLogInfrastructureMessages", 2, nullptr, 0},
};

TEST(Options, KeepANumberThatIsInRangeAndRefuseOneThatIsNot) {
    for (const Number& number : numbers) {
        const OwnedOptions options = make_options();
        EXPECT_EQ(output_of([&] {
                      EXPECT_EQ(number.set(options.get(), 2147483647), DDS_RETCODE_OK);
                      EXPECT_EQ(number.get(options.get()), 2147483647);
                      EXPECT_EQ(number.set(options.get(), number.least), DDS_RETCODE_OK);
                  }),
                  "");
        if (number.refusal != nullptr) {
            expect_refusal([&] { return number.set(options.get(), number.least - 1); },
                           DDS_RETCODE_BAD_PARAMETER, number.setter, number.refusal);
        }
        EXPECT_EQ(number.get(options.get()), number.least) << number.setter;
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

TEST(Options, OwnACopyOfTheLastTextThatWasNotRefused) {
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
            expect_refusal([&] { return text.set(options.get(), nullptr); },
                           DDS_RETCODE_BAD_PARAMETER, text.setter, text.if_null);
            {
                const Fault fault("DDS_String_dup");
                expect_refusal([&] { return text.set(options.get(), "new"); }, DDS_RETCODE_ERROR,
                               text.setter, text.without_memory);
            }
            EXPECT_STREQ(text.get(options.get()), "first");
            EXPECT_EQ(text.set(options.get(), ""), DDS_RETCODE_OK);
            EXPECT_STREQ(text.get(options.get()), "");
        }
        EXPECT_EQ(live_allocations(), allocations);
    }
}

TEST(Options, OfNothingAreNeitherSetNorGot) {
    constexpr const char* nothing = "QEL_KX_Options is null";
    for (const Number& number : numbers) {
        expect_refusal([&] { return number.set(nullptr, number.least); }, DDS_RETCODE_NO_DATA,
                       number.setter, nothing);
        expect_refusal([&] { return number.get(nullptr); }, number.of_nothing, number.getter,
                       nothing);
    }
    for (const Text& text : texts) {
        expect_refusal([&] { return text.set(nullptr, nullptr); }, DDS_RETCODE_NO_DATA, text.setter,
                       nothing);
        expect_refusal([&] { return text.get(nullptr); }, nullptr, text.getter, nothing);
    }
    expect_refusal([] { return QEL_KX_Options_setDomainParticipant(nullptr, nullptr); },
                   DDS_RETCODE_NO_DATA, "setDomainParticipant", nothing);
    expect_refusal([] { return QEL_KX_Options_getDomainParticipant(nullptr); }, nullptr,
                   "getDomainParticipant", nothing);
    expect_refusal([] { return QEL_KX_Options_setThreadSettings(nullptr, nullptr); },
                   DDS_RETCODE_NO_DATA, "setThreadSettings", nothing);
    expect_refusal([] { return QEL_KX_Options_getThreadSettings(nullptr); }, nullptr,
                   "getThreadSettings", nothing);
    const OwnedOptions options = make_options();
    expect_refusal([] { return QEL_KX_Options_copy(nullptr, nullptr); }, 0, "copy",
                   "Pointer to destination QEL_KX_Options is NULL");
    expect_refusal([&] { return QEL_KX_Options_copy(options.get(), nullptr); }, 0, "copy",
                   "Pointer to origin QEL_KX_Option s is NULL");
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Options_delete(nullptr), DDS_RETCODE_OK); }),
              line("Info", "delete", "QEL_KX_Options was already NULL"));
}

TEST(Options, BorrowTheParticipantAndCopyTheThreadSettings) {
    const OwnedOptions options = make_options();
    EXPECT_EQ(QEL_KX_Options_setDomainParticipant(options.get(), some_participant()),
              DDS_RETCODE_OK);
    expect_refusal([&] { return QEL_KX_Options_setDomainParticipant(options.get(), nullptr); },
                   DDS_RETCODE_BAD_PARAMETER, "setDomainParticipant", "domainParticipant is null");
    EXPECT_EQ(QEL_KX_Options_getDomainParticipant(options.get()), some_participant());

    DDS_ThreadSettings_t settings;
    DDS_ThreadSettings_t_initialize(&settings);
    settings.priority = 5;
    ASSERT_NE(DDS_LongSeq_ensure_length(&settings.cpu_list, 1, 1), 0);
    *DDS_LongSeq_get_reference(&settings.cpu_list, 0) = 3;
    EXPECT_EQ(QEL_KX_Options_setThreadSettings(options.get(), &settings), DDS_RETCODE_OK);
    DDS_ThreadSettings_t_finalize(&settings);
    expect_refusal([&] { return QEL_KX_Options_setThreadSettings(options.get(), nullptr); },
                   DDS_RETCODE_ERROR, "setThreadSettings", "couldn't copy thread settings");
    EXPECT_EQ(options->thread.priority, 5);
    EXPECT_EQ(DDS_LongSeq_get(&options->thread.cpu_list, 0), 3);
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
    origin = make_options();
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

    EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 1);
    EXPECT_STREQ(copy->application_kind, "kind") << "the origin has none";
    EXPECT_EQ(copy->filter_level, 600);
}

TEST(Options, CopyStopsAtTheTextForWhichThereIsNoMemoryAndGoesOnWithoutThreadSettings) {
    constexpr const char* failures[] = {"Unable to to copy Application Kind",
                                        "Unable to copy QoS library", "Unable to copy QoS profile"};
    const OwnedOptions origin = make_origin();
    for (int copied = 0; copied < 3; ++copied) {
        const OwnedOptions copy = make_options();
        const Fault fault("DDS_String_dup", copied + 1);
        expect_refusal([&] { return QEL_KX_Options_copy(copy.get(), origin.get()); }, 0, "copy",
                       failures[copied]);
        EXPECT_EQ(copy->filter_level, 300);
        EXPECT_EQ(copy->application_kind != nullptr, copied > 0);
        EXPECT_EQ(copy->qos_library != nullptr, copied > 1);
        EXPECT_EQ(copy->qos_profile, nullptr);
        EXPECT_EQ(copy->domain_participant, nullptr);
    }
    const OwnedOptions copy = make_options();
    const Fault fault("DDS_ThreadSettings_t_copy");
    EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 1);
    EXPECT_TRUE(fault.has_struck());
    EXPECT_EQ(copy->domain_participant, some_participant());
}

TEST(Options, CreationReportsMissingMemory) {
    const Fault fault("QELOsapiHeap_allocateStructureOfSize");
    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Options_createDefault(), nullptr); }),
              line("Warning", "createDefault", "Unable to allocate memory for QEL_KX_Options"));
}

}  // namespace
