#include "tools/security/credentials.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <pugixml.hpp>
#include <sstream>
#include <string_view>

#include "tools/security/credential_files.hpp"
#include "tools/security/permissions_document.hpp"
#include "tools/security/plug_ins.hpp"

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

/// The grant that is about the subject of the certificate.
Result<Permissions> grant_of(const std::string& subject, const std::string& xml,
                             std::string& error) {
    const Result<std::vector<Permissions>> grants = parse_permissions(xml, error);
    if (!grants) {
        return std::nullopt;
    }
    const auto grant = std::find_if(grants->begin(), grants->end(), [&](const Permissions& each) {
        return each.subject == subject;
    });
    if (grant == grants->end()) {
        error = fmt::format("no grant for {}, the subject of {}", subject, certificate_file);
        return std::nullopt;
    }
    return *grant;
}

}  // namespace

std::vector<SecurityProperty> security_properties(const std::string& folder) {
    const fs::path absolute = fs::absolute(folder).lexically_normal();
    const auto uri = [&](const char* file) { return "file:" + (absolute / file).string(); };
    std::vector<SecurityProperty> properties{
        {"dds.sec.auth.identity_ca", uri(authority_file)},
        {"dds.sec.auth.identity_certificate", uri(certificate_file)},
        {"dds.sec.auth.private_key", uri(key_file)},
        {"org.eclipse.cyclonedds.sec.auth.crl", uri(revoked_file)},
        {"dds.sec.access.permissions_ca", uri(permissions_authority_file)},
        {"dds.sec.access.governance", uri(governance_file)},
        {"dds.sec.access.permissions", uri(permissions_file)},
    };
    constexpr const char* place = "library";
    for (const PlugIn& plug_in : plug_ins) {
        const auto add = [&](const char* what, const std::string& value) {
            properties.push_back(
                {fmt::format("dds.sec.{}.{}.{}", plug_in.part, place, what), value});
        };
        add("path", plug_in.name);
        add("init", std::string{"init_"} + plug_in.function);
        add("finalize", std::string{"finalize_"} + plug_in.function);
    }
    return properties;
}

std::string security_profile(const std::string& folder) {
    pugi::xml_document document;
    pugi::xml_node library = document.append_child("dds").append_child("qos_library");
    library.append_attribute("name").set_value("Security");
    pugi::xml_node profile = library.append_child("qos_profile");
    const std::string name = fs::absolute(folder).lexically_normal().filename().string();
    profile.append_attribute("name").set_value(name.c_str());
    profile.append_attribute("is_default_qos").set_value("true");
    pugi::xml_node list = profile.append_child("domain_participant_qos")
                              .append_child("property")
                              .append_child("value");
    for (const SecurityProperty& property : security_properties(folder)) {
        pugi::xml_node element = list.append_child("element");
        element.append_child("name").text().set(property.name.c_str());
        element.append_child("value").text().set(property.value.c_str());
    }
    std::ostringstream text;
    document.save(text, "    ");
    return text.str();
}

Result<Permissions> read_permissions(const std::string& folder, std::string& error) {
    const Result<Certificate> authority =
        load_certificate(join(folder, permissions_authority_file), error);
    return authority ? read_permissions(folder, **authority, error) : std::nullopt;
}

Result<Permissions> read_permissions(const std::string& folder, X509& authority,
                                     std::string& error) {
    const Result<Certificate> certificate = load_certificate(join(folder, certificate_file), error);
    if (!certificate) {
        return std::nullopt;
    }
    const std::string path = join(folder, permissions_file);
    const Result<std::string> xml = load_signed_document(path, authority, error);
    if (!xml) {
        return std::nullopt;
    }
    Result<Permissions> permissions = grant_of(subject_of(**certificate), *xml, error);
    if (!permissions) {
        error = fmt::format("{}: {}", path, error);
    }
    return permissions;
}

bool is_credential_name(const std::string& name) {
    constexpr std::string_view characters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.-";
    constexpr std::size_t longest = 64;
    return !name.empty() && name.size() <= longest && name.front() != '.' && name.front() != '-' &&
           name.find_first_not_of(characters) == std::string::npos && name != authority_folder;
}

}  // namespace orvane::tools
