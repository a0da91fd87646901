/// @file deleter.hpp
/// @brief Smart pointers to the objects of C interfaces.
#pragma once

namespace orvane::tools {

/// For std::unique_ptr: calls a C function that deletes.
template <auto Delete>
struct Deleter {
    template <typename Resource>
    void operator()(Resource* resource) const {
        Delete(resource);
    }
};

}  // namespace orvane::tools
