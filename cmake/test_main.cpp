// The main() of every test program: a program with a skipped test ends with a status of its own.

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    const bool skipped = testing::UnitTest::GetInstance()->skipped_test_count() > 0;
    // A failure outweighs a skipped test.
    return result == 0 && skipped ? ORVANE_SKIPPED : result;
}
