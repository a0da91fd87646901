#include "tools/subcommands/silence.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "tools/domain/middleware_output.hpp"
#include "tools/subcommands/domain_access.hpp"

namespace orvane::tools {
namespace {

constexpr std::chrono::seconds patience{3};
/// Before that nobody need have been heard.
constexpr std::chrono::seconds shortest_patience{1};

std::string participants(std::size_t count, std::int32_t domain_id) {
    return fmt::format("{} participant{} of domain {}", count, count == 1 ? "" : "s", domain_id);
}

}  // namespace

bool tell_of_silent(const DomainOptions& domain, const ParticipantCensus& census, bool is_heard) {
    const bool is_secured = !domain.security.empty();
    // They may have lost their credentials, and tell everybody what they log.
    if (is_secured && census.unsecured > 0) {
        print_with_remedy(fmt::format("{} without credentials {} not heard",
                                      participants(census.unsecured, domain.id),
                                      census.unsecured == 1 ? "is" : "are"),
                          "give each application its own: orvane keys issue, orvane keys profile");
    }
    if (is_heard) {
        return false;
    }
    if (has_refused_somebody()) {
        return true;
    }
    if (!is_secured && census.secured > 0) {
        print_with_remedy(
            participants(census.secured, domain.id) + " may talk to those with credentials only",
            "use --security FOLDER; 'orvane keys issue' makes such folders");
    }
    if (is_secured && census.secured > 0) {
        print_with_remedy(
            "no logger talks to this one among " + participants(census.secured, domain.id) +
                " with credentials",
            "if there should be some, run 'orvane keys check' on both sides: both need the same "
            "authority, and their applications the role application");
    }
    return census.secured > 0 || (is_secured && census.unsecured > 0);
}

std::chrono::milliseconds Silence::wait(std::chrono::milliseconds longest) const {
    if (is_told_) {
        return longest;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(start_ + patience - Clock::now());
    return std::clamp(left, std::chrono::milliseconds{0}, longest);
}

bool Silence::tell(bool is_over) {
    const Clock::duration waited = Clock::now() - start_;
    if (!is_told_ && (waited >= patience || (is_over && waited >= shortest_patience))) {
        is_told_ = true;
        are_others_silent_ = tell_of_silent(domain_, census_(), is_heard_);
    }
    return are_others_silent_ && !is_heard_;
}

}  // namespace orvane::tools
