// What the tests of the administration share.
#pragma once

#include <gtest/gtest.h>

#include "orvane/admin.h"
#include "tests/support/faults.hpp"
#include "tests/support/logger.hpp"
#include "tests/support/node.hpp"
#include "tests/support/text.hpp"

namespace orvane::test {

/// Where all samples are written.
inline constexpr const char* write_function = "DDS_DataWriter_write_untypedI";

/// Ends with the settings that the middleware's logger has in a new process.
class AdminTest : public testing::Test {
protected:
    ~AdminTest() override {
        PEXA_Config_Logger_set_verbosity(middleware(), PEXA_CONFIG_LOG_VERBOSITY_ERROR);
        PEXA_Config_Logger_set_print_format(middleware(), PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT);
        QEL_KX_DDSEntities_gInitialStateSent = 0;
    }
};

}  // namespace orvane::test
