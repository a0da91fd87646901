/// @file process.hpp
/// @brief The process that an application runs in.
#pragma once

#include <cstdint>
#include <string>

namespace orvane::tools {

/// What an application announces of its process. An empty text and an id of 0 are not known.
struct Process {
    std::string host;  ///< its name
    std::string name;  ///< of the program
    std::int64_t id = 0;
    std::string addresses;  ///< of the network interfaces, as the application wrote them
};

}  // namespace orvane::tools
