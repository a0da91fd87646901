#include "core/publishing.hpp"

#include <cstdint>

#include "core/backlog.hpp"
#include "core/batch_pacing.hpp"
#include "core/queue_consumer.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "core/statistics.hpp"
#include "core/statistics_publication.hpp"
#include "pexa/osapi.h"
#include "pexa/publication.h"
#include "types/typed_writer.hpp"

namespace orvane::core {
namespace {

using pexa::Status;

using LogMessageWriter = types::DataWriter<QEL_KX_LogMessage>;

/// In a flood a look at the clock after each message would cost too much.
constexpr std::uint64_t messages_between_looks = 256;
/// The queue has to have room for as long as the thread may take to wake up. This is no longer.
constexpr QELNtpTime batch_pause = {0, QEL_NTP_TIME_FRAC_PER_MILLISECOND / 10};

/// @return timeout when the message has to be written again, or ok.
Status write(LogMessageWriteThread& thread, const QEL_KX_MessageQueueRecord& record,
             const char* context) {
    const DDS_ReturnCode_t result = LogMessageWriter::write_w_timestamp(
        thread.writer, &record.sample, &DDS_HANDLE_NIL, &record.timestamp);
    if (result == DDS_RETCODE_TIMEOUT) {
        count_write_timeout(*thread.messageQueue);
        return Status::timeout;
    }
    if (result == DDS_RETCODE_OK) {
        count_published(*thread.messageQueue);
    } else {
        count_discarded(*thread.messageQueue);
        report(context, "Unable to write LogMessage in DataWriter");
    }
    return Status::ok;
}

void flush(LogMessageWriteThread& thread) {
    // Only a writer that does not exist or is not enabled can fail, and the write has said so.
    static_cast<void>(DDS_DataWriter_flush(thread.writer));
}

void end_batch(LogMessageWriteThread& thread, std::uint64_t messages, BatchPacing& pacing) {
    if (messages == 0) {
        return;
    }
    flush(thread);
    if (pacing.wants_pause_after(messages)) {
        QELOsapiThread_sleep(&batch_pause);
    }
}

}  // namespace

void publish(LogMessageWriteThread& thread, const char* context) {
    BatchPacing pacing;
    Backlog backlog(thread.messageQueue->maxSize);
    QueueConsumer consumer(*thread.messageQueue);
    std::uint64_t in_batch = 0;
    while (load(thread.run) == 1) {
        const bool is_due = backlog.is_due();
        const QEL_KX_MessageQueueRecord* record = is_due         ? consumer.head()
                                                  : in_batch > 0 ? consumer.next()
                                                                 : consumer.wait(wait_period);
        if (record != nullptr) {
            const bool timed_out = write(thread, *record, context) == Status::timeout;
            if (timed_out) {
                consumer.leave();
            } else {
                consumer.pop();
            }
            backlog.note(is_due, timed_out);
            ++in_batch;
            if (timed_out || in_batch % messages_between_looks == 0) {
                publish_changed_statistics(*thread.messageQueue);
            }
        } else if (is_due) {
            backlog.end();
        } else {
            end_batch(thread, in_batch, pacing);
            in_batch = 0;
            publish_changed_statistics(*thread.messageQueue);
        }
    }
    if (in_batch > 0) {
        flush(thread);
    }
}

}  // namespace orvane::core
