#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/command_line/arguments.hpp"
#include "tools/security/credentials.hpp"

namespace orvane::tools {
namespace {

constexpr std::int64_t most_days = 36500;

CLI::App* add_action(CLI::App& keys, KeysOptions& options, const char* name,
                     const char* description, int (*action)(const KeysOptions&)) {
    CLI::App* command = keys.add_subcommand(name, description);
    command->add_option("DIR", options.directory, "The directory of the authority")
        ->type_name("")
        ->required();
    command->callback([&options, action] { options.action = action; });
    return command;
}

void add_name(CLI::App& command, KeysOptions& options) {
    command.add_option("NAME", options.name, "The application or person")
        ->type_name("")
        ->required()
        ->check(CLI::Validator{[](std::string& name) -> std::string {
                                   return is_credential_name(name)
                                              ? ""
                                              : fmt::format("'{}': {} expected", name,
                                                            credential_name_form);
                               },
                               ""});
}

void add_days(CLI::App& command, KeysOptions& options) {
    command.add_option("--days", options.days, "Valid for so many days")
        ->type_name("N")
        ->check(CLI::Range(std::int64_t{1}, most_days).description(""))
        ->capture_default_str();
}

void add_domains(CLI::App& command, KeysOptions& options, const char* description) {
    command.add_option("--domain", options.domains, description)
        ->type_name("N")
        ->allow_extra_args(false)
        ->check(CLI::Range(0, last_secured_domain).description(""));
}

CLI::Validator topic_pattern_validator() {
    return {[](std::string& pattern) -> std::string {
                return is_topic_pattern(pattern)
                           ? ""
                           : fmt::format(
                                 "'{}': a pattern of topics without blanks, quotes, <, >, & "
                                 "and odd brackets expected",
                                 pattern);
            },
            ""};
}

void add_own_topics(CLI::App& command, const char* name, std::vector<std::string>& topics) {
    command.add_option(name, topics, "Further topics; may be repeated")
        ->type_name("GLOB")
        ->allow_extra_args(false)
        ->check(topic_pattern_validator());
}

void add_issue(CLI::App& keys, KeysOptions& options) {
    CLI::App* command = add_action(
        keys, options, "issue", "Makes the credentials of an application or a person", issue_keys);
    add_name(*command, options);
    command
        ->add_option_function<std::string>(
            "--role",
            [&options](const std::string& text) {
                for (const Role role : {Role::application, Role::viewer, Role::operator_}) {
                    if (text == name_of(role)) {
                        options.rights.role = role;
                        return;
                    }
                }
                throw CLI::ValidationError(fmt::format(
                    "'{}' is no role: one of application, viewer, operator expected", text));
            },
            "application logs and obeys commands, viewer reads logs, operator also commands")
        ->type_name("application|viewer|operator");
    add_days(*command, options);
    add_domains(*command, options, "Only in this DDS domain, 0 to 230; may be repeated");
    command->add_option("--topics", options.rights.topics, "Of the role's topics, these only")
        ->type_name("GLOB")
        ->check(topic_pattern_validator());
    add_own_topics(*command, "--publish", options.rights.publish);
    add_own_topics(*command, "--subscribe", options.rights.subscribe);
    command
        ->add_option("--permissions", options.permissions_file,
                     "Further rules: a permissions document of DDS Security, unsigned")
        ->type_name("FILE");
    command->callback([&options] {
        const WantedRights& rights = options.rights;
        if (!rights.role && rights.publish.empty() && rights.subscribe.empty() &&
            options.permissions_file.empty()) {
            throw CLI::ValidationError(
                "one of --role, --publish, --subscribe and --permissions expected");
        }
        if (rights.topics && !rights.role) {
            throw CLI::ValidationError("--topics", "expected with --role only");
        }
        options.action = issue_keys;
    });
}

}  // namespace

CLI::App* add_keys_subcommand(CLI::App& app, KeysOptions& options) {
    CLI::App* keys = app.add_subcommand(
        "keys", "Makes the credentials that DDS Security needs, and checks them");
    keys->require_subcommand(1);
    CLI::App* init = add_action(*keys, options, "init", "Makes an authority", init_keys);
    add_domains(*init, options, "Only for this DDS domain, 0 to 230; may be repeated");
    add_issue(*keys, options);
    add_action(*keys, options, "list", "Lists the credentials and until when they are valid",
               list_keys);
    add_name(
        *add_action(*keys, options, "check", "Says what is wrong with credentials", check_keys),
        options);
    add_name(
        *add_action(*keys, options, "revoke", "Makes all others refuse credentials", revoke_keys),
        options);
    CLI::App* renew =
        add_action(*keys, options, "renew",
                   "Gives the same key a new certificate with the same rights", renew_keys);
    add_name(*renew, options);
    add_days(*renew, options);
    CLI::App* profile = add_action(*keys, options, "profile",
                                   "Prints a QoS profile for an application", print_keys_profile);
    add_name(*profile, options);
    profile
        ->add_option("--output", options.output, "Writes it to this file, as a whole or not at all")
        ->type_name("FILE");
    keys->footer(
        "Example:\n"
        "  orvane keys init plant\n"
        "  orvane keys issue plant pump-1 --role application\n"
        "  orvane keys issue plant vera --role viewer\n"
        "  orvane keys check plant pump-1");
    return keys;
}

}  // namespace orvane::tools
