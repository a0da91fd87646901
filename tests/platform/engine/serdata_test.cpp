#include <dds/dds.h>
#include <dds/ddsi/q_radmin.h>
#include <gtest/gtest.h>

#include <cstring>

#include "platform/engine/cyclone/serdata.hpp"
#include "tests/platform/engine/note_node.hpp"

namespace pexa::engine::cyclone {
namespace {

// One fragment as Cyclone's receive buffers hold it.
class Fragment {
public:
    Fragment(const Bytes& whole, std::uint32_t begin, std::uint32_t end)
        : memory_(sizeof(nn_rmsg) + whole.size()) {
        rdata_.rmsg = reinterpret_cast<nn_rmsg*>(memory_.data());
        rdata_.min = begin;
        rdata_.maxp1 = end;
        std::memcpy(NN_RMSG_PAYLOADOFF(rdata_.rmsg, 0), whole.data() + begin,
                    std::min<std::size_t>(end, whole.size()) - begin);
    }
    nn_rdata* link(nn_rdata* next) {
        rdata_.nextfrag = next;
        return &rdata_;
    }

private:
    Bytes memory_;
    nn_rdata rdata_{};
};

TEST(Fragments, AreJoinedWhenTheyCoverThePayload) {
    const Bytes whole = note(3, "eightlet");
    const auto size = static_cast<std::uint32_t>(whole.size());
    const struct {
        const char* what;
        std::vector<std::pair<std::uint32_t, std::uint32_t>> ranges;
        bool joined;
    } cases[] = {
        {"one", {{0, size}}, true},
        {"two", {{0, 9}, {9, size}}, true},
        {"overlapping", {{0, 12}, {5, 15}, {7, size}}, true},
        {"contained", {{0, 15}, {3, 9}, {15, size}}, true},
        {"gap", {{0, 8}, {9, size}}, false},
        {"no start", {{4, size}}, false},
        {"no end", {{0, size - 1}}, false},
        {"longer than announced", {{0, 12}, {12, size + 4}}, false},
    };
    ddsi_sertype* const type = make_sertype(SharedType::of(note_type()));
    for (const auto& [what, ranges, joined] : cases) {
        SCOPED_TRACE(what);
        std::vector<Fragment> fragments;
        for (const auto& [begin, end] : ranges) {
            fragments.emplace_back(whole, begin, end);
        }
        nn_rdata* chain = nullptr;
        for (std::size_t i = fragments.size(); i-- > 0;) {
            chain = fragments[i].link(chain);
        }
        const SerdataPtr data(
            static_cast<Serdata*>(ddsi_serdata_from_ser(type, SDK_DATA, chain, size)));
        ASSERT_EQ(data != nullptr, joined);
        if (data) {
            EXPECT_EQ(Bytes(data->bytes().begin(), data->bytes().end()), whole);
            EXPECT_EQ(data->key, note_hash(3));
        }
    }
    ddsi_sertype_unref(type);
}

TEST(KeyHashAlone, MakesASampleOfTheInstanceWithoutPayload) {
    ddsi_sertype* const type = make_sertype(SharedType::of(note_type()));
    KeyHash whole = note_hash(6);
    whole.back() = std::byte{9};
    ddsi_keyhash hash;
    std::memcpy(hash.value, whole.data(), sizeof hash.value);
    const SerdataPtr data(static_cast<Serdata*>(ddsi_serdata_from_keyhash(type, &hash)));
    const SerdataPtr written = make_serdata(type, SDK_DATA, note(6, "").size());
    written->set_key(whole);
    EXPECT_TRUE(ddsi_serdata_eqkey(data.get(), written.get()));
    EXPECT_EQ(data->hash, written->hash);
    EXPECT_TRUE(data->bytes().empty());
    ddsi_sertype_unref(type);
}

}  // namespace
}  // namespace pexa::engine::cyclone
