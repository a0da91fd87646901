#include "tests/platform/engine/note_node.hpp"

#include <algorithm>

namespace pexa::engine {

namespace {

constexpr std::size_t header_size = 4;
constexpr std::size_t key_size = header_size + 4;

class NoteType : public Type {
public:
    const char* name() const override { return "test::Note"; }
    bool keyed() const override { return true; }
    std::optional<KeyHash> accept(PayloadKind /*kind*/,
                                  std::span<const std::byte> payload) const override {
        if (payload.size() < key_size) {
            return std::nullopt;
        }
        KeyHash hash{};
        std::reverse_copy(payload.begin() + header_size, payload.begin() + key_size, hash.begin());
        return hash;
    }
    bool write_key(std::span<const std::byte> data,
                   FunctionRef<std::byte*(std::size_t)> allocate) const override {
        std::byte* const out = allocate(key_size);
        if (out != nullptr) {
            std::copy_n(data.data(), key_size, out);
        }
        return out != nullptr;
    }
};

}  // namespace

Bytes note(std::uint32_t number, std::string_view text) {
    Bytes payload{std::byte{0}, std::byte{3}, std::byte{0}, std::byte{0}};
    for (unsigned shift = 0; shift < 32; shift += 8) {
        payload.push_back(static_cast<std::byte>(number >> shift));
    }
    for (const char character : text) {
        payload.push_back(static_cast<std::byte>(character));
    }
    return payload;
}

KeyHash note_hash(std::uint32_t number) {
    return *NoteType().accept(PayloadKind::key, note(number, ""));
}

std::shared_ptr<Type> note_type() {
    return std::make_shared<NoteType>();
}

Node::Node() : participant(create_participant(ORVANE_TEST_DOMAIN, {}).entity) {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    topic = create_topic(participant, test->name(), note_type(), {}).entity;
}

EntityId Node::writer(HistoryPolicy history, bool batching) const {
    Qos qos;
    qos.durability = DurabilityKind::transient_local;
    qos.reliability = ReliabilityPolicy{ReliabilityKind::reliable, 1000 * millisecond};
    qos.history = history;
    qos.batching = batching;
    return create_writer(create_publisher(participant, {}).entity, topic, qos).entity;
}

Status write_note(EntityId writer, std::string_view text) {
    const Bytes payload = note(1, text);
    const auto fill = [&](std::span<std::byte> out) {
        std::copy(payload.begin(), payload.end(), out.begin());
        return true;
    };
    return write(writer, WriteKind::data, note_hash(1), payload.size(), fill, 1);
}

}  // namespace pexa::engine
