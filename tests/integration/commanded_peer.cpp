#include "tests/integration/peer.hpp"

#include <charconv>
#include <chrono>
#include <iostream>
#include <sstream>
#include <string_view>
#include <thread>
#include <utility>

#include "tests/integration/peer_protocol.hpp"

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

/// The mode "log".
class CommandedApplication {
public:
    void start(OptionsPointer options) { logger_.start(std::move(options)); }

    /// @return the answer
    std::string execute(const std::string& command) {
        std::istringstream words{command};
        std::string name;
        words >> name;
        if (name == "log") {
            log(words);
        } else if (name == "stamped") {
            log_stamped(words);
        } else if (name == "say") {
            say(words);
        } else if (name == "identity") {
            return identity();
        } else if (name == "finish") {
            return "finish " + std::to_string(logger_.finish());
        } else {
            return "unknown command: " + command;
        }
        return name;
    }

private:
    void log(std::istream& arguments) {
        int level = 0;
        int count = 0;
        int gap_us = 0;
        arguments >> level >> count >> gap_us;
        // Printed afterwards, so that the test's pipe has no influence on the pace.
        std::string records;
        for (int i = 0; i < count; ++i) {
            const std::string text = std::to_string(next_number_++);
            const std::int64_t before = wall_clock();
            logger_.log(level, numbered_category, text);
            records += record(level, before, wall_clock(), text);
            std::this_thread::sleep_for(std::chrono::microseconds{gap_us});
        }
        std::fputs(records.c_str(), answers);
    }

    void log_stamped(std::istream& arguments) {
        constexpr std::int64_t start = 1'500'000'000;
        constexpr DDS_UnsignedLong fractions[] = {0, 1, 999'999'999, 500'000'000, 232'830'643};
        int level = 0;
        int count = 0;
        arguments >> level >> count;
        for (int i = 0; i < count; ++i) {
            const std::string text = std::to_string(next_number_++);
            const DDS_UnsignedLong fraction =
                fractions[static_cast<std::size_t>(i) % std::size(fractions)];
            const QEL_KX_LogMessageParams params{level,
                                                 text.c_str(),
                                                 numbered_category,
                                                 {static_cast<DDS_Long>(start + i), fraction}};
            QEL_KX_Orvane_logMessageWithParams(logger_.instance(), &params);
            const std::int64_t time = (start + i) * std::int64_t{1'000'000'000} + fraction;
            std::fputs(record(level, time, time, text).c_str(), answers);
        }
    }

    void say(std::istream& arguments) {
        int level = 0;
        std::string category;
        std::string text;
        arguments >> level >> category >> text;
        logger_.log(level, from_hexadecimal(category), from_hexadecimal(text));
    }

    std::string identity() const {
        const QEL_KX_DDSEntities* entities = logger_.instance()->ddsEntities;
        char text[32];
        std::snprintf(text, sizeof text, "%08x:%08x", QEL_KX_DDSEntities_getRtpsHostId(entities),
                      QEL_KX_DDSEntities_getRtpsAppId(entities));
        return text;
    }

    static std::string record(int level, std::int64_t before, std::int64_t after,
                              const std::string& text) {
        return std::string{record_mark} + std::to_string(level) + ' ' + std::to_string(before) +
               ' ' + std::to_string(after) + ' ' + text + '\n';
    }

    Logger logger_;
    int next_number_ = 0;
};

}  // namespace

void obey(int domain_id, const std::vector<std::string>& settings) {
    OptionsPointer options = make_options(domain_id);
    QEL_KX_Options_setQueueSize(options.get(), 1024);
    for (std::size_t i = 0; i < settings.size(); ++i) {
        if (settings[i] == "--kind") {
            QEL_KX_Options_setApplicationKind(options.get(), settings.at(++i).c_str());
        } else if (settings[i] == "--profile") {
            QEL_KX_Options_setQosLibrary(options.get(), settings.at(++i).c_str());
            QEL_KX_Options_setQosProfile(options.get(), settings.at(++i).c_str());
        }
    }
    CommandedApplication application;
    application.start(std::move(options));
    for (std::string command; std::getline(std::cin, command);) {
        tell(application.execute(command));
    }
}

}  // namespace orvane::tests
