/// @file permissions_document.hpp
/// @brief Permissions in XML, as DDS Security's access control reads them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/records/result.hpp"
#include "tools/security/permissions.hpp"

namespace orvane::tools {

/// A document with one grant.
std::string permissions_xml(const Permissions& permissions);

/// Reads the grants of a document. A grant may leave out its subject, which is empty then, and its
/// validity, which then is as long as times go. What the engine does not know (relay rules and data
/// tags) is refused, because a rule would mean something else without it.
/// @param error "line 12: …, expected …"
Result<std::vector<Permissions>> parse_permissions(std::string_view xml, std::string& error);

}  // namespace orvane::tools
