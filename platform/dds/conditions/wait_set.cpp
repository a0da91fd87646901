#include "platform/dds/conditions/wait_set.hpp"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

#include "platform/dds/qos/duration.hpp"

namespace pexa::dds {

namespace {

/// Guards the list of wait sets and the attachments of all of them.
constinit std::mutex attachments_mutex;
constinit WaitSet* first_wait_set = nullptr;

}  // namespace

WaitSet* WaitSet::create(const Operation& operation) {
    const engine::Created created = engine::create_wait_set();
    if (!created) {
        static_cast<void>(operation.not_created("wait set", to_return_code(created.status)));
        return nullptr;
    }
    auto* wait_set = new (std::nothrow) WaitSet(created.entity);
    if (wait_set == nullptr) {
        static_cast<void>(engine::delete_entity(created.entity));
        static_cast<void>(operation.out_of_memory());
    }
    return wait_set;
}

WaitSet::WaitSet(engine::EntityId id) : id_(id) {
    const std::lock_guard guard(attachments_mutex);
    next_ = std::exchange(first_wait_set, this);
}

WaitSet::~WaitSet() {
    {
        const std::lock_guard guard(attachments_mutex);
        WaitSet** link = &first_wait_set;
        while (*link != this) {
            link = &(*link)->next_;
        }
        *link = next_;
    }
    static_cast<void>(engine::delete_entity(id_));
}

DDS_ReturnCode_t WaitSet::destroy(const Operation& operation) {
    if (waiting_.load()) {
        return operation.precondition_not_met("no thread waits");
    }
    delete this;
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t WaitSet::attach(const Operation& operation, Condition& condition) {
    const engine::EntityId id = condition.engine_id();
    if (id == engine::no_entity) {
        return operation.precondition_not_met("the condition's entity is enabled");
    }
    // Made before the engine knows of it, so that nothing can fail afterwards.
    std::list<Attachment> added{{&condition, id}};
    {
        const std::lock_guard guard(attachments_mutex);
        if (contains(condition)) {
            return DDS_RETCODE_OK;
        }
        attachments_.splice(attachments_.end(), added);
    }
    const Status status = engine::attach(id_, id);
    if (status != Status::ok) {
        const std::lock_guard guard(attachments_mutex);
        attachments_.remove_if([&](const Attachment& a) { return a.condition == &condition; });
        return operation.failed("attaching", to_return_code(status));
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t WaitSet::detach(const Operation& operation, Condition& condition) {
    {
        const std::lock_guard guard(attachments_mutex);
        if (!contains(condition)) {
            return operation.precondition_not_met("the condition is attached");
        }
        attachments_.remove_if([&](const Attachment& a) { return a.condition == &condition; });
    }
    const Status status = engine::detach(id_, condition.engine_id());
    return status == Status::ok ? DDS_RETCODE_OK
                                : operation.failed("detaching", to_return_code(status));
}

DDS_ReturnCode_t WaitSet::wait(const Operation& operation, DDS_ConditionSeq& active,
                               const DDS_Duration_t& timeout) {
    if (!is_valid(timeout)) {
        return operation.bad_parameter("timeout");
    }
    if (waiting_.exchange(true)) {
        return operation.precondition_not_met("no other thread waits");
    }
    std::vector<engine::EntityId> triggered;
    const Status status = engine::wait(id_, to_nanoseconds(timeout), triggered);
    waiting_.store(false);
    if (status != Status::ok) {
        DDS_ConditionSeq_set_length(&active, 0);
        return to_return_code(status);
    }
    return store(triggered, active);
}

DDS_ReturnCode_t WaitSet::store(const std::vector<engine::EntityId>& triggered,
                                DDS_ConditionSeq& active) const {
    const std::lock_guard guard(attachments_mutex);
    const auto is_active = [&](const Attachment& attachment) {
        return std::find(triggered.begin(), triggered.end(), attachment.id) != triggered.end();
    };
    const auto count =
        static_cast<DDS_Long>(std::count_if(attachments_.begin(), attachments_.end(), is_active));
    if (DDS_ConditionSeq_ensure_length(&active, count, count) == 0) {
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    DDS_Long index = 0;
    for (const Attachment& attachment : attachments_) {
        if (is_active(attachment)) {
            *DDS_ConditionSeq_get_reference(&active, index++) = handle_of(attachment.condition);
        }
    }
    return DDS_RETCODE_OK;
}

bool WaitSet::contains(const Condition& condition) const {
    return std::any_of(attachments_.begin(), attachments_.end(),
                       [&](const Attachment& a) { return a.condition == &condition; });
}

void WaitSet::forget(const Condition& condition) {
    const std::lock_guard guard(attachments_mutex);
    for (WaitSet* set = first_wait_set; set != nullptr; set = set->next_) {
        set->attachments_.remove_if([&](const Attachment& a) { return a.condition == &condition; });
    }
}

bool WaitSet::is_attached(const Condition& condition) {
    const std::lock_guard guard(attachments_mutex);
    for (const WaitSet* set = first_wait_set; set != nullptr; set = set->next_) {
        if (set->contains(condition)) {
            return true;
        }
    }
    return false;
}

}  // namespace pexa::dds
