#include "tests/integration/programs.hpp"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

namespace orvane::tests {
namespace {

/// Reads "2026-01-31T12:00:00.123456789Z".
std::int64_t nanoseconds_of(const std::string& text) {
    std::tm calendar{};
    const char* rest = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S.", &calendar);
    return rest == nullptr ? -1
                           : timegm(&calendar) * std::int64_t{1'000'000'000} + std::stoll(rest);
}

Words joined(Words first, const Words& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

}  // namespace

std::string domain() {
    const char* number = std::getenv("ORVANE_TEST_DOMAIN");
    return number != nullptr ? number : "99";
}

Words tool_command(const Words& arguments, const Words& launcher) {
    return joined(joined(launcher, {ORVANE_VIEWER}), arguments);
}

Words tool_in_domain(Words arguments, const Words& launcher) {
    return tool_command(joined(std::move(arguments), {"--domain", domain()}), launcher);
}

Words peer_command(const std::string& mode, const Words& options, const Words& launcher) {
    return joined(joined(launcher, {ORVANE_TEST_PEER, mode, domain()}), options);
}

Viewer::Viewer(const Words& options, const Words& launcher)
    : process_{tool_in_domain(joined({"tail", "--json"}, options), launcher)} {}

std::vector<ViewedMessage> Viewer::messages(const std::string& category) {
    std::vector<ViewedMessage> chosen;
    std::copy_if(messages_.begin(), messages_.end(), std::back_inserter(chosen),
                 [&](const ViewedMessage& message) { return message.category == category; });
    return chosen;
}

bool Viewer::wait_until(const std::function<bool(const std::vector<ViewedMessage>&)>& condition,
                        std::chrono::milliseconds longest) {
    const auto parse_and_look = [&](const Output& output) {
        for (; parsed_lines_ < output.out.size(); ++parsed_lines_) {
            const auto object = nlohmann::json::parse(output.out[parsed_lines_]);
            if (object["type"] != "message") {
                continue;
            }
            messages_.push_back({.nanoseconds = nanoseconds_of(object["time"]),
                                 .level = object["level"],
                                 .application = object["app"],
                                 .category = object["category"],
                                 .text = object["message"]});
        }
        return condition(messages_);
    };
    return process_.wait_until(parse_and_look, longest);
}

bool Viewer::wait_for(std::size_t count, const std::string& category,
                      std::chrono::milliseconds longest) {
    return wait_until([&](const auto&) { return messages(category).size() >= count; }, longest);
}

std::string Application::answer() {
    std::string found = "no answer";
    process_.wait_until([&](const Output& output) {
        std::size_t seen = 0;
        const auto line = std::ranges::find_if(output.out, [&](const std::string& each) {
            return each.starts_with(answer_mark) && seen++ == answers_;
        });
        if (line != output.out.end()) {
            found = line->substr(answer_mark.size());
        }
        return line != output.out.end();
    });
    ++answers_;
    return found;
}

std::string Application::ask(const std::string& command) {
    start(command);
    return answer();
}

bool Application::say(int level, const std::string& category, const std::string& text) {
    std::ostringstream command;
    command << "say " << level << ' ' << std::quoted(category) << ' ' << std::quoted(text);
    return ask(command.str()) == "say";
}

std::vector<LoggedMessage> Application::logged() {
    std::vector<LoggedMessage> messages;
    for (const std::string& line : process_.output().out) {
        if (line.starts_with(record_mark)) {
            LoggedMessage& message = messages.emplace_back();
            std::istringstream{line.substr(record_mark.size())} >> message.level >>
                message.before >> message.after >> message.text;
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
    return application.say(600, "mark", "") && viewer.wait_for(1, "mark");
}

std::string difference(const std::vector<LoggedMessage>& logged,
                       const std::vector<ViewedMessage>& viewed) {
    std::ostringstream text;
    for (std::size_t i = 0; i < std::min(logged.size(), viewed.size()); ++i) {
        const LoggedMessage& expected = logged[i];
        const ViewedMessage& actual = viewed[i];
        if (actual.text != expected.text || actual.level != expected.level ||
            actual.nanoseconds < expected.before || actual.nanoseconds > expected.after) {
            text << i << ": logged " << expected.level << ' ' << expected.text << " from "
                 << expected.before << " to " << expected.after << ", seen " << actual.level << ' '
                 << actual.text << " of " << actual.nanoseconds;
            return text.str();
        }
    }
    if (logged.size() != viewed.size()) {
        text << logged.size() << " messages logged but " << viewed.size() << " seen";
    }
    return text.str();
}

}  // namespace orvane::tests
