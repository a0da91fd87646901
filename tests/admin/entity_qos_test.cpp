#include <filesystem>
#include <fstream>

#include "pexa/string.h"
#include "platform/dds/qos/conversion.hpp"
#include "tests/admin/administration.hpp"

namespace orvane::test {
namespace {

using pexa::dds::OwnedQos;

/// Says something else than the protocol needs, and than the defaults, wherever it can.
std::string contrary() {
    const std::string presentation = R"(<presentation><access_scope>TOPIC</access_scope>
        <coherent_access>true</coherent_access><ordered_access>true</ordered_access>
        </presentation>)";
    const std::string best_effort = "<reliability><kind>BEST_EFFORT</kind></reliability>";
    const std::string endpoint = best_effort + R"(
        <latency_budget><duration><sec>9</sec></duration></latency_budget>
        <deadline><period><sec>8</sec></period></deadline>
        <liveliness><kind>MANUAL_BY_TOPIC</kind></liveliness>
        <destination_order><kind>BY_SOURCE_TIMESTAMP</kind></destination_order>
        <ownership><kind>EXCLUSIVE</kind></ownership>
        <history><kind>KEEP_ALL</kind></history>)";
    return R"(<dds><qos_library name="L"><qos_profile name="Another"/><qos_profile name="P">
        <participant_qos><participant_name><name>profile</name></participant_name>
        </participant_qos>
        <publisher_qos>)" +
           presentation + "</publisher_qos><subscriber_qos>" + presentation +
           "</subscriber_qos><topic_qos>" + best_effort +
           "</topic_qos><datawriter_qos><durability><kind>VOLATILE</kind></durability>" + endpoint +
           "</datawriter_qos><datareader_qos>" + endpoint +
           "</datareader_qos></qos_profile></qos_library></dds>";
}

/// The profiles above are known to the factory.
class EntityQos : public AdminTest {
protected:
    EntityQos() {
        const std::string file = testing::TempDir() + "contrary_profiles.xml";
        std::ofstream(file) << contrary();
        EXPECT_EQ(DDS_DomainParticipantFactory_load_qos_profiles(Node::factory(), file.c_str()),
                  DDS_RETCODE_OK);
        std::filesystem::remove(file);
    }
    ~EntityQos() override {
        EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    }

    /// Entities of a record that uses this profile.
    const QEL_KX_DDSEntities* of_profile(const char* profile) {
        record_.participantFactory = Node::factory();
        record_.qosLibrary = "L";
        record_.qosProfile = profile;
        return &record_;
    }

private:
    QEL_KX_DDSEntities record_ = {};
};

TEST_F(EntityQos, OfCreatedWritersIsWhatTheProtocolNeeds) {
    BareLogger bare;
    ASSERT_TRUE(bare.make_entities());
    const struct {
        DDS_DataWriter* writer;
        DDS_DurabilityQosPolicyKind durability;
        DDS_Long depth;
        // Only the writer that is flushed.
        DDS_Boolean batches;
    } cases[] = {
        {bare.entities()->logMessageWriter, DDS_TRANSIENT_LOCAL_DURABILITY_QOS, 10, 1},
        {bare.entities()->stateWriter, DDS_TRANSIENT_LOCAL_DURABILITY_QOS, 1, 0},
        {bare.entities()->commandResponseWriter, DDS_VOLATILE_DURABILITY_QOS, 10, 0},
    };
    for (const auto& row : cases) {
        OwnedQos<DDS_DataWriterQos> writer;
        ASSERT_EQ(DDS_DataWriter_get_qos(row.writer, &writer.get()), DDS_RETCODE_OK);
        EXPECT_EQ(writer.get().durability.kind, row.durability);
        EXPECT_EQ(writer.get().reliability.kind, DDS_RELIABLE_RELIABILITY_QOS);
        EXPECT_EQ(writer.get().history.kind, DDS_KEEP_LAST_HISTORY_QOS);
        EXPECT_EQ(writer.get().history.depth, row.depth);
        EXPECT_EQ(writer.get().batch.enable, row.batches);
    }
}

TEST_F(EntityQos, NamesTheParticipantAfterTheApplicationKind) {
    constexpr struct {
        const char* kind;
        const char* profile;
        const char* name;
    } cases[] = {{"navigation", nullptr, "navigation"},
                 {"navigation", "P", "navigation"},
                 {"", "P", "profile"},
                 {nullptr, nullptr, nullptr}};
    for (const auto& row : cases) {
        const Options options = make_options();
        options->application_kind = DDS_String_dup(row.kind);
        OwnedQos<DDS_DomainParticipantQos> participant;
        ASSERT_EQ(QEL_KX_DDSEntities_getDomainParticipantQos(of_profile(row.profile),
                                                             &participant.get(), options.get()),
                  DDS_RETCODE_OK);
        EXPECT_STREQ(participant.get().participant_name.name, row.name);
    }
}

template <typename Qos>
void expect_forced_on_endpoint(const Qos& qos) {
    EXPECT_EQ(qos.liveliness.kind, DDS_AUTOMATIC_LIVELINESS_QOS);
    EXPECT_EQ(qos.destination_order.kind, DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS);
    EXPECT_EQ(qos.ownership.kind, DDS_SHARED_OWNERSHIP_QOS);
    EXPECT_EQ(qos.history.kind, DDS_KEEP_ALL_HISTORY_QOS) << "the profile's own choice";
}

TEST_F(EntityQos, KeepsOfAProfileOnlyWhatTheProtocolLeavesOpen) {
    constexpr struct {
        const char* topic;
        bool is_writer_reliable;
        DDS_DurabilityQosPolicyKind writer_durability;
        bool is_reader_reliable;
    } cases[] = {
        {QEL_KX_LOG_TOPIC_NAME, true, DDS_TRANSIENT_LOCAL_DURABILITY_QOS, false},
        {"QEL/Orvane/Administration/STATE", true, DDS_TRANSIENT_LOCAL_DURABILITY_QOS, false},
        {QEL_KX_COMMAND_REQUEST_TOPIC_NAME, false, DDS_VOLATILE_DURABILITY_QOS, true},
        {QEL_KX_COMMAND_RESPONSE_TOPIC_NAME, true, DDS_VOLATILE_DURABILITY_QOS, false},
        {"another topic", false, DDS_VOLATILE_DURABILITY_QOS, false},
    };
    const QEL_KX_DDSEntities* entities = of_profile("P");
    for (const auto& row : cases) {
        SCOPED_TRACE(row.topic);
        OwnedQos<DDS_TopicQos> topic;
        ASSERT_EQ(QEL_KX_DDSEntities_getTopicQos(entities, &topic.get(), row.topic),
                  DDS_RETCODE_OK);
        EXPECT_EQ(topic.get().reliability.kind, DDS_BEST_EFFORT_RELIABILITY_QOS);
        EXPECT_EQ(topic.get().durability.kind, DDS_VOLATILE_DURABILITY_QOS);

        OwnedQos<DDS_DataWriterQos> writer;
        ASSERT_EQ(QEL_KX_DDSEntities_getDataWriterQos(entities, &writer.get(), row.topic),
                  DDS_RETCODE_OK);
        expect_forced_on_endpoint(writer.get());
        EXPECT_EQ(writer.get().latency_budget.duration.sec, 0);
        EXPECT_EQ(writer.get().deadline.period.sec, 8) << "the profile's own choice";
        EXPECT_EQ(writer.get().reliability.kind == DDS_RELIABLE_RELIABILITY_QOS,
                  row.is_writer_reliable);
        EXPECT_EQ(writer.get().durability.kind, row.writer_durability);

        OwnedQos<DDS_DataReaderQos> reader;
        ASSERT_EQ(QEL_KX_DDSEntities_getDataReaderQos(entities, &reader.get(), row.topic),
                  DDS_RETCODE_OK);
        expect_forced_on_endpoint(reader.get());
        EXPECT_EQ(reader.get().latency_budget.duration.sec, DDS_DURATION_INFINITE_SEC);
        EXPECT_EQ(reader.get().deadline.period.sec, DDS_DURATION_INFINITE_SEC);
        EXPECT_EQ(reader.get().reliability.kind == DDS_RELIABLE_RELIABILITY_QOS,
                  row.is_reader_reliable);
    }

    OwnedQos<DDS_PublisherQos> publisher;
    OwnedQos<DDS_SubscriberQos> subscriber;
    ASSERT_EQ(QEL_KX_DDSEntities_getPublisherQos(entities, &publisher.get()), DDS_RETCODE_OK);
    ASSERT_EQ(QEL_KX_DDSEntities_getSubscriberQos(entities, &subscriber.get()), DDS_RETCODE_OK);
    for (const auto& presentation : {publisher.get().presentation, subscriber.get().presentation}) {
        EXPECT_EQ(presentation.access_scope, DDS_INSTANCE_PRESENTATION_QOS);
        EXPECT_EQ(presentation.coherent_access, 0);
        EXPECT_EQ(presentation.ordered_access, 0);
    }
}

TEST_F(EntityQos, FindsAProfileByItsExactName) {
    constexpr struct {
        const char* qos_library;
        const char* profile;
        int found;
        /// By a creation that uses the defaults instead.
        bool warned;
    } cases[] = {{"L", "P", 1, false},     {"L", "Another", 1, false}, {"L", "p", 0, true},
                 {"L", "Anoth", 0, true},  {"", "P", 0, true},         {"L", "", 0, true},
                 {nullptr, "P", 0, false}, {"L", nullptr, 0, false},   {"No", "P", 0, true}};
    for (const auto& row : cases) {
        BareLogger bare;
        bare.options()->qos_library = DDS_String_dup(row.qos_library);
        bare.options()->qos_profile = DDS_String_dup(row.profile);
        EXPECT_EQ(output_of([&] { EXPECT_TRUE(bare.make_entities()); }),
                  row.warned ? line("QEL_KX_DDSEntities_create",
                                    "QoS Library and Profile cannot be found, using default QoS",
                                    "Warning")
                             : "");
        EXPECT_EQ(QEL_KX_DDSEntities_doesQosLibraryAndProfileExist(bare.entities(), row.qos_library,
                                                                   row.profile),
                  row.found);
    }
}

}  // namespace
}  // namespace orvane::test
