#include "tests/security/plant.hpp"

#include <stdlib.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "tests/integration/programs.hpp"
#include "tools/security/credential_files.hpp"
#include "tools/security/credentials.hpp"
#include "tools/security/permissions_document.hpp"
#include "tools/security/signed_document.hpp"

namespace orvane::tests {
namespace {

namespace fs = std::filesystem;

std::string content_of(const fs::path& path) {
    std::ifstream file{path};
    return {std::istreambuf_iterator<char>{file}, {}};
}

std::string written(const fs::path& path, const std::string& content) {
    std::ofstream{path} << content;
    return path;
}

std::string replaced(std::string text, const std::string& old, const std::string& by) {
    const std::size_t found = text.find(old);
    if (found == std::string::npos) {
        throw std::runtime_error{"no " + old + " in: " + text};
    }
    return text.replace(found, old.size(), by);
}

/// Ends the test when an authority refuses something.
void require(bool succeeded, const std::string& error) {
    if (!succeeded) {
        throw std::runtime_error{error};
    }
}

tools::Authority open(const fs::path& directory) {
    std::string error;
    auto authority = tools::Authority::open(directory, error);
    require(authority.has_value(), error);
    return *std::move(authority);
}

}  // namespace

Plant::Plant() {
    constexpr std::int64_t thirty_days = std::int64_t{30} * 24 * 3600;
    begin_ = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now()) - thirty_days;
    std::string name = fs::temp_directory_path() / "orvane-plant-XXXXXX";
    root_ = mkdtemp(name.data());
    for (const char* authority : {"plant", "elsewhere"}) {
        std::string error;
        require(
            tools::Authority::create(root_ / authority, {{}}, begin_, error) == tools::Status::ok,
            error);
    }
}

Plant::~Plant() {
    fs::remove_all(root_);
}

std::vector<tools::TopicRight> Plant::all_rights() {
    auto rights = tools::rights_of(tools::Role::application);
    for (tools::TopicRight& right : tools::rights_of(tools::Role::operator_)) {
        rights.push_back(std::move(right));
    }
    return rights;
}

void Plant::issue(const std::string& name, const std::vector<tools::TopicRight>& rights,
                  const Terms& terms) const {
    const tools::CredentialRequest request{
        name, "own", {{true, terms.domains, rights}}, terms.days};
    std::string error;
    require(open(root_ / terms.authority).issue(request, terms.from.value_or(begin_), error) ==
                tools::Status::ok,
            error);
}

void Plant::revoke(const std::string& name) const {
    const fs::path list = fs::path{folder(name)} / tools::revoked_file;
    const std::string before = content_of(list);
    std::string error;
    require(open(root_ / "plant").revoke(name, begin_, error).has_value(), error);
    written(list, before);
}

std::string Plant::changed_permissions(const std::string& name) const {
    const std::string signed_permissions =
        content_of(fs::path{folder(name)} / tools::permissions_file);
    return written(root_ / "changed.p7s",
                   replaced(signed_permissions, "</allow_rule>",
                            "<publish><topics><topic>*</topic></topics></publish></allow_rule>"));
}

std::string Plant::own_permissions(const std::string& name) const {
    const fs::path own = folder(name);
    std::string error;
    auto permissions = tools::read_permissions(own, error);
    auto key = tools::load_key(own / tools::key_file, error);
    auto certificate = tools::load_certificate(own / tools::certificate_file, error);
    require(permissions && key && certificate, error);
    permissions->rules = {{true, {{}}, all_rights()}};
    return written(root_ / "own.p7s",
                   tools::sign_document(tools::permissions_xml(*permissions),
                                        {*std::move(key), *std::move(certificate)}));
}

Words Plant::launcher_with(const std::string& profile) const {
    const std::string file = root_ / (std::to_string(std::hash<std::string>{}(profile)) + ".xml");
    return {"env", "PEXA_QOS_PROFILES=" + written(file, profile)};
}

Words Plant::launcher(const std::string& folder) const {
    return launcher_with(tools::security_profile(folder));
}

Words Plant::dishonest_launcher(const std::string& folder) const {
    return launcher_with(replaced(tools::security_profile(folder), ">dds_security_ac<",
                                  ">" ORVANE_LENIENT_ACCESS_CONTROL "<"));
}

}  // namespace orvane::tests
