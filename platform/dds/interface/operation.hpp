/// @file operation.hpp
/// @brief What every exported operation does before and around its work: refuse NULL, report
/// failures under its own name, let no exception out.
#pragma once

#include <functional>
#include <new>
#include <type_traits>
#include <utility>

#include "platform/dds/interface/handle.hpp"
#include "platform/engine/values.hpp"

namespace pexa::dds {

[[nodiscard]] constexpr DDS_ReturnCode_t to_return_code(Status status) {
    return static_cast<DDS_ReturnCode_t>(status);
}

/// The exported operation that runs, as the context of its reports. Every function here writes one
/// line to the middleware's log and gives the return code that goes with it.
class Operation {
public:
    explicit constexpr Operation(const char* name) : name_(name) {}

    [[nodiscard]] const char* name() const { return name_; }

    [[nodiscard]] DDS_ReturnCode_t bad_parameter(const char* argument) const;
    [[nodiscard]] DDS_ReturnCode_t precondition_not_met(const char* what) const;
    [[nodiscard]] DDS_ReturnCode_t out_of_memory() const;
    /// Reports that @p what could not be created. @return @p reason
    [[nodiscard]] DDS_ReturnCode_t not_created(const char* what, DDS_ReturnCode_t reason) const;
    /// Reports that @p what failed. @return @p reason
    [[nodiscard]] DDS_ReturnCode_t failed(const char* what, DDS_ReturnCode_t reason) const;
    /// Writes a report of @p text that changes nothing about the result.
    void warn(const char* text) const;

private:
    const char* name_;
};

/// @return what an operation with this result returns when it was refused.
template <typename Result>
[[nodiscard]] Result failure([[maybe_unused]] DDS_ReturnCode_t code) {
    if constexpr (std::is_same_v<Result, DDS_ReturnCode_t>) {
        return code;
    } else if constexpr (std::is_same_v<Result, DDS_DomainId_t>) {
        return -1;
    } else {
        // NULL, false, an empty mask, the handle of nothing.
        return Result{};
    }
}

/// An argument that must not be NULL. The operation gets what it points at, for a handle the object
/// behind it; texts and samples stay pointers.
template <typename T>
struct Required {
    const char* name;
    T* value;
};

template <typename T>
[[nodiscard]] Required<T> required(const char* name, T* value) {
    return {name, value};
}
template <HandleType Handle>
[[nodiscard]] Required<Handle> required(Handle* value) {
    return {HandleTraits<Handle>::argument, value};
}

namespace call_details {

template <typename T>
const char* missing(const T&) {
    return nullptr;
}
template <typename T>
const char* missing(const Required<T>& argument) {
    return argument.value == nullptr ? argument.name : nullptr;
}

/// @return the name of the first required argument that is NULL, or NULL.
template <typename... Arguments>
const char* first_missing(const Arguments&... arguments) {
    const char* found = nullptr;
    ((found = found != nullptr ? found : missing(arguments)), ...);
    return found;
}

template <typename T>
T unwrap(T argument) {
    return argument;
}
template <typename T>
T& unwrap(Required<T> argument) {
    return *argument.value;
}
template <HandleType Handle>
auto& unwrap(Required<Handle> argument) {
    return *object_of(argument.value);
}
inline const char* unwrap(Required<const char> argument) {
    return argument.value;
}
inline const void* unwrap(Required<const void> argument) {
    return argument.value;
}
inline void* unwrap(Required<void> argument) {
    return argument.value;
}

template <typename T>
T exported(T value) {
    return value;
}
template <ObjectType Object>
auto exported(Object* object) {
    return handle_of(object);
}

/// Calls @p method, with the operation as its first argument if it wants it.
template <typename Method, typename Object, typename... Arguments>
decltype(auto) invoke(Method method, Object& object, const Operation& operation,
                      Arguments&&... arguments) {
    if constexpr (std::is_invocable_v<Method, Object&, const Operation&, Arguments...>) {
        return std::invoke(method, object, operation, std::forward<Arguments>(arguments)...);
    } else {
        return std::invoke(method, object, std::forward<Arguments>(arguments)...);
    }
}

}  // namespace call_details

/// Runs @p work behind the barrier that no exception passes; objects become handles.
template <typename Work>
auto guarded(const Operation& operation, Work&& work) noexcept {
    using Result = decltype(call_details::exported(work()));
    try {
        return call_details::exported(work());
    } catch (const std::bad_alloc&) {
        return failure<Result>(operation.out_of_memory());
    } catch (...) {
        return failure<Result>(operation.failed("an internal step", DDS_RETCODE_ERROR));
    }
}

/// The body of an exported operation: checks @p self and the required arguments, then calls
/// @p method of the object, with this Operation first if its signature has one.
template <HandleType Handle, typename Method, typename... Arguments>
auto call(const char* name, Handle* self, Method method, Arguments... arguments) noexcept {
    const Operation operation(name);
    const auto work = [&] {
        return call_details::invoke(method, *object_of(self), operation,
                                    call_details::unwrap(arguments)...);
    };
    using Result = decltype(call_details::exported(work()));
    if (self == nullptr) {
        return failure<Result>(operation.bad_parameter(HandleTraits<Handle>::argument));
    }
    if (const char* missing = call_details::first_missing(arguments...)) {
        return failure<Result>(operation.bad_parameter(missing));
    }
    return guarded(operation, work);
}

}  // namespace pexa::dds
