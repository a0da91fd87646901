#pragma once

#include <string>
#include <vector>

#include "orvane/types.h"

/// The untyped writer and reader as the typed ones see them: they record the last call and answer
/// what the test has set.
struct DDS_DataWriter {
    std::string type_name;
    DDS_ReturnCode_t result = DDS_RETCODE_OK;

    std::string call;
    const void* sample = nullptr;
    DDS_WriteParams_t params = {};
};

struct DDS_DataReader {
    std::string type_name;
    DDS_ReturnCode_t result = DDS_RETCODE_OK;
    /// Samples to lend, or, with `copies`, what to say has been copied.
    std::vector<void*> samples;
    bool copies = false;
    DDS_ReturnCode_t return_result = DDS_RETCODE_OK;

    std::string call;
    DDS_ReadSelectorI selector = {};
    DDS_UntypedSampleSeqI data = {};
    int loans_returned = 0;
};

struct DDS_DomainParticipant {
    DDS_ReturnCode_t result = DDS_RETCODE_OK;
    std::string registered_name;
    TULVTypePlugin plugin = {};
};
