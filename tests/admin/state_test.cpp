#include <thread>

#include "pexa/domain.h"
#include "tests/admin/admin_fixture.hpp"

namespace admin_test {
namespace {

using State = QEL_KX_ADMIN_State;

constexpr const char* write_context = "QEL_KX_Orvane_writeState";
constexpr const char* matched_context = "QEL_KX_DDSEntities_stateWriterOnPublicationMatched";
constexpr const char* write = "DDS_DataWriter_write_untypedI";
constexpr const char* registration = "DDS_DataWriter_register_instance_untypedI";

class StatePublication : public AdminTest {
protected:
    StatePublication() {
        EXPECT_TRUE(bare_.build());
        faults::reset();
    }
    void match() {
        QEL_KX_DDSEntities_stateWriterOnPublicationMatched(&bare_.logger,
                                                           bare_.entities()->stateWriter, nullptr);
    }
    void set_level(DDS_Long level) {
        EXPECT_EQ(DDS_RETCODE_OK, QEL_KX_Orvane_setFilterLevel(&bare_.logger, level));
    }

    BareLogger bare_;
    QEL_KX_Orvane& logger_ = bare_.logger;
};

TEST_F(StatePublication, TheFirstReaderGetsOneSampleWithAllChangesAndLaterOnesTheLast) {
    Tool tool;
    set_level(100);
    set_level(350);
    EXPECT_EQ(1, QEL_KX_Orvane_writeState(&logger_)) << "there is nobody to write for";
    EXPECT_EQ(0, faults::calls(write));
    EXPECT_EQ(0, QEL_KX_DDSEntities_hasInitialStateBeenSent());
    const auto first = take<State>(tool.reader<State>(), 1);
    ASSERT_EQ(1U, first.size());
    EXPECT_EQ(350, first[0]->filterLevel);
    EXPECT_EQ(domain, first[0]->administrationDomainId);
    EXPECT_EQ(static_cast<DDS_Long>(bare_.entities()->rtpsHostId),
              first[0]->hostAndAppId.rtps_host_id);
    EXPECT_EQ(static_cast<DDS_Long>(bare_.entities()->rtpsAppId),
              first[0]->hostAndAppId.rtps_app_id);
    EXPECT_EQ(1, QEL_KX_DDSEntities_hasInitialStateBeenSent());

    set_level(400);
    const auto second = take<State>(tool.reader<State>(), 1);
    ASSERT_EQ(1U, second.size());
    EXPECT_EQ(400, second[0]->filterLevel);
    EXPECT_EQ(2, faults::calls(write)) << "a later match publishes nothing";
    EXPECT_EQ(1, faults::calls(registration));
}

TEST_F(AdminTest, AReaderThatIsThereBeforeTheLoggerGetsTheState) {
    Tool application;
    DDS_DataReader* const reader = application.reader<State>();
    BareLogger shared;
    QEL_KX_Options_setDomainParticipant(shared.options.get(), application.participant());
    ASSERT_TRUE(shared.build());
    shared.become_operational();
    EXPECT_EQ(1, QEL_KX_Orvane_writeState(&shared.logger));
    const auto taken = take<State>(reader, 2);
    ASSERT_EQ(2U, taken.size());
    EXPECT_EQ(QEL_KX_STATE_INITIALIZING, taken[0]->state);
    EXPECT_EQ(QEL_KX_STATE_OPERATIONAL, taken[1]->state);
    EXPECT_EQ(static_cast<DDS_Long>(shared.entities()->rtpsHostId),
              taken[0]->hostAndAppId.rtps_host_id);
}

TEST_F(StatePublication, EveryFailedWriteIsSaid) {
    match();
    faults::reset();
    faults::add({.function = write, .call = 1});
    faults::add({.function = "QEL_KX_ADMIN_StateDataWriter_as_datawriter"});
    const auto failing = [&](const char* text) {
        EXPECT_EQ(line("KX Error", write_context, text),
                  printed([&] { EXPECT_EQ(0, QEL_KX_Orvane_writeState(&logger_)); }));
    };
    failing("could not get State DataWriter as DDS DataWriter");
    failing("Unable to write State in DataWriter");
    EXPECT_EQ(1, QEL_KX_Orvane_writeState(&logger_));
    QEL_KX_ADMIN_StateDataWriter* const writer = bare_.entities()->stateWriter;
    bare_.entities()->stateWriter = nullptr;
    failing("could not get KX state data writer");
    bare_.entities()->stateWriter = writer;
}

TEST_F(StatePublication, AMatchWithoutAUsableWriterOrInstanceIsSaid) {
    EXPECT_EQ(line("KX Error", matched_context, "could not get KX state data writer"), printed([&] {
                  QEL_KX_DDSEntities_stateWriterOnPublicationMatched(&logger_, nullptr, nullptr);
              }));
    faults::add({.function = registration});
    EXPECT_EQ(line("KX Error", matched_context, "Unable to register the State instance"),
              printed([&] { match(); }));
    EXPECT_EQ(0, faults::calls(write));
    match();
    EXPECT_EQ(1, QEL_KX_DDSEntities_hasInitialStateBeenSent()) << "the next match tries again";
}

TEST_F(StatePublication, AFirstWriteThatFailsIsNotRepeated) {
    faults::add({.function = write});
    EXPECT_EQ("", printed([&] { match(); }));
    match();
    set_level(100);
    EXPECT_EQ(1, faults::calls(registration));
    EXPECT_EQ(1, faults::calls(write));
    EXPECT_EQ(0, QEL_KX_DDSEntities_hasInitialStateBeenSent());
}

TEST_F(StatePublication, ADisabledWriterWritesNothing) {
    Tool application;
    DDS_DomainParticipantQos qos{};
    DDS_DomainParticipantQos_initialize(&qos);
    ASSERT_EQ(DDS_RETCODE_OK, DDS_DomainParticipant_get_qos(application.participant(), &qos));
    qos.entity_factory.autoenable_created_entities = 0;
    ASSERT_EQ(DDS_RETCODE_OK, DDS_DomainParticipant_set_qos(application.participant(), &qos));
    DDS_DomainParticipantQos_finalize(&qos);
    BareLogger disabled;
    QEL_KX_Options_setDomainParticipant(disabled.options.get(), application.participant());
    ASSERT_TRUE(disabled.build());
    QEL_KX_DDSEntities_gInitialStateSent = 1;
    faults::reset();
    EXPECT_EQ("", printed([&] { EXPECT_EQ(1, QEL_KX_Orvane_writeState(&disabled.logger)); }));
    EXPECT_EQ(0, faults::calls(write));
}

std::vector<DDS_Long> take_levels(DDS_DataReader* reader, std::size_t count) {
    std::vector<DDS_Long> levels;
    for (const auto& sample : take<State>(reader, count)) {
        levels.push_back(sample->filterLevel);
    }
    return levels;
}

/// Changes made while the engine writes, on the writing thread (as a listener of a reader in this
/// process may) or on another one that the writing thread waits for.
TEST_F(AdminTest, AChangeDuringAPublicationIsPublishedAfterIt) {
    for (const bool another_thread : {false, true}) {
        Tool tool;
        BareLogger bare;
        ASSERT_TRUE(bare.build());
        DDS_Long next = 100;
        bool changing = false;
        const auto change = [&] { QEL_KX_Orvane_setFilterLevel(&bare.logger, next++); };
        faults::before(write, [&] {
            if (!std::exchange(changing, true)) {
                another_thread ? std::thread(change).join() : change();
            }
        });
        DDS_DataReader* const reader = tool.reader<State>();
        EXPECT_EQ((std::vector<DDS_Long>{0, 100}), take_levels(reader, 2));
        changing = false;
        change();
        EXPECT_EQ((std::vector<DDS_Long>{101, 102}), take_levels(reader, 2));
        faults::before(write, nullptr);
    }
}

TEST_F(StatePublication, TheLastSampleOfRacingChangesIsTheLastState) {
    Tool tool;
    DDS_DataReader* const reader = tool.reader<State>();
    ASSERT_TRUE(wait_for_data(reader));
    constexpr DDS_Long rounds = 200;
    const auto change = [&](DDS_Long start) {
        for (DDS_Long round = 0; round < rounds; ++round) {
            set_level(start + 2 * round);
        }
    };
    std::thread other(change, 1);
    change(2);
    other.join();
    const auto taken = take<State>(reader, 2 * rounds + 1);
    ASSERT_EQ(2U * rounds + 1U, taken.size()) << "one for each change";
    EXPECT_EQ(logger_.filterLevel, taken.back()->filterLevel);
    EXPECT_EQ(logger_.filterLevel, logger_.state->filterLevel);
}

TEST_F(AdminTest, ALoggerPublishesItsEnd) {
    Tool tool;
    DDS_DataReader* const reader = tool.reader<State>();
    std::unique_ptr<QEL_KX_Options, BareLogger::Delete> options{QEL_KX_Options_createDefault()};
    QEL_KX_Options_setDomainId(options.get(), domain);
    QEL_KX_Options_setApplicationKind(options.get(), "short-lived");
    QEL_KX_Orvane_setOptions(options.get());
    ASSERT_NE(nullptr, QEL_KX_Orvane_getInstance());
    auto taken = take<State>(reader, 1);
    EXPECT_EQ(DDS_RETCODE_OK, QEL_KX_Orvane_finalizeInstance());
    while (!taken.empty() && taken.back()->state != QEL_KX_STATE_NONOPERATIONAL) {
        taken = take<State>(reader, 1);
    }
    ASSERT_FALSE(taken.empty());
    EXPECT_STREQ("short-lived", taken.back()->applicationKind);
    // Errors only is what the middleware's logger starts with.
    for (DDS_Long category = 0; category < 5; ++category) {
        EXPECT_EQ(category, taken.back()->qelLoggerVerbosities[category].category);
        EXPECT_EQ(1, taken.back()->qelLoggerVerbosities[category].verbosity);
    }
}

TEST_F(AdminTest, AFailedLastStateIsAWarning) {
    EXPECT_EQ("", printed([] { QEL_KX_Orvane_disable(); })) << "without a logger";
    BareLogger bare;
    ASSERT_TRUE(bare.build());
    QEL_KX_DDSEntities_gInitialStateSent = 1;
    faults::reset();
    faults::add({.function = write});
    QEL_KX_Orvane_instance = &bare.logger;
    EXPECT_EQ(line("KX Error", write_context, "Unable to write State in DataWriter") +
                  line("KX Warning", "QEL_KX_Orvane_disable", "Unable to Write State"),
              printed([] { QEL_KX_Orvane_disable(); }));
    QEL_KX_Orvane_instance = nullptr;
    EXPECT_EQ(QEL_KX_STATE_NONOPERATIONAL, bare.state->state);
}

}  // namespace
}  // namespace admin_test
