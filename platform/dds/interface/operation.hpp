/// @file operation.hpp
/// @brief The border between the C interface and the objects: refuses NULL, reports failures under
/// the exported operation's name, turns Status into a return code, lets no exception out.
#pragma once

#include <functional>
#include <new>
#include <string_view>
#include <type_traits>
#include <utility>

#include "pexa/osapi.h"
#include "platform/dds/interface/handle.hpp"
#include "platform/dds/interface/result.hpp"
#include "platform/internal/cancellation.hpp"

namespace pexa::dds {

/// The exported operation that runs, as the context of its reports. Every function here writes one
/// line to the middleware's log and gives the status that goes with it.
class Operation {
public:
    explicit constexpr Operation(const char* name) : name_(name) {}

    const char* name() const { return name_; }

    Status bad_parameter(const char* argument) const;
    Status precondition_not_met(const char* condition) const;
    Status out_of_memory() const;
    /// Reports that @p object could not be created. @return @p reason
    Status not_created(const char* object, Status reason) const;
    /// Reports that @p step failed. @return @p reason
    Status failed(const char* step, Status reason) const;
    /// Reports that the permissions of the participant do not allow it, also if the log is silent.
    Status not_allowed(const char* topic) const;
    /// Reports @p text about the application's configuration, also if the log is silent. @return @p
    /// reason
    Status refused(const char* text, Status reason) const;
    /// Writes @p text on standard error if the log lets no error pass. A logger silences the log
    /// while it is created, and stays unaware of why its configuration was refused.
    void tell_if_silent(const char* text) const;
    /// Writes @p text on standard error.
    void tell(std::string_view text) const;
    /// Writes a report of @p text that changes nothing about the result.
    void warn(const char* text) const;

private:
    const char* name_;
};

/// @return the value that an exported operation of this return type gives after a failure.
template <typename Exported>
Exported failure([[maybe_unused]] Status status) {
    if constexpr (std::is_same_v<Exported, DDS_ReturnCode_t>) {
        return static_cast<DDS_ReturnCode_t>(status);
    } else if constexpr (std::is_same_v<Exported, DDS_DomainId_t>) {
        return -1;
    } else {
        // NULL, false, an empty mask, the handle of nothing.
        return Exported{};
    }
}

/// @name A result as the C interface gives it
/// @{
template <typename T>
T exported(T value) {
    return value;
}
inline DDS_ReturnCode_t exported(Status status) {
    return static_cast<DDS_ReturnCode_t>(status);
}
inline DDS_Boolean exported(bool value) {
    return value ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}
template <ObjectType Object>
auto exported(Object* object) {
    return handle_of(object);
}
template <typename T>
auto exported(const Result<T>& result) {
    using Exported = decltype(exported(result.value()));
    return result ? exported(result.value()) : failure<Exported>(result.status());
}
/// @}

/// An argument that must not be NULL. The operation gets the object that it points at; for a handle
/// that is the object behind it. Texts and samples stay pointers.
template <typename T>
struct Required {
    const char* name;
    T* value;
};

template <typename T>
Required<T> required(const char* name, T* value) {
    return {name, value};
}
template <HandleType Handle>
Required<Handle> required(Handle* value) {
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

/// Takes a step behind the barrier that no exception passes.
/// @return its status; after an exception a failure, reported
template <typename Step>
Status attempt(const Operation& operation, Step&& step) noexcept {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        return operation.out_of_memory();
    } catch (...) {
        return operation.failed("an internal step", Status::error);
    }
}

/// Runs @p work behind that barrier, which no cancellation passes either, and exports its result.
template <typename Work>
auto guarded(const Operation& operation, Work&& work) noexcept {
    using Exported = decltype(exported(work()));
    const NoCancellation whole_operation;
    // Its locks may be taken for ever in such a process.
    if (QELOsapi_isEngineLost() != 0) {
        return failure<Exported>(
            operation.precondition_not_met("the process was not forked while it had participants"));
    }
    Exported result{};
    const Status status = attempt(operation, [&] {
        result = exported(work());
        return Status::ok;
    });
    return status == Status::ok ? result : failure<Exported>(status);
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
    using Exported = decltype(exported(work()));
    if (self == nullptr) {
        return failure<Exported>(operation.bad_parameter(HandleTraits<Handle>::argument));
    }
    if (const char* missing = call_details::first_missing(arguments...)) {
        return failure<Exported>(operation.bad_parameter(missing));
    }
    return guarded(operation, work);
}

}  // namespace pexa::dds
