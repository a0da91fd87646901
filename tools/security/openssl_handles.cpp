#include "tools/security/openssl_handles.hpp"

#include <openssl/err.h>

#include <cstddef>
#include <stdexcept>

namespace orvane::tools {

std::string take_openssl_error() {
    const unsigned long code = ERR_peek_last_error();
    const char* reason = code == 0 ? nullptr : ERR_reason_error_string(code);
    std::string text = reason == nullptr ? "unknown reason" : reason;
    ERR_clear_error();
    return text;
}

void throw_openssl_error(const char* operation) {
    throw std::runtime_error(std::string{"OpenSSL: "} + operation + ": " + take_openssl_error());
}

Bio reader_of(std::string_view text) {
    return Bio{require_openssl(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())),
                               "BIO_new_mem_buf")};
}

Bio new_buffer() {
    // Memory of this kind is cleansed when it is freed.
    return Bio{require_openssl(BIO_new(BIO_s_secmem()), "BIO_new")};
}

std::string_view content_of(BIO& buffer) {
    char* begin = nullptr;
    const long size = BIO_get_mem_data(&buffer, &begin);
    return {begin, static_cast<std::size_t>(size)};
}

}  // namespace orvane::tools
