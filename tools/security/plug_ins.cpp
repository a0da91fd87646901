#include "tools/security/plug_ins.hpp"

#include <dlfcn.h>
#include <link.h>

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

/// The folder of the engine's library in this process; empty when there is none.
fs::path engine_folder() {
    fs::path folder;
    dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t /*size*/, void* data) {
            const fs::path path = info->dlpi_name;
            if (!path.filename().string().starts_with("libddsc.so")) {
                return 0;
            }
            *static_cast<fs::path*>(data) = path.parent_path();
            return 1;
        },
        &folder);
    return folder;
}

/// Debian has the plug-ins in a folder beside the library that is called like its package.
bool is_beside_engine(const std::string& file) {
    const fs::path folder = engine_folder();
    std::error_code unknown;
    if (folder.empty()) {
        return false;
    }
    for (fs::directory_iterator each{folder, unknown}, end; !unknown && each != end;
         each.increment(unknown)) {
        if (each->path().filename().string().starts_with("libddsc") &&
            fs::exists(each->path() / file, unknown)) {
            return true;
        }
    }
    return false;
}

bool can_be_loaded(const std::string& file) {
    void* library = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr) {
        return false;
    }
    dlclose(library);
    return true;
}

}  // namespace

std::vector<std::string> missing_plug_ins() {
    std::vector<std::string> missing;
    for (const PlugIn& plug_in : plug_ins) {
        const std::string file = std::string{"lib"} + plug_in.name + ".so";
        if (!is_beside_engine(file) && !can_be_loaded(file)) {
            missing.push_back(file);
        }
    }
    return missing;
}

}  // namespace orvane::tools
