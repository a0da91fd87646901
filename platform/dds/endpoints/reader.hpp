/// @file reader.hpp
/// @brief Data readers.
#pragma once

#include "platform/dds/conditions/condition.hpp"
#include "platform/dds/domain/subscriber.hpp"
#include "platform/dds/endpoints/loan.hpp"
#include "platform/dds/endpoints/peer_directory.hpp"
#include "platform/dds/endpoints/typed_endpoint.hpp"
#include "platform/dds/listeners/status_conversion.hpp"
#include "platform/dds/topics/topic.hpp"

namespace pexa::dds {

class DataReader final : public QosEntity<DDS_DataReaderQos> {
public:
    using Handle = DDS_DataReader;

    DataReader(Subscriber& subscriber, TopicDescription& topic);

    /// Gives a new reader its codec.
    [[nodiscard]] DDS_ReturnCode_t attach_type(const Operation& operation);

    [[nodiscard]] Entity* as_entity() { return this; }
    [[nodiscard]] TopicDescription* topic() const { return &topic_; }
    [[nodiscard]] Subscriber* subscriber() const { return &subscriber_; }
    [[nodiscard]] DDS_Boolean is_of_type(const char* type_name) const;

    /// @name Reading
    /// @{
    [[nodiscard]] DDS_ReturnCode_t read_or_take(const Operation& operation,
                                                const DDS_ReadSelectorI& selector,
                                                DDS_UntypedSampleSeqI& data,
                                                DDS_SampleInfoSeq& infos);
    [[nodiscard]] DDS_ReturnCode_t read_or_take_next_sample(const Operation& operation,
                                                            void* sample, DDS_SampleInfo& info,
                                                            DDS_Boolean take);
    [[nodiscard]] DDS_ReturnCode_t return_loan(const Operation& operation, void** samples,
                                               DDS_Long count, DDS_SampleInfoSeq& infos);
    [[nodiscard]] bool has_loans() const { return !loans_.empty(); }
    /// @}
    [[nodiscard]] DDS_ReturnCode_t get_key_value(const Operation& operation, void* sample,
                                                 const DDS_InstanceHandle_t& handle);
    [[nodiscard]] DDS_InstanceHandle_t lookup_instance(const void* sample);

    /// @return NULL after a report
    [[nodiscard]] ReadCondition* create_condition(const Operation& operation,
                                                  DDS_SampleStateMask sample_states,
                                                  DDS_ViewStateMask view_states,
                                                  DDS_InstanceStateMask instance_states);
    [[nodiscard]] DDS_ReturnCode_t delete_condition(const Operation& operation,
                                                    ReadCondition& condition);
    [[nodiscard]] bool has_conditions() const { return !conditions_.empty(); }

    [[nodiscard]] DDS_ReturnCode_t wait_for_historical_data(const Operation& operation,
                                                            const DDS_Duration_t& max_wait) const;
    [[nodiscard]] engine::StatusMask statuses() const override;
    template <typename Record>
    [[nodiscard]] DDS_ReturnCode_t get_status(Record& record) {
        return read_status(engine_id(), record,
                           [this](engine::LocalHandle peer) { return peer_handle(peer); });
    }
    [[nodiscard]] DDS_ReturnCode_t get_matched_publications(DDS_InstanceHandleSeq& handles);
    [[nodiscard]] DDS_InstanceHandle_t peer_handle(engine::LocalHandle peer);

private:
    [[nodiscard]] engine::Created create_in_engine(const Operation& operation) override;
    [[nodiscard]] engine::Listener* dispatch() override { return &dispatch_; }
    [[nodiscard]] const char* topic_name() const override { return topic_.topic_name(); }
    void closed() override;

    [[nodiscard]] DDS_ReturnCode_t receive(const Operation& operation,
                                           const DDS_ReadSelectorI& selector, DDS_Long max_samples,
                                           std::vector<engine::Sample>& received);
    /// Fills the infos of all received samples.
    void note_infos(Loan& loan);
    /// Decodes received samples into memory of the reader's, or of the caller's. The infos of those
    /// that cannot be decoded are dropped.
    /// @{
    [[nodiscard]] DDS_ReturnCode_t lend(const Operation& operation, Loan& loan);
    [[nodiscard]] DDS_ReturnCode_t copy(const Operation& operation, Loan& loan,
                                        DDS_UntypedSampleSeqI& data, DDS_SampleInfoSeq& infos);
    /// @}
    /// Ends the decoding. @return NO_DATA when nothing could be decoded
    [[nodiscard]] static DDS_ReturnCode_t decoded(const Operation& operation, Loan& loan,
                                                  std::size_t count);
    [[nodiscard]] bool decode(const engine::Sample& received, void* sample);
    [[nodiscard]] DDS_ReturnCode_t hand_out(const Operation& operation, LoanBook::Entry& entry,
                                            DDS_UntypedSampleSeqI& data, DDS_SampleInfoSeq& infos);
    void take_back(const Loan& loan);

    Subscriber& subscriber_;
    TopicDescription& topic_;
    TopicUse topic_use_{topic_};
    TypedEndpoint endpoint_;
    PeerDirectory peers_{PeerKind::publications};
    LoanBook loans_;
    Children<ReadCondition> conditions_;
    ReaderDispatch dispatch_{*this};
};

}  // namespace pexa::dds
