#include "pexa/publication.h"
#include "pexa/string.h"
#include "pexa/subscription.h"
#include "tests/admin/admin_fixture.hpp"

namespace admin_test {
namespace {

constexpr const char* log_topic = "qel/orvane";
constexpr const char* state_topic = "qel/orvane/administration/state";
constexpr const char* request_topic = "qel/orvane/administration/command_request";
constexpr const char* response_topic = "qel/orvane/administration/command_response";

/// A QoS record for the length of a scope.
template <typename Qos, DDS_ReturnCode_t (*Initialize)(Qos*), DDS_ReturnCode_t (*Finalize)(Qos*)>
struct Scoped {
    Scoped() { EXPECT_EQ(DDS_RETCODE_OK, Initialize(&qos)); }
    Scoped(const Scoped&) = delete;
    Scoped& operator=(const Scoped&) = delete;
    ~Scoped() { Finalize(&qos); }
    Qos qos{};
};
using ParticipantQos = Scoped<DDS_DomainParticipantQos, DDS_DomainParticipantQos_initialize,
                              DDS_DomainParticipantQos_finalize>;
using TopicQos = Scoped<DDS_TopicQos, DDS_TopicQos_initialize, DDS_TopicQos_finalize>;
using PublisherQos =
    Scoped<DDS_PublisherQos, DDS_PublisherQos_initialize, DDS_PublisherQos_finalize>;
using SubscriberQos =
    Scoped<DDS_SubscriberQos, DDS_SubscriberQos_initialize, DDS_SubscriberQos_finalize>;
using WriterQos =
    Scoped<DDS_DataWriterQos, DDS_DataWriterQos_initialize, DDS_DataWriterQos_finalize>;
using ReaderQos =
    Scoped<DDS_DataReaderQos, DDS_DataReaderQos_initialize, DDS_DataReaderQos_finalize>;

class EntityQos : public AdminTest {
protected:
    BareLogger bare_;
};

TEST_F(EntityQos, CreatedTopicsAndWritersHaveWhatTheProtocolNeeds) {
    ASSERT_TRUE(bare_.build());
    const QEL_KX_DDSEntities& entities = *bare_.entities();
    const struct {
        DDS_Topic* topic;
        DDS_DataWriter* writer;
        DDS_DurabilityQosPolicyKind durability;
        DDS_Long depth;
    } cases[] = {
        {entities.logTopic, entities.logMessageWriter, DDS_TRANSIENT_LOCAL_DURABILITY_QOS, 10},
        {entities.stateTopic, entities.stateWriter, DDS_TRANSIENT_LOCAL_DURABILITY_QOS, 1},
        {entities.commandRequestTopic, nullptr, DDS_VOLATILE_DURABILITY_QOS, 0},
        {entities.commandResponseTopic, entities.commandResponseWriter, DDS_VOLATILE_DURABILITY_QOS,
         10},
    };
    for (const auto& row : cases) {
        TopicQos topic;
        ASSERT_EQ(DDS_RETCODE_OK, DDS_Topic_get_qos(row.topic, &topic.qos));
        EXPECT_EQ(DDS_RELIABLE_RELIABILITY_QOS, topic.qos.reliability.kind);
        EXPECT_EQ(row.durability, topic.qos.durability.kind);
        if (row.writer == nullptr) {
            continue;
        }
        WriterQos writer;
        ASSERT_EQ(DDS_RETCODE_OK, DDS_DataWriter_get_qos(row.writer, &writer.qos));
        EXPECT_EQ(DDS_RELIABLE_RELIABILITY_QOS, writer.qos.reliability.kind);
        EXPECT_EQ(row.durability, writer.qos.durability.kind);
        EXPECT_EQ(DDS_KEEP_LAST_HISTORY_QOS, writer.qos.history.kind);
        EXPECT_EQ(row.depth, writer.qos.history.depth);
    }
}

TEST_F(EntityQos, TheCommandReaderIsReliableWithTenRequests) {
    ASSERT_TRUE(bare_.build());
    ReaderQos reader;
    ASSERT_EQ(DDS_RETCODE_OK,
              DDS_DataReader_get_qos(bare_.entities()->commandRequestReader, &reader.qos));
    EXPECT_EQ(DDS_RELIABLE_RELIABILITY_QOS, reader.qos.reliability.kind);
    EXPECT_EQ(DDS_VOLATILE_DURABILITY_QOS, reader.qos.durability.kind);
    EXPECT_EQ(DDS_KEEP_LAST_HISTORY_QOS, reader.qos.history.kind);
    EXPECT_EQ(10, reader.qos.history.depth);
    EXPECT_EQ(DDS_DURATION_INFINITE_SEC, reader.qos.latency_budget.duration.sec);
}

TEST_F(EntityQos, TheParticipantIsNamedAfterTheApplicationKind) {
    constexpr struct {
        const char* kind;
        bool profile;
        const char* name;
    } cases[] = {{"navigation", false, "navigation"},
                 {"navigation", true, "navigation"},
                 {"", true, "name in the profile"},
                 {nullptr, false, nullptr}};
    ASSERT_TRUE(bare_.build());
    QEL_KX_DDSEntities& entities = *bare_.entities();
    for (const auto& row : cases) {
        DDS_String_free(bare_.options->application_kind);
        bare_.options->application_kind = DDS_String_dup(row.kind);
        faults::profile = row.profile ? "Profile" : nullptr;
        entities.qosLibrary = entities.qosProfile = "Profile";
        ParticipantQos participant;
        ASSERT_EQ(DDS_RETCODE_OK, QEL_KX_DDSEntities_getDomainParticipantQos(
                                      &entities, &participant.qos, bare_.options.get()));
        EXPECT_STREQ(row.name, participant.qos.participant_name.name);
    }
}

/// A profile whose every policy differs from what is forced, and from the defaults.
class EntityQosOfProfile : public EntityQos {
protected:
    EntityQosOfProfile() {
        faults::profile = "Profile";
        EXPECT_TRUE(bare_.build());
        bare_.entities()->qosLibrary = "Library";
        bare_.entities()->qosProfile = "Profile";
    }
    [[nodiscard]] const QEL_KX_DDSEntities* entities() const { return bare_.entities(); }
};

TEST_F(EntityQosOfProfile, PresentationIsReset) {
    PublisherQos publisher;
    SubscriberQos subscriber;
    ASSERT_EQ(DDS_RETCODE_OK, QEL_KX_DDSEntities_getPublisherQos(entities(), &publisher.qos));
    ASSERT_EQ(DDS_RETCODE_OK, QEL_KX_DDSEntities_getSubscriberQos(entities(), &subscriber.qos));
    for (const auto& presentation : {publisher.qos.presentation, subscriber.qos.presentation}) {
        EXPECT_EQ(DDS_INSTANCE_PRESENTATION_QOS, presentation.access_scope);
        EXPECT_EQ(0, presentation.coherent_access);
        EXPECT_EQ(0, presentation.ordered_access);
    }
}

TEST_F(EntityQosOfProfile, TopicsKeepTheProfilesChoice) {
    for (const char* name : {log_topic, state_topic, request_topic, response_topic}) {
        TopicQos topic;
        ASSERT_EQ(DDS_RETCODE_OK, QEL_KX_DDSEntities_getTopicQos(entities(), &topic.qos, name));
        EXPECT_EQ(DDS_BEST_EFFORT_RELIABILITY_QOS, topic.qos.reliability.kind);
        EXPECT_EQ(DDS_VOLATILE_DURABILITY_QOS, topic.qos.durability.kind);
    }
}

template <typename Qos>
void expect_forced_on_endpoint(const Qos& qos) {
    EXPECT_EQ(DDS_AUTOMATIC_LIVELINESS_QOS, qos.liveliness.kind);
    EXPECT_EQ(DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS, qos.destination_order.kind);
    EXPECT_EQ(DDS_SHARED_OWNERSHIP_QOS, qos.ownership.kind);
    EXPECT_EQ(DDS_KEEP_ALL_HISTORY_QOS, qos.history.kind) << "the profile's own choice";
    EXPECT_EQ(3, qos.history.depth);
}

TEST_F(EntityQosOfProfile, WritersAndReadersKeepOnlyWhatTheProtocolLeavesOpen) {
    constexpr struct {
        const char* topic;
        DDS_ReliabilityQosPolicyKind writer_reliability;
        DDS_DurabilityQosPolicyKind writer_durability;
        DDS_ReliabilityQosPolicyKind reader_reliability;
    } cases[] = {
        {log_topic, DDS_RELIABLE_RELIABILITY_QOS, DDS_TRANSIENT_LOCAL_DURABILITY_QOS,
         DDS_BEST_EFFORT_RELIABILITY_QOS},
        {"QEL/Orvane/Administration/STATE", DDS_RELIABLE_RELIABILITY_QOS,
         DDS_TRANSIENT_LOCAL_DURABILITY_QOS, DDS_BEST_EFFORT_RELIABILITY_QOS},
        {request_topic, DDS_BEST_EFFORT_RELIABILITY_QOS, DDS_VOLATILE_DURABILITY_QOS,
         DDS_RELIABLE_RELIABILITY_QOS},
        {response_topic, DDS_RELIABLE_RELIABILITY_QOS, DDS_VOLATILE_DURABILITY_QOS,
         DDS_BEST_EFFORT_RELIABILITY_QOS},
        {"another topic", DDS_BEST_EFFORT_RELIABILITY_QOS, DDS_VOLATILE_DURABILITY_QOS,
         DDS_BEST_EFFORT_RELIABILITY_QOS},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.topic);
        WriterQos writer;
        ASSERT_EQ(DDS_RETCODE_OK,
                  QEL_KX_DDSEntities_getDataWriterQos(entities(), &writer.qos, row.topic));
        expect_forced_on_endpoint(writer.qos);
        EXPECT_EQ(0, writer.qos.latency_budget.duration.sec);
        EXPECT_EQ(8, writer.qos.deadline.period.sec) << "the profile's own choice";
        EXPECT_EQ(row.writer_reliability, writer.qos.reliability.kind);
        EXPECT_EQ(row.writer_durability, writer.qos.durability.kind);

        ReaderQos reader;
        ASSERT_EQ(DDS_RETCODE_OK,
                  QEL_KX_DDSEntities_getDataReaderQos(entities(), &reader.qos, row.topic));
        expect_forced_on_endpoint(reader.qos);
        EXPECT_EQ(DDS_DURATION_INFINITE_SEC, reader.qos.latency_budget.duration.sec);
        EXPECT_EQ(DDS_DURATION_INFINITE_SEC, reader.qos.deadline.period.sec);
        EXPECT_EQ(row.reader_reliability, reader.qos.reliability.kind);
    }
}

TEST_F(EntityQosOfProfile, AProfileIsFoundByItsExactName) {
    constexpr struct {
        const char* qos_library;
        const char* profile;
        int found;
    } cases[] = {{"Library", "Profile", 1}, {"Library", "Another", 1}, {"Library", "profile", 0},
                 {"Library", "Prof", 0},    {"", "Profile", 0},        {"Library", "", 0},
                 {nullptr, "Profile", 0},   {"Library", nullptr, 0}};
    for (const auto& row : cases) {
        EXPECT_EQ(row.found, QEL_KX_DDSEntities_doesQosLibraryAndProfileExist(
                                 entities(), row.qos_library, row.profile));
    }
}

TEST_F(EntityQos, AMissingProfileIsOneWarningAndTheDefaultsAreUsed) {
    constexpr struct {
        const char* qos_library;
        const char* profile;
        bool warned;
    } cases[] = {{"NoLibrary", "NoProfile", true}, {"", "", true}, {"NoLibrary", nullptr, false}};
    for (const auto& row : cases) {
        BareLogger bare;
        bare.options->qos_library = DDS_String_dup(row.qos_library);
        bare.options->qos_profile = DDS_String_dup(row.profile);
        const std::string warning =
            line("KX Warning", "QEL_KX_DDSEntities_create",
                 "QoS Library and Profile cannot be found, using default QoS");
        EXPECT_EQ(row.warned ? warning : "", printed([&] { EXPECT_TRUE(bare.build()); }));
        WriterQos writer;
        ASSERT_EQ(DDS_RETCODE_OK,
                  DDS_DataWriter_get_qos(bare.entities()->stateWriter, &writer.qos));
        EXPECT_EQ(1, writer.qos.history.depth);
    }
}

TEST_F(EntityQos, NullIsABadParameter) {
    ASSERT_TRUE(bare_.build());
    WriterQos writer;
    ParticipantQos participant;
    EXPECT_EQ(DDS_RETCODE_BAD_PARAMETER,
              QEL_KX_DDSEntities_getDataWriterQos(nullptr, &writer.qos, log_topic));
    EXPECT_EQ(DDS_RETCODE_BAD_PARAMETER,
              QEL_KX_DDSEntities_getDataWriterQos(bare_.entities(), nullptr, log_topic));
    EXPECT_EQ(DDS_RETCODE_BAD_PARAMETER, QEL_KX_DDSEntities_getDomainParticipantQos(
                                             bare_.entities(), &participant.qos, nullptr));
}

}  // namespace
}  // namespace admin_test
