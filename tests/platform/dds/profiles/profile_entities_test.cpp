#include "platform/dds/domain/participant.hpp"
#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/endpoints/writer.hpp"
#include "tests/platform/dds/profiles/profile_files.hpp"
#include "tests/support/node.hpp"

namespace {

using orvane::test::Node;
using pexa::dds::object_of;
using pexa::dds::OwnedQos;
namespace engine = pexa::engine;

const std::string participant_part = R"(<participant_qos>
    <participant_name><name>from the profile</name></participant_name>
    <property><value><element><name>colour</name><value>red</value></element></value></property>
    <user_data><value>AAEC</value></user_data></participant_qos>)";
const std::string group_part =
    "<partition><name><element>p1</element><element>p2</element></name></partition>";
/// All that a writer and a reader of the same profile need to match.
const std::string endpoint_part = R"(
    <durability><kind>TRANSIENT_LOCAL</kind></durability>
    <deadline><period><sec>50</sec></period></deadline>
    <reliability><kind>RELIABLE</kind></reliability>
    <history><kind>KEEP_LAST</kind><depth>3</depth></history>)";

std::string default_profile() {
    return "<qos_profile name='P' is_default_qos='true'>" + participant_part + "<publisher_qos>" +
           group_part + "</publisher_qos><subscriber_qos>" + group_part +
           "</subscriber_qos><topic_qos topic_filter='profiled'>" + endpoint_part +
           "</topic_qos><datawriter_qos topic_filter='profiled'>" + endpoint_part +
           "<ownership_strength><value>6</value></ownership_strength><user_data><value>AAEC"
           "</value></user_data></datawriter_qos><datareader_qos topic_filter='profiled'>" +
           endpoint_part + "</datareader_qos></qos_profile>";
}

/// What the engine made of an entity's QoS.
template <typename Handle>
engine::Qos engine_qos(Handle* entity) {
    engine::Qos qos;
    EXPECT_EQ(engine::get_qos(object_of(entity)->engine_id(), qos), pexa::Status::ok);
    return qos;
}

class ProfiledEntities : public ProfileFiles {};

/// A participant with a topic of that name, everything of default QoS.
struct ProfiledNode : Node {
    explicit ProfiledNode(const char* name = "profiled")
        : description(topic<QEL_KX_LogMessage>(name)) {}

    DDS_DataWriter* default_writer() const {
        return DDS_Publisher_create_datawriter(publisher(), description, DDS_QOS_DEFAULT, nullptr,
                                               DDS_STATUS_MASK_NONE);
    }
    DDS_DataReader* default_reader(DDS_TopicDescription* topic) const {
        return DDS_Subscriber_create_datareader(subscriber(), topic, DDS_QOS_DEFAULT, nullptr,
                                                DDS_STATUS_MASK_NONE);
    }

    DDS_Topic* description;
};

TEST_F(ProfiledEntities, TheDefaultProfileReachesTheEngineAndItsPeers) {
    write("USER_QOS_PROFILES.xml", library(default_profile()));
    const ProfiledNode sender;
    const engine::Qos of_participant = engine_qos(sender.participant());
    EXPECT_EQ(of_participant.entity_name, "from the profile");
    const std::pair<std::string, std::string> property{"colour", "red"};
    EXPECT_EQ(of_participant.properties.at(0), property);

    const engine::Qos of_writer = engine_qos(sender.default_writer());
    EXPECT_EQ(of_writer.durability, engine::DurabilityKind::transient_local);
    EXPECT_EQ(of_writer.history, (engine::HistoryPolicy{engine::HistoryKind::keep_last, 3}));
    EXPECT_EQ(of_writer.ownership_strength, 6);

    const ProfiledNode receiver;
    DDS_DataReader* reader =
        receiver.default_reader(DDS_Topic_as_topicdescription(receiver.description));
    ASSERT_TRUE(orvane::test::await_writer(reader)) << "partitions, durability and deadline fit";
    const engine::EntityId id = object_of(reader)->engine_id();
    std::vector<engine::LocalHandle> handles;
    ASSERT_EQ(engine::get_matched_publications(id, handles), pexa::Status::ok);
    engine::EndpointData seen;
    ASSERT_EQ(engine::get_matched_publication(id, handles.at(0), seen), pexa::Status::ok);
    EXPECT_EQ(seen.qos.deadline, 50'000'000'000);
    EXPECT_EQ(seen.qos.reliability->kind, engine::ReliabilityKind::reliable);
    EXPECT_EQ(seen.qos.partition, (std::vector<std::string>{"p1", "p2"}));
    EXPECT_EQ(seen.qos.user_data, (engine::Bytes{std::byte{0}, std::byte{1}, std::byte{2}}));
}

TEST_F(ProfiledEntities, TheDefaultProfilesFiltersGoByTheTopicsName) {
    ASSERT_EQ(load(library(default_profile())), DDS_RETCODE_OK);
    const ProfiledNode profiled;
    const ProfiledNode other("other");
    EXPECT_EQ(engine_qos(profiled.description).durability, engine::DurabilityKind::transient_local);
    EXPECT_EQ(engine_qos(other.description).durability, engine::DurabilityKind::volatile_data);
    EXPECT_EQ(engine_qos(other.default_writer()).history->depth, 1);
    DDS_ContentFilteredTopic* view = DDS_DomainParticipant_create_contentfilteredtopic(
        profiled.participant(), "view", profiled.description, "level = 1", nullptr);
    DDS_DataReader* reader =
        profiled.default_reader(DDS_ContentFilteredTopic_as_topicdescription(view));
    EXPECT_EQ(engine_qos(reader).history->depth, 3) << "by the name of the topic it filters";

    // A default that is set outweighs the default profile until it is taken back.
    OwnedQos<DDS_TopicQos> wanted;
    wanted.get().history.depth = 9;
    DDS_DomainParticipant* participant = other.participant();
    const auto depth = [participant](const char* topic_name = "profiled") {
        OwnedQos<DDS_TopicQos> qos;
        EXPECT_EQ(DDS_DomainParticipant_get_default_topic_qos_w_topic_name(participant, &qos.get(),
                                                                           topic_name),
                  DDS_RETCODE_OK);
        return qos.get().history.depth;
    };
    EXPECT_EQ(depth("other"), 1);
    EXPECT_EQ(depth(), 3);
    ASSERT_EQ(DDS_DomainParticipant_set_default_topic_qos(participant, &wanted.get()),
              DDS_RETCODE_OK);
    EXPECT_EQ(depth(), 9);
    ASSERT_EQ(DDS_DomainParticipant_set_default_topic_qos(participant, DDS_QOS_DEFAULT),
              DDS_RETCODE_OK);
    EXPECT_EQ(depth(), 3);
    ASSERT_EQ(load(library("<qos_profile name='P'/>")), DDS_RETCODE_OK);
    EXPECT_EQ(depth(), 1) << "the profile is no default any more";

    // A refused default profile is not passed over.
    const std::string fault = "loaded.xml:2: x: unknown element";
    const std::string refusal = "DDS_Publisher_create_datawriter:profile L::Q is refused: " + fault;
    const std::string refused =
        library("<qos_profile name='Q' is_default_qos='1'>\n<x/></qos_profile>");
    Reports reports;
    ASSERT_EQ(load(refused), DDS_RETCODE_OK);
    EXPECT_EQ(other.default_writer(), nullptr);
    EXPECT_TRUE(has_line(reports.take(), refusal));
    // Nor is it while a logger is made, which silences the log.
    QELLog_setInstrumentationMask(QEL_LOG_MODULE_DDS, 0);
    testing::internal::CaptureStderr();
    ASSERT_EQ(load(refused), DDS_RETCODE_OK);
    EXPECT_EQ(other.default_writer(), nullptr);
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(told.find("DDS_DomainParticipantFactory_load_qos_profiles:" + fault), 0U) << told;
    EXPECT_NE(told.find("\n" + refusal), std::string::npos) << told;
}

}  // namespace
