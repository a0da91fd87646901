#include "tests/integration/application.hpp"

#include <algorithm>
#include <sstream>

#include "tests/integration/peer_protocol.hpp"

namespace orvane::tests {
namespace {

std::string hexadecimal(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        text += {digits[byte / 16], digits[byte % 16]};
    }
    return text.empty() ? "-" : text;
}

LoggedMessage parse_record(const std::string& line) {
    LoggedMessage message;
    std::istringstream fields{line.substr(record_mark.size())};
    fields >> message.level >> message.before >> message.after >> message.text;
    return message;
}

}  // namespace

std::vector<std::string> peer_command(const std::string& mode, int domain_id,
                                      const std::vector<std::string>& options,
                                      const std::vector<std::string>& launcher) {
    std::vector<std::string> command{launcher};
    command.insert(command.end(), {ORVANE_TEST_PEER, mode, std::to_string(domain_id)});
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

std::string Application::answer() {
    std::string found;
    const bool answered = process_.wait_until(
        [&](const Output& output) {
            std::size_t seen = 0;
            return std::any_of(output.out.begin(), output.out.end(), [&](const std::string& line) {
                const bool wanted = line.starts_with(answer_mark) && seen++ == answers_;
                found = wanted ? line : "";
                return wanted;
            });
        },
        patience);
    if (!answered) {
        return "no answer";
    }
    ++answers_;
    return found.substr(answer_mark.size());
}

std::string Application::ask(const std::string& command) {
    start(command);
    return answer();
}

bool Application::say(int level, std::string_view category, std::string_view text) {
    return ask("say " + std::to_string(level) + ' ' + hexadecimal(category) + ' ' +
               hexadecimal(text)) == "say";
}

std::vector<LoggedMessage> Application::logged() {
    std::vector<LoggedMessage> messages;
    for (const std::string& line : process_.output().out) {
        if (line.starts_with(record_mark)) {
            messages.push_back(parse_record(line));
        }
    }
    return messages;
}

std::vector<std::string> Application::diagnostics() {
    std::vector<std::string> lines = process_.output().out;
    std::erase_if(lines, [](const std::string& line) {
        return line.starts_with(answer_mark) || line.starts_with(record_mark);
    });
    return lines;
}

bool connect(Application& application, Viewer& viewer) {
    constexpr std::chrono::milliseconds between_probes{100};
    constexpr int most_severe = 100;
    const std::string identity = application.ask("identity");
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (int probe = 0; std::chrono::steady_clock::now() < deadline; ++probe) {
        // Only the newest probe shows that the viewer has caught up with the history.
        const std::string category = "probe " + std::to_string(probe) + " of " + identity;
        if (!application.say(most_severe, category, "")) {
            return false;
        }
        if (viewer.wait_for(1, category, between_probes)) {
            return true;
        }
    }
    return false;
}

bool await_all(Application& application, Viewer& viewer) {
    return application.say(600, "mark", "") && viewer.wait_for(1, "mark", patience);
}

std::string difference(const std::vector<LoggedMessage>& logged,
                       const std::vector<ViewedMessage>& viewed) {
    std::ostringstream text;
    const std::size_t common = std::min(logged.size(), viewed.size());
    for (std::size_t i = 0; i < common; ++i) {
        const LoggedMessage& expected = logged[i];
        const ViewedMessage& actual = viewed[i];
        if (actual.text != expected.text || actual.level != expected.level ||
            actual.nanoseconds < expected.before || actual.nanoseconds > expected.after) {
            text << "message " << i << " was logged as " << expected.level << ' ' << expected.text
                 << " from " << expected.before << " to " << expected.after << " but seen as "
                 << actual.level << ' ' << actual.text << " of " << actual.nanoseconds;
            return text.str();
        }
    }
    if (logged.size() != viewed.size()) {
        text << logged.size() << " messages logged but " << viewed.size() << " seen";
    }
    return text.str();
}

}  // namespace orvane::tests
