/// @file admin_fixture.hpp
/// @brief A logger without its lifecycle, and a tool in a participant of its own that watches it.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "admin/state.hpp"
#include "orvane/admin.h"
#include "orvane/core.h"
#include "tests/admin/faults.hpp"

namespace admin_test {

inline constexpr DDS_DomainId_t domain = ORVANE_TEST_DOMAIN;

/// @return what @p action writes to standard output.
template <typename Action>
std::string printed(Action action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

/// A line of the library's own.
inline std::string line(const char* level, const char* context, const char* text) {
    return std::string(level) + ": " + context + ": " + text + "\n";
}

/// What the administration needs of a logger: options, State, entities. No write thread.
class BareLogger {
public:
    BareLogger() {
        QEL_KX_Options_setDomainId(options.get(), domain);
        logger.options = options.get();
        logger.state = state.get();
        logger.filterLevel = options->filter_level;
    }
    BareLogger(const BareLogger&) = delete;
    BareLogger& operator=(const BareLogger&) = delete;
    ~BareLogger() { QEL_KX_DDSEntities_destroy(logger.ddsEntities); }

    [[nodiscard]] bool build() {
        logger.ddsEntities = QEL_KX_DDSEntities_create(&logger);
        return logger.ddsEntities != nullptr;
    }

    /// Serves commands from now on.
    void become_operational() {
        orvane::admin::set_state_kind(logger, QEL_KX_STATE_OPERATIONAL);
        DDS_DataReaderListener listener{};
        listener.listener_data = &logger;
        listener.on_data_available = QEL_KX_Orvane_CommandRequestListener_on_data_available;
        ASSERT_EQ(DDS_RETCODE_OK,
                  DDS_DataReader_set_listener(entities()->commandRequestReader, &listener,
                                              DDS_DATA_AVAILABLE_STATUS));
    }

    [[nodiscard]] QEL_KX_DDSEntities* entities() const { return logger.ddsEntities; }

    struct Delete {
        void operator()(QEL_KX_Options* record) const { QEL_KX_Options_delete(record); }
        void operator()(QEL_KX_ADMIN_State* sample) const {
            QEL_KX_ADMIN_StateTypeSupport_delete_data_ex(sample, 1);
        }
    };
    std::unique_ptr<QEL_KX_Options, Delete> options{QEL_KX_Options_createDefault()};
    std::unique_ptr<QEL_KX_ADMIN_State, Delete> state{QEL_KX_ADMIN_StateTypeSupport_create_data()};
    QEL_KX_Orvane logger{};
};

/// The operations of a topic type, and its place in the contract between applications.
template <typename Sample>
struct Type;
#define ADMIN_TEST_TYPE(T, Topic, RegisteredName)                           \
    template <>                                                             \
    struct Type<T> {                                                        \
        using Seq = T##Seq;                                                 \
        static constexpr const char* topic = Topic;                         \
        static constexpr const char* name = RegisteredName;                 \
        static constexpr auto register_type = T##TypeSupport_register_type; \
        static constexpr auto create_data = T##TypeSupport_create_data;     \
        static constexpr auto delete_data = T##TypeSupport_delete_data;     \
        static constexpr auto copy_data = T##TypeSupport_copy_data;         \
        static constexpr auto length = T##Seq_get_length;                   \
        static constexpr auto at = T##Seq_get_reference;                    \
        static constexpr auto take = T##DataReader_take;                    \
        static constexpr auto return_loan = T##DataReader_return_loan;      \
        static constexpr auto write = T##DataWriter_write;                  \
    }
ADMIN_TEST_TYPE(QEL_KX_LogMessage, "qel/orvane", "com::qel::kx::LogMessage");
ADMIN_TEST_TYPE(QEL_KX_ADMIN_State, "qel/orvane/administration/state",
                "com::qel::kx::admin::State");
ADMIN_TEST_TYPE(QEL_KX_ADMIN_CommandRequest, "qel/orvane/administration/command_request",
                "com::qel::kx::admin::CommandRequest");
ADMIN_TEST_TYPE(QEL_KX_ADMIN_CommandResponse, "qel/orvane/administration/command_response",
                "com::qel::kx::admin::CommandResponse");
#undef ADMIN_TEST_TYPE

template <typename Sample>
struct DeleteSample {
    void operator()(Sample* sample) const { Type<Sample>::delete_data(sample); }
};
template <typename Sample>
using Owned = std::unique_ptr<Sample, DeleteSample<Sample>>;
template <typename Sample>
Owned<Sample> make() {
    return Owned<Sample>(Type<Sample>::create_data());
}

/// Another application on the same domain.
class Tool {
public:
    Tool()
        : participant_(DDS_DomainParticipantFactory_create_participant(
              factory(), domain, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE)) {
        EXPECT_NE(nullptr, participant_);
    }
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;
    ~Tool() {
        EXPECT_EQ(DDS_RETCODE_OK, DDS_DomainParticipant_delete_contained_entities(participant_));
        EXPECT_EQ(DDS_RETCODE_OK,
                  DDS_DomainParticipantFactory_delete_participant(factory(), participant_));
    }

    static DDS_DomainParticipantFactory* factory() {
        return DDS_DomainParticipantFactory_get_instance();
    }
    [[nodiscard]] DDS_DomainParticipant* participant() const { return participant_; }

    template <typename Sample>
    DDS_Topic* topic() {
        if (DDS_TopicDescription* known =
                DDS_DomainParticipant_lookup_topicdescription(participant_, Type<Sample>::topic)) {
            return DDS_Topic_narrow(known);
        }
        EXPECT_EQ(DDS_RETCODE_OK, Type<Sample>::register_type(participant_, Type<Sample>::name));
        return DDS_DomainParticipant_create_topic(participant_, Type<Sample>::topic,
                                                  Type<Sample>::name, DDS_QOS_DEFAULT, nullptr,
                                                  DDS_STATUS_MASK_NONE);
    }

    /// A reader that misses nothing and gets what was published before, if the writer keeps it.
    template <typename Sample>
    DDS_DataReader* reader(
        DDS_DurabilityQosPolicyKind durability = DDS_TRANSIENT_LOCAL_DURABILITY_QOS) {
        DDS_Subscriber* const subscriber = DDS_DomainParticipant_create_subscriber(
            participant_, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
        DDS_DataReaderQos qos{};
        EXPECT_EQ(DDS_RETCODE_OK, DDS_DataReaderQos_initialize(&qos));
        qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
        qos.durability.kind = durability;
        qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
        DDS_DataReader* const reader = DDS_Subscriber_create_datareader(
            subscriber, DDS_Topic_as_topicdescription(topic<Sample>()), &qos, nullptr,
            DDS_STATUS_MASK_NONE);
        EXPECT_NE(nullptr, reader);
        DDS_DataReaderQos_finalize(&qos);
        return reader;
    }

    template <typename Sample>
    DDS_DataWriter* writer() {
        DDS_Publisher* const publisher = DDS_DomainParticipant_create_publisher(
            participant_, DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
        DDS_DataWriter* const writer = DDS_Publisher_create_datawriter(
            publisher, topic<Sample>(), DDS_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
        EXPECT_NE(nullptr, writer);
        return writer;
    }

private:
    DDS_DomainParticipant* participant_;
};

/// Waits at most ten seconds for anything to take or read.
inline bool wait_for_data(DDS_DataReader* reader) {
    DDS_ReadCondition* const condition = DDS_DataReader_create_readcondition(
        reader, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    DDS_WaitSet* const set = DDS_WaitSet_new();
    DDS_WaitSet_attach_condition(set, DDS_ReadCondition_as_condition(condition));
    DDS_ConditionSeq active{};
    const DDS_Duration_t limit{10, 0};
    const DDS_ReturnCode_t result = DDS_WaitSet_wait(set, &active, &limit);
    DDS_ConditionSeq_finalize(&active);
    DDS_WaitSet_delete(set);
    DDS_DataReader_delete_readcondition(reader, condition);
    return result == DDS_RETCODE_OK;
}

/// Takes samples until there are at least @p count with data, or ten seconds pass without one.
template <typename Sample>
std::vector<Owned<Sample>> take(DDS_DataReader* reader, std::size_t count) {
    std::vector<Owned<Sample>> taken;
    do {
        typename Type<Sample>::Seq samples{};
        DDS_SampleInfoSeq infos{};
        if (Type<Sample>::take(reader, &samples, &infos, DDS_LENGTH_UNLIMITED, DDS_ANY_SAMPLE_STATE,
                               DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE) != DDS_RETCODE_OK) {
            continue;
        }
        for (DDS_Long index = 0; index < Type<Sample>::length(&samples); ++index) {
            if (DDS_SampleInfoSeq_get_reference(&infos, index)->valid_data != 0) {
                taken.push_back(make<Sample>());
                EXPECT_EQ(
                    DDS_RETCODE_OK,
                    Type<Sample>::copy_data(taken.back().get(), Type<Sample>::at(&samples, index)));
            }
        }
        EXPECT_EQ(DDS_RETCODE_OK, Type<Sample>::return_loan(reader, &samples, &infos));
    } while (taken.size() < count && wait_for_data(reader));
    EXPECT_GE(taken.size(), count);
    return taken;
}

/// Forgets all faults before and after each test.
class AdminTest : public testing::Test {
public:
    AdminTest() { faults::reset(); }
    ~AdminTest() override { faults::reset(); }
};

}  // namespace admin_test
