#include <array>
#include <semaphore>
#include <set>
#include <thread>
#include <vector>

#include "orvane/statistics.h"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {
namespace {

QEL_KX_Statistics statistics() {
    QEL_KX_Statistics now;
    QEL_KX_Orvane_getStatistics(&now);
    return now;
}

DDS_UnsignedLongLong number(const QEL_KX_ADMIN_Count& count) {
    return static_cast<DDS_UnsignedLongLong>(static_cast<DDS_UnsignedLong>(count.high)) << 32U |
           static_cast<DDS_UnsignedLong>(count.low);
}

/// As four words, most significant bytes first.
using Guid = std::array<DDS_UnsignedLong, 4>;

Guid guid_of(const DDS_InstanceHandle_t& endpoint) {
    Guid guid{};
    for (std::size_t i = 0; i < sizeof endpoint.keyHash.value; ++i) {
        guid.at(i / 4) = guid.at(i / 4) << 8U | endpoint.keyHash.value[i];
    }
    return guid;
}

Guid guid_of(const QEL_KX_ADMIN_Viewer& viewer) {
    const auto word = [](DDS_Long value) { return static_cast<DDS_UnsignedLong>(value); };
    return {word(viewer.host), word(viewer.app), word(viewer.instance), word(viewer.entity)};
}

void await_empty_queue() {
    while (statistics().queued > 0) {
        std::this_thread::yield();
    }
}

class Statistics : public testing::Test {
protected:
    ~Statistics() override { ask_for_statistics(nullptr); }

    static RunningLogger logger_with_queue_of(DDS_Long size) {
        Options options = make_options();
        QEL_KX_Options_setQueueSize(options.get(), size);
        return RunningLogger(std::move(options));
    }
};

TEST_F(Statistics, SayWhatBecameOfEachMessage) {
    std::binary_semaphore may_write{0};
    bool is_first = true;
    {
        const RunningLogger logger = logger_with_queue_of(4);
        const Before write("DDS_DataWriter_write_untypedI", [&] {
            const bool is_write_thread = QELOsapiThread_getCurrentThreadID() ==
                                         QEL_KX_Orvane_getLogMessageWriteThread()->threadId;
            if (is_write_thread && std::exchange(is_first, false)) {
                may_write.acquire();
            }
        });
        QEL_KX_Orvane_trace(logger.get(), "not for the queue");
        static_cast<void>(output_of([&] {
            for (int i = 0; i < 7; ++i) {
                QEL_KX_Orvane_error(logger.get(), "a message");
            }
        }));
        const QEL_KX_MessageQueueProperty one_place{1};
        QEL_KX_MessageQueue* another = QEL_KX_MessageQueue_new(&one_place);
        char text[] = "of somebody else";
        QEL_KX_MessageQueueRecord record{};
        record.sample.category = text;
        record.sample.message = text;
        EXPECT_EQ(QEL_KX_MessageQueue_push(another, &record), 1);
        QEL_KX_MessageQueue_delete(another);
        const QEL_KX_Statistics full = statistics();
        EXPECT_EQ(full.accepted, 4U);
        EXPECT_EQ(full.refusedForRoom, 3U);
        EXPECT_EQ(full.published, 0U);
        EXPECT_EQ(full.queued, 4);
        EXPECT_EQ(full.mostQueued, 4);
        EXPECT_EQ(full.queueSize, 4);

        static_cast<void>(output_of([&] {
            may_write.release();
            await_empty_queue();
            {
                const Fault no_memory("DDS_String_alloc");
                QEL_KX_Orvane_error(logger.get(), std::string(300, 'm').c_str());
            }
            const Fault refusal("DDS_DataWriter_write_untypedI");
            QEL_KX_Orvane_error(logger.get(), "that the middleware refuses");
            await_empty_queue();
        }));
    }
    const QEL_KX_Statistics end = statistics();
    EXPECT_EQ(end.accepted, 5U);
    EXPECT_EQ(end.published, 4U);
    EXPECT_EQ(end.discarded, 1U);
    EXPECT_EQ(end.refusedForMemory, 1U);
    EXPECT_EQ(end.queued, 0);
}

TEST_F(Statistics, ArePublishedForAParticipantThatAsks) {
    const Node viewer;
    DDS_DataReader* messages = viewer.reader<QEL_KX_LogMessage>();
    DDS_DataReader* numbers = viewer.reader<QEL_KX_ADMIN_Statistics>();
    ask_for_statistics("true");
    {
        const RunningLogger logger = logger_with_queue_of(8192);
        ASSERT_TRUE(await_writer(messages));
        for (int i = 0; i < 300; ++i) {
            QEL_KX_Orvane_error(logger.get(), "a message");
        }
    }
    const QEL_KX_Statistics now = statistics();
    const auto last = last_statistics(numbers);
    ASSERT_NE(last.sample, nullptr);
    EXPECT_EQ(number(last.sample->accepted), 300U);
    EXPECT_EQ(number(last.sample->published), now.published);
    EXPECT_EQ(number(last.sample->discarded), now.discarded);
    EXPECT_EQ(now.published + now.discarded, 300U);
    EXPECT_EQ(last.sample->queueSize, 8192);
    EXPECT_EQ(last.sample->mostQueued, now.mostQueued);

    ASSERT_EQ(QEL_KX_ADMIN_ViewerSeq_get_length(&last.sample->viewers), 1);
    const QEL_KX_ADMIN_Viewer* known =
        QEL_KX_ADMIN_ViewerSeq_get_reference(&last.sample->viewers, 0);
    const DDS_InstanceHandle_t self =
        DDS_Entity_get_instance_handle(DDS_DataReader_as_entity(messages));
    EXPECT_EQ(guid_of(*known), guid_of(self));
    EXPECT_EQ(known->publishedLow, 0) << "it was there before the first message";
}

TEST_F(Statistics, NameTheViewersThatCameLast) {
    const Node viewers;
    DDS_DataReader* numbers = viewers.reader<QEL_KX_ADMIN_Statistics>();
    ask_for_statistics("true");
    std::vector<Guid> readers;
    {
        const RunningLogger logger;
        for (DDS_UnsignedLongLong i = 0; i < ORVANE_VIEWER_BOUND + 2; ++i) {
            DDS_DataReader* reader = viewers.reader<QEL_KX_LogMessage>();
            ASSERT_TRUE(await_writer(reader));
            const DDS_InstanceHandle_t self =
                DDS_Entity_get_instance_handle(DDS_DataReader_as_entity(reader));
            readers.push_back(guid_of(self));
            QEL_KX_Orvane_error(logger.get(), "a message");
            await_empty_queue();
            // The same viewer comes back with another reader.
            EXPECT_EQ(DDS_Subscriber_delete_datareader(viewers.subscriber(), reader),
                      DDS_RETCODE_OK);
        }
    }
    const auto last = last_statistics(numbers);
    ASSERT_NE(last.sample, nullptr);
    ASSERT_EQ(QEL_KX_ADMIN_ViewerSeq_get_length(&last.sample->viewers), ORVANE_VIEWER_BOUND);
    std::set<DDS_Long> named;
    for (DDS_Long i = 0; i < ORVANE_VIEWER_BOUND; ++i) {
        const QEL_KX_ADMIN_Viewer& known =
            *QEL_KX_ADMIN_ViewerSeq_get_reference(&last.sample->viewers, i);
        named.insert(known.publishedLow);
        EXPECT_EQ(guid_of(known), readers.at(static_cast<std::size_t>(known.publishedLow)));
    }
    EXPECT_EQ(named.size(), ORVANE_VIEWER_BOUND);
    EXPECT_EQ(*named.begin(), 2) << "the first two are forgotten";
}

TEST_F(Statistics, OfTwoLoggersInOneParticipantAreTheirOwn) {
    const Node viewer;
    DDS_DataReader* messages = nullptr;
    DDS_DataReader* numbers = viewer.reader<QEL_KX_ADMIN_Statistics>();
    ask_for_statistics("true");
    const Node application;
    std::set<DDS_Long> writers;
    for (const int count : {3, 5}) {
        // The viewer comes at the end of the first logger, and is there before the second one.
        const int at_match = messages == nullptr ? count : 0;
        {
            Options options = make_options();
            QEL_KX_Options_setDomainParticipant(options.get(), application.participant());
            const RunningLogger logger(std::move(options));
            for (int i = 0; i < count; ++i) {
                QEL_KX_Orvane_error(logger.get(), "a message");
            }
            await_empty_queue();
            if (messages == nullptr) {
                messages = viewer.reader<QEL_KX_LogMessage>();
            }
            ASSERT_TRUE(await_writer(messages));
        }
        const auto last = last_statistics(numbers);
        ASSERT_NE(last.sample, nullptr);
        EXPECT_EQ(last.sample->accepted.low, count);
        EXPECT_EQ(last.sample->published.low, count);
        ASSERT_EQ(QEL_KX_ADMIN_ViewerSeq_get_length(&last.sample->viewers), 1);
        EXPECT_EQ(QEL_KX_ADMIN_ViewerSeq_get_reference(&last.sample->viewers, 0)->publishedLow,
                  at_match);
        writers.insert(last.sample->logWriter);
    }
    EXPECT_EQ(writers.size(), 2U);
}

TEST_F(Statistics, EndWithACreationThatFailsBehindThem) {
    ask_for_statistics("true");
    const Options options = make_options();
    QEL_KX_Orvane_setOptions(options.get());
    const struct {
        const char* function;
        int samples;  ///< of statistics: of the beginning, and of the end if there is a writer
    } faults[] = {{"DDS_Subscriber_create_datareader", 1}, {"QELOsapiThread_new", 2}};
    for (const auto& [function, samples] : faults) {
        const Fault fault(function);
        const Calls writes("DDS_DataWriter_write_untypedI");
        static_cast<void>(output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }));
        EXPECT_TRUE(fault.has_struck()) << function;
        EXPECT_EQ(writes.count(), samples) << function;
    }
    QEL_KX_Orvane_setOptions(nullptr);
}

TEST_F(Statistics, AreOnlyReportedMissing) {
    ask_for_statistics("true");
    const Fault fault("DDS_Publisher_create_datawriter", 3);
    std::string output;
    output = output_of([] { EXPECT_NE(RunningLogger().get(), nullptr); });
    EXPECT_EQ(output, line("QEL_KX_DDSEntities_create", "Unable to create Statistics DataWriter",
                           "Warning"));
}

TEST_F(Statistics, AreNoBusinessOfOtherParticipants) {
    for (const char* value : {static_cast<const char*>(nullptr), "false", "TRUE"}) {
        ask_for_statistics(value);
        const RunningLogger logger;
        EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(logger->ddsEntities->participant,
                                                                QEL_KX_STATISTICS_TOPIC_NAME),
                  nullptr);
    }
}

}  // namespace
}  // namespace orvane::test
