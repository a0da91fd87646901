/// @file success.hpp
/// @brief Whether a step succeeded, where there is no more to say about a failure.
#ifndef PEXA_SUCCESS_HPP
#define PEXA_SUCCESS_HPP

namespace pexa {

/// The result of a step of encoding, decoding, copying or initialising. A caller that ignores it
/// has to say so. Steps are chained with &&, as truth values are. See pexa::Status for failures
/// with a reason.
class [[nodiscard]] Success {
public:
    // NOLINTBEGIN(google-explicit-constructor): it is a truth value
    constexpr Success(bool succeeded) : succeeded_(succeeded) {}
    constexpr operator bool() const { return succeeded_; }
    // NOLINTEND(google-explicit-constructor)

private:
    bool succeeded_;
};

}  // namespace pexa

#endif
