/// @file replaceable_filter.hpp
/// @brief The content filter of a topic.
#pragma once

#include <memory>
#include <mutex>

#include "platform/engine/engine.hpp"

namespace pexa::engine::cyclone {

/// A filter that can be replaced while readers use it.
class ReplaceableFilter {
public:
    explicit ReplaceableFilter(ContentFilter filter) { replace(std::move(filter)); }

    void replace(ContentFilter filter) {
        auto next = std::make_shared<const ContentFilter>(std::move(filter));
        const std::lock_guard lock(mutex_);
        filter_.swap(next);
    }
    bool accepts(std::span<const std::byte> payload) const { return (*current())(payload); }

private:
    std::shared_ptr<const ContentFilter> current() const {
        const std::lock_guard lock(mutex_);
        return filter_;
    }

    mutable std::mutex mutex_;
    std::shared_ptr<const ContentFilter> filter_;
};

}  // namespace pexa::engine::cyclone
