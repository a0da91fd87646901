/// @file whole_file.hpp
/// @brief Files and folders that are there as a whole or not at all. An error is "PATH: …".
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

#include "tools/records/result.hpp"

namespace orvane::tools {

/// @name Modes, which the umask does not change.
/// @{
inline constexpr mode_t private_mode = 0600;
inline constexpr mode_t public_mode = 0644;
inline constexpr mode_t folder_mode = 0700;
/// @}

/// The bytes of a regular file of at most 4 MiB.
Result<std::string> read_whole_file(const std::string& path, std::string& error);

/// Creates a file or takes the place of one, in one step. Nobody else can read it before it has its
/// mode.
Status write_whole_file(const std::string& path, std::string_view bytes, mode_t mode,
                        std::string& error);

/// Removes the beginnings of files and folders that processes have left who were killed. For who
/// has the folder to itself.
/// @param ours tells whether to do so by the name that it would have had
void remove_leftovers(const std::string& folder,
                      const std::function<bool(const std::string& name)>& ours);

/// Creates a folder for nobody but its owner, unless there is one.
Status create_private_folder(const std::string& path, std::string& error);

/// A folder that is made under another name, for nobody but its owner, and gets its own name when
/// all is in it. Without that it is removed.
class NewFolder {
public:
    NewFolder() = default;
    NewFolder(NewFolder&& other) noexcept;
    NewFolder& operator=(NewFolder&&) = delete;
    ~NewFolder();

    /// @param path the name that it will have; nothing may be there
    static Result<NewFolder> create(const std::string& path, std::string& error);

    /// Where it is up to @ref finish.
    const std::string& path() const { return path_; }

    Status finish(std::string& error);

private:
    std::string path_;
    std::string final_path_;
};

/// Keeps other processes out of a folder that they lock, too, until it is destroyed.
class FolderLock {
public:
    FolderLock() = default;
    FolderLock(FolderLock&& other) noexcept;
    FolderLock& operator=(FolderLock&&) = delete;
    ~FolderLock();

    /// Waits for others.
    static Result<FolderLock> take(const std::string& folder, std::string& error);

private:
    int descriptor_ = -1;
};

}  // namespace orvane::tools
