/// @file lines.hpp
/// @brief Keeps the engine's log and lets a test wait for a line.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>

#include "tests/engine/node.hpp"

namespace pexa::engine {

class Lines {
public:
    explicit Lines(LogMask mask = log_mask()) {
        set_log_sink(&Lines::receive, this);
        set_log_mask(mask);
    }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;
    ~Lines() {
        set_log_mask(before_);
        set_log_sink(nullptr, nullptr);
    }

    /// Waits for a line of the category that contains the text.
    [[nodiscard]] bool await_line(LogCategory category, const std::string& text) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::nanoseconds(patience),
                                 [&] { return count_locked(category, text) > 0; });
    }
    [[nodiscard]] std::ptrdiff_t count(LogCategory category, const std::string& text = "") {
        const std::lock_guard lock(mutex_);
        return count_locked(category, text);
    }
    void clear() {
        const std::lock_guard lock(mutex_);
        lines_.clear();
    }

private:
    [[nodiscard]] std::ptrdiff_t count_locked(LogCategory category, const std::string& text) {
        const auto& lines = lines_[category];
        return std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
            return line.find(text) != std::string::npos;
        });
    }

    static void receive(void* context, LogCategory category, std::string_view text) {
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(text.find('\n'), std::string_view::npos);
        Lines& self = *static_cast<Lines*>(context);
        const std::lock_guard lock(self.mutex_);
        self.lines_[category].emplace_back(text);
        self.changed_.notify_all();
    }

    LogMask before_ = log_mask();
    std::mutex mutex_;
    std::condition_variable changed_;
    std::map<LogCategory, std::vector<std::string>> lines_;
};

}  // namespace pexa::engine
