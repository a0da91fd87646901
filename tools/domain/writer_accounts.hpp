/// @file writer_accounts.hpp
/// @brief The accounts of all writers of messages that a viewer has heard of.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <utility>

#include "tools/domain/loss_account.hpp"
#include "tools/records/endpoint.hpp"

namespace orvane::tools {

/// An account is open as long as its writer is matched, or as it may change although nothing comes.
/// Then it is closed, but not yet dropped: the last statistics may come late, and a writer that was
/// only unreachable comes back and sends its history again. A new account would take everything
/// before that for lost.
class WriterAccounts {
public:
    /// So many are closed and not dropped.
    static constexpr std::size_t most_closed = 1000;
    using Drop = std::function<void(const Endpoint& writer, const LossAccount& account)>;

    /// Opens the account of a writer, or a new one.
    LossAccount& of(const Endpoint& writer);

    std::map<Endpoint, LossAccount>& open() { return open_; }
    const std::map<Endpoint, LossAccount>& open() const { return open_; }
    /// In the order in which they were closed.
    const std::deque<std::pair<Endpoint, LossAccount>>& closed() const { return closed_; }

    /// Says which writers are matched from now on.
    void set_matched(std::set<Endpoint> writers) { matched_ = std::move(writers); }

    /// Closes those that are over.
    /// @param drop is called for each that is then too many
    void close(const Drop& drop);

private:
    std::map<Endpoint, LossAccount> open_;
    std::deque<std::pair<Endpoint, LossAccount>> closed_;
    std::set<Endpoint> matched_;
};

}  // namespace orvane::tools
