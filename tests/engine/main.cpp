#include <gtest/gtest.h>

#include <cstring>

#include "tests/engine/peer.hpp"

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--peer") == 0) {
        return pexa::engine::serve_commands();
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
