/// @file raw_type.hpp
/// @brief A data type of Fast DDS whose samples are the bytes of their payloads.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <fastdds/dds/topic/TopicDataType.hpp>
#include <functional>

#include "tests/peer/samples.hpp"

namespace foreign {

/// Where the key hash of a received sample comes from.
enum class KeySource : std::uint8_t {
    computed,  ///< from the payload, unless the sample carries one
    carried    ///< from nowhere else: a sample without one counts as of no logger's instance
};

/// Samples are objects of the class Bytes, the encapsulation header included.
class RawType : public eprosima::fastdds::dds::TopicDataType {
    using Payload = eprosima::fastrtps::rtps::SerializedPayload_t;

public:
    RawType(const TopicDescription& topic, KeySource keys) : topic_{topic}, keys_{keys} {
        setName(topic.type_name);
        m_typeSize = 8192;  // more than the largest sample of any topic
        m_isGetKeyDefined = topic.key_members > 0;
        auto_fill_type_object(false);
        auto_fill_type_information(false);
    }

    bool serialize(void* data, Payload* payload) override {
        payload->length = static_cast<std::uint32_t>(bytes_of(data).size());
        std::copy(bytes_of(data).begin(), bytes_of(data).end(), payload->data);
        return true;
    }
    bool deserialize(Payload* payload, void* data) override {
        bytes_of(data).assign(payload->data, payload->data + payload->length);
        return true;
    }
    std::function<std::uint32_t()> getSerializedSizeProvider(void* data) override {
        return [data] { return static_cast<std::uint32_t>(bytes_of(data).size()); };
    }
    void* createData() override { return new Bytes; }
    void deleteData(void* data) override { delete static_cast<Bytes*>(data); }

    bool getKey(void* data, eprosima::fastrtps::rtps::InstanceHandle_t* handle,
                bool /*force_md5*/) override {
        if (keys_ == KeySource::carried) {
            std::fill_n(&handle->value[0], std::tuple_size_v<KeyHash>, std::uint8_t{0xFF});
            return true;
        }
        try {
            const KeyHash hash = decode(topic_, bytes_of(data)).key_hash;
            std::copy(hash.begin(), hash.end(), &handle->value[0]);
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }

private:
    static Bytes& bytes_of(void* data) { return *static_cast<Bytes*>(data); }

    const TopicDescription& topic_;
    KeySource keys_;
};

}  // namespace foreign
