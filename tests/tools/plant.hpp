// A directory with an authority, and what can be looked at in it.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tools/security/authority.hpp"
#include "tools/security/credential_check.hpp"
#include "tools/security/credentials.hpp"
#include "tools/security/wanted_rights.hpp"

namespace orvane::tools {

namespace fs = std::filesystem;

inline constexpr std::int64_t now = 1'800'000'000;
inline constexpr std::int64_t day = 86400;

inline std::string bytes_of(const fs::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream{path}.rdbuf();
    return bytes.str();
}

inline void copy(const fs::path& from, const fs::path& to, const char* file) {
    fs::copy(from / file, to / file, fs::copy_options::overwrite_existing);
}

class Plant : public testing::Test {
protected:
    Plant() {
        std::string name = (fs::temp_directory_path() / "orvane-security-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~Plant() override { fs::remove_all(folder_); }

    std::string directory(const char* name = "plant") {
        std::string path = (folder_ / name).string();
        std::string error;
        if (!fs::exists(path)) {
            EXPECT_EQ(Authority::create(path, {{}}, now, error), Status::ok) << error;
        }
        return path;
    }

    /// @return the error, empty for none
    std::string issue(const std::string& name, const WantedRights& wanted,
                      const char* plant = "plant") {
        std::string error;
        const auto rules = rules_of(wanted, name, validity_in_days(365, now), error);
        if (!rules) {
            return error;
        }
        const auto authority = Authority::open(directory(plant), error);
        return authority && authority->issue({name, grant_name_of(wanted), *rules}, now, error) ==
                                Status::ok
                   ? ""
                   : error;
    }
    std::string issue(const std::string& name, Role role, const char* plant = "plant") {
        return issue(name, WantedRights{role, {}, {}, {}, {}, {}}, plant);
    }

    fs::path path(const std::string& name, const char* file = "") {
        return fs::path{directory()} / name / file;
    }

    Permissions permissions_of(const std::string& name) {
        std::string error;
        const auto permissions = read_permissions(path(name).string(), error);
        EXPECT_TRUE(permissions) << error;
        return permissions.value_or(Permissions{});
    }

    /// What is wrong, a line each, but for what this machine lacks.
    std::string findings(const std::string& name, std::optional<std::int32_t> domain_id = {},
                         std::int64_t at = now) {
        std::string text;
        for (const auto& finding : check_credentials(path(name).string(), domain_id, at)) {
            if (finding.cause.find("plug-in") == std::string::npos) {
                EXPECT_FALSE(finding.remedy.empty());
                text += (finding.fatal ? "" : "warning: ") + finding.cause + '\n';
            }
        }
        return text;
    }

    fs::path folder_;
};

}  // namespace orvane::tools
