#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/listener_log.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

class Listeners : public testing::Test {
protected:
    ListenerLog log_;
    ListenerLog::Author own_{&log_, "own"};
    ListenerLog::Author parents_{&log_, "parent"};
    ListenerLog::Author participants_{&log_, "participant"};
    ProbeNode node_;
};

TEST_F(Listeners, DataIsAnnouncedWhenItComesAndWhenAListenerComesLater) {
    DDS_DataWriter* writer = node_.writer();
    DDS_DataReader* reader = node_.reader();
    const DDS_DataReaderListener listener = reader_listener(own_);
    std::vector<Received> taken;
    own_.inside = [&](void* entity) {
        EXPECT_EQ(entity, reader);
        for (const Received& sample : receive(static_cast<DDS_DataReader*>(entity))) {
            taken.push_back(sample);
        }
    };
    ASSERT_EQ(write(writer, {1, 1}), DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DataReader_set_listener(reader, &listener, DDS_DATA_AVAILABLE_STATUS),
              DDS_RETCODE_OK);
    EXPECT_EQ(log_.await(1), "own:data");
    ASSERT_EQ(write(writer, {1, 2}), DDS_RETCODE_OK);
    EXPECT_EQ(log_.await(1), "own:data");
    EXPECT_EQ(summary(taken), "1:1 1:2");
    const DDS_SubscriberListener parents = subscriber_listener(parents_);
    ASSERT_EQ(DDS_Subscriber_set_listener(node_.subscriber, &parents, DDS_DATA_ON_READERS_STATUS),
              DDS_RETCODE_OK);
    log_.take();
    ASSERT_EQ(write(writer, {1, 3}), DDS_RETCODE_OK);
    EXPECT_EQ(log_.await(1), "parent:data_on_readers") << "instead of the reader's own";
    ASSERT_EQ(DDS_Subscriber_set_listener(node_.subscriber, nullptr, 0), DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DataReader_set_listener(reader, nullptr, DDS_STATUS_MASK_ALL), DDS_RETCODE_OK);
    log_.take();
    ASSERT_EQ(write(writer, {1, 4}), DDS_RETCODE_OK);
    EXPECT_EQ(log_.take(), "");
}

TEST_F(Listeners, AListenerGivenAtCreationMissesNothingAndMayUseTheNewEntity) {
    DDS_DataReader* reader = node_.reader();
    const DDS_DataWriterListener listener = writer_listener(own_);
    own_.inside = [](void* entity) {
        EXPECT_EQ(write(static_cast<DDS_DataWriter*>(entity), {5, 50}), DDS_RETCODE_OK);
    };
    pexa::dds::OwnedQos<DDS_DataWriterQos> qos;
    qos.get().durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    ASSERT_NE(DDS_Publisher_create_datawriter(node_.publisher, node_.topic, &qos.get(), &listener,
                                              DDS_PUBLICATION_MATCHED_STATUS),
              nullptr);
    EXPECT_EQ(log_.await(1), "own:matched(1)");
    EXPECT_EQ(summary(await_samples(reader, 1)), "5:50");
}

TEST_F(Listeners, AStatusGoesToTheNearestListenerThatTakesIt) {
    const DDS_DataReaderListener own = reader_listener(own_);
    DDS_DataReaderListener own_without_slot = own;
    own_without_slot.on_subscription_matched = nullptr;
    const DDS_SubscriberListener parents = subscriber_listener(parents_);
    const DDS_DomainParticipantListener participants = participant_listener(participants_);
    const DDS_StatusMask bit = DDS_SUBSCRIPTION_MATCHED_STATUS;
    const struct {
        const DDS_DataReaderListener* own;
        DDS_StatusMask own_mask;
        DDS_StatusMask parents_mask;
        DDS_StatusMask participants_mask;
        const char* expected;
    } cases[] = {
        {&own, bit, bit, bit, "own:matched(1)"},
        {&own, 0, bit, bit, "parent:matched(1)"},
        {&own, DDS_SAMPLE_LOST_STATUS, 0, bit, "participant:matched(1)"},
        {&own_without_slot, bit, bit, bit, "parent:matched(1)"},
        {nullptr, bit, 0, bit, "participant:matched(1)"},
        {nullptr, 0, 0, 0, ""},
    };
    DDS_DataWriter* writer = node_.writer();
    for (const auto& one : cases) {
        ASSERT_EQ(DDS_Subscriber_set_listener(node_.subscriber, &parents, one.parents_mask),
                  DDS_RETCODE_OK);
        ASSERT_EQ(DDS_DomainParticipant_set_listener(node_.participant, &participants,
                                                     one.participants_mask),
                  DDS_RETCODE_OK);
        DDS_DataReader* reader = DDS_Subscriber_create_datareader(
            node_.subscriber, DDS_Topic_as_topicdescription(node_.topic), DDS_QOS_DEFAULT, one.own,
            one.own_mask);
        ASSERT_TRUE(await_reader(writer));
        EXPECT_EQ(log_.take(), one.expected);
        ASSERT_EQ(DDS_Subscriber_delete_datareader(node_.subscriber, reader), DDS_RETCODE_OK);
        log_.take();
    }
}

TEST_F(Listeners, AListenerFurtherUpIsHeardByEntitiesThatExistAndSilencedAgain) {
    DDS_DataWriter* writer = node_.writer();
    const DDS_PublisherListener parents = {writer_listener(parents_)};
    const DDS_DomainParticipantListener participants = participant_listener(participants_);
    DDS_DataReader* reader = node_.reader();
    ASSERT_TRUE(await_reader(writer));
    const auto lose_reader = [&] {
        ASSERT_EQ(DDS_Subscriber_delete_datareader(node_.subscriber, reader), DDS_RETCODE_OK);
        reader = node_.reader();
    };

    ASSERT_EQ(DDS_DomainParticipant_set_listener(node_.participant, &participants,
                                                 DDS_PUBLICATION_MATCHED_STATUS),
              DDS_RETCODE_OK);
    lose_reader();
    EXPECT_EQ(log_.await(2), "participant:matched(0) participant:matched(1)");
    ASSERT_EQ(DDS_Publisher_set_listener(node_.publisher, &parents, DDS_PUBLICATION_MATCHED_STATUS),
              DDS_RETCODE_OK);
    lose_reader();
    EXPECT_EQ(log_.await(2), "parent:matched(0) parent:matched(1)");
    ASSERT_EQ(DDS_Publisher_set_listener(node_.publisher, nullptr, 0), DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DomainParticipant_set_listener(node_.participant, nullptr, 0), DDS_RETCODE_OK);
    lose_reader();
    EXPECT_EQ(log_.take(), "");
    EXPECT_EQ(DDS_Entity_get_status_changes(DDS_DataWriter_as_entity(writer)) &
                  DDS_PUBLICATION_MATCHED_STATUS,
              DDS_PUBLICATION_MATCHED_STATUS)
        << "what nobody takes stays a change of the status";
}

TEST_F(Listeners, EachStatusReachesItsSlot) {
    const DDS_DataWriterListener writers = writer_listener(own_);
    const DDS_DataReaderListener readers = reader_listener(own_);
    const struct {
        const char* expected;
        bool of_writer;
        DDS_StatusMask status;
        WriterTweak writer;
        ReaderTweak reader;
    } cases[] = {
        {"own:incompatible(2)", true, DDS_OFFERED_INCOMPATIBLE_QOS_STATUS,
         [](DDS_DataWriterQos& qos) { qos.durability.kind = DDS_VOLATILE_DURABILITY_QOS; },
         nullptr},
        {"own:incompatible(11)", false, DDS_REQUESTED_INCOMPATIBLE_QOS_STATUS,
         [](DDS_DataWriterQos& qos) { qos.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS; },
         nullptr},
        {"own:deadline", true, DDS_OFFERED_DEADLINE_MISSED_STATUS,
         [](DDS_DataWriterQos& qos) {
             qos.deadline.period = {0, 20'000'000};
         },
         nullptr},
        {"own:deadline", false, DDS_REQUESTED_DEADLINE_MISSED_STATUS,
         [](DDS_DataWriterQos& qos) {
             qos.deadline.period = {0, 20'000'000};
         },
         [](DDS_DataReaderQos& qos) {
             qos.deadline.period = {0, 20'000'000};
         }},
        {"own:liveliness_lost", true, DDS_LIVELINESS_LOST_STATUS,
         [](DDS_DataWriterQos& qos) {
             qos.liveliness = {DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS, {0, 20'000'000}};
         },
         nullptr},
        {"own:alive(1)", false, DDS_LIVELINESS_CHANGED_STATUS, nullptr, nullptr},
        {"own:rejected(2)", false, DDS_SAMPLE_REJECTED_STATUS,
         [](DDS_DataWriterQos& qos) { qos.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS; },
         [](DDS_DataReaderQos& qos) {
             qos.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
             qos.resource_limits.max_samples = 1;
         }},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.expected);
        DDS_DataWriter* writer = node_.writer(one.writer);
        DDS_DataReader* reader = node_.reader(one.reader);
        ASSERT_EQ(one.of_writer ? DDS_DataWriter_set_listener(writer, &writers, one.status)
                                : DDS_DataReader_set_listener(reader, &readers, one.status),
                  DDS_RETCODE_OK);
        write(writer, {1, 1});
        write(writer, {2, 1});
        const std::string events = log_.await(1);
        EXPECT_EQ(events.substr(0, events.find(' ')), one.expected);
        ASSERT_EQ(DDS_Subscriber_delete_datareader(node_.subscriber, reader), DDS_RETCODE_OK);
        ASSERT_EQ(DDS_Publisher_delete_datawriter(node_.publisher, writer), DDS_RETCODE_OK);
        log_.take();
    }
}

TEST_F(Listeners, ACallbackCannotEndItsOwnEntityAndARemovalWaitsForIt) {
    DDS_DataWriter* writer = node_.writer();
    DDS_DataReader* reader = node_.reader();
    const DDS_DataReaderListener listener = reader_listener(own_);
    std::atomic<bool> entered = false;
    std::atomic<bool> removing = false;
    std::atomic<bool> removed = false;
    std::atomic<bool> removed_during_callback = false;
    own_.inside = [&](void* entity) {
        auto* own = static_cast<DDS_DataReader*>(entity);
        EXPECT_EQ(DDS_DataReader_set_listener(own, nullptr, 0), DDS_RETCODE_ILLEGAL_OPERATION);
        EXPECT_EQ(DDS_Subscriber_delete_datareader(node_.subscriber, own),
                  DDS_RETCODE_ILLEGAL_OPERATION);
        entered = true;
        entered.notify_all();
        removing.wait(false);
        // The other thread is at its call now; it has this time to return too early.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        removed_during_callback = removed.load();
    };
    ASSERT_EQ(DDS_DataReader_set_listener(reader, &listener, DDS_DATA_AVAILABLE_STATUS),
              DDS_RETCODE_OK);
    std::thread writing([&] { EXPECT_EQ(write(writer, {1, 1}), DDS_RETCODE_OK); });
    entered.wait(false);
    removing = true;
    removing.notify_all();
    EXPECT_EQ(DDS_DataReader_set_listener(reader, nullptr, 0), DDS_RETCODE_OK);
    removed = true;
    writing.join();
    EXPECT_FALSE(removed_during_callback);
    EXPECT_EQ(log_.take(), "own:data");
    EXPECT_EQ(DDS_Subscriber_lookup_datareader(node_.subscriber, topic_of_this_test().c_str()),
              reader);
}

}  // namespace
