#include <atomic>
#include <fstream>
#include <functional>
#include <thread>

#include <gtest/gtest.h>

#include "pexa/osapi.h"
#include "tests/platform/dds/entities/probe_node.hpp"
#include "tests/support/events.hpp"

namespace {

/// Events that listeners note.
struct ListenerLog : orvane::test::Events<std::string> {
    /// Waits until that many events have been noted. @return those, joined with blanks
    std::string await(std::size_t count) {
        Events::await(count);
        std::string joined;
        for (const std::string& event : Events::take()) {
            joined += (joined.empty() ? "" : " ") + event;
        }
        return joined;
    }
    /// @return the events since the last call, joined with blanks
    std::string take() { return await(0); }
};

/// The data of a listener, with its name in a log.
struct Author {
    ListenerLog* log;
    const char* name;
    /// Runs inside the callback, before the event is noted.
    std::function<void(void* entity)> inside = nullptr;
};

/// Notes an event of this name, with a number of the status that tells it from others.
template <const char* name, typename Entity, typename... Status>
void note(void* listener_data, Entity* entity, const Status*... status) {
    const auto& author = *static_cast<Author*>(listener_data);
    if (author.inside) {
        author.inside(entity);
    }
    std::string event = std::string(author.name) + ":" + name;
    const auto add = [&event](long number) { event += "(" + std::to_string(number) + ")"; };
    if constexpr (requires { (status->last_policy_id, ...); }) {
        (add(status->last_policy_id), ...);
    } else if constexpr (requires { (status->last_reason, ...); }) {
        (add(status->last_reason), ...);
    } else if constexpr (requires { (status->not_alive_count, ...); }) {
        (add(10 * status->alive_count + status->not_alive_count), ...);
    } else if constexpr (requires { (status->current_count, ...); }) {
        (add(status->current_count), ...);
    }
    author.log->add(event);
}

constexpr char incompatible[] = "incompatible";
constexpr char matched[] = "matched";
constexpr char deadline[] = "deadline";
constexpr char liveliness[] = "liveliness";
constexpr char rejected[] = "rejected";
constexpr char lost[] = "lost";
constexpr char inconsistent[] = "inconsistent";
constexpr char data[] = "data";
constexpr char data_on_readers[] = "data_on_readers";

/// A listener with all slots filled, each noting "name:event". Those of other entities are parts.
DDS_DomainParticipantListener listener_of(Author& author) {
    return {{&author, note<inconsistent>},
            {{&author, note<deadline>, note<incompatible>, note<liveliness>, note<matched>}},
            {{&author, note<deadline>, note<incompatible>, note<rejected>, note<liveliness>,
              note<data>, note<matched>, note<lost>},
             note<data_on_readers>}};
}

class Listeners : public testing::Test {
protected:
    ListenerLog log_;
    Author author_{&log_, "own"};
    Author parents_author_{&log_, "parent"};
    Author participants_author_{&log_, "participant"};
    const DDS_DomainParticipantListener own_ = listener_of(author_);
    const DDS_DataWriterListener& of_writer_ = own_.as_publisherlistener.as_datawriterlistener;
    const DDS_DataReaderListener& of_reader_ = own_.as_subscriberlistener.as_datareaderlistener;
    const DDS_DomainParticipantListener parents_ = listener_of(parents_author_);
    const DDS_DomainParticipantListener participants_ = listener_of(participants_author_);
    const ProbeNode node_;
    DDS_DomainParticipant* participant_ = node_.participant();
    DDS_Publisher* publisher_ = node_.publisher();
    DDS_Subscriber* subscriber_ = node_.subscriber();
};

TEST_F(Listeners, DataIsAnnouncedWhenItComesAndWhenAListenerComesLater) {
    DDS_DataWriter* writer = node_.writer();
    DDS_DataReader* reader = node_.reader();
    std::string taken;
    author_.inside = [&](void* entity) {
        EXPECT_EQ(entity, reader);
        taken += summary(receive(reader)) + " ";
        // The write that is going on holds nothing that the writer's other operations need.
        const Probe probe(1, 0);
        EXPECT_TRUE(equal(DDS_DataWriter_lookup_instance_untypedI(writer, &probe), handle_of(1)));
    };
    ASSERT_EQ(write(writer, 1, 1), ok);
    ASSERT_EQ(DDS_DataReader_set_listener(reader, &of_reader_, DDS_DATA_AVAILABLE_STATUS), ok);
    EXPECT_EQ(log_.await(1), "own:data");
    ASSERT_EQ(write(writer, 1, 2), ok);
    EXPECT_EQ(log_.await(1), "own:data");
    EXPECT_EQ(taken, "1:1 1:2 ");
    ASSERT_EQ(DDS_Subscriber_set_listener(subscriber_, &parents_.as_subscriberlistener,
                                          DDS_DATA_ON_READERS_STATUS),
              ok);
    log_.take();
    ASSERT_EQ(write(writer, 1, 3), ok);
    EXPECT_EQ(log_.await(1), "parent:data_on_readers") << "instead of the reader's own";
}

TEST_F(Listeners, AListenerGivenAtCreationMissesNothingAndMayUseTheNewEntity) {
    DDS_DataReader* reader = node_.reader();
    author_.inside = [](void* entity) {
        EXPECT_EQ(write(static_cast<DDS_DataWriter*>(entity), 5, 50), ok);
    };
    OwnedQos<DDS_DataWriterQos> qos;
    qos.get().durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    ASSERT_NE(DDS_Publisher_create_datawriter(publisher_, node_.topic, &qos.get(), &of_writer_,
                                              DDS_PUBLICATION_MATCHED_STATUS),
              nullptr);
    EXPECT_EQ(log_.await(1), "own:matched(1)");
    EXPECT_EQ(summary(await_samples(reader, 1)), "5:50");
}

TEST_F(Listeners, AStatusGoesToTheNearestListenerThatTakesIt) {
    DDS_DataReaderListener own_without_slot = of_reader_;
    own_without_slot.on_subscription_matched = nullptr;
    const DDS_StatusMask bit = DDS_SUBSCRIPTION_MATCHED_STATUS;
    const struct {
        const DDS_DataReaderListener* own;
        DDS_StatusMask own_mask;
        DDS_StatusMask parents_mask;
        DDS_StatusMask participants_mask;
        const char* expected;
    } cases[] = {
        {&of_reader_, bit, bit, bit, "own:matched(1)"},
        {&of_reader_, 0, bit, bit, "parent:matched(1)"},
        {&of_reader_, DDS_SAMPLE_LOST_STATUS, 0, bit, "participant:matched(1)"},
        {&own_without_slot, bit, bit, bit, "parent:matched(1)"},
        {nullptr, bit, 0, bit, "participant:matched(1)"},
        {nullptr, 0, 0, 0, ""},
    };
    DDS_DataWriter* writer = node_.writer();
    for (const auto& one : cases) {
        ASSERT_EQ(DDS_Subscriber_set_listener(subscriber_, &parents_.as_subscriberlistener,
                                              one.parents_mask),
                  ok);
        ASSERT_EQ(
            DDS_DomainParticipant_set_listener(participant_, &participants_, one.participants_mask),
            ok);
        DDS_DataReader* reader = DDS_Subscriber_create_datareader(subscriber_, node_.description(),
                                                                  nullptr, one.own, one.own_mask);
        ASSERT_TRUE(await_reader(writer));
        EXPECT_EQ(log_.take(), one.expected);
        ASSERT_EQ(node_.remove(reader), ok);
        log_.take();
    }
}

TEST_F(Listeners, AListenerFurtherUpIsHeardByEntitiesThatExistAndSilencedAgain) {
    DDS_DataWriter* writer = node_.writer();
    DDS_DataReader* reader = node_.reader();
    ASSERT_TRUE(await_reader(writer));
    const auto lose_reader = [&] {
        ASSERT_EQ(node_.remove(reader), ok);
        reader = node_.reader();
    };
    const DDS_StatusMask bit = DDS_PUBLICATION_MATCHED_STATUS;
    ASSERT_EQ(DDS_DomainParticipant_set_listener(participant_, &participants_, bit), ok);
    lose_reader();
    EXPECT_EQ(log_.await(2), "participant:matched(0) participant:matched(1)");
    ASSERT_EQ(DDS_Publisher_set_listener(publisher_, &parents_.as_publisherlistener, bit), ok);
    lose_reader();
    EXPECT_EQ(log_.await(2), "parent:matched(0) parent:matched(1)");
    ASSERT_EQ(DDS_Publisher_set_listener(publisher_, nullptr, 0), ok);
    ASSERT_EQ(DDS_DomainParticipant_set_listener(participant_, nullptr, 0), ok);
    lose_reader();
    EXPECT_EQ(log_.take(), "");
    EXPECT_EQ(DDS_Entity_get_status_changes(DDS_DataWriter_as_entity(writer)) & bit, bit)
        << "a status that no listener takes stays changed";
}

TEST_F(Listeners, EachStatusReachesItsSlot) {
    static constexpr DDS_Duration_t soon = {0, 20'000'000};
    const auto best_effort = [](auto& qos) {
        qos.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
    };
    const auto with_deadline = [](auto& qos) { qos.deadline.period = soon; };
    const auto asserted = [](auto& qos) {
        qos.liveliness = {DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS, soon};
    };
    const auto with_limits = [&](const DDS_ResourceLimitsQosPolicy& limits) {
        return [=](DDS_DataReaderQos& qos) {
            best_effort(qos);
            qos.resource_limits = limits;
        };
    };
    const DDS_StatusMask rejection = DDS_SAMPLE_REJECTED_STATUS;
    const struct {
        const char* expected;
        /// One of the two.
        DDS_StatusMask of_writer;
        DDS_StatusMask of_reader;
        orvane::test::TweakWriterQos writer = nullptr;
        orvane::test::TweakReaderQos reader = nullptr;
    } cases[] = {
        {"own:incompatible(2)", DDS_OFFERED_INCOMPATIBLE_QOS_STATUS, 0,
         [](auto& qos) { qos.durability.kind = DDS_VOLATILE_DURABILITY_QOS; }},
        {"own:incompatible(11)", 0, DDS_REQUESTED_INCOMPATIBLE_QOS_STATUS, best_effort},
        {"own:deadline", DDS_OFFERED_DEADLINE_MISSED_STATUS, 0, with_deadline},
        {"own:deadline", 0, DDS_REQUESTED_DEADLINE_MISSED_STATUS, with_deadline, with_deadline},
        {"own:liveliness", DDS_LIVELINESS_LOST_STATUS, 0, asserted},
        {"own:liveliness(10)", 0, DDS_LIVELINESS_CHANGED_STATUS, asserted, asserted},
        {"own:liveliness(1)", 0, DDS_LIVELINESS_CHANGED_STATUS, asserted, asserted},
        {"own:rejected(1)", 0, rejection, best_effort, with_limits({-1, 1, -1})},
        {"own:rejected(2)", 0, rejection, best_effort, with_limits({1, -1, -1})},
        {"own:rejected(3)", 0, rejection, best_effort, with_limits({-1, -1, 1})},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.expected);
        DDS_DataWriter* writer = node_.writer(one.writer);
        DDS_DataReader* reader = node_.reader(one.reader);
        ASSERT_EQ(DDS_DataWriter_set_listener(writer, &of_writer_, one.of_writer), ok);
        ASSERT_EQ(DDS_DataReader_set_listener(reader, &of_reader_, one.of_reader), ok);
        for (const DDS_Long id : {1, 2, 1}) {
            write(writer, id, 1);
        }
        std::string event;
        while (event.find(one.expected) == std::string::npos) {
            event = log_.await(1);
            ASSERT_NE(event, "");
        }
        ASSERT_EQ(node_.remove(reader), ok);
        ASSERT_EQ(node_.remove(writer), ok);
        log_.take();
    }
}

/// @return whether a thread of this process sleeps in the kernel.
bool sleeps(unsigned thread) {
    std::ifstream stat("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string text;
    std::getline(stat, text);
    return text.find(") S") != std::string::npos;
}

TEST_F(Listeners, ACallbackCannotEndItsOwnEntityAndARemovalWaitsForIt) {
    DDS_DataWriter* writer = node_.writer();
    DDS_DataReader* reader = node_.reader();
    const unsigned remover = QELOsapiThread_getCurrentThreadID();
    std::atomic<bool> entered = false;
    std::atomic<bool> removing = false;
    std::atomic<bool> removed = false;
    std::atomic<bool> removed_during_callback = false;
    author_.inside = [&](void* entity) {
        auto* own = static_cast<DDS_DataReader*>(entity);
        EXPECT_EQ(DDS_DataReader_set_listener(own, nullptr, 0), DDS_RETCODE_ILLEGAL_OPERATION);
        EXPECT_EQ(node_.remove(own), DDS_RETCODE_ILLEGAL_OPERATION);
        EXPECT_EQ(DDS_Subscriber_set_listener(subscriber_, nullptr, 0),
                  DDS_RETCODE_ILLEGAL_OPERATION);
        EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant_),
                  DDS_RETCODE_ILLEGAL_OPERATION);
        DDS_InstanceHandleSeq handles{};
        EXPECT_EQ(DDS_DomainParticipant_get_discovered_participants(participant_, &handles),
                  DDS_RETCODE_ILLEGAL_OPERATION);
        entered = true;
        entered.notify_all();
        removing.wait(false);
        // The removal either waits for this callback or returns too early.
        while (!removed && !sleeps(remover)) {
            std::this_thread::yield();
        }
        removed_during_callback = removed.load();
    };
    ASSERT_EQ(DDS_DataReader_set_listener(reader, &of_reader_, DDS_DATA_AVAILABLE_STATUS), ok);
    std::thread writing([&] { EXPECT_EQ(write(writer, 1, 1), ok); });
    entered.wait(false);
    removing = true;
    removing.notify_all();
    EXPECT_EQ(DDS_DataReader_set_listener(reader, nullptr, 0), ok);
    removed = true;
    writing.join();
    EXPECT_FALSE(removed_during_callback);
    EXPECT_EQ(
        DDS_Entity_get_status_changes(DDS_DataReader_as_entity(reader)) & DDS_DATA_AVAILABLE_STATUS,
        0U)
        << "announced, and not again";
    EXPECT_EQ(log_.take(), "own:data");
    EXPECT_EQ(DDS_Subscriber_lookup_datareader(subscriber_, topic_of_this_test().c_str()), reader);
}

TEST_F(Listeners, MayBeSetWhileEntitiesAreUsedMadeAndDeleted) {
    constexpr int rounds = 100;
    const ProbeNode others[2];
    DDS_DataReader* reader = node_.reader();
    std::atomic<int> taken = 0;
    std::atomic<int> writing = 4;
    std::vector<std::jthread> threads;
    for (const ProbeNode* sender : {&node_, &node_, others, others + 1}) {
        DDS_DataWriter* writer = sender->writer();
        EXPECT_TRUE(await_reader(writer));
        threads.emplace_back([&writing, writer] {
            for (int i = 0; i < rounds; ++i) {
                EXPECT_EQ(write(writer, 1, i), ok);
            }
            --writing;
        });
    }
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            while (writing > 0) {
                taken += static_cast<int>(receive(reader).size());
            }
        });
    }
    threads.emplace_back([&] {
        for (int i = 0; i < rounds; ++i) {
            const DDS_StatusMask mask = i % 2 == 0 ? DDS_STATUS_MASK_ALL : 0;
            EXPECT_EQ(DDS_DomainParticipant_set_listener(participant_, &own_, mask), ok);
            DDS_DataReader* other = node_.reader();
            receive(other);
            EXPECT_EQ(node_.remove(other), ok);
        }
    });
    threads.clear();  // joins
    EXPECT_EQ(DDS_DomainParticipant_set_listener(participant_, nullptr, 0), ok);
    // Samples of other participants may still be under way.
    const auto missing = static_cast<std::size_t>(4 * rounds - taken);
    EXPECT_EQ(await_samples(reader, missing).size(), missing);
}

}  // namespace
