/// @file governance.hpp
/// @brief How the domains of an authority are protected.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/security/permissions.hpp"

namespace orvane::tools {

/// The document in XML. In these domains nobody joins without a certificate and permissions,
/// announcements and data are encrypted, all packets are signed, and every writer and reader needs
/// a permission.
std::string governance_xml(const std::vector<DomainRange>& domains);

/// The domains that a document is about; none when it is no such document.
std::vector<DomainRange> governed_domains(std::string_view xml);

}  // namespace orvane::tools
