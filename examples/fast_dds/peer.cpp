// A program of another DDS product, Fast DDS 3, that reads what loggers publish and sends them
// commands. Its types are made of docs/orvane.idl by fastddsgen. It uses the loopback interface.
//
//   usage: peer DOMAIN
//
//   input     INVOCATION LOGGER level NUMBER
//             INVOCATION LOGGER verbosity CATEGORY NUMBER
//             INVOCATION LOGGER format NUMBER
//   output    log LOGGER LEVEL CATEGORY MESSAGE
//             state LOGGER DOMAIN STATE KIND LEVEL VERBOSITY… FORMAT
//             response LOGGER INVOCATION RESULT
//
// A LOGGER is written HOST:APP, in hexadecimal; enumerators are written as numbers. The end of the
// input ends the program.

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
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.hpp>
#include <fastdds/utils/IPLocator.hpp>
#include <generated/orvanePubSubTypes.hpp>
#include <iostream>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>

namespace {

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastdds::rtps;
namespace kx = com::qel::kx;
namespace admin = com::qel::kx::admin;

std::ostream& operator<<(std::ostream& out, const kx::HostAndAppId& logger) {
    char text[18];
    std::snprintf(text, sizeof text, "%08x:%08x", static_cast<unsigned>(logger.rtps_host_id()),
                  static_cast<unsigned>(logger.rtps_app_id()));
    return out << text;
}

std::istream& operator>>(std::istream& in, kx::HostAndAppId& logger) {
    unsigned host = 0;
    unsigned application = 0;
    char colon = 0;
    in >> std::hex >> host >> colon >> application >> std::dec;
    logger.rtps_host_id(static_cast<int>(host));
    logger.rtps_app_id(static_cast<int>(application));
    return in;
}

void print(const kx::LogMessage& log) {
    std::cout << "log " << log.logger() << ' ' << log.level() << ' ' << log.category() << ' '
              << log.message() << std::endl;
}

void print(const admin::State& state) {
    std::cout << "state " << state.logger() << ' ' << state.administrationDomainId() << ' '
              << static_cast<int>(state.lifecycle()) << ' ' << state.applicationKind() << ' '
              << state.filterLevel() << ' ';
    for (const admin::QELLoggerCategoryAndVerbosity& each : state.verbosities()) {
        std::cout << static_cast<int>(each.verbosity()) << ' ';
    }
    std::cout << static_cast<int>(state.printFormat()) << std::endl;
}

void print(const admin::CommandResponse& response) {
    std::cout << "response " << response.logger() << ' ' << response.invocation() << ' '
              << static_cast<int>(response.outcome()) << std::endl;
}

template <typename Sample>
class Printer : public fast::DataReaderListener {
public:
    void on_data_available(fast::DataReader* reader) override {
        static std::mutex mutex;
        Sample sample;
        fast::SampleInfo info;
        while (reader->take_next_sample(&sample, &info) == fast::RETCODE_OK) {
            if (info.valid_data) {
                const std::lock_guard lock{mutex};
                print(sample);
            }
        }
    }
};

template <typename Number>
Number read_number(std::istream& in) {
    int number = 0;
    in >> number;
    return static_cast<Number>(number);
}

admin::Command read_command(std::istream& in) {
    std::string what;
    in >> what;
    admin::Command command;
    if (what == "level") {
        command.filterLevel(read_number<int>(in));
    } else if (what == "verbosity") {
        admin::QELLoggerCategoryAndVerbosity pair;
        pair.category(read_number<admin::QELLoggerCategory>(in));
        pair.verbosity(read_number<admin::QELLoggerVerbosity>(in));
        command.verbosities({pair});
    } else {
        command.printFormat(read_number<admin::QELLoggerPrintFormat>(in));
    }
    return command;
}

/// A participant that meets those on the loopback interface that use no multicast either.
fast::DomainParticipantQos loopback_only() {
    rtps::Locator_t loopback;
    rtps::IPLocator::createLocator(LOCATOR_KIND_UDPv4, "127.0.0.1", 0, loopback);
    const auto udp = std::make_shared<rtps::UDPv4TransportDescriptor>();
    udp->interfaceWhiteList = {"127.0.0.1"};
    fast::DomainParticipantQos qos;
    qos.transport().use_builtin_transports = false;
    qos.transport().user_transports.push_back(udp);
    qos.wire_protocol().builtin.metatrafficUnicastLocatorList.push_back(loopback);
    qos.wire_protocol().builtin.initialPeersList.push_back(loopback);
    qos.wire_protocol().builtin.discovery_config.leaseDuration_announcementperiod = {1, 0};
    return qos;
}

template <typename Qos>
Qos reliable(fast::DurabilityQosPolicyKind durability) {
    Qos qos;
    qos.reliability().kind = fast::RELIABLE_RELIABILITY_QOS;
    qos.durability().kind = durability;
    qos.history().kind = fast::KEEP_ALL_HISTORY_QOS;
    return qos;
}

}  // namespace

int main(int argc, char** argv) {
    fast::DomainParticipantFactory* factory = fast::DomainParticipantFactory::get_instance();
    fast::DomainParticipant* participant =
        argc < 2 ? nullptr
                 : factory->create_participant(static_cast<std::uint32_t>(std::stoul(argv[1])),
                                               loopback_only());
    if (participant == nullptr) {
        std::cerr << "peer: could not start; usage: peer DOMAIN\n";
        return EXIT_FAILURE;
    }
    const auto topic = [&](const char* name, fast::TypeSupport type) {
        type.register_type(participant);
        return participant->create_topic(name, type.get_type_name(), fast::TOPIC_QOS_DEFAULT);
    };
    fast::Subscriber* subscriber = participant->create_subscriber(fast::SUBSCRIBER_QOS_DEFAULT);
    const auto read = [&](fast::Topic* what, fast::DurabilityQosPolicyKind durability,
                          fast::DataReaderListener& printer) {
        subscriber->create_datareader(what, reliable<fast::DataReaderQos>(durability), &printer);
    };
    Printer<kx::LogMessage> logs;
    Printer<admin::State> states;
    Printer<admin::CommandResponse> responses;
    read(topic("qel/orvane", fast::TypeSupport{new kx::LogMessagePubSubType}),
         fast::TRANSIENT_LOCAL_DURABILITY_QOS, logs);
    read(topic("qel/orvane/administration/state", fast::TypeSupport{new admin::StatePubSubType}),
         fast::TRANSIENT_LOCAL_DURABILITY_QOS, states);
    read(topic("qel/orvane/administration/command_response",
               fast::TypeSupport{new admin::CommandResponsePubSubType}),
         fast::VOLATILE_DURABILITY_QOS, responses);
    fast::DataWriter* requests =
        participant->create_publisher(fast::PUBLISHER_QOS_DEFAULT)
            ->create_datawriter(topic("qel/orvane/administration/command_request",
                                      fast::TypeSupport{new admin::CommandRequestPubSubType}),
                                reliable<fast::DataWriterQos>(fast::VOLATILE_DURABILITY_QOS));
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream in{line};
        admin::CommandRequest request;
        request.invocation(read_number<int>(in));
        in >> request.target();
        request.action(read_command(in));
        requests->write(&request);
    }
    participant->delete_contained_entities();
    factory->delete_participant(participant);
    return EXIT_SUCCESS;
}
