/**
 * @file cdr_parameter_cursor.hpp
 * @brief The members of mutable types: a list of headers, each with its value.
 */
#ifndef PEXA_CDR_PARAMETER_CURSOR_HPP
#define PEXA_CDR_PARAMETER_CURSOR_HPP

#include "platform/internal/cdr_cursor.hpp"

namespace pexa {

/// Headers have a short form, and an extended one for long members.
class CdrParameterCursor : public CdrCursor {
public:
    using CdrCursor::CdrCursor;

    /// Writes a member that consists of CDR longs.
    [[gnu::always_inline]] Success write_longs_parameter(bool extended, DDS_UnsignedLong id,
                                                         const void* longs, size_t count) {
        if (!begin_parameter(extended, id, false, count * sizeof(uint32_t))) {
            return false;
        }
        put_longs(longs, count);
        return true;
    }

    /// Writes a member that is a string. @param size as measured.
    [[gnu::always_inline]] Success write_string_parameter(bool extended, DDS_UnsignedLong id,
                                                          const char* text, DDS_UnsignedLong size) {
        if (!begin_parameter(extended, id, false, sizeof size + size)) {
            return false;
        }
        put_string(text, size);
        return true;
    }

    /// @see QELCdrStream_serializeParameterHeader
    Success open_parameter(QELCdrOpenParameter& parameter, bool extended, DDS_UnsignedLong id,
                           bool must_understand) {
        if (!begin_parameter(extended, id, must_understand, 0)) {
            return false;
        }
        parameter.valuePosition = position_;
        parameter.lengthPosition =
            position_ - (extended ? sizeof(DDS_UnsignedLong) : sizeof(DDS_UnsignedShort));
        parameter.extended = extended ? 1 : 0;
        return true;
    }

    /// @see QELCdrStream_serializeParameterLength
    [[gnu::always_inline]] Success close_parameter(const QELCdrOpenParameter& parameter) {
        const bool extended = parameter.extended != 0;
        const size_t length = position_ - parameter.valuePosition;
        const size_t most = extended ? UINT32_MAX : UINT16_MAX;
        const size_t size = extended ? sizeof(DDS_UnsignedLong) : sizeof(DDS_UnsignedShort);
        if (parameter.valuePosition > position_ || length > most ||
            parameter.lengthPosition > parameter.valuePosition ||
            size > size_ - parameter.lengthPosition) {
            return false;
        }
        CdrParameterCursor at_length = *this;
        at_length.position_ = parameter.lengthPosition;
        if (extended) {
            at_length.put(static_cast<DDS_UnsignedLong>(length));
        } else {
            at_length.put(static_cast<DDS_UnsignedShort>(length));
        }
        return true;
    }

    /// @see QELCdrStream_serializeListEnd
    [[gnu::always_inline]] Success write_list_end() {
        if (!pad_before(sizeof(uint32_t), sizeof(uint32_t))) {
            return false;
        }
        put_short_header(QEL_CDR_PARAMETER_ID_LIST_END, true, 0);
        return true;
    }

    /// @name Fast steps for a cursor that is_native(). They read the form that the operations above
    /// write, and fail for any other, valid or not.
    /// @{

    /// Reads a member that consists of CDR longs.
    [[gnu::always_inline]] Success read_longs_parameter(DDS_UnsignedLong id, void* longs,
                                                        size_t count) {
        const size_t size = count * sizeof(uint32_t);
        if (!read_exact(short_header(id, static_cast<uint32_t>(size)), size)) {
            return false;
        }
        memcpy(longs, bytes(), size);
        position_ += size;
        return true;
    }

    /// Reads a member that is a string.
    [[gnu::always_inline]] Success read_string_parameter(DDS_UnsignedLong id, char* text,
                                                         DDS_UnsignedLong maximum_length) {
        CdrParameterCursor next = *this;
        uint32_t found = 0;
        if (!next.read(found)) {
            return false;
        }
        const uint32_t length = length_of(found);
        if (found != short_header(id, length) || length > next.remaining()) {
            return false;
        }
        const size_t end = next.position_ + length;
        next.size_ = end;
        if (!next.read_string(text, maximum_length)) {
            return false;
        }
        position_ = end;
        return true;
    }

    /// Reads the end of a list.
    [[gnu::always_inline]] Success read_list_end() {
        return read_exact(short_header(QEL_CDR_PARAMETER_ID_LIST_END | short_must_understand, 0),
                          0);
    }
    /// @}

    /// @see QELCdrStream_deserializeParameterHeader
    [[gnu::always_inline]] Success read_parameter(QELCdrParameterHeader& header) {
        CdrParameterCursor next = *this;
        uint32_t found = 0;
        if (!next.read(found)) {
            return false;
        }
        const uint32_t id = little_endian_ ? found & UINT16_MAX : found >> 16;
        header.id = id & short_id_mask;
        header.length = little_endian_ ? found >> 16 : found & UINT16_MAX;
        header.mustUnderstand = (id & short_must_understand) != 0 ? 1 : 0;
        header.isListEnd = header.id == QEL_CDR_PARAMETER_ID_LIST_END ? 1 : 0;
        header.isIgnored = header.id == QEL_CDR_PARAMETER_ID_IGNORE ? 1 : 0;
        if (header.isListEnd != 0) {
            // Nothing follows, whatever the length says (RTPS 9.4.2.11).
            header.length = 0;
        }
        if (header.id == QEL_CDR_PARAMETER_ID_EXTENDED && !next.read_extended_part(header)) {
            return false;
        }
        if (header.length > next.remaining()) {
            return false;
        }
        header.valuePosition = next.position_;
        position_ = next.position_;
        return true;
    }

    /// @see QELCdrStream_moveToNextParameterHeader
    Success leave_parameter(const QELCdrParameterHeader& header) {
        if (header.valuePosition > size_ || header.length > size_ - header.valuePosition) {
            return false;
        }
        position_ = header.valuePosition + header.length;
        return true;
    }

    /// Calls @p take with the cursor and the header of each member, up to the end of the list or of
    /// the buffer. Stops when a call fails.
    template <class Take>
    [[gnu::always_inline]] Success for_each_parameter(Take take) {
        while (remaining() > padding(sizeof(uint32_t))) {
            QELCdrParameterHeader header;
            if (!read_parameter(header)) {
                return false;
            }
            if (header.isListEnd != 0) {
                return true;
            }
            if (!take(*this, header) || !leave_parameter(header)) {
                return false;
            }
        }
        return true;
    }

private:
    // The short form's id field: two flags above 14 bits of id.
    static constexpr uint32_t short_must_understand = 0x4000;
    static constexpr uint32_t short_id_mask = 0x3FFF;
    // Above this the short form's ids have meanings of their own.
    static constexpr uint32_t last_short_id = 0x3F00;

    // The extended form's id field: four flags above 28 bits of id.
    static constexpr uint32_t extended_must_understand = 0x40000000;
    static constexpr uint32_t extended_id_mask = 0x0FFFFFFF;
    // Bytes of the extended id and length, which the short length field of that form counts.
    static constexpr uint32_t extended_size = 8;

    /// @return a short header in native byte order.
    static constexpr uint32_t short_header(uint32_t field, uint32_t length) {
        return native_is_little ? field | length << 16 : field << 16 | length;
    }
    static constexpr uint32_t length_of(uint32_t header) {
        return native_is_little ? header >> 16 : header & UINT16_MAX;
    }

    /// Reads this header. Fails unless its value is complete.
    [[gnu::always_inline]] Success read_exact(uint32_t header, size_t length) {
        const size_t gap = padding(sizeof header);
        if (gap + sizeof header + length > remaining()) {
            return false;
        }
        uint32_t found = 0;
        memcpy(&found, bytes() + gap, sizeof found);
        if (found != header) {
            return false;
        }
        position_ += gap + sizeof header;
        return true;
    }

    [[gnu::always_inline]] void put_short_header(DDS_UnsignedLong id, bool must_understand,
                                                 uint32_t length) {
        const uint32_t field = id | (must_understand ? short_must_understand : 0);
        put(little_endian_ ? field | length << 16 : field << 16 | length);
    }

    /// Writes a member's header. Fails unless there is room for the value, too. The cursor is then
    /// aligned for any value.
    [[gnu::always_inline]] Success begin_parameter(bool extended, DDS_UnsignedLong id,
                                                   bool must_understand, size_t length) {
        if (extended) {
            return begin_extended_parameter(id, must_understand, length);
        }
        if (id > last_short_id || length > UINT16_MAX ||
            !pad_before(sizeof(uint32_t), sizeof(uint32_t) + length)) {
            return false;
        }
        put_short_header(id, must_understand, static_cast<uint32_t>(length));
        return true;
    }

    [[gnu::always_inline]] Success begin_extended_parameter(DDS_UnsignedLong id,
                                                            bool must_understand, size_t length) {
        if (id > extended_id_mask || length > UINT32_MAX ||
            !pad_before(sizeof(uint32_t), sizeof(uint32_t) + extended_size + length)) {
            return false;
        }
        put_short_header(QEL_CDR_PARAMETER_ID_EXTENDED, true, extended_size);
        put(id | (must_understand ? extended_must_understand : 0));
        put(static_cast<uint32_t>(length));
        return true;
    }

    /// Reads the rest of an extended header. The cursor is behind its short part.
    Success read_extended_part(QELCdrParameterHeader& header) {
        const size_t announced = header.length;
        uint32_t field = 0;
        if (announced < extended_size || announced > remaining() || !read(field) ||
            !read(header.length)) {
            return false;
        }
        header.id = field & extended_id_mask;
        header.mustUnderstand = (field & extended_must_understand) != 0 ? 1 : 0;
        return skip(announced - extended_size);
    }
};

}  // namespace pexa

#endif
