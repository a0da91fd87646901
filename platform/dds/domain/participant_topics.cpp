#include <string_view>

#include "platform/dds/domain/participant.hpp"

namespace pexa::dds {

template <typename Description>
Status Participant::enter(const Operation& operation, Children<Description>& children,
                          const std::shared_ptr<Description>& description) {
    const std::lock_guard guard(naming_);
    if (find_description(description->name()) != nullptr) {
        return operation.precondition_not_met("no topic of this name exists");
    }
    children.add(description);
    return Status::ok;
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

Result<Topic*> Participant::create_topic(const Operation& operation, const char* name,
                                         const char* type_name, const DDS_TopicQos* qos,
                                         const DDS_TopicListener* listener, DDS_StatusMask mask) {
    std::shared_ptr<const TypeAdapter> type = find_type(type_name);
    if (type == nullptr) {
        return operation.bad_parameter("typeName");
    }
    if (*name == '\0') {
        return operation.bad_parameter("topicName");
    }
    const auto topic =
        std::make_shared<Topic>(*this, *this, default_topic_qos_, name, std::move(type));
    Status status = topic->prepare(operation, qos, {listener, mask});
    if (status == Status::ok) {
        status = enter(operation, topics_, topic);
    }
    if (status != Status::ok) {
        return status;
    }
    return topics_.start(operation, *topic, enables_contained());
}

Status Participant::delete_topic(const Operation& operation, Topic& topic) {
    if (!topics_.contains(topic)) {
        return operation.precondition_not_met("the topic is of this participant");
    }
    if (topic.in_use()) {
        return operation.precondition_not_met("no writer, reader or filtered topic uses the topic");
    }
    return topics_.remove(operation, topic);
}

Result<FilteredTopic*> Participant::create_filtered_topic(const Operation& operation,
                                                          const char* name, Topic& related,
                                                          const char* expression,
                                                          const DDS_StringSeq* parameters) {
    if (related.participant() != this) {
        return operation.precondition_not_met("the topic is of the same participant");
    }
    if (*name == '\0') {
        return operation.bad_parameter("name");
    }
    const auto topic = std::make_shared<FilteredTopic>(name, related, expression);
    Status status = topic->set_parameters(operation, parameters);
    if (status == Status::ok) {
        status = enter(operation, filtered_topics_, topic);
    }
    if (status != Status::ok) {
        return status;
    }
    return topic.get();
}

Status Participant::delete_filtered_topic(const Operation& operation, FilteredTopic& topic) {
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

Status Participant::register_type(const Operation& operation, const char* name,
                                  const TULVTypePlugin& plugin, const void* properties) {
    if (properties != nullptr) {
        return operation.bad_parameter("properties");
    }
    if (*name == '\0') {
        return operation.bad_parameter("typeName");
    }
    std::shared_ptr<const TypeAdapter> known = find_type(name);
    if (known == nullptr) {
        const auto created = TypeAdapter::create(operation, name, plugin);
        if (!created) {
            return created.status();
        }
        const std::lock_guard guard(types_mutex_);
        known = types_.try_emplace(name, created.value()).first->second;
    }
    return plugin.typeName != nullptr && known->is_of(plugin.typeName)
               ? Status::ok
               : operation.precondition_not_met("the name is not registered with another type");
}

Status Participant::unregister_type(const Operation& operation, const char* name) {
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
    return Status::ok;
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_Topic* DDS_DomainParticipant_create_topic(DDS_DomainParticipant* self, const char* topicName,
                                              const char* typeName, const DDS_TopicQos* qos,
                                              const DDS_TopicListener* listener,
                                              DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Participant::create_topic,
                     dds::required("topicName", topicName), dds::required("typeName", typeName),
                     qos, listener, mask);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_topic(DDS_DomainParticipant* self, DDS_Topic* topic) {
    return dds::call(__func__, self, &dds::Participant::delete_topic, dds::required(topic));
}

DDS_TopicDescription* DDS_DomainParticipant_lookup_topicdescription(DDS_DomainParticipant* self,
                                                                    const char* name) {
    return dds::call(__func__, self, &dds::Participant::find_description,
                     dds::required("name", name));
}

DDS_ContentFilteredTopic* DDS_DomainParticipant_create_contentfilteredtopic(
    DDS_DomainParticipant* self, const char* name, DDS_Topic* relatedTopic, const char* expression,
    const DDS_StringSeq* parameters) {
    return dds::call(__func__, self, &dds::Participant::create_filtered_topic,
                     dds::required("name", name), dds::required("relatedTopic", relatedTopic),
                     dds::required("expression", expression), parameters);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_contentfilteredtopic(
    DDS_DomainParticipant* self, DDS_ContentFilteredTopic* topic) {
    return dds::call(__func__, self, &dds::Participant::delete_filtered_topic,
                     dds::required(topic));
}

DDS_ReturnCode_t DDS_DomainParticipant_register_type(DDS_DomainParticipant* self,
                                                     const char* typeName,
                                                     const TULVTypePlugin* plugin,
                                                     const void* properties) {
    return dds::call(__func__, self, &dds::Participant::register_type,
                     dds::required("typeName", typeName), dds::required("plugin", plugin),
                     properties);
}

DDS_ReturnCode_t DDS_DomainParticipant_unregister_type(DDS_DomainParticipant* self,
                                                       const char* typeName) {
    return dds::call(__func__, self, &dds::Participant::unregister_type,
                     dds::required("typeName", typeName));
}

DDS_DomainParticipant* DDS_TopicDescription_get_participant(DDS_TopicDescription* self) {
    return dds::call(__func__, self, &dds::TopicDescription::participant);
}
