// The credentials of the people and programs of a test.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tests/integration/child_process.hpp"
#include "tools/security/authority.hpp"
#include "tools/security/roles.hpp"

namespace orvane::tests {

/// A folder below the temporary one with the authority "plant" and the foreign one "elsewhere", for
/// the length of a scope. Both have begun thirty days ago.
class Plant {
public:
    Plant();
    ~Plant();

    /// When all credentials were issued, in seconds since 1970-01-01 UTC.
    std::int64_t begin() const { return begin_; }

    /// Everything that there is to do on the logger's topics.
    static std::vector<tools::TopicRight> all_rights();

    struct Terms {
        std::string authority = "plant";
        std::vector<tools::DomainRange> domains = {{}};
        std::int64_t days = 365;
        std::optional<std::int64_t> from{};  ///< when the days begin, if not with the others'
    };
    void issue(const std::string& name, const std::vector<tools::TopicRight>& rights,
               const Terms& terms) const;
    void issue(const std::string& name, const std::vector<tools::TopicRight>& rights) const {
        issue(name, rights, {});
    }
    /// Tells all but @p name itself, who keeps the old list.
    void revoke(const std::string& name) const;

    std::string folder(const std::string& name, const std::string& authority = "plant") const {
        return root_ / authority / name;
    }
    /// @name Permissions of a name that its authority has not signed.
    /// @{
    /// Those that it has, with the right to everything written into them.
    std::string changed_permissions(const std::string& name) const;
    /// The right to everything, signed by the name itself.
    std::string own_permissions(const std::string& name) const;
    /// @}

    /// What starts a program with credentials.
    Words launcher(const std::string& folder) const;
    /// The same for a program that does not ask its own engine whether it may.
    Words dishonest_launcher(const std::string& folder) const;

private:
    Words launcher_with(const std::string& profile) const;

    std::filesystem::path root_;
    std::int64_t begin_;
};

}  // namespace orvane::tests
