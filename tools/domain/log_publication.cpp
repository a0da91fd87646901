#include "tools/domain/log_publication.hpp"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace orvane::tools {
namespace {

/// Of an application and a level, for viewers that come later. The loggers keep fewer.
constexpr DDS_Long kept_messages = 1000;

/// The middleware takes texts as they are, and does not change them.
char* text_of(const std::string& text) {
    return const_cast<char*>(text.c_str());
}

bool is_text(const std::string& text, std::size_t longest) {
    return text.size() <= longest && text.find('\0') == std::string::npos;
}

/// @return nothing when the middleware cannot express it
std::optional<DDS_Time_t> time_of(std::int64_t nanoseconds) {
    constexpr std::int64_t second = 1'000'000'000;
    const std::int64_t seconds = nanoseconds / second;
    if (nanoseconds < 0 || seconds > std::numeric_limits<DDS_Long>::max()) {
        return std::nullopt;
    }
    return DDS_Time_t{static_cast<DDS_Long>(seconds),
                      static_cast<DDS_UnsignedLong>(nanoseconds % second)};
}

QEL_KX_ADMIN_State to_sample(const LoggerState& state) {
    QEL_KX_ADMIN_State sample{};
    sample.hostAndAppId = to_identity(state.application);
    sample.administrationDomainId = state.domain_id;
    sample.state = state.state;
    sample.applicationKind = text_of(state.kind);
    sample.filterLevel = state.filter_level;
    for (std::size_t i = 0; i < state.verbosities.size(); ++i) {
        sample.qelLoggerVerbosities[i] = {static_cast<QEL_KX_ADMIN_QELLoggerCategory>(i),
                                          state.verbosities[i]};
    }
    sample.qelLoggerPrintFormat = state.print_format;
    return sample;
}

}  // namespace

std::unique_ptr<LogPublication> LogPublication::open(const DomainOptions& domain) {
    Participant participant = join_domain(domain);
    if (!participant) {
        return nullptr;
    }
    std::unique_ptr<LogPublication> publication{new LogPublication{std::move(participant)}};
    return publication->start() == Status::ok ? std::move(publication) : nullptr;
}

Status LogPublication::start() {
    identity_ = identity_of(participant_.get());
    // The States first: a viewer that has matched the writer of messages soon gets their names.
    states_ = create_writer<QEL_KX_ADMIN_State>(
        participant_.get(), {.history = DDS_KEEP_LAST_HISTORY_QOS, .kept_for_late_readers = 1});
    messages_ = create_writer<QEL_KX_LogMessage>(
        participant_.get(), {.kept_for_late_readers = kept_messages, .batches = true});
    return states_ != nullptr && messages_ != nullptr ? Status::ok : Status::failed;
}

bool LogPublication::is_publishable(const LogRecord& record) {
    return time_of(record.nanoseconds) && is_text(record.category, ORVANE_LOG_CATEGORY_BOUND) &&
           is_text(record.message, ORVANE_LOG_MESSAGE_BOUND);
}

bool LogPublication::is_publishable(const LoggerState& state) {
    return is_text(state.kind, ORVANE_APPLICATION_KIND_BOUND);
}

LogPublication::Written LogPublication::write(const LogRecord& record) {
    const DDS_Time_t time = time_of(record.nanoseconds).value_or(DDS_TIME_INVALID);
    const QEL_KX_LogMessage sample{.hostAndAppId = to_identity(record.application),
                                   .level = record.level,
                                   .category = text_of(record.category),
                                   .message = text_of(record.message)};
    switch (
        QEL_KX_LogMessageDataWriter_write_w_timestamp(messages_, &sample, &DDS_HANDLE_NIL, &time)) {
        case DDS_RETCODE_OK:
            return Written::yes;
        case DDS_RETCODE_TIMEOUT:
            return Written::not_yet;
        default:
            return Written::failed;
    }
}

Status LogPublication::write(const LoggerState& state) {
    const QEL_KX_ADMIN_State sample = to_sample(state);
    if (QEL_KX_ADMIN_StateDataWriter_write(states_, &sample, &DDS_HANDLE_NIL) != DDS_RETCODE_OK) {
        return Status::failed;
    }
    alive_.insert(state.application);
    return Status::ok;
}

Status LogPublication::end(Application application) {
    const bool was_alive = alive_.erase(application) > 0;
    const bool lives_on = std::any_of(alive_.begin(), alive_.end(), [&](const Application& each) {
        return share_host_and_app(each, application);
    });
    if (!was_alive || lives_on) {
        return Status::ok;
    }
    QEL_KX_ADMIN_State sample{};
    sample.hostAndAppId = to_identity(application);
    return QEL_KX_ADMIN_StateDataWriter_unregister_instance(states_, &sample, &DDS_HANDLE_NIL) ==
                   DDS_RETCODE_OK
               ? Status::ok
               : Status::failed;
}

Status LogPublication::end_all() {
    Status status = Status::ok;
    while (!alive_.empty() && status == Status::ok) {
        status = end(*alive_.begin());
    }
    return status;
}

void LogPublication::flush() {
    DDS_DataWriter_flush(messages_);
}

bool LogPublication::wait_for_viewers(std::chrono::milliseconds longest) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(longest);
    const std::chrono::nanoseconds rest = longest - seconds;
    const DDS_Duration_t duration{static_cast<DDS_Long>(seconds.count()),
                                  static_cast<DDS_UnsignedLong>(rest.count())};
    return DDS_DataWriter_wait_for_acknowledgments(messages_, &duration) == DDS_RETCODE_OK;
}

bool LogPublication::has_viewer() const {
    DDS_PublicationMatchedStatus status{};
    DDS_DataWriter_get_publication_matched_status(messages_, &status);
    return status.current_count > 0;
}

}  // namespace orvane::tools
