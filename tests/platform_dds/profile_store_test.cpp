#include "dds/profile_store.hpp"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::string>;

TEST(ProfileStore, FindsProfilesByLibraryAndName) {
    pexa::dds::ProfileStore store;
    store.add("one", "b").writer.get().transport_priority.value = 1;
    store.add("one", "a");
    store.add("two", "b").writer.get().transport_priority.value = 2;

    EXPECT_EQ(store.libraries(), (Names{"one", "two"}));
    EXPECT_EQ(store.profiles("one"), (Names{"a", "b"}));
    EXPECT_EQ(store.profiles("three"), Names{});
    ASSERT_NE(store.find("two", "b"), nullptr);
    EXPECT_EQ(store.find("two", "b")->writer.get().transport_priority.value, 2);
    EXPECT_EQ(store.find("two", "a"), nullptr);
    EXPECT_EQ(store.find("three", "a"), nullptr);
    EXPECT_EQ(store.add("one", "b").writer.get().transport_priority.value, 1) << "not made anew";
}

}  // namespace
