#include "tools/domain/log_subscription.hpp"

#include <algorithm>
#include <set>
#include <utility>

#include "tools/domain/entities.hpp"
#include "tools/domain/logger_directory.hpp"
#include "tools/domain/process_discovery.hpp"
#include "tools/domain/state_reader.hpp"
#include "tools/domain/wait_set.hpp"

namespace orvane::tools {
namespace {

LogRecord to_record(const QEL_KX_LogMessage& sample, const DDS_Time_t& timestamp) {
    return {.nanoseconds = timestamp.sec * std::int64_t{1'000'000'000} + timestamp.nanosec,
            .application = application_of(sample.hostAndAppId),
            .level = sample.level,
            .category = sample.category,
            .message = sample.message};
}

class TypedSubscription final : public LogSubscription {
public:
    Status start(std::int32_t domain_id) {
        participant_ = join_domain(domain_id);
        if (!participant_) {
            return Status::failed;
        }
        reader_ = create_reader<QEL_KX_LogMessage>(
            participant_.get(), DDS_TRANSIENT_LOCAL_DURABILITY_QOS, DDS_KEEP_ALL_HISTORY_QOS);
        states_ = create_state_reader(participant_.get());
        const bool succeeded = reader_ != nullptr && states_ != nullptr &&
                               wait_set_.open() == Status::ok &&
                               wait_set_.attach_data_of(reader_) == Status::ok &&
                               wait_set_.attach_data_of(states_) == Status::ok;
        return succeeded ? Status::ok : Status::failed;
    }

    void wait(std::chrono::milliseconds longest) override { wait_set_.wait(longest); }

    void interrupt() override { wait_set_.interrupt(); }

    Result<std::vector<MessageEvent>> take() override {
        std::vector<StateUpdate> updates;
        std::vector<LogRecord> records;
        const auto add = [&](const QEL_KX_LogMessage& sample, const DDS_SampleInfo& info) {
            if (info.valid_data != 0) {
                records.push_back(to_record(sample, info.source_timestamp));
            }
        };
        if (take_states(states_, updates) == Status::failed ||
            take_all<QEL_KX_LogMessage>(reader_, add) == Status::failed) {
            return {};
        }
        std::set<Application> heard;
        for (const StateUpdate& update : updates) {
            heard.insert(update.application);
            if (update.state) {
                directory_.add(*update.state);
            }
        }
        for (const LogRecord& record : records) {
            heard.insert(record.application);
        }
        for (const auto& [application, process] : processes_.look_up(participant_.get(), heard)) {
            directory_.add(application, process);
        }
        // A take groups the messages by instance, which here means by application and level.
        std::stable_sort(records.begin(), records.end(), [](const auto& a, const auto& b) {
            return a.nanoseconds < b.nanoseconds;
        });
        std::vector<MessageEvent> events;
        events.reserve(records.size());
        for (LogRecord& record : records) {
            const Logger logger = directory_.logger(record.application);
            events.push_back({std::move(record), logger});
        }
        return events;
    }

    std::int32_t lost() override {
        DDS_SampleLostStatus status{};
        DDS_DataReader_get_sample_lost_status(reader_, &status);
        return status.total_count;
    }

private:
    // The wait set is deleted before its entities.
    Participant participant_;
    DDS_DataReader* reader_ = nullptr;
    DDS_DataReader* states_ = nullptr;
    ProcessDiscovery processes_;
    LoggerDirectory directory_;
    WaitSet wait_set_;
};

}  // namespace

std::unique_ptr<LogSubscription> LogSubscription::open(std::int32_t domain_id) {
    auto subscription = std::make_unique<TypedSubscription>();
    if (subscription->start(domain_id) == Status::failed) {
        return nullptr;
    }
    return subscription;
}

}  // namespace orvane::tools
