#include <dds/dds.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "platform/engine/cyclone/entity_records.hpp"
#include "platform/engine/cyclone/qos_conversion.hpp"
#include "platform/engine/cyclone/serdata.hpp"
#include "platform/engine/engine.hpp"

namespace pexa::engine::cyclone {
namespace {

class Octets : public Type {
public:
    const char* name() const override { return "test::Octets"; }
    bool keyed() const override { return false; }
    std::optional<KeyHash> accept(PayloadKind, std::span<const std::byte>) const override {
        return KeyHash{};
    }
    bool write_key(std::span<const std::byte>,
                   FunctionRef<std::byte*(std::size_t)>) const override {
        return false;
    }
};

/// A domain of this process that meets the other ones on the loopback interface.
class Side {
public:
    explicit Side(std::uint32_t id)
        : domain_(dds_create_domain(
              id, "file://" ORVANE_SOURCE_DIR "/config/cyclonedds-loopback.xml,"
                  "<Discovery><ExternalDomainId>109</ExternalDomainId></Discovery>")),
          participant(create_participant(id, {}).entity) {}
    ~Side() { dds_delete(domain_); }

    EntityId topic(const char* name) const {
        return create_topic(participant, name, std::make_shared<Octets>(), {}).entity;
    }

private:
    dds_entity_t domain_;

public:
    const EntityId participant;
};

/// Makes a writer of the application when the writer that is being created is matched.
class WhileCreated : public Listener {
public:
    explicit WhileCreated(std::function<void()> action) : action_(std::move(action)) {}
    void on_status(EntityId, StatusMask, const CommunicationStatus&) override { action_(); }

private:
    std::function<void()> action_;
};

void write_octet(dds_entity_t writer, EntityId topic, int octet) {
    SerdataPtr data = make_serdata(topics().find(topic)->sertype, SDK_DATA, 5);
    std::ranges::fill(data->writable_bytes(), std::byte{0});
    data->writable_bytes()[4] = static_cast<std::byte>(octet);
    data->set_key({});
    dds_forwardcdr(writer, data.release());
}

bool await(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{30};
    while (!condition() && std::chrono::steady_clock::now() < deadline) {
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
    WhileCreated listener{[&] { other = make_other(); }};
    const Created matched =
        create_writer(publisher, ours, batching, {&listener, publication_matched_status});
    ASSERT_TRUE(matched);
    ASSERT_EQ(set_listener(matched.entity, {}), Status::ok);
    ASSERT_GT(other, 0);
    dds_write_set_batch(true);
    ASSERT_TRUE(create_writer(publisher, ours, batching));
    const dds_entity_t switched = make_other();
    dds_write_set_batch(false);
    const EntityId plain = create_writer(publisher, others, {}).entity;

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

}  // namespace
}  // namespace pexa::engine::cyclone
