#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/listener_log.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

constexpr int rounds = 100;

void repeat(const std::function<void(int)>& step) {
    for (int i = 0; i < rounds; ++i) {
        step(i);
    }
}

TEST(Concurrency, EntitiesAreUsedChangedMadeAndDeletedAtTheSameTime) {
    const ProbeNode node;
    const ProbeNode others[] = {ProbeNode(topic_of_this_test()), ProbeNode(topic_of_this_test())};
    ListenerLog log;
    ListenerLog::Author author{&log, "participant"};
    DDS_DataReader* reader = node.reader();
    std::atomic<int> taken = 0;
    std::atomic<bool> writing = true;
    std::vector<std::thread> threads;
    std::vector<std::thread> writers;
    DDS_Long id = 0;
    for (const ProbeNode* sender : {&node, &node, &others[0], &others[1]}) {
        DDS_DataWriter* writer = sender->writer();
        EXPECT_TRUE(await_reader(writer));
        ++id;
        writers.emplace_back([writer, id] {
            repeat([&](int i) { EXPECT_EQ(write(writer, {id, i}), DDS_RETCODE_OK); });
        });
    }
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            while (writing) {
                taken += static_cast<int>(receive(reader).size());
            }
        });
    }
    threads.emplace_back([&] {
        const DDS_DomainParticipantListener listener = participant_listener(author);
        repeat([&](int i) {
            EXPECT_EQ(DDS_DomainParticipant_set_listener(node.participant, &listener,
                                                         i % 2 == 0 ? DDS_STATUS_MASK_ALL : 0),
                      DDS_RETCODE_OK);
        });
        EXPECT_EQ(DDS_DomainParticipant_set_listener(node.participant, nullptr, 0), DDS_RETCODE_OK);
    });
    threads.emplace_back([&] {
        repeat([&](int) {
            DDS_DataReader* other = node.reader();
            receive(other);
            EXPECT_EQ(DDS_Subscriber_delete_datareader(node.subscriber, other), DDS_RETCODE_OK);
        });
    });
    for (std::thread& thread : writers) {
        thread.join();
    }
    writing = false;
    for (std::thread& thread : threads) {
        thread.join();
    }
    // What another participant sends may still be under way.
    const int missing = 4 * rounds - taken;
    EXPECT_EQ(await_samples(reader, static_cast<std::size_t>(missing)).size(),
              static_cast<std::size_t>(missing));
}

}  // namespace
