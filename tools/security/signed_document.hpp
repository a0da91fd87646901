/// @file signed_document.hpp
/// @brief Documents as DDS Security's access control takes them: S/MIME, multipart/signed, with the
/// text in clear and a signature of PKCS #7 behind it.
#pragma once

#include <string>
#include <string_view>

#include "tools/records/result.hpp"
#include "tools/security/certificates.hpp"

namespace orvane::tools {

std::string sign_document(std::string_view text, const Signer& authority);

/// The text of a document that the authority signed.
/// @param error why there is none
Result<std::string> read_signed_document(std::string_view document, X509& authority,
                                         std::string& error);

}  // namespace orvane::tools
