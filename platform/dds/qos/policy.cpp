#include "platform/dds/qos/policy.hpp"

namespace pexa::dds {

void Policy::initialize(void* policy) const {
    for (const PolicyMember& member : members) {
        member.initialize(policy);
    }
}

Status Policy::copy(void* policy, const void* from) const {
    for (const PolicyMember& member : members) {
        const Status copied =
            member.type->copy(member.locate(policy), member.locate_constant(from));
        if (copied != Status::ok) {
            return copied;
        }
    }
    return Status::ok;
}

void Policy::finalize(void* policy) const {
    for (const PolicyMember& member : members) {
        member.type->finalize(member.locate(policy));
    }
}

bool Policy::equal(const void* left, const void* right) const {
    for (const PolicyMember& member : members) {
        if (!member.type->equal(member.locate_constant(left), member.locate_constant(right))) {
            return false;
        }
    }
    return true;
}

QosFault Policy::fault(const void* policy) const {
    for (const PolicyMember& member : members) {
        if (const QosFault fault = member.fault(policy)) {
            return QosFault("%s %s", member.name, fault.text.data());
        }
    }
    return contradiction(policy);
}

void Policy::to_engine(const void* policy, engine::Qos& qos) const {
    for (const PolicyMember& member : members) {
        member.to_engine(policy, qos);
    }
}

Status Policy::from_engine(const engine::Qos& qos, void* policy) const {
    for (const PolicyMember& member : members) {
        const Status stored = member.from_engine(qos, policy);
        if (stored != Status::ok) {
            return stored;
        }
    }
    return Status::ok;
}

}  // namespace pexa::dds
