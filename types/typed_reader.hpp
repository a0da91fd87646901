/**
 * @file typed_reader.hpp
 * @brief `TDataReader_…` of one topic type, by the exported names.
 */
#pragma once

#include "pexa/subscription.h"
#include "platform/internal/sequence_define.hpp"
#include "types/table.hpp"

namespace orvane::types {

/** @return the reader, or NULL after a report: NULL or of another type. */
DDS_DataReader* narrow_reader(DDS_DataReader* reader, const char* type_name);
DDS_DataReader* as_datareader(DDS_DataReader* reader);

/** Selects the samples to read or take. Remembers the name of a required argument that is NULL. */
class SampleSelector {
public:
    static SampleSelector by_states(DDS_SampleStateMask samples, DDS_ViewStateMask views,
                                    DDS_InstanceStateMask instances) {
        return {samples, views, instances};
    }
    static SampleSelector by_condition(DDS_ReadCondition* condition) {
        SampleSelector self{DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE};
        self.selector_.condition = condition;
        self.require(condition, "condition");
        return self;
    }
    SampleSelector of_instance(const DDS_InstanceHandle_t* handle) const {
        SampleSelector self = *this;
        self.selector_.instance = handle;
        self.require(handle, "handle");
        return self;
    }
    SampleSelector of_next_instance(const DDS_InstanceHandle_t* previous) const {
        SampleSelector self = of_instance(previous);
        self.selector_.next_instance = DDS_BOOLEAN_TRUE;
        return self;
    }
    SampleSelector at_most(DDS_Long samples) const {
        SampleSelector self = *this;
        self.selector_.max_samples = samples;
        return self;
    }
    SampleSelector taking(DDS_Boolean take) const {
        SampleSelector self = *this;
        self.selector_.take = take;
        return self;
    }

    const DDS_ReadSelectorI& untyped() const { return selector_; }
    /** @return NULL when every argument is there. */
    const char* missing_argument() const { return missing_argument_; }

private:
    SampleSelector(DDS_SampleStateMask samples, DDS_ViewStateMask views,
                   DDS_InstanceStateMask instances) {
        selector_.sample_states = samples;
        selector_.view_states = views;
        selector_.instance_states = instances;
    }
    void require(const void* argument, const char* name) {
        if (argument == nullptr) {
            missing_argument_ = name;
        }
    }

    DDS_ReadSelectorI selector_{};
    const char* missing_argument_ = nullptr;
};

/** Reads or takes into a sequence of any topic type. @param data NULL: reported. */
DDS_ReturnCode_t read_or_take(DDS_DataReader* reader, PEXASequence* data,
                              const PEXASequenceElement& element, DDS_SampleInfoSeq* infos,
                              const SampleSelector& selector);

DDS_ReturnCode_t return_loan(DDS_DataReader* reader, PEXASequence* data,
                             const PEXASequenceElement& element, DDS_SampleInfoSeq* infos);

template <typename T>
struct DataReader {
    using Seq = typename Description<T>::Sequence;
    using Reader = DDS_DataReader;
    using Infos = DDS_SampleInfoSeq;
    using Handle = DDS_InstanceHandle_t;
    using Samples = DDS_SampleStateMask;
    using Views = DDS_ViewStateMask;
    using Instances = DDS_InstanceStateMask;

    static Reader* narrow(Reader* reader) {
        return narrow_reader(reader, Description<T>::table.name);
    }
    static DDS_DataReader* as_datareader(Reader* reader) { return types::as_datareader(reader); }

    static DDS_ReturnCode_t read_or_take(Reader* self, Seq* data, Infos* infos, DDS_Long most,
                                         Samples samples, Views views, Instances instances,
                                         DDS_Boolean take) {
        return run(self, data, infos, most, take,
                   SampleSelector::by_states(samples, views, instances));
    }
    static DDS_ReturnCode_t read_or_take_w_condition(Reader* self, Seq* data, Infos* infos,
                                                     DDS_Long most, DDS_ReadCondition* condition,
                                                     DDS_Boolean take) {
        return run(self, data, infos, most, take, SampleSelector::by_condition(condition));
    }
    static DDS_ReturnCode_t read_or_take_instance(Reader* self, Seq* data, Infos* infos,
                                                  DDS_Long most, const Handle* handle,
                                                  Samples samples, Views views, Instances instances,
                                                  DDS_Boolean take) {
        return run(self, data, infos, most, take,
                   SampleSelector::by_states(samples, views, instances).of_instance(handle));
    }
    static DDS_ReturnCode_t read_or_take_instance_w_condition(Reader* self, Seq* data, Infos* infos,
                                                              DDS_Long most, const Handle* handle,
                                                              DDS_ReadCondition* condition,
                                                              DDS_Boolean take) {
        return run(self, data, infos, most, take,
                   SampleSelector::by_condition(condition).of_instance(handle));
    }
    static DDS_ReturnCode_t read_or_take_next_instance(Reader* self, Seq* data, Infos* infos,
                                                       DDS_Long most, const Handle* previous,
                                                       Samples samples, Views views,
                                                       Instances instances, DDS_Boolean take) {
        return run(self, data, infos, most, take,
                   SampleSelector::by_states(samples, views, instances).of_next_instance(previous));
    }
    static DDS_ReturnCode_t read_or_take_next_instance_w_condition(Reader* self, Seq* data,
                                                                   Infos* infos, DDS_Long most,
                                                                   const Handle* previous,
                                                                   DDS_ReadCondition* condition,
                                                                   DDS_Boolean take) {
        return run(self, data, infos, most, take,
                   SampleSelector::by_condition(condition).of_next_instance(previous));
    }

    static DDS_ReturnCode_t read_next_sample(Reader* self, T* sample, DDS_SampleInfo* info) {
        return DDS_DataReader_read_or_take_next_sample_untypedI(self, sample, info,
                                                                DDS_BOOLEAN_FALSE);
    }
    static DDS_ReturnCode_t take_next_sample(Reader* self, T* sample, DDS_SampleInfo* info) {
        return DDS_DataReader_read_or_take_next_sample_untypedI(self, sample, info,
                                                                DDS_BOOLEAN_TRUE);
    }
    static DDS_ReturnCode_t return_loan(Reader* self, Seq* data, Infos* infos) {
        return types::return_loan(self, pexa::any_sequence(data), Description<T>::sequence_element,
                                  infos);
    }
    static DDS_ReturnCode_t get_key_value(Reader* self, T* sample, const Handle* handle) {
        return DDS_DataReader_get_key_value_untypedI(self, sample, handle);
    }
    static Handle lookup_instance(Reader* self, const T* sample) {
        return DDS_DataReader_lookup_instance_untypedI(self, sample);
    }
    static DDS_ReturnCode_t add_sample_to_remote_writer_queue(Reader* self, const T* sample) {
        return DDS_DataReader_add_sample_to_remote_writer_queue_untypedI(self, sample);
    }

private:
    static DDS_ReturnCode_t run(Reader* self, Seq* data, Infos* infos, DDS_Long most,
                                DDS_Boolean take, const SampleSelector& selector) {
        return types::read_or_take(self, pexa::any_sequence(data), Description<T>::sequence_element,
                                   infos, selector.at_most(most).taking(take));
    }
};

}  // namespace orvane::types
