#pragma once

#include <atomic>
#include <string>

#include "orvane/types.h"
#include "pexa/type_plugin.h"
#include "platform/engine/values.hpp"
#include "tests/support/text.hpp"

/// A sample of a keyed type: the number is the key.
class Probe : public QEL_KX_ADMIN_CommandResponse {
public:
    explicit Probe(DDS_Long id = 0, DDS_Long value = 0, const std::string& text = "");
    Probe(const Probe& other);
    Probe& operator=(const Probe& other);
    ~Probe() { QEL_KX_ADMIN_CommandResponse_finalize(this); }

    DDS_Long id() const { return hostAndAppId.rtps_host_id; }
    DDS_Long value() const { return invocation; }
    const char* text() const { return message; }
};
static_assert(sizeof(Probe) == sizeof(QEL_KX_ADMIN_CommandResponse), "a sample of that type");

/// The type's own name; the tests register it under others.
inline constexpr const char* probe_type_name = "QEL::KX::ADMIN::CommandResponse";

/// The type's plugin, with the refusals of this file.
TULVTypePlugin probe_plugin();
/// The same members without a key.
TULVTypePlugin keyless_probe_plugin();

/// A payload with this value is refused by decoding.
inline std::atomic<DDS_Long> undecodable_value = -1;
/// Whether attachments of endpoints are refused.
inline std::atomic<bool> refusing_endpoints = false;
/// Endpoint data that plugins of this file made and not yet gave back.
inline std::atomic<int> attached_endpoints = 0;

/// @return the encoding that a foreign writer would send, without the checks of the plugin.
orvane::test::Bytes encoded_probe(const Probe& probe);
orvane::test::Bytes encoded_key(DDS_Long id);
pexa::engine::KeyHash hash_of_probe(DDS_Long id);
