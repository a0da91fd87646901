#include "platform/dds/filter/content_filter.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <new>

#include "platform/dds/filter/fields.hpp"
#include "platform/dds/filter/parser.hpp"
#include "platform/dds/interface/standard_sequences.hpp"
#include "platform/dds/interface/string_list.hpp"

namespace pexa::dds {
namespace {

/// The caller's texts; a parameter without data is missing.
struct Sources {
    std::string_view expression;
    std::array<std::string_view, filter_parameter_limit> parameters;
};

Success collect(std::string_view expression, const DDS_StringSeq* parameters, Sources& sources,
                FilterFault& fault) {
    sources.expression = expression;
    if (expression.size() > filter_text_limit) {
        return set_fault(fault, {filter_text_limit}, "longer than %zu characters",
                         filter_text_limit);
    }
    const DDS_Long length = parameters != nullptr ? length_of(*parameters) : 0;
    const auto count = std::min(static_cast<std::size_t>(length), filter_parameter_limit);
    for (std::size_t i = 0; i < count; ++i) {
        const char* text = element_of(*parameters, static_cast<DDS_Long>(i));
        sources.parameters[i] = view_of(text);
        if (sources.parameters[i].size() > filter_text_limit) {
            return set_fault(fault, {filter_text_limit, static_cast<int>(i)},
                             "longer than %zu characters", filter_text_limit);
        }
    }
    return true;
}

std::size_t size_of(const Sources& sources) {
    std::size_t size = sources.expression.size();
    for (const std::string_view parameter : sources.parameters) {
        size += parameter.size();
    }
    return size;
}

std::span<char> append(char*& end, std::string_view text) {
    if (text.data() == nullptr) {
        return {};
    }
    std::memcpy(end, text.data(), text.size());
    const std::span<char> copy(end, text.size());
    end += text.size();
    return copy;
}

FilterTexts copy_to(char* buffer, const Sources& sources) {
    FilterTexts texts;
    texts.expression = append(buffer, sources.expression);
    for (std::size_t i = 0; i < sources.parameters.size(); ++i) {
        texts.parameters[i] = append(buffer, sources.parameters[i]);
    }
    return texts;
}

void set_no_memory(FilterFault& fault) {
    std::snprintf(fault.text.data(), fault.text.size(), "no memory for the filter");
}

}  // namespace

ContentFilterPointer ContentFilter::compile(const DDS_TypeCode& type, std::string_view expression,
                                            const DDS_StringSeq* parameters,
                                            FilterFault& fault) noexcept {
    Sources sources;
    if (!collect(expression, parameters, sources, fault)) {
        return nullptr;
    }
    void* memory = QELOsapiHeap_allocateStructureOfSize(sizeof(ContentFilter));
    if (memory == nullptr) {
        set_no_memory(fault);
        return nullptr;
    }
    auto* const filter = new (memory) ContentFilter();
    ContentFilterPointer owner(filter);
    // One byte more, for an empty size would give no buffer.
    void* buffer = QELOsapiHeap_allocateBytes(size_of(sources) + 1);
    filter->texts_.reset(static_cast<char*>(buffer));
    if (buffer == nullptr) {
        set_no_memory(fault);
        return nullptr;
    }
    FilterTexts texts = copy_to(filter->texts_.get(), sources);
    FilterParser parser(type, texts, filter->program_, fault);
    if (!parser.parse()) {
        return nullptr;
    }
    return owner;
}

void FreeContentFilter::operator()(const ContentFilter* filter) const {
    filter->~ContentFilter();
    QELOsapiHeap_freeStructureBytes(const_cast<ContentFilter*>(filter));
}

bool ContentFilter::matches(std::span<const std::byte> payload) const noexcept {
    FilterFields fields;
    return read_fields(program_, payload, fields) == Status::ok && program_.run(fields);
}

}  // namespace pexa::dds
