/// @file openssl_handles.hpp
/// @brief Objects of OpenSSL that free themselves, and its errors as exceptions.
#pragma once

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pkcs7.h>
#include <openssl/x509.h>

#include <memory>
#include <string>
#include <string_view>

namespace orvane::tools {

template <auto free_object>
struct OpensslDeleter {
    template <typename Object>
    void operator()(Object* object) const {
        free_object(object);
    }
};

using Bio = std::unique_ptr<BIO, OpensslDeleter<BIO_free_all>>;
using Key = std::unique_ptr<EVP_PKEY, OpensslDeleter<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, OpensslDeleter<X509_free>>;
using RevocationList = std::unique_ptr<X509_CRL, OpensslDeleter<X509_CRL_free>>;
using Pkcs7 = std::unique_ptr<PKCS7, OpensslDeleter<PKCS7_free>>;

/// Forgets the errors of OpenSSL on this thread. @return the reason of the last one
std::string take_openssl_error();

/// Throws std::runtime_error with OpenSSL's reason. For what fails only without memory or entropy.
[[noreturn]] void throw_openssl_error(const char* operation);

/// @return @p result, which is neither null nor 0, nor negative
template <typename Result>
Result require_openssl(Result result, const char* operation) {
    if (!(result > Result{})) {
        throw_openssl_error(operation);
    }
    return result;
}

/// A reader of the text, which outlives it.
Bio reader_of(std::string_view text);

/// A buffer in memory.
Bio new_buffer();

/// What has been written into a buffer. @return valid until the buffer changes
std::string_view content_of(BIO& buffer);

}  // namespace orvane::tools
