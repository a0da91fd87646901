#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/peer/foreign_process.hpp"

namespace orvane::tests {
namespace {

constexpr int domain_id = ORVANE_TEST_DOMAIN;
constexpr const char* application_kind = "grinder";
constexpr const char* default_verbosities = "0:1,1:1,2:1,3:1,4:1";

/// An application of ours and a peer that shares no code with it, which have met.
class AnotherProduct : public testing::Test {
protected:
    void SetUp() override {
        identity_ = application_.ask("identity");
        ASSERT_TRUE(peer_.meet(identity_)) << peer_.process().transcript();
    }
    void TearDown() override {
        // An answer comes behind everything printed before it.
        EXPECT_EQ(application_.ask("mark"), "mark");
        EXPECT_EQ(peer_.complaints(), std::vector<std::string>{});
        EXPECT_EQ(application_.diagnostics(), expected_diagnostics_);
    }

    std::string say(int level, const std::string& category, const std::string& text) {
        return application_.ask("say " + std::to_string(level) + ' ' + hexadecimal(category) + ' ' +
                                hexadecimal(text));
    }

    static std::string hexadecimal(const std::string& text) {
        constexpr std::string_view digits = "0123456789abcdef";
        std::string result;
        for (const char character : text) {
            const auto byte = static_cast<unsigned char>(character);
            result += {digits[byte / 16], digits[byte % 16]};
        }
        return result.empty() ? "-" : result;
    }

    Application application_{domain_id, {"--kind", application_kind}};
    ForeignPeer peer_{domain_id};
    std::string identity_;
    std::vector<std::string> expected_diagnostics_;
};

TEST_F(AnotherProduct, ReadsTheStateFieldByField) {
    const ForeignSample state = peer_.await("state", {{"state", "1"}});
    EXPECT_EQ(state.members, (Fields{{"logger", identity_},
                                     {"domain", std::to_string(domain_id)},
                                     {"state", "1"},
                                     {"kind", application_kind},
                                     {"level", "600"},
                                     {"verbosities", default_verbosities},
                                     {"format", "0"}}));
    EXPECT_EQ(state.order, "logger domain state kind level verbosities format");
    EXPECT_EQ(state.properties.at("encapsulation"), "3");
    EXPECT_EQ(state.properties.at("publisher"), identity_);

    EXPECT_EQ(application_.ask("finish"), "finish 0");
    EXPECT_EQ(peer_.await("state", {{"state", "2"}}).members.at("kind"), application_kind);
}

TEST_F(AnotherProduct, ReadsMessagesFieldByField) {
    const std::string longest_category(512, 'c');
    const std::string longest_text(4096, 't');
    const std::vector<std::array<std::string, 3>> messages{
        {"100", "", ""},
        {"300", "one", "a"},
        {"300", "two", "grüße, 世界"},
        {"500", "controls", R"(tab \x09 line \x0a backslash \x5c)"},
        {"-5", longest_category, longest_text},
    };
    for (const auto& [level, category, text] : messages) {
        const std::string spoken = category == "controls" ? "tab \t line \n backslash \\" : text;
        ASSERT_EQ(say(std::stoi(level), category, spoken), "say");
        const ForeignSample log = peer_.await("log", {{"level", level}, {"category", category}});
        EXPECT_EQ(log.members, (Fields{{"logger", identity_},
                                       {"level", level},
                                       {"category", category},
                                       {"message", text}}));
        EXPECT_EQ(log.order, "logger level category message");
        EXPECT_EQ(log.properties.at("encapsulation"), "3");
        EXPECT_EQ(log.properties.at("publisher"), identity_);
    }
    ForeignPeer late{domain_id};
    EXPECT_EQ(late.await("log", {{"category", "two"}}).members.at("message"), "grüße, 世界");
}

TEST_F(AnotherProduct, ReadsTheTimeOfLoggingToTheNanosecond) {
    ASSERT_EQ(application_.ask("stamped 300 12"), "stamped");
    for (const LoggedMessage& logged : application_.logged()) {
        const ForeignSample log = peer_.await("log", {{"message", logged.text}});
        ASSERT_FALSE(log.members.empty()) << logged.text;
        EXPECT_EQ(log.properties.at("nanoseconds"), std::to_string(logged.before));
    }
}

TEST_F(AnotherProduct, ChangesEachSettingByACommand) {
    const std::string originator = "ffffffff:80000001";
    const std::string from_originator = " originator=" + originator;
    const std::vector<std::pair<std::string, Fields>> commands{
        {"level=700", {{"level", "700"}}},
        {"verbosities=1:2,4:0", {{"verbosities", "0:1,1:2,2:1,3:1,4:0"}}},
        {"verbosities=0:0,1:1,2:2,3:3,4:5", {{"verbosities", "0:0,1:1,2:2,3:3,4:5"}}},
        {"format=6", {{"format", "6"}}},
    };
    for (const auto& [words, effect] : commands) {
        const std::string invocation = peer_.send(identity_, words + from_originator);
        const ForeignSample response = peer_.await("response", {{"invocation", invocation}});
        EXPECT_EQ(response.members, (Fields{{"logger", identity_},
                                            {"originator", originator},
                                            {"invocation", invocation},
                                            {"result", "0"},
                                            {"message", ""}}));
        EXPECT_EQ(response.order, "logger originator invocation result message");
        EXPECT_FALSE(peer_.await("state", effect).members.empty()) << words;
    }
    ASSERT_EQ(say(700, "quiet", "now heard"), "say");
    EXPECT_FALSE(peer_.await("log", {{"message", "now heard"}}).members.empty());
}

TEST_F(AnotherProduct, IsToldWhyALevelIsRefused) {
    const std::string reason = "Orvane: Trouble setting new Filter Level.";
    const ForeignSample response = peer_.ask(identity_, "level=-1");
    EXPECT_EQ(response.members.at("result"), "2");
    EXPECT_EQ(response.members.at("message"), reason);
    expected_diagnostics_ = {"KX Warning: QEL_KX_Orvane_processCommand: " + reason};

    EXPECT_EQ(peer_.ask(identity_, "level=200").members.at("result"), "0");
    EXPECT_FALSE(peer_.await("state", {{"level", "200"}}).members.empty());
    EXPECT_TRUE(peer_.await("state", {{"level", "-1"}}, {}).members.empty());
}

TEST_F(AnotherProduct, CommandsTheApplicationThatItNamesAndNoOther) {
    Application other{domain_id};
    const std::string other_identity = other.ask("identity");
    ASSERT_TRUE(peer_.meet(other_identity)) << peer_.process().transcript();

    const std::string host = identity_.substr(0, 8);
    const std::string process = identity_.substr(9);
    const std::vector<std::string> nobody{process + ':' + host, host + ":00000000",
                                          "00000000:" + process, "ffffffff:" + process};
    std::vector<std::string> invocations;
    for (const std::string& identity : nobody) {
        invocations.push_back(peer_.send(identity, "level=1"));
    }
    EXPECT_EQ(peer_.ask(identity_, "level=100").members.at("logger"), identity_);
    EXPECT_EQ(peer_.ask(other_identity, "level=200").members.at("logger"), other_identity);
    EXPECT_FALSE(peer_.await("state", {{"logger", identity_}, {"level", "100"}}).members.empty());
    EXPECT_FALSE(
        peer_.await("state", {{"logger", other_identity}, {"level", "200"}}).members.empty());

    for (const std::string& invocation : invocations) {
        EXPECT_TRUE(peer_.await("response", {{"invocation", invocation}}, {}).members.empty());
    }
    EXPECT_TRUE(peer_.await("state", {{"level", "1"}}, {}).members.empty());
    for (const auto& [mine, level] : {std::pair{identity_, "200"}, {other_identity, "100"}}) {
        EXPECT_TRUE(peer_.await("state", {{"logger", mine}, {"level", level}}, {}).members.empty());
    }
}

TEST_F(AnotherProduct, IsUnderstoodInEveryValidEncoding) {
    const std::string all_verbosities = "verbosities=0:5,1:4,2:3,3:2,4:0";
    const Fields all_verbosities_set{{"verbosities", "0:5,1:4,2:3,3:2,4:0"}};
    struct Encoding {
        std::string what;
        std::string words;
        Fields effect;
    };
    const std::vector<Encoding> encodings{
        {"big-endian", "level=1 encapsulation=2", {{"level", "1"}}},
        {"identifier of plain CDR", "level=2 encapsulation=1", {{"level", "2"}}},
        {"the same, big-endian", "level=3 encapsulation=0", {{"level", "3"}}},
        {"encapsulation options", "level=4 options=3", {{"level", "4"}}},
        {"members reversed", "level=5 members=3210.", {{"level", "5"}}},
        {"extended headers", "level=6 extended=1", {{"level", "6"}}},
        {"unknown members", "level=7 members=u0u1u2u3u.", {{"level", "7"}}},
        {"a member to be ignored", "level=8 members=0i123.", {{"level", "8"}}},
        {"members longer than expected", "level=9 slack=4", {{"level", "9"}}},
        {"lengths that are no multiple of 4", "level=10 slack=3", {{"level", "10"}}},
        {"no end of the list", "level=11 members=0123", {{"level", "11"}}},
        {"something behind the end of the list", "level=12 members=0123.u", {{"level", "12"}}},
        {"no originator", "level=13 members=023.", {{"level", "13"}}},
        {"no command, so its initial value", "level=14 members=012.", {{"level", "0"}}},
        {"five pairs, big-endian, extended, reversed",
         all_verbosities + " encapsulation=2 extended=1 members=u3u210.", all_verbosities_set},
        {"a print format, big-endian", "format=3 encapsulation=2", {{"format", "3"}}},
    };
    for (const Encoding& encoding : encodings) {
        SCOPED_TRACE(encoding.what);
        const ForeignSample response = peer_.ask(identity_, encoding.words);
        ASSERT_FALSE(response.members.empty()) << "no response";
        EXPECT_EQ(response.members.at("result"), "0");
        EXPECT_FALSE(peer_.await("state", encoding.effect).members.empty()) << "no effect";
    }
}

TEST_F(AnotherProduct, LosesAMalformedRequestAndNothingElse) {
    const std::vector<std::pair<std::string, std::string>> faults{
        {"plain encapsulation of XCDR version 2", "level=1 encapsulation=0x0007"},
        {"parameter list of XCDR version 2", "level=1 encapsulation=0x000b"},
        {"nothing behind the encapsulation header", "level=1 keep=4"},
        {"ends within an identity", "level=1 keep=12"},
        {"ends within a member's header", "level=1 keep=30"},
        {"ends within the command", "level=1 keep=44"},
        {"ends before the command's value", "level=1 keep=52"},
        {"half an extended header", "level=1 members=x0123."},
        {"an unknown member that must be understood", "level=1 members=0123U."},
        {"identity with a short length", "level=1 error=0:-4"},
        {"number with a short length", "level=1 error=2:-2"},
        {"command with a short length", "level=1 error=3:-8"},
        {"length beyond the payload", "level=1 error=3:4000"},
        {"length beyond the payload, extended header", "level=1 extended=1 error=3:-100"},
        // Refused as an enumerator that does not exist, before anybody could answer that such a
        // command is not supported.
        {"kind of command that does not exist", "level=1 kind=7"},
        {"negative kind of command", "level=1 kind=-1"},
        {"category that does not exist", "verbosities=0:2,5:2"},
        {"verbosity that does not exist", "verbosities=0:2,1:6"},
        {"print format that does not exist", "format=7"},
        {"six pairs", "verbosities=0:2,1:2,2:2,3:2,4:2,0:2"},
        {"more pairs announced than there are", "verbosities=0:2 count=2"},
        {"negative number of pairs", "verbosities=0:2 count=-1"},
    };
    int level = 1000;
    for (const auto& [what, words] : faults) {
        SCOPED_TRACE(what);
        const std::size_t states = peer_.samples("state").size();
        const std::string malformed = peer_.send(identity_, words);
        const std::string next = std::to_string(++level);
        const ForeignSample response = peer_.ask(identity_, "level=" + next);
        ASSERT_FALSE(response.members.empty()) << "the next request found no response";
        EXPECT_EQ(response.members.at("result"), "0");
        EXPECT_FALSE(peer_.await("state", {{"level", next}}).members.empty());
        EXPECT_EQ(peer_.samples("state").size(), states + 1) << "the malformed one had an effect";
        EXPECT_TRUE(peer_.await("response", {{"invocation", malformed}}, {}).members.empty());
    }
}

// The engine takes a message with such a payload for no RTPS message at all and asks for it again,
// so that the writer that sent it gets no further.
TEST_F(AnotherProduct, LosesNoRequestByAnUnknownEncapsulationOfSomebodyElse) {
    ForeignPeer stranger{domain_id};
    ASSERT_TRUE(stranger.meet(identity_)) << stranger.process().transcript();
    for (const char* identifier : {"4", "5", "0x000c", "0xffff"}) {
        const std::string unknown =
            stranger.send(identity_, std::string{"level=1 encapsulation="} + identifier);
        EXPECT_EQ(peer_.ask(identity_, "level=200").members.at("result"), "0");
        EXPECT_TRUE(stranger.await("response", {{"invocation", unknown}}, {}).members.empty());
    }
    EXPECT_TRUE(peer_.await("state", {{"level", "1"}}, {}).members.empty());
}

TEST(KeyHashes, CarriedBySamplesAreThoseThatAnotherProductComputes) {
    const std::string uri = std::getenv("CYCLONEDDS_URI");
    const std::string with_key_hashes =
        uri +
        ",<CycloneDDS><Domain Id=\"any\"><Internal><GenerateKeyhash>true</GenerateKeyhash>"
        "</Internal></Domain></CycloneDDS>";
    ASSERT_EQ(setenv("CYCLONEDDS_URI", with_key_hashes.c_str(), 1), 0);
    Application application{domain_id};
    ASSERT_EQ(setenv("CYCLONEDDS_URI", uri.c_str(), 1), 0);
    ForeignPeer peer{domain_id, {"--carried-keys"}};
    const std::string identity = application.ask("identity");
    ASSERT_TRUE(peer.meet(identity)) << peer.process().transcript();

    ASSERT_EQ(application.ask("log 300 1 0"), "log");
    const ForeignSample severe = peer.await("log", {{"level", "300"}});
    ASSERT_EQ(application.ask("log 500 1 0"), "log");
    for (const ForeignSample& sample :
         {severe, peer.await("log", {{"level", "500"}}), peer.await("state", {{"state", "1"}}),
          peer.await("response", {{"logger", identity}})}) {
        ASSERT_FALSE(sample.members.empty()) << peer.process().transcript();
        EXPECT_EQ(sample.properties.at("key"), sample.properties.at("computed_key"));
    }
}

}  // namespace
}  // namespace orvane::tests
