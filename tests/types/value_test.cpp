// Initial values, copies and finalisation, and what they do without memory.
#include "tests/support/faults.hpp"
#include "tests/types/sample.hpp"

namespace orvane::types {
namespace {

using test::heap_allocation;
using test::live_blocks;
using test::sweep;

TEST(Values, AreInitiallyEmptyWithBuffersAtTheirBoundsAndFinalisedOnce) {
    const long before = live_blocks();
    QEL_KX_ADMIN_State state;
    QEL_KX_ADMIN_Command command;
    std::memset(&state, 0x55, sizeof state);
    std::memset(&command, 0x55, sizeof command);
    ASSERT_TRUE(QEL_KX_ADMIN_State_initialize(&state));
    ASSERT_TRUE(QEL_KX_ADMIN_Command_initialize(&command));
    char no_text[] = "";
    QEL_KX_ADMIN_State zeros{};
    zeros.applicationKind = no_text;
    EXPECT_EQ(hexadecimal(encoded(state)), hexadecimal(encoded(zeros)));
    std::strcpy(state.applicationKind, std::string(256, 'k').c_str());
    EXPECT_EQ(command._d, QEL_KX_ADMIN_Command_getDefaultDiscriminator());
    EXPECT_EQ(command._u.categoryAndVerbosity.maximum, 5);
    EXPECT_EQ(command._u.categoryAndVerbosity.length, 0);
    EXPECT_EQ(command._u.filterLevel, 0);
    EXPECT_EQ(command._u.printFormat, 0);
    for (int i = 0; i < 2; ++i) {
        QEL_KX_ADMIN_State_finalize(&state);
        QEL_KX_ADMIN_Command_finalize(&command);
        EXPECT_EQ(live_blocks(), before);
    }

    // Emptied in place.
    Filled<QEL_KX_LogMessage> message;
    const char* category = message->category;
    ASSERT_TRUE(QEL_KX_LogMessage_initialize_ex(message.get(), 1, 0));
    EXPECT_EQ(message->category, category);
    EXPECT_EQ(hexadecimal(encoded(*message)), hexadecimal(encoded(*Sample<QEL_KX_LogMessage>())));
    Sample<QEL_KX_ADMIN_Command> filled;
    set_pairs(*filled, 3);
    const void* buffer = filled->_u.categoryAndVerbosity.contiguousBuffer;
    ASSERT_TRUE(QEL_KX_ADMIN_Command_initialize_ex(filled.get(), 0, 0));
    EXPECT_EQ(filled->_d, 0);
    EXPECT_EQ(filled->_u.categoryAndVerbosity.length, 0);
    EXPECT_EQ(filled->_u.categoryAndVerbosity.contiguousBuffer, buffer);
}

template <typename T>
void expect_equal_copy(DDS_Boolean (*copy)(T*, const T*)) {
    Filled<T> source;
    Sample<T> destination;
    ASSERT_TRUE(copy(destination.get(), source.get()));
    EXPECT_EQ(hexadecimal(encoded(*destination)), hexadecimal(encoded(*source)));
}

TEST(Copying, GivesAnEqualValueAndStopsAtTheFirstMemberThatDoesNotFit) {
    expect_equal_copy(QEL_KX_LogMessage_copy);
    expect_equal_copy(QEL_KX_ADMIN_State_copy);
    expect_equal_copy(QEL_KX_ADMIN_CommandRequest_copy);
    expect_equal_copy(QEL_KX_ADMIN_CommandResponsePluginSupport_copy_data);
    Sample<QEL_KX_LogMessage> destination;
    std::string text(4097, 'm');
    char category[] = "new";
    const QEL_KX_LogMessage source{{}, 0, category, text.data()};
    const auto copy = QEL_KX_LogMessageTypeSupport_copy_data;
    EXPECT_EQ(copy(destination.get(), &source), DDS_RETCODE_ERROR);
    EXPECT_STREQ(destination->category, "new");
    EXPECT_STREQ(destination->message, "");
    text.pop_back();
    EXPECT_EQ(copy(destination.get(), &source), DDS_RETCODE_OK);
    EXPECT_EQ(destination->message, text);
}

TEST(Copying, OfAUnionTouchesTheSelectedBranchOnly) {
    Sample<QEL_KX_ADMIN_Command> source;
    Sample<QEL_KX_ADMIN_Command> destination;
    set_pairs(*destination, 4);
    set_pairs(*source, 2);
    source->_u.filterLevel = 8;
    source->_u.printFormat = QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG;
    // No enumerator has the number 17, so that it can only be written as one.
    const struct {
        DDS_Long discriminator;
        DDS_Long format;
        DDS_Long pairs;
    } rows[] = {{17, 0, 4},
                {QEL_KX_SET_QEL_LOGGER_PRINT_FORMAT, QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG, 4},
                {QEL_KX_SET_QEL_LOGGER_LEVEL, QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG, 2}};
    for (const auto& row : rows) {
        std::memcpy(&source->_d, &row.discriminator, sizeof row.discriminator);
        ASSERT_TRUE(QEL_KX_ADMIN_Command_copy(destination.get(), source.get()));
        EXPECT_EQ(std::memcmp(&destination->_d, &row.discriminator, sizeof row.discriminator), 0);
        EXPECT_EQ(destination->_u.filterLevel, 0);
        EXPECT_EQ(destination->_u.printFormat, row.format);
        EXPECT_EQ(destination->_u.categoryAndVerbosity.length, row.pairs);
    }
}

TEST(Values, MayBeMadeWithoutMemoryOfTheirOwn) {
    const long before = live_blocks();
    const DDS_TypeAllocationParams_t params = allocation_params(1, 0);
    auto* bare = QEL_KX_LogMessagePluginSupport_create_data_w_params(&params);
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(bare->category, nullptr);
    EXPECT_EQ(live_blocks(), before + 1);
    EXPECT_EQ(QEL_KX_LogMessageTypeSupport_delete_data_ex(bare, 1), DDS_RETCODE_OK);
    EXPECT_EQ(live_blocks(), before);
}

/// Makes garbage of a record, initialises it, and finalises it whatever came of that.
template <typename T>
bool initialise_and_finalise() {
    T record;
    std::memset(&record, 0x55, sizeof record);
    const bool succeeded = ValueOperations<T>::initialize(&record) != 0;
    ValueOperations<T>::finalize(&record);
    return succeeded;
}

template <typename Seq>
auto grow_and_shrink(DDS_Boolean (*set_maximum)(Seq*, DDS_Long)) {
    return [set_maximum] {
        Seq sequence{};
        const bool succeeded = set_maximum(&sequence, 3) != 0;
        EXPECT_EQ(sequence.maximum, succeeded ? 3 : 0);
        EXPECT_NE(set_maximum(&sequence, 0), 0);
        return succeeded;
    };
}

TEST(WithoutMemory, NothingIsMadeByHalves) {
    sweep(heap_allocation, initialise_and_finalise<QEL_KX_LogMessage>);
    sweep(heap_allocation, initialise_and_finalise<QEL_KX_ADMIN_State>);
    sweep(heap_allocation, initialise_and_finalise<QEL_KX_ADMIN_CommandRequest>);
    sweep(heap_allocation, initialise_and_finalise<QEL_KX_ADMIN_CommandResponse>);
    sweep(heap_allocation, [] {
        auto* record = QEL_KX_ADMIN_CommandRequestPluginSupport_create_data();
        QEL_KX_ADMIN_CommandRequestPluginSupport_destroy_data(record);
        return record != nullptr;
    });
    sweep(heap_allocation, grow_and_shrink(QEL_KX_LogMessageSeq_set_maximum));
    sweep(heap_allocation, grow_and_shrink(QEL_KX_ADMIN_CommandRequestSeq_set_maximum));
    sweep(heap_allocation, grow_and_shrink(QEL_KX_ADMIN_StateKindSeq_set_maximum));
}

}  // namespace
}  // namespace orvane::types
