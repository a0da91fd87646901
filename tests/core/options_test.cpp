#include <sstream>

#include "orvane/core.h"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

Options default_options() {
    return Options(QEL_KX_Options_createDefault());
}

DDS_DomainParticipant* some_participant() {
    static int nothing = 0;
    return reinterpret_cast<DDS_DomainParticipant*>(&nothing);
}

/// Checks the result and the one line of a call that is refused.
template <typename Call, typename Result>
void expect_refusal(Call call, Result result, const std::string& operation, const char* message) {
    EXPECT_EQ(output_of([&] { EXPECT_EQ(call(), result) << operation; }),
              line("QEL_KX_Options_" + operation, message));
}

constexpr const char* nothing = "QEL_KX_Options is null";

TEST(Options, KeepANumberThatIsInRangeAndRefuseOneThatIsNot) {
    constexpr struct {
        DDS_ReturnCode_t (*set)(QEL_KX_Options*, DDS_Long);
        DDS_Long (*get)(const QEL_KX_Options*);
        const char* setter;
        const char* getter;
        DDS_Long by_default;
        DDS_Long least;
        const char* refusal;
        DDS_Long of_nothing;
    } numbers[] = {
        {QEL_KX_Options_setFilterLevel, QEL_KX_Options_getFilterLevel, "setFilterLevel",
         "getFilterLevel", 600, 0, "Filter Level must be positive or zero", -1},
        {QEL_KX_Options_setDomainId, QEL_KX_Options_getDomainId, "setDomainId", "hetDomainId", 0, 0,
         "Domain Id must be positive or zero", -1},
        {QEL_KX_Options_setQueueSize, QEL_KX_Options_getQueueSize, "setQueueSize", "getQueueSize",
         128, 1, "Queue Size must be positive", -1},
        {QEL_KX_Options_setRemoteAdministrationEnabled,
         QEL_KX_Options_isRemoteAdministrationEnabled, "setRemoteAdministrationEnabled",
         "isRemoteAdministrationEnabled", 1, 256, nullptr, 0},
        {QEL_KX_Options_setEchoToStdout, QEL_KX_Options_getEchoToStdout, "setEchoToStdout",
         "getEchoToStdout", 0, -3, nullptr, 0},
        {QEL_KX_Options_setLogInfrastructureMessages, QEL_KX_Options_getLogInfrastructureMessages,
         "setLogInfrastructureMessages", "getLogInfrastructureMessages", 1, 2, nullptr, 0},
    };
    for (const auto& number : numbers) {
        const Options options = default_options();
        EXPECT_EQ(number.get(options.get()), number.by_default) << number.getter;
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
        expect_refusal([&] { return number.set(nullptr, number.least); }, DDS_RETCODE_NO_DATA,
                       number.setter, nothing);
        expect_refusal([&] { return number.get(nullptr); }, number.of_nothing, number.getter,
                       nothing);
    }
}

TEST(Options, OwnACopyOfTheLastTextThatWasNotRefused) {
    constexpr struct {
        DDS_ReturnCode_t (*set)(QEL_KX_Options*, const char*);
        const char* (*get)(const QEL_KX_Options*);
        const char* setter;
        const char* getter;
        const char* if_null;
        const char* without_memory;
    } texts[] = {
        {QEL_KX_Options_setQosLibrary, QEL_KX_Options_getQosLibrary, "setQoSLibrary",
         "getQoSLibrary", "QoS Library is NULL", "Unable to allocate memory for qosLibrary"},
        {QEL_KX_Options_setQosProfile, QEL_KX_Options_getQosProfile, "setQoSProfile",
         "getQoSProfile", "QoS Profile is NULL", "Unable to allocate memory for qosProfile"},
        {QEL_KX_Options_setApplicationKind, QEL_KX_Options_getApplicationKind, "setApplicationKind",
         "getApplicationKind", "application kind is NULL",
         "Unable to allocate memory for Application Kind"},
    };
    const long blocks = live_blocks();
    for (const auto& text : texts) {
        SCOPED_TRACE(text.setter);
        const Options options = default_options();
        EXPECT_EQ(text.get(options.get()), nullptr);
        char mine[] = "first";
        EXPECT_EQ(text.set(options.get(), mine), DDS_RETCODE_OK);
        mine[0] = 'F';
        EXPECT_STREQ(text.get(options.get()), "first");
        EXPECT_EQ(text.set(options.get(), text.get(options.get())), DDS_RETCODE_OK);
        expect_refusal([&] { return text.set(options.get(), nullptr); }, DDS_RETCODE_BAD_PARAMETER,
                       text.setter, text.if_null);
        {
            const Fault fault("DDS_String_dup", 1);
            expect_refusal([&] { return text.set(options.get(), "new"); }, DDS_RETCODE_ERROR,
                           text.setter, text.without_memory);
        }
        EXPECT_STREQ(text.get(options.get()), "first");
        EXPECT_EQ(text.set(options.get(), ""), DDS_RETCODE_OK);
        EXPECT_STREQ(text.get(options.get()), "");
        expect_refusal([&] { return text.set(nullptr, nullptr); }, DDS_RETCODE_NO_DATA, text.setter,
                       nothing);
        expect_refusal([&] { return text.get(nullptr); }, nullptr, text.getter, nothing);
    }
    EXPECT_EQ(live_blocks(), blocks);
}

TEST(Options, BorrowTheParticipantAndCopyTheThreadSettings) {
    const Options options = default_options();
    EXPECT_EQ(QEL_KX_Options_setDomainParticipant(options.get(), some_participant()),
              DDS_RETCODE_OK);
    expect_refusal([&] { return QEL_KX_Options_setDomainParticipant(options.get(), nullptr); },
                   DDS_RETCODE_BAD_PARAMETER, "setDomainParticipant", "domainParticipant is null");
    EXPECT_EQ(QEL_KX_Options_getDomainParticipant(options.get()), some_participant());
    EXPECT_EQ(QEL_KX_Options_getThreadSettings(options.get()), &options->thread);
    EXPECT_EQ(options->thread.priority, DDS_THREAD_PRIORITY_DEFAULT);

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

    EXPECT_EQ(output_of([] { EXPECT_EQ(QEL_KX_Options_delete(nullptr), DDS_RETCODE_OK); }),
              line("QEL_KX_Options_delete", "QEL_KX_Options was already NULL", "Info"));
}

/// Differs from the defaults in every field.
Options make_origin() {
    Options origin = default_options();
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

std::string fields_of(const Options& options) {
    const auto text = [](const char* value) { return value == nullptr ? "-" : value; };
    std::ostringstream fields;
    fields << options->enabled << options->remote_administration_enabled << ' '
           << options->filter_level << ' ' << options->domain_id << ' ' << options->queue_size
           << ' ' << (options->domain_participant == some_participant()) << ' '
           << options->thread.mask << ' ' << text(options->application_kind) << ' '
           << text(options->qos_library) << ' ' << text(options->qos_profile) << ' '
           << options->echo_to_stdout << options->log_infrastructure_messages;
    return fields.str();
}

TEST(Options, CopyEverythingButTheEchoAndTheInfrastructureMessages) {
    Options origin = make_origin();
    const Options copy = default_options();
    QEL_KX_Options_setQosLibrary(copy.get(), "replaced");
    EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 1);
    EXPECT_EQ(fields_of(origin), "00 300 7 9 1 2 kind library profile 10");
    origin = default_options();
    EXPECT_EQ(fields_of(copy), "00 300 7 9 1 2 kind library profile 01");
    EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 1);
    EXPECT_EQ(fields_of(copy), "11 600 0 128 0 0 kind library profile 01") << "it has no texts";
    expect_refusal([] { return QEL_KX_Options_copy(nullptr, nullptr); }, 0, "copy",
                   "Pointer to destination QEL_KX_Options is NULL");
    expect_refusal([&] { return QEL_KX_Options_copy(copy.get(), nullptr); }, 0, "copy",
                   "Pointer to origin QEL_KX_Option s is NULL");
}

TEST(Options, CopyStopsAtTheTextForWhichThereIsNoMemoryAndGoesOnWithoutThreadSettings) {
    constexpr struct {
        const char* report;
        const char* fields;
    } failures[] = {{"Unable to to copy Application Kind", "00 300 7 9 0 0 - - - 01"},
                    {"Unable to copy QoS library", "00 300 7 9 0 0 kind - - 01"},
                    {"Unable to copy QoS profile", "00 300 7 9 0 0 kind library - 01"}};
    const Options origin = make_origin();
    int call = 0;
    for (const auto& failure : failures) {
        const Options copy = default_options();
        const Fault fault("DDS_String_dup", ++call);
        expect_refusal([&] { return QEL_KX_Options_copy(copy.get(), origin.get()); }, 0, "copy",
                       failure.report);
        EXPECT_EQ(fields_of(copy), failure.fields);
    }
    const Options copy = default_options();
    const Fault fault("DDS_ThreadSettings_t_copy", 1);
    EXPECT_EQ(QEL_KX_Options_copy(copy.get(), origin.get()), 1);
    EXPECT_EQ(fields_of(copy), "00 300 7 9 1 0 kind library profile 01");
}

}  // namespace
}  // namespace orvane::test
