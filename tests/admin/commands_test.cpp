#include <atomic>
#include <cstring>
#include <thread>

#include "core/filter.hpp"
#include "pexa/subscription.h"
#include "tests/admin/admin_fixture.hpp"

namespace admin_test {
namespace {

using Request = QEL_KX_ADMIN_CommandRequest;
using Response = QEL_KX_ADMIN_CommandResponse;
using State = QEL_KX_ADMIN_State;
using Pair = QEL_KX_ADMIN_QELLoggerCategoryAndVerbosity;

constexpr const char* take_context = "QEL_KX_Orvane_CommandRequestListener_on_data_available";
constexpr const char* process_context = "QEL_KX_Orvane_processCommand";
constexpr const char* refusal = "Orvane: Trouble setting new Filter Level.";

PEXA_Config_Logger* middleware() {
    return PEXA_Config_Logger_get_instance();
}

/// A logger in operation and a tool that commands it and reads what it publishes.
class Commands : public AdminTest {
public:
    Commands() {
        PEXA_Config_Logger_set_verbosity(middleware(), PEXA_CONFIG_LOG_VERBOSITY_ERROR);
        PEXA_Config_Logger_set_print_format(middleware(), PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT);
        EXPECT_TRUE(bare_.build());
        QEL_KX_Orvane_updateQELLoggerCategoryAndVerbosityState(&bare_.logger);
        requests_ = tool_.writer<Request>();
        responses_ = tool_.reader<Response>(DDS_VOLATILE_DURABILITY_QOS);
        states_ = tool_.reader<State>();
        EXPECT_EQ(1U, take<State>(states_, 1).size());
        faults::reset();
    }
    ~Commands() override {
        PEXA_Config_Logger_set_verbosity(middleware(), PEXA_CONFIG_LOG_VERBOSITY_ERROR);
        PEXA_Config_Logger_set_print_format(middleware(), PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT);
    }

protected:
    /// A request to this logger, numbered and with an originator.
    [[nodiscard]] Owned<Request> request(DDS_Long invocation) const {
        Owned<Request> made = make<Request>();
        made->targetHostAndAppId = bare_.state->hostAndAppId;
        made->originatorHostAndAppId = {-7, 8};
        made->invocation = invocation;
        return made;
    }
    Owned<Request> set_level(DDS_Long invocation, DDS_Long level) {
        Owned<Request> made = request(invocation);
        made->command._u.filterLevel = level;
        return made;
    }
    Owned<Request> set_verbosities(DDS_Long invocation, const std::vector<Pair>& pairs) {
        Owned<Request> made = request(invocation);
        made->command._d = QEL_KX_SET_QEL_LOGGER_LEVEL;
        auto& sequence = made->command._u.categoryAndVerbosity;
        EXPECT_NE(0, QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_from_array(
                         &sequence, pairs.data(), static_cast<DDS_Long>(pairs.size())));
        return made;
    }
    Owned<Request> set_format(DDS_Long invocation, QEL_KX_ADMIN_QELLoggerPrintFormat format) {
        Owned<Request> made = request(invocation);
        made->command._d = QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT;
        made->command._u.printFormat = format;
        return made;
    }

    void send(const Owned<Request>& made) {
        EXPECT_EQ(DDS_RETCODE_OK, Type<Request>::write(requests_, made.get(), &DDS_HANDLE_NIL));
    }

    /// The next response, which must be the one to @p invocation.
    Owned<Response> response_to(DDS_Long invocation) {
        auto taken = take<Response>(responses_, 1);
        if (taken.size() != 1) {
            ADD_FAILURE() << taken.size() << " responses";
            return make<Response>();
        }
        EXPECT_EQ(invocation, taken[0]->invocation);
        EXPECT_EQ(-7, taken[0]->originatorHostAndAppId.rtps_host_id);
        EXPECT_EQ(8, taken[0]->originatorHostAndAppId.rtps_app_id);
        EXPECT_EQ(bare_.state->hostAndAppId.rtps_host_id, taken[0]->hostAndAppId.rtps_host_id);
        EXPECT_EQ(bare_.state->hostAndAppId.rtps_app_id, taken[0]->hostAndAppId.rtps_app_id);
        return std::move(taken[0]);
    }

    BareLogger bare_;
    Tool tool_;
    DDS_DataWriter* requests_ = nullptr;
    DDS_DataReader* responses_ = nullptr;
    DDS_DataReader* states_ = nullptr;
};

TEST_F(Commands, ALevelIsSetPublishedAndAnsweredUnlessItIsRefusedOrInForce) {
    bare_.become_operational();
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
        const std::string output = printed([&] {
            ++invocation;
            send(set_level(invocation, row.level));
            const Owned<Response> response = response_to(invocation);
            EXPECT_EQ(row.result, response->commandResult);
            EXPECT_STREQ(row.message, response->message);
        });
        EXPECT_EQ(row.message[0] == '\0' ? "" : line("KX Warning", process_context, refusal),
                  output);
        EXPECT_EQ(row.level_after, bare_.logger.filterLevel);
        // The request is one write, the response another.
        EXPECT_EQ(row.states, faults::calls("DDS_DataWriter_write_untypedI") - 2);
        faults::reset();
        if (row.states == 1) {
            const auto states = take<State>(states_, 1);
            ASSERT_EQ(1U, states.size());
            EXPECT_EQ(row.level_after, states[0]->filterLevel);
        }
    }
}

TEST_F(Commands, EveryPairOfVerbositiesIsPublishedAndAllAreAnsweredOnce) {
    bare_.become_operational();
    send(set_verbosities(
        1,
        {{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_DATABASE, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL},
         {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING}}));
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_OK, response_to(1)->commandResult);
    const auto states = take<State>(states_, 3);
    ASSERT_EQ(3U, states.size());
    constexpr int platform[] = {0, 0, 2};
    constexpr int database[] = {1, 3, 3};
    for (std::size_t index = 0; index < states.size(); ++index) {
        EXPECT_EQ(platform[index], states[index]->qelLoggerVerbosities[0].verbosity);
        EXPECT_EQ(database[index], states[index]->qelLoggerVerbosities[2].verbosity);
    }
    EXPECT_EQ(0x3U, PEXA_Config_Logger_get_verbosity_by_category(
                        middleware(), PEXA_CONFIG_LOG_CATEGORY_PLATFORM));
    EXPECT_EQ(0x7U, PEXA_Config_Logger_get_verbosity_by_category(
                        middleware(), PEXA_CONFIG_LOG_CATEGORY_DATABASE));

    faults::reset();
    send(set_verbosities(2, {}));
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_OK, response_to(2)->commandResult);
    EXPECT_EQ(2, faults::calls("DDS_DataWriter_write_untypedI")) << "request and response only";
}

TEST_F(Commands, ALevelThatIsSetDecidesWhatLeavesATrace) {
    bare_.become_operational();
    orvane::core::follow_filter_of(&bare_.logger);
    EXPECT_TRUE(orvane::core::leaves_no_trace(QEL_KX_LEVEL_DEBUG));
    send(set_level(1, QEL_KX_LEVEL_DEBUG));
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_OK, response_to(1)->commandResult);
    EXPECT_FALSE(orvane::core::leaves_no_trace(QEL_KX_LEVEL_DEBUG));
    EXPECT_TRUE(orvane::core::leaves_no_trace(QEL_KX_LEVEL_TRACE));
    orvane::core::follow_filter_of(nullptr);
    EXPECT_FALSE(orvane::core::leaves_no_trace(QEL_KX_LEVEL_TRACE));
}

TEST_F(Commands, APrintFormatIsSetAndPublished) {
    bare_.become_operational();
    send(set_format(1, QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL));
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_OK, response_to(1)->commandResult);
    EXPECT_EQ(17U, PEXA_Config_Logger_get_print_format(middleware()));
    EXPECT_EQ(QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL,
              take<State>(states_, 1).at(0)->qelLoggerPrintFormat);
}

TEST_F(Commands, NumbersOutsideTheEnumerationsAreAnsweredToo) {
    const auto put = [](auto& enumeration, DDS_Long number) {
        std::memcpy(&enumeration, &number, sizeof(number));
    };
    Owned<Request> unknown = set_level(1, 100);
    put(unknown->command._d, 7);
    QEL_KX_Orvane_processCommand(&bare_.logger, unknown.get());
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_NOT_SUPPORTED, response_to(1)->commandResult);
    EXPECT_EQ(QEL_KX_LEVEL_INFO, bare_.logger.filterLevel);

    Owned<Request> verbosity = set_verbosities(2, {Pair{}});
    Pair& pair = *QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_get_reference(
        &verbosity->command._u.categoryAndVerbosity, 0);
    put(pair.category, 9);
    put(pair.verbosity, 9);
    QEL_KX_Orvane_processCommand(&bare_.logger, verbosity.get());
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_OK, response_to(2)->commandResult);
    EXPECT_EQ(0x3U, PEXA_Config_Logger_get_verbosity_by_category(middleware(),
                                                                 PEXA_CONFIG_LOG_CATEGORY_API));
    EXPECT_EQ(2, bare_.state->qelLoggerVerbosities[4].verbosity);
}

TEST_F(Commands, ARequestForAnotherLoggerIsNeverSeen) {
    bare_.become_operational();
    Owned<Request> other = set_level(1, 100);
    ++other->targetHostAndAppId.rtps_app_id;
    send(other);
    other->targetHostAndAppId = bare_.state->hostAndAppId;
    ++other->targetHostAndAppId.rtps_host_id;
    send(other);
    send(set_level(2, 200));
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_OK, response_to(2)->commandResult);
    EXPECT_EQ(200, bare_.logger.filterLevel);
}

TEST_F(Commands, RequestsWaitUntilTheLoggerIsOperational) {
    send(set_level(1, 100));
    send(set_level(2, 200));
    QEL_KX_Orvane_CommandRequestListener_on_data_available(&bare_.logger,
                                                           bare_.entities()->commandRequestReader);
    EXPECT_EQ(QEL_KX_LEVEL_INFO, bare_.logger.filterLevel);
    bare_.become_operational();
    send(set_level(3, 300));
    std::vector<DDS_Long> answered;
    for (const auto& response : take<Response>(responses_, 3)) {
        answered.push_back(response->invocation);
    }
    EXPECT_EQ((std::vector<DDS_Long>{1, 2, 3}), answered);
    EXPECT_EQ(300, bare_.logger.filterLevel);

    orvane::admin::set_state_kind(bare_.logger, QEL_KX_STATE_NONOPERATIONAL);
    send(set_level(4, 400));
    QEL_KX_Orvane_CommandRequestListener_on_data_available(&bare_.logger,
                                                           bare_.entities()->commandRequestReader);
    EXPECT_EQ(300, bare_.logger.filterLevel);
}

TEST_F(Commands, AnEndingToolIsNotARequest) {
    bare_.become_operational();
    const Owned<Request> nobody = request(0);
    EXPECT_EQ(DDS_RETCODE_OK, QEL_KX_ADMIN_CommandRequestDataWriter_dispose(requests_, nobody.get(),
                                                                            &DDS_HANDLE_NIL));
    send(set_level(1, 100));
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_OK, response_to(1)->commandResult);
}

TEST_F(Commands, FailuresAreSaidAndStopNothing) {
    orvane::admin::set_state_kind(bare_.logger, QEL_KX_STATE_OPERATIONAL);
    DDS_DataReader* const reader = bare_.entities()->commandRequestReader;
    const auto available = [&](DDS_DataReader* from) {
        return printed(
            [&] { QEL_KX_Orvane_CommandRequestListener_on_data_available(&bare_.logger, from); });
    };
    EXPECT_EQ("", available(reader)) << "no data";
    const std::string narrow = available(states_);
    EXPECT_NE(std::string::npos,
              narrow.find(line("KX Error", take_context, "Unable to narrow DataReader")))
        << narrow;

    faults::add({.function = "DDS_DataReader_read_or_take_untypedI", .call = 2});
    EXPECT_EQ(line("KX Error", take_context, "Unable to take ComandRequest from DataReader"),
              available(reader));
    send(set_level(1, 100));
    faults::add({"DDS_DataReader_return_loan_untypedI", 1, true, DDS_RETCODE_ERROR});
    const std::string loan = available(reader);
    EXPECT_NE(std::string::npos,
              loan.find(line("KX Error", take_context,
                             "Unable to return loan in CommandRequest's DataReader")))
        << loan;
    EXPECT_EQ(QEL_KX_COMMAND_RESULT_OK, response_to(1)->commandResult);
}

TEST_F(Commands, TheEffectStaysWhenStateAndResponseCannotBeWritten) {
    faults::add({.function = "DDS_DataWriter_write_untypedI", .call = 0});
    EXPECT_EQ(
        line("KX Error", "QEL_KX_Orvane_writeState", "Unable to write State in DataWriter") +
            line("KX Warning", "QEL_KX_Orvane_setFilterLevel", "Unable to write State") +
            line("KX Error", process_context, "Unable to write Command Response"),
        printed([&] { QEL_KX_Orvane_processCommand(&bare_.logger, set_level(1, 100).get()); }));
    EXPECT_EQ(100, bare_.logger.filterLevel);
    EXPECT_EQ(100, bare_.state->filterLevel);
}

TEST_F(AdminTest, ALoggerMayEndWhileItExecutesCommands) {
    Tool tool;
    DDS_DataWriter* const requests = tool.writer<Request>();
    std::atomic<DDS_Long> app_id = 0;
    std::atomic<DDS_Long> host_id = 0;
    std::atomic<bool> ending = false;
    std::thread commander([&] {
        const Owned<Request> request = make<Request>();
        request->command._d = QEL_KX_SET_QEL_LOGGER_LEVEL;
        const Pair pair{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION,
                        QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR};
        QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_from_array(
            &request->command._u.categoryAndVerbosity, &pair, 1);
        while (!ending) {
            request->targetHostAndAppId = {host_id, app_id};
            Type<Request>::write(requests, request.get(), &DDS_HANDLE_NIL);
            std::this_thread::yield();
        }
    });
    std::unique_ptr<QEL_KX_Options, BareLogger::Delete> options{QEL_KX_Options_createDefault()};
    QEL_KX_Options_setDomainId(options.get(), domain);
    DDS_DataReader* const responses = tool.reader<Response>(DDS_VOLATILE_DURABILITY_QOS);
    for (int round = 0; round < 5; ++round) {
        QEL_KX_Orvane_setOptions(options.get());
        QEL_KX_Orvane* const logger = QEL_KX_Orvane_getInstance();
        ASSERT_NE(nullptr, logger);
        host_id = logger->state->hostAndAppId.rtps_host_id;
        app_id = logger->state->hostAndAppId.rtps_app_id;
        take<Response>(responses, 1);
        EXPECT_EQ(DDS_RETCODE_OK, QEL_KX_Orvane_finalizeInstance());
    }
    ending = true;
    commander.join();
}

}  // namespace
}  // namespace admin_test
