#include "bench/logger.hpp"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace orvane::bench {
namespace {

constexpr const char* qos_library = "bench";
constexpr const char* keep_all_profile = "keep_all";
constexpr DDS_Long samples_per_take = 256;

[[noreturn]] void give_up(const char* what) {
    std::fprintf(stderr, "bench: cannot create the %s\n", what);
    std::exit(1);
}

}  // namespace

std::size_t encoded_size(const std::string& text) {
    const QEL_KX_LogMessage sample{
        {1, 2}, 600, const_cast<char*>(category), const_cast<char*>(text.c_str())};
    return QEL_KX_LogMessagePlugin_get_serialized_sample_size(
        nullptr, 1, QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE, 0, &sample);
}

Logger::Logger(const Options& options)
    : half_of_queue_{options.queue_size / 2}, options_{QEL_KX_Options_createDefault()} {
    QEL_KX_Options_setDomainId(options_, options.domain);
    QEL_KX_Options_setQueueSize(options_, options.queue_size);
    QEL_KX_Options_setApplicationKind(options_, options.kind);
    if (options.keep_all) {
        const char* other = std::getenv("BENCH_QOS_PROFILES");
        DDS_DomainParticipantFactory_load_qos_profiles(DDS_DomainParticipantFactory_get_instance(),
                                                       other ? other : BENCH_QOS_PROFILES);
        QEL_KX_Options_setQosLibrary(options_, qos_library);
        QEL_KX_Options_setQosProfile(options_, keep_all_profile);
    }
    QEL_KX_Orvane_setOptions(options_);
    logger_ = QEL_KX_Orvane_getInstance();
    if (logger_ == nullptr) {
        give_up("logger");
    }
}

Logger::~Logger() {
    QEL_KX_Orvane_finalizeInstance();
    QEL_KX_Options_delete(options_);
}

void Logger::log_at_leisure(DDS_Long level, const char* text) {
    while (queued() > half_of_queue_) {
        std::this_thread::sleep_for(std::chrono::microseconds{50});
    }
    log(level, text);
}

DDS_Long Logger::queued() const {
    return std::atomic_ref{QEL_KX_Orvane_getMessageQueue()->list.count}.load(
        std::memory_order_relaxed);
}

bool Logger::has_reader() const {
    DDS_PublicationMatchedStatus status{};
    DDS_DataWriter_get_publication_matched_status(
        QEL_KX_DDSEntities_getLogMessageWriter(logger_->ddsEntities), &status);
    return status.current_count > 0;
}

LogReader::LogReader(std::int32_t domain) : participant_{tools::join_domain({.id = domain})} {
    reader_ = tools::create_reader<QEL_KX_LogMessage>(
        participant_.get(), DDS_TRANSIENT_LOCAL_DURABILITY_QOS, DDS_KEEP_ALL_HISTORY_QOS);
    if (reader_ == nullptr || wait_set_.open() == tools::Status::failed ||
        wait_set_.attach_data_of(reader_) == tools::Status::failed) {
        give_up("reader");
    }
}

void LogReader::take(std::chrono::milliseconds longest_wait,
                     std::vector<std::int64_t>& source_times) {
    wait_set_.wait(longest_wait);
    tools::take_some<QEL_KX_LogMessage>(
        reader_, samples_per_take, [&](const QEL_KX_LogMessage&, const DDS_SampleInfo& info) {
            if (info.valid_data != 0) {
                source_times.push_back(info.source_timestamp.sec * std::int64_t{1'000'000'000} +
                                       info.source_timestamp.nanosec);
            }
        });
}

}  // namespace orvane::bench
