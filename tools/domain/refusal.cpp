#include "tools/domain/refusal.hpp"

#include <algorithm>

#include "tools/text/display_text.hpp"

namespace orvane::tools {
namespace {

struct Row {
    std::string_view part;  ///< of the report
    std::string_view what;  ///< is said of whom the report names
    std::string_view remedy;
};

constexpr Row rows[] = {
    {"Certificate not valid: error: certificate has expired", "its certificate has expired",
     "renew it with 'orvane keys renew', copy it to its machine and restart what uses it"},
    {"Certificate not valid: error: certificate is not yet valid",
     "its certificate is not valid yet", "compare the clocks of both machines"},
    {"Certificate not valid: error: certificate revoked", "its certificate is revoked",
     "issue credentials under a new name if it may be trusted again"},
    {"Certificate not valid: error: unable to get local issuer certificate",
     "its certificate is of another authority",
     "both sides need credentials of the same authority"},
    {"Certificate not valid: error: certificate signature failure",
     "its certificate is of another authority",
     "both sides need credentials of the same authority"},
    {"Permissions validity period expired", "its permissions have expired",
     "renew them with 'orvane keys renew', copy them to its machine and restart what uses them"},
    {"Permissions validity period has not started yet", "its permissions are not valid yet",
     "compare the clocks of both machines"},
    {"PKCS7 routines", "its permissions are not those that the authority signed",
     "copy its folder again from where the authority made it"},
    {"Subject name is invalid", "its permissions are those of somebody else",
     "copy its folder again from where the authority made it"},
    {"denied by default rule", "its permissions do not allow this domain",
     "issue credentials that allow the domain"},
    {"security_attributes mismatch", "its domain is protected in another way",
     "use credentials from one 'orvane keys init' on both sides"},
    {"Process handshake failed: Failed to finalize digest context",
     "its key is not that of its certificate",
     "copy its folder again from where the authority made it"},
};

/// @return the subject of the certificate, as far as the report has it
std::string_view subject_in(std::string_view report) {
    for (const std::string_view mark : {"subject: /", "expired for ", "started yet for "}) {
        const std::size_t begin = report.find(mark);
        if (begin != std::string_view::npos) {
            const std::string_view subject = report.substr(begin + mark.size());
            return subject.substr(0, std::min(subject.find("(code"), subject.find(" (")));
        }
    }
    return {};
}

}  // namespace

std::optional<Refusal> refusal_of(std::string_view report) {
    for (const Row& row : rows) {
        if (report.find(row.part) == std::string_view::npos) {
            continue;
        }
        const std::string_view subject = subject_in(report);
        std::string who =
            subject.empty() ? "a participant of the domain" : displayable(std::string{subject});
        return Refusal{who + " is refused: " + std::string{row.what}, std::string{row.remedy}};
    }
    return std::nullopt;
}

}  // namespace orvane::tools
