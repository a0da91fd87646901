#include "tests/platform/dds/entities/foreign_writer.hpp"

#include <algorithm>

#include <gtest/gtest.h>

namespace engine = pexa::engine;

namespace {

/// Believes everything.
class OpaqueType final : public engine::Type {
public:
    [[nodiscard]] const char* name() const override { return "Probe"; }
    [[nodiscard]] bool keyed() const override { return true; }
    [[nodiscard]] std::optional<engine::KeyHash> accept(
        engine::PayloadKind /*kind*/, std::span<const std::byte> /*payload*/) const override {
        return engine::KeyHash{};
    }
    [[nodiscard]] bool write_key(
        std::span<const std::byte> /*data*/,
        engine::FunctionRef<std::byte*(std::size_t)> /*allocate*/) const override {
        return false;
    }
};

engine::Qos reliable() {
    engine::Qos qos;
    qos.durability = engine::DurabilityKind::transient_local;
    qos.reliability = engine::ReliabilityPolicy{engine::ReliabilityKind::reliable, 1'000'000'000};
    qos.history = engine::HistoryPolicy{engine::HistoryKind::keep_all, 1};
    return qos;
}

}  // namespace

ForeignWriter::ForeignWriter(const std::string& topic_name)
    : participant_(engine::create_participant(ORVANE_TEST_DOMAIN, {}).entity) {
    const engine::Created topic =
        engine::create_topic(participant_, topic_name.c_str(), std::make_shared<OpaqueType>(), {});
    const engine::Created publisher = engine::create_publisher(participant_, {});
    writer_ = engine::create_writer(publisher.entity, topic.entity, reliable()).entity;
    EXPECT_GT(writer_, 0);
}

ForeignWriter::~ForeignWriter() {
    EXPECT_EQ(engine::delete_entity(participant_), pexa::Status::ok);
}

bool ForeignWriter::await_reader() const {
    const engine::EntityId waiting = engine::create_wait_set().entity;
    EXPECT_EQ(engine::attach(waiting, writer_), pexa::Status::ok);
    std::vector<engine::EntityId> triggered;
    engine::PublicationMatched matched;
    while (engine::get_status(writer_, matched) == pexa::Status::ok && matched.current_count == 0 &&
           engine::wait(waiting, 20'000'000'000, triggered) == pexa::Status::ok) {
    }
    EXPECT_EQ(engine::delete_entity(waiting), pexa::Status::ok);
    return matched.current_count > 0;
}

void ForeignWriter::send(DDS_Long id, std::span<const std::byte> payload,
                         engine::WriteKind kind) const {
    const auto fill = [&](std::span<std::byte> buffer) {
        std::copy(payload.begin(), payload.end(), buffer.begin());
        return true;
    };
    EXPECT_EQ(engine::write(writer_, kind, hash_of_probe(id), payload.size(), fill, 1),
              pexa::Status::ok);
}
