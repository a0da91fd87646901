/// @file domain_access.hpp
/// @brief Whether a subcommand may do in a domain what it is for, said in words.
#pragma once

#include <string>

#include "tools/records/domain_options.hpp"
#include "tools/records/result.hpp"
#include "tools/subcommands/stop_signal.hpp"

namespace orvane::tools {

/// What a subcommand does in a domain.
enum class DomainUse {
    read_messages,
    read_states,
    command,
    publish,  ///< messages and States of others
};

/// Looks at the credentials, if there are any, before the domain is joined with them. Prints on the
/// standard error what is wrong with them, what may soon be, and which right is missing, each with
/// what to do about it. Topics that the subcommand can do without go to @p domain.
/// @return failed when the subcommand would be in vain
Status check_access(DomainOptions& domain, DomainUse use);

/// Ends the subcommand as failed, with the reason, when its credentials expire. From then on nobody
/// would hear it, and it would hear nobody.
void stop_at_expiry(const DomainOptions& domain, StopSignal& stop);

/// Prints on the standard error what is wrong, and what to do about it.
void print_with_remedy(const std::string& cause, const std::string& remedy);

}  // namespace orvane::tools
