#include "core/message_queue.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "core/call_start.hpp"
#include "core/exported.hpp"
#include "core/long_texts.hpp"
#include "core/report.hpp"
#include "core/shared_field.hpp"
#include "core/statistics.hpp"
#include "pexa/buffer_pool.h"
#include "pexa/osapi.h"
#include "pexa/string.h"

namespace orvane::core {
namespace {

using pexa::Status;

using Element = QEL_KX_MessageQueueElement;
using List = QEL_KX_MessageQueueList;
using Node = QEL_KX_MessageQueueNode;

constexpr std::size_t element_alignment = 8;

/// A consumer that dozes is woken with half of the queue full. It needs time to wake up.
constexpr DDS_Long share_that_wakes = 2;

bool succeeded(QELOsapiSemaphoreStatus status) noexcept {
    return status == QEL_OSAPI_SEMAPHORE_STATUS_OK;
}

Status lock(QEL_KX_MessageQueue& queue, const char* context) {
    if (succeeded(QELOsapiSemaphore_take(queue.mutex, nullptr))) {
        return Status::ok;
    }
    report(context, "Unable to take message queue mutex");
    return Status::error;
}

constexpr const char* mutex_not_given = "Unable to give message queue mutex";

void unlock(QEL_KX_MessageQueue& queue, const char* context) {
    if (!succeeded(QELOsapiSemaphore_give(queue.mutex))) {
        report(context, mutex_not_given);
    }
}

void make_empty(List& list) noexcept {
    list.sentinel = {&list, &list.sentinel, &list.sentinel};
    list.head = &list.sentinel;
    list.tail = &list.sentinel;
    list.count = 0;
}

void append(List& list, Node& node) noexcept {
    node = {&list, &list.sentinel, list.tail};
    list.tail->next = &node;
    list.sentinel.previous = &node;
    list.tail = &node;
    list.head = list.sentinel.next;
    ++list.count;
}

/// @return the former head, in no list any more; NULL when there is none.
Element* unlink_head(List& list) noexcept {
    if (list.count == 0) {
        return nullptr;
    }
    Node* head = list.head;
    list.sentinel.next = head->next;
    head->next->previous = &list.sentinel;
    list.head = list.sentinel.next;
    list.tail = list.sentinel.previous;
    --list.count;
    *head = {};
    return reinterpret_cast<Element*>(head);
}

/// With what the public record does not show.
struct Queue : QEL_KX_MessageQueue {
    LongTexts long_texts;
    DDS_Long consumer_rests;
};

LongTexts& long_texts_of(QEL_KX_MessageQueue& queue) noexcept {
    return static_cast<Queue&>(queue).long_texts;
}

/**
 * Copies a text of at most @p bound characters, cutting the rest, into the element's buffer or,
 * when it is too long for that, into memory of its own. The buffer then holds the size of that.
 * @return the copy, or NULL without memory.
 */
template <std::size_t BufferSize>
char* keep(LongTexts& long_texts, const char* text, std::size_t bound, char (&buffer)[BufferSize]) {
    const std::size_t length = strnlen(text, bound);
    char* copy = buffer;
    if (length >= BufferSize) {
        const std::size_t size = LongTexts::size_for(length);
        copy = long_texts.take(size);
        std::memcpy(buffer, &size, sizeof size);
    }
    if (copy != nullptr) {
        std::memcpy(copy, text, length);
        copy[length] = '\0';
    }
    return copy;
}

void give_back_if_owned(LongTexts& long_texts, char* text, const char* buffer) {
    if (text != buffer && text != nullptr) {
        std::size_t size = 0;
        std::memcpy(&size, buffer, sizeof size);
        long_texts.give_back(text, size);
    }
}

void recycle(QEL_KX_MessageQueue& queue, Element& element) {
    LongTexts& long_texts = long_texts_of(queue);
    give_back_if_owned(long_texts, element.record.sample.message, element.messageBuffer);
    give_back_if_owned(long_texts, element.record.sample.category, element.categoryBuffer);
    MOSKFastBufferPool_returnBuffer(queue.elementPool, &element);
}

Outcome fill(LongTexts& long_texts, Element& element, const QEL_KX_MessageQueueRecord& record) {
    element.node = {};
    element.record = record;
    QEL_KX_LogMessage& sample = element.record.sample;
    sample.category = nullptr;
    sample.message =
        keep(long_texts, record.sample.message, ORVANE_LOG_MESSAGE_BOUND, element.messageBuffer);
    if (sample.message == nullptr) {
        return Outcome::failed("Unable to allocate message");
    }
    sample.category =
        keep(long_texts, record.sample.category, ORVANE_LOG_CATEGORY_BOUND, element.categoryBuffer);
    return Outcome::done_if(sample.category != nullptr, "Unable to allocate category");
}

/// With the mutex held. @return why the message is lost.
Outcome enqueue(QEL_KX_MessageQueue& queue, const QEL_KX_MessageQueueRecord& record) {
    if (queue.list.count == queue.maxSize) {
        count_refused_for_room(queue);
        return Outcome::failed("Max queue size reached, message will get lost",
                               QEL_KX_LEVEL_WARNING);
    }
    auto* element = queue.elementPool == nullptr
                        ? nullptr
                        : static_cast<Element*>(MOSKFastBufferPool_getBuffer(queue.elementPool));
    if (element == nullptr) {
        count_refused_for_memory(queue);
        return Outcome::failed("Unable to get new queue element");
    }
    if (const Outcome filled = fill(long_texts_of(queue), *element, record); filled.has_failed()) {
        count_refused_for_memory(queue);
        recycle(queue, *element);
        return filled;
    }
    append(queue.list, element->node);
    count_accepted(queue);
    return Outcome::done();
}

constexpr const char* front_context = "QEL_KX_MEssageQueue_front";

/// @return no_data when the queue is empty, or an error after a report.
Status find_head(QEL_KX_MessageQueue& queue, const QEL_KX_MessageQueueRecord*& record) {
    if (lock(queue, front_context) != Status::ok) {
        return Status::error;
    }
    const bool is_empty = queue.list.count == 0;
    const Element* element = element_of(queue.list.head);
    unlock(queue, front_context);
    if (is_empty) {
        return Status::no_data;
    }
    record = &element->record;
    return Status::ok;
}

Outcome make_parts(QEL_KX_MessageQueue& queue) {
    queue.mutex = QELOsapiSemaphore_new(QEL_OSAPI_SEMAPHORE_KIND_MUTEX, nullptr);
    if (queue.mutex == nullptr) {
        return Outcome::failed("Unable to create mutex");
    }
    const QELOsapiSemaphoreProperty units = {0, std::max(queue.maxSize / share_that_wakes, 1)};
    queue.countingSemaphore = QELOsapiSemaphore_new(QEL_OSAPI_SEMAPHORE_KIND_COUNTING, &units);
    if (queue.countingSemaphore == nullptr) {
        return Outcome::failed("Unable to create counting semaphore");
    }
    MOSKFastBufferPoolProperty property = MOSK_FAST_BUFFER_POOL_PROPERTY_DEFAULT;
    property.initial = queue.maxSize;
    property.maximal = queue.maxSize;
    queue.elementPool = MOSKFastBufferPool_new(sizeof(Element), element_alignment, &property);
    return Outcome::done_if(queue.elementPool != nullptr, "Unable to create element pool");
}

}  // namespace

QEL_KX_MessageQueue* create_queue(const QEL_KX_MessageQueueProperty& property) {
    constexpr const char* context = "QEL_KX_MessageQueue_new";
    Queue* queue = nullptr;
    QELOsapiHeap_allocateStructure(&queue, Queue);
    if (queue == nullptr) {
        report(context, "Unable to allocate memory for Message Queue");
        return nullptr;
    }
    std::memset(queue, 0, sizeof *queue);
    queue->maxSize = property.maxSize;
    make_empty(queue->list);
    if (const Outcome made = make_parts(*queue); made.has_failed()) {
        report(context, made);
    }
    return queue;
}

Status push(QEL_KX_MessageQueue& queue, const QEL_KX_MessageQueueRecord& record) {
    constexpr const char* context = "QEL_KX_MessageQueue_push";
    if (lock(queue, context) != Status::ok) {
        return Status::error;
    }
    const Outcome queued = enqueue(queue, record);
    // Comes before the reports and the other semaphore, so that the consumer need not wait for the
    // mutex: in a flood only the consumer makes room. The loss is reported first all the same.
    const bool is_unlocked = succeeded(QELOsapiSemaphore_give(queue.mutex));
    if (queued.has_failed()) {
        report(context, queued);
    }
    if (!is_unlocked) {
        report(context, mutex_not_given);
    }
    if (queued.has_failed()) {
        // A consumer that could not write the head tries again with the next unit. A message that
        // finds no room has to bring that unit, too, or a full queue would stay full.
        QELOsapiSemaphore_giveIfEmpty(queue.countingSemaphore);
        return Status::error;
    }
    if (!succeeded(QELOsapiSemaphore_give(queue.countingSemaphore))) {
        report(context, "Unable to give message queue counting semaphore");
    }
    return Status::ok;
}

void report_no_unit(const QELNtpTime* timeout) {
    report(front_context, "Unable to take message queue counting semaphore");
    QELOsapiThread_sleep(timeout);
}

const QEL_KX_MessageQueueRecord* front(QEL_KX_MessageQueue& queue, const QELNtpTime* timeout) {
    const QEL_KX_MessageQueueRecord* record = nullptr;
    // An empty queue had a unit of a message that found no room.
    for (Status found = Status::no_data; found == Status::no_data;) {
        const QELOsapiSemaphoreStatus status =
            QELOsapiSemaphore_take(queue.countingSemaphore, timeout);
        if (status == QEL_OSAPI_SEMAPHORE_STATUS_TIMEOUT) {
            return nullptr;
        }
        if (!succeeded(status)) {
            report_no_unit(timeout);
            return nullptr;
        }
        found = find_head(queue, record);
    }
    return record;
}

void pop(QEL_KX_MessageQueue& queue) {
    static_cast<void>(pop_and_look(queue, 1));
}

void set_consumer_rests(QEL_KX_MessageQueue& queue, bool rests) noexcept {
    store(static_cast<Queue&>(queue).consumer_rests, rests ? 1 : 0);
}

bool consumer_rests(const QEL_KX_MessageQueue& queue) noexcept {
    return load(static_cast<const Queue&>(queue).consumer_rests) == 1;
}

std::optional<QueueHead> pop_and_look(QEL_KX_MessageQueue& queue, DDS_Long messages) {
    const char* context = messages == 0 ? front_context : "QEL_KX_MessageQueue_pop";
    if (lock(queue, context) != Status::ok) {
        return std::nullopt;
    }
    for (DDS_Long popped = 0; popped < messages; ++popped) {
        if (Element* head = unlink_head(queue.list); head != nullptr) {
            recycle(queue, *head);
        }
    }
    const QueueHead left = {element_of(queue.list.head), queue.list.count};
    unlock(queue, context);
    return left;
}

void note_written_by_calls(const QEL_KX_MessageQueue& queue) noexcept {
    // The record may span two cache lines; of the others the first line counts.
    const void* const written[] = {&queue, &queue.list.count, queue.mutex, queue.countingSemaphore,
                                   queue.elementPool};
    static_assert(std::size(written) <= std::size(decltype(call_start){}.written));
    for (std::size_t place = 0; place < std::size(written); ++place) {
        call_start.written[place].store(written[place], std::memory_order_relaxed);
    }
}

void delete_queue(QEL_KX_MessageQueue* queue) {
    if (queue == nullptr) {
        return;
    }
    QELOsapiSemaphore_delete(queue->mutex);
    QELOsapiSemaphore_delete(queue->countingSemaphore);
    while (Element* head = unlink_head(queue->list)) {
        recycle(*queue, *head);
    }
    long_texts_of(*queue).free_all();
    MOSKFastBufferPool_delete(queue->elementPool);
    QELOsapiHeap_freeStructure(queue);
}

}  // namespace orvane::core

namespace core = orvane::core;

QEL_KX_MessageQueue* QEL_KX_MessageQueue_new(const QEL_KX_MessageQueueProperty* property) {
    return core::create_queue(*property);
}

DDS_Boolean QEL_KX_MessageQueue_push(QEL_KX_MessageQueue* self,
                                     const QEL_KX_MessageQueueRecord* record) {
    return core::to_boolean(core::push(*self, *record));
}

const QEL_KX_MessageQueueRecord* QEL_KX_MessageQueue_front(QEL_KX_MessageQueue* self,
                                                           const QELNtpTime* timeout) {
    return core::front(*self, timeout);
}

void QEL_KX_MessageQueue_pop(QEL_KX_MessageQueue* self) {
    core::pop(*self);
}

void QEL_KX_MessageQueue_delete(QEL_KX_MessageQueue* self) {
    core::delete_queue(self);
}

DDS_Long QEL_KX_MessageQueue_getMessageQueueProperty(const QEL_KX_MessageQueue* self) {
    return self->maxSize;
}
