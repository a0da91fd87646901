#include "bench/bare/engine.hpp"

#include <dds/dds.h>
#include <log_types.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace orvane::bench::bare {
namespace {

constexpr const char* category = "bench";
constexpr std::int32_t depth = 10;

/// @return the engine's result unless it is an error, which nothing here can go on after.
std::int32_t expect(std::int32_t result, const char* operation) {
    if (result < 0) {
        std::fprintf(stderr, "bench: %s: %s\n", operation, dds_strretcode(result));
        std::exit(1);
    }
    return result;
}

struct QosDeleter {
    void operator()(dds_qos_t* qos) const { dds_delete_qos(qos); }
};
using Qos = std::unique_ptr<dds_qos_t, QosDeleter>;

Qos endpoint_qos(dds_durability_kind_t durability, dds_history_kind_t history,
                 std::int32_t history_depth) {
    Qos qos{dds_create_qos()};
    dds_qset_durability(qos.get(), durability);
    dds_qset_reliability(qos.get(), DDS_RELIABILITY_RELIABLE, DDS_SECS(10));
    dds_qset_history(qos.get(), history, history_depth);
    // Decides what late readers get, and with it what a writer has to keep.
    dds_qset_durability_service(qos.get(), 0, history, history_depth, DDS_LENGTH_UNLIMITED,
                                DDS_LENGTH_UNLIMITED, DDS_LENGTH_UNLIMITED);
    return qos;
}

Qos log_qos(History history) {
    return history == History::all
               ? endpoint_qos(DDS_DURABILITY_TRANSIENT_LOCAL, DDS_HISTORY_KEEP_ALL, 1)
               : endpoint_qos(DDS_DURABILITY_TRANSIENT_LOCAL, DDS_HISTORY_KEEP_LAST, depth);
}

dds_entity_t create_participant(std::int32_t domain) {
    return expect(dds_create_participant(static_cast<dds_domainid_t>(domain), nullptr, nullptr),
                  "participant");
}

dds_entity_t create_topic(dds_entity_t participant, const dds_topic_descriptor_t& type,
                          const char* name) {
    return expect(dds_create_topic(participant, &type, name, nullptr, nullptr), name);
}

dds_entity_t create_log_topic(dds_entity_t participant) {
    return create_topic(participant, bare_LogMessage_desc, "bench/log");
}

dds_entity_t create_writer(dds_entity_t publisher, dds_entity_t topic, const Qos& qos) {
    return expect(dds_create_writer(publisher, topic, qos.get(), nullptr), "writer");
}

}  // namespace

std::size_t encoded_size(std::size_t text_length) {
    // Encapsulation, origin, level, "bench" and the text with their lengths; each but the text is
    // a multiple of four.
    return 4 + 8 + 4 + 12 + (4 + text_length + 1);
}

Writer::Writer(const Options& options) : participant_{create_participant(options.domain)} {
    const dds_entity_t topic = create_log_topic(participant_);
    // A switch of the process that a writer looks at when it is created.
    dds_write_set_batch(options.batching);
    writer_ = create_writer(participant_, topic, log_qos(options.history));
    dds_write_set_batch(false);
}

Writer::~Writer() {
    dds_delete(participant_);
}

void Writer::write(const char* text) {
    const bare_LogMessage sample{{1, 2}, 600, const_cast<char*>(category), const_cast<char*>(text)};
    expect(dds_write(writer_, &sample), "write");
}

void Writer::flush() {
    dds_write_flush(writer_);
}

bool Writer::has_reader() const {
    dds_publication_matched_status_t status{};
    dds_get_publication_matched_status(writer_, &status);
    return status.current_count > 0;
}

Reader::Reader(std::int32_t domain) : participant_{create_participant(domain)} {
    const dds_entity_t topic = create_log_topic(participant_);
    reader_ = expect(dds_create_reader(participant_, topic, log_qos(History::all).get(), nullptr),
                     "reader");
    wait_set_ = expect(dds_create_waitset(participant_), "wait set");
    const dds_entity_t arrived =
        expect(dds_create_readcondition(
                   reader_, DDS_ANY_SAMPLE_STATE | DDS_ANY_VIEW_STATE | DDS_ANY_INSTANCE_STATE),
               "read condition");
    expect(dds_waitset_attach(wait_set_, arrived, 0), "attachment");
}

Reader::~Reader() {
    dds_delete(participant_);
}

void Reader::take(std::chrono::milliseconds longest_wait, std::vector<std::int64_t>& source_times) {
    constexpr std::size_t samples_per_take = 256;
    std::array<void*, samples_per_take> samples;
    std::array<dds_sample_info_t, samples_per_take> infos;
    // Asks for samples on loan.
    samples[0] = nullptr;
    dds_waitset_wait(wait_set_, nullptr, 0, DDS_MSECS(longest_wait.count()));
    const std::int32_t taken = expect(
        dds_take(reader_, samples.data(), infos.data(), samples.size(), samples.size()), "take");
    for (std::size_t index = 0; index < static_cast<std::size_t>(taken); ++index) {
        if (infos[index].valid_data) {
            source_times.push_back(infos[index].source_timestamp);
        }
    }
    if (taken > 0) {
        expect(dds_return_loan(reader_, samples.data(), taken), "return of samples");
    }
}

LoggerEntities::LoggerEntities(std::int32_t domain) : participant_{create_participant(domain)} {
    const dds_entity_t log = create_log_topic(participant_);
    const dds_entity_t state = create_topic(participant_, bare_State_desc, "bench/state");
    const dds_entity_t publisher =
        expect(dds_create_publisher(participant_, nullptr, nullptr), "publisher");
    create_writer(publisher, log, log_qos(History::last_ten));
    create_writer(publisher, state,
                  endpoint_qos(DDS_DURABILITY_TRANSIENT_LOCAL, DDS_HISTORY_KEEP_LAST, 1));
    const dds_entity_t subscriber =
        expect(dds_create_subscriber(participant_, nullptr, nullptr), "subscriber");
    const dds_entity_t request =
        create_topic(participant_, bare_CommandRequest_desc, "bench/request");
    const dds_entity_t response =
        create_topic(participant_, bare_CommandResponse_desc, "bench/response");
    const Qos command_qos = endpoint_qos(DDS_DURABILITY_VOLATILE, DDS_HISTORY_KEEP_LAST, depth);
    expect(dds_create_reader(subscriber, request, command_qos.get(), nullptr), "reader");
    create_writer(publisher, response, command_qos);
}

LoggerEntities::~LoggerEntities() {
    dds_delete(participant_);
}

}  // namespace orvane::bench::bare
