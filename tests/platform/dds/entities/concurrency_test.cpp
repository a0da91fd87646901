#include <atomic>
#include <functional>
#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/dds/entities/listener_log.hpp"
#include "tests/platform/dds/entities/probe_node.hpp"

namespace {

TEST(Concurrency, EntitiesAreUsedChangedMadeAndDeletedAtTheSameTime) {
    constexpr int rounds = 100;
    const auto repeat = [](const std::function<void(int)>& step) {
        for (int i = 0; i < rounds; ++i) {
            step(i);
        }
    };
    const ProbeNode node;
    const ProbeNode others[2];
    ListenerLog log;
    ListenerLog::Author author{&log, "participant"};
    const DDS_DomainParticipantListener listener = listener_of(author);
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
        writers.emplace_back(
            [&repeat, writer, id] { repeat([&](int i) { EXPECT_EQ(write(writer, id, i), ok); }); });
    }
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            while (writing) {
                taken += static_cast<int>(receive(reader).size());
            }
        });
    }
    threads.emplace_back([&] {
        repeat([&](int i) {
            EXPECT_EQ(DDS_DomainParticipant_set_listener(node.participant(), &listener,
                                                         i % 2 == 0 ? DDS_STATUS_MASK_ALL : 0),
                      ok);
        });
        EXPECT_EQ(DDS_DomainParticipant_set_listener(node.participant(), nullptr, 0), ok);
    });
    threads.emplace_back([&] {
        repeat([&](int) {
            DDS_DataReader* other = node.reader();
            receive(other);
            EXPECT_EQ(node.remove(other), ok);
        });
    });
    for (std::thread& thread : writers) {
        thread.join();
    }
    writing = false;
    for (std::thread& thread : threads) {
        thread.join();
    }
    // Samples of other participants may still be under way.
    const auto missing = static_cast<std::size_t>(4 * rounds - taken);
    EXPECT_EQ(await_samples(reader, missing).size(), missing);
}

}  // namespace
