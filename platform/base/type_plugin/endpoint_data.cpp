#include "pexa/osapi.h"
#include "pexa/type_plugin.h"
#include "platform/base/cdr/stream.hpp"
#include "platform/base/memory/buffer_pool.hpp"
#include "platform/base/memory/heap_object.hpp"
#include "platform/base/result.hpp"
#include "platform/base/type_plugin/object_pool.hpp"

namespace pexa::base {

namespace {

// A type keeps nothing for a participant, but NULL would mean failure.
struct ParticipantData {
    char nothing;
};

constexpr size_t buffer_alignment = 8;
constexpr MOSKFastBufferPoolProperty writer_pool_property = {1, DDS_LENGTH_UNLIMITED,
                                                             DDS_LENGTH_UNLIMITED, 0};

struct EndpointData {
    EndpointData(DDS_Long maximal_samples, TULVCreateData its_create_sample,
                 TULVDestroyData its_destroy_sample, TULVCreateData create_key,
                 TULVDestroyData destroy_key)
        : create_sample(its_create_sample),
          destroy_sample(its_destroy_sample),
          samples(its_create_sample, its_destroy_sample, maximal_samples),
          keys(create_key, destroy_key, DDS_LENGTH_UNLIMITED) {}
    ~EndpointData() {
        if (temporary_sample != nullptr) {
            destroy_sample(temporary_sample);
        }
        QELOsapiHeap_freeBytes(md5_buffer);
        heap_delete(writer_pool);
    }
    EndpointData(const EndpointData&) = delete;
    EndpointData& operator=(const EndpointData&) = delete;

    Status fill(DDS_Long initial_samples);
    Status create_md5_stream(size_t size);
    Status create_writer_pool(size_t size);
    QELCdrStream* get_md5_stream() { return md5_buffer == nullptr ? nullptr : &md5_stream; }
    /// @param size set to the bytes of the buffer, 0 without.
    char* get_buffer(size_t* size) const;

    TULVCreateData create_sample;
    TULVDestroyData destroy_sample;
    ObjectPool samples;
    ObjectPool keys;
    void* temporary_sample = nullptr;
    char* md5_buffer = nullptr;
    QELCdrStream md5_stream{};
    DDS_UnsignedLong max_size_serialized_sample = 0;
    BufferPool* writer_pool = nullptr;
    size_t writer_buffer_size = 0;
};

EndpointData& data_of(TULVEndpointData endpointData) {
    return *static_cast<EndpointData*>(endpointData);
}

Status EndpointData::fill(DDS_Long initial_samples) {
    temporary_sample = create_sample();
    const bool filled = temporary_sample != nullptr &&
                        samples.fill(initial_samples) == Status::ok && keys.fill(1) == Status::ok;
    return filled ? Status::ok : Status::out_of_resources;
}

Status EndpointData::create_md5_stream(size_t size) {
    auto* buffer = static_cast<char*>(QELOsapiHeap_allocateBytes(size));
    if (buffer == nullptr) {
        return Status::out_of_resources;
    }
    QELOsapiHeap_freeBytes(md5_buffer);
    md5_buffer = buffer;
    init_stream(&md5_stream, buffer, size);
    return Status::ok;
}

Status EndpointData::create_writer_pool(size_t size) {
    BufferPool* pool = BufferPool::create(size, buffer_alignment, &writer_pool_property, {});
    if (pool == nullptr) {
        return Status::out_of_resources;
    }
    heap_delete(writer_pool);
    writer_pool = pool;
    writer_buffer_size = size;
    return Status::ok;
}

char* EndpointData::get_buffer(size_t* size) const {
    auto* buffer = static_cast<char*>(base::get_buffer(writer_pool));
    *size = buffer == nullptr ? 0 : writer_buffer_size;
    return buffer;
}

EndpointData* new_endpoint_data(const TULVEndpointInfo* info, TULVCreateData create_sample,
                                TULVDestroyData destroy_sample, TULVCreateData create_key,
                                TULVDestroyData destroy_key) {
    if (info == nullptr || create_sample == nullptr || destroy_sample == nullptr) {
        return nullptr;
    }
    auto* data = heap_new<EndpointData>(info->maximalSamples, create_sample, destroy_sample,
                                        create_key, destroy_key);
    if (data != nullptr && data->fill(info->initialSamples) != Status::ok) {
        heap_delete(data);
        return nullptr;
    }
    return data;
}

void delete_sample(const EndpointData& data, void* sample) {
    if (sample != nullptr) {
        data.destroy_sample(sample);
    }
}

Status create_writer_pool(TULVEndpointData endpoint_data, TULVSerializedSize max_size) {
    return data_of(endpoint_data)
        .create_writer_pool(
            max_size(endpoint_data, DDS_BOOLEAN_TRUE, QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE, 0));
}

}  // namespace

}  // namespace pexa::base

using pexa::base::data_of;

TULVParticipantData TULVTypePluginDefaultParticipantData_new(void) {
    return pexa::base::heap_new<pexa::base::ParticipantData>();
}

void TULVTypePluginDefaultParticipantData_delete(TULVParticipantData participantData) {
    pexa::base::heap_delete(static_cast<pexa::base::ParticipantData*>(participantData));
}

TULVEndpointData TULVTypePluginDefaultEndpointData_new(TULVParticipantData /*participantData*/,
                                                       const TULVEndpointInfo* info,
                                                       TULVCreateData createSample,
                                                       TULVDestroyData destroySample,
                                                       TULVCreateData createKey,
                                                       TULVDestroyData destroyKey) {
    return pexa::base::new_endpoint_data(info, createSample, destroySample, createKey, destroyKey);
}

void TULVTypePluginDefaultEndpointData_delete(TULVEndpointData endpointData) {
    pexa::base::heap_delete(static_cast<pexa::base::EndpointData*>(endpointData));
}

DDS_Boolean TULVTypePluginDefaultEndpointData_createMD5Stream(TULVEndpointData endpointData,
                                                              DDS_UnsignedLong maximumKeySize) {
    return pexa::base::to_boolean(data_of(endpointData).create_md5_stream(maximumKeySize));
}

QELCdrStream* TULVTypePluginDefaultEndpointData_getMD5Stream(TULVEndpointData endpointData) {
    return data_of(endpointData).get_md5_stream();
}

void TULVTypePluginDefaultEndpointData_setMaxSizeSerializedSample(TULVEndpointData endpointData,
                                                                  DDS_UnsignedLong size) {
    data_of(endpointData).max_size_serialized_sample = size;
}

DDS_UnsignedLong TULVTypePluginDefaultEndpointData_getMaxSizeSerializedSample(
    TULVEndpointData endpointData) {
    return data_of(endpointData).max_size_serialized_sample;
}

DDS_Boolean TULVTypePluginDefaultEndpointData_createWriterPool(TULVEndpointData endpointData,
                                                               TULVSerializedSize maxSize) {
    return pexa::base::to_boolean(pexa::base::create_writer_pool(endpointData, maxSize));
}

void* TULVTypePluginDefaultEndpointData_createSample(TULVEndpointData endpointData) {
    return data_of(endpointData).create_sample();
}

void TULVTypePluginDefaultEndpointData_deleteSample(TULVEndpointData endpointData, void* sample) {
    pexa::base::delete_sample(data_of(endpointData), sample);
}

void* TULVTypePluginDefaultEndpointData_getSample(TULVEndpointData endpointData,
                                                  void** /*handle*/) {
    return data_of(endpointData).samples.get();
}

void TULVTypePluginDefaultEndpointData_returnSample(TULVEndpointData endpointData, void* sample,
                                                    void* /*handle*/) {
    data_of(endpointData).samples.give_back(sample);
}

void* TULVTypePluginDefaultEndpointData_getTempSample(TULVEndpointData endpointData) {
    return data_of(endpointData).temporary_sample;
}

void* TULVTypePluginDefaultEndpointData_getKey(TULVEndpointData endpointData, void** /*handle*/) {
    return data_of(endpointData).keys.get();
}

void TULVTypePluginDefaultEndpointData_returnKey(TULVEndpointData endpointData, void* key,
                                                 void* /*handle*/) {
    data_of(endpointData).keys.give_back(key);
}

char* TULVTypePluginDefaultEndpointData_getBuffer(TULVEndpointData endpointData, size_t* size) {
    return data_of(endpointData).get_buffer(size);
}

void TULVTypePluginDefaultEndpointData_returnBuffer(TULVEndpointData endpointData, char* buffer) {
    pexa::base::return_buffer(data_of(endpointData).writer_pool, buffer);
}
