#include "tests/platform/dds/filter/content_filter_types.hpp"

#include <array>

namespace filter_test {

namespace {

DDS_TypeCodeMember member(const char* name, DDS_Long id, const DDS_TypeCode* type,
                          DDS_Long label = 0) {
    return {name, id, type, DDS_TYPECODE_NONKEY_REQUIRED_MEMBER, DDS_PUBLIC_MEMBER, label};
}

template <std::size_t Count>
DDS_TypeCode record(DDS_TCKind kind, DDS_ExtensibilityKind extensibility, const char* name,
                    std::array<DDS_TypeCodeMember, Count>& members,
                    const DDS_TypeCode* discriminator = nullptr) {
    return {kind, extensibility, name, 0, discriminator, Count, members.data()};
}

DDS_TypeCode bounded(DDS_TCKind kind, DDS_UnsignedLong bound,
                     const DDS_TypeCode* element = nullptr) {
    return {kind, DDS_FINAL_EXTENSIBILITY, nullptr, bound, element, 0, nullptr};
}

constexpr auto mutable_kind = DDS_MUTABLE_EXTENSIBILITY;
constexpr auto final_kind = DDS_FINAL_EXTENSIBILITY;

std::array address_members{member("host", 0, &DDS_g_tc_long), member("app", 1, &DDS_g_tc_long)};
std::array kind_members{member("IDLE", 0, nullptr), member("BUSY", 1, nullptr),
                        member("FAILED", 7, nullptr)};
const DDS_TypeCode kind_type = record(DDS_TK_ENUM, final_kind, "Kind", kind_members);
std::array mode_members{member("OFF", 0, nullptr), member("ON", 1, nullptr)};
const DDS_TypeCode mode_type = record(DDS_TK_ENUM, final_kind, "Mode", mode_members);
const DDS_TypeCode name_type = bounded(DDS_TK_STRING, 16);
const DDS_TypeCode note_type = bounded(DDS_TK_STRING, 8);
const DDS_TypeCode items_type = bounded(DDS_TK_SEQUENCE, 3, &address_type);
const DDS_TypeCode history_type = bounded(DDS_TK_ARRAY, 2, &address_type);

std::array command_members{member("_u.limit", 1, &DDS_g_tc_long, 0),
                           member("_u.items", 2, &items_type, 1),
                           member("_u.note", 3, &note_type, 7)};
const DDS_TypeCode command_type =
    record(DDS_TK_UNION, mutable_kind, "Command", command_members, &kind_type);
const DDS_TypeCode flat_command_type =
    record(DDS_TK_UNION, final_kind, "Command", command_members, &kind_type);

std::array extra_members{member("size", 0, &DDS_g_tc_long), member("label", 1, &note_type),
                         member("mode", 2, &mode_type)};
const DDS_TypeCode extra_type = record(DDS_TK_STRUCT, mutable_kind, "Extra", extra_members);
const DDS_TypeCode flat_extra_type = record(DDS_TK_STRUCT, final_kind, "Extra", extra_members);

std::array<DDS_TypeCodeMember, 7> members_with(const DDS_TypeCode* command,
                                               const DDS_TypeCode* extra) {
    return {member("target", 0, &address_type), member("level", 1, &DDS_g_tc_long),
            member("kind", 2, &kind_type),      member("name", 3, &name_type),
            member("command", 4, command),      member("history", 5, &history_type),
            member("extra", 300, extra)};
}

auto probe_members = members_with(&command_type, &extra_type);
auto flat_members = members_with(&flat_command_type, &flat_extra_type);

}  // namespace

const DDS_TypeCode address_type = record(DDS_TK_STRUCT, final_kind, "Address", address_members);
const DDS_TypeCode probe_type = record(DDS_TK_STRUCT, mutable_kind, "Probe", probe_members);
const DDS_TypeCode flat_type = record(DDS_TK_STRUCT, final_kind, "Flat", flat_members);

}  // namespace filter_test
