#include <openssl/pem.h>
#include <orvane/admin.h>
#include <orvane/statistics.h>
#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <memory>

#include "tests/tools/plant.hpp"
#include "tools/security/signed_document.hpp"

namespace orvane::tools {
namespace {

constexpr const char* log_topic = QEL_KX_LOG_TOPIC_NAME;
constexpr const char* request_topic = QEL_KX_COMMAND_REQUEST_TOPIC_NAME;

void replace_in(const fs::path& path, const std::string& from, const std::string& to) {
    std::string bytes = bytes_of(path);
    ASSERT_NE(bytes.find(from), std::string::npos);
    std::ofstream{path} << bytes.replace(bytes.find(from), from.size(), to);
}

mode_t mode_of(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

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
        {"early_authority", nothing, "authority.pem: valid from", now - day},
        {"late_authority", nothing, "authority.pem: expired at", now + 7306 * day},
        {"late_list", nothing, "revoked.pem: expired at", now + 7306 * day},
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
        // As a folder in one that may not be searched, also for root.
        {"unreachable",
         [](const fs::path& own) {
             fs::remove_all(own);
             fs::create_symlink("unreachable", own.parent_path());
         },
         "unreachable/: cannot read: "},
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

TEST(Certificates, TellWhatHostAndAppTheEngineMakesOfThem) {
    const Validity validity = validity_in_days(1, 0);
    const Certificate pump =
        make_certificate("pump", *make_key(), validity, make_identity_authority(validity));
    EXPECT_EQ(host_and_app_of(*pump), "acbc26c1:a5dd") << "which the engine has been seen to make";
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

TEST(Credentials, NamesAreFoldersThatNoPathLeaves) {
    for (const char* name : {"pump-1", "a", "P_2.x", "authority2"}) {
        EXPECT_TRUE(is_credential_name(name)) << name;
    }
    for (const std::string& name :
         {std::string{}, std::string{".."}, std::string{".x"}, std::string{"-x"},
          std::string{"a/b"}, std::string{"a b"}, std::string{"authority"}, std::string(65, 'a'),
          std::string{"a,b"}, std::string{"ä"}}) {
        EXPECT_FALSE(is_credential_name(name)) << name;
    }
}

}  // namespace
}  // namespace orvane::tools
