#include "tests/integration/application.hpp"

#include <algorithm>
#include <optional>
#include <sstream>

#include "tests/integration/peer_protocol.hpp"

namespace orvane::tests {
namespace {

std::vector<std::string> peer_command(int domain_id, const std::vector<std::string>& options,
                                      std::vector<std::string> command) {
    command.insert(command.end(), {ORVANE_APPLICATION, std::to_string(domain_id)});
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

std::optional<std::string> answer_number(const Output& output, std::size_t number) {
    std::size_t seen = 0;
    for (const std::string& line : output.out) {
        if (line.starts_with(answer_mark) && seen++ == number) {
            return line.substr(answer_mark.size());
        }
    }
    return std::nullopt;
}

LoggedMessage parse_record(const std::string& line) {
    LoggedMessage message;
    std::istringstream fields{line.substr(record_mark.size())};
    fields >> message.level >> message.before >> message.after >> message.text;
    return message;
}

}  // namespace

Application::Application(int domain_id, const std::vector<std::string>& options,
                         const std::vector<std::string>& launcher)
    : process_{peer_command(domain_id, options, launcher)} {}

void Application::start(const std::string& command) {
    process_.send_line(command);
}

std::string Application::answer() {
    std::optional<std::string> found;
    process_.wait_until(
        [&](const Output& output) {
            found = answer_number(output, answers_);
            return found.has_value();
        },
        patience);
    if (!found) {
        return "no answer";
    }
    ++answers_;
    return *found;
}

std::string Application::ask(const std::string& command) {
    start(command);
    return answer();
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
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds between_probes{100};
    const Clock::time_point deadline = Clock::now() + patience;
    for (int probe = 0; Clock::now() < deadline; ++probe) {
        if (application.ask("probe " + std::to_string(probe)) != "probe") {
            return false;
        }
        const std::string identity = application.ask("identity");
        const bool arrived = viewer.wait_until(
            [&](const std::vector<ViewedMessage>& messages) {
                return std::any_of(messages.begin(), messages.end(),
                                   [&](const ViewedMessage& message) {
                                       return message.category == probe_category &&
                                              message.text == std::to_string(probe) &&
                                              message.application == identity;
                                   });
            },
            between_probes);
        if (arrived) {
            return true;
        }
    }
    return false;
}

bool await_all(Application& application, Viewer& viewer) {
    return application.ask("mark") == "mark" && viewer.wait_for(1, mark_category, patience);
}

std::string difference(const std::vector<LoggedMessage>& logged,
                       const std::vector<ViewedMessage>& viewed) {
    std::ostringstream text;
    const std::size_t common = std::min(logged.size(), viewed.size());
    for (std::size_t i = 0; i < common; ++i) {
        const LoggedMessage& expected = logged[i];
        const ViewedMessage& actual = viewed[i];
        if (actual.text != expected.text || actual.level != expected.level) {
            text << "message " << i << " was logged as " << expected.level << ' ' << expected.text
                 << " but seen as " << actual.level << ' ' << actual.text;
            return text.str();
        }
        if (actual.nanoseconds < expected.before || actual.nanoseconds > expected.after) {
            text << "message " << i << " has the time " << actual.nanoseconds
                 << " but was logged from " << expected.before << " to " << expected.after;
            return text.str();
        }
    }
    if (logged.size() != viewed.size()) {
        text << logged.size() << " messages logged but " << viewed.size() << " seen";
    }
    return text.str();
}

}  // namespace orvane::tests
