/// @file plug_ins.hpp
/// @brief Where the engine's plug-ins for security are.
#pragma once

#include <string>
#include <vector>

namespace orvane::tools {

/// The files of the plug-ins that the engine would not find on this machine,
/// "libdds_security_ac.so".
std::vector<std::string> missing_plug_ins();

}  // namespace orvane::tools
