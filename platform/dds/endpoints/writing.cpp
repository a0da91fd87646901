#include <algorithm>

#include "platform/dds/endpoints/writer.hpp"
#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

namespace {

/// @return the result of a write that the engine has answered. A time-out is usual and not
/// reported.
Status written(const Operation& operation, Status status, bool encoded) {
    if (!encoded && status == Status::bad_parameter) {
        return operation.failed("encoding the sample", Status::error);
    }
    if (status == Status::ok || status == Status::timeout) {
        return status;
    }
    return operation.failed("writing", status);
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

Result<DataWriter::Request> DataWriter::to_request(const Operation& operation,
                                                   const DDS_WriteParams_t* params) const {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return Status::not_enabled;
    }
    const DDS_WriteParams_t& given = params != nullptr ? *params : DDS_WRITEPARAMS_DEFAULT;
    const std::optional<engine::Nanoseconds> timestamp = to_timestamp(given.source_timestamp);
    if (!timestamp) {
        return operation.bad_parameter("source_timestamp");
    }
    return Request{id, &given.handle, *timestamp};
}

Status DataWriter::find_instance(const Operation& operation, const void* sample,
                                 const DDS_InstanceHandle_t& handle, engine::KeyHash& instance) {
    if (typed().codec().key_hash(sample, instance) != Status::ok) {
        return operation.failed("computing the key hash", Status::error);
    }
    const bool given = handle.isValid != DDS_BOOLEAN_FALSE;
    if (given && (!typed().type().keyed() || to_key_hash(handle) != instance)) {
        return operation.bad_parameter("handle");
    }
    return Status::ok;
}

Status DataWriter::write(const Operation& operation, const void* sample,
                         const DDS_WriteParams_t* params) {
    const Result<Request> checked = to_request(operation, params);
    if (!checked) {
        return checked.status();
    }
    const Request& request = checked.value();
    auto lock = typed().lock();
    engine::KeyHash instance;
    const Status found = find_instance(operation, sample, *request.handle, instance);
    if (found != Status::ok) {
        return found;
    }
    const std::size_t size = typed().codec().encoded_size(sample);
    bool encoded = false;
    if (size < QEL_CDR_ENCAPSULATION_HEADER_SIZE) {
        return written(operation, Status::bad_parameter, encoded);
    }
    const auto encode = [&](std::span<std::byte> buffer) {
        encoded = typed().codec().encode(sample, buffer) == Status::ok;
        lock.unlock();
        return encoded;
    };
    const Status status = engine::write(request.writer, engine::WriteKind::data, instance, size,
                                        encode, request.timestamp);
    return written(operation, status, encoded);
}

Status DataWriter::dispose(const Operation& operation, const void* sample,
                           const DDS_WriteParams_t* params) {
    return write_key(operation, engine::WriteKind::dispose, sample, params);
}

Status DataWriter::unregister_instance(const Operation& operation, const void* sample,
                                       const DDS_WriteParams_t* params) {
    return write_key(operation, engine::WriteKind::unregister, sample, params);
}

Status DataWriter::write_key(const Operation& operation, engine::WriteKind kind, const void* sample,
                             const DDS_WriteParams_t* params) {
    const Result<Request> checked = to_request(operation, params);
    if (!checked) {
        return checked.status();
    }
    const Request& request = checked.value();
    if (sample == nullptr) {
        return write_key_of_handle(operation, kind, request);
    }
    auto lock = typed().lock();
    engine::KeyHash instance;
    const Status found = find_instance(operation, sample, *request.handle, instance);
    if (found != Status::ok) {
        return found;
    }
    const bool must_be_known = kind == engine::WriteKind::unregister && typed().type().keyed();
    if (must_be_known && !engine::knows_instance(request.writer, instance)) {
        return operation.precondition_not_met("the instance is registered");
    }
    const std::span<const std::byte> key = typed().codec().encode_key(sample);
    if (key.empty()) {
        return operation.failed("encoding the key", Status::error);
    }
    const auto copy = [&](std::span<std::byte> buffer) {
        return copy_and_unlock(key, buffer, lock);
    };
    return written(
        operation,
        engine::write(request.writer, kind, instance, key.size(), copy, request.timestamp), true);
}

Status DataWriter::write_key_of_handle(const Operation& operation, engine::WriteKind kind,
                                       const Request& request) const {
    const std::optional<engine::KeyHash> instance = to_key_hash(*request.handle);
    if (!instance) {
        return operation.bad_parameter("sample");
    }
    engine::Payload key;
    if (engine::get_key(request.writer, *instance, key) != Status::ok || key.bytes().empty()) {
        return operation.bad_parameter("handle");
    }
    const auto copy = [&](std::span<std::byte> buffer) {
        std::copy(key.bytes().begin(), key.bytes().end(), buffer.begin());
        return true;
    };
    return written(
        operation,
        engine::write(request.writer, kind, *instance, key.bytes().size(), copy, request.timestamp),
        true);
}

Result<DDS_InstanceHandle_t> DataWriter::register_instance(const Operation& operation,
                                                           const void* sample,
                                                           const DDS_WriteParams_t* params) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity || !typed().type().keyed()) {
        return DDS_HANDLE_NIL;
    }
    const DDS_WriteParams_t& given = params != nullptr ? *params : DDS_WRITEPARAMS_DEFAULT;
    auto lock = typed().lock();
    engine::KeyHash instance;
    const Status found = find_instance(operation, sample, given.handle, instance);
    if (found != Status::ok) {
        return found;
    }
    const std::span<const std::byte> key = typed().codec().encode_key(sample);
    if (key.empty()) {
        return operation.failed("encoding the key", Status::error);
    }
    const auto copy = [&](std::span<std::byte> buffer) {
        return copy_and_unlock(key, buffer, lock);
    };
    const Status status = engine::register_instance(id, instance, key.size(), copy);
    if (status != Status::ok) {
        return operation.failed("registering", status);
    }
    return to_handle(instance);
}

Status DataWriter::flush() const {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return Status::not_enabled;
    }
    engine::flush(id);
    return Status::ok;
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

const DDS_WriteParams_t DDS_WRITEPARAMS_DEFAULT = {{{{0}, 0}, 0}, {-1, 0xffffffffu}};

DDS_ReturnCode_t DDS_DataWriter_write_untypedI(DDS_DataWriter* self, const void* sample,
                                               const DDS_WriteParams_t* params) {
    return dds::call(__func__, self, &dds::DataWriter::write, dds::required("sample", sample),
                     params);
}

DDS_ReturnCode_t DDS_DataWriter_dispose_untypedI(DDS_DataWriter* self, const void* sample,
                                                 const DDS_WriteParams_t* params) {
    return dds::call(__func__, self, &dds::DataWriter::dispose, sample, params);
}

DDS_InstanceHandle_t DDS_DataWriter_register_instance_untypedI(DDS_DataWriter* self,
                                                               const void* sample,
                                                               const DDS_WriteParams_t* params) {
    return dds::call(__func__, self, &dds::DataWriter::register_instance,
                     dds::required("sample", sample), params);
}

DDS_ReturnCode_t DDS_DataWriter_unregister_instance_untypedI(DDS_DataWriter* self,
                                                             const void* sample,
                                                             const DDS_WriteParams_t* params) {
    return dds::call(__func__, self, &dds::DataWriter::unregister_instance, sample, params);
}

DDS_ReturnCode_t DDS_DataWriter_flush(DDS_DataWriter* self) {
    return dds::call(__func__, self, &dds::DataWriter::flush);
}
