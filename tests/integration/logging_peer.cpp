// An application that logs what a test tells it to, one command a line:
//
//   usage: logging_peer DOMAIN [--own-participant] [--kind APPLICATION_KIND]
//                       [--profile LIBRARY PROFILE]
//
//   log LEVEL COUNT GAP_US    logs the next COUNT numbers, with a pause after each
//   stamped LEVEL COUNT       logs the next COUNT numbers with times of this program's choice
//   say LEVEL CATEGORY TEXT   logs bytes, both texts in hexadecimal, "-" for an empty one
//   probe TEXT                logs TEXT at the level FATAL with the category "probe"
//   mark                      logs an empty text with the category "mark"
//   identity                  answers the application's identity as the viewer shows it
//   misuse                    makes the middleware report an error
//   trigger COUNT             with --own-participant: writes COUNT samples whose listener logs
//                             "heard …", and answers how many have been heard so far
//   finish                    finalises the logger
//
// Every command is answered by a line "> …". For each numbered message a line "logged LEVEL BEFORE
// AFTER NUMBER" tells the wall clock around the call, in nanoseconds. The end of the input ends it.

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "orvane/orvane.h"
#include "tests/integration/peer_logger.hpp"
#include "tests/integration/peer_protocol.hpp"
#include "tests/integration/self_trigger.hpp"

namespace orvane::tests {
namespace {

std::string from_hexadecimal(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        unsigned char byte = 0;
        std::from_chars(text.data() + i, text.data() + i + 2, byte, 16);
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

struct Settings {
    int domain_id = 0;
    bool own_participant = false;
    std::string application_kind;
    std::string qos_library;
    std::string qos_profile;
};

class Peer {
public:
    bool start(const Settings& settings);
    /// @return the answer
    std::string execute(const std::string& command);

private:
    std::string log(std::istream& arguments);
    std::string log_stamped(std::istream& arguments);
    std::string say(std::istream& arguments);
    std::string probe(std::istream& arguments);
    std::string identity();
    std::string trigger(std::istream& arguments);

    // The logger uses the participant and goes first.
    std::unique_ptr<SelfTrigger> trigger_;
    PeerLogger logger_;
    int next_number_ = 0;
    int pulled_ = 0;
};

bool Peer::start(const Settings& settings) {
    OptionsPointer options{QEL_KX_Options_createDefault()};
    QEL_KX_Options_setDomainId(options.get(), settings.domain_id);
    QEL_KX_Options_setApplicationKind(options.get(), settings.application_kind.c_str());
    if (!settings.qos_profile.empty()) {
        QEL_KX_Options_setQosLibrary(options.get(), settings.qos_library.c_str());
        QEL_KX_Options_setQosProfile(options.get(), settings.qos_profile.c_str());
    }
    QEL_KX_Options_setQueueSize(options.get(), 1024);
    if (settings.own_participant) {
        trigger_ = SelfTrigger::open(settings.domain_id, [this](std::string_view text) {
            const std::string message = "heard " + std::string{text};
            QEL_KX_Orvane_info(logger_.instance(), message.c_str());
        });
        if (!trigger_) {
            return false;
        }
        QEL_KX_Options_setDomainParticipant(options.get(), trigger_->participant());
    }
    return logger_.start(std::move(options));
}

std::string Peer::log(std::istream& arguments) {
    int level = 0;
    int count = 0;
    int gap_us = 0;
    arguments >> level >> count >> gap_us;
    // Printed afterwards, so that the test's pipe has no influence on the pace.
    std::ostringstream record;
    for (int i = 0; i < count; ++i) {
        const std::string text = std::to_string(next_number_++);
        const std::int64_t before = wall_clock();
        QEL_KX_Orvane_logMessageWithLevelCategory(logger_.instance(), level, text.c_str(),
                                                  numbered_category);
        const std::int64_t after = wall_clock();
        record << record_mark << level << ' ' << before << ' ' << after << ' ' << text << '\n';
        std::this_thread::sleep_for(std::chrono::microseconds{gap_us});
    }
    std::cout << record.str();
    return "log";
}

std::string Peer::log_stamped(std::istream& arguments) {
    constexpr std::int64_t start = 1'500'000'000;
    constexpr DDS_UnsignedLong fractions[] = {0,           1,           2,           999'999'999,
                                              999'999'998, 500'000'000, 1'953'125,   123'456'789,
                                              3,           7,           333'333'333, 232'830'643};
    int level = 0;
    int count = 0;
    arguments >> level >> count;
    for (int i = 0; i < count; ++i) {
        const std::string text = std::to_string(next_number_++);
        const DDS_UnsignedLong fraction =
            fractions[static_cast<std::size_t>(i) % std::size(fractions)];
        const QEL_KX_LogMessageParams params{
            level, text.c_str(), numbered_category, {static_cast<DDS_Long>(start + i), fraction}};
        QEL_KX_Orvane_logMessageWithParams(logger_.instance(), &params);
        const std::int64_t time = (start + i) * std::int64_t{1'000'000'000} + fraction;
        std::cout << record_mark << level << ' ' << time << ' ' << time << ' ' << text << '\n';
    }
    return "stamped";
}

std::string Peer::say(std::istream& arguments) {
    int level = 0;
    std::string category;
    std::string text;
    arguments >> level >> category >> text;
    QEL_KX_Orvane_logMessageWithLevelCategory(logger_.instance(), level,
                                              from_hexadecimal(text).c_str(),
                                              from_hexadecimal(category).c_str());
    return "say";
}

std::string Peer::probe(std::istream& arguments) {
    std::string text;
    arguments >> text;
    QEL_KX_Orvane_logMessageWithLevelCategory(logger_.instance(), QEL_KX_LEVEL_FATAL, text.c_str(),
                                              probe_category);
    return "probe";
}

std::string Peer::identity() {
    const QEL_KX_DDSEntities* entities = logger_.instance()->ddsEntities;
    char text[32];
    std::snprintf(text, sizeof text, "%08x:%08x", QEL_KX_DDSEntities_getRtpsHostId(entities),
                  QEL_KX_DDSEntities_getRtpsAppId(entities));
    return text;
}

std::string Peer::trigger(std::istream& arguments) {
    using namespace std::chrono_literals;
    int count = 0;
    arguments >> count;
    for (int i = 0; i < count; ++i) {
        trigger_->pull(std::to_string(pulled_++));
    }
    trigger_->wait_until_heard(pulled_, 10s);
    return "trigger " + std::to_string(trigger_->heard());
}

std::string Peer::execute(const std::string& command) {
    std::istringstream words{command};
    std::string name;
    words >> name;
    if (name == "log") {
        return log(words);
    }
    if (name == "stamped") {
        return log_stamped(words);
    }
    if (name == "say") {
        return say(words);
    }
    if (name == "probe") {
        return probe(words);
    }
    if (name == "mark") {
        QEL_KX_Orvane_logMessageWithLevelCategory(logger_.instance(), QEL_KX_LEVEL_INFO, "",
                                                  mark_category);
        return "mark";
    }
    if (name == "identity") {
        return identity();
    }
    if (name == "misuse") {
        return "misuse " + std::to_string(DDS_Topic_get_qos(nullptr, nullptr));
    }
    if (name == "trigger") {
        return trigger(words);
    }
    if (name == "finish") {
        return "finish " + std::to_string(logger_.finish());
    }
    return "unknown command: " + command;
}

Settings parse(const std::vector<std::string>& arguments) {
    Settings settings;
    settings.domain_id = std::stoi(arguments[0]);
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == "--own-participant") {
            settings.own_participant = true;
        } else if (arguments[i] == "--kind" && i + 1 < arguments.size()) {
            settings.application_kind = arguments[++i];
        } else if (arguments[i] == "--profile" && i + 2 < arguments.size()) {
            settings.qos_library = arguments[++i];
            settings.qos_profile = arguments[++i];
        }
    }
    return settings;
}

}  // namespace
}  // namespace orvane::tests

int main(int argc, char** argv) {
    const std::vector<std::string> arguments{argv + 1, argv + argc};
    if (arguments.empty()) {
        std::cerr << "usage: logging_peer DOMAIN [--own-participant] [--kind APPLICATION_KIND]\n"
                     "       [--profile LIBRARY PROFILE]\n";
        return EXIT_FAILURE;
    }
    orvane::tests::Peer peer;
    if (!peer.start(orvane::tests::parse(arguments))) {
        std::cerr << "logging_peer: could not start\n";
        return EXIT_FAILURE;
    }
    for (std::string command; std::getline(std::cin, command);) {
        // In one piece: the middleware's threads may print too.
        const std::string answer = peer.execute(command);
        std::cout << (std::string{orvane::tests::answer_mark} + answer + '\n') << std::flush;
    }
    return EXIT_SUCCESS;
}
