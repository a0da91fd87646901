#include <string_view>

#include "platform/dds/domain/participant.hpp"

namespace pexa::dds {

template <typename Description>
bool Participant::enter(const Operation& operation, Children<Description>& children,
                        const std::shared_ptr<Description>& description) {
    const std::lock_guard guard(naming_);
    if (find_description(description->name()) != nullptr) {
        static_cast<void>(operation.precondition_not_met("no topic of this name exists"));
        return false;
    }
    children.add(description);
    return true;
}

TopicDescription* Participant::find_description(const char* name) const {
    const auto is_named = [&](const TopicDescription& description) {
        return std::string_view(description.name()) == name;
    };
    if (TopicDescription* topic = topics_.find(is_named)) {
        return topic;
    }
    return filtered_topics_.find(is_named);
}

Topic* Participant::create_topic(const Operation& operation, const char* name,
                                 const char* type_name, const DDS_TopicQos* qos,
                                 const DDS_TopicListener* listener, DDS_StatusMask mask) {
    std::shared_ptr<const TypeAdapter> type = find_type(type_name);
    if (type == nullptr) {
        static_cast<void>(operation.bad_parameter("typeName"));
        return nullptr;
    }
    if (*name == '\0') {
        static_cast<void>(operation.bad_parameter("topicName"));
        return nullptr;
    }
    const auto topic = std::make_shared<Topic>(*this, name, std::move(type));
    if (topic->prepare(operation, qos, {listener, mask}) != DDS_RETCODE_OK ||
        !enter(operation, topics_, topic)) {
        return nullptr;
    }
    return topics_.start(operation, *topic, enables_contained()) ? topic.get() : nullptr;
}

DDS_ReturnCode_t Participant::delete_topic(const Operation& operation, Topic& topic) {
    if (!topics_.contains(topic)) {
        return operation.precondition_not_met("the topic is of this participant");
    }
    if (topic.in_use()) {
        return operation.precondition_not_met("no writer, reader or filtered topic uses the topic");
    }
    return topics_.remove(operation, topic);
}

FilteredTopic* Participant::create_filtered_topic(const Operation& operation, const char* name,
                                                  Topic& related, const char* expression,
                                                  const DDS_StringSeq* parameters) {
    if (related.participant() != this) {
        static_cast<void>(operation.precondition_not_met("the topic is of the same participant"));
        return nullptr;
    }
    if (*name == '\0') {
        static_cast<void>(operation.bad_parameter("name"));
        return nullptr;
    }
    const auto topic = std::make_shared<FilteredTopic>(name, related, expression);
    if (topic->set_parameters(operation, parameters) != DDS_RETCODE_OK ||
        !enter(operation, filtered_topics_, topic)) {
        return nullptr;
    }
    return topic.get();
}

DDS_ReturnCode_t Participant::delete_filtered_topic(const Operation& operation,
                                                    FilteredTopic& topic) {
    if (!filtered_topics_.contains(topic)) {
        return operation.precondition_not_met("the topic is of this participant");
    }
    if (topic.in_use()) {
        return operation.precondition_not_met("no reader uses the topic");
    }
    return filtered_topics_.remove(operation, topic);
}

std::shared_ptr<const TypeAdapter> Participant::find_type(const char* name) const {
    const std::lock_guard guard(types_mutex_);
    const auto found = types_.find(name);
    return found != types_.end() ? found->second : nullptr;
}

DDS_ReturnCode_t Participant::register_type(const Operation& operation, const char* name,
                                            const TULVTypePlugin& plugin, const void* properties) {
    if (properties != nullptr) {
        return operation.bad_parameter("properties");
    }
    if (*name == '\0') {
        return operation.bad_parameter("typeName");
    }
    std::shared_ptr<const TypeAdapter> known = find_type(name);
    if (known == nullptr) {
        std::shared_ptr<const TypeAdapter> added;
        const DDS_ReturnCode_t created = TypeAdapter::create(operation, name, plugin, added);
        if (created != DDS_RETCODE_OK) {
            return created;
        }
        const std::lock_guard guard(types_mutex_);
        known = types_.try_emplace(name, std::move(added)).first->second;
    }
    return plugin.typeName != nullptr && known->is_of(plugin.typeName)
               ? DDS_RETCODE_OK
               : operation.precondition_not_met("the name is not registered with another type");
}

DDS_ReturnCode_t Participant::unregister_type(const Operation& operation, const char* name) {
    const auto uses_it = [&](const Topic& topic) {
        return std::string_view(topic.type_name()) == name;
    };
    if (topics_.find(uses_it) != nullptr) {
        return operation.precondition_not_met("no topic uses the type");
    }
    // Destroyed without the lock.
    std::shared_ptr<const TypeAdapter> removed;
    const std::lock_guard guard(types_mutex_);
    const auto found = types_.find(name);
    if (found == types_.end()) {
        return operation.bad_parameter("typeName");
    }
    removed = std::move(found->second);
    types_.erase(found);
    return DDS_RETCODE_OK;
}

}  // namespace pexa::dds
