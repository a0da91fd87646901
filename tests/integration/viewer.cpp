#include "tests/integration/viewer.hpp"

#include <algorithm>
#include <ctime>
#include <iterator>
#include <nlohmann/json.hpp>

namespace orvane::tests {
namespace {

/// Reads "2026-01-31T12:00:00.123456789Z".
std::int64_t nanoseconds_of(const std::string& text) {
    std::tm calendar{};
    const char* rest = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%S.", &calendar);
    if (rest == nullptr) {
        return -1;
    }
    return timegm(&calendar) * std::int64_t{1'000'000'000} + std::stoll(rest);
}

}  // namespace

std::vector<std::string> tool_command(const std::vector<std::string>& arguments,
                                      const std::vector<std::string>& launcher) {
    std::vector<std::string> command{launcher};
    command.emplace_back(ORVANE_VIEWER);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

Viewer::Viewer(int domain_id, const std::vector<std::string>& options,
               const std::vector<std::string>& launcher)
    : process_{[&] {
          std::vector<std::string> command =
              tool_command({"tail", "--json", "--domain", std::to_string(domain_id)}, launcher);
          command.insert(command.end(), options.begin(), options.end());
          return command;
      }()} {}

void Viewer::parse(const Output& output) {
    for (; parsed_lines_ < output.out.size(); ++parsed_lines_) {
        const auto object = nlohmann::json::parse(output.out[parsed_lines_]);
        messages_.push_back({.nanoseconds = nanoseconds_of(object["time"]),
                             .level = object["level"],
                             .application = object["app"],
                             .category = object["category"],
                             .text = object["message"]});
    }
}

std::vector<ViewedMessage> Viewer::messages(const std::string& category) {
    std::vector<ViewedMessage> chosen;
    std::copy_if(messages_.begin(), messages_.end(), std::back_inserter(chosen),
                 [&](const ViewedMessage& message) { return message.category == category; });
    return chosen;
}

bool Viewer::wait_until(const std::function<bool(const std::vector<ViewedMessage>&)>& condition,
                        std::chrono::milliseconds longest) {
    return process_.wait_until(
        [&](const Output& output) {
            parse(output);
            return condition(messages_);
        },
        longest);
}

bool Viewer::wait_for(std::size_t count, const std::string& category,
                      std::chrono::milliseconds longest) {
    return wait_until([&](const auto&) { return messages(category).size() >= count; }, longest);
}

}  // namespace orvane::tests
