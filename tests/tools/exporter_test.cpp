#include "tools/export/exporter.hpp"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <set>

#include "tests/tools/sample_events.hpp"

namespace orvane::tools {
namespace {

using namespace std::chrono_literals;

/// A receiver that answers as it is told to.
class FakeReceiver {
public:
    /// What becomes of a batch of so many records.
    using Answer = std::function<Delivery(std::size_t records)>;

    static Delivery take(std::size_t records) { return {.done = records}; }
    static Delivery fail(std::size_t /*records*/) { return {.problem = "down"}; }
    static Delivery refuse(std::size_t records) {
        return {.done = records, .refused = records, .problem = "bad"};
    }

    std::unique_ptr<ExportSink> sink() { return std::make_unique<Sink>(*this); }

    void set_answer(Answer answer) {
        const std::lock_guard lock(mutex_);
        answer_ = std::move(answer);
    }
    /// Sends wait until they are let go or interrupted.
    void hold(bool is_held) {
        const std::lock_guard lock(mutex_);
        is_held_ = is_held;
        changed_.notify_all();
    }
    void wait_for_sends(std::size_t count) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return sends_.size() >= count; });
    }
    /// Sizes of the batches that came, also of those that were not taken.
    std::vector<std::size_t> sends() {
        const std::lock_guard lock(mutex_);
        return sends_;
    }
    /// Messages that were taken, with "gap N" for gaps.
    std::vector<std::string> taken() {
        const std::lock_guard lock(mutex_);
        return taken_;
    }

private:
    class Sink final : public ExportSink {
    public:
        explicit Sink(FakeReceiver& receiver) : receiver_(receiver) {}
        std::string name() const override { return "there"; }
        Delivery send(std::span<const ExportRecord> records) override {
            return receiver_.receive(records);
        }
        void interrupt() override {
            const std::lock_guard lock(receiver_.mutex_);
            receiver_.is_interrupted_ = true;
            receiver_.changed_.notify_all();
        }

    private:
        FakeReceiver& receiver_;
    };

    Delivery receive(std::span<const ExportRecord> records) {
        std::unique_lock lock(mutex_);
        sends_.push_back(records.size());
        changed_.notify_all();
        changed_.wait(lock, [this] { return !is_held_ || is_interrupted_; });
        if (is_interrupted_) {
            return {.problem = "interrupted"};
        }
        const Delivery delivery = answer_(records.size());
        // Those that are refused are the last ones.
        for (std::size_t i = 0; i < delivery.done - delivery.refused; ++i) {
            const auto* gap = std::get_if<RecordingGap>(&records[i].event);
            taken_.push_back(gap != nullptr
                                 ? "gap " + std::to_string(gap->events)
                                 : std::get<MessageEvent>(records[i].event).record.message);
        }
        return delivery;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    Answer answer_ = take;
    bool is_held_ = false;
    bool is_interrupted_ = false;
    std::vector<std::size_t> sends_;
    std::vector<std::string> taken_;
};

std::vector<RecordedEvent> records(int first, int count) {
    std::vector<RecordedEvent> list;
    for (int i = first; i < first + count; ++i) {
        list.push_back(message_event(noon, std::to_string(i)));
    }
    return list;
}

std::vector<std::string> numbers(int first, int count) {
    std::vector<std::string> list;
    for (int i = first; i < first + count; ++i) {
        list.push_back(std::to_string(i));
    }
    return list;
}

class ExporterTest : public testing::Test {
protected:
    void start(const ExportLimits& limits) {
        exporter_ =
            std::make_unique<Exporter>(receiver_.sink(), limits, [this](const std::string& text) {
                const std::lock_guard lock(mutex_);
                reports_.push_back(text);
            });
    }
    /// @return "sent/given up"
    std::string stop() {
        const ExportCounts counts = exporter_->stop();
        EXPECT_EQ(counts.added, counts.sent + counts.given_up);
        return std::to_string(counts.sent) + '/' + std::to_string(counts.given_up);
    }
    bool has_report(const std::string& part) {
        const std::lock_guard lock(mutex_);
        return std::any_of(reports_.begin(), reports_.end(), [&](const std::string& each) {
            return each.find(part) != std::string::npos;
        });
    }

    static constexpr ExportLimits quick{.batch_records = 4,
                                        .batch_age = 1ms,
                                        .first_pause = 1ms,
                                        .longest_pause = 2ms,
                                        .longest_end = 10s};

    FakeReceiver receiver_;
    std::unique_ptr<Exporter> exporter_;
    std::mutex mutex_;
    std::vector<std::string> reports_;
};

TEST_F(ExporterTest, SendsABatchWhenItIsFullOldOrTheLast) {
    start({.batch_records = 3, .batch_age = 1h});
    exporter_->add(records(0, 7), noon);
    receiver_.wait_for_sends(2);
    EXPECT_EQ(stop(), "7/0");
    EXPECT_EQ(receiver_.sends(), (std::vector<std::size_t>{3, 3, 1}));
    EXPECT_EQ(receiver_.taken(), numbers(0, 7));
    start({.batch_bytes = 1, .batch_age = 1h});
    exporter_->add(records(7, 1), noon);
    receiver_.wait_for_sends(4);
    start({.batch_age = 1ms});
    exporter_->add(records(8, 1), noon);
    receiver_.wait_for_sends(5);
}

TEST_F(ExporterTest, TriesABatchAgainUntilItIsTaken) {
    std::size_t left = 5;
    receiver_.set_answer([&](std::size_t count) {
        // At first one record of the batch is taken, as by a socket that is full then.
        Delivery delivery =
            left == 5 ? Delivery{.done = 1, .problem = "full"} : FakeReceiver::fail(count);
        return left-- > 0 ? delivery : FakeReceiver::take(count);
    });
    start(quick);
    exporter_->add(records(0, 4), noon);
    receiver_.wait_for_sends(6);
    EXPECT_EQ(stop(), "4/0");
    EXPECT_EQ(receiver_.sends(), (std::vector<std::size_t>{4, 3, 3, 3, 3, 3}));
    EXPECT_EQ(receiver_.taken(), numbers(0, 4));
    EXPECT_TRUE(has_report("there: down; tried again"));
    EXPECT_TRUE(has_report("there: takes records again"));
}

TEST_F(ExporterTest, HasTheMemoryThatItMayHaveAndTellsWhatItCouldNotKeep) {
    const std::uint64_t size = memory_of(records(0, 1).front());
    ExportLimits limits = quick;
    limits.buffer = 10 * size;
    receiver_.hold(true);
    start(limits);
    exporter_->add(records(0, 4), noon);
    receiver_.wait_for_sends(1);
    // The thread that adds them goes on at once.
    exporter_->add(records(4, 1000), noon);
    EXPECT_EQ(exporter_->counts().given_up, 994U);
    receiver_.hold(false);
    receiver_.wait_for_sends(3);
    exporter_->add(records(2000, 4), noon);
    EXPECT_EQ(stop(), "14/994");
    std::vector<std::string> expected = numbers(0, 4);
    expected.emplace_back("gap 994");
    for (const std::string& each : numbers(4, 6)) {
        expected.push_back(each);
    }
    for (const std::string& each : numbers(2000, 4)) {
        expected.push_back(each);
    }
    EXPECT_EQ(receiver_.taken(), expected);
    EXPECT_TRUE(has_report("there: takes fewer records than come; 994 records given up"));
}

TEST_F(ExporterTest, TellsWhatWasRefusedWhenRecordsAreTakenAgain) {
    std::size_t sends = 0;
    receiver_.set_answer([&](std::size_t count) -> Delivery {
        switch (sends++) {
            case 0:  // four records
            case 1:  // a gap of four, and three records
                return FakeReceiver::refuse(count);
            case 2:  // a gap of seven, and one record, which is rejected
                return {.done = count, .refused = 1, .problem = "old"};
            default:  // a gap of one
                return FakeReceiver::take(count);
        }
    });
    start(quick);
    exporter_->add(records(0, 8), noon);
    receiver_.wait_for_sends(4);
    EXPECT_EQ(stop(), "0/8");
    EXPECT_EQ(receiver_.sends(), (std::vector<std::size_t>{4, 4, 2, 1}));
    EXPECT_EQ(receiver_.taken(), (std::vector<std::string>{"gap 7", "gap 1"}));
    EXPECT_TRUE(has_report("there: bad; 4 records given up"));
}

TEST_F(ExporterTest, DoesNotSendAGapAgainAndAgainToWhoRefusesIt) {
    receiver_.set_answer(FakeReceiver::refuse);
    start(quick);
    exporter_->add(records(0, 4), noon);
    receiver_.wait_for_sends(1);
    EXPECT_EQ(stop(), "0/4");
    EXPECT_EQ(receiver_.sends().size(), 1U);
}

TEST_F(ExporterTest, EndsInTimeWhateverTheReceiverDoes) {
    const struct {
        const char* name;
        FakeReceiver::Answer answer;
        bool is_held;
        bool ends_early;
    } cases[] = {
        {"fails", FakeReceiver::fail, false, false},
        {"hangs", FakeReceiver::take, true, false},
        {"asks for a long pause",
         [](std::size_t) { return Delivery{.pause = 2h, .problem = "429"}; }, false, true},
    };
    for (const auto& each : cases) {
        FakeReceiver receiver;
        receiver.set_answer(each.answer);
        receiver.hold(each.is_held);
        ExportLimits limits = quick;
        limits.longest_end = each.ends_early ? std::chrono::milliseconds{1h} : 50ms;
        Exporter exporter(receiver.sink(), limits, [](const std::string&) {});
        exporter.add(records(0, 10), noon);
        receiver.wait_for_sends(1);
        const ExportCounts counts = exporter.stop();
        EXPECT_EQ(counts.given_up, 10U) << each.name;
    }
}

TEST_F(ExporterTest, KeepsToThePauseThatItIsAskedFor) {
    const auto start_time = std::chrono::steady_clock::now();
    std::size_t sends = 0;
    receiver_.set_answer([&](std::size_t count) {
        return sends++ == 0 ? Delivery{.pause = 100ms, .problem = "429"}
                            : FakeReceiver::take(count);
    });
    start(quick);
    exporter_->add(records(0, 4), noon);
    receiver_.wait_for_sends(1);
    EXPECT_EQ(stop(), "4/0");
    EXPECT_GE(std::chrono::steady_clock::now() - start_time, 100ms);
}

}  // namespace
}  // namespace orvane::tools
