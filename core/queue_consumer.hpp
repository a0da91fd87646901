/// @file queue_consumer.hpp
/// @brief The write thread's way to take messages from the queue.
#pragma once

#include "core/message_queue.hpp"
#include "orvane/core.h"

namespace orvane::core {

/**
 * The one consumer of a queue. It does what front() and pop() do, with fewer visits to what the
 * logging calls write, too. Each visit takes memory away from the caches of the processors that
 * log, and the next call has to fetch it again.
 *
 * So a visit takes several units at once, and notes how many messages there are. These are then
 * read one by one, without the mutex, and leave the queue in the next visit. Until then they take
 * up room: for seven messages at most, and for no more than the sixteenth part of the queue.
 */
class QueueConsumer {
public:
    explicit QueueConsumer(QEL_KX_MessageQueue& queue) noexcept;
    ~QueueConsumer() { leave(); }
    QueueConsumer(const QueueConsumer&) = delete;
    QueueConsumer& operator=(const QueueConsumer&) = delete;

    /// @return the message that front() returns, or NULL if there is no unit or no message.
    const QEL_KX_MessageQueueRecord* next();
    /// As next(), but waits for a unit. One without a message ends the wait, too.
    const QEL_KX_MessageQueueRecord* wait(const QELNtpTime& timeout);
    /// @return the first message that was not popped, without a unit; NULL without one.
    const QEL_KX_MessageQueueRecord* head();
    /// The message that was returned last is done with.
    void pop() noexcept;
    /// What has been popped leaves the queue, because the next visit may come late.
    void leave();

private:
    /// Takes units if it has none. Leaves the queue if there are none either.
    bool has_unit();
    const QEL_KX_MessageQueueRecord* use_unit();
    void visit();
    void note_rest(bool rests) noexcept;

    QEL_KX_MessageQueue& queue_;
    const DDS_Long most_at_once_;
    DDS_Long units_ = 0;
    /// Messages at the head of the queue: those seen by the last visit, and those of them that are
    /// done with.
    DDS_Long seen_ = 0;
    DDS_Long popped_ = 0;
    /// Follows those that are done with. It is in the queue if that has seen more.
    const QEL_KX_MessageQueueElement* next_ = nullptr;
    bool rests_ = false;
};

}  // namespace orvane::core
