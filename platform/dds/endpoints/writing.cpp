#include <algorithm>

#include "platform/dds/endpoints/writer.hpp"
#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

namespace {

/// What becomes of a write after the engine has had it. Time-outs are everyday and not reported.
DDS_ReturnCode_t written(const Operation& operation, Status status, bool encoded) {
    if (!encoded && status == Status::bad_parameter) {
        return operation.failed("encoding the sample", DDS_RETCODE_ERROR);
    }
    if (status == Status::ok || status == Status::timeout) {
        return to_return_code(status);
    }
    return operation.failed("writing", to_return_code(status));
}

/// Fills the engine's buffer with a payload that exists, then gives up the lock that protected it:
/// a reader of this process may be served on this thread, and its listener may write.
bool copy_and_unlock(std::span<const std::byte> payload, std::span<std::byte> buffer,
                     std::unique_lock<std::mutex>& lock) {
    std::copy(payload.begin(), payload.end(), buffer.begin());
    lock.unlock();
    return true;
}

}  // namespace

DDS_ReturnCode_t DataWriter::find_instance(const Operation& operation, const void* sample,
                                           const DDS_InstanceHandle_t& handle,
                                           engine::KeyHash& instance) {
    if (!endpoint_.codec().key_hash(sample, instance)) {
        return operation.failed("computing the key hash", DDS_RETCODE_ERROR);
    }
    const bool given = handle.isValid != DDS_BOOLEAN_FALSE;
    if (given && (!endpoint_.type().keyed() || to_key_hash(handle) != instance)) {
        return operation.bad_parameter("handle");
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DataWriter::write(const Operation& operation, const void* sample,
                                   const DDS_WriteParams_t* params) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    const DDS_WriteParams_t& given = params != nullptr ? *params : DDS_WRITEPARAMS_DEFAULT;
    const std::optional<engine::Nanoseconds> timestamp = to_timestamp(given.source_timestamp);
    if (!timestamp) {
        return operation.bad_parameter("source_timestamp");
    }
    auto lock = endpoint_.lock();
    engine::KeyHash instance;
    const DDS_ReturnCode_t found = find_instance(operation, sample, given.handle, instance);
    if (found != DDS_RETCODE_OK) {
        return found;
    }
    const std::size_t size = endpoint_.codec().encoded_size(sample);
    bool encoded = false;
    if (size < QEL_CDR_ENCAPSULATION_HEADER_SIZE) {
        return written(operation, Status::bad_parameter, encoded);
    }
    const auto encode = [&](std::span<std::byte> buffer) {
        encoded = endpoint_.codec().encode(sample, buffer);
        lock.unlock();
        return encoded;
    };
    const Status status =
        engine::write(id, engine::WriteKind::data, instance, size, encode, *timestamp);
    return written(operation, status, encoded);
}

DDS_ReturnCode_t DataWriter::dispose(const Operation& operation, const void* sample,
                                     const DDS_WriteParams_t* params) {
    return write_key(operation, engine::WriteKind::dispose, sample, params);
}

DDS_ReturnCode_t DataWriter::unregister_instance(const Operation& operation, const void* sample,
                                                 const DDS_WriteParams_t* params) {
    return write_key(operation, engine::WriteKind::unregister, sample, params);
}

DDS_ReturnCode_t DataWriter::write_key(const Operation& operation, engine::WriteKind kind,
                                       const void* sample, const DDS_WriteParams_t* params) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    const DDS_WriteParams_t& given = params != nullptr ? *params : DDS_WRITEPARAMS_DEFAULT;
    const std::optional<engine::Nanoseconds> timestamp = to_timestamp(given.source_timestamp);
    if (!timestamp) {
        return operation.bad_parameter("source_timestamp");
    }
    if (sample == nullptr) {
        return write_key_of_handle(operation, kind, given.handle, *timestamp);
    }
    auto lock = endpoint_.lock();
    engine::KeyHash instance;
    const DDS_ReturnCode_t found = find_instance(operation, sample, given.handle, instance);
    if (found != DDS_RETCODE_OK) {
        return found;
    }
    const bool must_be_known = kind == engine::WriteKind::unregister && endpoint_.type().keyed();
    if (must_be_known && !engine::knows_instance(id, instance)) {
        return operation.precondition_not_met("the instance is registered");
    }
    const std::span<const std::byte> key = endpoint_.codec().encode_key(sample);
    if (key.empty()) {
        return operation.failed("encoding the key", DDS_RETCODE_ERROR);
    }
    const auto copy = [&](std::span<std::byte> buffer) {
        return copy_and_unlock(key, buffer, lock);
    };
    return written(operation, engine::write(id, kind, instance, key.size(), copy, *timestamp),
                   true);
}

DDS_ReturnCode_t DataWriter::write_key_of_handle(const Operation& operation, engine::WriteKind kind,
                                                 const DDS_InstanceHandle_t& handle,
                                                 engine::Nanoseconds timestamp) {
    const engine::EntityId id = engine_id();
    const std::optional<engine::KeyHash> instance = to_key_hash(handle);
    if (!instance) {
        return operation.bad_parameter("sample");
    }
    engine::Payload key;
    if (engine::get_key(id, *instance, key) != Status::ok || key.bytes().empty()) {
        return operation.bad_parameter("handle");
    }
    const auto copy = [&](std::span<std::byte> buffer) {
        std::copy(key.bytes().begin(), key.bytes().end(), buffer.begin());
        return true;
    };
    return written(operation,
                   engine::write(id, kind, *instance, key.bytes().size(), copy, timestamp), true);
}

DDS_InstanceHandle_t DataWriter::register_instance(const Operation& operation, const void* sample,
                                                   const DDS_WriteParams_t* params) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity || !endpoint_.type().keyed()) {
        return DDS_HANDLE_NIL;
    }
    const DDS_WriteParams_t& given = params != nullptr ? *params : DDS_WRITEPARAMS_DEFAULT;
    auto lock = endpoint_.lock();
    engine::KeyHash instance;
    if (find_instance(operation, sample, given.handle, instance) != DDS_RETCODE_OK) {
        return DDS_HANDLE_NIL;
    }
    const std::span<const std::byte> key = endpoint_.codec().encode_key(sample);
    if (key.empty()) {
        static_cast<void>(operation.failed("encoding the key", DDS_RETCODE_ERROR));
        return DDS_HANDLE_NIL;
    }
    const auto copy = [&](std::span<std::byte> buffer) {
        return copy_and_unlock(key, buffer, lock);
    };
    const Status status = engine::register_instance(id, instance, key.size(), copy);
    if (status != Status::ok) {
        static_cast<void>(operation.failed("registering", to_return_code(status)));
        return DDS_HANDLE_NIL;
    }
    return to_handle(instance);
}

}  // namespace pexa::dds
