// An application of ours and a program of another DDS product. Payloads are written out here,
// member by member, in little-endian parameter-list CDR and hexadecimal.
#include <array>
#include <cstdlib>
#include <sstream>
#include <thread>
#include <utility>

#include "tests/integration/programs.hpp"
#include "tests/support/node.hpp"

namespace orvane::tests {
namespace {

std::string bytes(std::string_view text) {
    std::string hexadecimal;
    for (const char character : text) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(character));
        hexadecimal += digits;
    }
    return hexadecimal;
}

std::string number(std::uint32_t value) {
    std::string text;
    for (int shift = 0; shift < 32; shift += 8) {
        text += static_cast<char>(value >> shift);
    }
    return bytes(text);
}

/// @param written "HOST:APP", as the application tells it
std::string identity(const std::string& written) {
    const auto part = [](const std::string& digits) {
        return number(static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16)));
    };
    return part(written) + part(written.substr(written.find(':') + 1));
}

std::string text(const std::string& value) {
    return number(static_cast<std::uint32_t>(value.size() + 1)) + bytes(value) + "00";
}

constexpr const char* list_end = "027f0000";

std::string member(std::uint32_t id, const std::string& content) {
    const std::size_t size = content.size() / 2;
    return number(id | static_cast<std::uint32_t>(size << 16)) + content +
           std::string((4 - size % 4) % 4 * 2, '0');
}

/// A sample whose members have the ids from 0 on.
std::string sample(const std::vector<std::string>& members, const char* header = "00030000") {
    std::string payload = header;
    for (std::uint32_t id = 0; id < members.size(); ++id) {
        payload += member(id, members[id]);
    }
    return payload + list_end;
}

std::string command(std::uint32_t kind, const std::string& value) {
    return member(0, number(kind)) + member(kind + 1, value) + list_end;
}
std::string set_level(std::uint32_t level) {
    return command(0, number(level));
}

/// A line of foreign_peer.cpp, which explains it. Without a payload when none has come.
struct ForeignSample {
    std::string publisher;
    std::string nanoseconds;
    std::string key;
    std::string computed_key;
    std::string payload;
};

class ForeignPeer {
public:
    explicit ForeignPeer(const std::string& option = "")
        : process_{{ORVANE_FOREIGN_PEER, domain(), option}} {}

    /// Repeats a request that changes nothing until the application answers.
    bool meet(const std::string& target) {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        bool met = false;
        while (!met && std::chrono::steady_clock::now() < deadline) {
            send(target, command(1, number(0)));
            met = has_come("response", identity(target), std::chrono::milliseconds{100});
        }
        return met;
    }

    /// Sends a request. @return its invocation, which no other request of this program has
    std::uint32_t send(const std::string& target, const std::string& what,
                       const std::string& originator = "0:0", const char* header = "00030000") {
        static std::uint32_t last_invocation = 0;
        process_.send_line(sample(
            {identity(target), identity(originator), number(++last_invocation), what}, header));
        return last_invocation;
    }

    /// Waits for a sample of a topic ("log", "state" or "response") that has @p part in its
    /// payload.
    ForeignSample await(const std::string& topic, const std::string& part,
                        std::chrono::milliseconds longest = patience) {
        ForeignSample found;
        process_.wait_until(
            [&](const Output& output) {
                for (const std::string& line : output.out) {
                    if (line.starts_with(topic + ' ') && line.find(part) != std::string::npos) {
                        std::istringstream{line.substr(topic.size())} >> found.publisher >>
                            found.nanoseconds >> found.key >> found.computed_key >> found.payload;
                        return true;
                    }
                }
                return false;
            },
            longest);
        return found;
    }
    bool has_come(const std::string& topic, const std::string& part,
                  std::chrono::milliseconds longest = patience) {
        return !await(topic, part, longest).payload.empty();
    }

    ChildProcess& process() { return process_; }

private:
    ChildProcess process_;
};

/// An application of ours and a peer that shares no code with it, which have met.
class AnotherProduct : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(peer_.meet(identity_)) << peer_.process().transcript(); }
    void TearDown() override {
        // An answer comes behind everything printed before it.
        EXPECT_TRUE(application_.say(600, "", ""));
        EXPECT_EQ(peer_.process().output().error, std::vector<std::string>{});
        EXPECT_EQ(application_.diagnostics(), std::vector<std::string>{});
    }

    /// What a State of the application consists of, as it is at first.
    struct State {
        std::uint32_t kind = 1;
        std::uint32_t level = 600;
        std::array<std::uint32_t, 5> verbosities = {1, 1, 1, 1, 1};
        std::uint32_t format = 0;
    };
    static std::string payload_of(const State& state, const std::string& logger) {
        std::string pairs;
        for (std::uint32_t category = 0; category < 5; ++category) {
            pairs += number(category) + number(state.verbosities[category]);
        }
        return sample({identity(logger), number(static_cast<std::uint32_t>(std::stoul(domain()))),
                       number(state.kind), text("grinder"), number(state.level), pairs,
                       number(state.format)});
    }
    static bool is_answered(ForeignPeer& peer, std::uint32_t invocation, const std::string& logger,
                            const std::string& originator = "0:0") {
        return peer.has_come("response", sample({identity(logger), identity(originator),
                                                 number(invocation), number(0), text("")}));
    }

    Application application_{{"--kind", "grinder"}};
    std::string identity_ = application_.ask("identity");
    ForeignPeer peer_;
};

TEST_F(AnotherProduct, ReadsTheState) {
    const ForeignSample state = peer_.await("state", payload_of({}, identity_));
    EXPECT_EQ(state.publisher, identity_) << peer_.process().transcript();
    EXPECT_EQ(application_.ask("finish"), "finish 0");
    EXPECT_TRUE(peer_.has_come("state", payload_of({.kind = 2}, identity_)))
        << peer_.process().transcript();
}

TEST_F(AnotherProduct, ReadsMessagesAndTheTimeOfLoggingToTheNanosecond) {
    const struct {
        int level;
        std::string category;
        std::string message;
    } messages[] = {
        {100, "", ""},
        {300, "two", "grüße, 世界"},
        {500, "controls", "tab \t line \n backslash \\"},
        {-5, std::string(512, 'c'), std::string(4096, 't')},
    };
    const auto payload_of = [&](const auto& message) {
        return sample({identity(identity_), number(static_cast<std::uint32_t>(message.level)),
                       text(message.category), text(message.message)});
    };
    for (const auto& message : messages) {
        ASSERT_TRUE(application_.say(message.level, message.category, message.message));
        EXPECT_EQ(peer_.await("log", payload_of(message)).publisher, identity_) << message.level;
    }
    ForeignPeer late;
    EXPECT_TRUE(late.has_come("log", payload_of(messages[1])));

    for (const char* fraction : {"0", "1", "999999999", "500000000", "232830643"}) {
        ASSERT_EQ(application_.ask(std::string{"at 1500000000 "} + fraction), "at");
    }
    for (const LoggedMessage& logged : application_.logged()) {
        const ForeignSample log = peer_.await("log", text(logged.text));
        EXPECT_EQ(log.nanoseconds, std::to_string(logged.before));
    }
}

TEST_F(AnotherProduct, ChangesEachSettingByACommand) {
    const std::string originator = "ffffffff:80000001";
    const std::pair<std::string, State> commands[] = {
        {set_level(700), {.level = 700}},
        {command(1, number(2) + number(1) + number(2) + number(4) + number(0)),
         {.level = 700, .verbosities = {1, 2, 1, 1, 0}}},
        {command(1, number(5) + number(0) + number(0) + number(1) + number(1) + number(2) +
                        number(2) + number(3) + number(3) + number(4) + number(5)),
         {.level = 700, .verbosities = {0, 1, 2, 3, 5}}},
        {command(2, number(6)), {.level = 700, .verbosities = {0, 1, 2, 3, 5}, .format = 6}},
    };
    for (const auto& [request, effect] : commands) {
        const std::uint32_t invocation = peer_.send(identity_, request, originator);
        EXPECT_TRUE(is_answered(peer_, invocation, identity_, originator));
        EXPECT_TRUE(peer_.has_come("state", payload_of(effect, identity_)))
            << peer_.process().transcript();
    }
    ASSERT_TRUE(application_.say(700, "quiet", "now heard"));
    EXPECT_TRUE(peer_.has_come("log", text("now heard")));
}

TEST_F(AnotherProduct, CommandsTheApplicationThatItNamesAndNoOther) {
    Application other{{"--kind", "grinder"}};
    const std::string other_identity = other.ask("identity");
    ASSERT_TRUE(peer_.meet(other_identity)) << peer_.process().transcript();

    const std::string host = identity_.substr(0, 8);
    const std::string process = identity_.substr(9);
    std::vector<std::uint32_t> invocations;
    for (const std::string& nobody :
         {process + ':' + host, host + ":00000000", "00000000:" + process, "ffffffff:" + process}) {
        invocations.push_back(peer_.send(nobody, set_level(1)));
    }
    EXPECT_TRUE(is_answered(peer_, peer_.send(identity_, set_level(100)), identity_));
    EXPECT_TRUE(is_answered(peer_, peer_.send(other_identity, set_level(200)), other_identity));
    EXPECT_TRUE(peer_.has_come("state", payload_of({.level = 100}, identity_)));
    EXPECT_TRUE(peer_.has_come("state", payload_of({.level = 200}, other_identity)));

    for (const std::uint32_t invocation : invocations) {
        EXPECT_FALSE(peer_.has_come("response", member(2, number(invocation)), {}));
    }
    EXPECT_FALSE(peer_.has_come("state", payload_of({.level = 200}, identity_), {}));
    EXPECT_FALSE(peer_.has_come("state", payload_of({.level = 100}, other_identity), {}));
    EXPECT_FALSE(peer_.has_come("state", member(4, number(1)), {}));
}

// The engine takes a message with such a payload for no RTPS message at all and asks for it again,
// so that the writer that sent it gets no further.
TEST_F(AnotherProduct, LosesNoRequestByAnUnknownEncapsulationOfSomebodyElse) {
    ForeignPeer stranger;
    ASSERT_TRUE(stranger.meet(identity_)) << stranger.process().transcript();
    for (const char* unknown : {"00040000", "ffff0000"}) {
        const auto invocation = stranger.send(identity_, set_level(1), "0:0", unknown);
        EXPECT_TRUE(is_answered(peer_, peer_.send(identity_, set_level(200)), identity_));
        EXPECT_FALSE(stranger.has_come("response", member(2, number(invocation)), {}));
    }
    EXPECT_FALSE(peer_.has_come("state", member(4, number(1)), {}));
}

TEST(SampleInfos, TellTheWriterOfAnotherProductAndTheNumbersOfItsSamples) {
    const test::Node node;
    DDS_DataReader* reader = node.reader<QEL_KX_ADMIN_CommandRequest>(
        [](DDS_DataReaderQos& qos) { qos.durability.kind = DDS_VOLATILE_DURABILITY_QOS; });
    ForeignPeer peer;
    ASSERT_TRUE(test::await_writer(reader)) << peer.process().transcript();
    DDS_InstanceHandleSeq writers{};
    ASSERT_EQ(DDS_DataReader_get_matched_publications(reader, &writers), DDS_RETCODE_OK);
    const DDS_InstanceHandle_t writer = DDS_InstanceHandleSeq_get(&writers, 0);
    DDS_InstanceHandleSeq_finalize(&writers);
    const std::uint32_t before = peer.send("0:0", set_level(1)) - 1;
    // Those that the writer sends before it knows the reader do not come.
    int seen = 0;
    for (int round = 0; seen < 3 && round < 500; ++round) {
        peer.send("0:0", set_level(1));
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
        for (const auto& [request, info] : test::receive<QEL_KX_ADMIN_CommandRequest>(reader)) {
            EXPECT_TRUE(DDS_InstanceHandle_equals(&info.publication_handle, &writer));
            EXPECT_EQ(info.publication_sequence_number.high, 0);
            EXPECT_EQ(info.publication_sequence_number.low,
                      static_cast<std::uint32_t>(request->invocation) - before);
            ++seen;
        }
    }
    EXPECT_GE(seen, 3) << peer.process().transcript();
}

TEST(KeyHashes, CarriedBySamplesAreThoseThatAnotherProductComputes) {
    Application application{
        {},
        {"env", "CYCLONEDDS_URI=" + std::string{std::getenv("CYCLONEDDS_URI")} +
                    ",<CycloneDDS><Domain Id=\"any\"><Internal><GenerateKeyhash>true"
                    "</GenerateKeyhash></Internal></Domain></CycloneDDS>"}};
    ForeignPeer peer{"--carried-keys"};
    const std::string logger = application.ask("identity");
    ASSERT_TRUE(peer.meet(logger)) << peer.process().transcript();

    ASSERT_EQ(application.ask("log 300 1 0"), "log");
    const ForeignSample severe = peer.await("log", member(1, number(300)));
    ASSERT_EQ(application.ask("log 500 1 0"), "log");
    for (const ForeignSample& each : {severe, peer.await("log", member(1, number(500))),
                                      peer.await("state", member(0, identity(logger))),
                                      peer.await("response", member(0, identity(logger)))}) {
        ASSERT_FALSE(each.payload.empty()) << peer.process().transcript();
        EXPECT_EQ(each.key, each.computed_key);
    }
}

}  // namespace
}  // namespace orvane::tests
