/// @file issued_credentials.hpp
/// @brief The certificates and permissions that an authority has signed, which it keeps for as long
/// as they might be used.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/records/result.hpp"
#include "tools/security/certificates.hpp"
#include "tools/security/permissions.hpp"

namespace orvane::tools {

/// Where they are in the folder of the authority.
inline constexpr const char* issued_folder = "issued";

class IssuedCredentials {
public:
    explicit IssuedCredentials(std::string folder) : folder_(std::move(folder)) {}

    /// Afterwards they are kept also when the power fails.
    /// @param permissions the signed document
    Status keep(const std::string& name, X509& certificate, const std::string& permissions,
                std::string& error) const;

    /// All names for which something was issued, sorted.
    Result<std::vector<std::string>> names(std::string& error) const;

    /// @name What was issued for a name.
    /// @{
    /// The serial numbers, from the names of the files alone.
    Result<std::vector<std::string>> serials(const std::string& name, std::string& error) const;
    Result<std::vector<Certificate>> certificates(const std::string& name,
                                                  std::string& error) const;
    Result<std::vector<Permissions>> permissions(const std::string& name, X509& authority,
                                                 std::string& error) const;
    /// Those that came with a certificate.
    Result<Permissions> permissions_with(X509& certificate, const std::string& name,
                                         X509& authority, std::string& error) const;
    /// @}

private:
    std::string base_of(const std::string& name, const X509& certificate) const;
    /// @param name empty for all
    Result<std::vector<std::string>> paths(const std::string& name, const char* ending,
                                           std::string& error) const;

    std::string folder_;
};

/// The certificate that was issued last. @param certificates not empty
X509& latest_of(const std::vector<Certificate>& certificates);

}  // namespace orvane::tools
