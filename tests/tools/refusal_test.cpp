#include "tools/domain/refusal.hpp"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

TEST(Refusals, AreSaidInWordsWithWhoIsRefused) {
    const struct {
        const char* report;
        const char* cause;
    } rows[] = {
        {"Begin handshake reply failed: Certificate not valid: error: unable to get local issuer "
         "certificate; subject: /CN=o1/O=Plant(code: 200)",
         "CN=o1/O=Plant is refused: its certificate is of another authority"},
        {"Process handshake failed: Certificate not valid: error: certificate revoked; subject: "
         "/CN=eve(code: 200)",
         "CN=eve is refused: its certificate is revoked"},
        {"Permissions validity period expired for CN=eve (expired: 2026-11-01T00:00:00Z)(code: "
         "147)",
         "CN=eve is refused: its permissions have expired"},
        {"Process handshake failed: Failed to finalize digest context: (code: 200)",
         "a participant of the domain is refused: its key is not that of its certificate"},
        {"Certificate not valid: error: certificate has expired; subject: /CN=\x1b[31m(code: 200)",
         "CN=\\x1b[31m is refused: its certificate has expired"},
    };
    for (const auto& row : rows) {
        const auto refusal = refusal_of(row.report);
        ASSERT_TRUE(refusal) << row.report;
        EXPECT_EQ(refusal->cause, row.cause);
        EXPECT_NE(refusal->remedy, "");
    }
    EXPECT_FALSE(refusal_of("Remote secure participant 1:2:3:4 not allowed"));
    EXPECT_FALSE(refusal_of(""));
}

}  // namespace
}  // namespace orvane::tools
