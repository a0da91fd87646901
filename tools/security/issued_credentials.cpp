#include "tools/security/issued_credentials.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "tools/security/credential_files.hpp"
#include "tools/security/permissions_document.hpp"
#include "tools/security/whole_file.hpp"

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

constexpr const char* certificate_ending = ".pem";
constexpr const char* permissions_ending = ".p7s";

Result<std::vector<Permissions>> load_grants(const std::string& path, X509& authority,
                                             std::string& error) {
    const Result<std::string> xml = load_signed_document(path, authority, error);
    if (!xml) {
        return std::nullopt;
    }
    Result<std::vector<Permissions>> grants = parse_permissions(*xml, error);
    if (!grants) {
        error = fmt::format("{}: {}", path, error);
    }
    return grants;
}

}  // namespace

Status IssuedCredentials::keep(const std::string& name, X509& certificate,
                               const std::string& permissions, std::string& error) const {
    // Permissions that nobody has yet do no harm. A certificate without them could not be renewed.
    const std::string base = base_of(name, certificate);
    if (write_whole_file(base + permissions_ending, permissions, public_mode, error) ==
        Status::failed) {
        return Status::failed;
    }
    return write_whole_file(base + certificate_ending, to_pem(certificate), public_mode, error);
}

Result<std::vector<std::string>> IssuedCredentials::names(std::string& error) const {
    Result<std::vector<std::string>> names = paths("", certificate_ending, error);
    if (names) {
        for (std::string& name : *names) {
            name = fs::path{name}.stem().stem().string();
        }
        std::sort(names->begin(), names->end());
        names->erase(std::unique(names->begin(), names->end()), names->end());
    }
    return names;
}

Result<std::vector<Certificate>> IssuedCredentials::certificates(const std::string& name,
                                                                 std::string& error) const {
    const Result<std::vector<std::string>> files = paths(name, certificate_ending, error);
    if (!files) {
        return std::nullopt;
    }
    std::vector<Certificate> certificates;
    for (const std::string& path : *files) {
        Result<Certificate> certificate = load_certificate(path, error);
        if (!certificate) {
            return std::nullopt;
        }
        certificates.push_back(*std::move(certificate));
    }
    return certificates;
}

Result<std::vector<std::string>> IssuedCredentials::serials(const std::string& name,
                                                            std::string& error) const {
    Result<std::vector<std::string>> files = paths(name, certificate_ending, error);
    if (files) {
        for (std::string& file : *files) {
            file = fs::path{file}.stem().extension().string().substr(1);
        }
    }
    return files;
}

Result<std::vector<Permissions>> IssuedCredentials::permissions(const std::string& name,
                                                                X509& authority,
                                                                std::string& error) const {
    const Result<std::vector<std::string>> files = paths(name, permissions_ending, error);
    if (!files) {
        return std::nullopt;
    }
    std::vector<Permissions> permissions;
    for (const std::string& path : *files) {
        const Result<std::vector<Permissions>> grants = load_grants(path, authority, error);
        if (!grants) {
            return std::nullopt;
        }
        permissions.insert(permissions.end(), grants->begin(), grants->end());
    }
    return permissions;
}

Result<Permissions> IssuedCredentials::permissions_with(X509& certificate, const std::string& name,
                                                        X509& authority, std::string& error) const {
    const std::string path = base_of(name, certificate) + permissions_ending;
    const Result<std::vector<Permissions>> grants = load_grants(path, authority, error);
    if (!grants) {
        return std::nullopt;
    }
    if (grants->size() != 1) {
        error = path + ": expected one grant";
        return std::nullopt;
    }
    return grants->front();
}

std::string IssuedCredentials::base_of(const std::string& name, const X509& certificate) const {
    return join(folder_, name + '.' + serial_of(certificate));
}

Result<std::vector<std::string>> IssuedCredentials::paths(const std::string& name,
                                                          const char* ending,
                                                          std::string& error) const {
    std::vector<std::string> paths;
    std::error_code failure;
    for (fs::directory_iterator each{folder_, failure}, end; !failure && each != end;
         each.increment(failure)) {
        // A name may have dots, a serial number has none.
        const fs::path file = each->path().filename();
        if (file.extension() == ending && (name.empty() || file.stem().stem() == name)) {
            paths.push_back(each->path().string());
        }
    }
    if (failure) {
        error = fmt::format("{}: cannot read: {}", folder_, failure.message());
        return std::nullopt;
    }
    return paths;
}

X509& latest_of(const std::vector<Certificate>& certificates) {
    return **std::max_element(certificates.begin(), certificates.end(),
                              [](const Certificate& left, const Certificate& right) {
                                  return validity_of(*left).from < validity_of(*right).from;
                              });
}

}  // namespace orvane::tools
