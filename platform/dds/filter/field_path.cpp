#include "platform/dds/filter/field_path.hpp"

namespace pexa::dds {
namespace {

/// A member found at the front of a dotted name.
struct NamedMember {
    DDS_Long id = 0;
    const DDS_TypeCode* type = nullptr;
    std::size_t length = 0;  ///< characters of its name, 0 when there is none
};

// Names of members may contain dots themselves, as those of union branches do.
NamedMember find_member(const DDS_TypeCode& type, std::string_view path) {
    const auto begins_with = [path](std::string_view name) {
        return path.starts_with(name) && (path.size() == name.size() || path[name.size()] == '.');
    };
    if (type.kind != DDS_TK_STRUCT && type.kind != DDS_TK_UNION) {
        return {};
    }
    constexpr std::string_view discriminator = "_d";
    if (type.kind == DDS_TK_UNION && begins_with(discriminator)) {
        return {0, type.element, discriminator.size()};
    }
    for (DDS_UnsignedLong i = 0; i < type.memberCount; ++i) {
        const std::string_view name = type.members[i].name;
        if (begins_with(name)) {
            return {type.members[i].id, type.members[i].type, name.size()};
        }
    }
    return {};
}

Success add_node(FilterProgram& program, std::int16_t parent, const NamedMember& member,
                 std::int16_t& node) {
    node = program.child_of(parent, member.id);
    if (node != no_index) {
        return true;
    }
    if (program.node_count == filter_node_limit) {
        return false;
    }
    FieldNode& above = program.nodes[static_cast<std::size_t>(parent)];
    node = static_cast<std::int16_t>(program.node_count++);
    program.nodes[static_cast<std::size_t>(node)] = {member.id, member.type, no_index, no_index,
                                                     above.first_child};
    above.first_child = node;
    return true;
}

}  // namespace

const DDS_TypeCode* find_field(const DDS_TypeCode& type, std::string_view path,
                               std::size_t& known) {
    known = 0;
    const DDS_TypeCode* found = &type;
    while (known < path.size()) {
        const NamedMember member = find_member(*found, path.substr(known));
        if (member.length == 0 || member.type == nullptr) {
            return nullptr;
        }
        found = member.type;
        known += member.length + 1;
    }
    return found;
}

Success add_field(FilterProgram& program, std::string_view path, const FilterPlace& place,
                  OperandIndex& field, FilterFault& fault) {
    std::int16_t node = 0;
    for (std::size_t known = 0; known < path.size();) {
        const DDS_TypeCode* type = program.nodes[static_cast<std::size_t>(node)].type;
        const NamedMember member = find_member(*type, path.substr(known));
        if (!add_node(program, node, member, node)) {
            return set_fault(fault, place, "the fields have more than %zu different parts",
                             filter_node_limit);
        }
        known += member.length + 1;
    }
    FieldNode& leaf = program.nodes[static_cast<std::size_t>(node)];
    if (leaf.field == no_index) {
        if (program.field_count == filter_field_limit) {
            return set_fault(fault, place, "more than %zu different fields", filter_field_limit);
        }
        leaf.field = static_cast<std::int16_t>(program.field_count++);
    }
    field = leaf.field;
    return true;
}

}  // namespace pexa::dds
