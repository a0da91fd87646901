#include <gtest/gtest.h>

#include <cstring>

#include "tests/platform/dds/entities/echo_process.hpp"

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--echo") == 0) {
        return echo_until_the_end();
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
