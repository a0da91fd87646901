#include "tools/domain/administration.hpp"

#include <atomic>
#include <cstddef>
#include <utility>

#include "tools/domain/entities.hpp"

namespace orvane::tools {
namespace {

/// Samples decoded at a time; an answer has a buffer for the longest text.
constexpr DDS_Long samples_per_take = 256;

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

StateReport to_report(const QEL_KX_ADMIN_State& sample, const DDS_SampleInfo& info) {
    return {.application = application_of(sample.hostAndAppId),
            .state = info.valid_data != 0 ? std::optional{to_state(sample)} : std::nullopt,
            .alive = info.instance_state == DDS_ALIVE_INSTANCE_STATE};
}

CommandAnswer to_answer(const QEL_KX_ADMIN_CommandResponse& sample) {
    return {.application = application_of(sample.hostAndAppId),
            .originator = application_of(sample.originatorHostAndAppId),
            .invocation = sample.invocation,
            .result = sample.commandResult,
            .message = sample.message};
}

QEL_KX_HostAndAppId to_identity(const Application& application) {
    return {static_cast<DDS_Long>(application.host_id), static_cast<DDS_Long>(application.app_id)};
}

/// Fills the branch of a request that a command stands for.
struct FillBranch {
    QEL_KX_ADMIN_Command& branch;

    bool operator()(const SetFilterLevel& command) const {
        branch._d = QEL_KX_SET_LOG_LEVEL;
        branch._u.filterLevel = command.level;
        return true;
    }
    bool operator()(const SetVerbosities& command) const {
        branch._d = QEL_KX_SET_QEL_LOGGER_LEVEL;
        auto& pairs = branch._u.categoryAndVerbosity;
        const auto count = static_cast<DDS_Long>(command.pairs.size());
        if (QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_set_length(&pairs, count) == 0) {
            return false;
        }
        for (DDS_Long i = 0; i < count; ++i) {
            const auto& [category, verbosity] = command.pairs[static_cast<std::size_t>(i)];
            *QEL_KX_ADMIN_QELLoggerCategoryAndVerbositySeq_get_reference(&pairs, i) = {category,
                                                                                       verbosity};
        }
        return true;
    }
    bool operator()(const SetPrintFormat& command) const {
        branch._d = QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT;
        branch._u.printFormat = command.format;
        return true;
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
    bool start(std::int32_t domain_id) {
        participant_ = join_domain(domain_id);
        if (!participant_) {
            return false;
        }
        identity_ = identity_of(participant_.get());
        // The answers' reader before the requests' writer: a logger that knows the one should know
        // the other, or its answer would go nowhere.
        answers_ = create_reader<QEL_KX_ADMIN_CommandResponse>(
            participant_.get(), DDS_VOLATILE_DURABILITY_QOS, DDS_KEEP_ALL_HISTORY_QOS);
        requests_ = create_writer<QEL_KX_ADMIN_CommandRequest>(participant_.get());
        states_ = create_reader<QEL_KX_ADMIN_State>(
            participant_.get(), DDS_TRANSIENT_LOCAL_DURABILITY_QOS, DDS_KEEP_LAST_HISTORY_QOS);
        return answers_ != nullptr && requests_ != nullptr && states_ != nullptr &&
               wakeup_.open() && wakeup_.on_data(answers_) && wakeup_.on_data(states_) &&
               wakeup_.on_status(DDS_DataReader_as_entity(states_),
                                 DDS_SUBSCRIPTION_MATCHED_STATUS) &&
               wakeup_.on_status(DDS_DataWriter_as_entity(requests_),
                                 DDS_PUBLICATION_MATCHED_STATUS);
    }

    Clock::time_point now() const override { return Clock::now(); }

    void wait(std::chrono::milliseconds longest) override { wakeup_.wait(longest); }

    void interrupt() override {
        interrupted_ = true;
        wakeup_.interrupt();
    }

    bool interrupted() const override { return interrupted_; }

    std::optional<Arrivals> take() override {
        // Reading the statuses is what makes the next wait wait for their next change.
        DDS_SubscriptionMatchedStatus subscription{};
        DDS_DataReader_get_subscription_matched_status(states_, &subscription);
        DDS_PublicationMatchedStatus publication{};
        DDS_DataWriter_get_publication_matched_status(requests_, &publication);

        Arrivals arrivals;
        const bool succeeded =
            take_all<QEL_KX_ADMIN_State>(
                states_, samples_per_take,
                [&](const QEL_KX_ADMIN_State& sample, const DDS_SampleInfo& info) {
                    arrivals.states.push_back(to_report(sample, info));
                }) &&
            take_all<QEL_KX_ADMIN_CommandResponse>(
                answers_, samples_per_take,
                [&](const QEL_KX_ADMIN_CommandResponse& sample, const DDS_SampleInfo& info) {
                    if (info.valid_data != 0) {
                        arrivals.answers.push_back(to_answer(sample));
                    }
                });
        return succeeded ? std::optional{std::move(arrivals)} : std::nullopt;
    }

    std::set<Application> publishers() override {
        return peers(states_, DDS_DataReader_get_matched_publications);
    }

    std::set<Application> receivers() override {
        return peers(requests_, DDS_DataWriter_get_matched_subscriptions);
    }

    Application identity() const override { return identity_; }

    bool send(const Application& target, std::int32_t invocation, const Command& command) override {
        QEL_KX_ADMIN_CommandRequest request{};
        bool sent = QEL_KX_ADMIN_CommandRequest_initialize(&request) != 0;
        if (sent) {
            request.targetHostAndAppId = to_identity(target);
            request.originatorHostAndAppId = to_identity(identity_);
            request.invocation = invocation;
            sent = std::visit(FillBranch{request.command}, command) &&
                   QEL_KX_ADMIN_CommandRequestDataWriter_write(requests_, &request,
                                                               &DDS_HANDLE_NIL) == DDS_RETCODE_OK;
        }
        QEL_KX_ADMIN_CommandRequest_finalize(&request);
        return sent;
    }

private:
    // The wakeup goes before the entities that it waits for.
    Participant participant_;
    Application identity_;
    DDS_DataReader* answers_ = nullptr;
    DDS_DataWriter* requests_ = nullptr;
    DDS_DataReader* states_ = nullptr;
    std::atomic<bool> interrupted_{false};
    Wakeup wakeup_;
};

}  // namespace

std::unique_ptr<Administration> Administration::open(std::int32_t domain_id) {
    auto administration = std::make_unique<TypedAdministration>();
    if (!administration->start(domain_id)) {
        return nullptr;
    }
    return administration;
}

}  // namespace orvane::tools
