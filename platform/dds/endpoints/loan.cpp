#include "platform/dds/endpoints/loan.hpp"

#include <algorithm>

namespace pexa::dds {

LoanBook::Entry LoanBook::take_blank() {
    Entry entry;
    {
        const std::lock_guard guard(mutex_);
        if (!blank_.empty()) {
            entry.splice(entry.end(), blank_, blank_.begin());
            return entry;
        }
    }
    entry.emplace_back();
    return entry;
}

void LoanBook::put_back(Entry& entry) {
    entry.front().samples.clear();
    entry.front().infos.clear();
    entry.front().received.clear();
    const std::lock_guard guard(mutex_);
    blank_.splice(blank_.begin(), entry);
}

void LoanBook::enter(Entry& entry) {
    const std::lock_guard guard(mutex_);
    outstanding_.splice(outstanding_.end(), entry);
}

LoanBook::Entry LoanBook::end(void* const* samples, DDS_Long count, const DDS_SampleInfo* infos) {
    Entry entry;
    const std::lock_guard guard(mutex_);
    const auto found =
        std::find_if(outstanding_.begin(), outstanding_.end(), [&](const Loan& loan) {
            return loan.samples.data() == samples && loan.infos.data() == infos &&
                   loan.samples.size() == static_cast<std::size_t>(count);
        });
    if (found != outstanding_.end()) {
        entry.splice(entry.end(), outstanding_, found);
    }
    return entry;
}

bool LoanBook::empty() const {
    const std::lock_guard guard(mutex_);
    return outstanding_.empty();
}

}  // namespace pexa::dds
