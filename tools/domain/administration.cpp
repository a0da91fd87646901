#include "tools/domain/administration.hpp"

#include <atomic>
#include <cstddef>
#include <utility>

#include "tools/domain/entities.hpp"
#include "tools/domain/process_discovery.hpp"
#include "tools/domain/state_reader.hpp"
#include "tools/domain/statistics_reader.hpp"
#include "tools/domain/wait_set.hpp"

namespace orvane::tools {
namespace {

CommandResponse to_response(const QEL_KX_ADMIN_CommandResponse& sample,
                            const DDS_SampleInfo& info) {
    return {
        .application = application_of(sample.hostAndAppId, endpoint_of(info.publication_handle)),
        .originator = application_of(sample.originatorHostAndAppId),
        .invocation = sample.invocation,
        .result = sample.commandResult,
        .message = sample.message};
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

/// The applications of the endpoints that one is matched with.
template <typename Entity>
std::set<Application> peers(Entity* endpoint,
                            DDS_ReturnCode_t (*list)(Entity*, DDS_InstanceHandleSeq*)) {
    std::set<Application> applications;
    for (const Endpoint& each : matched_endpoints(endpoint, list)) {
        applications.insert(application_of(each));
    }
    return applications;
}

class TypedAdministration final : public Administration {
public:
    /// @return what could not be made, empty when all was
    std::string start(const DomainOptions& domain, Access access) {
        participant_ = join_domain(domain);
        if (!participant_) {
            return "no participant";
        }
        identity_ = application_of(to_identity(identity_of(participant_.get())));
        if (wait_set_.open() == Status::failed) {
            return "no wait set";
        }
        std::string failure = access == Access::command ? create_command_endpoints() : "";
        if (!failure.empty()) {
            return failure;
        }
        const bool succeeded =
            states_.open(participant_.get()) == Status::ok &&
            wait_set_.attach_data_of(states_.reader()) == Status::ok &&
            wait_set_.attach_statuses_of(DDS_DataReader_as_entity(states_.reader()),
                                         DDS_SUBSCRIPTION_MATCHED_STATUS) == Status::ok;
        if (!succeeded) {
            return "no reader of the States";
        }
        // Who may not read statistics can still read States.
        statistics_ = access == Access::read && domain.may_read(QEL_KX_STATISTICS_TOPIC_NAME)
                          ? create_statistics_reader(participant_.get())
                          : nullptr;
        return statistics_ == nullptr || wait_set_.attach_data_of(statistics_) == Status::ok
                   ? ""
                   : "no wait for statistics";
    }

    Clock::time_point now() const override { return Clock::now(); }

    void wait(std::chrono::milliseconds longest) override { wait_set_.wait(longest); }

    void interrupt() override {
        interrupted_ = true;
        wait_set_.interrupt();
    }

    bool interrupted() const override { return interrupted_; }

    Result<Arrivals> take() override {
        Arrivals arrivals;
        const bool succeeded = states_.take(arrivals.states) == Status::ok &&
                               take_responses(arrivals.responses) == Status::ok &&
                               take_statistics(statistics_, {}, arrivals.statistics) == Status::ok;
        std::set<Application> heard;
        for (const StateUpdate& update : arrivals.states) {
            heard.insert({update.application, update.writer});
        }
        arrivals.processes = processes_.look_up(participant_.get(), heard);
        return succeeded ? Result<Arrivals>{std::move(arrivals)} : Result<Arrivals>{};
    }

    std::set<Application> state_writers() override {
        return peers(states_.reader(), DDS_DataReader_get_matched_publications);
    }

    std::set<Application> command_readers() override {
        return requests_ != nullptr ? peers(requests_, DDS_DataWriter_get_matched_subscriptions)
                                    : std::set<Application>{};
    }

    ParticipantCensus census() override { return count_participants(participant_.get()); }

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
    /// @return what could not be made, empty when all was
    std::string create_command_endpoints() {
        // The reader of responses before the writer of requests: a logger that has matched the
        // writer but not the reader would answer into nothing.
        responses_ = create_reader<QEL_KX_ADMIN_CommandResponse>(
            participant_.get(), DDS_VOLATILE_DURABILITY_QOS, DDS_KEEP_ALL_HISTORY_QOS);
        if (responses_ == nullptr || wait_set_.attach_data_of(responses_) == Status::failed) {
            return "no reader of answers";
        }
        requests_ = create_writer<QEL_KX_ADMIN_CommandRequest>(participant_.get(), {});
        const bool succeeded =
            requests_ != nullptr &&
            wait_set_.attach_statuses_of(DDS_DataWriter_as_entity(requests_),
                                         DDS_PUBLICATION_MATCHED_STATUS) == Status::ok;
        return succeeded ? "" : "no writer of commands";
    }

    Status take_responses(std::vector<CommandResponse>& responses) {
        if (responses_ == nullptr) {
            return Status::ok;
        }
        DDS_PublicationMatchedStatus publication{};
        DDS_DataWriter_get_publication_matched_status(requests_, &publication);
        return take_all<QEL_KX_ADMIN_CommandResponse>(
            responses_,
            [&](const QEL_KX_ADMIN_CommandResponse& sample, const DDS_SampleInfo& info) {
                if (info.valid_data != 0) {
                    responses.push_back(to_response(sample, info));
                }
            });
    }

    // The wait set is deleted before its entities.
    Participant participant_;
    Application identity_;
    DDS_DataReader* responses_ = nullptr;  ///< and the writer: NULL without access to commands
    DDS_DataWriter* requests_ = nullptr;
    StateReader states_;
    DDS_DataReader* statistics_ = nullptr;  ///< only to read
    ProcessDiscovery processes_;
    std::atomic<bool> interrupted_{false};
    WaitSet wait_set_;
};

}  // namespace

std::unique_ptr<Administration> Administration::open(const DomainOptions& domain, Access access,
                                                     std::string& failure) {
    auto administration = std::make_unique<TypedAdministration>();
    failure = administration->start(domain, access);
    if (!failure.empty()) {
        return nullptr;
    }
    return administration;
}

}  // namespace orvane::tools
