#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "tests/peer/foreign_process.hpp"

namespace orvane::tests {
namespace {

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
        EXPECT_TRUE(application_.say(600, "", ""));
        EXPECT_EQ(peer_.complaints(), std::vector<std::string>{});
        EXPECT_EQ(application_.diagnostics(), std::vector<std::string>{});
    }

    Application application_{{"--kind", application_kind}};
    ForeignPeer peer_;
    std::string identity_;
};

TEST_F(AnotherProduct, ReadsTheStateFieldByField) {
    const ForeignSample state = peer_.await("state", {{"state", "1"}});
    EXPECT_EQ(state.members, (Fields{{"logger", identity_},
                                     {"domain", domain()},
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
    const std::vector<std::array<std::string, 3>> messages{
        {"100", "", ""},
        {"300", "two", "grüße, 世界"},
        {"500", "controls", R"(tab \x09 line \x0a backslash \x5c)"},
        {"-5", std::string(512, 'c'), std::string(4096, 't')},
    };
    for (const auto& [level, category, text] : messages) {
        const std::string spoken = category == "controls" ? "tab \t line \n backslash \\" : text;
        ASSERT_TRUE(application_.say(std::stoi(level), category, spoken));
        const ForeignSample log = peer_.await("log", {{"level", level}, {"category", category}});
        EXPECT_EQ(log.members, (Fields{{"logger", identity_},
                                       {"level", level},
                                       {"category", category},
                                       {"message", text}}));
        EXPECT_EQ(log.order, "logger level category message");
        EXPECT_EQ(log.properties.at("encapsulation"), "3");
        EXPECT_EQ(log.properties.at("publisher"), identity_);
    }
    ForeignPeer late;
    EXPECT_EQ(late.await("log", {{"category", "two"}}).members.at("message"), "grüße, 世界");
}

TEST_F(AnotherProduct, ReadsTheTimeOfLoggingToTheNanosecond) {
    for (const char* fraction : {"0", "1", "999999999", "500000000", "232830643"}) {
        ASSERT_EQ(application_.ask(std::string{"at 1500000000 "} + fraction), "at");
    }
    for (const LoggedMessage& logged : application_.logged()) {
        const ForeignSample log = peer_.await("log", {{"message", logged.text}});
        ASSERT_FALSE(log.members.empty()) << logged.text;
        EXPECT_EQ(log.properties.at("nanoseconds"), std::to_string(logged.before));
    }
}

TEST_F(AnotherProduct, ChangesEachSettingByACommand) {
    const std::string originator = "ffffffff:80000001";
    const std::vector<std::pair<std::string, Fields>> commands{
        {"level=700", {{"level", "700"}}},
        {"verbosities=1:2,4:0", {{"verbosities", "0:1,1:2,2:1,3:1,4:0"}}},
        {"verbosities=0:0,1:1,2:2,3:3,4:5", {{"verbosities", "0:0,1:1,2:2,3:3,4:5"}}},
        {"format=6", {{"format", "6"}}},
    };
    for (const auto& [words, effect] : commands) {
        const std::string invocation = peer_.send(identity_, words + " originator=" + originator);
        const ForeignSample response = peer_.await("response", {{"invocation", invocation}});
        EXPECT_EQ(response.members, (Fields{{"logger", identity_},
                                            {"originator", originator},
                                            {"invocation", invocation},
                                            {"result", "0"},
                                            {"message", ""}}));
        EXPECT_EQ(response.order, "logger originator invocation result message");
        EXPECT_FALSE(peer_.await("state", effect).members.empty()) << words;
    }
    ASSERT_TRUE(application_.say(700, "quiet", "now heard"));
    EXPECT_FALSE(peer_.await("log", {{"message", "now heard"}}).members.empty());
}

TEST_F(AnotherProduct, CommandsTheApplicationThatItNamesAndNoOther) {
    Application other;
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

// The engine takes a message with such a payload for no RTPS message at all and asks for it again,
// so that the writer that sent it gets no further.
TEST_F(AnotherProduct, LosesNoRequestByAnUnknownEncapsulationOfSomebodyElse) {
    ForeignPeer stranger;
    ASSERT_TRUE(stranger.meet(identity_)) << stranger.process().transcript();
    for (const char* identifier : {"4", "0xffff"}) {
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
    Application application;
    ASSERT_EQ(setenv("CYCLONEDDS_URI", uri.c_str(), 1), 0);
    ForeignPeer peer{"--carried-keys"};
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
