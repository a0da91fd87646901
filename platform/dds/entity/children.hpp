/// @file children.hpp
/// @brief The objects of one kind that an entity contains and owns.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "platform/dds/interface/operation.hpp"

namespace pexa::dds {

/// Owned objects. A thread that walks over them shares the ownership of the one that it is at,
/// because another thread may delete a child. No lock is held while a child is enabled, closed or
/// destroyed. Only the addition of a child needs memory.
template <typename T>
class Children {
    using Numbered = std::map<std::uint64_t, std::shared_ptr<T>>;

public:
    /// Adds a child and enables it, if it is to be enabled.
    /// @return the failure after a report; the child is gone then
    Result<T*> admit(const Operation& operation, std::shared_ptr<T> child, bool enable) {
        return start(operation, *add(std::move(child)), enable);
    }

    T* add(std::shared_ptr<T> child) {
        const std::lock_guard guard(mutex_);
        const auto place = children_.try_emplace(children_.end(), next_number_, std::move(child));
        ++next_number_;
        return place->second.get();
    }

    /// Enables an added child, if it is to be enabled. @return as admit()
    Result<T*> start(const Operation& operation, T& child, bool enable) {
        const Status enabled =
            enable ? attempt(operation, [&] { return child.enable(operation); }) : Status::ok;
        if (enabled == Status::ok) {
            return &child;
        }
        // The caller hears why the child cannot be enabled; removing it reports its own failure.
        static_cast<void>(remove(operation, child));
        return enabled;
    }

    /// Closes and forgets a child.
    /// @return PRECONDITION_NOT_MET for an object that is no child, or the result of closing it
    Status remove(const Operation& operation, T& child) {
        typename Numbered::node_type taken = take(child);
        if (taken.empty()) {
            return operation.precondition_not_met("it was created here");
        }
        const Status result = child.close(operation);
        if (result != Status::ok) {
            const std::lock_guard guard(mutex_);
            children_.insert(std::move(taken));
        }
        return result;
    }

    /// Removes all children. @return the first failure; the others are removed all the same
    Status remove_all(const Operation& operation) {
        return all_ok([&](T& child) { return remove(operation, child); });
    }

    /// Enables all children. @return the first failure; the others are enabled all the same
    Status enable_all(const Operation& operation) {
        return all_ok([&](T& child) { return child.enable(operation); });
    }

    /// Has the children look for listeners above them again.
    void refresh_listeners() {
        // It fails only for a child that another thread deletes, which has no listener any more.
        static_cast<void>(all_ok([](T& child) { return child.refresh_listeners(); }));
    }

    /// Takes a step with each child, in the order of their addition. @return the first failure; the
    /// step is taken with the others all the same
    template <typename Step>
    Status all_ok(Step step) const {
        Status result = Status::ok;
        std::uint64_t number = 0;
        while (const std::shared_ptr<T> child = next_after(number)) {
            const Status status = step(*child);
            result = result == Status::ok ? status : result;
        }
        return result;
    }

    bool contains(const T& child) const {
        return find([&](const T& other) { return &other == &child; }) != nullptr;
    }

    bool empty() const {
        const std::lock_guard guard(mutex_);
        return children_.empty();
    }

    /// @return the first child for which @p predicate holds, or NULL.
    template <typename Predicate>
    T* find(Predicate predicate) const {
        const std::lock_guard guard(mutex_);
        const auto found = std::find_if(children_.begin(), children_.end(), [&](const auto& child) {
            return predicate(*child.second);
        });
        return found != children_.end() ? found->second.get() : nullptr;
    }

private:
    /// @return the next child after a number, which becomes that child's, or NULL.
    std::shared_ptr<T> next_after(std::uint64_t& number) const {
        const std::lock_guard guard(mutex_);
        const auto found = children_.upper_bound(number);
        if (found == children_.end()) {
            return nullptr;
        }
        number = found->first;
        return found->second;
    }

    /// @return the node of a child, so that putting it back cannot fail; empty for another object.
    typename Numbered::node_type take(const T& child) {
        const std::lock_guard guard(mutex_);
        const auto found = std::find_if(children_.begin(), children_.end(), [&](const auto& other) {
            return other.second.get() == &child;
        });
        return found != children_.end() ? children_.extract(found) : typename Numbered::node_type();
    }

    mutable std::mutex mutex_;
    /// By the order of their addition.
    Numbered children_;
    std::uint64_t next_number_ = 1;
};

}  // namespace pexa::dds
