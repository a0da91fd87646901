#include "tools/recording/output_file.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace orvane::tools {
namespace {

class DiskFile : public OutputFile {
public:
    explicit DiskFile(int descriptor) : descriptor_(descriptor) {}
    ~DiskFile() override { close(descriptor_); }

    int append(std::string_view bytes) override {
        std::size_t written = 0;
        while (written < bytes.size()) {
            const ssize_t count =
                write(descriptor_, bytes.data() + written, bytes.size() - written);
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count < 0) {
                const int error = errno;
                take_back(written);
                return error;
            }
            written += static_cast<std::size_t>(count);
        }
        size_ += static_cast<off_t>(written);
        return 0;
    }

    bool is_torn() const override { return is_torn_; }

private:
    void take_back(std::size_t written) {
        is_torn_ = written > 0 && (ftruncate(descriptor_, size_) != 0 ||
                                   lseek(descriptor_, size_, SEEK_SET) != size_);
    }

    int descriptor_;
    off_t size_ = 0;
    bool is_torn_ = false;
};

}  // namespace

std::unique_ptr<OutputFile> create_file(const std::string& path, int& error) {
    std::error_code unknown;
    const bool is_other = std::filesystem::is_other(path, unknown);
    constexpr mode_t readable_and_writable = 0666;
    const int descriptor =
        open(path.c_str(), O_WRONLY | O_CLOEXEC | (is_other ? 0 : O_CREAT | O_EXCL),
             readable_and_writable);
    if (descriptor < 0) {
        error = errno;
        return nullptr;
    }
    return std::make_unique<DiskFile>(descriptor);
}

}  // namespace orvane::tools
