// A filter expression, two parameters and an encoded sample, separated by newlines.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/demand.hpp"
#include "platform/dds/filter/content_filter.hpp"
#include "tests/platform/dds/filter/content_filter_types.hpp"

namespace {

using pexa::dds::ContentFilter;
using pexa::dds::FilterFault;

std::string take_line(std::string_view& input) {
    const std::size_t end = input.find('\n');
    std::string line(input.substr(0, end));
    input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
    return line;
}

/// @return whether the sample matches, if the expression can be compiled.
std::optional<bool> judge(const DDS_TypeCode& type, const std::string& expression,
                          const DDS_StringSeq& parameters, std::span<const std::byte> payload) {
    FilterFault fault;
    const auto filter = ContentFilter::compile(type, expression, &parameters, fault);
    if (filter == nullptr) {
        demand(fault.text[0] != '\0' && fault.position != 0);
        return std::nullopt;
    }
    return filter->matches(payload);
}

void run(const DDS_TypeCode& type, const std::string& expression, const DDS_StringSeq& parameters,
         std::span<const std::byte> payload) {
    const std::optional<bool> verdict = judge(type, expression, parameters, payload);
    if (!verdict) {
        return;
    }
    const std::optional<bool> opposite =
        judge(type, "NOT (" + expression + ")", parameters, payload);
    // A sample that is an encoding of the type matches one of the two, any other sample neither.
    const bool decodable = *judge(type, "level = 0 OR level <> 0", parameters, payload);
    const bool contradicting = *verdict && opposite == true;
    const bool undecided = type.extensibility == DDS_FINAL_EXTENSIBILITY && opposite &&
                           decodable != (*verdict || *opposite);
    demand(!contradicting && !undecided);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string expression = take_line(input);
    std::string first = take_line(input);
    std::string second = take_line(input);
    char* texts[] = {first.data(), second.data()};
    DDS_StringSeq parameters;
    DDS_StringSeq_initialize(&parameters);
    DDS_StringSeq_loan_contiguous(&parameters, texts, 2, 2);
    const std::span<const char> sample(input);
    for (const DDS_TypeCode* type : {&filter_test::probe_type, &filter_test::flat_type}) {
        run(*type, expression, parameters, std::as_bytes(sample));
    }
    DDS_StringSeq_unloan(&parameters);
    return 0;
}
