#include "tools/security/signed_document.hpp"

#include <memory>

namespace orvane::tools {
namespace {

void free_stack(STACK_OF(X509) * stack) {
    sk_X509_free(stack);
}
using CertificateStack = std::unique_ptr<STACK_OF(X509), OpensslDeleter<free_stack>>;

}  // namespace

std::string sign_document(std::string_view text, const Signer& authority) {
    constexpr int form = PKCS7_TEXT | PKCS7_DETACHED | PKCS7_STREAM;
    const Bio reader = reader_of(text);
    const Pkcs7 signature{require_openssl(
        PKCS7_sign(authority.certificate.get(), authority.key.get(), nullptr, reader.get(), form),
        "PKCS7_sign")};
    const Bio buffer = new_buffer();
    require_openssl(SMIME_write_PKCS7(buffer.get(), signature.get(), reader.get(), form),
                    "SMIME_write_PKCS7");
    return std::string{content_of(*buffer)};
}

Result<std::string> read_signed_document(std::string_view document, X509& authority,
                                         std::string& error) {
    BIO* content = nullptr;
    const Pkcs7 signature{SMIME_read_PKCS7(reader_of(document).get(), &content)};
    const Bio text{content};
    if (!signature || !text) {
        take_openssl_error();
        error = "no signed text in S/MIME (multipart/signed)";
        return std::nullopt;
    }
    const CertificateStack signers{require_openssl(sk_X509_new_null(), "sk_X509_new_null")};
    require_openssl(sk_X509_push(signers.get(), &authority), "sk_X509_push");
    const Bio buffer = new_buffer();
    // The authority's own signature, at any time. The engine takes that of each certificate which
    // the authority has signed, too.
    if (PKCS7_verify(signature.get(), signers.get(), nullptr, text.get(), buffer.get(),
                     PKCS7_TEXT | PKCS7_NOVERIFY | PKCS7_NOINTERN) != 1) {
        error = "not signed by the authority, or changed since (" + take_openssl_error() + ")";
        return std::nullopt;
    }
    return std::string{content_of(*buffer)};
}

}  // namespace orvane::tools
