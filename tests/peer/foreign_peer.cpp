// A reader and commander of loggers that shares no code with them: Fast DDS, and payloads as they
// come. It prints the samples that it receives and sends the requests that it reads, one a line.
//
//   usage: foreign_peer DOMAIN [--carried-keys | FOLDER]
//
//   With --carried-keys it computes no key hash for samples that come without one: KEY is then
//   ff…ff. With a FOLDER it joins with the credentials in it.
//
//   input     PAYLOAD                       sends a command request
//   output    TOPIC PUBLISHER NANOSECONDS KEY COMPUTED_KEY PAYLOAD
//               TOPIC          log, state or response
//               PUBLISHER      host and application id of the writer's participant
//               NANOSECONDS    source timestamp, since 1970-01-01 UTC
//               KEY            key hash of the instance as Fast DDS has it
//               COMPUTED_KEY   key hash by this program's own computation
//
// Payloads, with their encapsulation headers, and keys are in hexadecimal. The end of the input
// ends the program.

#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastrtps/utils/IPLocator.h>
#include <fastrtps/utils/md5.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/DomainParticipantFactory.hpp>
#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/DataReaderListener.hpp>
#include <fastdds/dds/subscriber/SampleInfo.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/topic/Topic.hpp>
#include <fastdds/dds/topic/TopicDataType.hpp>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace {

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;

using Bytes = std::vector<std::uint8_t>;

struct TopicDescription {
    const char* record;  ///< the beginning of the lines of its samples
    const char* name;
    const char* type_name;
    std::size_t key_members;  ///< how many, from the first on
};

constexpr TopicDescription log_topic{"log", "qel/orvane", "com::qel::kx::LogMessage", 2};
constexpr TopicDescription state_topic{"state", "qel/orvane/administration/state",
                                       "com::qel::kx::admin::State", 1};
constexpr TopicDescription request_topic{"request", "qel/orvane/administration/command_request",
                                         "com::qel::kx::admin::CommandRequest", 0};
constexpr TopicDescription response_topic{"response", "qel/orvane/administration/command_response",
                                          "com::qel::kx::admin::CommandResponse", 1};

/// The digest of the key members in big-endian order. They consist of numbers of four bytes.
Bytes key_hash(const TopicDescription& topic, const Bytes& payload) {
    Bytes key;
    std::size_t position = 4;
    for (std::size_t member = 0; member < topic.key_members; ++member) {
        const std::size_t size = payload.at(position + 2);
        key.insert(key.end(), {payload.at(position + 1), payload.at(position), 0,
                               static_cast<std::uint8_t>(size)});
        position += 4;
        for (std::size_t word = 0; word < size; word += 4) {
            for (std::size_t byte = 4; byte-- > 0;) {
                key.push_back(payload.at(position + word + byte));
            }
        }
        position += size;
    }
    key.insert(key.end(), {0x7F, 0x02, 0, 0});
    MD5 md5;
    md5.init();
    md5.update(key.data(), static_cast<MD5::size_type>(key.size()));
    md5.finalize();
    return {std::begin(md5.digest), std::end(md5.digest)};
}

/// A data type of Fast DDS whose samples, of the class Bytes, are their payloads.
class RawType : public fast::TopicDataType {
    using Payload = rtps::SerializedPayload_t;

public:
    /// @param computes_keys whether a sample that carries no key hash gets one from its payload
    RawType(const TopicDescription& topic, bool computes_keys)
        : topic_{topic}, computes_keys_{computes_keys} {
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
    bool getKey(void* data, rtps::InstanceHandle_t* handle, bool /*force_md5*/) override {
        const Bytes key = computes_keys_ ? key_hash(topic_, bytes_of(data)) : Bytes(16, 0xFF);
        std::copy(key.begin(), key.end(), &handle->value[0]);
        return true;
    }

private:
    static Bytes& bytes_of(void* data) { return *static_cast<Bytes*>(data); }

    const TopicDescription& topic_;
    bool computes_keys_;
};

std::string hexadecimal(const std::uint8_t* bytes, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
        text += digits;
    }
    return text;
}

std::string nanoseconds(const rtps::Time_t& time) {
    // By the fraction as it came, rounded to the nearest.
    const std::uint64_t fraction =
        (std::uint64_t{time.fraction()} * 1'000'000'000 + (std::uint64_t{1} << 31)) >> 32;
    return std::to_string(time.seconds() * std::int64_t{1'000'000'000} +
                          static_cast<std::int64_t>(fraction));
}

class Printer : public fast::DataReaderListener {
public:
    explicit Printer(const TopicDescription& topic) : topic_{topic} {}

    void on_data_available(fast::DataReader* reader) override {
        static std::mutex mutex;
        Bytes payload;
        fast::SampleInfo info;
        while (reader->take_next_sample(&payload, &info) == ReturnCode_t::RETCODE_OK) {
            if (info.valid_data) {
                const std::uint8_t* prefix = info.sample_identity.writer_guid().guidPrefix.value;
                const std::lock_guard lock{mutex};
                std::cout << topic_.record << ' ' << hexadecimal(prefix, 4) << ':'
                          << hexadecimal(prefix + 4, 4) << ' ' << nanoseconds(info.source_timestamp)
                          << ' ' << hexadecimal(info.instance_handle.value, 16) << ' '
                          << hexadecimal(key_hash(topic_, payload).data(), 16) << ' '
                          << hexadecimal(payload.data(), payload.size()) << std::endl;
            }
        }
    }

private:
    const TopicDescription& topic_;
};

/// A participant that meets those on the loopback interface that use no multicast either.
fast::DomainParticipantQos loopback_only() {
    rtps::Locator_t loopback;
    rtps::IPLocator::createLocator(LOCATOR_KIND_UDPv4, "127.0.0.1", 0, loopback);
    const auto udp = std::make_shared<eprosima::fastdds::rtps::UDPv4TransportDescriptor>();
    udp->interfaceWhiteList = {"127.0.0.1"};
    fast::DomainParticipantQos qos;
    qos.transport().use_builtin_transports = false;
    qos.transport().user_transports.push_back(udp);
    qos.wire_protocol().builtin.metatrafficUnicastLocatorList.push_back(loopback);
    qos.wire_protocol().builtin.initialPeersList.push_back(loopback);
    // As often as those others announce themselves.
    qos.wire_protocol().builtin.discovery_config.leaseDuration_announcementperiod = {1, 0};
    return qos;
}

/// Makes it a participant with the credentials that `orvane keys` has put into a folder.
void add_credentials(fast::DomainParticipantQos& qos, const std::string& folder) {
    const auto set = [&](const std::string& name, const std::string& value) {
        qos.properties().properties().emplace_back("dds.sec." + name, value);
    };
    const auto set_file = [&](const std::string& name, const std::string& file) {
        set(name, "file://" + folder + '/' + file);
    };
    set("auth.plugin", "builtin.PKI-DH");
    set_file("auth.builtin.PKI-DH.identity_ca", "authority.pem");
    set_file("auth.builtin.PKI-DH.identity_certificate", "certificate.pem");
    set_file("auth.builtin.PKI-DH.identity_crl", "revoked.pem");
    set_file("auth.builtin.PKI-DH.private_key", "key.pem");
    set("access.plugin", "builtin.Access-Permissions");
    set_file("access.builtin.Access-Permissions.permissions_ca", "permissions_authority.pem");
    set_file("access.builtin.Access-Permissions.governance", "governance.p7s");
    set_file("access.builtin.Access-Permissions.permissions", "permissions.p7s");
    set("crypto.plugin", "builtin.AES-GCM-GMAC");
}

template <typename Qos>
Qos keep_all(fast::DurabilityQosPolicyKind durability) {
    Qos qos;
    qos.reliability().kind = fast::RELIABLE_RELIABILITY_QOS;
    qos.durability().kind = durability;
    qos.history().kind = fast::KEEP_ALL_HISTORY_QOS;
    return qos;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string option = argc < 3 ? "" : argv[2];
    const bool computes_keys = option != "--carried-keys";
    fast::DomainParticipantQos qos = loopback_only();
    if (computes_keys && !option.empty()) {
        add_credentials(qos, option);
    }
    fast::DomainParticipantFactory* factory = fast::DomainParticipantFactory::get_instance();
    fast::DomainParticipant* participant =
        argc < 2
            ? nullptr
            : factory->create_participant(static_cast<std::uint32_t>(std::stoul(argv[1])), qos);
    if (participant == nullptr) {
        std::cerr << "foreign_peer: could not start; usage: foreign_peer DOMAIN "
                     "[--carried-keys | FOLDER]\n";
        return EXIT_FAILURE;
    }
    const auto topic = [&](const TopicDescription& description) {
        const fast::TypeSupport type{new RawType{description, computes_keys}};
        type.register_type(participant);
        return participant->create_topic(description.name, description.type_name,
                                         fast::TOPIC_QOS_DEFAULT);
    };
    fast::Subscriber* subscriber = participant->create_subscriber(fast::SUBSCRIBER_QOS_DEFAULT);
    Printer printers[] = {Printer{log_topic}, Printer{state_topic}, Printer{response_topic}};
    const auto read = [&](const TopicDescription& description, Printer& printer,
                          fast::DurabilityQosPolicyKind durability) {
        subscriber->create_datareader(topic(description), keep_all<fast::DataReaderQos>(durability),
                                      &printer);
    };
    read(log_topic, printers[0], fast::TRANSIENT_LOCAL_DURABILITY_QOS);
    read(state_topic, printers[1], fast::TRANSIENT_LOCAL_DURABILITY_QOS);
    read(response_topic, printers[2], fast::VOLATILE_DURABILITY_QOS);
    fast::DataWriter* requests =
        participant->create_publisher(fast::PUBLISHER_QOS_DEFAULT)
            ->create_datawriter(topic(request_topic),
                                keep_all<fast::DataWriterQos>(fast::VOLATILE_DURABILITY_QOS));
    for (std::string line; std::getline(std::cin, line);) {
        Bytes request;
        for (std::size_t i = 0; i + 1 < line.size(); i += 2) {
            request.push_back(
                static_cast<std::uint8_t>(std::stoul(line.substr(i, 2), nullptr, 16)));
        }
        requests->write(&request);
    }
    participant->delete_contained_entities();
    factory->delete_participant(participant);
    return EXIT_SUCCESS;
}
