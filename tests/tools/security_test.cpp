#include <fcntl.h>
#include <gtest/gtest.h>
#include <openssl/pem.h>
#include <orvane/admin.h>
#include <orvane/statistics.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "tools/security/authority.hpp"
#include "tools/security/credential_check.hpp"
#include "tools/security/credential_files.hpp"
#include "tools/security/credential_list.hpp"
#include "tools/security/credentials.hpp"
#include "tools/security/permissions_document.hpp"
#include "tools/security/signed_document.hpp"
#include "tools/security/wanted_rights.hpp"

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t now = 1'800'000'000;
constexpr std::int64_t day = 86400;
constexpr const char* log_topic = QEL_KX_LOG_TOPIC_NAME;
constexpr const char* request_topic = QEL_KX_COMMAND_REQUEST_TOPIC_NAME;

std::string bytes_of(const fs::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream{path}.rdbuf();
    return bytes.str();
}

void replace_in(const fs::path& path, const std::string& from, const std::string& to) {
    std::string bytes = bytes_of(path);
    ASSERT_NE(bytes.find(from), std::string::npos);
    std::ofstream{path} << bytes.replace(bytes.find(from), from.size(), to);
}

void copy(const fs::path& from, const fs::path& to, const char* file) {
    fs::copy(from / file, to / file, fs::copy_options::overwrite_existing);
}

mode_t mode_of(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

class Plant : public testing::Test {
protected:
    Plant() {
        std::string name = (fs::temp_directory_path() / "orvane-security-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~Plant() override { fs::remove_all(folder_); }

    std::string directory(const char* name = "plant") {
        std::string path = (folder_ / name).string();
        std::string error;
        if (!fs::exists(path)) {
            EXPECT_EQ(Authority::create(path, {{}}, now, error), Status::ok) << error;
        }
        return path;
    }

    /// @return the error, empty for none
    std::string issue(const std::string& name, const WantedRights& wanted,
                      const char* plant = "plant") {
        std::string error;
        const auto rules = rules_of(wanted, name, validity_in_days(365, now), error);
        if (!rules) {
            return error;
        }
        const auto authority = Authority::open(directory(plant), error);
        return authority && authority->issue({name, grant_name_of(wanted), *rules}, now, error) ==
                                Status::ok
                   ? ""
                   : error;
    }
    std::string issue(const std::string& name, Role role, const char* plant = "plant") {
        return issue(name, WantedRights{role, {}, {}, {}, {}, {}}, plant);
    }

    fs::path path(const std::string& name, const char* file = "") {
        return fs::path{directory()} / name / file;
    }

    Permissions permissions_of(const std::string& name) {
        std::string error;
        const auto permissions = read_permissions(path(name).string(), error);
        EXPECT_TRUE(permissions) << error;
        return permissions.value_or(Permissions{});
    }

    /// What is wrong, a line each, but for what this machine lacks.
    std::string findings(const std::string& name, std::optional<std::int32_t> domain_id = {},
                         std::int64_t at = now) {
        std::string text;
        for (const auto& finding : check_credentials(path(name).string(), domain_id, at)) {
            if (finding.cause.find("plug-in") == std::string::npos) {
                EXPECT_FALSE(finding.remedy.empty());
                text += (finding.fatal ? "" : "warning: ") + finding.cause + '\n';
            }
        }
        return text;
    }

    fs::path folder_;
};

TEST_F(Plant, RolesMayDoWhatTheyAreForAndNothingElse) {
    const std::string none;
    const struct {
        std::string topic, publishers, subscribers;
    } rows[] = {
        {log_topic, "application ", "viewer operator "},
        {QEL_KX_STATE_TOPIC_NAME, "application ", "viewer operator "},
        {QEL_KX_STATISTICS_TOPIC_NAME, "application ", "viewer operator "},
        {request_topic, "operator ", "application "},
        {QEL_KX_COMMAND_RESPONSE_TOPIC_NAME, "application ", "operator "},
        {"qel/orvane2", none, none},
    };
    for (const char* const& role : role_names) {
        ASSERT_EQ(issue(role, static_cast<Role>(&role - role_names)), "");
    }
    for (const auto& row : rows) {
        std::string publishers;
        std::string subscribers;
        for (const std::string role : role_names) {
            const Permissions permissions = permissions_of(role);
            EXPECT_EQ(permissions.name, role);
            publishers += permissions.may_publish(row.topic, 7) ? role + ' ' : none;
            subscribers += permissions.may_subscribe(row.topic, 7) ? role + ' ' : none;
        }
        EXPECT_EQ(publishers, row.publishers) << row.topic;
        EXPECT_EQ(subscribers, row.subscribers) << row.topic;
    }
}

TEST_F(Plant, RightsAreLimitedToTopicsAndDomainsAndExtended) {
    ASSERT_EQ(issue("p", WantedRights{Role::viewer, "*/s*", {"own/*"}, {"in?"}, {3, 5}, {}}), "");
    const Permissions permissions = permissions_of("p");
    EXPECT_EQ(permissions.name, "viewer+own");
    EXPECT_TRUE(permissions.may_subscribe(QEL_KX_STATE_TOPIC_NAME, 3));
    EXPECT_FALSE(permissions.may_subscribe(log_topic, 3));
    EXPECT_TRUE(permissions.may_publish("own/a/b", 5));
    EXPECT_TRUE(permissions.may_subscribe("in1", 5));
    EXPECT_FALSE(permissions.may_publish("in1", 5));
    EXPECT_FALSE(permissions.may_publish("own/a/b", 4));
    EXPECT_TRUE(permissions.may_join(5));
    EXPECT_FALSE(permissions.may_join(4));
    EXPECT_EQ(text_of(permissions.domains()), "3, 5");
    EXPECT_NE(issue("q", WantedRights{Role::viewer, "x*", {}, {}, {}, {}}).find("'x*'"),
              std::string::npos);
}

TEST_F(Plant, KeysAreForTheirOwnersOnlyWhateverTheUmask) {
    for (const mode_t mask : {0U, 0777U}) {
        const mode_t before = umask(mask);
        const std::string name = "p" + std::to_string(mask);
        EXPECT_EQ(issue(name, Role::application, name.c_str()), "");
        umask(before);
        for (const std::string& folder : {name, std::string{"authority"}}) {
            const fs::path made = folder_ / name / folder;
            EXPECT_EQ(mode_of(made), 0700U);
            EXPECT_EQ(mode_of(made / key_file), 0600U);
            EXPECT_EQ(mode_of(made / certificate_file), 0644U);
        }
        EXPECT_EQ(mode_of(folder_ / name / authority_folder / "permissions_key.pem"), 0600U);
    }
}

TEST_F(Plant, ACheckNamesEachFaultAndItsFile) {
    using Spoil = std::function<void(const fs::path& folder)>;
    ASSERT_EQ(issue("f", Role::operator_, "foreign"), "");
    const auto foreign = [&](const char* file) -> Spoil {
        return [&, file](const fs::path& own) { copy(folder_ / "foreign" / "f", own, file); };
    };
    const Spoil nothing = [](const fs::path&) {};
    const struct {
        const char* name;
        Spoil spoil;
        const char* finding;
        std::int64_t at = now;
        std::int32_t domain_id = 0;
    } rows[] = {
        {"good", nothing, ""},
        {"early", nothing, "certificate.pem: valid from", now - day},
        {"late", nothing, "certificate.pem: expired at", now + 366 * day},
        {"late_permissions", nothing, "permissions.p7s: expired at", now + 366 * day},
        {"domain", nothing, "permissions.p7s: nothing is allowed in domain 231", now, 231},
        {"governed", nothing, "governance.p7s: nothing is allowed in domain 232", now, 232},
        {"foreign", foreign(authority_file), "certificate.pem: not issued by the authority"},
        {"foreign_permissions_authority", foreign(permissions_authority_file),
         "permissions.p7s: not signed by the authority"},
        {"one_authority",
         [](const fs::path& own) {
             fs::copy(own / authority_file, own / permissions_authority_file,
                      fs::copy_options::overwrite_existing);
         },
         "everybody who has one of its certificates can make permissions"},
        {"foreign_permissions", foreign(permissions_file),
         "permissions.p7s: not signed by the authority"},
        {"forged", [](const fs::path& own) { replace_in(own / permissions_file, "DENY", "ALLOW"); },
         "permissions.p7s: not signed by the authority"},
        {"ungoverned",
         [](const fs::path& own) { replace_in(own / governance_file, "ENCRYPT", "NONE"); },
         "governance.p7s: not signed by the authority"},
        {"list", foreign(revoked_file), "revoked.pem: no list"},
        {"key", foreign(key_file), "key.pem: not the key of certificate.pem"},
        {"warned_of_end", nothing, "certificate.pem: expires at", now + 352 * day},
        {"warned_of_mode",
         [](const fs::path& own) {
             fs::permissions(own / key_file, fs::perms::others_read, fs::perm_options::add);
         },
         "mode 0604, expected 0600"},
        {"missing", [](const fs::path& own) { fs::remove(own / key_file); },
         "key.pem: cannot read"},
        {"no_list", [](const fs::path& own) { fs::remove(own / revoked_file); },
         "revoked.pem: cannot read"},
        {"rubbish", [](const fs::path& own) { std::ofstream{own / certificate_file}; },
         "certificate.pem: no certificate"},
        {"folder", [](const fs::path& own) { fs::remove_all(own); }, "no such folder"},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(issue(row.name, Role::application), "");
        row.spoil(path(row.name));
        const std::string found = findings(row.name, row.domain_id, row.at);
        EXPECT_NE(found.find(row.finding), std::string::npos) << row.name << ": " << found;
        EXPECT_EQ(found.empty(), std::string{row.finding}.empty()) << row.name << ": " << found;
        EXPECT_EQ(found.starts_with("warning: "), std::string{row.name}.starts_with("warned"))
            << found;
    }
}

/// Whether the engine of another participant takes it: from each who has a certificate of the
/// authority of permissions.
bool is_taken(const std::string& document, const std::string& folder) {
    const auto properties = security_properties(folder);
    const auto authority =
        std::find_if(properties.begin(), properties.end(), [](const SecurityProperty& property) {
            return property.name == "dds.sec.access.permissions_ca";
        });
    const Certificate certificate =
        read_certificate(bytes_of(authority->value.substr(sizeof "file:" - 1)));
    const std::unique_ptr<X509_STORE, OpensslDeleter<X509_STORE_free>> store{X509_STORE_new()};
    X509_STORE_add_cert(store.get(), certificate.get());
    X509_VERIFY_PARAM_set_time(X509_STORE_get0_param(store.get()), now);
    BIO* content = nullptr;
    const Pkcs7 signature{SMIME_read_PKCS7(reader_of(document).get(), &content)};
    const Bio text{content};
    const bool is_taken = PKCS7_verify(signature.get(), nullptr, store.get(), text.get(),
                                       new_buffer().get(), PKCS7_TEXT) == 1;
    take_openssl_error();
    return is_taken;
}

TEST_F(Plant, NobodySignsPermissionsWithACertificate) {
    ASSERT_EQ(issue("p", Role::viewer), "");
    const std::string folder = path("p").string();
    EXPECT_TRUE(is_taken(bytes_of(path("p", permissions_file)), folder));
    EXPECT_TRUE(is_taken(bytes_of(path("p", governance_file)), folder));
    for (const char* name : {"p", "authority"}) {
        const Signer signer{read_key(bytes_of(path(name, key_file))),
                            read_certificate(bytes_of(path(name, certificate_file)))};
        EXPECT_FALSE(is_taken(sign_document("text", signer), folder)) << name;
    }
}

TEST_F(Plant, PermissionsOfAnotherNameAreNoUse) {
    ASSERT_EQ(issue("viewer", Role::viewer), "");
    ASSERT_EQ(issue("operator", Role::operator_), "");
    copy(path("operator"), path("viewer"), permissions_file);
    EXPECT_NE(findings("viewer").find("no grant for CN=viewer"), std::string::npos);
}

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

TEST(Credentials, NamesAreFoldersThatNoPathLeaves) {
    for (const char* name : {"pump-1", "a", "P_2.x", "authority2"}) {
        EXPECT_TRUE(is_credential_name(name)) << name;
    }
    for (const std::string& name :
         {std::string{}, std::string{".."}, std::string{".x"}, std::string{"a/b"},
          std::string{"a b"}, std::string{"authority"}, std::string(65, 'a'), std::string{"a,b"},
          std::string{"ä"}}) {
        EXPECT_FALSE(is_credential_name(name)) << name;
    }
}

}  // namespace
}  // namespace orvane::tools
