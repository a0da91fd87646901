/// @file reader.hpp
/// @brief Data readers.
#pragma once

#include "platform/dds/conditions/condition.hpp"
#include "platform/dds/endpoints/endpoint.hpp"
#include "platform/dds/endpoints/loan.hpp"
#include "platform/dds/endpoints/reader_dispatch.hpp"
#include "platform/dds/entity/children.hpp"

namespace pexa::dds {

class DataReader final : public Endpoint<DDS_DataReaderQos, TopicDescription> {
public:
    using Handle = DDS_DataReader;

    /// @param parent the subscriber as an entity
    /// @param defaults the subscriber's, for its readers
    DataReader(Subscriber& subscriber, const Entity& parent,
               const DefaultQos<DDS_DataReaderQos>& defaults, TopicDescription& topic);

    Subscriber* subscriber() const { return &subscriber_; }

    /// @name Reading
    /// @{
    Status read_or_take(const Operation& operation, const DDS_ReadSelectorI& selector,
                        DDS_UntypedSampleSeqI& data, DDS_SampleInfoSeq& infos);
    Status read_or_take_next_sample(const Operation& operation, void* sample, DDS_SampleInfo& info,
                                    DDS_Boolean take);
    Status return_loan(const Operation& operation, void** samples, DDS_Long count,
                       DDS_SampleInfoSeq& infos);
    bool has_loans() const { return !loans_.empty(); }
    /// @}

    /// @return a failure after a report
    Result<ReadCondition*> create_condition(const Operation& operation,
                                            DDS_SampleStateMask sample_states,
                                            DDS_ViewStateMask view_states,
                                            DDS_InstanceStateMask instance_states);
    Status delete_condition(const Operation& operation, ReadCondition& condition);
    bool has_conditions() const { return !conditions_.empty(); }

    Status wait_for_historical_data(const Operation& operation,
                                    const DDS_Duration_t& max_wait) const;
    engine::StatusMask statuses() const override;

private:
    engine::Created create(engine::EntityId topic, const engine::Qos& qos) override;
    engine::Listener* dispatch() override { return &dispatch_; }
    void closed() override;

    Status receive(const Operation& operation, const DDS_ReadSelectorI& selector,
                   DDS_Long max_samples, std::vector<engine::Sample>& received);
    /// Fills the infos of all received samples.
    void note_infos(Loan& loan);
    /// Decodes received samples into memory of the reader's, or of the caller's. Samples that
    /// cannot be decoded are dropped with their infos.
    /// @{
    Status lend(const Operation& operation, Loan& loan);
    Status copy(const Operation& operation, Loan& loan, DDS_UntypedSampleSeqI& data,
                DDS_SampleInfoSeq& infos);
    /// @}
    /// Ends the decoding. @return NO_DATA when nothing could be decoded
    static Status decoded(const Operation& operation, Loan& loan, std::size_t count);
    Status decode(const engine::Sample& received, void* sample);
    Status hand_out(const Operation& operation, LoanBook::Entry& entry, DDS_UntypedSampleSeqI& data,
                    DDS_SampleInfoSeq& infos);
    void take_back(const Loan& loan);

    Subscriber& subscriber_;
    LoanBook loans_;
    Children<ReadCondition> conditions_;
    ReaderDispatch dispatch_{*this};
};

}  // namespace pexa::dds
