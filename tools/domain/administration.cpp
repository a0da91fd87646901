#include "tools/domain/administration.hpp"

#include <atomic>
#include <cstddef>
#include <utility>

#include "tools/domain/entities.hpp"
#include "tools/domain/wait_set.hpp"

namespace orvane::tools {
namespace {

LoggerState to_state(const QEL_KX_ADMIN_State& sample) {
    LoggerState state{.application = application_of(sample.hostAndAppId),
                      .kind = sample.applicationKind,
                      .state = sample.state,
                      .filter_level = sample.filterLevel,
                      .domain_id = sample.administrationDomainId,
                      .verbosities = {},
                      .print_format = sample.qelLoggerPrintFormat};
    for (const auto& pair : sample.qelLoggerVerbosities) {
        state.verbosities[static_cast<std::size_t>(pair.category)] = pair.verbosity;
    }
    return state;
}

StateUpdate to_update(const QEL_KX_ADMIN_State& sample, const DDS_SampleInfo& info) {
    return {.application = application_of(sample.hostAndAppId),
            .state = info.valid_data != 0 ? std::optional{to_state(sample)} : std::nullopt,
            .alive = info.instance_state == DDS_ALIVE_INSTANCE_STATE};
}

CommandResponse to_response(const QEL_KX_ADMIN_CommandResponse& sample) {
    return {.application = application_of(sample.hostAndAppId),
            .originator = application_of(sample.originatorHostAndAppId),
            .invocation = sample.invocation,
            .result = sample.commandResult,
            .message = sample.message};
}

QEL_KX_HostAndAppId to_identity(const Application& application) {
    return {static_cast<DDS_Long>(application.host_id), static_cast<DDS_Long>(application.app_id)};
}

/// Fills the union of a request with a command.
struct FillCommand {
    QEL_KX_ADMIN_Command& sample;

    Status operator()(const SetFilterLevel& command) const {
        sample._d = QEL_KX_SET_LOG_LEVEL;
        sample._u.filterLevel = command.level;
        return Status::ok;
    }
    Status operator()(const SetVerbosities& command) const {
        sample._d = QEL_KX_SET_QEL_LOGGER_LEVEL;
        auto& pairs = sample._u.categoryAndVerbosity;
        const auto count = static_cast<DDS_Long>(command.pairs.size());
        if (QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_length(&pairs, count) == 0) {
            return Status::failed;
        }
        for (DDS_Long i = 0; i < count; ++i) {
            const auto& [category, verbosity] = command.pairs[static_cast<std::size_t>(i)];
            *QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_get_reference(&pairs, i) = {category,
                                                                                       verbosity};
        }
        return Status::ok;
    }
    Status operator()(const SetPrintFormat& command) const {
        sample._d = QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT;
        sample._u.printFormat = command.format;
        return Status::ok;
    }
};

/// @param get the operation that lists the handles of the endpoint's peers
template <typename Endpoint>
std::set<Application> peers(Endpoint* endpoint,
                            DDS_ReturnCode_t (*get)(Endpoint*, DDS_InstanceHandleSeq*)) {
    std::set<Application> applications;
    DDS_InstanceHandleSeq handles{};
    if (get(endpoint, &handles) == DDS_RETCODE_OK) {
        const DDS_Long count = DDS_InstanceHandleSeq_get_length(&handles);
        for (DDS_Long i = 0; i < count; ++i) {
            applications.insert(application_of(*DDS_InstanceHandleSeq_get_reference(&handles, i)));
        }
    }
    DDS_InstanceHandleSeq_finalize(&handles);
    return applications;
}

class TypedAdministration final : public Administration {
public:
    Status start(std::int32_t domain_id) {
        participant_ = join_domain(domain_id);
        if (!participant_) {
            return Status::failed;
        }
        identity_ = identity_of(participant_.get());
        // The reader of responses before the writer of requests: a logger that has matched the
        // writer but not the reader would answer into nothing.
        responses_ = create_reader<QEL_KX_ADMIN_CommandResponse>(
            participant_.get(), DDS_VOLATILE_DURABILITY_QOS, DDS_KEEP_ALL_HISTORY_QOS);
        requests_ = create_writer<QEL_KX_ADMIN_CommandRequest>(participant_.get());
        states_ = create_reader<QEL_KX_ADMIN_State>(
            participant_.get(), DDS_TRANSIENT_LOCAL_DURABILITY_QOS, DDS_KEEP_LAST_HISTORY_QOS);
        const bool succeeded =
            responses_ != nullptr && requests_ != nullptr && states_ != nullptr &&
            wait_set_.open() == Status::ok && wait_set_.attach_data_of(responses_) == Status::ok &&
            wait_set_.attach_data_of(states_) == Status::ok &&
            wait_set_.attach_statuses_of(DDS_DataReader_as_entity(states_),
                                         DDS_SUBSCRIPTION_MATCHED_STATUS) == Status::ok &&
            wait_set_.attach_statuses_of(DDS_DataWriter_as_entity(requests_),
                                         DDS_PUBLICATION_MATCHED_STATUS) == Status::ok;
        return succeeded ? Status::ok : Status::failed;
    }

    Clock::time_point now() const override { return Clock::now(); }

    void wait(std::chrono::milliseconds longest) override { wait_set_.wait(longest); }

    void interrupt() override {
        interrupted_ = true;
        wait_set_.interrupt();
    }

    bool interrupted() const override { return interrupted_; }

    Result<Arrivals> take() override {
        // The next wait waits for a change since this reading of the statuses.
        DDS_SubscriptionMatchedStatus subscription{};
        DDS_DataReader_get_subscription_matched_status(states_, &subscription);
        DDS_PublicationMatchedStatus publication{};
        DDS_DataWriter_get_publication_matched_status(requests_, &publication);

        Arrivals arrivals;
        const auto add_state = [&](const QEL_KX_ADMIN_State& sample, const DDS_SampleInfo& info) {
            arrivals.states.push_back(to_update(sample, info));
        };
        const auto add_response = [&](const QEL_KX_ADMIN_CommandResponse& sample,
                                      const DDS_SampleInfo& info) {
            if (info.valid_data != 0) {
                arrivals.responses.push_back(to_response(sample));
            }
        };
        if (take_all<QEL_KX_ADMIN_State>(states_, add_state) == Status::ok &&
            take_all<QEL_KX_ADMIN_CommandResponse>(responses_, add_response) == Status::ok) {
            return arrivals;
        }
        return {};
    }

    std::set<Application> state_writers() override {
        return peers(states_, DDS_DataReader_get_matched_publications);
    }

    std::set<Application> command_readers() override {
        return peers(requests_, DDS_DataWriter_get_matched_subscriptions);
    }

    Application identity() const override { return identity_; }

    Status send(const Application& target, std::int32_t invocation,
                const Command& command) override {
        QEL_KX_ADMIN_CommandRequest request{};
        bool sent = QEL_KX_ADMIN_CommandRequest_initialize(&request) != 0;
        if (sent) {
            request.targetHostAndAppId = to_identity(target);
            request.originatorHostAndAppId = to_identity(identity_);
            request.invocation = invocation;
            sent = std::visit(FillCommand{request.command}, command) == Status::ok &&
                   QEL_KX_ADMIN_CommandRequestDataWriter_write(requests_, &request,
                                                               &DDS_HANDLE_NIL) == DDS_RETCODE_OK;
        }
        QEL_KX_ADMIN_CommandRequest_finalize(&request);
        return sent ? Status::ok : Status::failed;
    }

private:
    // The wait set is deleted before its entities.
    Participant participant_;
    Application identity_;
    DDS_DataReader* responses_ = nullptr;
    DDS_DataWriter* requests_ = nullptr;
    DDS_DataReader* states_ = nullptr;
    std::atomic<bool> interrupted_{false};
    WaitSet wait_set_;
};

}  // namespace

std::unique_ptr<Administration> Administration::open(std::int32_t domain_id) {
    auto administration = std::make_unique<TypedAdministration>();
    if (administration->start(domain_id) == Status::failed) {
        return nullptr;
    }
    return administration;
}

}  // namespace orvane::tools
