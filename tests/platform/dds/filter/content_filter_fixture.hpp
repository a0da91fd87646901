#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/dds/filter/content_filter.hpp"
#include "tests/platform/dds/filter/content_filter_types.hpp"

namespace filter_test {

using Bytes = std::vector<std::byte>;

/// How a sample is encoded.
struct Encoding {
    bool little_endian = true;
    bool extended_headers = false;
    bool members_backwards = false;
    /// Members that the type does not know stand between the others.
    bool foreign_members = false;
};

/// All combinations of the above.
std::vector<Encoding> all_encodings();
std::string to_string(const Encoding& encoding);

/// Writes plain CDR and parameter lists of either byte order.
class Encoder {
public:
    explicit Encoder(const Encoding& encoding, bool parameter_list);

    Encoder& number(std::int64_t value);
    Encoder& numbers(std::initializer_list<std::int64_t> values);
    Encoder& text(const std::string& value);
    /// A header and the member behind it.
    Encoder& member(std::uint32_t id, const Encoder& value, bool must_understand = false);
    /// Members in the order of the encoding, then the end of the list.
    Encoder& members(std::vector<std::pair<std::uint32_t, Encoder>> list);
    Encoder& list_end();
    /// An encoder of the same kind for a member's value.
    [[nodiscard]] Encoder value() const;

    [[nodiscard]] Bytes payload() const;

private:
    void align();
    void put(std::uint64_t value, std::size_t size);

    Encoding encoding_;
    bool parameter_list_;
    Bytes body_;
};

/// target (-1062731775, 42), level 500, kind BUSY, name "it's on", command FAILED with note
/// "motor 7", extra (-1, "x", ON).
Bytes encoded_probe(const Encoding& encoding);
Bytes encoded_flat(const Encoding& encoding);

using Parameters = std::vector<const char*>;

/// Compiles with parameters of which a NULL one is missing.
pexa::dds::ContentFilterPointer compile(const DDS_TypeCode& type, const std::string& expression,
                                        const Parameters& parameters,
                                        pexa::dds::FilterFault& fault);
/// As above; an expression that does not compile fails the test.
pexa::dds::ContentFilterPointer compiled(const DDS_TypeCode& type, const std::string& expression,
                                         const Parameters& parameters = {});

}  // namespace filter_test
