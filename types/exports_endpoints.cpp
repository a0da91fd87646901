#include "types/typed_reader.hpp"
#include "types/typed_writer.hpp"

using orvane::types::DataReaderOperations;
using orvane::types::DataWriterOperations;

#define DEFINE_WRITER(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                               \
        return DataWriterOperations<T>::operation arguments;               \
    }
#define DEFINE_READER(Prefix, T, Result, operation, parameters, arguments) \
    Result Prefix##_##operation parameters {                               \
        return DataReaderOperations<T, T##Seq>::operation arguments;       \
    }
#define UNBRACKETED(...) __VA_ARGS__
#define DEFINE_READER_FORM(T, form, arguments, ...)                                              \
    DDS_ReturnCode_t T##DataReader_read##form(__VA_ARGS__) {                                     \
        return DataReaderOperations<T, T##Seq>::read_or_take##form(UNBRACKETED arguments,        \
                                                                   DDS_BOOLEAN_FALSE);           \
    }                                                                                            \
    DDS_ReturnCode_t T##DataReader_take##form(__VA_ARGS__) {                                     \
        return DataReaderOperations<T, T##Seq>::read_or_take##form(UNBRACKETED arguments,        \
                                                                   DDS_BOOLEAN_TRUE);            \
    }                                                                                            \
    DDS_ReturnCode_t T##DataReader_read_or_take##form##I(__VA_ARGS__, DDS_Boolean take) {        \
        return DataReaderOperations<T, T##Seq>::read_or_take##form(UNBRACKETED arguments, take); \
    }
#define DEFINE_TYPE(T)                         \
    ORVANE_WRITER_OPERATIONS(DEFINE_WRITER, T) \
    ORVANE_READER_OPERATIONS(DEFINE_READER, T) \
    ORVANE_READER_FORMS(DEFINE_READER_FORM, T)

extern "C" {

ORVANE_TOPIC_TYPES(DEFINE_TYPE)

}  // extern "C"
