#include "tools/recording/recording_reader.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "tools/recording/mcap_records.hpp"

namespace orvane::tools {

std::unique_ptr<RecordingReader> RecordingReader::open(const std::string& path, bool grows,
                                                       int& error) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        error = errno;
        return nullptr;
    }
    return std::unique_ptr<RecordingReader>{new RecordingReader{path, descriptor, grows}};
}

RecordingReader::RecordingReader(std::string path, int descriptor, bool grows)
    : path_(std::move(path)), descriptor_(descriptor), grows_(grows) {
    struct stat status {};
    if (fstat(descriptor, &status) == 0) {
        size_ = static_cast<std::uint64_t>(status.st_size);
    }
}

RecordingReader::~RecordingReader() {
    close(descriptor_);
}

std::optional<ReadResult> RecordingReader::next() {
    while (!is_over_) {
        if (auto decoded = decoder_ ? decoder_->next() : std::nullopt) {
            const Damage* damage = std::get_if<Damage>(&*decoded);
            return damage != nullptr ? problem(*damage)
                                     : ReadResult{std::get<RecordedEvent>(*std::move(decoded))};
        }
        if (is_at_end_) {
            is_over_ = true;
            break;
        }
        std::array<char, 65'536> bytes;
        const ssize_t size = ::read(descriptor_, bytes.data(), bytes.size());
        if (size < 0 && errno != EINTR) {
            is_over_ = true;
            return ReadingProblem{
                fmt::format("{}: could not read: {}", path_, std::strerror(errno))};
        }
        read_ += static_cast<std::uint64_t>(std::max<ssize_t>(size, 0));
        if (size == 0 && grows_) {
            break;
        }
        if (size == 0) {
            is_at_end_ = true;
            if (decoder_) {
                decoder_->finish();
            }
        } else if (size > 0 && !feed({bytes.data(), static_cast<std::size_t>(size)})) {
            is_over_ = true;
            return ReadingProblem{
                fmt::format("{}: no recording, expected MCAP or lines of JSON", path_)};
        }
    }
    return std::nullopt;
}

timespec RecordingReader::last_write() const {
    struct stat status {};
    fstat(descriptor_, &status);
    return status.st_mtim;
}

std::uint64_t RecordingReader::position() const {
    return decoder_ ? read_ - decoder_->unused() : read_;
}

bool RecordingReader::feed(std::string_view bytes) {
    if (!decoder_) {
        const char first = bytes.front();
        if (first != mcap_magic.front() && first != '{') {
            return false;
        }
        decoder_ =
            EventDecoder::make(first == '{' ? RecordingFormat::json_lines : RecordingFormat::mcap);
    }
    decoder_->feed(bytes);
    return true;
}

ReadResult RecordingReader::problem(const Damage& damage) const {
    return ReadingProblem{fmt::format("{}:{}: {}", path_, damage.position, damage.text)};
}

}  // namespace orvane::tools
