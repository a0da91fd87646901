#include "platform/dds/payload/type_adapter.hpp"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

#include "platform/dds/interface/scoped_call.hpp"

namespace pexa::dds {

namespace {

bool has_key_operations(const TULVTypePlugin& plugin) {
    return plugin.instance_to_keyhash != nullptr && plugin.get_key != nullptr &&
           plugin.return_key != nullptr && plugin.get_serialized_key_max_size != nullptr &&
           plugin.instance_to_key != nullptr && plugin.key_to_instance != nullptr &&
           plugin.serialize_key != nullptr && plugin.deserialize_key_sample != nullptr;
}

/// Whether all operations that are ever called are there.
bool is_complete(const TULVTypePlugin& plugin) {
    return plugin.pluginKind == TULV_TYPE_PLUGIN_KIND && plugin.typeName != nullptr &&
           plugin.on_participant_attached != nullptr && plugin.on_participant_detached != nullptr &&
           plugin.on_endpoint_attached != nullptr && plugin.on_endpoint_detached != nullptr &&
           plugin.serialize != nullptr && plugin.deserialize != nullptr &&
           plugin.get_sample != nullptr && plugin.return_sample != nullptr &&
           plugin.get_serialized_sample_size != nullptr && plugin.get_key_kind != nullptr &&
           (plugin.get_key_kind() == TULV_NO_KEY || has_key_operations(plugin));
}

}  // namespace

/// A codec with a sample to decode into.
struct TypeAdapter::Scratch {
    explicit Scratch(std::unique_ptr<Codec> owned)
        : codec(std::move(owned)), sample(codec->lend()) {}
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() {
        if (sample != nullptr) {
            codec->give_back(sample);
        }
    }

    std::unique_ptr<Codec> codec;
    void* sample;
    std::unique_ptr<Scratch> next;
};

/// Takes an idle scratch, or makes a new scratch, for one call of the engine.
class TypeAdapter::BorrowedScratch {
public:
    explicit BorrowedScratch(const TypeAdapter& adapter) : adapter_(adapter) {
        {
            const std::lock_guard guard(adapter.idle_mutex_);
            if (adapter.idle_ != nullptr) {
                scratch_ = std::exchange(adapter.idle_, std::move(adapter.idle_->next));
                return;
            }
        }
        if (auto codec = adapter.attach(TULV_ENDPOINT_READER)) {
            scratch_.reset(new (std::nothrow) Scratch(std::move(codec)));
        }
    }
    BorrowedScratch(const BorrowedScratch&) = delete;
    BorrowedScratch& operator=(const BorrowedScratch&) = delete;
    ~BorrowedScratch() {
        if (usable()) {
            const std::lock_guard guard(adapter_.idle_mutex_);
            scratch_->next = std::move(adapter_.idle_);
            adapter_.idle_ = std::move(scratch_);
        }
    }

    bool usable() const { return scratch_ != nullptr && scratch_->sample != nullptr; }
    Codec& codec() const { return *scratch_->codec; }
    void* sample() const { return scratch_->sample; }

private:
    const EngineCall mark_;
    const TypeAdapter& adapter_;
    std::unique_ptr<Scratch> scratch_;
};

TypeAdapter::TypeAdapter(const char* registered_name, const TULVTypePlugin& plugin)
    : registered_name_(registered_name),
      plugin_(plugin),
      keyed_(plugin.get_key_kind() != TULV_NO_KEY) {}

TypeAdapter::~TypeAdapter() {
    while (idle_ != nullptr) {
        idle_ = std::move(idle_->next);
    }
    if (participant_data_ != nullptr) {
        plugin_.on_participant_detached(participant_data_);
    }
}

Result<std::shared_ptr<const TypeAdapter>> TypeAdapter::create(const Operation& operation,
                                                               const char* registered_name,
                                                               const TULVTypePlugin& plugin) {
    if (!is_complete(plugin)) {
        return operation.bad_parameter("plugin");
    }
    const std::shared_ptr<TypeAdapter> adapter(new TypeAdapter(registered_name, plugin));
    adapter->participant_data_ = plugin.on_participant_attached(nullptr, plugin.typeCode);
    if (adapter->participant_data_ == nullptr) {
        return operation.not_created("type", Status::error);
    }
    return std::shared_ptr<const TypeAdapter>(adapter);
}

bool TypeAdapter::is_of(const char* type_name) const {
    return std::string_view(plugin_.typeName) == type_name;
}

std::unique_ptr<Codec> TypeAdapter::attach(TULVEndpointKind kind) const {
    return Codec::create(plugin_, participant_data_, kind);
}

std::optional<engine::KeyHash> TypeAdapter::accept(engine::PayloadKind kind,
                                                   std::span<const std::byte> payload) const {
    if (!keyed_ && kind == engine::PayloadKind::key) {
        return engine::KeyHash{};
    }
    const BorrowedScratch scratch(*this);
    if (!scratch.usable()) {
        return std::nullopt;
    }
    const Status decoded = kind == engine::PayloadKind::data
                               ? scratch.codec().decode(payload, scratch.sample())
                               : scratch.codec().decode_key(payload, scratch.sample());
    engine::KeyHash hash;
    if (decoded != Status::ok || scratch.codec().key_hash(scratch.sample(), hash) != Status::ok) {
        return std::nullopt;
    }
    return hash;
}

bool TypeAdapter::write_key(std::span<const std::byte> data,
                            engine::FunctionRef<std::byte*(std::size_t)> allocate) const {
    const BorrowedScratch scratch(*this);
    if (!scratch.usable() || scratch.codec().decode(data, scratch.sample()) != Status::ok) {
        return false;
    }
    const std::span<const std::byte> key = scratch.codec().encode_key(scratch.sample());
    std::byte* destination = key.empty() ? nullptr : allocate(key.size());
    if (destination == nullptr) {
        return false;
    }
    std::copy(key.begin(), key.end(), destination);
    return true;
}

}  // namespace pexa::dds
