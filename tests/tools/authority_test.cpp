#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "tests/tools/plant.hpp"
#include "tools/security/credential_files.hpp"
#include "tools/security/credential_list.hpp"

namespace orvane::tools {
namespace {

TEST_F(Plant, ANameIsRevokedWithAllItsCertificatesInAllFolders) {
    ASSERT_EQ(issue("p", Role::application), "");
    ASSERT_EQ(issue("p.1", Role::application), "");
    const std::string first = bytes_of(path("p", certificate_file));
    std::string error;
    {
        const auto authority = Authority::open(directory(), error);
        ASSERT_EQ(authority->renew("p", 30, now + day, error), Status::ok) << error;
        const auto told = authority->revoke("p", now + day, error);
        ASSERT_TRUE(told) << error;
        EXPECT_EQ(told->names, (std::vector<std::string>{"p", "p.1"}));
        EXPECT_EQ(authority->renew("p", 30, now + day, error), Status::failed);
        EXPECT_FALSE(authority->revoke("nobody", now, error));
    }
    EXPECT_NE(findings("p", {}, now + day).find("certificate.pem: revoked"), std::string::npos);
    EXPECT_EQ(findings("p.1", {}, now + day), "");
    const auto authority = load_certificate(path("p.1", authority_file).string(), error);
    const auto list = load_revocation_list(path("p.1", revoked_file).string(), **authority, error);
    EXPECT_TRUE(is_revoked(**list, *read_certificate(first))) << "the one before the renewal";
}

TEST_F(Plant, AListIsOfAllThatWasIssuedAndSaysWhatIsStrange) {
    for (const char* name : {"bob", "eve", "gone", "kim"}) {
        ASSERT_EQ(issue(name, Role::viewer), "");
    }
    ASSERT_EQ(issue("max", Role::viewer, "foreign"), "");
    fs::copy(folder_ / "foreign" / "max", path("max"));
    fs::rename(path("bob"), path("bobby"));
    fs::remove_all(path("gone"));
    copy(folder_ / "foreign" / "max", path("kim"), permissions_file);
    std::string error;
    {
        const auto authority = Authority::open(directory(), error);
        ASSERT_EQ(authority->renew("eve", 30, now + day, error), Status::ok) << error;
        ASSERT_TRUE(authority->revoke("gone", now, error)) << error;
    }
    const auto entries = list_credentials(directory(), error);
    ASSERT_TRUE(entries) << error;
    std::string text;
    for (const CredentialEntry& entry : *entries) {
        text += entry.name + ' ' + entry.role + (entry.is_revoked ? " revoked" : "") +
                (entry.is_elsewhere ? " elsewhere" : "") + ' ' +
                entry.problem.substr(0, entry.problem.find(':')) + '\n';
    }
    EXPECT_EQ(text, "eve viewer \nbobby  is CN=bob\nkim  " +
                        path("kim", permissions_file).string() +
                        "\nmax  of another authority\nbob viewer elsewhere \n"
                        "gone viewer revoked elsewhere \nauthority  \n");
}

TEST_F(Plant, ARevocationReachesWhoeverItCan) {
    const auto revoke = [&](const std::string& name) {
        std::string error;
        const auto told = Authority::open(directory(), error)->revoke(name, now, error);
        EXPECT_TRUE(told) << error;
        return told.value_or(Revocation{});
    };
    for (const char* name : {"ann", "bob", "zoe"}) {
        ASSERT_EQ(issue(name, Role::viewer), "");
    }
    ASSERT_EQ(issue("kim", Role::viewer, "foreign"), "");
    fs::copy(folder_ / "foreign" / "kim", path("kim"));
    fs::copy(path(authority_folder), folder_ / "copy", fs::copy_options::recursive);
    ASSERT_EQ(issue("new", Role::viewer), "");
    fs::remove(path("bob", revoked_file));
    fs::create_directory(path("bob", revoked_file));
    for (const auto& issued : fs::directory_iterator{path(authority_folder, "issued")}) {
        std::ofstream{issued.path()};
    }
    const Revocation told = revoke("ann");
    EXPECT_EQ(told.names, (std::vector<std::string>{"ann", "new", "zoe"}));
    ASSERT_EQ(told.failures.size(), 1U);
    EXPECT_NE(told.failures.front().find("bob/revoked.pem: cannot write"), std::string::npos);
    EXPECT_NE(findings("ann").find("certificate.pem: revoked"), std::string::npos);
    EXPECT_EQ(findings("kim"), "") << "its list is of another authority";

    fs::remove_all(path(authority_folder));
    fs::copy(folder_ / "copy", path(authority_folder), fs::copy_options::recursive);
    revoke("new");
    for (const char* name : {"ann", "new"}) {
        EXPECT_NE(findings(name).find("certificate.pem: revoked"), std::string::npos) << name;
    }
}

TEST_F(Plant, ARenewalKeepsKeySubjectAndRights) {
    ASSERT_EQ(issue("p", WantedRights{Role::application, {}, {"own"}, {}, {4}, {}}), "");
    const Permissions before = permissions_of("p");
    const std::string key = bytes_of(path("p", key_file));
    std::string error;
    ASSERT_EQ(Authority::open(directory(), error)->renew("p", 400, now + 365 * day, error),
              Status::ok)
        << error;
    EXPECT_EQ(findings("p", 4, now + 750 * day), "");
    EXPECT_EQ(bytes_of(path("p", key_file)), key);
    EXPECT_EQ(permissions_of("p").rules, before.rules);
    EXPECT_EQ(permissions_of("p").name, before.name);
}

TEST_F(Plant, ARenewalTakesNothingButTheKeyFromTheFolder) {
    const auto renew = [&](const std::string& name) {
        std::string error;
        return Authority::open(directory(), error)->renew(name, 30, now + day, error) == Status::ok
                   ? ""
                   : error;
    };
    for (const char* plant : {"plant", "foreign"}) {
        ASSERT_EQ(issue("p", Role::viewer, plant), "");
        ASSERT_EQ(issue("q", Role::operator_, plant), "");
    }
    for (const char* file : {authority_file, permissions_authority_file, permissions_file}) {
        copy(folder_ / "foreign" / "q", path("p"), file);
    }
    EXPECT_EQ(renew("p"), "");
    EXPECT_EQ(findings("p", {}, now + day), "");
    EXPECT_EQ(permissions_of("p").name, "viewer");

    std::string error;
    ASSERT_TRUE(Authority::open(directory(), error)->revoke("p", now + day, error));
    copy(path("q"), path("p"), certificate_file);
    EXPECT_NE(renew("p").find("p: revoked"), std::string::npos);
    fs::copy(path("q"), path("r"));
    copy(folder_ / "foreign" / "q", path("q"), key_file);
    for (const std::string name : {"q", "r"}) {
        EXPECT_NE(renew(name).find(name + "/key.pem: no key of credentials"), std::string::npos);
    }
}

TEST_F(Plant, WhatIsThereStaysAndNothingIsHalfMade) {
    ASSERT_EQ(issue("p", Role::application), "");
    const std::string key = bytes_of(path("p", key_file));
    EXPECT_NE(issue("p", Role::application).find("exists already"), std::string::npos);
    EXPECT_EQ(bytes_of(path("p", key_file)), key);
    std::string error;
    EXPECT_EQ(Authority::create(directory(), {{}}, now, error), Status::failed);
    fs::remove(path("authority", revoked_file));
    EXPECT_NE(issue("q", Role::application).find("revoked.pem"), std::string::npos);
    std::size_t folders = 0;
    for ([[maybe_unused]] const auto& each : fs::directory_iterator{directory()}) {
        ++folders;
    }
    EXPECT_EQ(folders, 2U) << "p and authority";
}

TEST_F(Plant, TheClockHasToBeThatOfTheAuthority) {
    constexpr std::int64_t end = now + std::int64_t{7305} * day;
    const auto authority = directory();
    const struct {
        std::int64_t at, days;
        const char* error;
    } rows[] = {
        {0, 365, "valid from 2027-01-15T07:00:00Z on, and it is 1970-01-01T00:00:00Z"},
        {end - 9 * day, 10, "10 days: expected 1 to 9, because"},
        {now, 0, "0 days: expected 1 to 7305"},
        {end - 1, 1,
         "authority/certificate.pem: ends at 2047-01-15T08:00:00Z: make a new authority"},
        {end - day, 1, ""},
    };
    for (const auto& row : rows) {
        std::string error;
        const Status status =
            Authority::open(authority, error)
                ->issue({"p", "own", {{true, {{}}, {}}}, row.days}, row.at, error);
        EXPECT_EQ(status == Status::ok, std::string{row.error}.empty());
        EXPECT_NE(error.find(row.error), std::string::npos) << error;
    }
    std::string error;
    EXPECT_EQ(Authority::create((folder_ / "old").string(), {{}}, day, error), Status::failed);
    EXPECT_FALSE(fs::exists(folder_ / "old"));
}

TEST_F(Plant, AnAuthorityIsUsedByOneProcessWhichRemovesWhatKilledOnesLeft) {
    const auto is_free = [&] {
        const int folder = open(path(authority_folder).c_str(), O_RDONLY | O_DIRECTORY);
        const bool free = flock(folder, LOCK_EX | LOCK_NB) == 0;
        close(folder);
        return free;
    };
    EXPECT_TRUE(is_free());
    ASSERT_EQ(issue("p", Role::viewer), "");
    const fs::path left[] = {path(".q.1.orvane-aB3xyZ"), path("authority", ".issued.orvane-aB3xyZ"),
                             path("p", ".revoked.pem.orvane-aB3xyZ")};
    const fs::path others[] = {path(".backup"), path(".q.orvane-aB3xyZ1"), path("q.orvane-aB3xyZ")};
    for (const auto& folder : left) {
        fs::create_directory(folder);
        std::ofstream{folder / key_file};
    }
    for (const auto& folder : others) {
        fs::create_directory(folder);
    }
    std::string error;
    {
        const auto authority = Authority::open(directory(), error);
        EXPECT_FALSE(is_free());
    }
    EXPECT_TRUE(is_free());
    for (const auto& folder : left) {
        EXPECT_FALSE(fs::exists(folder)) << folder;
    }
    for (const auto& folder : others) {
        EXPECT_TRUE(fs::exists(folder)) << folder;
    }
    fs::rename(path(authority_folder), path(".authority.orvane-aB3xyZ"));
    EXPECT_EQ(Authority::create(directory(), {{}}, now, error), Status::ok) << error;
    EXPECT_FALSE(fs::exists(path(".authority.orvane-aB3xyZ")));
}

TEST_F(Plant, AnAuthorityWithAKeyThatDoesNotFitIsNotUsed) {
    for (const char* file : {"key.pem", "permissions_key.pem"}) {
        const fs::path own = fs::path{directory(file)} / authority_folder;
        copy(path(authority_folder), own, file);
        std::string error;
        EXPECT_FALSE(Authority::open(directory(file), error));
        EXPECT_NE(error.find(std::string{file} + ": not the key of"), std::string::npos) << error;
    }
}

TEST_F(Plant, ANameGetsNoOtherRightsWhileEarlierPermissionsHold) {
    ASSERT_EQ(issue("p", Role::operator_), "");
    fs::remove_all(path("p"));
    EXPECT_NE(issue("p", Role::viewer).find("other permissions"), std::string::npos);
    EXPECT_EQ(issue("p", Role::operator_), "");
}

}  // namespace
}  // namespace orvane::tools
