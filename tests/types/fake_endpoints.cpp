#include "tests/types/fake_endpoints.hpp"

#include "pexa/domain.h"
#include "pexa/sequence_define.hpp"

namespace {

constexpr PEXASequenceElement info_element =
    pexa::plain_sequence_element<DDS_SampleInfo>("DDS_SampleInfoSeq");

DDS_ReturnCode_t record(DDS_DataWriter* writer, const char* call, const void* sample,
                        const DDS_WriteParams_t* params) {
    writer->call = call;
    writer->sample = sample;
    if (params != nullptr) {
        writer->params = *params;
    }
    return writer->result;
}

DDS_InstanceHandle_t some_handle() {
    return {.keyHash = {.value = {7}, .length = 16}, .isValid = 1};
}

}  // namespace

PEXA_SEQUENCE_DEFINE(DDS_SampleInfoSeq, DDS_SampleInfo, info_element);

extern "C" {

const DDS_WriteParams_t DDS_WRITEPARAMS_DEFAULT = {
    .handle = {.keyHash = {.value = {}, .length = 0}, .isValid = 0},
    .source_timestamp = {.sec = -1, .nanosec = 0xffffffff}};

DDS_ReturnCode_t DDS_DomainParticipant_register_type(DDS_DomainParticipant* self,
                                                     const char* typeName,
                                                     const TULVTypePlugin* plugin,
                                                     const void* /*properties*/) {
    self->registered_name = typeName;
    self->plugin = *plugin;
    return self->result;
}
DDS_ReturnCode_t DDS_DomainParticipant_unregister_type(DDS_DomainParticipant* self,
                                                       const char* typeName) {
    self->registered_name = std::string("not ") + typeName;
    return self->result;
}

DDS_Boolean DDS_DataWriter_compare_typeI(DDS_DataWriter* self, const char* typeName) {
    return self->type_name == typeName;
}
DDS_ReturnCode_t DDS_DataWriter_write_untypedI(DDS_DataWriter* self, const void* sample,
                                               const DDS_WriteParams_t* params) {
    return record(self, "write", sample, params);
}
DDS_ReturnCode_t DDS_DataWriter_dispose_untypedI(DDS_DataWriter* self, const void* sample,
                                                 const DDS_WriteParams_t* params) {
    return record(self, "dispose", sample, params);
}
DDS_ReturnCode_t DDS_DataWriter_unregister_instance_untypedI(DDS_DataWriter* self,
                                                             const void* sample,
                                                             const DDS_WriteParams_t* params) {
    return record(self, "unregister_instance", sample, params);
}
DDS_InstanceHandle_t DDS_DataWriter_register_instance_untypedI(DDS_DataWriter* self,
                                                               const void* sample,
                                                               const DDS_WriteParams_t* params) {
    record(self, "register_instance", sample, params);
    return some_handle();
}
DDS_ReturnCode_t DDS_DataWriter_get_key_value_untypedI(DDS_DataWriter* self, void* sample,
                                                       const DDS_InstanceHandle_t* /*handle*/) {
    return record(self, "get_key_value", sample, nullptr);
}
DDS_InstanceHandle_t DDS_DataWriter_lookup_instance_untypedI(DDS_DataWriter* self,
                                                             const void* sample) {
    record(self, "lookup_instance", sample, nullptr);
    return some_handle();
}

DDS_Boolean DDS_DataReader_compare_typeI(DDS_DataReader* self, const char* typeName) {
    return self->type_name == typeName;
}
DDS_ReturnCode_t DDS_DataReader_read_or_take_untypedI(DDS_DataReader* self,
                                                      const DDS_ReadSelectorI* selector,
                                                      DDS_UntypedSampleSeqI* data,
                                                      DDS_SampleInfoSeq* /*infos*/) {
    self->call = "read_or_take";
    self->selector = *selector;
    self->data = *data;
    data->isLoan = self->copies ? 0 : 1;
    data->loanedSamples = self->copies ? nullptr : self->samples.data();
    data->count = static_cast<DDS_Long>(self->samples.size());
    return self->result;
}
DDS_ReturnCode_t DDS_DataReader_read_or_take_next_sample_untypedI(DDS_DataReader* self,
                                                                  void* /*sample*/,
                                                                  DDS_SampleInfo* /*info*/,
                                                                  DDS_Boolean take) {
    self->call = take != 0 ? "take_next_sample" : "read_next_sample";
    return self->result;
}
DDS_ReturnCode_t DDS_DataReader_return_loan_untypedI(DDS_DataReader* self, void** loanedSamples,
                                                     DDS_Long count, DDS_SampleInfoSeq* /*infos*/) {
    self->call = "return_loan";
    self->data.loanedSamples = loanedSamples;
    self->data.count = count;
    ++self->loans_returned;
    return self->return_result;
}
DDS_ReturnCode_t DDS_DataReader_get_key_value_untypedI(DDS_DataReader* self, void* /*sample*/,
                                                       const DDS_InstanceHandle_t* /*handle*/) {
    self->call = "get_key_value";
    return self->result;
}
DDS_InstanceHandle_t DDS_DataReader_lookup_instance_untypedI(DDS_DataReader* self,
                                                             const void* /*sample*/) {
    self->call = "lookup_instance";
    return some_handle();
}
DDS_ReturnCode_t DDS_DataReader_add_sample_to_remote_writer_queue_untypedI(DDS_DataReader* self,
                                                                           const void* /*sample*/) {
    self->call = "add_sample_to_remote_writer_queue";
    return DDS_RETCODE_UNSUPPORTED;
}

}  // extern "C"
