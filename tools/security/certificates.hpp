/// @file certificates.hpp
/// @brief Keys, certificates and lists of revoked certificates, as DDS Security's authentication
/// takes them. Times are seconds since 1970-01-01 UTC.
///
/// What reads PEM gives nothing when the text holds no such object. What makes something throws
/// std::runtime_error when OpenSSL fails.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/security/openssl_handles.hpp"

namespace orvane::tools {

struct Validity {
    std::int64_t from = 0;
    std::int64_t to = 0;
};

/// From an hour before @p now, because clocks of other machines may be behind, so many days long.
Validity validity_in_days(std::int64_t days, std::int64_t now);

/// A new key on the curve P-256.
Key make_key();

/// A key, and the certificate with which others check its signatures.
struct Signer {
    Key key;
    Certificate certificate;
};

/// Its certificate signs itself, others and lists of revoked ones, and no documents.
Signer make_identity_authority(const Validity& validity);

/// Its certificate signs itself and documents. It must not be the authority of identities: the
/// engine takes documents from each holder of a certificate of the authority of permissions.
Signer make_permissions_authority(const Validity& validity);

/// A certificate for the subject CN=@p name, with a random serial number.
Certificate make_certificate(const std::string& name, EVP_PKEY& key, const Validity& validity,
                             const Signer& authority);

/// A list that revokes nothing.
RevocationList make_revocation_list(const Signer& authority, const Validity& validity);

/// Adds serial numbers to a list, in hexadecimal, and signs that again. Those that it has, and what
/// is no number, are passed over.
void revoke_serials(X509_CRL& list, const std::vector<std::string>& serials, std::int64_t now,
                    const Signer& authority);

/// The number of a list, which is one more than it has entries: they only become more. 0 for the
/// list of another product that has no number.
std::int64_t number_of(const X509_CRL& list);

/// The serial numbers in a list.
std::vector<std::string> serials_in(X509_CRL& list);

/// @name PEM
/// @{
Certificate read_certificate(std::string_view pem);
Key read_key(std::string_view pem);
RevocationList read_revocation_list(std::string_view pem);
std::string to_pem(X509& certificate);
std::string to_pem(X509_CRL& list);
/// The private key, in a buffer that is cleansed when it is freed.
Bio to_pem(EVP_PKEY& key);
/// @}

Validity validity_of(const X509& certificate);
/// @return an end that never comes for a list without one
Validity validity_of(const X509_CRL& list);

/// The subject as RFC 2253 writes it, which is what permissions name: "CN=pump".
std::string subject_of(const X509& certificate);

/// What HOST:APP begins with for all who have a certificate of this subject (DDS
/// Security 1.1, 9.3.3: a set bit, then 47 bits of the subject's SHA-256): "0a141e28:c350".
std::string host_and_app_of(const X509& certificate);

/// The serial number in hexadecimal.
std::string serial_of(const X509& certificate);

/// Whether the engine takes keys of this kind: P-256, or RSA of 2048 bits.
bool is_supported(const EVP_PKEY& key);

/// Whether the certificate is that of the key.
bool is_for(X509& certificate, EVP_PKEY& key);

bool is_signed_by(X509& certificate, X509& authority);
bool is_signed_by(X509_CRL& list, X509& authority);
bool is_revoked(X509_CRL& list, const X509& certificate);

}  // namespace orvane::tools
