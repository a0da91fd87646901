/// @file thread_setting_names.hpp
/// @brief The names of thread settings, for reading and writing.
#pragma once

#include <array>
#include <cstddef>

#include "pexa/string.h"
#include "pexa/thread_settings.h"

namespace orvane::xml {

/// A name with all its spellings: each is an end of the longest one.
struct SettingName {
    const char* longest;
    /// Where the spellings begin; the second spelling is written.
    std::array<std::size_t, 3> beginnings;

    /// In any case.
    bool is_spelled(const char* text) const {
        for (const std::size_t beginning : beginnings) {
            if (MOSKString_iCompare(text, longest + beginning) == 0) {
                return true;
            }
        }
        return false;
    }

    const char* to_be_written() const { return longest + beginnings[1]; }
};

/// "DDS_THREAD_SETTINGS_X", "THREAD_SETTINGS_X" and "X".
constexpr SettingName setting_name(const char* longest) {
    return {longest, {0, sizeof "DDS_" - 1, sizeof "DDS_THREAD_SETTINGS_" - 1}};
}

/// "DDS_X" and "X".
constexpr SettingName constant_name(const char* longest) {
    return {longest, {0, sizeof "DDS_" - 1, 0}};
}

/// This spelling only.
constexpr SettingName plain_name(const char* name) {
    return {name, {0, 0, 0}};
}

template <typename Value>
struct NamedSetting {
    SettingName name;
    Value value;
};

inline constexpr SettingName no_mask_bits = {
    "DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT",
    {0, sizeof "DDS_" - 1, sizeof "DDS_THREAD_SETTINGS_KIND_" - 1}};

/// In the order in which they are written.
inline constexpr NamedSetting<DDS_UnsignedLong> mask_bits[] = {
    {setting_name("DDS_THREAD_SETTINGS_FLOATING_POINT"), DDS_THREAD_SETTINGS_FLOATING_POINT},
    {setting_name("DDS_THREAD_SETTINGS_STDIO"), DDS_THREAD_SETTINGS_STDIO},
    {setting_name("DDS_THREAD_SETTINGS_REALTIME_PRIORITY"), DDS_THREAD_SETTINGS_REALTIME_PRIORITY},
    {setting_name("DDS_THREAD_SETTINGS_PRIORITY_ENFORCE"), DDS_THREAD_SETTINGS_PRIORITY_ENFORCE},
};

inline constexpr SettingName default_priority = constant_name("DDS_THREAD_PRIORITY_DEFAULT");

/// All of them mean the default: no number would mean the same under every scheduling policy.
inline constexpr SettingName priorities[] = {
    default_priority,
    constant_name("DDS_THREAD_PRIORITY_HIGH"),
    plain_name("MAX_PRIORITY"),
    constant_name("DDS_THREAD_PRIORITY_ABOVE_NORMAL"),
    constant_name("DDS_THREAD_PRIORITY_NORMAL"),
    plain_name("NORM_PRIORITY"),
    constant_name("DDS_THREAD_PRIORITY_BELOW_NORMAL"),
    constant_name("DDS_THREAD_PRIORITY_LOW"),
    plain_name("MIN_PRIORITY"),
};

inline constexpr SettingName default_stack_size = constant_name("DDS_THREAD_STACK_SIZE_DEFAULT");

inline constexpr NamedSetting<DDS_ThreadSettingsCpuRotationKind> rotations[] = {
    {setting_name("DDS_THREAD_SETTINGS_CPU_NO_ROTATION"), DDS_THREAD_SETTINGS_CPU_NO_ROTATION},
    {setting_name("DDS_THREAD_SETTINGS_CPU_RR_ROTATION"), DDS_THREAD_SETTINGS_CPU_RR_ROTATION},
};

}  // namespace orvane::xml
