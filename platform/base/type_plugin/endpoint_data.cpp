#include "pexa/buffer_pool.h"
#include "pexa/osapi.h"
#include "pexa/type_plugin.h"
#include "platform/base/memory/heap_object.hpp"
#include "platform/base/type_plugin/object_pool.hpp"

using pexa::base::heap_delete;
using pexa::base::heap_new;
using pexa::base::ObjectPool;

namespace {

// A participant has nothing to keep, but NULL would mean failure.
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
        MOSKFastBufferPool_delete(writer_pool);
    }
    EndpointData(const EndpointData&) = delete;
    EndpointData& operator=(const EndpointData&) = delete;

    [[nodiscard]] bool fill(DDS_Long initial_samples);
    [[nodiscard]] bool create_md5_stream(size_t size);
    [[nodiscard]] bool create_writer_pool(size_t size);

    TULVCreateData create_sample;
    TULVDestroyData destroy_sample;
    ObjectPool samples;
    ObjectPool keys;
    void* temporary_sample = nullptr;
    char* md5_buffer = nullptr;
    QELCdrStream md5_stream{};
    DDS_UnsignedLong max_size_serialized_sample = 0;
    MOSKFastBufferPool* writer_pool = nullptr;
    size_t writer_buffer_size = 0;
};

EndpointData& data_of(TULVEndpointData endpointData) {
    return *static_cast<EndpointData*>(endpointData);
}

bool EndpointData::fill(DDS_Long initial_samples) {
    temporary_sample = create_sample();
    return temporary_sample != nullptr && samples.fill(initial_samples) && keys.fill(1);
}

bool EndpointData::create_md5_stream(size_t size) {
    auto* buffer = static_cast<char*>(QELOsapiHeap_allocateBytes(size));
    if (buffer == nullptr) {
        return false;
    }
    QELOsapiHeap_freeBytes(md5_buffer);
    md5_buffer = buffer;
    QELCdrStream_init(&md5_stream, buffer, size);
    return true;
}

bool EndpointData::create_writer_pool(size_t size) {
    MOSKFastBufferPool* pool =
        MOSKFastBufferPool_new(size, buffer_alignment, &writer_pool_property);
    if (pool == nullptr) {
        return false;
    }
    MOSKFastBufferPool_delete(writer_pool);
    writer_pool = pool;
    writer_buffer_size = size;
    return true;
}

}  // namespace

TULVParticipantData TULVTypePluginDefaultParticipantData_new(void) {
    return heap_new<ParticipantData>();
}

void TULVTypePluginDefaultParticipantData_delete(TULVParticipantData participantData) {
    heap_delete(static_cast<ParticipantData*>(participantData));
}

TULVEndpointData TULVTypePluginDefaultEndpointData_new(TULVParticipantData /*participantData*/,
                                                       const TULVEndpointInfo* info,
                                                       TULVCreateData createSample,
                                                       TULVDestroyData destroySample,
                                                       TULVCreateData createKey,
                                                       TULVDestroyData destroyKey) {
    if (info == nullptr || createSample == nullptr || destroySample == nullptr) {
        return nullptr;
    }
    auto* data = heap_new<EndpointData>(info->maximalSamples, createSample, destroySample,
                                        createKey, destroyKey);
    if (data != nullptr && !data->fill(info->initialSamples)) {
        heap_delete(data);
        return nullptr;
    }
    return data;
}

void TULVTypePluginDefaultEndpointData_delete(TULVEndpointData endpointData) {
    heap_delete(static_cast<EndpointData*>(endpointData));
}

DDS_Boolean TULVTypePluginDefaultEndpointData_createMD5Stream(TULVEndpointData endpointData,
                                                              DDS_UnsignedLong maximumKeySize) {
    return data_of(endpointData).create_md5_stream(maximumKeySize) ? DDS_BOOLEAN_TRUE
                                                                   : DDS_BOOLEAN_FALSE;
}

QELCdrStream* TULVTypePluginDefaultEndpointData_getMD5Stream(TULVEndpointData endpointData) {
    EndpointData& data = data_of(endpointData);
    return data.md5_buffer == nullptr ? nullptr : &data.md5_stream;
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
    const DDS_UnsignedLong size =
        maxSize(endpointData, DDS_BOOLEAN_TRUE, QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE, 0);
    return data_of(endpointData).create_writer_pool(size) ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

void* TULVTypePluginDefaultEndpointData_createSample(TULVEndpointData endpointData) {
    return data_of(endpointData).create_sample();
}

void TULVTypePluginDefaultEndpointData_deleteSample(TULVEndpointData endpointData, void* sample) {
    if (sample != nullptr) {
        data_of(endpointData).destroy_sample(sample);
    }
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
    EndpointData& data = data_of(endpointData);
    auto* buffer = static_cast<char*>(MOSKFastBufferPool_getBuffer(data.writer_pool));
    *size = buffer == nullptr ? 0 : data.writer_buffer_size;
    return buffer;
}

void TULVTypePluginDefaultEndpointData_returnBuffer(TULVEndpointData endpointData, char* buffer) {
    MOSKFastBufferPool_returnBuffer(data_of(endpointData).writer_pool, buffer);
}
