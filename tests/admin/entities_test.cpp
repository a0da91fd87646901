#include <algorithm>

#include "pexa/domain.h"
#include "tests/admin/admin_fixture.hpp"

namespace admin_test {
namespace {

constexpr const char* create_context = "QEL_KX_DDSEntities_create";
constexpr const char* delete_context = "QEL_KX_DDSEntities_deleteContainedEntities";

struct CreationFault {
    const char* function;
    int call;
    const char* text;
};

constexpr CreationFault participant_faults[] = {
    {"QELOsapiHeap_allocateStructureOfSize", 1, "Unable to allocate memory for QEL_KX_DDSEntities"},
    {"DDS_DomainParticipantFactory_get_default_participant_qos", 1,
     "Unable to get Domain Participant QoS"},
    {"DDS_String_replace", 1, "Unable to get Domain Participant QoS"},
    {"DDS_DomainParticipantFactory_create_participant", 1, "Unable to create Domain Participant"},
};

constexpr CreationFault later_faults[] = {
    {"DDS_DomainParticipant_get_qos", 1,
     "Unable to get Domain Participant QoS to create update HostId and AppId:"},
    {"DDS_DomainParticipant_register_type", 1, "Unable to register type for LogMessage"},
    {"DDS_DomainParticipant_get_default_topic_qos_w_topic_name", 1,
     "Unable to create QoS for LogMessage Topic"},
    {"DDS_DomainParticipant_create_topic", 1, "Unable to create logTopic"},
    {"DDS_DomainParticipant_register_type", 2, "Unable to register State type"},
    {"DDS_DomainParticipant_get_default_topic_qos_w_topic_name", 2,
     "Unable to get QoS of State's Topic"},
    {"DDS_DomainParticipant_create_topic", 2, "Unable to create stateTopic"},
    {"DDS_DomainParticipant_get_default_publisher_qos", 1, "Unable to get publisher QoS"},
    {"DDS_DomainParticipant_create_publisher", 1, "Unable to create publisher"},
    {"DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name", 1,
     "Unable to get QoS for LogMessage DataWriter"},
    {"DDS_Publisher_create_datawriter", 1, "Unable to create logMessage DataWriter"},
    {"DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name", 2,
     "Unable to get QoS of State's DataWriter"},
    {"DDS_Publisher_create_datawriter", 2, "Unable to create State DataWriter"},
    {"DDS_DataWriter_set_listener", 1, "Unable to set listener in State DataWrite"},
    {"DDS_DomainParticipant_get_default_subscriber_qos", 1, "Unable to get Subscriber QoS"},
    {"DDS_DomainParticipant_create_subscriber", 1, "Unable to create Subscriber"},
    {"DDS_DomainParticipant_register_type", 3, "Unable to register CommandRequest type"},
    {"DDS_DomainParticipant_get_default_topic_qos_w_topic_name", 3,
     "Unable to get QoS for CommandRequest's Topic"},
    {"DDS_DomainParticipant_create_topic", 3, "Unable to create CommandRequest Topic"},
    {"DDS_StringSeq_loan_contiguous", 1,
     "Unable to initialize the parameters of commandRequest's Content Filtered Topic"},
    {"DDS_DomainParticipant_create_contentfilteredtopic", 1,
     "Unable to create commandRequest Content Filtered Topic"},
    {"DDS_DomainParticipant_register_type", 4, "Unable to register CommandResponse Type"},
    {"DDS_DomainParticipant_get_default_topic_qos_w_topic_name", 4,
     "Unable to get QoS for CommandResponse Topic"},
    {"DDS_DomainParticipant_create_topic", 4, "Unable to create commandResponse Topic"},
    {"DDS_DomainParticipant_get_default_datareader_qos_w_topic_name", 1,
     "Unable to get QoS for CommandRequest Reader"},
    {"DDS_Subscriber_create_datareader", 1, "Unable to create CommandRequest DataReader"},
    {"DDS_DomainParticipant_get_default_datawriter_qos_w_topic_name", 3,
     "Unable to get QoS for CommandResponse DataWriter"},
    {"DDS_Publisher_create_datawriter", 3, "Unable to create CommandResponse DataWriter"},
};

class Entities : public AdminTest {
protected:
    /// The creation fails with the one line that says why.
    static void expect_failure(BareLogger& bare, const CreationFault& fault) {
        faults::reset();
        faults::add({.function = fault.function, .call = fault.call});
        bool built = true;
        EXPECT_EQ(line("KX Error", create_context, fault.text),
                  printed([&] { built = bare.build(); }));
        EXPECT_FALSE(built) << fault.text;
        faults::reset();
    }
};

TEST_F(Entities, EveryFailureWithAnOwnParticipantIsSaidAndUndone) {
    BareLogger bare;
    QEL_KX_Options_setApplicationKind(bare.options.get(), "tested");
    for (const CreationFault& fault : participant_faults) {
        expect_failure(bare, fault);
        EXPECT_EQ(DDS_RETCODE_OK, DDS_DomainParticipantFactory_finalize_instance()) << fault.text;
    }
    for (const CreationFault& fault : later_faults) {
        expect_failure(bare, fault);
        // The factory refuses while a participant exists.
        EXPECT_EQ(DDS_RETCODE_OK, DDS_DomainParticipantFactory_finalize_instance()) << fault.text;
    }
}

TEST_F(Entities, EveryFailureInASharedParticipantLeavesItEmpty) {
    for (const CreationFault& fault : later_faults) {
        DDS_DomainParticipant* const shared = DDS_DomainParticipantFactory_create_participant(
            Tool::factory(), domain, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
        BareLogger bare;
        QEL_KX_Options_setDomainParticipant(bare.options.get(), shared);
        expect_failure(bare, fault);
        // The factory refuses while the participant has entities.
        EXPECT_EQ(DDS_RETCODE_OK,
                  DDS_DomainParticipantFactory_delete_participant(Tool::factory(), shared))
            << fault.text;
    }
}

TEST_F(Entities, NothingIsAllocatedForALoggerWithoutOptions) {
    EXPECT_EQ(line("KX Error", create_context, "QEL_KX_Orvane is NULL"),
              printed([] { EXPECT_EQ(nullptr, QEL_KX_DDSEntities_create(nullptr)); }));
    QEL_KX_Orvane logger{};
    EXPECT_EQ(
        line("KX Error", create_context, "QEL_KX_Options is NULL, expected initialized variable"),
        printed([&] { EXPECT_EQ(nullptr, QEL_KX_DDSEntities_create(&logger)); }));
    EXPECT_EQ(0, faults::calls("QELOsapiHeap_allocateStructureOfSize"));
}

TEST_F(Entities, NullRecordsAreToleratedAndReportedWhereThatIsUseful) {
    EXPECT_EQ(line("KX Error", "QEL_KX_Orvane_initialize", "QEL_KX_Orvane is NULL"),
              printed([] { QEL_KX_Orvane_initialize(nullptr); }));
    EXPECT_EQ("", printed([] { QEL_KX_DDSEntities_destroy(nullptr); }));
    EXPECT_EQ(line("KX Error", "QEL_KX_DDSEntities_initialize", "QEL_KX_DDSEntities is NULL"),
              printed([] { QEL_KX_DDSEntities_initialize(nullptr); }));
    EXPECT_EQ(
        line("KX Warning", delete_context, "QEL_KX_DDSEntities is NULL. Cannot delete it again"),
        printed([] {
            EXPECT_EQ(DDS_RETCODE_OK, QEL_KX_DDSEntities_deleteContainedEntities(nullptr));
        }));
    EXPECT_EQ(0U, QEL_KX_DDSEntities_getRtpsHostId(nullptr));
    EXPECT_EQ(nullptr, QEL_KX_DDSEntities_getStateWriter(nullptr));
    EXPECT_EQ(0, QEL_KX_DDSEntities_doesQosLibraryAndProfileExist(nullptr, "l", "p"));
}

TEST_F(Entities, TeardownGoesFromTheReadersToTheParticipant) {
    QEL_KX_DDSEntities_gInitialStateSent = 1;
    BareLogger bare;
    ASSERT_TRUE(bare.build());
    EXPECT_EQ(0, QEL_KX_DDSEntities_hasInitialStateBeenSent()) << "of an earlier logger";
    faults::reset();
    EXPECT_EQ("", printed([&] {
                  EXPECT_EQ(DDS_RETCODE_OK,
                            QEL_KX_DDSEntities_deleteContainedEntities(bare.entities()));
              }));
    const std::vector<std::string> expected = {
        "DDS_Subscriber_delete_contained_entities",
        "DDS_DomainParticipant_delete_subscriber",
        "DDS_Publisher_delete_contained_entities",
        "DDS_DomainParticipant_delete_publisher",
        "DDS_DomainParticipant_delete_contentfilteredtopic",
        "DDS_DomainParticipant_delete_topic",
        "DDS_DomainParticipant_delete_topic",
        "DDS_DomainParticipant_delete_topic",
        "DDS_DomainParticipant_delete_topic",
        "DDS_DomainParticipant_delete_contained_entities",
        "DDS_DomainParticipantFactory_delete_participant",
    };
    EXPECT_EQ(expected, faults::sequence());
    EXPECT_EQ(DDS_RETCODE_OK, QEL_KX_DDSEntities_deleteContainedEntities(bare.entities()))
        << "a second time there is nothing to delete";
    EXPECT_EQ(expected.size(), faults::sequence().size());
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
    ASSERT_TRUE(bare.build());
    faults::reset();
    std::string expected;
    auto code = static_cast<int>(DDS_RETCODE_ERROR);
    for (const auto& row : cases) {
        faults::add({row.function, 1, true, static_cast<DDS_ReturnCode_t>(code++)});
        expected += line("KX Warning", delete_context, row.text);
    }
    faults::add({"DDS_DomainParticipant_delete_topic", 0, true, DDS_RETCODE_ERROR});
    EXPECT_EQ(expected, printed([&] {
                  EXPECT_EQ(code - 1, QEL_KX_DDSEntities_deleteContainedEntities(bare.entities()))
                      << "the last failure counts";
              }));
}

TEST_F(Entities, ASharedParticipantAndItsTopicsSurvive) {
    Tool application;
    DDS_Topic* const known = application.topic<QEL_KX_LogMessage>();
    faults::reset();
    {
        BareLogger bare;
        QEL_KX_Options_setDomainParticipant(bare.options.get(), application.participant());
        ASSERT_TRUE(bare.build());
        const QEL_KX_DDSEntities& entities = *bare.entities();
        EXPECT_EQ(0, entities.participantCreated);
        EXPECT_EQ(application.participant(), QEL_KX_DDSEntities_getDomainParticipant(&entities));
        EXPECT_EQ(known, entities.logTopic);
        EXPECT_EQ(nullptr, entities.createdTopics[0]);
        EXPECT_EQ(entities.stateTopic, entities.createdTopics[1]);
        EXPECT_EQ(entities.commandRequestTopic, entities.createdTopics[2]);
        EXPECT_EQ(entities.commandResponseTopic, entities.createdTopics[3]);
        EXPECT_EQ(3, faults::calls("DDS_DomainParticipant_register_type"));
    }
    EXPECT_EQ(3, faults::calls("DDS_DomainParticipant_delete_topic"));
    DDS_DomainParticipant* const participant = application.participant();
    EXPECT_EQ(DDS_Topic_as_topicdescription(known),
              DDS_DomainParticipant_lookup_topicdescription(participant, "qel/orvane"));
    EXPECT_EQ(nullptr, DDS_DomainParticipant_lookup_topicdescription(
                           participant, "qel/orvane/administration/state"));
}

TEST_F(Entities, ATopicOfAnotherTypeUnderOurNameFailsTheCreation) {
    Tool application;
    ASSERT_EQ(DDS_RETCODE_OK, QEL_KX_ADMIN_StateTypeSupport_register_type(application.participant(),
                                                                          "another type"));
    ASSERT_NE(nullptr, DDS_DomainParticipant_create_topic(application.participant(), "qel/orvane",
                                                          "another type", DDS_QOS_DEFAULT, nullptr,
                                                          DDS_STATUS_MASK_NONE));
    BareLogger bare;
    QEL_KX_Options_setDomainParticipant(bare.options.get(), application.participant());
    const std::string output = printed([&] { EXPECT_FALSE(bare.build()); });
    EXPECT_NE(std::string::npos, output.find(line("KX Error", create_context,
                                                  "Unable to create logMessage DataWriter")))
        << output;
}

TEST_F(Entities, WithoutRemoteAdministrationThereIsNothingForCommands) {
    BareLogger bare;
    QEL_KX_Options_setRemoteAdministrationEnabled(bare.options.get(), 0);
    ASSERT_TRUE(bare.build());
    const QEL_KX_DDSEntities& entities = *bare.entities();
    EXPECT_EQ(nullptr, entities.subscriber);
    EXPECT_EQ(nullptr, QEL_KX_DDSEntities_getCommandRequestReader(&entities));
    EXPECT_EQ(nullptr, QEL_KX_DDSEntities_getCommandResponseWriter(&entities));
    EXPECT_EQ(nullptr, DDS_DomainParticipant_lookup_topicdescription(
                           entities.participant, "qel/orvane/administration/command_request"));
    EXPECT_NE(nullptr, QEL_KX_DDSEntities_getLogMessageWriter(&entities));
    EXPECT_NE(nullptr, QEL_KX_DDSEntities_getStateWriter(&entities));
}

TEST_F(Entities, OnlyTheWriterThatIsFlushedBatches) {
    BareLogger bare;
    ASSERT_TRUE(bare.build());
    const QEL_KX_DDSEntities& entities = *bare.entities();
    const auto batches = [](DDS_DataWriter* writer) {
        DDS_DataWriterQos qos;
        DDS_DataWriterQos_initialize(&qos);
        EXPECT_EQ(DDS_RETCODE_OK, DDS_DataWriter_get_qos(writer, &qos));
        const DDS_Boolean enabled = qos.batch.enable;
        DDS_DataWriterQos_finalize(&qos);
        return enabled != 0;
    };
    EXPECT_TRUE(batches(QEL_KX_LogMessageDataWriter_as_datawriter(entities.logMessageWriter)));
    EXPECT_FALSE(batches(QEL_KX_ADMIN_StateDataWriter_as_datawriter(entities.stateWriter)));
    EXPECT_FALSE(batches(
        QEL_KX_ADMIN_CommandResponseDataWriter_as_datawriter(entities.commandResponseWriter)));
}

TEST_F(Entities, TopicsHaveTheAgreedNamesAndTypes) {
    BareLogger bare;
    ASSERT_TRUE(bare.build());
    const QEL_KX_DDSEntities& entities = *bare.entities();
    const struct {
        DDS_Topic* topic;
        const char* name;
        const char* type;
    } cases[] = {
        {entities.logTopic, "qel/orvane", "com::qel::kx::LogMessage"},
        {entities.stateTopic, "qel/orvane/administration/state", "com::qel::kx::admin::State"},
        {entities.commandRequestTopic, "qel/orvane/administration/command_request",
         "com::qel::kx::admin::CommandRequest"},
        {entities.commandResponseTopic, "qel/orvane/administration/command_response",
         "com::qel::kx::admin::CommandResponse"},
    };
    for (const auto& row : cases) {
        DDS_TopicDescription* const topic = DDS_Topic_as_topicdescription(row.topic);
        EXPECT_STREQ(row.name, DDS_TopicDescription_get_name(topic));
        EXPECT_STREQ(row.type, DDS_TopicDescription_get_type_name(topic));
    }
    DDS_ContentFilteredTopic* const filtered = entities.commandRequestFilteredTopic;
    EXPECT_STREQ(
        "CommandRequestContentFilteredTopic",
        DDS_TopicDescription_get_name(DDS_ContentFilteredTopic_as_topicdescription(filtered)));
    EXPECT_EQ(entities.commandRequestTopic, DDS_ContentFilteredTopic_get_related_topic(filtered));
    EXPECT_STREQ("targetHostAndAppId.rtps_host_id = %0 and targetHostAndAppId.rtps_app_id = %1",
                 DDS_ContentFilteredTopic_get_filter_expression(filtered));
    EXPECT_EQ(DDS_ContentFilteredTopic_as_topicdescription(filtered),
              DDS_DataReader_get_topicdescription(entities.commandRequestReader));
}

TEST_F(Entities, LargeIdsAreNegativeInTheFilterAndInTheState) {
    faults::identity = {3232235521U, 0x80000000U};
    BareLogger bare;
    ASSERT_TRUE(bare.build());
    EXPECT_EQ(3232235521U, QEL_KX_DDSEntities_getRtpsHostId(bare.entities()));
    EXPECT_EQ(0x80000000U, QEL_KX_DDSEntities_getRtpsAppId(bare.entities()));
    EXPECT_EQ(-1062731775, bare.state->hostAndAppId.rtps_host_id);
    EXPECT_EQ(domain, bare.state->administrationDomainId);
    DDS_StringSeq parameters{};
    ASSERT_EQ(DDS_RETCODE_OK, DDS_ContentFilteredTopic_get_expression_parameters(
                                  bare.entities()->commandRequestFilteredTopic, &parameters));
    ASSERT_EQ(2, DDS_StringSeq_get_length(&parameters));
    EXPECT_STREQ("-1062731775", DDS_StringSeq_get(&parameters, 0));
    EXPECT_STREQ("-2147483648", DDS_StringSeq_get(&parameters, 1));
    DDS_StringSeq_finalize(&parameters);
}

}  // namespace
}  // namespace admin_test
