#include "tests/platform/dds/filter/content_filter_fixture.hpp"

#include <algorithm>

#include <gtest/gtest.h>

namespace filter_test {

namespace {

constexpr std::uint16_t extended_id = 0x3f01;
constexpr std::uint16_t list_end_id = 0x3f02;
constexpr std::uint16_t ignored_id = 0x3f03;

}  // namespace

std::vector<Encoding> all_encodings() {
    std::vector<Encoding> encodings;
    for (unsigned bits = 0; bits < 16; ++bits) {
        encodings.push_back({(bits & 1) == 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0});
    }
    return encodings;
}

std::string to_string(const Encoding& encoding) {
    return std::string(encoding.little_endian ? "little-endian" : "big-endian") +
           (encoding.extended_headers ? ", extended headers" : "") +
           (encoding.members_backwards ? ", backwards" : "") +
           (encoding.foreign_members ? ", foreign members" : "");
}

Encoder::Encoder(const Encoding& encoding, bool parameter_list)
    : encoding_(encoding), parameter_list_(parameter_list) {}

// Everything is aligned to 4 at most, and so are members: a value can be encoded by itself.
void Encoder::align() {
    while (body_.size() % 4 != 0) {
        body_.push_back(std::byte{0});
    }
}

void Encoder::put(std::uint64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t shift = 8 * (encoding_.little_endian ? i : size - 1 - i);
        body_.push_back(static_cast<std::byte>((value >> shift) & 0xff));
    }
}

Encoder& Encoder::number(std::int64_t value) {
    align();
    put(static_cast<std::uint64_t>(value), 4);
    return *this;
}

Encoder& Encoder::numbers(std::initializer_list<std::int64_t> values) {
    for (const std::int64_t value : values) {
        number(value);
    }
    return *this;
}

Encoder& Encoder::text(const std::string& value) {
    number(static_cast<std::int64_t>(value.size()) + 1);
    for (const char c : value) {
        put(static_cast<unsigned char>(c), 1);
    }
    put(0, 1);
    return *this;
}

Encoder& Encoder::member(std::uint32_t id, const Encoder& value, bool must_understand) {
    align();
    if (encoding_.extended_headers) {
        put(extended_id | 0x4000U, 2);
        put(8, 2);
        put(id | (must_understand ? 0x40000000U : 0U), 4);
        put(value.body_.size(), 4);
    } else {
        put(id | (must_understand ? 0x4000U : 0U), 2);
        put(value.body_.size(), 2);
    }
    body_.insert(body_.end(), value.body_.begin(), value.body_.end());
    return *this;
}

Encoder& Encoder::members(std::vector<std::pair<std::uint32_t, Encoder>> list) {
    if (encoding_.members_backwards) {
        std::reverse(list.begin(), list.end());
    }
    for (const auto& [id, value] : list) {
        if (encoding_.foreign_members) {
            member(99, this->value().text("unknown"));
            align();
            put(ignored_id | 0x4000U, 2);
            put(4, 2);
            put(0xffffffff, 4);
        }
        member(id, value);
    }
    return list_end();
}

Encoder& Encoder::list_end() {
    align();
    put(list_end_id | 0x4000U, 2);
    put(0, 2);
    return *this;
}

Encoder Encoder::value() const {
    return Encoder(encoding_, parameter_list_);
}

Bytes Encoder::payload() const {
    const int identifier = (parameter_list_ ? 2 : 0) + (encoding_.little_endian ? 1 : 0);
    Bytes bytes{std::byte{0}, static_cast<std::byte>(identifier), std::byte{0}, std::byte{0}};
    bytes.insert(bytes.end(), body_.begin(), body_.end());
    return bytes;
}

Bytes encoded_probe(const Encoding& encoding) {
    Encoder probe(encoding, true);
    const auto value = [&] { return probe.value(); };
    Encoder command = value();
    command.members({{0, value().number(7)}, {3, value().text("motor 7")}});
    Encoder extra = value();
    extra.members({{0, value().number(-1)}, {1, value().text("x")}, {2, value().number(1)}});
    probe.members({{0, value().numbers({-1062731775, 42})},
                   {1, value().number(500)},
                   {2, value().number(1)},
                   {3, value().text("it's on")},
                   {4, command},
                   {5, value().numbers({1, 2, 3, 4})},
                   {300, extra}});
    return probe.payload();
}

Bytes encoded_flat(const Encoding& encoding) {
    Encoder flat(encoding, false);
    flat.numbers({-1062731775, 42, 500, 1}).text("it's on");
    flat.number(7).text("motor 7");
    flat.numbers({1, 2, 3, 4});
    flat.number(-1).text("x").number(1);
    return flat.payload();
}

pexa::dds::ContentFilterPointer compile(const DDS_TypeCode& type, const std::string& expression,
                                        const Parameters& parameters,
                                        pexa::dds::FilterFault& fault) {
    std::vector<char*> texts;
    for (const char* parameter : parameters) {
        texts.push_back(const_cast<char*>(parameter));
    }
    const auto count = static_cast<DDS_Long>(texts.size());
    DDS_StringSeq sequence;
    DDS_StringSeq_initialize(&sequence);
    DDS_StringSeq_loan_contiguous(&sequence, texts.data(), count, count);
    auto filter = pexa::dds::ContentFilter::compile(type, expression, &sequence, fault);
    DDS_StringSeq_unloan(&sequence);
    return filter;
}

pexa::dds::ContentFilterPointer compiled(const DDS_TypeCode& type, const std::string& expression,
                                         const Parameters& parameters) {
    pexa::dds::FilterFault fault;
    auto filter = compile(type, expression, parameters, fault);
    EXPECT_NE(filter, nullptr) << expression << ": " << fault.text.data();
    return filter;
}

}  // namespace filter_test
