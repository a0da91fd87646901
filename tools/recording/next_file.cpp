#include "tools/recording/next_file.hpp"

#include <sys/stat.h>

#include <charconv>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>
#include <tuple>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

/// "log", 2 and ".mcap" of "log.2.mcap".
struct NameParts {
    fs::path base;
    std::uint64_t number = 0;  ///< 0 for none
    fs::path ending;
};

/// @return 0 when it is no number
std::uint64_t number_of(const fs::path& extension) {
    const std::string text = extension.string();
    const std::string_view digits = std::string_view{text}.substr(text.empty() ? 0 : 1);
    std::uint64_t number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, 10);
    const bool is_number = error == std::errc{} && end == digits.data() + digits.size();
    return is_number && digits.front() != '0' ? number : 0;
}

NameParts parts_of(const fs::path& name) {
    if (const std::uint64_t number = number_of(name.extension()); number > 0) {
        return {name.stem(), number, {}};
    }
    const fs::path stem = name.stem();
    const std::uint64_t number = number_of(stem.extension());
    return {number > 0 ? stem.stem() : stem, number, name.extension()};
}

/// An empty file may be deleted again, where the disk is full.
bool is_written_since(const fs::path& file, const timespec& time) {
    struct stat status {};
    return stat(file.c_str(), &status) == 0 && status.st_size > 0 &&
           std::tie(status.st_mtim.tv_sec, status.st_mtim.tv_nsec) >=
               std::tie(time.tv_sec, time.tv_nsec);
}

/// The files of the same recording with higher numbers.
std::map<std::uint64_t, fs::path> files_behind(const NameParts& before, const fs::path& folder) {
    std::map<std::uint64_t, fs::path> later;
    std::error_code unknown;
    for (fs::directory_iterator each{folder.empty() ? "." : folder, unknown}, end;
         !unknown && each != end; each.increment(unknown)) {
        const fs::path name = each->path().filename();
        const NameParts parts = parts_of(name);
        if (parts.base == before.base && parts.ending == before.ending &&
            parts.number > before.number) {
            later.emplace(parts.number, folder / name);
        }
    }
    return later;
}

}  // namespace

std::string numbered_path(const std::string& path, std::uint64_t number) {
    fs::path numbered{path};
    const std::string ending = numbered.extension().string();
    numbered.replace_extension();
    return numbered.string() + '.' + std::to_string(number) + ending;
}

std::optional<NextFile> next_file(const std::string& path, const timespec& last_write) {
    const fs::path folder = fs::path{path}.parent_path();
    const fs::path present = fs::path{path}.filename();
    // The first file of a recording may have a number, too.
    NameParts before{present.stem(), 0, present.extension()};
    std::map<std::uint64_t, fs::path> later = files_behind(before, folder);
    if (later.empty()) {
        before = parts_of(present);
        later = files_behind(before, folder);
    }
    std::uint64_t expected = before.number + 1;
    bool is_adjacent = true;
    for (const auto& [number, file] : later) {
        is_adjacent = is_adjacent && number == expected;
        expected = number + 1;
        if (is_written_since(file, last_write)) {
            return NextFile{file.string(), is_adjacent};
        }
    }
    return std::nullopt;
}

}  // namespace orvane::tools
