#include "tools/domain/writer_accounts.hpp"

#include <algorithm>

namespace orvane::tools {

LossAccount& WriterAccounts::of(const Endpoint& writer) {
    const auto [place, is_new] = open_.try_emplace(writer);
    if (is_new) {
        const auto known = std::find_if(closed_.begin(), closed_.end(),
                                        [&](const auto& each) { return each.first == writer; });
        if (known != closed_.end()) {
            place->second = std::move(known->second);
            closed_.erase(known);
        }
    }
    return place->second;
}

void WriterAccounts::close(const Drop& drop) {
    for (auto each = open_.begin(); each != open_.end();) {
        if (matched_.contains(each->first) || each->second.next_deadline()) {
            ++each;
            continue;
        }
        closed_.emplace_back(each->first, std::move(each->second));
        each = open_.erase(each);
    }
    while (closed_.size() > most_closed) {
        drop(closed_.front().first, closed_.front().second);
        closed_.pop_front();
    }
}

}  // namespace orvane::tools
