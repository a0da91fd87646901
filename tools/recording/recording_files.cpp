#include "tools/recording/recording_files.hpp"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>
#include <variant>

#include "tools/recording/next_file.hpp"

namespace orvane::tools {
namespace {

constexpr std::chrono::seconds longest_wait_of_event{1};
constexpr std::size_t largest_block = std::size_t{256} << 10U;

}  // namespace

RecordingFiles::RecordingFiles(const RecordingOptions& options, CreateFile create)
    : options_(options), create_(std::move(create)), encoder_(EventEncoder::make(options.format)) {}

int RecordingFiles::open(Time now) {
    return begin_file(options_.path, now);
}

void RecordingFiles::add(const RecordedEvent& event, Time now) {
    // If that fails, the present file takes more than it should.
    if (encoder_->size() == 0 && is_time_for_next_file(now) && begin_next_file(now) == 0) {
        add_present_loggers(time_of(event));
    }
    note_logger(event);
    encoder_->add(event);
    waiting_ += std::holds_alternative<RecordingGap>(event) ? 0 : 1;
    if (!due_) {
        due_ = now + longest_wait_of_event;
    }
    const std::uint64_t enough =
        std::min<std::uint64_t>(largest_block, options_.rotate_size.value_or(largest_block));
    if (encoder_->size() >= enough) {
        write_block(now);
    }
}

void RecordingFiles::note_logger(const RecordedEvent& event) {
    const auto* change = std::get_if<LoggerEvent>(&event);
    if (change == nullptr) {
        return;
    }
    if (change->change.kind == LoggerChange::Kind::gone) {
        loggers_.erase(change->logger.application);
    } else {
        loggers_.insert_or_assign(change->logger.application, *change);
    }
}

void RecordingFiles::add_present_loggers(std::int64_t nanoseconds) {
    for (const auto& [application, last] : loggers_) {
        const LoggerState& now = last.change.now;
        encoder_->add(LoggerEvent{
            nanoseconds, {LoggerChange::Kind::present, now, now}, last.logger, last.publisher});
    }
}

void RecordingFiles::tick(Time now) {
    if (due_ && now >= *due_) {
        write_block(now);
    }
}

void RecordingFiles::flush(Time now) {
    if (due_) {
        write_block(now);
    }
}

void RecordingFiles::close(Time now) {
    flush(now);
    if (!file_->is_torn()) {
        const int error = file_->append(encoder_->end());
        error_ = error_ != 0 ? error_ : error;
    }
    file_.reset();
}

void RecordingFiles::write_block(Time now) {
    error_ = file_->is_torn() ? begin_next_file(now) : 0;
    const std::string_view block = encoder_->block();
    if (error_ == 0) {
        error_ = file_->append(block);
    }
    if (error_ != 0) {
        due_ = now + longest_wait_of_event;
        return;
    }
    size_ += block.size();
    has_events_ = true;
    encoder_->block_is_written();
    waiting_ = 0;
    due_.reset();
}

bool RecordingFiles::is_time_for_next_file(Time now) const {
    return has_events_ && ((options_.rotate_size && size_ >= *options_.rotate_size) ||
                           (options_.rotate_time && now - opened_ >= *options_.rotate_time));
}

int RecordingFiles::begin_next_file(Time now) {
    while (true) {
        const int error = begin_file(numbered_path(options_.path, number_ + 1), now);
        if (error == 0 || error == EEXIST) {
            ++number_;
        }
        if (error != EEXIST) {
            return error;
        }
    }
}

int RecordingFiles::begin_file(const std::string& path, Time now) {
    int error = 0;
    std::unique_ptr<OutputFile> file = create_(path, error);
    if (!file) {
        return error;
    }
    const std::string head = encoder_->head();
    error = file->append(head);
    if (error != 0) {
        std::error_code unknown;
        if (std::filesystem::is_regular_file(path, unknown)) {
            std::filesystem::remove(path, unknown);
        }
        return error;
    }
    if (file_ && !file_->is_torn()) {
        // Without its end it can be read, too.
        static_cast<void>(file_->append(encoder_->end()));
    }
    file_ = std::move(file);
    encoder_->begin_file();
    size_ = head.size();
    has_events_ = false;
    opened_ = now;
    kept_.push_back(path);
    delete_oldest();
    return 0;
}

void RecordingFiles::delete_oldest() {
    while (options_.keep && kept_.size() > *options_.keep) {
        std::error_code unknown;
        std::filesystem::remove(kept_.front(), unknown);
        kept_.pop_front();
    }
}

}  // namespace orvane::tools
