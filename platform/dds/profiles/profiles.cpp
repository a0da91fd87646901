#include "platform/dds/profiles/profiles.hpp"

#include <cstdlib>
#include <filesystem>
#include <utility>

#include "platform/dds/profiles/document.hpp"
#include "platform/dds/profiles/elements.hpp"

namespace pexa::dds {
namespace {

constexpr const char* working_directory_file = "USER_QOS_PROFILES.xml";
constexpr const char* list_variable = "PEXA_QOS_PROFILES";
constexpr char list_separator = ';';

thread_local bool reads_environment = false;

/// Marks that this thread reads the environment's files.
class ReadingEnvironment {
public:
    ReadingEnvironment() { reads_environment = true; }
    ReadingEnvironment(const ReadingEnvironment&) = delete;
    ReadingEnvironment& operator=(const ReadingEnvironment&) = delete;
    ~ReadingEnvironment() { reads_environment = false; }
};

/// Documents whose faults are still to be reported.
using Documents = std::vector<std::unique_ptr<xml::Parser>>;

/// A file that cannot be read exists too. The reader reports it.
bool exists(const char* file_name) {
    std::error_code unknown;
    return std::filesystem::exists(file_name, unknown);
}

std::vector<std::string> files_of_environment() {
    std::vector<std::string> files;
    if (exists(working_directory_file)) {
        files.emplace_back(working_directory_file);
    }
    const char* value = std::getenv(list_variable);
    std::string_view list = value != nullptr ? value : "";
    while (!list.empty()) {
        const std::size_t end = list.find(list_separator);
        if (end != 0) {
            files.emplace_back(list.substr(0, end));
        }
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return files;
}

/// Adds the profiles of a file. The store is unchanged if the file is of no use.
/// @return whether it is of use
bool add_file(const std::string& file_name, ProfileStore& store, Documents& documents) {
    auto document = std::make_unique<xml::Parser>(xml::ForeignElements::warnings);
    document->read_file(file_name);
    ProfileStore extended = store;
    const bool usable = add_profiles(*document, extended);
    documents.push_back(std::move(document));
    if (usable) {
        store = std::move(extended);
    }
    return usable;
}

/// @return whether all files are of use.
bool add_files(const std::vector<std::string>& file_names, ProfileStore& store,
               Documents& documents) {
    bool success = true;
    for (const std::string& file_name : file_names) {
        success = add_file(file_name, store, documents) && success;
    }
    return success;
}

void report(const Operation& operation, const Documents& documents) {
    for (const auto& document : documents) {
        document->report_faults(operation);
        DDS_XMLError fault{};
        for (DDS_Long i = 0; document->get_fault(i, fault) == Status::ok; ++i) {
            operation.tell_if_silent(text_of(fault).c_str());
        }
    }
}

}  // namespace

Profiles::StorePtr Profiles::current() const {
    const std::lock_guard guard(mutex_);
    return store_;
}

Profiles::StorePtr Profiles::get(const Operation& operation) {
    if (StorePtr known = current()) {
        return known;
    }
    auto store = std::make_shared<ProfileStore>();
    if (reads_environment) {
        return store;
    }
    Documents documents;
    {
        const ReadingEnvironment reading;
        add_files(files_of_environment(), *store, documents);
    }
    {
        const std::lock_guard guard(mutex_);
        // Another thread may have been faster. It has then reported the faults, too.
        if (store_ != nullptr) {
            return store_;
        }
        store_ = store;
    }
    report(operation, documents);
    return store;
}

Result<const QosProfile*> Profiles::choose(const ProfileStore& store, const Operation& operation,
                                           const ProfileName& name) {
    const QosProfile* profile = store.find(name);
    if (profile == nullptr) {
        const std::string step =
            "looking for profile \"" + name.profile + "\" of library \"" + name.qos_library + "\"";
        return operation.failed(step.c_str(), Status::no_data);
    }
    const std::string refusal = store.refusal(*profile);
    if (!refusal.empty()) {
        const std::string text =
            "profile " + text_of({name.qos_library, name.profile}) + " is refused: " + refusal;
        return operation.refused(text.c_str(), Status::error);
    }
    return profile;
}

void Profiles::remember(const char* file_name) {
    std::string name(file_name);
    files_.reserve(files_.size() + 1);
    std::erase(files_, name);
    files_.push_back(std::move(name));
}

Status Profiles::load(const Operation& operation, const char* file_name) {
    if (reads_environment) {
        return operation.precondition_not_met("the environment's files have been read");
    }
    for (;;) {
        const StorePtr before = get(operation);
        auto store = std::make_shared<ProfileStore>(*before);
        Documents documents;
        if (!add_file(file_name, *store, documents)) {
            report(operation, documents);
            return Status::error;
        }
        std::unique_lock lock(mutex_);
        if (store_ == before) {
            remember(file_name);
            store_ = std::move(store);
            lock.unlock();
            report(operation, documents);
            return Status::ok;
        }
    }
}

Status Profiles::reload(const Operation& operation) {
    for (;;) {
        std::vector<std::string> file_names = files_of_environment();
        std::unique_lock lock(mutex_);
        const StorePtr before = store_;
        file_names.insert(file_names.end(), files_.begin(), files_.end());
        lock.unlock();
        auto store = std::make_shared<ProfileStore>();
        Documents documents;
        const bool success = add_files(file_names, *store, documents);
        lock.lock();
        if (success && store_ != before) {
            // The new store lacks a file that another thread has loaded meanwhile.
            continue;
        }
        if (success) {
            store_ = std::move(store);
        }
        lock.unlock();
        report(operation, documents);
        return success ? Status::ok : Status::error;
    }
}

}  // namespace pexa::dds
