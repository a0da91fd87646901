#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <sstream>
#include <thread>

#include "orvane/orvane.h"
#include "tests/platform/dds/profiles/engine_qos.hpp"
#include "tests/platform/dds/profiles/profile_files.hpp"

namespace {

using pexa::dds::object_of;
namespace engine = pexa::engine;

/// Says something else than the logger needs wherever it can.
constexpr const char* contrary = R"(<dds><qos_library name="L"><qos_profile name="P">
    <participant_qos><participant_name><name>profile</name></participant_name>
        <user_data><value>AAEC</value></user_data></participant_qos>
    <publisher_qos><partition><name><element>logs</element></name></partition>
        <presentation><coherent_access>true</coherent_access></presentation></publisher_qos>
    <topic_qos><reliability><kind>RELIABLE</kind></reliability></topic_qos>
    <datawriter_qos>
        <durability><kind>VOLATILE</kind></durability>
        <reliability><kind>BEST_EFFORT</kind></reliability>
        <latency_budget><duration><sec>9</sec></duration></latency_budget>
        <ownership><kind>EXCLUSIVE</kind></ownership>
        <lifespan><duration><sec>70</sec></duration></lifespan>
        <history><kind>KEEP_ALL</kind></history></datawriter_qos>
    <datawriter_qos topic_filter="*/state"><history><kind>KEEP_LAST</kind><depth>4</depth></history>
    </datawriter_qos>
    <datareader_qos><reliability><kind>BEST_EFFORT</kind></reliability>
        <history><depth>6</depth></history></datareader_qos>
    </qos_profile></qos_library></dds>)";

/// What a reader of the log in another process discovers of the writer.
std::string discovered_by_a_peer() {
    DDS_DomainParticipant* participant = DDS_DomainParticipantFactory_create_participant(
        DDS_DomainParticipantFactory_get_instance(), ORVANE_TEST_DOMAIN, nullptr, nullptr, 0);
    QEL_KX_LogMessageTypeSupport_register_type(participant, QEL_KX_LOG_REGISTERED_TYPE_NAME);
    DDS_Topic* topic = DDS_DomainParticipant_create_topic(
        participant, QEL_KX_LOG_TOPIC_NAME, QEL_KX_LOG_REGISTERED_TYPE_NAME, nullptr, nullptr, 0);
    pexa::dds::OwnedQos<DDS_SubscriberQos> qos;
    char partition[] = "logs";
    char* partitions[] = {partition};
    DDS_StringSeq_loan_contiguous(&qos.get().partition.name, partitions, 1, 1);
    DDS_Subscriber* subscriber =
        DDS_DomainParticipant_create_subscriber(participant, &qos.get(), nullptr, 0);
    DDS_StringSeq_unloan(&qos.get().partition.name);
    DDS_DataReader* reader = DDS_Subscriber_create_datareader(
        subscriber, DDS_Topic_as_topicdescription(topic), nullptr, nullptr, 0);
    const engine::EntityId id = object_of(reader)->engine_id();
    std::vector<engine::LocalHandle> handles;
    engine::EndpointData seen;
    for (int i = 0; i < 2000 && handles.empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        static_cast<void>(engine::get_matched_publications(id, handles));
    }
    if (handles.empty() ||
        engine::get_matched_publication(id, handles[0], seen) != pexa::Status::ok) {
        return "nothing";
    }
    std::ostringstream text;
    text << "durability " << static_cast<int>(*seen.qos.durability) << " reliability "
         << static_cast<int>(seen.qos.reliability->kind) << " latency " << *seen.qos.latency_budget
         << " ownership " << static_cast<int>(*seen.qos.ownership) << " lifespan "
         << *seen.qos.lifespan / 1'000'000'000 << " partition " << seen.qos.partition->at(0);
    return text.str();
}

class ProfileOfALogger : public ProfileFiles {};

TEST_F(ProfileOfALogger, WinsWhereTheProtocolLeavesAChoiceAndLosesElsewhere) {
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    // Before the engine has threads.
    const pid_t peer = fork();
    if (peer == 0) {
        const std::string text = discovered_by_a_peer();
        const bool written =
            ::write(channel[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
        _exit(written ? 0 : 1);
    }
    close(channel[1]);
    ASSERT_EQ(load(contrary), DDS_RETCODE_OK);
    QEL_KX_Options* options = QEL_KX_Options_createDefault();
    QEL_KX_Options_setDomainId(options, ORVANE_TEST_DOMAIN);
    QEL_KX_Options_setQosLibrary(options, "L");
    QEL_KX_Options_setQosProfile(options, "P");
    ASSERT_TRUE(QEL_KX_Orvane_setOptions(options));
    const QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
    ASSERT_NE(logger, nullptr);
    const QEL_KX_DDSEntities& entities = *logger->ddsEntities;

    const engine::Qos participant = engine_qos(entities.participant);
    EXPECT_EQ(participant.entity_name, "profile");
    EXPECT_EQ(participant.user_data->size(), 3u);
    EXPECT_EQ(engine_qos(entities.publisher).presentation, engine::PresentationPolicy{}) << "reset";
    const engine::Qos log = engine_qos(entities.logMessageWriter);
    EXPECT_EQ(log.history->kind, engine::HistoryKind::keep_all) << "the profile's";
    EXPECT_EQ(log.durability, engine::DurabilityKind::transient_local) << "forced";
    EXPECT_EQ(engine_qos(entities.stateWriter).history->depth, 4) << "the filter's";
    const engine::Qos commands = engine_qos(entities.commandRequestReader);
    EXPECT_EQ(commands.history->depth, 6) << "the profile's";
    EXPECT_EQ(commands.reliability->kind, engine::ReliabilityKind::reliable) << "forced";
    EXPECT_EQ(engine_qos(entities.logTopic).durability, engine::DurabilityKind::volatile_data)
        << "no profile's topic is changed";

    char text[256] = {};
    EXPECT_GT(read(channel[0], text, sizeof text - 1), 0);
    EXPECT_STREQ(text,
                 "durability 1 reliability 1 latency 0 ownership 0 lifespan 70 partition logs");
    int status = 1;
    EXPECT_EQ(waitpid(peer, &status, 0), peer);
    EXPECT_EQ(status, 0);
    close(channel[0]);
    QEL_KX_Orvane_finalizeInstance();
    QEL_KX_Options_delete(options);
}

}  // namespace
