#include "tools/security/credential_files.hpp"

#include <fmt/format.h>
#include <openssl/crypto.h>

#include <filesystem>

#include "tools/security/signed_document.hpp"
#include "tools/security/whole_file.hpp"

namespace orvane::tools {

std::string join(const std::string& folder, const std::string& name) {
    return (std::filesystem::path{folder} / name).string();
}

Result<Certificate> load_certificate(const std::string& path, std::string& error) {
    const Result<std::string> pem = read_whole_file(path, error);
    if (!pem) {
        return std::nullopt;
    }
    Certificate certificate = read_certificate(*pem);
    if (!certificate) {
        error = path + ": no certificate in PEM";
        return std::nullopt;
    }
    return certificate;
}

Result<Key> load_key(const std::string& path, std::string& error) {
    Result<std::string> pem = read_whole_file(path, error);
    if (!pem) {
        return std::nullopt;
    }
    std::string& bytes = *pem;
    Key key = read_key(bytes);
    OPENSSL_cleanse(bytes.data(), bytes.size());
    if (!key) {
        error = path + ": no private key in PEM without a password";
        return std::nullopt;
    }
    return key;
}

Result<RevocationList> load_revocation_list(const std::string& path, X509& authority,
                                            std::string& error) {
    const Result<std::string> pem = read_whole_file(path, error);
    if (!pem) {
        return std::nullopt;
    }
    RevocationList list = read_revocation_list(*pem);
    if (!list || !is_signed_by(*list, authority)) {
        error = path + ": no list of revoked certificates that the authority signed";
        return std::nullopt;
    }
    return list;
}

Result<std::string> load_signed_document(const std::string& path, X509& authority,
                                         std::string& error) {
    const Result<std::string> document = read_whole_file(path, error);
    if (!document) {
        return std::nullopt;
    }
    Result<std::string> text = read_signed_document(*document, authority, error);
    if (!text) {
        error = fmt::format("{}: {}", path, error);
    }
    return text;
}

}  // namespace orvane::tools
