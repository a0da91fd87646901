#include <list>
#include <span>

#include "pexa/domain.h"
#include "tests/admin/administration.hpp"

namespace orvane::test {
namespace {

constexpr const char* register_type = "DDS_DomainParticipant_register_type";
constexpr const char* topic_qos = "DDS_DomainParticipant_get_default_topic_qos_w_topic_name";
constexpr const char* create_topic = "DDS_DomainParticipant_create_topic";
constexpr const char* writer_qos = "DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name";
constexpr const char* create_writer = "DDS_Publisher_create_datawriter";

constexpr struct {
    const char* function;
    int call;
    const char* text;
} creation_faults[] = {
    // Only without a participant of the application.
    {"QELOsapiHeap_allocateStructureOfSize", 1, "Unable to allocate memory for QEL_KX_DDSEntities"},
    {"DDS_DomainParticipantFactory_get_default_participant_qos", 1,
     "Unable to get Domain Participant QoS"},
    {"DDS_String_replace", 1, "Unable to get Domain Participant QoS"},
    {"DDS_DomainParticipantFactory_create_participant", 1, "Unable to create Domain Participant"},
    // With any participant.
    {"DDS_DomainParticipant_get_qos", 1,
     "Unable to get Domain Participant QoS to create update HostId and AppId:"},
    {register_type, 1, "Unable to register type for LogMessage"},
    {topic_qos, 1, "Unable to create QoS for LogMessage Topic"},
    {create_topic, 1, "Unable to create logTopic"},
    {register_type, 2, "Unable to register State type"},
    {topic_qos, 2, "Unable to get QoS of State's Topic"},
    {create_topic, 2, "Unable to create stateTopic"},
    {"DDS_DomainParticipant_get_default_publisher_qos", 1, "Unable to get publisher QoS"},
    {"DDS_DomainParticipant_create_publisher", 1, "Unable to create publisher"},
    {writer_qos, 1, "Unable to get QoS for LogMessage DataWriter"},
    {create_writer, 1, "Unable to create logMessage DataWriter"},
    {writer_qos, 2, "Unable to get QoS of State's DataWriter"},
    {create_writer, 2, "Unable to create State DataWriter"},
    {"DDS_DataWriter_set_listener", 1, "Unable to set listener in State DataWrite"},
    {"DDS_DomainParticipant_get_default_subscriber_qos", 1, "Unable to get Subscriber QoS"},
    {"DDS_DomainParticipant_create_subscriber", 1, "Unable to create Subscriber"},
    {register_type, 3, "Unable to register CommandRequest type"},
    {topic_qos, 3, "Unable to get QoS for CommandRequest's Topic"},
    {create_topic, 3, "Unable to create CommandRequest Topic"},
    {"DDS_StringSeq_loan_contiguous", 1,
     "Unable to initialize the parameters of commandRequest's Content Filtered Topic"},
    {"DDS_DomainParticipant_create_contentfilteredtopic", 1,
     "Unable to create commandRequest Content Filtered Topic"},
    {register_type, 4, "Unable to register CommandResponse Type"},
    {topic_qos, 4, "Unable to get QoS for CommandResponse Topic"},
    {create_topic, 4, "Unable to create commandResponse Topic"},
    {"DDS_DomainParticipant_get_default_datareader_qos_w_topic_name", 1,
     "Unable to get QoS for CommandRequest Reader"},
    {"DDS_Subscriber_create_datareader", 1, "Unable to create CommandRequest DataReader"},
    {writer_qos, 3, "Unable to get QoS for CommandResponse DataWriter"},
    {create_writer, 3, "Unable to create CommandResponse DataWriter"},
};

class Entities : public AdminTest {};

TEST_F(Entities, EveryFailureIsSaidAndLeavesTheParticipantEmptyOrGone) {
    for (const bool is_shared : {false, true}) {
        for (const auto& fault : std::span(creation_faults).subspan(is_shared ? 4 : 0)) {
            SCOPED_TRACE(fault.text);
            DDS_DomainParticipant* shared = nullptr;
            {
                BareLogger bare;
                QEL_KX_Options_setApplicationKind(bare.options(), "tested");
                if (is_shared) {
                    shared = DDS_DomainParticipantFactory_create_participant(
                        Node::factory(), domain(), DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
                    QEL_KX_Options_setDomainParticipant(bare.options(), shared);
                }
                const Fault injected(fault.function, fault.call);
                EXPECT_EQ(output_of([&] { EXPECT_FALSE(bare.make_entities()); }),
                          line("QEL_KX_DDSEntities_create", fault.text));
            }
            if (is_shared) {
                // The factory refuses while the participant has entities.
                EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(Node::factory(), shared),
                          DDS_RETCODE_OK);
            }
            // It refuses while a participant exists.
            EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
        }
    }
}

TEST_F(Entities, AFailingTeardownStepIsAWarningAndTheRestGoesOn) {
    constexpr struct {
        const char* function;
        const char* text;
    } cases[] = {
        {"DDS_Subscriber_delete_contained_entities",
         "Unable to delete subscriber's contained entities"},
        {"DDS_DomainParticipant_delete_subscriber", "Unable to delete subscriber"},
        {"DDS_Publisher_delete_contained_entities",
         "Unable to delete publisher's contained entities"},
        {"DDS_DomainParticipant_delete_publisher", "Unable to delete publisher"},
        {"DDS_DomainParticipant_delete_contentfilteredtopic",
         "Unable to delete commandRequest Content Filtered Topic"},
        {"DDS_DomainParticipant_delete_contained_entities",
         "Unable to delete contained entities from Domain Participant"},
        {"DDS_DomainParticipantFactory_delete_participant", "Unable to delete participant"},
    };
    BareLogger bare;
    ASSERT_TRUE(bare.make_entities());
    std::list<Fault> faults;
    std::string expected;
    auto code = static_cast<int>(DDS_RETCODE_ERROR);
    for (const auto& row : cases) {
        faults.emplace_back(
            row.function, FaultPlan{.after = true, .code = static_cast<DDS_ReturnCode_t>(code++)});
        expected += line("QEL_KX_DDSEntities_deleteContainedEntities", row.text, "Warning");
    }
    // An application may still use a topic.
    faults.emplace_back("DDS_DomainParticipant_delete_topic", FaultPlan{.call = 0, .after = true});
    const Calls deletions("DDS_DomainParticipant_delete_subscriber");
    EXPECT_EQ(
        output_of([&] {
            EXPECT_EQ(QEL_KX_DDSEntities_deleteContainedEntities(bare.entities()), code - 1)
                << "the last failure counts";
            EXPECT_EQ(QEL_KX_DDSEntities_deleteContainedEntities(bare.entities()), DDS_RETCODE_OK)
                << "a second time there is nothing to delete";
        }),
        expected);
    EXPECT_EQ(deletions.count(), 1);
}

TEST_F(Entities, ASharedParticipantAndItsTopicsSurvive) {
    const Node application;
    DDS_Topic* const known = application.topic<QEL_KX_LogMessage>();
    const Calls registrations("DDS_DomainParticipant_register_type");
    {
        BareLogger bare;
        QEL_KX_Options_setDomainParticipant(bare.options(), application.participant());
        ASSERT_TRUE(bare.make_entities());
        EXPECT_EQ(QEL_KX_DDSEntities_getDomainParticipant(bare.entities()),
                  application.participant());
        EXPECT_EQ(bare.entities()->logTopic, known);
        EXPECT_EQ(registrations.count(), 3);
    }
    const auto topic_named = [&](const char* name) {
        return DDS_DomainParticipant_lookup_topicdescription(application.participant(), name);
    };
    EXPECT_EQ(topic_named(QEL_KX_LOG_TOPIC_NAME), DDS_Topic_as_topicdescription(known));
    for (const char* name : {QEL_KX_STATE_TOPIC_NAME, QEL_KX_COMMAND_REQUEST_TOPIC_NAME,
                             QEL_KX_COMMAND_RESPONSE_TOPIC_NAME}) {
        EXPECT_EQ(topic_named(name), nullptr);
    }
}

TEST_F(Entities, LargeIdsAreNegativeInTheFilterAndInTheState) {
    const Stub<decltype(DDS_DomainParticipant_get_qos)> identity(
        "DDS_DomainParticipant_get_qos",
        [&identity](DDS_DomainParticipant* participant, DDS_DomainParticipantQos* qos) {
            const DDS_ReturnCode_t result = identity.real(participant, qos);
            qos->wire_protocol.rtps_host_id = 3232235521U;
            qos->wire_protocol.rtps_app_id = 0x80000000U;
            return result;
        });
    BareLogger bare;
    ASSERT_TRUE(bare.make_entities());
    EXPECT_EQ(bare->state->hostAndAppId.rtps_host_id, -1062731775);
    EXPECT_EQ(bare->state->hostAndAppId.rtps_app_id, -2147483647 - 1);
    DDS_StringSeq parameters{};
    ASSERT_EQ(DDS_ContentFilteredTopic_get_expression_parameters(
                  bare.entities()->commandRequestFilteredTopic, &parameters),
              DDS_RETCODE_OK);
    ASSERT_EQ(DDS_StringSeq_get_length(&parameters), 2);
    EXPECT_STREQ(DDS_StringSeq_get(&parameters, 0), "-1062731775");
    EXPECT_STREQ(DDS_StringSeq_get(&parameters, 1), "-2147483648");
    DDS_StringSeq_finalize(&parameters);
}

}  // namespace
}  // namespace orvane::test
