/// @file plug_ins.hpp
/// @brief The engine's plug-ins for security, and whether they are there.
#pragma once

#include <string>
#include <vector>

namespace orvane::tools {

struct PlugIn {
    const char* part;      ///< of DDS Security, in the names of its properties
    const char* name;      ///< under which the engine looks for it
    const char* function;  ///< what the names of its functions end with
};

inline constexpr PlugIn plug_ins[] = {
    {"auth", "dds_security_auth", "authentication"},
    {"access", "dds_security_ac", "access_control"},
    {"crypto", "dds_security_crypto", "crypto"},
};

/// The files of the plug-ins that the engine would not find on this machine,
/// "libdds_security_ac.so".
std::vector<std::string> missing_plug_ins();

}  // namespace orvane::tools
