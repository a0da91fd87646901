#include "platform/engine/cyclone/listener_call.hpp"

#include "platform/engine/cyclone/entity_tree.hpp"

namespace pexa::engine {

constinit thread_local const ListenerCall* ListenerCall::innermost_ = nullptr;

namespace cyclone {

bool is_in_callback() {
    return ListenerCall::any([](EntityId) { return true; });
}

bool is_in_callback_of(EntityId entity) {
    return ListenerCall::any([entity](EntityId inner) { return is_within(inner, entity); });
}

}  // namespace cyclone

}  // namespace pexa::engine
