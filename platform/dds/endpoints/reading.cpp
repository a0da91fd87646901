#include "platform/dds/endpoints/reader.hpp"
#include "platform/dds/interface/value_conversion.hpp"

namespace pexa::dds {

namespace {

/// Checks that the two sequences can take the result together.
/// @param limit the most samples that they can take
Status check_sequences(const Operation& operation, const DDS_ReadSelectorI& selector,
                       const DDS_UntypedSampleSeqI& data, DDS_SampleInfoSeq& infos,
                       DDS_Long& limit) {
    if (selector.max_samples != DDS_LENGTH_UNLIMITED && selector.max_samples < 1) {
        return operation.bad_parameter("max_samples");
    }
    // The first use of the operations initialises a record that is not, so they come before any
    // look at its members.
    if (DDS_SampleInfoSeq_get_length(&infos) != data.length ||
        DDS_SampleInfoSeq_get_maximum(&infos) != data.maximum ||
        (DDS_SampleInfoSeq_has_ownership(&infos) != 0) != (data.owned != 0)) {
        return operation.precondition_not_met("the sequences agree");
    }
    if (data.owned == 0) {
        return operation.precondition_not_met("the sequences are not on loan");
    }
    if (data.maximum == 0) {
        limit = selector.max_samples;
        return Status::ok;
    }
    if (data.contiguousBuffer == nullptr || data.elementSize == 0) {
        return operation.bad_parameter("data");
    }
    if (selector.max_samples > data.maximum) {
        return operation.precondition_not_met("max_samples is at most the sequences' maximum");
    }
    limit = selector.max_samples == DDS_LENGTH_UNLIMITED ? data.maximum : selector.max_samples;
    return Status::ok;
}

}  // namespace

Status DataReader::read_or_take(const Operation& operation, const DDS_ReadSelectorI& selector,
                                DDS_UntypedSampleSeqI& data, DDS_SampleInfoSeq& infos) {
    DDS_Long limit = 0;
    Status result = check_sequences(operation, selector, data, infos, limit);
    if (result != Status::ok) {
        return result;
    }
    data.isLoan = 0;
    data.loanedSamples = nullptr;
    data.count = 0;
    LoanBook::Entry entry = loans_.take_blank();
    Loan& loan = entry.front();
    result = receive(operation, selector, limit, loan.received);
    if (result == Status::ok) {
        note_infos(loan);
        result = data.maximum == 0 ? lend(operation, loan) : copy(operation, loan, data, infos);
    }
    if (result == Status::ok && data.maximum == 0) {
        return hand_out(operation, entry, data, infos);
    }
    loans_.put_back(entry);
    if (result == Status::no_data) {
        DDS_SampleInfoSeq_set_length(&infos, 0);
    }
    return result;
}

Status DataReader::receive(const Operation& operation, const DDS_ReadSelectorI& selector,
                           DDS_Long max_samples, std::vector<engine::Sample>& received) {
    const engine::EntityId id = engine_id();
    if (id == engine::no_entity) {
        return Status::not_enabled;
    }
    engine::StateMask states{selector.sample_states, selector.view_states,
                             selector.instance_states};
    if (const ReadCondition* condition = object_of(selector.condition)) {
        if (condition->reader() != this) {
            return operation.precondition_not_met("the condition is of this reader");
        }
        states = condition->states();
    }
    const auto access = selector.take != 0 ? engine::Access::take : engine::Access::read;
    const bool named = selector.instance != nullptr && selector.instance->isValid != 0;
    const std::optional<engine::KeyHash> instance =
        named ? to_key_hash(*selector.instance) : std::nullopt;
    if (named ? !instance : selector.instance != nullptr && selector.next_instance == 0) {
        return operation.bad_parameter("instance");
    }
    Status status = Status::ok;
    if (selector.next_instance != 0) {
        status = engine::read_or_take_next_instance(id, access, states, max_samples,
                                                    instance ? &*instance : nullptr, received);
    } else if (instance) {
        status =
            engine::read_or_take_instance(id, access, states, max_samples, *instance, received);
    } else {
        status = engine::read_or_take(id, access, states, max_samples, received);
    }
    if (status == Status::bad_parameter && instance) {
        return operation.bad_parameter("instance");
    }
    return status == Status::ok || status == Status::no_data
               ? status
               : operation.failed("receiving", status);
}

void DataReader::note_infos(Loan& loan) {
    loan.infos.reserve(loan.received.size());
    for (const engine::Sample& received : loan.received) {
        const engine::SampleInfo& info = received.info;
        loan.infos.push_back(
            to_sample_info(info, typed().handle_of_instance(info.instance), writer_handle(info)));
    }
}

Status DataReader::lend(const Operation& operation, Loan& loan) {
    loan.samples.reserve(loan.received.size());
    bool exhausted = false;
    {
        const auto lock = typed().lock();
        for (std::size_t i = 0; i < loan.received.size() && !exhausted; ++i) {
            void* sample = typed().codec().lend();
            if (sample == nullptr) {
                exhausted = true;
            } else if (decode(loan.received[i], sample) == Status::ok) {
                loan.infos[loan.samples.size()] = loan.infos[i];
                loan.samples.push_back(sample);
            } else {
                typed().codec().give_back(sample);
            }
        }
    }
    if (exhausted) {
        take_back(loan);
        return operation.out_of_memory();
    }
    return decoded(operation, loan, loan.samples.size());
}

Status DataReader::hand_out(const Operation& operation, LoanBook::Entry& entry,
                            DDS_UntypedSampleSeqI& data, DDS_SampleInfoSeq& infos) {
    Loan& loan = entry.front();
    const auto count = static_cast<DDS_Long>(loan.samples.size());
    if (DDS_SampleInfoSeq_loan_contiguous(&infos, loan.infos.data(), count, count) == 0) {
        take_back(loan);
        loans_.put_back(entry);
        return operation.failed("lending the sample infos", Status::error);
    }
    data.isLoan = 1;
    data.loanedSamples = loan.samples.data();
    data.count = count;
    loans_.enter(entry);
    return Status::ok;
}

Status DataReader::copy(const Operation& operation, Loan& loan, DDS_UntypedSampleSeqI& data,
                        DDS_SampleInfoSeq& infos) {
    auto* sample = static_cast<std::byte*>(data.contiguousBuffer);
    std::size_t count = 0;
    {
        const auto lock = typed().lock();
        for (std::size_t i = 0; i < loan.received.size(); ++i) {
            if (decode(loan.received[i], sample) == Status::ok) {
                loan.infos[count++] = loan.infos[i];
                sample += data.elementSize;
            }
        }
    }
    const Status result = decoded(operation, loan, count);
    if (result != Status::ok) {
        return result;
    }
    data.count = static_cast<DDS_Long>(count);
    if (DDS_SampleInfoSeq_set_length(&infos, data.count) == 0) {
        return operation.failed("filling the sample infos", Status::error);
    }
    for (DDS_Long i = 0; i < data.count; ++i) {
        *DDS_SampleInfoSeq_get_reference(&infos, i) = loan.infos[static_cast<std::size_t>(i)];
    }
    return Status::ok;
}

Status DataReader::decoded(const Operation& operation, Loan& loan, std::size_t count) {
    if (count < loan.received.size()) {
        operation.warn("samples that cannot be decoded were skipped");
    }
    loan.infos.resize(count);
    loan.received.clear();
    return count > 0 ? Status::ok : Status::no_data;
}

Status DataReader::read_or_take_next_sample(const Operation& operation, void* sample,
                                            DDS_SampleInfo& info, DDS_Boolean take) {
    DDS_ReadSelectorI selector{};
    selector.sample_states = DDS_NOT_READ_SAMPLE_STATE;
    selector.view_states = DDS_ANY_VIEW_STATE;
    selector.instance_states = DDS_ANY_INSTANCE_STATE;
    selector.take = take;
    Loan loan;
    for (;;) {
        Status result = receive(operation, selector, 1, loan.received);
        if (result != Status::ok) {
            return result;
        }
        note_infos(loan);
        std::size_t count = 0;
        {
            const auto lock = typed().lock();
            count = decode(loan.received.front(), sample) == Status::ok ? 1 : 0;
        }
        result = decoded(operation, loan, count);
        if (result == Status::ok) {
            info = loan.infos.front();
            return result;
        }
    }
}

Status DataReader::return_loan(const Operation& operation, void** samples, DDS_Long count,
                               DDS_SampleInfoSeq& infos) {
    LoanBook::Entry entry = loans_.end(samples, count, infos.contiguousBuffer);
    if (entry.empty()) {
        return operation.precondition_not_met("the samples were lent by this reader");
    }
    take_back(entry.front());
    loans_.put_back(entry);
    return DDS_SampleInfoSeq_unloan(&infos) != 0
               ? Status::ok
               : operation.failed("ending the loan of the sample infos", Status::error);
}

void DataReader::take_back(const Loan& loan) {
    const auto lock = typed().lock();
    for (void* sample : loan.samples) {
        typed().codec().give_back(sample);
    }
}

Status DataReader::decode(const engine::Sample& received, void* sample) {
    const std::span<const std::byte> payload = received.payload.bytes();
    if (received.payload.kind() == engine::PayloadKind::data) {
        return typed().codec().decode(payload, sample);
    }
    // A keyless type, or a peer that sent only a key hash, leaves nothing to fill in.
    return payload.empty() || !typed().type().keyed() ? Status::ok
                                                      : typed().codec().decode_key(payload, sample);
}

}  // namespace pexa::dds

namespace dds = pexa::dds;

DDS_ReturnCode_t DDS_DataReader_read_or_take_untypedI(DDS_DataReader* self,
                                                      const DDS_ReadSelectorI* selector,
                                                      DDS_UntypedSampleSeqI* data,
                                                      DDS_SampleInfoSeq* infos) {
    return dds::call(__func__, self, &dds::DataReader::read_or_take,
                     dds::required("selector", selector), dds::required("data", data),
                     dds::required("infos", infos));
}

DDS_ReturnCode_t DDS_DataReader_read_or_take_next_sample_untypedI(DDS_DataReader* self,
                                                                  void* sample,
                                                                  DDS_SampleInfo* info,
                                                                  DDS_Boolean take) {
    return dds::call(__func__, self, &dds::DataReader::read_or_take_next_sample,
                     dds::required("sample", sample), dds::required("info", info), take);
}

DDS_ReturnCode_t DDS_DataReader_return_loan_untypedI(DDS_DataReader* self, void** loanedSamples,
                                                     DDS_Long count, DDS_SampleInfoSeq* infos) {
    return dds::call(__func__, self, &dds::DataReader::return_loan, loanedSamples, count,
                     dds::required("infos", infos));
}

DDS_ReturnCode_t DDS_DataReader_add_sample_to_remote_writer_queue_untypedI(DDS_DataReader* self,
                                                                           const void* sample) {
    return dds::call(
        __func__, self, [](dds::DataReader&, const void*) { return pexa::Status::unsupported; },
        dds::required("sample", sample));
}
