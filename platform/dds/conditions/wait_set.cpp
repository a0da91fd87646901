#include "platform/dds/conditions/wait_set.hpp"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

#include "platform/dds/conditions/waiting.hpp"
#include "platform/dds/qos/duration.hpp"

namespace pexa::dds {

namespace {

/// Guards the list of wait sets and the attachments of all of them.
constinit std::mutex attachments_mutex;
constinit WaitSet* first_wait_set = nullptr;

}  // namespace

Result<WaitSet*> WaitSet::create(const Operation& operation) {
    const engine::Created created = engine::create_wait_set();
    if (!created) {
        return operation.not_created("wait set", created.status);
    }
    auto* wait_set = new (std::nothrow) WaitSet(created.entity);
    if (wait_set == nullptr) {
        // The caller hears of the missing memory; nothing uses the engine's entity.
        static_cast<void>(engine::delete_entity(created.entity));
        return operation.out_of_memory();
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
    // Nothing can be done here about an entity that stays.
    static_cast<void>(engine::delete_entity(id_));
}

Status WaitSet::destroy(const Operation& operation) {
    if (waiting_.load()) {
        return operation.precondition_not_met("no thread waits");
    }
    delete this;
    return Status::ok;
}

Status WaitSet::attach(const Operation& operation, Condition& condition) {
    const engine::EntityId id = condition.engine_id();
    if (id == engine::no_entity) {
        return operation.precondition_not_met("the condition's entity is enabled");
    }
    // Made before the engine knows of it, so that nothing can fail afterwards.
    std::list<Attachment> added{{&condition, id}};
    {
        const std::lock_guard guard(attachments_mutex);
        if (contains(condition)) {
            return Status::ok;
        }
        attachments_.splice(attachments_.end(), added);
    }
    const Status status = engine::attach(id_, id);
    if (status != Status::ok) {
        const std::lock_guard guard(attachments_mutex);
        attachments_.remove_if([&](const Attachment& a) { return a.condition == &condition; });
        return operation.failed("attaching", status);
    }
    return Status::ok;
}

Status WaitSet::detach(const Operation& operation, Condition& condition) {
    {
        const std::lock_guard guard(attachments_mutex);
        if (!contains(condition)) {
            return operation.precondition_not_met("the condition is attached");
        }
        attachments_.remove_if([&](const Attachment& a) { return a.condition == &condition; });
    }
    const Status status = engine::detach(id_, condition.engine_id());
    return status == Status::ok ? Status::ok : operation.failed("detaching", status);
}

WaitSet::Turn::~Turn() {
    if (set_ != nullptr) {
        set_->waiting_.store(false);
    }
}

Success WaitSet::Turn::take(WaitSet& set) {
    if (set_ == nullptr && !set.waiting_.exchange(true)) {
        set_ = &set;
    }
    return set_ == &set;
}

Status WaitSet::wait(const Operation& operation, DDS_ConditionSeq& active,
                     const DDS_Duration_t& timeout, Turn* turn) {
    if (!is_valid(timeout)) {
        return operation.bad_parameter("timeout");
    }
    if (!turn->take(*this)) {
        return operation.precondition_not_met("no other thread waits");
    }
    std::vector<engine::EntityId> triggered;
    const Status status = engine::wait(id_, to_nanoseconds(timeout), triggered);
    if (status != Status::ok) {
        DDS_ConditionSeq_set_length(&active, 0);
        return status;
    }
    return store(triggered, active);
}

Status WaitSet::store(const std::vector<engine::EntityId>& triggered,
                      DDS_ConditionSeq& active) const {
    const std::lock_guard guard(attachments_mutex);
    const auto is_active = [&](const Attachment& attachment) {
        return std::find(triggered.begin(), triggered.end(), attachment.id) != triggered.end();
    };
    const auto count =
        static_cast<DDS_Long>(std::count_if(attachments_.begin(), attachments_.end(), is_active));
    if (DDS_ConditionSeq_ensure_length(&active, count, count) == 0) {
        return Status::out_of_resources;
    }
    DDS_Long index = 0;
    for (const Attachment& attachment : attachments_) {
        if (is_active(attachment)) {
            *DDS_ConditionSeq_get_reference(&active, index++) = handle_of(attachment.condition);
        }
    }
    return Status::ok;
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

namespace dds = pexa::dds;

DDS_WaitSet* DDS_WaitSet_new() {
    const dds::Operation operation(__func__);
    return dds::guarded(operation, [&] { return dds::WaitSet::create(operation); });
}

DDS_ReturnCode_t DDS_WaitSet_delete(DDS_WaitSet* self) {
    return dds::call(__func__, self, &dds::WaitSet::destroy);
}

DDS_ReturnCode_t DDS_WaitSet_attach_condition(DDS_WaitSet* self, DDS_Condition* condition) {
    return dds::call(__func__, self, &dds::WaitSet::attach, dds::required(condition));
}

DDS_ReturnCode_t DDS_WaitSet_detach_condition(DDS_WaitSet* self, DDS_Condition* condition) {
    return dds::call(__func__, self, &dds::WaitSet::detach, dds::required(condition));
}

DDS_ReturnCode_t DDS_WaitSet_wait(DDS_WaitSet* self, DDS_ConditionSeq* active,
                                  const DDS_Duration_t* timeout) {
    const char* const name = __func__;
    dds::WaitSet::Turn turn;
    return dds::wait_in_steps(timeout, [&](const DDS_Duration_t* step) {
        return dds::call(name, self, &dds::WaitSet::wait, dds::required("active", active),
                         dds::required("timeout", step), &turn);
    });
}
