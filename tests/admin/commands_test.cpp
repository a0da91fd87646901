#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>

#include "admin/state.hpp"
#include "core/filter.hpp"
#include "pexa/subscription.h"
#include "tests/admin/administration.hpp"

namespace orvane::test {
namespace {

using Request = QEL_KX_ADMIN_CommandRequest;
using Response = QEL_KX_ADMIN_CommandResponse;
using State = QEL_KX_ADMIN_State;
using Pair = QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity;

constexpr const char* take_context = "QEL_KX_Orvane_CommandRequestListener_on_data_available";
constexpr const char* process_context = "QEL_KX_Orvane_processCommand";
constexpr const char* refusal = "Orvane: Trouble setting new Filter Level.";

/// A logger, and a node that commands it and reads what it publishes.
class Commands : public AdminTest {
protected:
    Commands() {
        EXPECT_TRUE(bare_.make_entities());
        QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(bare_.get());
        requests_ = node_.writer<Request>();
        responses_ = node_.reader<Response>(
            [](DDS_DataReaderQos& qos) { qos.durability.kind = DDS_VOLATILE_DURABILITY_QOS; });
        states_ = node_.reader<State>();
        EXPECT_EQ(take<State>(states_, 1).size(), 1U);
        EXPECT_TRUE(await_writer(responses_));
    }

    /// Serves commands from now on.
    void become_operational() {
        admin::set_state_kind(*bare_.get(), QEL_KX_STATE_OPERATIONAL);
        DDS_DataReaderListener listener{};
        listener.listener_data = bare_.get();
        listener.on_data_available = QEL_KX_Orvane_CommandRequestListener_on_data_available;
        ASSERT_EQ(DDS_DataReader_set_listener(bare_.entities()->commandRequestReader, &listener,
                                              DDS_DATA_AVAILABLE_STATUS),
                  DDS_RETCODE_OK);
    }

    /// A request to this logger, numbered and with an originator.
    Sample<Request> request(DDS_Long invocation) {
        Sample<Request> made = make_sample<Request>();
        made->targetHostAndAppId = bare_->state->hostAndAppId;
        made->originatorHostAndAppId = {-7, 8};
        made->invocation = invocation;
        return made;
    }
    Sample<Request> set_level(DDS_Long invocation, DDS_Long level) {
        Sample<Request> made = request(invocation);
        made->command._u.filterLevel = level;
        return made;
    }
    Sample<Request> set_verbosities(DDS_Long invocation, const std::vector<Pair>& pairs) {
        Sample<Request> made = request(invocation);
        made->command._d = QEL_KX_SET_QEL_LOGGER_LEVEL;
        EXPECT_NE(QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_from_array(
                      &made->command._u.categoryAndVerbosity, pairs.data(),
                      static_cast<DDS_Long>(pairs.size())),
                  0);
        return made;
    }

    void send(const Sample<Request>& made) {
        EXPECT_EQ(TopicType<Request>::write(requests_, made.get(), &DDS_HANDLE_NIL),
                  DDS_RETCODE_OK);
    }

    /// @return the next response, which must be the one to @p invocation
    Sample<Response> response_to(DDS_Long invocation) {
        auto taken = take<Response>(responses_, 1);
        if (taken.size() != 1) {
            ADD_FAILURE() << taken.size() << " responses";
            return make_sample<Response>();
        }
        const Response& response = *taken[0].sample;
        const auto numbers = [](const QEL_KX_HostAndAppId& id) {
            return std::pair(id.rtps_host_id, id.rtps_app_id);
        };
        EXPECT_EQ(response.invocation, invocation);
        EXPECT_EQ(numbers(response.originatorHostAndAppId), std::pair(-7, 8));
        EXPECT_EQ(numbers(response.hostAndAppId), numbers(bare_->state->hostAndAppId));
        return std::move(taken[0].sample);
    }

    BareLogger bare_;
    Node node_;
    DDS_DataWriter* requests_ = nullptr;
    DDS_DataReader* responses_ = nullptr;
    DDS_DataReader* states_ = nullptr;
};

TEST_F(Commands, ALevelIsSetPublishedAndAnsweredUnlessItIsRefusedOrInForce) {
    become_operational();
    core::follow_filter_of(bare_.get());
    constexpr struct {
        DDS_Long level;
        QEL_KX_ADMIN_CommandResult result;
        const char* message;
        DDS_Long level_after;
        int states;
    } cases[] = {
        {350, QEL_KX_COMMAND_RESULT_OK, "", 350, 1},
        {350, QEL_KX_COMMAND_RESULT_OK, "", 350, 0},
        {-1, QEL_KX_COMMAND_RESULT_ERROR, refusal, 350, 0},
        {0, QEL_KX_COMMAND_RESULT_OK, "", 0, 1},
        {12345, QEL_KX_COMMAND_RESULT_OK, "", 12345, 1},
    };
    DDS_Long invocation = 0;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.level);
        const Calls writes(write_function);
        const std::string output = output_of([&] {
            send(set_level(++invocation, row.level));
            const Sample<Response> response = response_to(invocation);
            EXPECT_EQ(response->commandResult, row.result);
            EXPECT_STREQ(response->message, row.message);
        });
        EXPECT_EQ(output, row.message[0] == '\0' ? "" : line(process_context, refusal, "Warning"));
        EXPECT_EQ(bare_->filterLevel, row.level_after);
        EXPECT_FALSE(core::leaves_no_trace(row.level_after));
        EXPECT_TRUE(core::leaves_no_trace(row.level_after + 1));
        EXPECT_EQ(writes.count(), 2 + row.states) << "a request and a response";
        if (row.states == 1) {
            EXPECT_EQ(take<State>(states_, 1).at(0).sample->filterLevel, row.level_after);
        }
    }
    core::follow_filter_of(nullptr);
    EXPECT_FALSE(core::leaves_no_trace(12346));
}

TEST_F(Commands, EveryPairOfVerbositiesIsPublishedAndAllAreAnsweredOnce) {
    become_operational();
    send(set_verbosities(
        1,
        {{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_DATABASE, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING}}));
    EXPECT_EQ(response_to(1)->commandResult, QEL_KX_COMMAND_RESULT_OK);
    std::vector<std::pair<int, int>> published;
    for (const auto& state : take<State>(states_, 3)) {
        const auto* verbosities = state.sample->qelLoggerVerbosities;
        published.emplace_back(verbosities[0].verbosity, verbosities[2].verbosity);
    }
    EXPECT_EQ(published, (std::vector<std::pair<int, int>>{{0, 1}, {0, 3}, {2, 3}}));
    EXPECT_EQ(verbosity_of(PEXA_CONFIG_LOG_CATEGORY_PLATFORM), 0x3U);
    EXPECT_EQ(verbosity_of(PEXA_CONFIG_LOG_CATEGORY_DATABASE), 0x7U);

    const Calls writes(write_function);
    send(set_verbosities(2, {}));
    EXPECT_EQ(response_to(2)->commandResult, QEL_KX_COMMAND_RESULT_OK);
    EXPECT_EQ(writes.count(), 2) << "request and response only";
}

TEST_F(Commands, UnknownKindsAreAnsweredToo) {
    for (const DDS_Long kind : {-1, 3, 7}) {
        const Sample<Request> unknown = set_level(kind, 100);
        std::memcpy(&unknown->command._d, &kind, sizeof kind);
        QEL_KX_Orvane_processCommand(bare_.get(), unknown.get());
        EXPECT_EQ(response_to(kind)->commandResult, QEL_KX_COMMAND_RESULT_NOT_SUPPORTED);
        EXPECT_EQ(bare_->filterLevel, QEL_KX_LEVEL_INFO);
    }
}

TEST_F(Commands, RequestsWaitUntilTheLoggerIsOperational) {
    DDS_DataReader* const reader = bare_.entities()->commandRequestReader;
    send(set_level(1, 100));
    send(set_level(2, 200));
    QEL_KX_Orvane_CommandRequestListener_on_data_available(bare_.get(), reader);
    EXPECT_EQ(bare_->filterLevel, QEL_KX_LEVEL_INFO);
    become_operational();
    // The end of a tool is not a request.
    EXPECT_EQ(
        QEL_KX_ADMIN_CommandRequestDataWriter_dispose(requests_, request(0).get(), &DDS_HANDLE_NIL),
        DDS_RETCODE_OK);
    send(set_level(3, 300));
    std::vector<DDS_Long> answered;
    for (const auto& response : take<Response>(responses_, 3)) {
        answered.push_back(response.sample->invocation);
    }
    EXPECT_EQ(answered, (std::vector<DDS_Long>{1, 2, 3}));
    EXPECT_EQ(bare_->filterLevel, 300);

    admin::set_state_kind(*bare_.get(), QEL_KX_STATE_NONOPERATIONAL);
    send(set_level(4, 400));
    QEL_KX_Orvane_CommandRequestListener_on_data_available(bare_.get(), reader);
    EXPECT_EQ(bare_->filterLevel, 300);
}

TEST_F(Commands, FailuresAreSaidAndStopNothing) {
    admin::set_state_kind(*bare_.get(), QEL_KX_STATE_OPERATIONAL);
    DDS_DataReader* const reader = bare_.entities()->commandRequestReader;
    const auto reports_of = [&](DDS_DataReader* from) {
        return output_of(
            [&] { QEL_KX_Orvane_CommandRequestListener_on_data_available(bare_.get(), from); });
    };
    EXPECT_EQ(reports_of(reader), "") << "no data";
    const auto expect_report = [&](DDS_DataReader* from, const char* report) {
        EXPECT_NE(reports_of(from).find(line(take_context, report)), std::string::npos) << report;
    };
    expect_report(states_, "Unable to narrow DataReader");
    {
        const Fault fault("DDS_DataReader_read_or_take_untypedI", 1);
        expect_report(reader, "Unable to take ComandRequest from DataReader");
    }
    send(set_level(1, 100));
    const Fault fault("DDS_DataReader_return_loan_untypedI", {.after = true});
    expect_report(reader, "Unable to return loan in CommandRequest's DataReader");
}

TEST_F(Commands, TheEffectStaysWhenStateAndResponseCannotBeWritten) {
    const Fault fault(write_function, {.call = 0});
    EXPECT_EQ(
        output_of([&] { QEL_KX_Orvane_processCommand(bare_.get(), set_level(1, 100).get()); }),
        line("QEL_KX_Orvane_writeState", "Unable to write State in DataWriter") +
            line("QEL_KX_Orvane_setFilterLevel", "Unable to write State", "Warning") +
            line(process_context, "Unable to write Command Response"));
    EXPECT_EQ(bare_->filterLevel, 100);
    EXPECT_EQ(bare_->state->filterLevel, 100);
}

/// What a logger writes, one thread after the other. An action runs inside the first write.
struct Writes {
    Writes(BareLogger& bare, std::function<void()> during_first, const std::string& failing = "")
        : stub(write_function, [this, &bare, action = std::move(during_first), failing](
                                   DDS_DataWriter* writer, const void* sample, auto* params) {
              const std::string what =
                  writer == bare.entities()->stateWriter
                      ? "State " + std::to_string(static_cast<const State*>(sample)->filterLevel)
                      : "response " +
                            std::to_string(static_cast<const Response*>(sample)->invocation);
              log.push_back(what);
              if (log.size() == 1) {
                  action();
              }
              return what == failing ? DDS_RETCODE_ERROR : stub.real(writer, sample, params);
          }) {}

    std::vector<std::string> log;
    const Stub<decltype(DDS_DataWriter_write_untypedI)> stub;
};

using Log = std::vector<std::string>;

/// On the publishing thread, as a listener of a reader in this process may, and on another one that
/// the publishing thread waits for.
TEST_F(Commands, DuringAPublicationAreAnsweredBehindTheStateThatShowsTheirEffect) {
    const auto process = [&](DDS_Long invocation, DDS_Long level) {
        QEL_KX_Orvane_processCommand(bare_.get(), set_level(invocation, level).get());
    };
    const auto process_three = [&] {
        process(1, 200);
        process(2, 200);
        process(3, -1);
    };
    for (const bool another_thread : {false, true}) {
        const auto during = [&] {
            another_thread ? std::thread(process_three).join() : process_three();
        };
        const Writes writes(bare_, during, "State 200");
        EXPECT_EQ(output_of([&] { QEL_KX_Orvane_setFilterLevel(bare_.get(), 100); }),
                  line(process_context, refusal, "Warning") +
                      line("QEL_KX_Orvane_writeState", "Unable to write State in DataWriter") +
                      line("QEL_KX_Orvane_setFilterLevel", "Unable to write State", "Warning"));
        EXPECT_EQ(writes.log,
                  (Log{"State 100", "State 200", "response 1", "response 2", "response 3"}));

        const Writes of_command(bare_, during);
        process(0, 300);
        EXPECT_EQ(of_command.log, (Log{"State 300", "response 0", "State 200", "response 1",
                                       "response 2", "response 3"}));
    }
}

TEST_F(Commands, ThatFindTheirChangeMadeAreAnsweredBehindTheStateThatShowsIt) {
    Writes writes(bare_, [] {});
    {
        const admin::KeptTurn turn(*bare_.get());
        std::thread([&] { QEL_KX_Orvane_setFilterLevel(bare_.get(), 300); }).join();
        QEL_KX_Orvane_processCommand(bare_.get(), set_level(1, 300).get());
    }
    EXPECT_EQ(writes.log, (Log{"State 300", "response 1"}));
}

TEST_F(Commands, ThatCannotBeAnsweredLaterAreReported) {
    const auto process = [&](DDS_Long invocation) {
        QEL_KX_Orvane_processCommand(bare_.get(), set_verbosities(invocation, {}).get());
    };
    const Writes writes(bare_, [&] {
        for (DDS_Long invocation = 1; invocation <= 130; ++invocation) {
            process(invocation);
        }
    });
    const std::string report = line(process_context, "Unable to write Command Response");
    EXPECT_EQ(output_of([&] { process(0); }), report + report);
    EXPECT_EQ(writes.log.size(), 129U);
    EXPECT_EQ(writes.log.back(), "response 128");
}

TEST_F(AdminTest, TheFirstReaderGetsTheStateAfterTheCommandThatIsBeingExecuted) {
    BareLogger bare;
    ASSERT_TRUE(bare.make_entities());
    Writes writes(bare, [&] {
        QEL_KX_DDSEntities_stateWriterOnPublicationMatched(bare.get(), bare.entities()->stateWriter,
                                                           nullptr);
        EXPECT_EQ(QEL_KX_DDSEntities_hasInitialStateBeenSent(), 0) << "inside a write";
    });
    const Sample<Request> request = make_sample<Request>();
    request->command._u.filterLevel = 100;
    QEL_KX_Orvane_processCommand(bare.get(), request.get());
    EXPECT_EQ(writes.log, (Log{"response 0", "State 100"}));
}

/// The matched callback publishes; the answer is left to it, and its writer is to be deleted.
TEST_F(AdminTest, EntitiesAreDeletedWhenEveryCommandHasBeenAnswered) {
    const Node node;
    BareLogger bare;
    ASSERT_TRUE(bare.make_entities());
    std::thread deleting;
    const Calls deletions("DDS_Subscriber_delete_contained_entities");
    std::atomic<bool> is_published = false;
    Writes writes(bare, [&] {
        QEL_KX_Orvane_processCommand(bare.get(), make_sample<Request>().get());
        deleting =
            std::thread([&] { QEL_KX_DDSEntities_deleteContainedEntities(bare.entities()); });
        for (int round = 0; deletions.count() == 0 && round < 2000; ++round) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        is_published = true;
    });
    const Before deletion("DDS_Publisher_delete_contained_entities",
                          [&] { writes.log.push_back(is_published ? "deletion" : "too early"); });
    node.reader<State>();
    while (!is_published) {
        std::this_thread::yield();
    }
    deleting.join();
    EXPECT_EQ(writes.log, (Log{"State 0", "State 0", "response 0", "deletion"}));
}

}  // namespace
}  // namespace orvane::test
