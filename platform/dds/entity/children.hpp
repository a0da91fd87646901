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

/// Owned objects. Whoever walks over them shares the ownership meanwhile, because another thread
/// may delete one of them; no lock is held while a child is enabled, closed or destroyed.
template <typename T>
class Children {
public:
    /// Adds a child and enables it, if it is to be enabled.
    /// @return NULL when that failed, after a report; the child is gone then
    [[nodiscard]] T* admit(const Operation& operation, std::shared_ptr<T> child, bool enable) {
        T* added = add(std::move(child));
        return start(operation, *added, enable) ? added : nullptr;
    }

    T* add(std::shared_ptr<T> child) {
        const std::lock_guard guard(mutex_);
        return children_.emplace_back(std::move(child)).get();
    }

    /// Enables an added child, if it is to be enabled. @return as admit()
    [[nodiscard]] bool start(const Operation& operation, T& child, bool enable) {
        if (!enable || child.enable(operation) == DDS_RETCODE_OK) {
            return true;
        }
        static_cast<void>(remove(operation, child));
        return false;
    }

    /// Closes and forgets a child.
    /// @return PRECONDITION_NOT_MET when @p child is none of these, or what closing it says
    [[nodiscard]] DDS_ReturnCode_t remove(const Operation& operation, T& child) {
        std::list<std::shared_ptr<T>> taken = take(&child);
        if (taken.empty()) {
            return operation.precondition_not_met("it was created here");
        }
        const DDS_ReturnCode_t result = child.close(operation);
        if (result != DDS_RETCODE_OK) {
            const std::lock_guard guard(mutex_);
            children_.splice(children_.end(), taken);
        }
        return result;
    }

    /// Removes all children. @return the first failure; the others are removed all the same
    [[nodiscard]] DDS_ReturnCode_t remove_all(const Operation& operation) {
        DDS_ReturnCode_t result = DDS_RETCODE_OK;
        for (const std::shared_ptr<T>& child : all()) {
            const DDS_ReturnCode_t removed = remove(operation, *child);
            result = result == DDS_RETCODE_OK ? removed : result;
        }
        return result;
    }

    /// Enables all children. @return the first failure; the others are enabled all the same
    [[nodiscard]] DDS_ReturnCode_t enable_all(const Operation& operation) {
        DDS_ReturnCode_t result = DDS_RETCODE_OK;
        for (const std::shared_ptr<T>& child : all()) {
            const DDS_ReturnCode_t enabled = child->enable(operation);
            result = result == DDS_RETCODE_OK ? enabled : result;
        }
        return result;
    }

    /// Has the children look for listeners above them again. A child that meanwhile is deleted has
    /// no listener any more.
    void refresh_listeners() {
        for (const std::shared_ptr<T>& child : all()) {
            static_cast<void>(child->refresh_listeners());
        }
    }

    [[nodiscard]] bool contains(const T& child) const {
        return find([&](const T& other) { return &other == &child; }) != nullptr;
    }

    [[nodiscard]] bool empty() const {
        const std::lock_guard guard(mutex_);
        return children_.empty();
    }

    /// @return the first child for which @p predicate holds, or NULL.
    template <typename Predicate>
    [[nodiscard]] T* find(Predicate predicate) const {
        const std::lock_guard guard(mutex_);
        const auto found =
            std::find_if(children_.begin(), children_.end(),
                         [&](const std::shared_ptr<T>& child) { return predicate(*child); });
        return found != children_.end() ? found->get() : nullptr;
    }

    /// @return all children, kept alive.
    [[nodiscard]] std::vector<std::shared_ptr<T>> all() const {
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
