#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <future>
#include <mutex>

#include "tests/engine/node.hpp"
#include "tests/engine/peer.hpp"

namespace pexa::engine {
namespace {

// Counts callbacks and lets a test wait for them.
class CountingListener : public Listener {
public:
    void on_data_available(EntityId reader) override {
        if (during_callback) {
            during_callback(reader);
        }
        count(data_available_);
    }
    void on_data_on_readers(EntityId) override { count(data_on_readers_); }
    void on_publication_matched(EntityId, const PublicationMatched& status) override {
        count(matched_, status.total_count_change);
    }
    void on_subscription_matched(EntityId, const SubscriptionMatched& status) override {
        count(matched_, status.total_count_change);
    }

    [[nodiscard]] bool await_data(int calls) { return await_count(data_available_, calls); }
    [[nodiscard]] bool await_data_on_readers(int calls) {
        return await_count(data_on_readers_, calls);
    }
    [[nodiscard]] bool await_matches(int matches) { return await_count(matched_, matches); }
    [[nodiscard]] int data_calls() {
        const std::lock_guard lock(mutex_);
        return data_available_;
    }

    std::function<void(EntityId)> during_callback;

private:
    void count(int& counter, int increment = 1) {
        const std::lock_guard lock(mutex_);
        counter += increment;
        changed_.notify_all();
    }
    bool await_count(const int& counter, int expected) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::nanoseconds(patience),
                                 [&] { return counter >= expected; });
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    int data_available_ = 0;
    int data_on_readers_ = 0;
    int matched_ = 0;
};

TEST(Listener, HearsOfDataThatArrivedBeforeItWasInstalled) {
    const Node node;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    ASSERT_EQ(write_note(writer, 1, "early"), Status::ok);

    CountingListener listener;
    ASSERT_EQ(set_listener(reader, &listener, data_available_status | subscription_matched_status),
              Status::ok);

    EXPECT_EQ(listener.data_calls(), 1);
    EXPECT_TRUE(listener.await_matches(1));
    EXPECT_EQ(summary(take_some(reader, 1)), "1:early");
    ASSERT_EQ(write_note(writer, 1, "late"), Status::ok);
    EXPECT_TRUE(listener.await_data(2));
    EXPECT_EQ(set_listener(reader, nullptr, 0), Status::ok);
}

TEST(Listener, HearsOfEverythingWhenItIsGivenAtCreation) {
    const Node node;
    CountingListener of_reader;
    CountingListener of_writer;
    const EntityId writer = create_writer(node.publisher, node.topic, keep_everything(),
                                          {&of_writer, publication_matched_status})
                                .entity;
    ASSERT_EQ(write_note(writer, 1, "kept"), Status::ok);
    const EntityId reader =
        create_reader(node.subscriber, node.topic, keep_everything(),
                      {&of_reader, data_available_status | subscription_matched_status})
            .entity;
    EXPECT_TRUE(of_reader.await_matches(1));
    EXPECT_TRUE(of_writer.await_matches(1));
    EXPECT_TRUE(of_reader.await_data(1));
    EXPECT_EQ(delete_entity(reader), Status::ok);
    EXPECT_EQ(delete_entity(writer), Status::ok);
}

TEST(Listener, HearsOnlyOfTheStatusesInItsMask) {
    const Node node;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    CountingListener listener;
    ASSERT_EQ(set_listener(reader, &listener, subscription_matched_status), Status::ok);
    ASSERT_EQ(write_note(writer, 1, "unheard"), Status::ok);

    ASSERT_EQ(take_some(reader, 1).size(), 1U);

    EXPECT_EQ(listener.data_calls(), 0);
    EXPECT_EQ(set_listener(reader, nullptr, 0), Status::ok);
}

TEST(Listener, OfAParentHearsWhatItsChildrenDoNotTake) {
    const Node node;
    CountingListener of_participant;
    CountingListener of_subscriber;
    ASSERT_EQ(set_listener(node.participant, &of_participant, any_status & ~data_on_readers_status),
              Status::ok);
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    EXPECT_TRUE(of_participant.await_matches(2));
    ASSERT_EQ(write_note(writer, 1, "to the participant"), Status::ok);
    EXPECT_TRUE(of_participant.await_data(1));

    ASSERT_EQ(set_listener(node.subscriber, &of_subscriber, data_on_readers_status), Status::ok);
    ASSERT_EQ(write_note(writer, 1, "to the subscriber"), Status::ok);
    EXPECT_TRUE(of_subscriber.await_data_on_readers(1));
    EXPECT_EQ(summary(take_some(reader, 2)), "1:to the participant 1:to the subscriber");
    EXPECT_EQ(set_listener(node.subscriber, nullptr, 0), Status::ok);
    EXPECT_EQ(set_listener(node.participant, nullptr, 0), Status::ok);
}

TEST(Listener, IsRemovedOnlyWhenItsCallbackHasEnded) {
    enum class Removal { replace, delete_reader };
    for (const Removal removal : {Removal::replace, Removal::delete_reader}) {
        SCOPED_TRACE(static_cast<int>(removal));
        const Node node;
        const EntityId reader = node.reader();
        Peer peer;
        peer.ask("writer " + topic_of_this_test() + " 0");
        CountingListener listener;
        std::promise<void> entered;
        std::promise<void> leave;
        listener.during_callback = [&](EntityId) {
            entered.set_value();
            leave.get_future().wait();
        };
        ASSERT_EQ(set_listener(reader, &listener, data_available_status), Status::ok);
        ASSERT_EQ(peer.ask("write 1 1"), "0");
        entered.get_future().wait();

        auto removed = std::async(std::launch::async, [&] {
            return removal == Removal::replace ? set_listener(reader, nullptr, 0)
                                               : delete_entity(reader);
        });
        EXPECT_EQ(removed.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        leave.set_value();
        EXPECT_EQ(removed.get(), Status::ok);
        EXPECT_EQ(listener.data_calls(), 1);
    }
}

TEST(Listener, IsRefusedInItsCallbackWhatWouldWaitForItsEnd) {
    const Node node;
    const Node other;
    const EntityId reader = node.reader();
    const EntityId writer = node.writer();
    const EntityId other_reader = other.reader();
    const EntityId wait_set = create_wait_set().entity;
    CountingListener listener;
    std::vector<Sample> samples;
    listener.during_callback = [&](EntityId about) {
        EXPECT_EQ(read_or_take(about, Access::take, {}, unlimited, samples), Status::ok);
        for (const EntityId entity : {reader, node.subscriber, node.participant}) {
            EXPECT_EQ(set_listener(entity, nullptr, 0), Status::illegal_operation);
            EXPECT_EQ(delete_entity(entity), Status::illegal_operation);
        }
        for (const EntityId entity : {other_reader, other.subscriber, other.participant}) {
            EXPECT_EQ(delete_entity(entity), Status::illegal_operation);
        }
        EXPECT_EQ(set_listener(other_reader, nullptr, 0), Status::ok);
        EXPECT_EQ(delete_entity(other.publisher), Status::ok);
        EXPECT_EQ(delete_entity(wait_set), Status::ok);
    };
    ASSERT_EQ(set_listener(reader, &listener, data_available_status), Status::ok);
    ASSERT_EQ(write_note(writer, 1, "taken"), Status::ok);
    ASSERT_TRUE(listener.await_data(1));

    EXPECT_EQ(summary(samples), "1:taken");
    EXPECT_EQ(set_listener(reader, nullptr, 0), Status::ok);
}

}  // namespace
}  // namespace pexa::engine
