// Initial values, copies and finalisation, and what they do without memory.
#include <gtest/gtest.h>

#include "tests/support/heap_faults.hpp"
#include "tests/types/sample.hpp"

namespace {

TEST(Values, AreInitiallyEmptyWithBuffersAtTheirBounds) {
    QEL_KX_ADMIN_State state;
    QEL_KX_ADMIN_Command command;
    std::memset(&state, 0x55, sizeof state);
    std::memset(&command, 0x55, sizeof command);
    ASSERT_TRUE(QEL_KX_ADMIN_State_initialize(&state));
    ASSERT_TRUE(QEL_KX_ADMIN_Command_initialize(&command));

    EXPECT_EQ(state.hostAndAppId.rtps_host_id, 0);
    EXPECT_EQ(state.hostAndAppId.rtps_app_id, 0);
    EXPECT_EQ(state.administrationDomainId, 0);
    EXPECT_EQ(state.state, QEL_KX_STATE_INITIALIZING);
    EXPECT_STREQ(state.applicationKind, "");
    EXPECT_EQ(state.filterLevel, 0);
    for (const auto& pair : state.qelLoggerVerbosities) {
        EXPECT_EQ(pair.category, QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM);
        EXPECT_EQ(pair.verbosity, QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT);
    }
    EXPECT_EQ(state.qelLoggerPrintFormat, QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT);
    std::strcpy(state.applicationKind, repeated('k', 256).c_str());

    EXPECT_EQ(command._d, QEL_KX_ADMIN_Command_getDefaultDiscriminator());
    EXPECT_EQ(command._d, 0);
    EXPECT_EQ(command._u.filterLevel, 0);
    EXPECT_EQ(command._u.categoryAndVerbosity.maximum, 5);
    EXPECT_EQ(command._u.categoryAndVerbosity.length, 0);
    EXPECT_EQ(command._u.printFormat, QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT);
    QEL_KX_ADMIN_State_finalize(&state);
    QEL_KX_ADMIN_Command_finalize(&command);
}

TEST(Values, AreFinalisedOnceHoweverOftenOneAsks) {
    const long before = heap_faults::live_blocks();
    QEL_KX_LogMessage message;
    QEL_KX_ADMIN_CommandRequest request;
    ASSERT_TRUE(QEL_KX_LogMessage_initialize(&message));
    ASSERT_TRUE(QEL_KX_ADMIN_CommandRequest_initialize(&request));
    EXPECT_GT(heap_faults::live_blocks(), before);
    for (int i = 0; i < 2; ++i) {
        QEL_KX_LogMessage_finalize(&message);
        QEL_KX_ADMIN_CommandRequest_finalize(&request);
        EXPECT_EQ(message.category, nullptr);
        EXPECT_EQ(message.message, nullptr);
        EXPECT_EQ(request.command._u.categoryAndVerbosity.maximum, 0);
        EXPECT_EQ(heap_faults::live_blocks(), before);
    }
}

TEST(Values, AreEmptiedInPlaceWithoutMemory) {
    Sample<QEL_KX_LogMessage> message;
    fill(*message);
    const char* category = message->category;
    char* text = message->message;
    message->message = nullptr;
    ASSERT_TRUE(QEL_KX_LogMessage_initialize_ex(message.get(), 1, 0));
    EXPECT_EQ(message->category, category);
    EXPECT_STREQ(message->category, "");
    EXPECT_EQ(message->message, nullptr);
    EXPECT_EQ(message->hostAndAppId.rtps_host_id, 0);
    EXPECT_EQ(message->level, 0);
    message->message = text;

    Sample<QEL_KX_ADMIN_Command> command;
    set_pairs(*command, 3);
    const void* buffer = command->_u.categoryAndVerbosity.contiguousBuffer;
    ASSERT_TRUE(QEL_KX_ADMIN_Command_initialize_ex(command.get(), 0, 0));
    EXPECT_EQ(command->_d, 0);
    EXPECT_EQ(command->_u.categoryAndVerbosity.length, 0);
    EXPECT_EQ(command->_u.categoryAndVerbosity.contiguousBuffer, buffer);
}

TEST(Copying, StopsAtTheFirstMemberThatDoesNotFit) {
    Sample<QEL_KX_LogMessage> source;
    Sample<QEL_KX_LogMessage> destination;
    fill(*source);
    std::strcpy(source->message, repeated('m', 4096).c_str());
    ASSERT_TRUE(QEL_KX_LogMessage_copy(destination.get(), source.get()));
    EXPECT_EQ(encoded(*destination, 1), encoded(*source, 1));

    std::string too_long = repeated('m', 4097);
    char* own = source->message;
    source->message = too_long.data();
    source->level = 5;
    std::strcpy(source->category, "new");
    EXPECT_FALSE(QEL_KX_LogMessage_copy(destination.get(), source.get()));
    EXPECT_EQ(destination->level, 5);
    EXPECT_STREQ(destination->category, "new");
    EXPECT_EQ(destination->message, repeated('m', 4096));
    source->message = own;
}

template <typename T>
void expect_equal_copy(DDS_Boolean (*copy)(T*, const T*)) {
    Sample<T> source;
    Sample<T> destination;
    fill(*source);
    ASSERT_TRUE(copy(destination.get(), source.get()));
    EXPECT_EQ(encoded(*destination, 1), encoded(*source, 1));
}

TEST(Copying, OfEveryTopicTypeGivesAnEqualValue) {
    expect_equal_copy(QEL_KX_ADMIN_State_copy);
    expect_equal_copy(QEL_KX_ADMIN_CommandRequest_copy);
    expect_equal_copy(QEL_KX_ADMIN_CommandResponsePluginSupport_copy_data);
    QEL_KX_ADMIN_CommandKind kind = QEL_KX_SET_LOG_LEVEL;
    const QEL_KX_ADMIN_CommandKind other = QEL_KX_SET_QEL_LOGGER_LEVEL;
    ASSERT_TRUE(QEL_KX_ADMIN_CommandKind_copy(&kind, &other));
    EXPECT_EQ(kind, other);
}

TEST(Copying, OfAUnionTouchesTheSelectedBranchOnly) {
    Sample<QEL_KX_ADMIN_Command> source;
    Sample<QEL_KX_ADMIN_Command> destination;
    set_pairs(*destination, 4);
    destination->_u.filterLevel = 9;
    source->_d = QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT;
    source->_u.printFormat = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG;
    source->_u.filterLevel = 8;
    ASSERT_TRUE(QEL_KX_ADMIN_Command_copy(destination.get(), source.get()));
    EXPECT_EQ(destination->_d, QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT);
    EXPECT_EQ(destination->_u.printFormat, QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG);
    EXPECT_EQ(destination->_u.categoryAndVerbosity.length, 4);
    EXPECT_EQ(destination->_u.filterLevel, 9);

    set_pairs(*source, 2);
    ASSERT_TRUE(QEL_KX_ADMIN_Command_copy(destination.get(), source.get()));
    EXPECT_EQ(destination->_u.categoryAndVerbosity.length, 2);

    // A discriminator that selects nothing; written as a number, since no enumerator has it.
    const DDS_Long nothing = 17;
    std::memcpy(&source->_d, &nothing, sizeof nothing);
    source->_u.filterLevel = 1;
    ASSERT_TRUE(QEL_KX_ADMIN_Command_copy(destination.get(), source.get()));
    EXPECT_EQ(std::memcmp(&destination->_d, &nothing, sizeof nothing), 0);
    EXPECT_EQ(destination->_u.filterLevel, 9);
}

TEST(Values, RefuseToWorkOnNothingAndMayBeMadeWithoutMemoryOfTheirOwn) {
    Sample<QEL_KX_LogMessage> sample;
    EXPECT_FALSE(QEL_KX_LogMessage_initialize(nullptr));
    EXPECT_FALSE(QEL_KX_LogMessage_initialize_w_params(sample.get(), nullptr));
    EXPECT_FALSE(QEL_KX_LogMessage_copy(nullptr, sample.get()));
    EXPECT_FALSE(QEL_KX_LogMessage_copy(sample.get(), nullptr));
    QEL_KX_LogMessage_finalize(nullptr);
    QEL_KX_LogMessage_finalize_w_params(sample.get(), nullptr);
    EXPECT_NE(sample->category, nullptr);
    EXPECT_EQ(QEL_KX_LogMessagePluginSupport_create_data_w_params(nullptr), nullptr);
    QEL_KX_LogMessagePluginSupport_destroy_data(nullptr);

    const long before = heap_faults::live_blocks();
    DDS_TypeAllocationParams_t params = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    params.allocate_memory = 0;
    QEL_KX_LogMessage* bare = QEL_KX_LogMessagePluginSupport_create_data_w_params(&params);
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(bare->category, nullptr);
    EXPECT_EQ(heap_faults::live_blocks(), before + 1);
    QEL_KX_LogMessage_finalize_optional_members(sample.get(), 1);
    EXPECT_NE(sample->message, nullptr) << "it has no optional members";
    EXPECT_EQ(QEL_KX_LogMessageTypeSupport_delete_data_ex(bare, 1), DDS_RETCODE_OK);
    EXPECT_EQ(heap_faults::live_blocks(), before);
}

/// Makes garbage of a record, initialises it, and finalises it whatever came of that.
template <typename T>
bool initialise_and_finalise() {
    T record;
    std::memset(&record, 0x55, sizeof record);
    const bool succeeded = orvane::types::ValueOperations<T>::initialize(&record) != 0;
    orvane::types::ValueOperations<T>::finalize(&record);
    return succeeded;
}

template <typename T>
bool create_and_destroy() {
    T* record = orvane::types::PluginSupportOperations<T>::create_data();
    orvane::types::PluginSupportOperations<T>::destroy_data(record);
    return record != nullptr;
}

template <typename T, typename Seq>
bool grow_a_sequence(DDS_Boolean (*set_maximum)(Seq*, DDS_Long)) {
    Seq sequence{};
    const bool succeeded = set_maximum(&sequence, 3) != 0;
    EXPECT_EQ(sequence.maximum, succeeded ? 3 : 0);
    EXPECT_NE(set_maximum(&sequence, 0), 0);
    return succeeded;
}

TEST(WithoutMemory, InitialisationFailsAndTheRecordCanBeFinalised) {
    heap_faults::sweep(initialise_and_finalise<QEL_KX_LogMessage>);
    heap_faults::sweep(initialise_and_finalise<QEL_KX_ADMIN_State>);
    heap_faults::sweep(initialise_and_finalise<QEL_KX_ADMIN_Command>);
    heap_faults::sweep(initialise_and_finalise<QEL_KX_ADMIN_CommandRequest>);
    heap_faults::sweep(initialise_and_finalise<QEL_KX_ADMIN_CommandResponse>);
}

TEST(WithoutMemory, RecordsOnTheHeapAreNotMadeByHalves) {
    heap_faults::sweep(create_and_destroy<QEL_KX_HostAndAppId>);
    heap_faults::sweep(create_and_destroy<QEL_KX_LogMessage>);
    heap_faults::sweep(create_and_destroy<QEL_KX_ADMIN_CommandRequest>);
}

TEST(WithoutMemory, SequencesKeepTheirSize) {
    heap_faults::sweep(
        [] { return grow_a_sequence<QEL_KX_LogMessage>(QEL_KX_LogMessageSeq_set_maximum); });
    heap_faults::sweep([] {
        return grow_a_sequence<QEL_KX_ADMIN_CommandRequest>(
            QEL_KX_ADMIN_CommandRequestSeq_set_maximum);
    });
    heap_faults::sweep([] {
        return grow_a_sequence<QEL_KX_ADMIN_StateKind>(QEL_KX_ADMIN_StateKindSeq_set_maximum);
    });
}

TEST(WithoutMemory, TheTypeSupportsInitialisationStillReportsSuccess) {
    QEL_KX_LogMessage message{};
    heap_faults::fail_allocation(1);
    EXPECT_EQ(QEL_KX_LogMessageTypeSupport_initialize_data(&message), DDS_RETCODE_OK);
    EXPECT_FALSE(heap_faults::was_out_of_reach());
    EXPECT_EQ(message.category, nullptr);
    EXPECT_EQ(QEL_KX_LogMessageTypeSupport_finalize_data(&message), DDS_RETCODE_OK);
}

TEST(Sequences, CopyTheirElementsWithEverythingInThem) {
    QEL_KX_LogMessageSeq source{};
    QEL_KX_LogMessageSeq destination{};
    ASSERT_TRUE(QEL_KX_LogMessageSeq_ensure_length(&source, 2, 2));
    fill(*QEL_KX_LogMessageSeq_get_reference(&source, 1));
    ASSERT_EQ(QEL_KX_LogMessageSeq_copy(&destination, &source), &destination);
    QEL_KX_LogMessage* original = QEL_KX_LogMessageSeq_get_reference(&source, 1);
    QEL_KX_LogMessage* copy = QEL_KX_LogMessageSeq_get_reference(&destination, 1);
    EXPECT_NE(copy->message, original->message);
    EXPECT_STREQ(copy->message, "hi");
    EXPECT_TRUE(QEL_KX_LogMessageSeq_finalize(&source));
    EXPECT_TRUE(QEL_KX_LogMessageSeq_finalize(&destination));
}

}  // namespace
