#include <chrono>
#include <future>
#include <thread>

#include "admin/state.hpp"
#include "platform/dds/qos/conversion.hpp"
#include "tests/admin/administration.hpp"

namespace orvane::test {
namespace {

using State = QEL_KX_ADMIN_State;

constexpr const char* write_context = "QEL_KX_Orvane_writeState";
constexpr const char* matched_context = "QEL_KX_DDSEntities_stateWriterOnPublicationMatched";
constexpr const char* registration = "DDS_DataWriter_register_instance_untypedI";

class StatePublication : public AdminTest {
protected:
    StatePublication() { EXPECT_TRUE(bare_.make_entities()); }

    void match() {
        QEL_KX_DDSEntities_stateWriterOnPublicationMatched(bare_.get(),
                                                           bare_.entities()->stateWriter, nullptr);
    }
    void set_level(DDS_Long level) {
        EXPECT_EQ(QEL_KX_Orvane_setFilterLevel(bare_.get(), level), DDS_RETCODE_OK);
    }

    BareLogger bare_;
    const Calls writes_{write_function};
    const Calls registrations_{registration};
};

TEST_F(StatePublication, TheFirstReaderGetsOneSampleWithAllChangesAndLaterOnesTheLast) {
    const Node node;
    set_level(100);
    set_level(350);
    EXPECT_EQ(QEL_KX_Orvane_writeState(bare_.get()), 1) << "there is nobody to write for";
    EXPECT_EQ(writes_.count(), 0);
    EXPECT_EQ(QEL_KX_DDSEntities_hasInitialStateBeenSent(), 0);
    const auto first = take<State>(node.reader<State>(), 1);
    ASSERT_EQ(first.size(), 1U);
    EXPECT_EQ(first[0].sample->filterLevel, 350);
    EXPECT_EQ(first[0].sample->administrationDomainId, domain());

    set_level(400);
    const auto second = take<State>(node.reader<State>(), 1);
    ASSERT_EQ(second.size(), 1U);
    EXPECT_EQ(second[0].sample->filterLevel, 400);
    EXPECT_EQ(writes_.count(), 2) << "a later match publishes nothing";
    EXPECT_EQ(registrations_.count(), 1);
}

TEST_F(StatePublication, EveryFailureIsSaid) {
    {
        const Fault fault(registration, 1);
        EXPECT_EQ(output_of([&] { match(); }),
                  line(matched_context, "Unable to register the State instance"));
    }
    EXPECT_EQ(writes_.count(), 0);
    match();
    EXPECT_EQ(QEL_KX_DDSEntities_hasInitialStateBeenSent(), 1) << "the next match tries again";

    QEL_KX_Orvane_instance = bare_.get();
    {
        const Fault fault(write_function, 1);
        EXPECT_EQ(output_of([] { QEL_KX_Orvane_disable(); }),
                  line(write_context, "Unable to write State in DataWriter") +
                      line("QEL_KX_Orvane_disable", "Unable to Write State", "Warning"));
    }
    QEL_KX_Orvane_instance = nullptr;
    EXPECT_EQ(bare_->state->state, QEL_KX_STATE_NONOPERATIONAL);
    EXPECT_EQ(output_of([] { QEL_KX_Orvane_disable(); }), "") << "without a logger";
    EXPECT_EQ(QEL_KX_Orvane_writeState(bare_.get()), 1) << "the next write tries again";

    DDS_DataWriter* const writer = std::exchange(bare_.entities()->stateWriter, nullptr);
    EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Orvane_writeState(bare_.get()), 0); }),
              line(write_context, "could not get KX state data writer"));
    bare_.entities()->stateWriter = writer;
}

TEST_F(StatePublication, AFirstWriteThatFailsIsNotRepeated) {
    const Fault fault(write_function, 1);
    EXPECT_EQ(output_of([&] { match(); }), "");
    match();
    set_level(100);
    EXPECT_EQ(registrations_.count(), 1);
    EXPECT_EQ(writes_.count(), 1);
    EXPECT_EQ(QEL_KX_DDSEntities_hasInitialStateBeenSent(), 0);
}

TEST_F(AdminTest, ADisabledWriterWritesNothing) {
    const Node node;
    pexa::dds::OwnedQos<DDS_DomainParticipantQos> qos;
    ASSERT_EQ(DDS_DomainParticipant_get_qos(node.participant(), &qos.get()), DDS_RETCODE_OK);
    qos.get().entity_factory.autoenable_created_entities = 0;
    ASSERT_EQ(DDS_DomainParticipant_set_qos(node.participant(), &qos.get()), DDS_RETCODE_OK);
    BareLogger disabled;
    QEL_KX_Options_setDomainParticipant(disabled.options(), node.participant());
    ASSERT_TRUE(disabled.make_entities());
    QEL_KX_DDSEntities_gInitialStateSent = 1;
    const Calls writes(write_function);
    EXPECT_EQ(output_of([&] { EXPECT_EQ(QEL_KX_Orvane_writeState(disabled.get()), 1); }), "");
    EXPECT_EQ(writes.count(), 0);
}

/// Changes made while the engine writes, on the writing thread (as a listener of a reader in this
/// process may) or on another one that the writing thread waits for.
TEST_F(AdminTest, AChangeDuringAPublicationIsPublishedAfterIt) {
    const auto take_levels = [](DDS_DataReader* reader) {
        std::vector<DDS_Long> levels;
        for (const auto& received : take<State>(reader, 2)) {
            levels.push_back(received.sample->filterLevel);
        }
        return levels;
    };
    for (const bool another_thread : {false, true}) {
        const Node node;
        BareLogger bare;
        ASSERT_TRUE(bare.make_entities());
        DDS_Long next = 100;
        std::atomic<bool> is_changing = false;
        const auto change = [&] { QEL_KX_Orvane_setFilterLevel(bare.get(), next++); };
        const Before write(write_function, [&] {
            if (!is_changing.exchange(true)) {
                another_thread ? std::thread(change).join() : change();
            }
        });
        DDS_DataReader* const reader = node.reader<State>();
        EXPECT_EQ(take_levels(reader), (std::vector<DDS_Long>{0, 100}));
        is_changing = false;
        change();
        EXPECT_EQ(take_levels(reader), (std::vector<DDS_Long>{101, 102}));
    }
}

TEST_F(StatePublication, TheResultIsThatOfTheWriteThatContainsTheChange) {
    match();
    const auto publish = [&] { return QEL_KX_Orvane_writeState(bare_.get()); };
    std::future<DDS_Boolean> other;
    const Stub<decltype(DDS_DataWriter_write_untypedI)> write(
        write_function, [&](DDS_DataWriter*, const void*, const DDS_WriteParams_t*) {
            if (other.valid()) {
                return DDS_RETCODE_ERROR;
            }
            other = std::async(std::launch::async, publish);
            // It is ready only if it is wrong.
            other.wait_for(std::chrono::milliseconds(100));
            EXPECT_EQ(publish(), 1) << "inside a write nothing is known yet";
            const auto is_late = [&] {
                return admin::publish_state(*bare_.get(), {}, std::chrono::milliseconds(1));
            };
            EXPECT_EQ(std::async(std::launch::async, is_late).get(), pexa::Status::timeout);
            return DDS_RETCODE_OK;
        });
    const std::string output = output_of([&] {
        EXPECT_EQ(publish(), 1);
        EXPECT_EQ(other.get(), 0);
    });
    const std::string report = line(write_context, "Unable to write State in DataWriter");
    EXPECT_EQ(output, report + report + report + report)
        << "the one that is late, what was left twice, and the other one";
}

TEST_F(StatePublication, TheLastSampleOfRacingChangesIsTheLastState) {
    const Node node;
    DDS_DataReader* const reader = node.reader<State>();
    ASSERT_TRUE(await_data(reader));
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
    ASSERT_EQ(taken.size(), 2U * rounds + 1U) << "one for each change";
    EXPECT_EQ(taken.back().sample->filterLevel, bare_->filterLevel);
    EXPECT_EQ(bare_->state->filterLevel, bare_->filterLevel);
}

TEST_F(AdminTest, ALoggerPublishesItsEnd) {
    const Node node;
    DDS_DataReader* const reader = node.reader<State>();
    {
        Options options = make_options();
        QEL_KX_Options_setApplicationKind(options.get(), "short-lived");
        const RunningLogger logger(std::move(options));
        ASSERT_TRUE(await_data(reader));
    }
    auto taken = take<State>(reader, 1);
    while (!taken.empty() && taken.back().sample->state != QEL_KX_STATE_NONOPERATIONAL) {
        taken = take<State>(reader, 1);
    }
    ASSERT_FALSE(taken.empty());
    const State& last = *taken.back().sample;
    EXPECT_STREQ(last.applicationKind, "short-lived");
    // Errors only is what the middleware's logger starts with.
    for (DDS_Long category = 0; category < 5; ++category) {
        EXPECT_EQ(last.qelLoggerVerbosities[category].category, category);
        EXPECT_EQ(last.qelLoggerVerbosities[category].verbosity, 1);
    }
}

}  // namespace
}  // namespace orvane::test
