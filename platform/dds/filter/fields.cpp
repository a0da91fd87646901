#include "platform/dds/filter/fields.hpp"

#include "pexa/cdr_stream.h"
#include "platform/internal/success.hpp"

namespace pexa::dds {
namespace {

// No type has so many levels unless it contains itself through a sequence.
constexpr int level_limit = 32;

class FieldReader {
public:
    FieldReader(const FilterProgram& program, std::span<const std::byte> payload,
                FilterFields& fields)
        : program_(program), fields_(fields) {
        // The stream is only read; its buffer is not constant because streams are also written.
        auto* bytes = const_cast<std::byte*>(payload.data());
        QELCdrStream_init(&stream_, reinterpret_cast<char*>(bytes), payload.size());
    }

    Success sample() {
        return QELCdrStream_deserializeEncapsulation(&stream_) != 0 &&
               value(program_.nodes[0].type, 0);
    }

private:
    // Passes over a value of that type. The node says which parts of the value the program needs,
    // no_index that it needs none.
    Success value(const DDS_TypeCode* type, std::int16_t node) {
        if (type == nullptr || level_ == level_limit) {
            return false;
        }
        ++level_;
        const Success passed = value_of_kind(*type, node);
        --level_;
        return passed;
    }

    Success value_of_kind(const DDS_TypeCode& type, std::int16_t node) {
        switch (type.kind) {
            case DDS_TK_LONG:
            case DDS_TK_ENUM:
                return number(node);
            case DDS_TK_STRING:
                return text(type, node);
            case DDS_TK_STRUCT:
                return is_mutable(type) ? members_with_headers(type, node) : members(type, node);
            case DDS_TK_UNION:
                return is_mutable(type) ? members_with_headers(type, node) : branch(type, node);
            case DDS_TK_SEQUENCE:
                return sequence(type);
            case DDS_TK_ARRAY:
                return elements(type, type.bound);
            case DDS_TK_NULL:
                break;
        }
        return false;
    }

    static bool is_mutable(const DDS_TypeCode& type) {
        return type.extensibility == DDS_MUTABLE_EXTENSIBILITY;
    }

    void store(std::int16_t node, const FilterValue& found) {
        if (node == no_index) {
            return;
        }
        const std::int16_t field = program_.nodes[static_cast<std::size_t>(node)].field;
        if (field != no_index) {
            fields_[static_cast<std::size_t>(field)] = found;
        }
    }

    Success number(std::int16_t node) {
        DDS_Long found = 0;
        if (QELCdrStream_deserializeLong(&stream_, &found) == 0) {
            return false;
        }
        store(node, {found, {}});
        return true;
    }

    Success text(const DDS_TypeCode& type, std::int16_t node) {
        if (QELCdrStream_alignForRead(&stream_, length_size) == 0) {
            return false;
        }
        const std::size_t start = stream_.position + length_size;
        if (QELCdrStream_skipString(&stream_, type.bound) == 0) {
            return false;
        }
        store(node, {0, {stream_.buffer + start, stream_.position - start - 1}});
        return true;
    }

    Success members(const DDS_TypeCode& type, std::int16_t node) {
        for (DDS_UnsignedLong i = 0; i < type.memberCount; ++i) {
            const DDS_TypeCodeMember& member = type.members[i];
            if (!value(member.type, program_.child_of(node, member.id))) {
                return false;
            }
        }
        return true;
    }

    Success branch(const DDS_TypeCode& type, std::int16_t node) {
        DDS_Long label = 0;
        if (QELCdrStream_deserializeLong(&stream_, &label) == 0) {
            return false;
        }
        store(program_.child_of(node, 0), {label, {}});
        for (DDS_UnsignedLong i = 0; i < type.memberCount; ++i) {
            const DDS_TypeCodeMember& member = type.members[i];
            if (member.label == label) {
                return value(member.type, program_.child_of(node, member.id));
            }
        }
        return true;
    }

    Success members_with_headers(const DDS_TypeCode& type, std::int16_t node) {
        while (QELCdrStream_remaining(&stream_) > 0) {
            QELCdrParameterHeader header;
            if (QELCdrStream_deserializeParameterHeader(&stream_, &header) == 0) {
                return false;
            }
            if (header.isListEnd != 0) {
                return true;
            }
            if (!member_behind(type, node, header) ||
                QELCdrStream_moveToNextParameterHeader(&stream_, &header) == 0) {
                return false;
            }
        }
        return true;
    }

    Success member_behind(const DDS_TypeCode& type, std::int16_t node,
                          const QELCdrParameterHeader& header) {
        if (header.isIgnored != 0) {
            return true;
        }
        const auto id = static_cast<DDS_Long>(header.id);
        const std::int16_t child = program_.child_of(node, id);
        if (child == no_index) {
            return header.mustUnderstand == 0 || knows_member(type, id);
        }
        // For the values inside the member the stream ends with the member.
        const std::size_t size = stream_.size;
        stream_.size = header.valuePosition + header.length;
        const Success passed = value(program_.nodes[static_cast<std::size_t>(child)].type, child);
        stream_.size = size;
        return passed;
    }

    static bool knows_member(const DDS_TypeCode& type, DDS_Long id) {
        return (type.kind == DDS_TK_UNION && id == 0) ||
               DDS_TypeCode_findMemberById(&type, id) != nullptr;
    }

    Success sequence(const DDS_TypeCode& type) {
        DDS_Long count = 0;
        if (QELCdrStream_deserializeLong(&stream_, &count) == 0) {
            return false;
        }
        // An element takes at least a byte, so a foreign count cannot become a long loop.
        const auto length = static_cast<DDS_UnsignedLong>(count);
        return length <= type.bound && length <= QELCdrStream_remaining(&stream_) &&
               elements(type, length);
    }

    Success elements(const DDS_TypeCode& type, DDS_UnsignedLong count) {
        for (DDS_UnsignedLong i = 0; i < count; ++i) {
            if (!value(type.element, no_index)) {
                return false;
            }
        }
        return true;
    }

    static constexpr std::size_t length_size = 4;

    const FilterProgram& program_;
    FilterFields& fields_;
    QELCdrStream stream_{};
    int level_ = 0;
};

}  // namespace

Status read_fields(const FilterProgram& program, std::span<const std::byte> payload,
                   FilterFields& fields) noexcept {
    return FieldReader(program, payload, fields).sample() ? Status::ok : Status::error;
}

}  // namespace pexa::dds
