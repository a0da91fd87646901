#include "core/queue_consumer.hpp"

#include <algorithm>

#include "core/report.hpp"
#include "pexa/osapi.h"
#include "platform/internal/prefetch.hpp"

namespace orvane::core {
namespace {

/// More would hold up the calls for the time of a visit, and spare little.
constexpr DDS_Long most_in_a_visit = 8;
constexpr DDS_Long share_of_queue = 16;

}  // namespace

QueueConsumer::QueueConsumer(QEL_KX_MessageQueue& queue) noexcept
    : queue_(queue),
      most_at_once_(std::clamp(queue.maxSize / share_of_queue, 1, most_in_a_visit)) {}

const QEL_KX_MessageQueueRecord* QueueConsumer::next() {
    return has_unit() ? use_unit() : nullptr;
}

const QEL_KX_MessageQueueRecord* QueueConsumer::wait(const QELNtpTime& timeout) {
    if (has_unit()) {
        return use_unit();
    }
    const QELOsapiSemaphoreStatus status =
        QELOsapiSemaphore_take(queue_.countingSemaphore, &timeout);
    if (status == QEL_OSAPI_SEMAPHORE_STATUS_OK) {
        units_ = 1;
        return use_unit();
    }
    if (status == QEL_OSAPI_SEMAPHORE_STATUS_TIMEOUT) {
        // Not as long as a message waits that could not be written.
        note_rest(popped_ == seen_);
    } else {
        report_no_unit(&timeout);
    }
    return nullptr;
}

const QEL_KX_MessageQueueRecord* QueueConsumer::head() {
    if (popped_ == seen_) {
        visit();
    }
    return popped_ == seen_ ? nullptr : &next_->record;
}

void QueueConsumer::pop() noexcept {
    // Its links change in the next visit, which then takes less time.
    pexa::prefetch_for_writing(next_);
    ++popped_;
    if (popped_ < seen_) {
        next_ = element_of(next_->node.next);
    }
}

bool QueueConsumer::has_unit() {
    if (units_ == 0) {
        units_ = QELOsapiSemaphore_takeUpTo(queue_.countingSemaphore, most_at_once_);
    }
    if (units_ == 0) {
        leave();
    }
    return units_ > 0;
}

const QEL_KX_MessageQueueRecord* QueueConsumer::use_unit() {
    --units_;
    note_rest(false);
    return head();
}

void QueueConsumer::leave() {
    if (popped_ > 0) {
        visit();
    }
}

void QueueConsumer::note_rest(bool rests) noexcept {
    if (rests != rests_) {
        rests_ = rests;
        set_consumer_rests(queue_, rests);
    }
}

void QueueConsumer::visit() {
    const std::optional<QueueHead> head = pop_and_look(queue_, popped_);
    if (!head) {
        return;
    }
    next_ = head->first;
    seen_ = std::min(head->count, most_at_once_);
    popped_ = 0;
}

}  // namespace orvane::core
