/// @file children.hpp
/// @brief The objects of one kind that an entity contains and owns.
#pragma once

#include <algorithm>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/dds/interface/operation.hpp"

namespace pexa::dds {

/// Owned objects. A thread that walks over them shares the ownership meanwhile, because another
/// thread may delete a child. No lock is held while a child is enabled, closed or destroyed.
template <typename T>
class Children {
public:
    /// Adds a child and enables it, if it is to be enabled.
    /// @return the failure after a report; the child is gone then
    Result<T*> admit(const Operation& operation, std::shared_ptr<T> child, bool enable) {
        return start(operation, *add(std::move(child)), enable);
    }

    T* add(std::shared_ptr<T> child) {
        const std::lock_guard guard(mutex_);
        return children_.emplace_back(std::move(child)).get();
    }

    /// Enables an added child, if it is to be enabled. @return as admit()
    Result<T*> start(const Operation& operation, T& child, bool enable) {
        const Status enabled = enable ? child.enable(operation) : Status::ok;
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
        std::list<std::shared_ptr<T>> taken = take(&child);
        if (taken.empty()) {
            return operation.precondition_not_met("it was created here");
        }
        const Status result = child.close(operation);
        if (result != Status::ok) {
            const std::lock_guard guard(mutex_);
            children_.splice(children_.end(), taken);
        }
        return result;
    }

    /// Removes all children. @return the first failure; the others are removed all the same
    Status remove_all(const Operation& operation) {
        Status result = Status::ok;
        for (const std::shared_ptr<T>& child : all()) {
            const Status removed = remove(operation, *child);
            result = result == Status::ok ? removed : result;
        }
        return result;
    }

    /// Enables all children. @return the first failure; the others are enabled all the same
    Status enable_all(const Operation& operation) {
        Status result = Status::ok;
        for (const std::shared_ptr<T>& child : all()) {
            const Status enabled = child->enable(operation);
            result = result == Status::ok ? enabled : result;
        }
        return result;
    }

    /// Has the children look for listeners above them again.
    void refresh_listeners() {
        for (const std::shared_ptr<T>& child : all()) {
            // It fails only for a child that another thread deletes, which has no listener any
            // more.
            static_cast<void>(child->refresh_listeners());
        }
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
        const auto found =
            std::find_if(children_.begin(), children_.end(),
                         [&](const std::shared_ptr<T>& child) { return predicate(*child); });
        return found != children_.end() ? found->get() : nullptr;
    }

    /// @return all children, kept alive.
    std::vector<std::shared_ptr<T>> all() const {
        const std::lock_guard guard(mutex_);
        return {children_.begin(), children_.end()};
    }

private:
    /// @return the list's node of a child, so that putting it back cannot fail.
    std::list<std::shared_ptr<T>> take(const T* child) {
        std::list<std::shared_ptr<T>> taken;
        const std::lock_guard guard(mutex_);
        const auto found =
            std::find_if(children_.begin(), children_.end(),
                         [&](const std::shared_ptr<T>& other) { return other.get() == child; });
        if (found != children_.end()) {
            taken.splice(taken.end(), children_, found);
        }
        return taken;
    }

    mutable std::mutex mutex_;
    std::list<std::shared_ptr<T>> children_;
};

}  // namespace pexa::dds
