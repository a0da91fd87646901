// A viewer and commander of loggers that shares no code with them: Fast DDS and an encoding of its
// own. It prints the samples that it receives and sends the requests that it reads, one a line.
//
//   usage: foreign_peer DOMAIN [--carried-keys]
//
//   With --carried-keys it computes no key hash for samples that come without one: @key is then
//   ff…ff.
//
//   input     NAME=VALUE …              sends a command request; samples.hpp explains the words
//   output    log, state or response, each followed by fields NAME=VALUE behind tabs:
//               @encapsulation   of the payload
//               @publisher       host and application id of the writer's participant
//               @nanoseconds     source timestamp, since 1970-01-01 UTC
//               @key             key hash of the instance as Fast DDS has it
//               @computed_key    key hash by this program's own computation
//               …                the members in the order in which they came
//             error, followed by the reason
//
// A control character or backslash within a field is printed as \xHH. The end of the input ends it.

#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastrtps/utils/IPLocator.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/DomainParticipantFactory.hpp>
#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/DataReaderListener.hpp>
#include <fastdds/dds/subscriber/SampleInfo.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/topic/Topic.hpp>
#include <iostream>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tests/peer/raw_type.hpp"
#include "tests/peer/samples.hpp"

namespace foreign {
namespace {

namespace dds = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;

void print_line(const std::string& line) {
    static std::mutex mutex;
    const std::lock_guard lock{mutex};
    std::cout << line << std::endl;
}

std::string hexadecimal(const std::uint8_t* bytes, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", bytes[i]);
        text += digits;
    }
    return text;
}

std::string printable(const std::string& text) {
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<std::uint8_t>(character);
        if (byte < 0x20 || byte == '\\') {
            result += "\\x" + hexadecimal(&byte, 1);
        } else {
            result += character;
        }
    }
    return result;
}

std::string nanoseconds(const rtps::Time_t& time) {
    // By the fraction as it came, rounded to the nearest.
    const std::uint64_t fraction =
        (std::uint64_t{time.fraction()} * 1'000'000'000 + (std::uint64_t{1} << 31)) >> 32;
    return std::to_string(time.seconds() * std::int64_t{1'000'000'000} +
                          static_cast<std::int64_t>(fraction));
}

std::string describe(const TopicDescription& topic, const Bytes& payload,
                     const dds::SampleInfo& info) {
    const Sample sample = decode(topic, payload);
    std::string line = topic.record;
    const auto add = [&](const std::string& name, const std::string& value) {
        line += '\t' + name + '=' + printable(value);
    };
    add("@encapsulation", std::to_string(sample.encapsulation));
    const std::uint8_t* prefix = info.sample_identity.writer_guid().guidPrefix.value;
    add("@publisher", hexadecimal(prefix, 4) + ':' + hexadecimal(prefix + 4, 4));
    add("@nanoseconds", nanoseconds(info.source_timestamp));
    add("@key", hexadecimal(info.instance_handle.value, sample.key_hash.size()));
    add("@computed_key", hexadecimal(sample.key_hash.data(), sample.key_hash.size()));
    for (const auto& [name, value] : sample.fields) {
        add(name, value);
    }
    return line;
}

class Printer : public dds::DataReaderListener {
public:
    explicit Printer(const TopicDescription& topic) : topic_{topic} {}

    void on_data_available(dds::DataReader* reader) override {
        Bytes payload;
        dds::SampleInfo info;
        while (reader->take_next_sample(&payload, &info) == ReturnCode_t::RETCODE_OK) {
            if (!info.valid_data) {
                continue;
            }
            try {
                print_line(describe(topic_, payload, info));
            } catch (const std::exception& error) {
                print_line(std::string{"error\t"} + topic_.record + " with " + error.what() + ": " +
                           hexadecimal(payload.data(), payload.size()));
            }
        }
    }

private:
    const TopicDescription& topic_;
};

/// A participant that meets those on the loopback interface that use no multicast either.
dds::DomainParticipantQos loopback_only() {
    rtps::Locator_t loopback;
    rtps::IPLocator::createLocator(LOCATOR_KIND_UDPv4, "127.0.0.1", 0, loopback);
    const auto udp = std::make_shared<eprosima::fastdds::rtps::UDPv4TransportDescriptor>();
    udp->interfaceWhiteList = {"127.0.0.1"};
    dds::DomainParticipantQos qos;
    qos.transport().use_builtin_transports = false;
    qos.transport().user_transports.push_back(udp);
    qos.wire_protocol().builtin.metatrafficUnicastLocatorList.push_back(loopback);
    qos.wire_protocol().builtin.initialPeersList.push_back(loopback);
    // As often as those others announce themselves.
    qos.wire_protocol().builtin.discovery_config.leaseDuration_announcementperiod = {1, 0};
    return qos;
}

class Peer {
public:
    explicit Peer(KeySource keys) : keys_{keys} {}
    ~Peer() {
        if (participant_ != nullptr) {
            participant_->delete_contained_entities();
            dds::DomainParticipantFactory::get_instance()->delete_participant(participant_);
        }
    }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    /// @return whether there is a participant
    bool start(std::uint32_t domain) {
        participant_ = dds::DomainParticipantFactory::get_instance()->create_participant(
            domain, loopback_only());
        if (participant_ == nullptr) {
            return false;
        }
        subscriber_ = participant_->create_subscriber(dds::SUBSCRIBER_QOS_DEFAULT);
        read(log_topic, log_printer_, dds::TRANSIENT_LOCAL_DURABILITY_QOS);
        read(state_topic, state_printer_, dds::TRANSIENT_LOCAL_DURABILITY_QOS);
        read(response_topic, response_printer_, dds::VOLATILE_DURABILITY_QOS);
        requests_ =
            participant_->create_publisher(dds::PUBLISHER_QOS_DEFAULT)
                ->create_datawriter(topic(request_topic),
                                    keep_all<dds::DataWriterQos>(dds::VOLATILE_DURABILITY_QOS));
        return true;
    }

    /// Throws an exception when the words are wrong.
    void send(const std::string& words) {
        Bytes request = encode_request(words);
        requests_->write(&request);
    }

private:
    dds::Topic* topic(const TopicDescription& description) {
        const dds::TypeSupport type{new RawType{description, keys_}};
        type.register_type(participant_);
        return participant_->create_topic(description.name, description.type_name,
                                          dds::TOPIC_QOS_DEFAULT);
    }

    template <typename Qos>
    static Qos keep_all(dds::DurabilityQosPolicyKind durability) {
        Qos qos;
        qos.reliability().kind = dds::RELIABLE_RELIABILITY_QOS;
        qos.durability().kind = durability;
        qos.history().kind = dds::KEEP_ALL_HISTORY_QOS;
        return qos;
    }

    void read(const TopicDescription& description, Printer& printer,
              dds::DurabilityQosPolicyKind durability) {
        subscriber_->create_datareader(topic(description), keep_all<dds::DataReaderQos>(durability),
                                       &printer);
    }

    Printer log_printer_{log_topic};
    Printer state_printer_{state_topic};
    Printer response_printer_{response_topic};
    KeySource keys_;
    dds::DomainParticipant* participant_ = nullptr;
    dds::Subscriber* subscriber_ = nullptr;
    dds::DataWriter* requests_ = nullptr;
};

}  // namespace
}  // namespace foreign

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: foreign_peer DOMAIN [--carried-keys]\n";
        return EXIT_FAILURE;
    }
    const bool carried = argc > 2 && std::string{argv[2]} == "--carried-keys";
    foreign::Peer peer{carried ? foreign::KeySource::carried : foreign::KeySource::computed};
    if (!peer.start(static_cast<std::uint32_t>(std::stoul(argv[1])))) {
        std::cerr << "foreign_peer: could not start\n";
        return EXIT_FAILURE;
    }
    for (std::string line; std::getline(std::cin, line);) {
        peer.send(line);
    }
    return EXIT_SUCCESS;
}
