#include <semaphore>
#include <thread>

#include "orvane/statistics.h"
#include "pexa/string.h"
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

/// Makes participants that are created from now on ask for statistics, or not.
void ask_for_statistics(const char* value) {
    DDS_DomainParticipantQos qos;
    DDS_DomainParticipantQos_initialize(&qos);
    ASSERT_EQ(DDS_DomainParticipantFactory_get_default_participant_qos(Node::factory(), &qos),
              DDS_RETCODE_OK);
    const DDS_Long count = value != nullptr ? 1 : 0;
    ASSERT_NE(DDS_PropertySeq_ensure_length(&qos.property.value, count, count), 0);
    if (value != nullptr) {
        DDS_Property_t* property = DDS_PropertySeq_get_reference(&qos.property.value, 0);
        DDS_String_replace(&property->name, QEL_KX_STATISTICS_PROPERTY);
        DDS_String_replace(&property->value, value);
    }
    EXPECT_EQ(DDS_DomainParticipantFactory_set_default_participant_qos(Node::factory(), &qos),
              DDS_RETCODE_OK);
    DDS_DomainParticipantQos_finalize(&qos);
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
            while (statistics().queued > 0) {
                std::this_thread::yield();
            }
            {
                const Fault no_memory("DDS_String_alloc");
                QEL_KX_Orvane_error(logger.get(), std::string(300, 'm').c_str());
            }
            const Fault refusal("DDS_DataWriter_write_untypedI");
            QEL_KX_Orvane_error(logger.get(), "that the middleware refuses");
            while (statistics().queued > 0) {
                std::this_thread::yield();
            }
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
    Received<QEL_KX_ADMIN_Statistics> last;
    do {
        auto taken = take<QEL_KX_ADMIN_Statistics>(numbers, 1);
        ASSERT_FALSE(taken.empty());
        last = std::move(taken.back());
    } while (last.sample->isLast == 0);
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
    const DDS_Long words[] = {known->host, known->app, known->instance, known->entity};
    for (std::size_t i = 0; i < sizeof self.keyHash.value; ++i) {
        const auto word = static_cast<DDS_UnsignedLong>(words[i / 4]);
        EXPECT_EQ(self.keyHash.value[i], static_cast<DDS_Octet>(word >> (24U - i % 4 * 8)));
    }
    EXPECT_EQ(known->publishedLow, 0) << "it was there before the first message";
}

TEST_F(Statistics, EndWithACreationThatFailsBehindThem) {
    ask_for_statistics("true");
    const Options options = make_options();
    QEL_KX_Orvane_setOptions(options.get());
    for (const char* function : {"DDS_Subscriber_create_datareader", "QELOsapiThread_new"}) {
        const Fault fault(function);
        static_cast<void>(output_of([] { EXPECT_EQ(QEL_KX_Orvane_getInstance(), nullptr); }));
        EXPECT_TRUE(fault.has_struck()) << function;
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
