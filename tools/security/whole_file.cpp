#include "tools/security/whole_file.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <openssl/crypto.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

/// Says what failed by errno. @return what a caller returns
Status fail(const std::string& path, const char* operation, std::string& error) {
    error = fmt::format("{}: cannot {}: {}", path, operation,
                        std::error_code(errno, std::generic_category()).message());
    return Status::failed;
}

class Descriptor {
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }
    int get() const { return descriptor_; }

private:
    int descriptor_;
};

/// Writes to a new file, and gives it its mode only then.
bool fill(int descriptor, std::string_view bytes, mode_t mode) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return fchmod(descriptor, mode) == 0 && fsync(descriptor) == 0;
}

constexpr std::string_view mark_beside = ".orvane-";

std::string name_beside(const std::string& path) {
    const fs::path whole{path};
    return (whole.parent_path() /
            fmt::format(".{}{}XXXXXX", whole.filename().string(), mark_beside))
        .string();
}

/// The last part of the path for which @ref name_beside made a name; empty for other names.
std::string name_of_beside(const std::string& name) {
    const std::size_t mark = name.rfind(mark_beside);
    constexpr std::size_t random = 6;
    return mark != std::string::npos && name.front() == '.' &&
                   name.size() == mark + mark_beside.size() + random
               ? name.substr(1, mark - 1)
               : "";
}

/// A change of a folder's names lasts when the folder has been written.
void flush_folder_of(const std::string& path) {
    const fs::path parent = fs::path{path}.parent_path();
    const Descriptor folder{open(parent.empty() ? "." : parent.c_str(), O_RDONLY | O_DIRECTORY)};
    fsync(folder.get());
}

}  // namespace

Result<std::string> read_whole_file(const std::string& path, std::string& error) {
    constexpr off_t most = off_t{4} << 20U;
    // Opening a pipe would wait for a writer.
    const Descriptor file{open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    struct stat status {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0) {
        static_cast<void>(fail(path, "read", error));
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode) || status.st_size > most) {
        error = path + ": expected a regular file of at most 4 MiB";
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = read(file.get(), bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            static_cast<void>(fail(path, "read", error));
            OPENSSL_cleanse(bytes.data(), bytes.size());
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

Status write_whole_file(const std::string& path, std::string_view bytes, mode_t mode,
                        std::string& error) {
    std::string beside = name_beside(path);
    const Descriptor file{mkostemp(beside.data(), O_CLOEXEC)};
    if (file.get() < 0) {
        return fail(path, "create", error);
    }
    if (!fill(file.get(), bytes, mode) || rename(beside.c_str(), path.c_str()) != 0) {
        const Status failed = fail(path, "write", error);
        unlink(beside.c_str());
        return failed;
    }
    flush_folder_of(path);
    return Status::ok;
}

void remove_leftovers(const std::string& folder,
                      const std::function<bool(const std::string& name)>& ours) {
    std::error_code unknown;
    for (const fs::directory_entry& each : fs::directory_iterator{folder, unknown}) {
        const std::string name = name_of_beside(each.path().filename().string());
        if (!name.empty() && ours(name)) {
            fs::remove_all(each.path(), unknown);
        }
    }
}

Status create_private_folder(const std::string& path, std::string& error) {
    std::error_code unknown;
    const bool is_there = mkdir(path.c_str(), folder_mode) == 0
                              ? chmod(path.c_str(), folder_mode) == 0
                              : errno == EEXIST && fs::is_directory(path, unknown);
    if (!is_there) {
        return fail(path, "create", error);
    }
    flush_folder_of(path);
    return Status::ok;
}

NewFolder::NewFolder(NewFolder&& other) noexcept
    : path_(std::exchange(other.path_, {})), final_path_(std::exchange(other.final_path_, {})) {}

NewFolder::~NewFolder() {
    if (!path_.empty()) {
        std::error_code unknown;
        fs::remove_all(path_, unknown);
    }
}

Result<NewFolder> NewFolder::create(const std::string& path, std::string& error) {
    struct stat status {};
    if (lstat(path.c_str(), &status) == 0) {
        error = path + ": exists already, and is not overwritten";
        return std::nullopt;
    }
    NewFolder folder;
    std::string beside = name_beside(path);
    if (mkdtemp(beside.data()) == nullptr) {
        static_cast<void>(fail(path, "create", error));
        return std::nullopt;
    }
    folder.path_ = beside;
    folder.final_path_ = path;
    if (chmod(beside.c_str(), folder_mode) != 0) {
        static_cast<void>(fail(path, "create", error));
        return std::nullopt;
    }
    return folder;
}

Status NewFolder::finish(std::string& error) {
    // What has been created meanwhile is not overwritten: only an empty folder could be.
    if (rename(path_.c_str(), final_path_.c_str()) != 0) {
        return fail(final_path_, "create", error);
    }
    path_.clear();
    flush_folder_of(final_path_);
    return Status::ok;
}

FolderLock::FolderLock(FolderLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FolderLock::~FolderLock() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

Result<FolderLock> FolderLock::take(const std::string& folder, std::string& error) {
    FolderLock lock;
    lock.descriptor_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (lock.descriptor_ < 0 || flock(lock.descriptor_, LOCK_EX) != 0) {
        static_cast<void>(fail(folder, "lock", error));
        return std::nullopt;
    }
    return lock;
}

}  // namespace orvane::tools
