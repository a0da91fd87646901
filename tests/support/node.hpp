// A participant of a test, with typed writers and readers, and bounded waits.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvane/types.h"
#include "pexa/domain.h"
#include "pexa/publication.h"
#include "pexa/subscription.h"

namespace orvane::test {

/// How long a test waits for what must come.
inline constexpr DDS_Duration_t patience = {20, 0};

/// @return the DDS domain of the test, which CTest sets in the environment.
DDS_DomainId_t domain();

/// @return a topic name that no other test of the program uses.
std::string topic_of_this_test();

/// The operations of a topic type, and its place in the contract between applications.
template <typename T>
struct TopicType;
#define ORVANE_TOPIC_TYPE(T, Topic, Registered)                             \
    template <>                                                             \
    struct TopicType<T> {                                                   \
        using Seq = T##Seq;                                                 \
        static constexpr const char* topic = Topic;                         \
        static constexpr const char* registered = Registered;               \
        static constexpr auto register_type = T##TypeSupport_register_type; \
        static constexpr auto create_data = T##TypeSupport_create_data;     \
        static constexpr auto delete_data = T##TypeSupport_delete_data;     \
        static constexpr auto copy_data = T##TypeSupport_copy_data;         \
        static constexpr auto length = T##Seq_get_length;                   \
        static constexpr auto at = T##Seq_get_reference;                    \
        static constexpr auto read_or_take = T##DataReader_read_or_takeI;   \
        static constexpr auto return_loan = T##DataReader_return_loan;      \
        static constexpr auto write = T##DataWriter_write;                  \
    }
ORVANE_TOPIC_TYPE(QEL_KX_LogMessage, "qel/orvane", "com::qel::kx::LogMessage");
ORVANE_TOPIC_TYPE(QEL_KX_ADMIN_State, "qel/orvane/administration/state",
                  "com::qel::kx::admin::State");
ORVANE_TOPIC_TYPE(QEL_KX_ADMIN_CommandRequest, "qel/orvane/administration/command_request",
                  "com::qel::kx::admin::CommandRequest");
ORVANE_TOPIC_TYPE(QEL_KX_ADMIN_CommandResponse, "qel/orvane/administration/command_response",
                  "com::qel::kx::admin::CommandResponse");
ORVANE_TOPIC_TYPE(QEL_KX_ADMIN_Statistics, "qel/orvane/statistics",
                  "com::qel::kx::admin::Statistics");
#undef ORVANE_TOPIC_TYPE

template <typename T>
struct DeleteSample {
    void operator()(T* sample) const { TopicType<T>::delete_data(sample); }
};
/// A sample of its own.
template <typename T>
using Sample = std::unique_ptr<T, DeleteSample<T>>;
template <typename T>
Sample<T> make_sample() {
    return Sample<T>(TopicType<T>::create_data());
}

using TweakWriterQos = std::function<void(DDS_DataWriterQos&)>;
using TweakReaderQos = std::function<void(DDS_DataReaderQos&)>;

/// A participant in the domain of the test. Everything in it is deleted with it, which must
/// succeed. Writers and readers are reliable, transient local and keep everything, unless a tweak
/// says otherwise.
class Node {
public:
    Node();
    ~Node();

    static DDS_DomainParticipantFactory* factory();
    DDS_DomainParticipant* participant() const { return participant_; }
    DDS_Publisher* publisher() const { return publisher_; }
    DDS_Subscriber* subscriber() const { return subscriber_; }

    /// @return the topic of this name, made if it does not exist yet.
    template <typename T>
    DDS_Topic* topic(const std::string& name = TopicType<T>::topic) const {
        EXPECT_EQ(TopicType<T>::register_type(participant_, TopicType<T>::registered),
                  DDS_RETCODE_OK);
        return obtain_topic(name, TopicType<T>::registered);
    }
    template <typename T>
    DDS_DataWriter* writer(const TweakWriterQos& tweak = nullptr) const {
        return writer_of(topic<T>(), tweak);
    }
    template <typename T>
    DDS_DataReader* reader(const TweakReaderQos& tweak = nullptr) const {
        return reader_of(DDS_Topic_as_topicdescription(topic<T>()), tweak);
    }
    DDS_DataWriter* writer_of(DDS_Topic* topic, const TweakWriterQos& tweak = nullptr) const;
    DDS_DataReader* reader_of(DDS_TopicDescription* topic,
                              const TweakReaderQos& tweak = nullptr) const;

private:
    DDS_Topic* obtain_topic(const std::string& name, const char* type_name) const;

    DDS_DomainParticipant* participant_;
    DDS_Publisher* publisher_;
    DDS_Subscriber* subscriber_;
};

/// Waits until a condition is true. @return TIMEOUT otherwise
DDS_ReturnCode_t await(DDS_Condition* condition, const DDS_Duration_t& timeout = patience);
/// Waits until the reader has a sample of these states. @return whether it has one
bool await_data(DDS_DataReader* reader, DDS_SampleStateMask states = DDS_ANY_SAMPLE_STATE);
/// Waits until an endpoint has matched another. @return whether it has
bool await_reader(DDS_DataWriter* writer);
bool await_writer(DDS_DataReader* reader);

/// A sample as it was received. Without valid data only its key members mean something.
template <typename T>
struct Received {
    Sample<T> sample;
    DDS_SampleInfo info;
};

/// Takes what there is.
template <typename T>
std::vector<Received<T>> receive(DDS_DataReader* reader) {
    std::vector<Received<T>> received;
    typename TopicType<T>::Seq samples{};
    DDS_SampleInfoSeq infos{};
    const DDS_ReturnCode_t result = TopicType<T>::read_or_take(
        reader, &samples, &infos, DDS_LENGTH_UNLIMITED, DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
        DDS_ANY_INSTANCE_STATE, DDS_BOOLEAN_TRUE);
    if (result != DDS_RETCODE_OK) {
        EXPECT_EQ(result, DDS_RETCODE_NO_DATA);
        return received;
    }
    for (DDS_Long index = 0; index < TopicType<T>::length(&samples); ++index) {
        received.push_back({make_sample<T>(), *DDS_SampleInfoSeq_get_reference(&infos, index)});
        EXPECT_EQ(TopicType<T>::copy_data(received.back().sample.get(),
                                          TopicType<T>::at(&samples, index)),
                  DDS_RETCODE_OK);
    }
    EXPECT_EQ(TopicType<T>::return_loan(reader, &samples, &infos), DDS_RETCODE_OK);
    return received;
}

/// Takes until there are that many samples with valid data.
template <typename T>
std::vector<Received<T>> take(DDS_DataReader* reader, std::size_t count) {
    std::vector<Received<T>> taken;
    while (taken.size() < count && await_data(reader)) {
        for (Received<T>& one : receive<T>(reader)) {
            if (one.info.valid_data != DDS_BOOLEAN_FALSE) {
                taken.push_back(std::move(one));
            }
        }
    }
    EXPECT_GE(taken.size(), count);
    return taken;
}

}  // namespace orvane::test
