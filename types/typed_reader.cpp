#include "types/typed_reader.hpp"

#include "types/endpoint_log.hpp"

namespace orvane::types {

namespace {

constexpr const char* read_context = "TDataReader_read_or_take";
constexpr const char* return_context = "TDataReader_return_loan";

/** Gives the caller's sequence the samples that the untyped operation has lent or copied. */
DDS_ReturnCode_t accept(DDS_DataReader* reader, PEXASequence* data,
                        const PEXASequenceElement& element, DDS_SampleInfoSeq* infos,
                        const DDS_UntypedSampleSeqI& result) {
    if (result.isLoan == 0) {
        return PEXASequence_set_length(data, &element, result.count) != DDS_BOOLEAN_FALSE
                   ? DDS_RETCODE_OK
                   : DDS_RETCODE_ERROR;
    }
    if (PEXASequence_loan_discontiguous(data, &element, result.loanedSamples, result.count,
                                        result.count) != DDS_BOOLEAN_FALSE) {
        return DDS_RETCODE_OK;
    }
    static_cast<void>(
        DDS_DataReader_return_loan_untypedI(reader, result.loanedSamples, result.count, infos));
    return DDS_RETCODE_ERROR;
}

}  // namespace

DDS_DataReader* narrow_reader(DDS_DataReader* reader, const char* type_name) {
    constexpr const char* context = "TDataReader_narrow";
    if (reader == nullptr) {
        log_bad_parameter(context, "null reader");
        return nullptr;
    }
    if (DDS_DataReader_compare_typeI(reader, type_name) == DDS_BOOLEAN_FALSE) {
        log_bad_parameter(context, "wrong type reader");
        return nullptr;
    }
    return reader;
}

DDS_DataReader* as_datareader(DDS_DataReader* reader) {
    if (reader == nullptr) {
        log_bad_parameter("TDataReader_as_datareader", "null reader");
    }
    return reader;
}

DDS_ReturnCode_t read_or_take(DDS_DataReader* reader, PEXASequence* data,
                              const PEXASequenceElement& element, DDS_SampleInfoSeq* infos,
                              const SampleSelector& selector) {
    const char* missing = data == nullptr ? "received_data" : selector.missing_argument();
    if (missing != nullptr) {
        log_bad_parameter(read_context, missing);
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_UntypedSampleSeqI samples{
        .length = PEXASequence_get_length(data, &element),
        .maximum = PEXASequence_get_maximum(data, &element),
        .owned = PEXASequence_has_ownership(data, &element),
        .contiguousBuffer = PEXASequence_get_contiguous_buffer(data, &element),
        .elementSize = element.size,
        .isLoan = 0,
        .loanedSamples = nullptr,
        .count = 0};
    const DDS_ReturnCode_t result =
        DDS_DataReader_read_or_take_untypedI(reader, &selector.untyped(), &samples, infos);
    if (result == DDS_RETCODE_NO_DATA) {
        PEXASequence_set_length(data, &element, 0);
    }
    return result == DDS_RETCODE_OK ? accept(reader, data, element, infos, samples) : result;
}

DDS_ReturnCode_t return_loan(DDS_DataReader* reader, PEXASequence* data,
                             const PEXASequenceElement& element, DDS_SampleInfoSeq* infos) {
    if (data == nullptr) {
        log_bad_parameter(return_context, "received_data");
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (PEXASequence_has_ownership(data, &element) != DDS_BOOLEAN_FALSE &&
        DDS_SampleInfoSeq_has_ownership(infos) != DDS_BOOLEAN_FALSE) {
        return DDS_RETCODE_OK;
    }
    const DDS_ReturnCode_t result = DDS_DataReader_return_loan_untypedI(
        reader, PEXASequence_get_discontiguous_buffer(data, &element),
        PEXASequence_get_maximum(data, &element), infos);
    if (result != DDS_RETCODE_OK) {
        return result;
    }
    if (PEXASequence_unloan(data, &element) == DDS_BOOLEAN_FALSE) {
        log_error(return_context, QEL_LOG_ANY_FAILURE_s, "unloan sequence");
        return DDS_RETCODE_ERROR;
    }
    return DDS_RETCODE_OK;
}

}  // namespace orvane::types

using orvane::types::DataReader;

#define DEFINE_READER(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                               \
        return DataReader<T>::operation arguments;                         \
    }
#define UNBRACKETED(...) __VA_ARGS__
#define DEFINE_READER_FORM(T, form, arguments, ...)                                         \
    DDS_ReturnCode_t T##DataReader_read##form(__VA_ARGS__) {                                \
        return DataReader<T>::read_or_take##form(UNBRACKETED arguments, DDS_BOOLEAN_FALSE); \
    }                                                                                       \
    DDS_ReturnCode_t T##DataReader_take##form(__VA_ARGS__) {                                \
        return DataReader<T>::read_or_take##form(UNBRACKETED arguments, DDS_BOOLEAN_TRUE);  \
    }                                                                                       \
    DDS_ReturnCode_t T##DataReader_read_or_take##form##I(__VA_ARGS__, DDS_Boolean take) {   \
        return DataReader<T>::read_or_take##form(UNBRACKETED arguments, take);              \
    }
#define DEFINE_READERS(T)                      \
    ORVANE_READER_OPERATIONS(DEFINE_READER, T) \
    ORVANE_READER_FORMS(DEFINE_READER_FORM, T)

extern "C" {

ORVANE_TOPIC_TYPES(DEFINE_READERS)

}  // extern "C"
