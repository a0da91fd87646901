#include "tools/subcommands/domain_access.hpp"

#include <gtest/gtest.h>

#include <chrono>

#include "tests/tools/plant.hpp"
#include "tools/subcommands/silence.hpp"

namespace orvane::tools {
namespace {

/// With the true time, which the checks ask for.
class Access : public Plant {
protected:
    Access() {
        std::string error;
        EXPECT_EQ(Authority::create(plant, {{}}, today - year, error), Status::ok) << error;
    }

    void issue(const std::string& name, const WantedRights& wanted, std::int64_t time) {
        std::string error;
        const auto rules = rules_of(wanted, name, validity_in_days(365, time), error);
        const auto authority = Authority::open(plant, error);
        ASSERT_TRUE(rules && authority) << error;
        ASSERT_EQ(authority->issue({name, grant_name_of(wanted), *rules}, time, error), Status::ok)
            << error;
    }

    static constexpr std::int64_t year = 365 * day;
    const std::int64_t today =
        std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    const std::string plant = (folder_ / "today").string();
};

TEST_F(Access, IsRefusedInWordsWhereARightIsMissing) {
    issue("eve", {.role = Role::viewer}, today);
    issue("bob", {.role = Role::operator_, .domains = {7}}, today);
    issue("pump", {.role = Role::application}, today);
    issue("ear", {.role = Role::viewer, .topics = "qel/orvane"}, today);
    const struct {
        std::string name;
        DomainUse use;
        std::int32_t domain_id;
        const char* words;  ///< NULL: allowed
        std::size_t unreadable = 0;
    } rows[] = {
        {"eve", DomainUse::read_messages, 7, nullptr},
        {"eve", DomainUse::read_states, 230, nullptr},
        {"eve", DomainUse::command, 7, "eve (viewer) may not send commands in domain 7"},
        {"eve", DomainUse::publish, 7, "may not publish"},
        {"bob", DomainUse::command, 7, nullptr},
        {"bob", DomainUse::read_messages, 8, "nothing is allowed in domain 8, but in 7"},
        {"pump", DomainUse::read_messages, 7, "may not read messages"},
        {"pump", DomainUse::read_states, 7, "may not read States"},
        {"ear", DomainUse::read_messages, 7, nullptr, 2},
        {"ear", DomainUse::read_states, 7, "may not read States"},
        {"nobody", DomainUse::read_messages, 7, "no such folder"},
    };
    for (const auto& row : rows) {
        DomainOptions domain{.id = row.domain_id, .security = plant + "/" + row.name};
        testing::internal::CaptureStderr();
        const Status status = check_access(domain, row.use);
        const std::string told = testing::internal::GetCapturedStderr();
        EXPECT_EQ(status, row.words == nullptr ? Status::ok : Status::failed) << row.name << told;
        EXPECT_NE(told.find(row.words == nullptr ? "" : row.words), std::string::npos) << told;
        EXPECT_EQ(told.find("\n  -> ") != std::string::npos, row.words != nullptr) << told;
        EXPECT_EQ(domain.unreadable.size(), row.unreadable) << row.name;
    }
}

TEST_F(Access, EndsWhenTheCredentialsDo) {
    constexpr std::int64_t hour = 3600;
    issue("old", {.role = Role::viewer}, today - year + hour);
    DomainOptions domain{.id = 0, .security = plant + "/old"};
    testing::internal::CaptureStderr();
    EXPECT_EQ(check_access(domain, DomainUse::read_messages), Status::ok);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "") << "a warning that it ends soon";
    EXPECT_EQ(domain.expiry.value_or(0), today + hour);
}

TEST(SilentParticipants, AreToldAsFarAsTheyConcernTheUser) {
    const struct {
        const char* security;
        ParticipantCensus census;
        bool is_heard;
        const char* words;  ///< NULL: nothing
        bool is_failure;
    } rows[] = {
        {"", {.secured = 0, .unsecured = 3}, false, nullptr, false},
        {"", {.secured = 2, .unsecured = 3}, false, "2 participants of domain 4 may talk", true},
        {"", {.secured = 2, .unsecured = 3}, true, nullptr, false},
        {"f", {.secured = 1, .unsecured = 0}, true, nullptr, false},
        {"f", {.secured = 1, .unsecured = 0}, false, "among 1 participant of", true},
        {"f", {.secured = 1, .unsecured = 1}, true, "without credentials is not heard", false},
        {"f", {}, false, nullptr, false},
    };
    for (const auto& row : rows) {
        const DomainOptions domain{.id = 4, .security = row.security};
        testing::internal::CaptureStderr();
        EXPECT_EQ(tell_of_silent(domain, row.census, row.is_heard), row.is_failure);
        const std::string told = testing::internal::GetCapturedStderr();
        EXPECT_EQ(told.empty(), row.words == nullptr) << told;
        EXPECT_NE(told.find(row.words == nullptr ? "" : row.words), std::string::npos) << told;
    }
}

}  // namespace
}  // namespace orvane::tools
