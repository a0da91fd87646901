#include "tools/security/certificates.hpp"

#include <fmt/format.h>
#include <openssl/asn1.h>
#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/sha.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>
#include <memory>
#include <utility>

namespace orvane::tools {
namespace {

constexpr long version_3 = 2;
constexpr long version_2_of_list = 1;

using Number = std::unique_ptr<BIGNUM, OpensslDeleter<BN_free>>;
using Integer = std::unique_ptr<ASN1_INTEGER, OpensslDeleter<ASN1_INTEGER_free>>;
using Time = std::unique_ptr<ASN1_TIME, OpensslDeleter<ASN1_TIME_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, OpensslDeleter<X509_EXTENSION_free>>;

void free_openssl_text(char* text) {
    OPENSSL_free(text);
}
using OpensslText = std::unique_ptr<char, OpensslDeleter<free_openssl_text>>;

Time to_asn1(std::int64_t seconds) {
    return Time{require_openssl(ASN1_TIME_set(nullptr, static_cast<std::time_t>(seconds)),
                                "ASN1_TIME_set")};
}

std::int64_t to_seconds(const ASN1_TIME* time) {
    std::tm calendar{};
    return ASN1_TIME_to_tm(time, &calendar) == 1 ? std::int64_t{timegm(&calendar)} : 0;
}

std::string to_text(const ASN1_INTEGER& integer) {
    const Number number{
        require_openssl(ASN1_INTEGER_to_BN(&integer, nullptr), "ASN1_INTEGER_to_BN")};
    const OpensslText text{require_openssl(BN_bn2hex(number.get()), "BN_bn2hex")};
    return text.get();
}

/// @return null when the text is no number in hexadecimal
Integer to_integer(const std::string& text) {
    BIGNUM* parsed = nullptr;
    const int length = BN_hex2bn(&parsed, text.c_str());
    const Number number{parsed};
    if (length <= 0 || text.size() != static_cast<std::size_t>(length)) {
        return nullptr;
    }
    return Integer{
        require_openssl(BN_to_ASN1_INTEGER(number.get(), nullptr), "BN_to_ASN1_INTEGER")};
}

/// 16 random bytes in hexadecimal.
std::string random_name() {
    std::array<unsigned char, 16> bytes{};
    require_openssl(RAND_bytes(bytes.data(), static_cast<int>(bytes.size())), "RAND_bytes");
    const Number number{require_openssl(
        BN_bin2bn(bytes.data(), static_cast<int>(bytes.size()), nullptr), "BN_bin2bn")};
    const OpensslText text{require_openssl(BN_bn2hex(number.get()), "BN_bn2hex")};
    return text.get();
}

void set_random_serial(X509& certificate) {
    // RFC 5280 allows 20 bytes with a positive value.
    constexpr int bits = 159;
    const Number number{require_openssl(BN_new(), "BN_new")};
    require_openssl(BN_rand(number.get(), bits, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY), "BN_rand");
    require_openssl(BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(&certificate)),
                    "BN_to_ASN1_INTEGER");
}

void set_subject(X509& certificate, const std::string& common_name) {
    require_openssl(X509_NAME_add_entry_by_NID(
                        X509_get_subject_name(&certificate), NID_commonName, MBSTRING_UTF8,
                        reinterpret_cast<const unsigned char*>(common_name.data()),
                        static_cast<int>(common_name.size()), -1, 0),
                    "X509_NAME_add_entry_by_NID");
}

void add_extension(X509& certificate, X509& issuer, int kind, const char* value) {
    X509V3_CTX context{};
    X509V3_set_ctx(&context, &issuer, &certificate, nullptr, nullptr, 0);
    const Extension extension{require_openssl(X509V3_EXT_conf_nid(nullptr, &context, kind, value),
                                              "X509V3_EXT_conf_nid")};
    require_openssl(X509_add_ext(&certificate, extension.get(), -1), "X509_add_ext");
}

/// All but what tells an authority from others.
Certificate start_certificate(const std::string& common_name, EVP_PKEY& key,
                              const Validity& validity) {
    Certificate certificate{require_openssl(X509_new(), "X509_new")};
    require_openssl(X509_set_version(certificate.get(), version_3), "X509_set_version");
    set_random_serial(*certificate);
    set_subject(*certificate, common_name);
    require_openssl(X509_set1_notBefore(certificate.get(), to_asn1(validity.from).get()),
                    "X509_set1_notBefore");
    require_openssl(X509_set1_notAfter(certificate.get(), to_asn1(validity.to).get()),
                    "X509_set1_notAfter");
    require_openssl(X509_set_pubkey(certificate.get(), &key), "X509_set_pubkey");
    return certificate;
}

void finish_certificate(X509& certificate, X509& issuer, EVP_PKEY& issuer_key) {
    require_openssl(X509_set_issuer_name(&certificate, X509_get_subject_name(&issuer)),
                    "X509_set_issuer_name");
    add_extension(certificate, issuer, NID_subject_key_identifier, "hash");
    add_extension(certificate, issuer, NID_authority_key_identifier, "keyid:always");
    require_openssl(X509_sign(&certificate, &issuer_key, EVP_sha256()), "X509_sign");
}

/// What could not be read must not stand in the next report of an error, which may be the engine's.
template <typename Handle>
Handle without_errors(Handle handle) {
    take_openssl_error();
    return handle;
}

Signer make_authority(const char* prefix, const Validity& validity, const char* constraints,
                      const char* usage) {
    Key key = make_key();
    Certificate certificate = start_certificate(prefix + random_name(), *key, validity);
    add_extension(*certificate, *certificate, NID_basic_constraints, constraints);
    add_extension(*certificate, *certificate, NID_key_usage, usage);
    finish_certificate(*certificate, *certificate, *key);
    return {std::move(key), std::move(certificate)};
}

void sign_list(X509_CRL& list, EVP_PKEY& key) {
    const int number = 1 + std::max(sk_X509_REVOKED_num(X509_CRL_get_REVOKED(&list)), 0);
    const Integer value{require_openssl(ASN1_INTEGER_new(), "ASN1_INTEGER_new")};
    require_openssl(ASN1_INTEGER_set_int64(value.get(), number), "ASN1_INTEGER_set_int64");
    require_openssl(
        X509_CRL_add1_ext_i2d(&list, NID_crl_number, value.get(), 0, X509V3_ADD_REPLACE),
        "X509_CRL_add1_ext_i2d");
    require_openssl(X509_CRL_sort(&list), "X509_CRL_sort");
    require_openssl(X509_CRL_sign(&list, &key, EVP_sha256()), "X509_CRL_sign");
}

}  // namespace

Validity validity_in_days(std::int64_t days, std::int64_t now) {
    constexpr std::int64_t hour = 3600;
    return {now - hour, now + days * 24 * hour};
}

Key make_key() {
    return Key{require_openssl(EVP_EC_gen("P-256"), "EVP_EC_gen")};
}

Signer make_identity_authority(const Validity& validity) {
    return make_authority("authority ", validity, "critical,CA:TRUE,pathlen:0",
                          "critical,keyCertSign,cRLSign");
}

Signer make_permissions_authority(const Validity& validity) {
    return make_authority("permissions authority ", validity, "critical,CA:FALSE",
                          "critical,digitalSignature");
}

Certificate make_certificate(const std::string& name, EVP_PKEY& key, const Validity& validity,
                             const Signer& authority) {
    X509& issuer = *authority.certificate;
    Certificate certificate = start_certificate(name, key, validity);
    add_extension(*certificate, issuer, NID_basic_constraints, "critical,CA:FALSE");
    add_extension(*certificate, issuer, NID_key_usage, "critical,digitalSignature");
    finish_certificate(*certificate, issuer, *authority.key);
    return certificate;
}

RevocationList make_revocation_list(const Signer& authority, const Validity& validity) {
    RevocationList list{require_openssl(X509_CRL_new(), "X509_CRL_new")};
    require_openssl(X509_CRL_set_version(list.get(), version_2_of_list), "X509_CRL_set_version");
    require_openssl(
        X509_CRL_set_issuer_name(list.get(), X509_get_subject_name(authority.certificate.get())),
        "X509_CRL_set_issuer_name");
    // It stays so in later lists. A clock that is ahead at a revocation would shut everybody out.
    require_openssl(X509_CRL_set1_lastUpdate(list.get(), to_asn1(validity.from).get()),
                    "X509_CRL_set1_lastUpdate");
    require_openssl(X509_CRL_set1_nextUpdate(list.get(), to_asn1(validity.to).get()),
                    "X509_CRL_set1_nextUpdate");
    X509V3_CTX context{};
    X509V3_set_ctx(&context, authority.certificate.get(), nullptr, nullptr, list.get(), 0);
    const Extension issuer{require_openssl(
        X509V3_EXT_conf_nid(nullptr, &context, NID_authority_key_identifier, "keyid:always"),
        "X509V3_EXT_conf_nid")};
    require_openssl(X509_CRL_add_ext(list.get(), issuer.get(), -1), "X509_CRL_add_ext");
    sign_list(*list, *authority.key);
    return list;
}

void revoke_serials(X509_CRL& list, const std::vector<std::string>& serials, std::int64_t now,
                    const Signer& authority) {
    for (const std::string& text : serials) {
        const Integer serial = to_integer(text);
        X509_REVOKED* present = nullptr;
        if (!serial || X509_CRL_get0_by_serial(&list, &present, serial.get()) != 0) {
            continue;
        }
        std::unique_ptr<X509_REVOKED, OpensslDeleter<X509_REVOKED_free>> entry{
            require_openssl(X509_REVOKED_new(), "X509_REVOKED_new")};
        require_openssl(X509_REVOKED_set_serialNumber(entry.get(), serial.get()),
                        "X509_REVOKED_set_serialNumber");
        require_openssl(X509_REVOKED_set_revocationDate(entry.get(), to_asn1(now).get()),
                        "X509_REVOKED_set_revocationDate");
        require_openssl(X509_CRL_add0_revoked(&list, entry.get()), "X509_CRL_add0_revoked");
        static_cast<void>(entry.release());
    }
    sign_list(list, *authority.key);
}

std::int64_t number_of(const X509_CRL& list) {
    const Integer number{
        static_cast<ASN1_INTEGER*>(X509_CRL_get_ext_d2i(&list, NID_crl_number, nullptr, nullptr))};
    std::int64_t value = 0;
    return number && ASN1_INTEGER_get_int64(&value, number.get()) == 1 ? value : 0;
}

std::vector<std::string> serials_in(X509_CRL& list) {
    std::vector<std::string> serials;
    const STACK_OF(X509_REVOKED)* entries = X509_CRL_get_REVOKED(&list);
    const int count = sk_X509_REVOKED_num(entries);  // -1 for no entries
    serials.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int i = 0; i < count; ++i) {
        serials.push_back(
            to_text(*X509_REVOKED_get0_serialNumber(sk_X509_REVOKED_value(entries, i))));
    }
    return serials;
}

Certificate read_certificate(std::string_view pem) {
    return without_errors(
        Certificate{PEM_read_bio_X509(reader_of(pem).get(), nullptr, nullptr, nullptr)});
}

Key read_key(std::string_view pem) {
    // Without a password OpenSSL would ask for one at the terminal.
    char no_password[] = "";
    return without_errors(
        Key{PEM_read_bio_PrivateKey(reader_of(pem).get(), nullptr, nullptr, no_password)});
}

RevocationList read_revocation_list(std::string_view pem) {
    return without_errors(
        RevocationList{PEM_read_bio_X509_CRL(reader_of(pem).get(), nullptr, nullptr, nullptr)});
}

std::string to_pem(X509& certificate) {
    const Bio buffer = new_buffer();
    require_openssl(PEM_write_bio_X509(buffer.get(), &certificate), "PEM_write_bio_X509");
    return std::string{content_of(*buffer)};
}

std::string to_pem(X509_CRL& list) {
    const Bio buffer = new_buffer();
    require_openssl(PEM_write_bio_X509_CRL(buffer.get(), &list), "PEM_write_bio_X509_CRL");
    return std::string{content_of(*buffer)};
}

Bio to_pem(EVP_PKEY& key) {
    Bio buffer = new_buffer();
    require_openssl(
        PEM_write_bio_PrivateKey(buffer.get(), &key, nullptr, nullptr, 0, nullptr, nullptr),
        "PEM_write_bio_PrivateKey");
    return buffer;
}

Validity validity_of(const X509& certificate) {
    return {to_seconds(X509_get0_notBefore(&certificate)),
            to_seconds(X509_get0_notAfter(&certificate))};
}

Validity validity_of(const X509_CRL& list) {
    const ASN1_TIME* end = X509_CRL_get0_nextUpdate(&list);
    return {to_seconds(X509_CRL_get0_lastUpdate(&list)),
            end == nullptr ? std::numeric_limits<std::int64_t>::max() : to_seconds(end)};
}

std::string subject_of(const X509& certificate) {
    const Bio buffer = new_buffer();
    require_openssl(X509_NAME_print_ex(buffer.get(), X509_get_subject_name(&certificate), 0,
                                       XN_FLAG_RFC2253) >= 0
                        ? 1
                        : 0,
                    "X509_NAME_print_ex");
    return std::string{content_of(*buffer)};
}

std::string host_and_app_of(const X509& certificate) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    require_openssl(
        X509_NAME_digest(X509_get_subject_name(&certificate), EVP_sha256(), digest.data(), nullptr),
        "X509_NAME_digest");
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof bits; ++i) {
        bits = bits << 8U | digest[i];
    }
    const std::uint64_t prefix = bits >> 1U | std::uint64_t{1} << 63U;
    return fmt::format("{:08x}:{:04x}", prefix >> 32U, prefix >> 16U & 0xffffU);
}

std::string serial_of(const X509& certificate) {
    return to_text(*X509_get0_serialNumber(&certificate));
}

bool is_supported(const EVP_PKEY& key) {
    constexpr int curve_bits = 256;
    constexpr int rsa_bits = 2048;
    const int kind = EVP_PKEY_get_base_id(&key);
    const int bits = EVP_PKEY_get_bits(&key);
    return (kind == EVP_PKEY_EC && bits == curve_bits) ||
           (kind == EVP_PKEY_RSA && bits == rsa_bits);
}

bool is_for(X509& certificate, EVP_PKEY& key) {
    const bool fits = X509_check_private_key(&certificate, &key) == 1;
    take_openssl_error();
    return fits;
}

bool is_signed_by(X509& certificate, X509& authority) {
    const bool is_signed = X509_check_issued(&authority, &certificate) == X509_V_OK &&
                           X509_verify(&certificate, X509_get0_pubkey(&authority)) == 1;
    take_openssl_error();
    return is_signed;
}

bool is_signed_by(X509_CRL& list, X509& authority) {
    const bool is_signed =
        X509_NAME_cmp(X509_CRL_get_issuer(&list), X509_get_subject_name(&authority)) == 0 &&
        X509_CRL_verify(&list, X509_get0_pubkey(&authority)) == 1;
    take_openssl_error();
    return is_signed;
}

bool is_revoked(X509_CRL& list, const X509& certificate) {
    X509_REVOKED* entry = nullptr;
    return X509_CRL_get0_by_serial(&list, &entry, X509_get0_serialNumber(&certificate)) != 0;
}

}  // namespace orvane::tools
