#include "platform/base/type_plugin/type_code.hpp"

#include <algorithm>
#include <cstring>

const DDS_TypeCode DDS_g_tc_long = {DDS_TK_LONG, DDS_FINAL_EXTENSIBILITY, "long", 0, nullptr, 0,
                                    nullptr};

namespace pexa::base {

namespace {

template <class Predicate>
const DDS_TypeCodeMember* find_member_if(const DDS_TypeCode* self, Predicate is_wanted) {
    if (self == nullptr) {
        return nullptr;
    }
    const DDS_TypeCodeMember* first = self->members;
    const DDS_TypeCodeMember* end = first + self->memberCount;
    const DDS_TypeCodeMember* found = std::find_if(first, end, is_wanted);
    return found == end ? nullptr : found;
}

}  // namespace

const DDS_TypeCodeMember* find_member(const DDS_TypeCode* type, const char* name) {
    const auto is_wanted = [name](const DDS_TypeCodeMember& member) {
        return std::strcmp(member.name, name) == 0;
    };
    return name == nullptr ? nullptr : find_member_if(type, is_wanted);
}

const DDS_TypeCodeMember* find_member(const DDS_TypeCode* type, DDS_Long id) {
    return find_member_if(type, [id](const DDS_TypeCodeMember& member) { return member.id == id; });
}

}  // namespace pexa::base

const DDS_TypeCodeMember* DDS_TypeCode_findMember(const DDS_TypeCode* self, const char* name) {
    return pexa::base::find_member(self, name);
}

const DDS_TypeCodeMember* DDS_TypeCode_findMemberById(const DDS_TypeCode* self, DDS_Long id) {
    return pexa::base::find_member(self, id);
}
