#include "tests/platform/dds/entities/foreign_writer.hpp"

#include <cstring>

#include "tests/support/node.hpp"

namespace engine = pexa::engine;

namespace {

class OpaqueType final : public engine::Type {
public:
    OpaqueType(std::string name, bool accepts) : name_(std::move(name)), accepts_(accepts) {}

    const char* name() const override { return name_.c_str(); }
    bool keyed() const override { return true; }
    std::optional<engine::KeyHash> accept(engine::PayloadKind /*kind*/,
                                          std::span<const std::byte> /*payload*/) const override {
        return accepts_ ? std::optional(engine::KeyHash{}) : std::nullopt;
    }
    bool write_key(std::span<const std::byte> /*data*/,
                   engine::FunctionRef<std::byte*(std::size_t)> /*allocate*/) const override {
        return false;
    }

private:
    std::string name_;
    bool accepts_;
};

}  // namespace

std::shared_ptr<engine::Type> opaque_type(const std::string& name, bool accepts) {
    return std::make_shared<OpaqueType>(name, accepts);
}

ForeignWriter::ForeignWriter(const std::string& topic_name, const std::string& type_name)
    : participant_(
          engine::create_participant(static_cast<std::uint32_t>(orvane::test::domain()), {})
              .entity) {
    engine::Qos qos;
    qos.durability = engine::DurabilityKind::transient_local;
    qos.reliability = engine::ReliabilityPolicy{engine::ReliabilityKind::reliable, 1'000'000'000};
    qos.history = engine::HistoryPolicy{engine::HistoryKind::keep_all, 1};
    const engine::Created topic =
        engine::create_topic(participant_, topic_name.c_str(), opaque_type(type_name, true), {});
    const engine::Created publisher = engine::create_publisher(participant_, {});
    writer_ = engine::create_writer(publisher.entity, topic.entity, qos).entity;
    EXPECT_GT(writer_, 0);
}

ForeignWriter::~ForeignWriter() {
    EXPECT_EQ(engine::delete_entity(participant_), pexa::Status::ok);
}

void ForeignWriter::send(const orvane::test::Bytes& payload, const engine::KeyHash& instance,
                         engine::WriteKind kind) const {
    const auto fill = [&](std::span<std::byte> buffer) {
        std::memcpy(buffer.data(), payload.data(), buffer.size());
        return true;
    };
    EXPECT_EQ(engine::write(writer_, kind, instance, payload.size(), fill, 1), pexa::Status::ok);
}
