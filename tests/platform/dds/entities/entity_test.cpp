#include <unistd.h>

#include <cerrno>

#include <gtest/gtest.h>

#include "platform/engine/engine.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/faults.hpp"

namespace {

namespace engine = pexa::engine;

TEST(DisabledEntities, ExistButDoNotTakePartUntilTheyAreEnabled) {
    const ProbeNode node;
    OwnedQos<DDS_DomainParticipantQos> qos;
    ASSERT_EQ(DDS_DomainParticipant_get_qos(node.participant(), &qos.get()), ok);
    qos.get().entity_factory.autoenable_created_entities = 0;
    ASSERT_EQ(DDS_DomainParticipant_set_qos(node.participant(), &qos.get()), ok);
    DDS_Publisher* publisher = node.make_publisher();
    DDS_DataWriter* writer = node.default_writer(publisher);
    ASSERT_NE(writer, nullptr);
    DDS_Entity* entity = DDS_DataWriter_as_entity(writer);
    DDS_PublicationMatchedStatus status{};
    EXPECT_EQ(DDS_Entity_is_enabled(entity), 0);
    EXPECT_TRUE(equal(DDS_Entity_get_instance_handle(entity), DDS_HANDLE_NIL));
    EXPECT_EQ(write(writer, 1, 1), not_enabled);
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(writer, &patience), not_enabled);
    EXPECT_EQ(DDS_DataWriter_get_publication_matched_status(writer, &status), not_enabled);
    EXPECT_EQ(DDS_Entity_enable(entity), refused) << "its publisher is disabled";

    EXPECT_EQ(DDS_Entity_enable(DDS_Publisher_as_entity(publisher)), ok);
    EXPECT_EQ(DDS_Entity_is_enabled(entity), 1) << "the publisher enables what it contains";
    EXPECT_EQ(DDS_Entity_enable(entity), ok) << "again";
    EXPECT_EQ(write(writer, 1, 1), ok);

    DDS_Topic* topic = node.make_topic(topic_of_this_test() + "_disabled");
    EXPECT_EQ(node.default_writer(publisher, topic), nullptr) << "its topic is disabled";
    EXPECT_EQ(DDS_Entity_enable(DDS_Topic_as_entity(topic)), ok);
    EXPECT_NE(node.default_writer(publisher, topic), nullptr);

    DDS_DataReader* reader = node.default_reader(node.make_subscriber());
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(ProbeSeq().receive(reader), not_enabled);
    EXPECT_EQ(DDS_DataReader_create_readcondition(reader, 1, 1, 1), nullptr);
    DDS_WaitSet* wait_set = DDS_WaitSet_new();
    DDS_Condition* condition = DDS_StatusCondition_as_condition(
        DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(reader)));
    EXPECT_EQ(DDS_Condition_get_trigger_value(condition), 0);
    EXPECT_EQ(DDS_WaitSet_attach_condition(wait_set, condition), refused);
    EXPECT_EQ(DDS_WaitSet_delete(wait_set), ok);
}

TEST(DisabledEntities, ComeIntoOperationWithTheirParticipant) {
    OwnedQos<DDS_DomainParticipantFactoryQos> qos;
    qos.get().entity_factory.autoenable_created_entities = 0;
    ASSERT_EQ(DDS_DomainParticipantFactory_set_qos(ProbeNode::factory(), &qos.get()), ok);
    {
        ProbeNode node;
        DDS_DataWriter* writer = node.writer();
        DDS_DataReader* reader = node.reader();
        EXPECT_EQ(DDS_DomainParticipant_assert_liveliness(node.participant()), not_enabled);
        ASSERT_EQ(DDS_Entity_enable(DDS_DomainParticipant_as_entity(node.participant())), ok);
        EXPECT_EQ(write(writer, 1, 10), ok);
        EXPECT_EQ(summary(await_samples(reader, 1)), "1:10");
        EXPECT_EQ(DDS_DomainParticipant_assert_liveliness(node.participant()), ok);
    }
    ASSERT_EQ(DDS_DomainParticipantFactory_set_qos(ProbeNode::factory(), DDS_QOS_DEFAULT), ok);
    ASSERT_EQ(DDS_DomainParticipantFactory_get_qos(ProbeNode::factory(), &qos.get()), ok);
    EXPECT_EQ(qos.get().entity_factory.autoenable_created_entities, 1);
}

TEST(Entities, AreFoundFromEachOtherAndStayWhileTheyAreInUseOrContainSomething) {
    const int endpoints = attached_endpoints;
    const ProbeNode node;
    const ProbeNode other(topic_of_this_test() + "_other");
    DDS_DomainParticipant* participant = node.participant();
    DDS_DataWriter* writer = node.writer();
    DDS_DataReader* reader = node.reader();
    EXPECT_GE(attached_endpoints, endpoints + 2);

    DDS_DomainParticipantFactory* factory = ProbeNode::factory();
    const std::string name = topic_of_this_test();
    DDS_TopicDescription* found =
        DDS_DomainParticipant_lookup_topicdescription(participant, name.c_str());
    EXPECT_EQ(DDS_Topic_narrow(found), node.topic);
    EXPECT_EQ(DDS_TopicDescription_get_name(found), name);
    EXPECT_STREQ(DDS_TopicDescription_get_type_name(found), "Probe");
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(participant, "unknown"), nullptr);
    EXPECT_EQ(DDS_Publisher_lookup_datawriter(node.publisher(), name.c_str()), writer);
    EXPECT_EQ(DDS_Publisher_lookup_datawriter(node.publisher(), "unknown"), nullptr);
    EXPECT_NE(DDS_DomainParticipantFactory_lookup_participant(factory, ORVANE_TEST_DOMAIN),
              nullptr);
    EXPECT_EQ(DDS_DomainParticipantFactory_lookup_participant(factory, 61), nullptr);
    EXPECT_EQ(DDS_DomainParticipantFactory_create_participant(factory, -1, nullptr, nullptr, 0),
              nullptr);
    EXPECT_EQ(DDS_DataWriter_get_topic(writer), node.topic);
    EXPECT_EQ(DDS_DataWriter_get_publisher(writer), node.publisher());
    EXPECT_EQ(DDS_DataReader_get_topicdescription(reader), found);
    EXPECT_EQ(DDS_DataReader_get_subscriber(reader), node.subscriber());
    EXPECT_EQ(DDS_Publisher_get_participant(node.publisher()), participant);
    EXPECT_EQ(DDS_DataWriter_compare_typeI(writer, "Probe"), 0) << "the type's name counts";

    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory, participant), refused);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), refused);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(participant, "Probe"), refused);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(participant, "Unknown"), bad_parameter);
    for (const ProbeNode* deleter : {&node, &other}) {
        EXPECT_EQ(deleter->remove(node.publisher()), refused);
        EXPECT_EQ(deleter->remove(node.subscriber()), refused);
        EXPECT_EQ(deleter->remove(node.topic), refused);
    }
    EXPECT_EQ(other.remove(writer), refused);
    EXPECT_EQ(other.remove(reader), refused);
    EXPECT_EQ(other.default_writer(nullptr, node.topic), nullptr);
    EXPECT_EQ(node.default_reader(other.subscriber()), nullptr);

    EXPECT_EQ(node.remove(writer), ok);
    EXPECT_EQ(node.remove(node.topic), refused) << "the reader still uses it";
    EXPECT_EQ(node.remove(reader), ok);
    EXPECT_EQ(attached_endpoints, endpoints);
    EXPECT_EQ(other.remove(node.topic), refused) << "it is another participant's";
    EXPECT_EQ(other.remove(node.publisher()), refused);
    EXPECT_EQ(node.remove(node.topic), ok);
    EXPECT_EQ(DDS_DomainParticipant_unregister_type(participant, "Probe"), ok);
    EXPECT_EQ(node.remove(node.publisher()), ok);
    EXPECT_EQ(node.remove(node.subscriber()), ok);
}

TEST(Types, ANameBelongsToOneType) {
    const ProbeNode node;
    const TULVTypePlugin same = probe_plugin();
    const TULVTypePlugin other = keyless_probe_plugin();
    TULVTypePlugin incomplete = probe_plugin();
    incomplete.serialize_key = nullptr;
    TULVTypePlugin wrong_kind = probe_plugin();
    wrong_kind.pluginKind = 0;
    const struct {
        const char* name;
        const TULVTypePlugin* plugin;
        DDS_ReturnCode_t expected;
    } cases[] = {
        {"Probe", &same, ok},
        {"Another", &same, ok},
        {"Probe", &other, refused},
        {"", &same, bad_parameter},
        {"New", &incomplete, bad_parameter},
        {"New", &wrong_kind, bad_parameter},
        {"New", nullptr, bad_parameter},
    };
    for (const auto& [name, plugin, expected] : cases) {
        EXPECT_EQ(DDS_DomainParticipant_register_type(node.participant(), name, plugin, nullptr),
                  expected)
            << name;
    }
    EXPECT_EQ(node.make_topic(""), nullptr);
    EXPECT_EQ(node.make_topic(topic_of_this_test()), nullptr) << "the name is taken";
    EXPECT_EQ(node.make_topic("t", "Unknown"), nullptr);

    // An endpoint that the plugin refuses is not made.
    refusing_endpoints = true;
    EXPECT_EQ(node.default_writer(), nullptr);
    EXPECT_EQ(node.default_reader(), nullptr);
    refusing_endpoints = false;
    EXPECT_EQ(node.remove(node.topic), ok) << "nothing uses the topic";
}

TEST(EntityQos, AnEntityChangesOnlyWhatMayChangeAndRefusesContradictions) {
    const ProbeNode node;
    DDS_DataWriter* writer = node.writer();
    OwnedQos<DDS_DataWriterQos> qos;
    ASSERT_EQ(DDS_DataWriter_get_qos(writer, &qos.get()), ok);
    EXPECT_EQ(qos.get().history.kind, DDS_KEEP_ALL_HISTORY_QOS) << "as it was created";
    qos.get().lifespan.duration = {9, 0};
    EXPECT_EQ(DDS_DataWriter_set_qos(writer, &qos.get()), ok);
    EXPECT_EQ(DDS_DataWriter_get_qos(writer, nullptr), bad_parameter);
    qos.get().durability.kind = DDS_VOLATILE_DURABILITY_QOS;
    EXPECT_EQ(DDS_DataWriter_set_qos(writer, &qos.get()), DDS_RETCODE_IMMUTABLE_POLICY);
    ASSERT_EQ(DDS_DataWriter_get_qos(writer, &qos.get()), ok);
    EXPECT_EQ(qos.get().lifespan.duration.sec, 9);
    EXPECT_EQ(qos.get().durability.kind, DDS_TRANSIENT_LOCAL_DURABILITY_QOS);

    DDS_DataReader* reader = node.reader();
    OwnedQos<DDS_DataReaderQos> wrong;
    ASSERT_EQ(DDS_DataReader_get_qos(reader, &wrong.get()), ok);
    wrong.get().history = {DDS_KEEP_LAST_HISTORY_QOS, 5};
    wrong.get().resource_limits.max_samples_per_instance = 4;
    EXPECT_EQ(DDS_DataReader_set_qos(reader, &wrong.get()), DDS_RETCODE_INCONSISTENT_POLICY);
    EXPECT_EQ(DDS_Subscriber_set_default_datareader_qos(node.subscriber(), &wrong.get()),
              DDS_RETCODE_INCONSISTENT_POLICY);
    EXPECT_EQ(DDS_Subscriber_create_datareader(node.subscriber(), node.description(), &wrong.get(),
                                               nullptr, 0),
              nullptr);
}

TEST(EntityQos, ADefaultAppliesToWhatIsCreatedLater) {
    const ProbeNode node;
    OwnedQos<DDS_DataWriterQos> of_writers;
    of_writers.get().transport_priority.value = 7;
    ASSERT_EQ(DDS_Publisher_set_default_datawriter_qos(node.publisher(), &of_writers.get()), ok);
    ASSERT_EQ(DDS_DataWriter_get_qos(node.default_writer(), &of_writers.get()), ok);
    EXPECT_EQ(of_writers.get().transport_priority.value, 7);
    OwnedQos<DDS_PublisherQos> of_publishers;
    of_publishers.get().entity_factory.autoenable_created_entities = 0;
    ASSERT_EQ(
        DDS_DomainParticipant_set_default_publisher_qos(node.participant(), &of_publishers.get()),
        ok);
    DDS_Entity* writer = DDS_DataWriter_as_entity(node.default_writer(node.make_publisher()));
    EXPECT_EQ(DDS_Entity_is_enabled(writer), 0);
}

TEST(WrappedParticipants, AreOrdinaryOnesAndStayTheApplications) {
    DDS_DomainParticipantFactory* factory = ProbeNode::factory();
    engine::Qos engine_qos;
    engine_qos.entity_name = "the application's";
    const engine::EntityId own = engine::create_participant(ORVANE_TEST_DOMAIN, engine_qos).entity;
    DDS_DomainParticipant* participant =
        DDS_DomainParticipantFactory_wrap_participant(factory, own);
    ASSERT_NE(participant, nullptr);
    EXPECT_EQ(DDS_DomainParticipant_get_domain_id(participant), ORVANE_TEST_DOMAIN);
    OwnedQos<DDS_DomainParticipantQos> qos;
    ASSERT_EQ(DDS_DomainParticipant_get_qos(participant, &qos.get()), ok);
    EXPECT_STREQ(qos.get().participant_name.name, "the application's");

    EXPECT_NE(DDS_DomainParticipant_create_publisher(participant, nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory, participant), refused);
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant), ok);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory, participant), ok);
    for (const engine::EntityId id : {engine::create_publisher(own, {}).entity, 0, -1}) {
        EXPECT_EQ(DDS_DomainParticipantFactory_wrap_participant(factory, id), nullptr) << id;
    }
    EXPECT_TRUE(engine::is_participant(own));
    EXPECT_EQ(engine::delete_entity(own), pexa::Status::ok);
    EXPECT_EQ(DDS_DomainParticipantFactory_wrap_participant(factory, own), nullptr);
}

/// What a participant announces of itself, as another one sees it.
struct Announcement {
    Announcement() { DDS_ParticipantBuiltinTopicData_initialize(&data); }
    ~Announcement() { DDS_ParticipantBuiltinTopicData_finalize(&data); }
    /// @return the value of a property.
    std::string operator[](const char* name) {
        for (DDS_Long i = 0; i < DDS_PropertySeq_get_length(&data.property.value); ++i) {
            const DDS_Property_t& property =
                *DDS_PropertySeq_get_reference(&data.property.value, i);
            if (std::strcmp(property.name, name) == 0) {
                return property.value;
            }
        }
        return "none";
    }

    DDS_ParticipantBuiltinTopicData data;
};

TEST(DiscoveredParticipants, AreTheOtherOnesWithWhatTheyAnnounceUntilTheyLeave) {
    const ProbeNode node;
    DDS_InstanceHandleSeq handles{};
    ASSERT_EQ(DDS_DomainParticipant_get_discovered_participants(node.participant(), &handles), ok);
    EXPECT_EQ(DDS_InstanceHandleSeq_get_length(&handles), 0) << "the participant itself";
    DDS_InstanceHandle_t handle;
    struct : engine::Listener {
        void on_data_available(engine::EntityId) override { ++count; }
        int count = 0;
    } alarm;
    Announcement seen;
    const auto look = [&] {
        return DDS_DomainParticipant_get_discovered_participant_data(node.participant(), &seen.data,
                                                                     &handle);
    };
    {
        engine::Qos qos;
        qos.entity_name = "the other one";
        qos.user_data = {std::byte{7}};
        qos.properties = {{"of.its.own", "1"}};
        const engine::EntityId other =
            engine::create_participant(ORVANE_TEST_DOMAIN, qos,
                                       {&alarm, engine::data_available_status})
                .entity;
        ASSERT_EQ(DDS_DomainParticipant_get_discovered_participants(node.participant(), &handles),
                  ok);
        ASSERT_EQ(DDS_InstanceHandleSeq_get_length(&handles), 1);
        handle = DDS_InstanceHandleSeq_get(&handles, 0);
        engine::Guid guid;
        ASSERT_EQ(engine::get_guid(other, guid), pexa::Status::ok);
        for (int time = 0; time < 2; ++time) {
            ASSERT_EQ(look(), ok);
            EXPECT_EQ(std::memcmp(seen.data.key.value, guid.data(), guid.size()), 0);
            EXPECT_EQ(std::memcmp(handle.keyHash.value, guid.data(), guid.size()), 0);
            EXPECT_STREQ(seen.data.participant_name.name, "the other one");
            EXPECT_EQ(DDS_OctetSeq_get(&seen.data.user_data.value, 0), 7);
            EXPECT_EQ(seen["__Pid"], std::to_string(getpid()));
            EXPECT_EQ(seen["__ProcessName"], program_invocation_short_name);
            EXPECT_NE(seen["__Hostname"], "none");
        }
        std::vector<engine::ParticipantData> found;
        EXPECT_EQ(engine::get_discovered_participants(other, found), pexa::Status::ok);
        EXPECT_EQ(found.size(), 1U);
        EXPECT_EQ(alarm.count, 0) << "the listener knows no such reader";
        for (const char* allocation :
             {orvane::test::new_expression, orvane::test::heap_allocation}) {
            orvane::test::sweep(allocation, [&] {
                Announcement again;
                return DDS_DomainParticipant_get_discovered_participant_data(
                           node.participant(), &again.data, &handle) == ok;
            });
        }
        EXPECT_EQ(engine::delete_entity(other), pexa::Status::ok);
    }
    const ProbeNode another;
    EXPECT_EQ(look(), bad_parameter) << "it has left";
    EXPECT_STREQ(seen.data.participant_name.name, "the other one") << "a failure changes nothing";
    handle = DDS_HANDLE_NIL;
    EXPECT_EQ(look(), bad_parameter);
    DDS_InstanceHandleSeq_finalize(&handles);
}

bool is_refusal(auto result) {
    return result == decltype(result){};
}
bool is_refusal(DDS_ReturnCode_t code) {
    return code == bad_parameter;
}
bool is_refusal(DDS_InstanceHandle_t handle) {
    return equal(handle, DDS_HANDLE_NIL);
}
bool is_refusal(DDS_DomainId_t domain) {
    return domain == -1;
}

/// Calls an operation with zero for every argument.
template <typename Result, typename... Arguments>
void expect_refusal(const std::string& name, Result (*operation)(Arguments...)) {
    orvane::test::Reports reports;
    EXPECT_TRUE(is_refusal(operation(Arguments{}...))) << name;
    const std::vector<std::string> texts = reports.take();
    EXPECT_EQ(texts.size(), 1U) << name;
    EXPECT_TRUE(texts.at(0).starts_with(name + ":bad parameter: ")) << texts.at(0);
}

TEST(NullArguments, EveryExportedOperationOnANullEntityIsRefusedWithOneReport) {
#define NULL_CALL(operation) [] { expect_refusal(#operation, operation); }
    void (*const calls[])() = {
// One line per name of the list of exports.
#include "null_calls.inc"
    };
#undef NULL_CALL
    for (const auto call : calls) {
        call();
    }
}

}  // namespace
