#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "pexa/domain.h"
#include "platform/engine/values.hpp"

/// The tests' own data type: a numbered value with a text. Plain CDR; the number is the key.
struct Probe {
    static constexpr std::size_t longest_text = 63;

    DDS_Long id = 0;
    DDS_Long value = 0;
    /// One that starts with '!' is refused by encoding.
    char text[longest_text + 1] = {};

    Probe() = default;
    Probe(DDS_Long number, DDS_Long content, std::string_view words = "");
};

/// A payload with this value is always refused by decoding.
inline constexpr DDS_Long undecodable_value = -1;
/// Has payloads with another value refused from now on.
void refuse_value(DDS_Long value);

/// The type's own name; the tests register it under others.
inline constexpr const char* probe_type_name = "test::Probe";
inline constexpr const char* keyless_type_name = "test::KeylessProbe";

[[nodiscard]] TULVTypePlugin probe_plugin();
/// The same members without a key.
[[nodiscard]] TULVTypePlugin keyless_probe_plugin();

/// Endpoint data that plugins of this file made and not yet gave back.
[[nodiscard]] int attached_endpoints();
/// Has the next attachments of endpoints refused.
void refuse_endpoints(bool refuse);

/// @return the encoding that a foreign writer would send, without the checks of the plugin.
[[nodiscard]] std::vector<std::byte> encoded_probe(const Probe& probe);
[[nodiscard]] pexa::engine::KeyHash hash_of_probe(DDS_Long id);
