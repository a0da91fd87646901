#include "tools/domain/logger_directory.hpp"

namespace orvane::tools {

void LoggerDirectory::add(const LoggerState& state) {
    Entry& entry = entries_[state.application];
    entry.has_gone = false;
    if (!state.kind.empty() && entry.kind != state.kind) {
        entry.kind = state.kind;
        entry.number = ++last_numbers_[state.kind];
    }
}

void LoggerDirectory::add(const Application& application, const Process& process) {
    entries_[application].process = process;
}

void LoggerDirectory::note_end(const Application& application) {
    const auto known = entries_.find(application);
    if (known == entries_.end()) {
        return;
    }
    known->second.has_gone = true;
    gone_.push_back(application);
    if (gone_.size() <= most_gone) {
        return;
    }
    const auto oldest = entries_.find(gone_.front());
    if (oldest != entries_.end() && oldest->second.has_gone) {
        entries_.erase(oldest);
    }
    gone_.pop_front();
}

Logger LoggerDirectory::logger(const Application& application) const {
    const Entry& entry = find(application);
    return {.application = application,
            .kind = entry.kind,
            .number = entry.number,
            .host = entry.process.host,
            .process = entry.process.name,
            .process_id = entry.process.id};
}

Process LoggerDirectory::process(const Application& application) const {
    return find(application).process;
}

const LoggerDirectory::Entry& LoggerDirectory::find(const Application& application) const {
    static const Entry unknown;
    const auto known = entries_.find(application);
    return known == entries_.end() ? unknown : known->second;
}

}  // namespace orvane::tools
