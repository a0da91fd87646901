#include <dds/dds.h>
#include <dds/ddsi/q_radmin.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstring>
#include <ctime>
#include <thread>

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/qos_conversion.hpp"
#include "platform/engine/cyclone/refusals.hpp"
#include "platform/engine/cyclone/rtps_origin.hpp"
#include "platform/engine/cyclone/serdata.hpp"
#include "platform/engine/engine.hpp"
#include "platform/engine/log.hpp"
#include "tests/platform/engine/every_policy.hpp"

/// How far the wall clock that programs see is ahead of the kernel's.
static constinit std::atomic<int> seconds_ahead = 0;

[[gnu::visibility("default")]] int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    time->tv_sec += clock == CLOCK_REALTIME ? seconds_ahead.load() : 0;
    return result;
}

namespace pexa::engine::cyclone {
namespace {

TEST(Refusals, AreToldOnceInAWhileAndNotTooManyOfThem) {
    EXPECT_TRUE(is_refusal("Begin handshake reply failed: Certificate not valid: error: …"));
    EXPECT_FALSE(is_refusal("Remote secure participant 1:2:3:4 not allowed"));
    RefusalLimit limit;
    const RefusalLimit::Clock::time_point start{};
    EXPECT_TRUE(limit.passes("first", start));
    EXPECT_FALSE(limit.passes("first", start + RefusalLimit::period - std::chrono::seconds{1}));
    EXPECT_TRUE(limit.passes("first", start + RefusalLimit::period));
    std::size_t passed = 1;
    for (int i = 0; i < 100; ++i) {
        passed += limit.passes(std::to_string(i), start + RefusalLimit::period) ? 1 : 0;
    }
    EXPECT_EQ(passed, RefusalLimit::most);
}

TEST(QosConversion, KeepsEveryPolicyAndAddsNone) {
    Qos every = every_policy();
    every.batching.reset();  // The engine's QoS has no such policy.
    for (const Qos& qos : {every, Qos{}}) {
        EXPECT_EQ(from_cyclone(to_cyclone(qos).get()), qos);
    }
}

TEST(EngineLogDeathTest, FatalReportsReachStandardErrorWhateverTheMaskAndTheSink) {
    const auto fail = [] {
        set_log_sink([](void*, LogCategory, std::string_view) {}, nullptr);
        set_log_mask(0);
        dds_log(DDS_LC_FATAL, __FILE__, __LINE__, "test", "no more threads\n");
    };
    EXPECT_DEATH(fail(), "^no more threads\n$");
}

TEST(StandardStreamsDeathTest, ThatAreClosedDoNotBecomeSockets) {
    const auto start_without_streams = [] {
        for (const int stream : {0, 1, 2}) {
            close(stream);
        }
        const bool started = create_participant(109, {}).status == Status::ok;
        _exit(started && fcntl(0, F_GETFD) == -1 && fcntl(2, F_GETFD) == -1 ? 0 : 1);
    };
    EXPECT_EXIT(start_without_streams(), testing::ExitedWithCode(0), "");
}

TEST(Waiting, TakesNoLongerWhenTheClockIsSetBackMeanwhile) {
    const EntityId set = create_wait_set().entity;
    const EntityId condition = create_guard_condition().entity;
    ASSERT_EQ(attach(set, condition), Status::ok);
    std::vector<EntityId> triggered;
    const auto begin = std::chrono::steady_clock::now();
    // To the kernel the deadlines lie so much later.
    seconds_ahead = 60;
    EXPECT_EQ(wait(set, 1'000'000, triggered), Status::timeout);
    seconds_ahead = 0;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
    dds_delete(set);
    dds_delete(condition);
}

/// A type of which the first bytes of a payload are the key.
class PlainType : public Type {
public:
    const char* name() const override { return "test::Plain"; }
    bool keyed() const override { return true; }
    std::optional<KeyHash> accept(PayloadKind /*kind*/,
                                  std::span<const std::byte> payload) const override {
        KeyHash hash{};
        std::copy_n(payload.begin(), std::min(payload.size(), hash.size()), hash.begin());
        return hash;
    }
    bool write_key(std::span<const std::byte> /*data*/,
                   FunctionRef<std::byte*(std::size_t)> /*allocate*/) const override {
        return false;
    }
};

const Bytes whole = [] {
    Bytes bytes(20);
    std::ranges::generate(bytes, [i = 0]() mutable { return static_cast<std::byte>(i++); });
    return bytes;
}();

ddsi_sertype* plain_type() {
    return make_sertype(SharedType::of(std::make_shared<PlainType>()));
}

// One fragment as Cyclone's receive buffers hold it, behind the headers in front of its payload.
class Fragment {
public:
    Fragment(std::uint32_t begin, std::uint32_t end,
             const Bytes& headers = Bytes(sizeof(Header_t) + sizeof(Data_t)))
        : memory_(sizeof(nn_rmsg) + headers.size() + whole.size()) {
        rdata_.rmsg = reinterpret_cast<nn_rmsg*>(memory_.data());
        rdata_.min = begin;
        rdata_.maxp1 = end;
        rdata_.submsg_zoff = static_cast<std::uint16_t>(headers.size() - sizeof(Data_t));
        rdata_.payload_zoff = static_cast<std::uint16_t>(headers.size());
        std::ranges::copy(std::as_bytes(std::span(headers)), memory_.begin() + sizeof(nn_rmsg));
        std::memcpy(NN_RMSG_PAYLOADOFF(rdata_.rmsg, headers.size()), whole.data() + begin,
                    std::min<std::size_t>(end, whole.size()) - begin);
    }
    nn_rdata* link(nn_rdata* next) {
        rdata_.nextfrag = next;
        return &rdata_;
    }

private:
    Bytes memory_;
    nn_rdata rdata_{};
};

TEST(Fragments, AreJoinedWhenTheyCoverThePayload) {
    const auto size = static_cast<std::uint32_t>(whole.size());
    const struct {
        const char* what;
        std::vector<std::pair<std::uint32_t, std::uint32_t>> ranges;
        bool joined;
    } cases[] = {
        {"one", {{0, size}}, true},
        {"two", {{0, 9}, {9, size}}, true},
        {"overlapping", {{0, 12}, {5, 15}, {7, size}}, true},
        {"contained", {{0, 15}, {3, 9}, {15, size}}, true},
        {"gap", {{0, 8}, {9, size}}, false},
        {"no start", {{4, size}}, false},
        {"no end", {{0, size - 1}}, false},
        {"longer than announced", {{0, 12}, {12, size + 4}}, false},
    };
    ddsi_sertype* const type = plain_type();
    for (const auto& [what, ranges, joined] : cases) {
        SCOPED_TRACE(what);
        std::vector<Fragment> fragments;
        for (const auto& [begin, end] : ranges) {
            fragments.emplace_back(begin, end);
        }
        nn_rdata* chain = nullptr;
        for (std::size_t i = fragments.size(); i-- > 0;) {
            chain = fragments[i].link(chain);
        }
        const SerdataPtr data(
            static_cast<Serdata*>(ddsi_serdata_from_ser(type, SDK_DATA, chain, size)));
        ASSERT_EQ(data != nullptr, joined);
        if (data) {
            EXPECT_EQ(Bytes(data->bytes().begin(), data->bytes().end()), whole);
            EXPECT_EQ(data->key, *PlainType().accept(PayloadKind::data, whole));
        }
    }
    ddsi_sertype_unref(type);
}

template <typename Record>
void append(Bytes& bytes, const Record& record) {
    const auto more = std::as_bytes(std::span(&record, 1));
    bytes.insert(bytes.end(), more.begin(), more.end());
}

TEST(Origin, IsTheSourceThatTheMessageNamedLastBeforeTheSample) {
    // The engine's names of these are no C++.
    const nn_vendorid_t eclipse{{1, 0x10}};
    const nn_vendorid_t eprosima{{1, 0x0F}};
    const ddsi_guid_prefix_t sender{.u = {0x01020304, 5, 6}};
    const InfoSRC_t info_src{{SMID_INFO_SRC, 1, sizeof(InfoSRC_t) - sizeof(SubmessageHeader_t)},
                             0,
                             {2, 1},
                             nn_vendorid_t{{0, 0}},
                             {.u = {htonl(0x0a0b0c0d), htonl(7), htonl(8)}}};
    const std::string of_sender("\1\2\3\4\0\0\0\5\0\0\0\6\0\0\1\3", 16);
    const std::string of_source("\12\13\14\15\0\0\0\7\0\0\0\10\0\0\1\3", 16);
    const struct {
        nn_vendorid_t vendor;
        bool names_source;
        const std::string& expected;
    } cases[] = {
        {eclipse, false, of_sender}, {eprosima, false, of_sender}, {eprosima, true, of_source}};
    for (const auto& [vendor, names_source, expected] : cases) {
        Bytes headers;
        append(headers, Header_t{{'R', 'T', 'P', 'S'}, {2, 1}, vendor, sender});
        append(headers, SubmessageHeader_t{SMID_INFO_TS, 3, 0});
        if (names_source) {
            append(headers, info_src);
            append(headers, SubmessageHeader_t{SMID_PAD, 1, 0});
        }
        append(headers, Data_t{{{SMID_DATA, 1, 0}, 0, 0, {}, {.u = 0x103}, {1, 5}}});
        Fragment fragment(0, 20, headers);
        const SampleOrigin origin = origin_of(*fragment.link(nullptr));
        EXPECT_EQ(std::memcmp(origin.writer.data(), expected.data(), expected.size()), 0);
        EXPECT_EQ(origin.sequence_number, 0x1'0000'0005);
    }
}

TEST(InstanceIndex, HasAnInstanceAsLongAsThereIsACopyOfIt) {
    InstanceIndex index;
    // The map of the engine makes a new copy while the old one waits to be freed.
    InstanceIndex::Place old_copy;
    InstanceIndex::Place new_copy;
    index.add(old_copy);
    index.add(new_copy);
    index.remove(old_copy);
    EXPECT_TRUE(index.next(nullptr));
    index.remove(new_copy);
    EXPECT_FALSE(index.next(nullptr));
}

TEST(KeyHashAlone, MakesASampleOfTheInstanceWithoutPayload) {
    ddsi_sertype* const type = plain_type();
    const KeyHash key = *PlainType().accept(PayloadKind::key, whole);
    ddsi_keyhash hash;
    std::memcpy(hash.value, key.data(), sizeof hash.value);
    const SerdataPtr data(static_cast<Serdata*>(ddsi_serdata_from_keyhash(type, &hash)));
    const SerdataPtr written = make_serdata(type, SDK_DATA, whole.size());
    written->set_key(key);
    EXPECT_TRUE(ddsi_serdata_eqkey(data.get(), written.get()));
    EXPECT_EQ(data->hash, written->hash);
    EXPECT_TRUE(data->bytes().empty());
    ddsi_sertype_unref(type);
}

// Cyclone keeps some instances until the last participant of the domain ends.
TEST(Instance, HasItsPlaceInTheIndexWithoutItsType) {
    const auto shared = SharedType::of(std::make_shared<PlainType>());
    ddsi_sertype* const type = make_sertype(shared);
    SerdataPtr sample = make_serdata(type, SDK_DATA, whole.size());
    sample->set_key(*PlainType().accept(PayloadKind::data, whole));
    const long users = shared.use_count();
    SerdataPtr instance(static_cast<Serdata*>(ddsi_serdata_to_untyped(sample.get())));
    EXPECT_EQ(shared.use_count(), users);
    EXPECT_EQ(shared->instances()->next(nullptr), sample->key);
    EXPECT_EQ(shared->instances()->next(&sample->key), std::nullopt);
    sample.reset();
    ddsi_sertype_unref(type);
    instance.reset();
    EXPECT_EQ(shared->instances()->next(nullptr), std::nullopt);
}

/// A domain of this process that meets the other ones on the loopback interface.
struct Side {
    explicit Side(std::uint32_t id)
        : domain(dds_create_domain(
              id, "file://" ORVANE_SOURCE_DIR "/config/cyclonedds-loopback.xml,"
                  "<Discovery><ExternalDomainId>109</ExternalDomainId></Discovery>")),
          participant(create_participant(id, {}).entity) {}
    ~Side() { dds_delete(domain); }
    EntityId topic(const char* name) const {
        return create_topic(participant, name, std::make_shared<PlainType>(), {}).entity;
    }

    const dds_entity_t domain;
    const EntityId participant;
};

struct MatchListener : Listener {
    void on_status(EntityId, StatusMask, const CommunicationStatus&) override { action(); }
    std::function<void()> action;
};

void write_octet(dds_entity_t writer, EntityId topic, int octet) {
    SerdataPtr data = make_serdata(topics().find(topic)->sertype, SDK_DATA, 5);
    std::ranges::fill(data->writable_bytes(), std::byte{0});
    data->writable_bytes()[4] = static_cast<std::byte>(octet);
    data->set_key({});
    dds_forwardcdr(writer, data.release());
}

bool await(const std::function<bool()>& condition) {
    for (int round = 0; round < 6000 && !condition(); ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds{5});
    }
    return condition();
}

TEST(Batching, IsForTheWriterThatAsksAndLeavesTheSwitchOfTheApplicationAlone) {
    const Side here{110};
    const Side there{111};
    const EntityId publisher = create_publisher(here.participant, {}).entity;
    const EntityId ours = here.topic("ours");
    const EntityId others = here.topic("others");
    Qos keep_all;
    keep_all.history = HistoryPolicy{HistoryKind::keep_all, unlimited};
    const EntityId local = create_subscriber(here.participant, {}).entity;
    ASSERT_TRUE(create_reader(local, ours, {}));
    const EntityId subscriber = create_subscriber(there.participant, {}).entity;
    const EntityId reader = create_reader(subscriber, there.topic("others"), keep_all).entity;

    Qos batching;
    batching.batching = true;
    // Heartbeats would make a reliable writer send its batch.
    const QosPtr best_effort(dds_create_qos());
    dds_qset_reliability(best_effort.get(), DDS_RELIABILITY_BEST_EFFORT, 0);
    const auto make_other = [&] {
        return dds_create_writer(here.participant, others, best_effort.get(), nullptr);
    };
    dds_entity_t other = 0;
    // A writer of the application that is made while the library makes one.
    MatchListener listener;
    listener.action = [&] { other = make_other(); };
    const Created matched =
        create_writer(publisher, ours, batching, {&listener, publication_matched_status});
    ASSERT_TRUE(matched);
    ASSERT_EQ(set_listener(matched.entity, {}), Status::ok);
    ASSERT_GT(other, 0);
    // Deprecated in 0.10.5, and still there for applications.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    dds_write_set_batch(true);
    ASSERT_TRUE(create_writer(publisher, ours, batching));
    const dds_entity_t switched = make_other();
    dds_write_set_batch(false);
#pragma GCC diagnostic pop
    Qos not_batching;
    not_batching.reliability = ReliabilityPolicy{ReliabilityKind::best_effort, 0};
    const EntityId plain = create_writer(publisher, others, not_batching).entity;

    std::vector<LocalHandle> matches;
    ASSERT_TRUE(await([&] {
        matches.clear();
        static_cast<void>(get_matched_publications(reader, matches));
        return matches.size() == 3 &&
               std::ranges::all_of(std::array{switched, other, plain}, [](dds_entity_t writer) {
                   return dds_get_matched_subscriptions(writer, nullptr, 0) == 1;
               });
    }));
    std::string received;
    const auto await_octets = [&](std::size_t count) {
        return await([&] {
            std::vector<Sample> samples;
            static_cast<void>(read_or_take(reader, Access::take, {}, unlimited, samples));
            for (const Sample& sample : samples) {
                received += std::to_string(static_cast<int>(sample.payload.bytes()[4]));
            }
            return received.size() >= count;
        });
    };
    write_octet(switched, others, 3);
    write_octet(other, others, 1);
    write_octet(plain, others, 2);
    EXPECT_TRUE(await_octets(2)) << "a writer batches that nobody told to";
    dds_write_flush(switched);
    EXPECT_TRUE(await_octets(3));
    EXPECT_EQ(received, "123") << "the application's switch was lost";
}

TEST(Origin, OfASampleFromAnotherProcessIsItsWriterWithTheNumberOfTheSample) {
    const Side here{112};
    const Side there{113};
    Qos keep_all;
    keep_all.history = HistoryPolicy{HistoryKind::keep_all, unlimited};
    keep_all.reliability = ReliabilityPolicy{ReliabilityKind::reliable, infinite};
    Qos batching = keep_all;
    batching.batching = true;
    const EntityId topic = here.topic("origin");
    const EntityId publisher = create_publisher(here.participant, {}).entity;
    const EntityId writers[] = {create_writer(publisher, topic, keep_all).entity,
                                create_writer(publisher, topic, batching).entity};
    const EntityId subscriber = create_subscriber(there.participant, {}).entity;
    const EntityId reader = create_reader(subscriber, there.topic("origin"), keep_all).entity;
    ASSERT_TRUE(await([&] {
        return std::ranges::all_of(writers, [](EntityId writer) {
            return dds_get_matched_subscriptions(writer, nullptr, 0) == 1;
        });
    }));
    // Behind its encapsulation header a sample has the place of its writer and its own number.
    const auto send = [&](std::size_t place, int number, std::size_t size,
                          WriteKind kind = WriteKind::data) {
        Bytes bytes(size);
        bytes[4] = static_cast<std::byte>(place);
        bytes[5] = static_cast<std::byte>(number);
        const auto fill = [&](std::span<std::byte> buffer) {
            std::ranges::copy(bytes, buffer.begin());
            return true;
        };
        EXPECT_EQ(write(writers[place], kind, *PlainType().accept(PayloadKind::data, bytes), size,
                        fill, 1),
                  Status::ok);
    };
    constexpr std::size_t many_fragments = 200'000;
    send(0, 1, many_fragments);
    send(0, 1, 16, WriteKind::dispose);
    for (int number = 1; number <= 3; ++number) {
        send(1, number, 100);
        send(0, number + 2, 100);
    }
    flush(writers[1]);

    std::vector<Sample> samples;
    EXPECT_TRUE(await([&] {
        static_cast<void>(read_or_take(reader, Access::take, {}, unlimited, samples));
        return std::ranges::count_if(
                   samples, [](const Sample& sample) { return sample.info.valid_data; }) == 7;
    }));
    for (const Sample& sample : samples) {
        SampleOrigin expected;
        if (sample.info.valid_data) {
            const auto bytes = sample.payload.bytes();
            static_cast<void>(
                get_guid(writers[std::to_integer<std::size_t>(bytes[4])], expected.writer));
            expected.sequence_number = std::to_integer<std::int64_t>(bytes[5]);
        }
        EXPECT_EQ(sample.info.origin, expected);
    }
}

}  // namespace
}  // namespace pexa::engine::cyclone
