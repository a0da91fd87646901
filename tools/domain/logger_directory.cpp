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
    const auto known = find(application);
    if (known == entries_.end()) {
        Logger unknown;
        unknown.application = application;
        return unknown;
    }
    const Entry& entry = known->second;
    return {.application = known->first,
            .kind = entry.kind,
            .number = entry.number,
            .host = entry.process.host,
            .process = entry.process.name,
            .process_id = entry.process.id};
}

std::shared_ptr<const Publisher> LoggerDirectory::publisher(
    const std::optional<Application>& application, bool is_authenticated) const {
    return application
               ? std::make_shared<Publisher>(Publisher{logger(*application), is_authenticated})
               : nullptr;
}

Process LoggerDirectory::process(const Application& application) const {
    const auto known = find(application);
    return known == entries_.end() ? Process{} : known->second.process;
}

LoggerDirectory::Entries::const_iterator LoggerDirectory::find(
    const Application& application) const {
    // Of those that share HOST:APP the one without an instance id is the first.
    const auto found = entries_.lower_bound(application);
    const bool is_it = found != entries_.end() &&
                       (application.instance_id == 0 ? share_host_and_app(found->first, application)
                                                     : found->first == application);
    return is_it ? found : entries_.end();
}

}  // namespace orvane::tools
