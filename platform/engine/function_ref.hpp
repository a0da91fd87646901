/// @file function_ref.hpp
/// @brief A borrowed callable.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace pexa::engine {

/// Borrows a callable for the length of a call; never stores or copies it.
template <typename Signature>
class FunctionRef;

template <typename Result, typename... Arguments>
class FunctionRef<Result(Arguments...)> {
public:
    template <typename Callable>
    requires(std::is_invocable_r_v<Result, const Callable&, Arguments...>)
        // NOLINTNEXTLINE(google-explicit-constructor): stands in for the callable at call sites
        FunctionRef(const Callable& callable)
        : object_(std::addressof(callable)), call_([](const void* object, Arguments... arguments) {
              return static_cast<Result>(
                  (*static_cast<const Callable*>(object))(std::forward<Arguments>(arguments)...));
          }) {}

    Result operator()(Arguments... arguments) const {
        return call_(object_, std::forward<Arguments>(arguments)...);
    }

private:
    const void* object_;
    Result (*call_)(const void*, Arguments...);
};

}  // namespace pexa::engine
