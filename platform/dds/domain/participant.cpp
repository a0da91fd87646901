#include "platform/dds/domain/participant.hpp"

#include "platform/dds/domain/participant_factory.hpp"
#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/endpoints/writer.hpp"

namespace pexa::dds {

namespace {

/// @return four bytes of a GUID prefix as a number, the most significant first.
DDS_UnsignedLong word_of(const engine::Guid& guid, std::size_t position) {
    DDS_UnsignedLong word = 0;
    for (std::size_t i = position; i < position + 4; ++i) {
        word = (word << 8U) | std::to_integer<DDS_UnsignedLong>(guid[i]);
    }
    return word;
}

Status first_failure(Status earlier, Status later) {
    return earlier != Status::ok ? earlier : later;
}

}  // namespace

Participant::Participant(Factory& factory, DDS_DomainId_t domain)
    : QosEntity(nullptr, factory.default_participant_qos()),
      factory_(factory),
      domain_(domain),
      default_publisher_qos_(factory.profiles()),
      default_subscriber_qos_(factory.profiles()),
      default_topic_qos_(factory.profiles()),
      default_writer_qos_(factory.profiles()),
      default_reader_qos_(factory.profiles()) {}

Participant::~Participant() = default;

Status Participant::wrap(const Operation& operation, engine::EntityId participant) {
    engine::Qos qos;
    OwnedQos<DDS_DomainParticipantQos> record;
    const Status status = engine::get_qos(participant, qos);
    if (status != Status::ok) {
        return operation.failed("reading the participant's QoS", status);
    }
    if (from_engine(qos, record.get()) != Status::ok ||
        kept_qos().assign(record.get()) != Status::ok) {
        return operation.out_of_memory();
    }
    wrapped_ = true;
    adopt(participant);
    return Status::ok;
}

engine::Created Participant::create_in_engine(const Operation& operation) {
    engine::Qos qos;
    if (to_engine_qos(qos) != Status::ok) {
        return {Status::out_of_resources};
    }
    const engine::HiddenErrors errors;
    const engine::Created created =
        engine::create_participant(static_cast<std::uint32_t>(domain_), qos);
    if (!created) {
        // A logger silences the log while it is created, and its user must know why it cannot be.
        for (const std::string& line : errors.lines()) {
            operation.tell(line);
        }
    }
    return created;
}

Status Participant::delete_in_engine(engine::EntityId id) {
    return wrapped_ ? Status::ok : Entity::delete_in_engine(id);
}

Status Participant::enable_contained(const Operation& operation) {
    if (!enables_contained()) {
        return Status::ok;
    }
    const Status topics = topics_.enable_all(operation);
    const Status publishers = publishers_.enable_all(operation);
    const Status subscribers = subscribers_.enable_all(operation);
    return first_failure(first_failure(topics, publishers), subscribers);
}

void Participant::refresh_contained_listeners() {
    topics_.refresh_listeners();
    publishers_.refresh_listeners();
    subscribers_.refresh_listeners();
}

Status Participant::get_qos(DDS_DomainParticipantQos& qos) const {
    const Status copied = QosEntity::get_qos(qos);
    engine::Guid guid{};
    const engine::EntityId id = engine_id();
    if (copied != Status::ok || id == engine::no_entity) {
        return copied;
    }
    const Status status = engine::get_guid(id, guid);
    if (status == Status::ok) {
        qos.wire_protocol = {word_of(guid, 0), word_of(guid, 4), word_of(guid, 8)};
    }
    return status;
}

Status Participant::get_default_publisher_qos(const Operation& operation,
                                              DDS_PublisherQos& qos) const {
    return default_publisher_qos_.copy_to(operation, nullptr, qos);
}

Status Participant::set_default_publisher_qos(const Operation& operation,
                                              const DDS_PublisherQos* qos) {
    return default_publisher_qos_.assign_checked(operation, qos);
}

Status Participant::get_default_subscriber_qos(const Operation& operation,
                                               DDS_SubscriberQos& qos) const {
    return default_subscriber_qos_.copy_to(operation, nullptr, qos);
}

Status Participant::set_default_subscriber_qos(const Operation& operation,
                                               const DDS_SubscriberQos* qos) {
    return default_subscriber_qos_.assign_checked(operation, qos);
}

Status Participant::get_default_topic_qos(const Operation& operation, DDS_TopicQos& qos,
                                          const char* topic_name) const {
    return default_topic_qos_.copy_to(operation, topic_name, qos);
}

Status Participant::set_default_topic_qos(const Operation& operation, const DDS_TopicQos* qos) {
    return default_topic_qos_.assign_checked(operation, qos);
}

Status Participant::get_default_writer_qos(const Operation& operation, DDS_DataWriterQos& qos,
                                           const char* topic_name) const {
    return default_writer_qos_.copy_to(operation, topic_name, qos);
}

Status Participant::get_default_reader_qos(const Operation& operation, DDS_DataReaderQos& qos,
                                           const char* topic_name) const {
    return default_reader_qos_.copy_to(operation, topic_name, qos);
}

Status Participant::assert_liveliness() const {
    const engine::EntityId id = engine_id();
    return id == engine::no_entity ? Status::not_enabled : engine::assert_liveliness(id);
}

Result<Publisher*> Participant::create_publisher(const Operation& operation,
                                                 const DDS_PublisherQos* qos,
                                                 const DDS_PublisherListener* listener,
                                                 DDS_StatusMask mask) {
    auto publisher = std::make_shared<Publisher>(*this);
    const Status prepared = publisher->prepare(operation, qos, {listener, mask});
    if (prepared != Status::ok) {
        return prepared;
    }
    return publishers_.admit(operation, std::move(publisher), enables_contained());
}

Status Participant::delete_publisher(const Operation& operation, Publisher& publisher) {
    if (!publishers_.contains(publisher)) {
        return operation.precondition_not_met("the publisher is of this participant");
    }
    if (!publisher.is_empty()) {
        return operation.precondition_not_met("the publisher contains no writers");
    }
    return publishers_.remove(operation, publisher);
}

Result<Subscriber*> Participant::create_subscriber(const Operation& operation,
                                                   const DDS_SubscriberQos* qos,
                                                   const DDS_SubscriberListener* listener,
                                                   DDS_StatusMask mask) {
    auto subscriber = std::make_shared<Subscriber>(*this);
    const Status prepared = subscriber->prepare(operation, qos, {listener, mask});
    if (prepared != Status::ok) {
        return prepared;
    }
    return subscribers_.admit(operation, std::move(subscriber), enables_contained());
}

Status Participant::delete_subscriber(const Operation& operation, Subscriber& subscriber) {
    if (!subscribers_.contains(subscriber)) {
        return operation.precondition_not_met("the subscriber is of this participant");
    }
    if (!subscriber.is_empty()) {
        return operation.precondition_not_met("the subscriber contains no readers");
    }
    return subscribers_.remove(operation, subscriber);
}

Status Participant::delete_contained(const Operation& operation) {
    if (subscribers_.find([](const Subscriber& subscriber) { return subscriber.has_loans(); })) {
        return operation.precondition_not_met("no loan is outstanding");
    }
    const auto empty = [&](auto& child) { return child.delete_contained(operation); };
    Status result = first_failure(subscribers_.all_ok(empty), publishers_.all_ok(empty));
    // A subscriber or publisher that is not empty must stay, and so must the topics that it uses.
    if (result != Status::ok) {
        return result;
    }
    result = first_failure(subscribers_.remove_all(operation), publishers_.remove_all(operation));
    result = first_failure(result, filtered_topics_.remove_all(operation));
    return first_failure(result, topics_.remove_all(operation));
}

bool Participant::is_empty() const {
    return topics_.empty() && filtered_topics_.empty() && publishers_.empty() &&
           subscribers_.empty();
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_Entity* DDS_DomainParticipant_as_entity(DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::as_entity);
}

DDS_DomainId_t DDS_DomainParticipant_get_domain_id(DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::domain);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_qos(DDS_DomainParticipant* self,
                                               DDS_DomainParticipantQos* qos) {
    return dds::call(__func__, self, &dds::Participant::get_qos, dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DomainParticipant_set_qos(DDS_DomainParticipant* self,
                                               const DDS_DomainParticipantQos* qos) {
    return dds::call(__func__, self, &dds::Participant::set_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_set_listener(DDS_DomainParticipant* self,
                                                    const DDS_DomainParticipantListener* listener,
                                                    DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Participant::set_listener,
                     dds::ListenerSetting(listener, mask));
}

DDS_Publisher* DDS_DomainParticipant_create_publisher(DDS_DomainParticipant* self,
                                                      const DDS_PublisherQos* qos,
                                                      const DDS_PublisherListener* listener,
                                                      DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Participant::create_publisher, qos, listener, mask);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_publisher(DDS_DomainParticipant* self,
                                                        DDS_Publisher* publisher) {
    return dds::call(__func__, self, &dds::Participant::delete_publisher, dds::required(publisher));
}

DDS_Subscriber* DDS_DomainParticipant_create_subscriber(DDS_DomainParticipant* self,
                                                        const DDS_SubscriberQos* qos,
                                                        const DDS_SubscriberListener* listener,
                                                        DDS_StatusMask mask) {
    return dds::call(__func__, self, &dds::Participant::create_subscriber, qos, listener, mask);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_subscriber(DDS_DomainParticipant* self,
                                                         DDS_Subscriber* subscriber) {
    return dds::call(__func__, self, &dds::Participant::delete_subscriber,
                     dds::required(subscriber));
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_contained_entities(DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::delete_contained);
}

DDS_ReturnCode_t DDS_DomainParticipant_assert_liveliness(DDS_DomainParticipant* self) {
    return dds::call(__func__, self, &dds::Participant::assert_liveliness);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_publisher_qos(DDS_DomainParticipant* self,
                                                                 DDS_PublisherQos* qos) {
    return dds::call(__func__, self, &dds::Participant::get_default_publisher_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DomainParticipant_set_default_publisher_qos(DDS_DomainParticipant* self,
                                                                 const DDS_PublisherQos* qos) {
    return dds::call(__func__, self, &dds::Participant::set_default_publisher_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_subscriber_qos(DDS_DomainParticipant* self,
                                                                  DDS_SubscriberQos* qos) {
    return dds::call(__func__, self, &dds::Participant::get_default_subscriber_qos,
                     dds::required("qos", qos));
}

DDS_ReturnCode_t DDS_DomainParticipant_set_default_subscriber_qos(DDS_DomainParticipant* self,
                                                                  const DDS_SubscriberQos* qos) {
    return dds::call(__func__, self, &dds::Participant::set_default_subscriber_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_set_default_topic_qos(DDS_DomainParticipant* self,
                                                             const DDS_TopicQos* qos) {
    return dds::call(__func__, self, &dds::Participant::set_default_topic_qos, qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_topic_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_TopicQos* qos, const char* topicName) {
    return dds::call(__func__, self, &dds::Participant::get_default_topic_qos,
                     dds::required("qos", qos), topicName);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_DataWriterQos* qos, const char* topicName) {
    return dds::call(__func__, self, &dds::Participant::get_default_writer_qos,
                     dds::required("qos", qos), topicName);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_datareader_qos_w_topic_name(
    DDS_DomainParticipant* self, DDS_DataReaderQos* qos, const char* topicName) {
    return dds::call(__func__, self, &dds::Participant::get_default_reader_qos,
                     dds::required("qos", qos), topicName);
}
