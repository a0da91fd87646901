#include "tools/domain/log_subscription.hpp"

#include <algorithm>
#include <set>
#include <utility>

#include "tools/domain/entities.hpp"
#include "tools/domain/live_loggers.hpp"
#include "tools/domain/log_stream.hpp"
#include "tools/domain/logger_directory.hpp"
#include "tools/domain/process_discovery.hpp"
#include "tools/domain/state_reader.hpp"
#include "tools/domain/statistics_reader.hpp"
#include "tools/domain/wait_set.hpp"
#include "tools/text/time_text.hpp"

namespace orvane::tools {
namespace {

LogRecord to_record(const QEL_KX_LogMessage& sample, const DDS_Time_t& timestamp,
                    const Endpoint& writer) {
    return {.nanoseconds = nanoseconds_of(timestamp),
            .application = application_of(sample.hostAndAppId, writer),
            .level = sample.level,
            .category = sample.category,
            .message = sample.message};
}

struct Received {
    LogRecord record;
    Origin origin;
};

Origin origin_of(const DDS_SampleInfo& info) {
    const DDS_SequenceNumber_t& number = info.publication_sequence_number;
    Origin origin{.writer = endpoint_of(info.publication_handle), .number = {}};
    if (number.high >= 0) {
        origin.number = static_cast<std::uint64_t>(number.high) << 32U | number.low;
    }
    return origin;
}

class TypedSubscription final : public LogSubscription {
public:
    explicit TypedSubscription(bool is_authenticated)
        : is_authenticated_(is_authenticated), stream_(directory_, is_authenticated) {}

    Status start(const DomainOptions& domain) {
        participant_ = join_domain(domain);
        if (!participant_) {
            return Status::failed;
        }
        messages_ = create_reader<QEL_KX_LogMessage>(
            participant_.get(), DDS_TRANSIENT_LOCAL_DURABILITY_QOS, DDS_KEEP_ALL_HISTORY_QOS);
        const bool has_states = domain.may_read(QEL_KX_STATE_TOPIC_NAME) &&
                                states_.open(participant_.get()) == Status::ok;
        // Behind the reader of messages: a logger that sends new statistics knows that one, too.
        statistics_ = domain.may_read(QEL_KX_STATISTICS_TOPIC_NAME)
                          ? create_statistics_reader(participant_.get())
                          : nullptr;
        // Who may not read the others can still read messages.
        const bool succeeded =
            messages_ != nullptr && wait_set_.open() == Status::ok &&
            attach(messages_) == Status::ok &&
            (!has_states || attach(states_.reader()) == Status::ok) &&
            (statistics_ == nullptr || wait_set_.attach_data_of(statistics_) == Status::ok);
        if (succeeded) {
            self_ =
                endpoint_of(DDS_Entity_get_instance_handle(DDS_DataReader_as_entity(messages_)));
        }
        return succeeded ? Status::ok : Status::failed;
    }

    void wait(std::chrono::milliseconds longest) override {
        if (const auto deadline = stream_.next_deadline()) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(*deadline - LogStream::Clock::now());
            longest = std::clamp(left, std::chrono::milliseconds{0}, longest);
        }
        wait_set_.wait(longest);
    }

    void interrupt() override { wait_set_.interrupt(); }

    Result<std::vector<Event>> take(bool is_last) override {
        std::set<Application> heard;
        std::vector<LoggerChange> changes;
        if (take_states(heard, changes) == Status::failed ||
            take_messages(heard) == Status::failed || take_statistics() == Status::failed) {
            return {};
        }
        note_writers();
        for (const auto& [application, process] : processes_.look_up(participant_.get(), heard)) {
            directory_.add(application, process);
        }
        const std::int64_t now = wall_clock();
        std::vector<Event> events;
        const auto tell = [&](bool gone) {
            for (const LoggerChange& change : changes) {
                if ((change.kind == LoggerChange::Kind::gone) != gone) {
                    continue;
                }
                events.emplace_back(
                    LoggerEvent{now, change, directory_.logger(change.now.application),
                                directory_.publisher(change.publisher, is_authenticated_)});
                if (gone) {
                    directory_.note_end(change.now.application);
                }
            }
        };
        tell(false);
        stream_.take(LogStream::Clock::now(), now, is_last, events);
        tell(true);
        return events;
    }

    ParticipantCensus census() const override { return count_participants(participant_.get()); }

    std::uint64_t earlier(
        const std::function<bool(const Logger& logger)>& is_wanted) const override {
        return stream_.earlier(is_wanted);
    }

private:
    /// Waits for its data and for changes of its writers.
    Status attach(DDS_DataReader* reader) {
        return wait_set_.attach_data_of(reader) == Status::ok
                   ? wait_set_.attach_statuses_of(DDS_DataReader_as_entity(reader),
                                                  DDS_SUBSCRIPTION_MATCHED_STATUS)
                   : Status::failed;
    }

    Status take_states(std::set<Application>& heard, std::vector<LoggerChange>& changes) {
        std::vector<StateUpdate> updates;
        if (states_.reader() != nullptr && states_.take(updates) == Status::failed) {
            return Status::failed;
        }
        for (const StateUpdate& update : updates) {
            heard.insert({update.application, update.writer});
            for (LoggerChange& change : live_.apply(update)) {
                directory_.add(change.now);
                changes.push_back(std::move(change));
            }
        }
        return Status::ok;
    }

    Status take_messages(std::set<Application>& heard) {
        std::vector<Received> received;
        const LogStream::Clock::time_point now = LogStream::Clock::now();
        const auto add = [&](const QEL_KX_LogMessage& sample, const DDS_SampleInfo& info) {
            if (info.valid_data != 0) {
                const Origin origin = origin_of(info);
                received.push_back(
                    {to_record(sample, info.source_timestamp, origin.writer), origin});
            } else {
                stream_.receive_end(origin_of(info), now);
            }
        };
        if (take_all<QEL_KX_LogMessage>(messages_, add) == Status::failed) {
            return Status::failed;
        }
        // A take groups the messages by instance, which here means by application and level.
        std::vector<Received*> ordered(received.size());
        std::transform(received.begin(), received.end(), ordered.begin(),
                       [](Received& each) { return &each; });
        std::stable_sort(ordered.begin(), ordered.end(), [](const auto* a, const auto* b) {
            return a->record.nanoseconds < b->record.nanoseconds;
        });
        for (Received* each : ordered) {
            heard.insert(each->record.application);
            if (each->record.application.instance_id == 0) {
                heard.insert(application_of(each->origin.writer));
            }
            stream_.receive(std::move(each->record), each->origin, now);
        }
        return Status::ok;
    }

    void note_writers() {
        DDS_SubscriptionMatchedStatus status{};
        DDS_DataReader_get_subscription_matched_status(messages_, &status);
        if (status.total_count_change != 0 || status.current_count_change != 0) {
            stream_.set_matched(
                matched_endpoints(messages_, DDS_DataReader_get_matched_publications));
        }
    }

    Status take_statistics() {
        std::vector<LoggerStatistics> received;
        if (tools::take_statistics(statistics_, self_, received) == Status::failed) {
            return Status::failed;
        }
        for (const LoggerStatistics& each : received) {
            stream_.receive(each, LogStream::Clock::now());
        }
        return Status::ok;
    }

    const bool is_authenticated_;
    // The wait set is deleted before its entities.
    Participant participant_;
    DDS_DataReader* messages_ = nullptr;
    StateReader states_;
    DDS_DataReader* statistics_ = nullptr;
    Endpoint self_;  ///< the reader of messages
    ProcessDiscovery processes_;
    LiveLoggers live_;
    LoggerDirectory directory_;
    LogStream stream_;
    WaitSet wait_set_;
};

}  // namespace

std::unique_ptr<LogSubscription> LogSubscription::open(const DomainOptions& domain,
                                                       bool is_authenticated) {
    auto subscription = std::make_unique<TypedSubscription>(is_authenticated);
    if (subscription->start(domain) == Status::failed) {
        return nullptr;
    }
    return subscription;
}

}  // namespace orvane::tools
