#include "types/sample_coding.hpp"

#include "platform/internal/cdr_cursor.hpp"
#include "types/sizes.hpp"
#include "types/values.hpp"

namespace orvane::types {

namespace {

using pexa::CdrCursor;

/** Restores the alignment origin of the stream, which the encapsulation header moves. */
class OriginScope {
public:
    explicit OriginScope(QELCdrStream& stream) : stream_(stream), origin_(stream.origin) {}
    ~OriginScope() { stream_.origin = origin_; }
    OriginScope(const OriginScope&) = delete;
    OriginScope& operator=(const OriginScope&) = delete;

private:
    QELCdrStream& stream_;
    std::size_t origin_;
};

/** The outermost mutable type decides the form of the member headers for all types inside it. */
class HeaderFormScope {
public:
    HeaderFormScope(const TypeTable& table, TULVEndpointData endpoint, QELCdrStream& stream)
        : stream_(stream), decides_(table.is_mutable() && stream.headerFormDecided == 0) {
        if (decides_) {
            stream_.headerFormDecided = 1;
            stream_.extendedHeaders = has_extended_headers(endpoint) ? 1 : 0;
        }
    }
    ~HeaderFormScope() {
        if (decides_) {
            stream_.headerFormDecided = 0;
            stream_.extendedHeaders = 0;
        }
    }
    HeaderFormScope(const HeaderFormScope&) = delete;
    HeaderFormScope& operator=(const HeaderFormScope&) = delete;

private:
    QELCdrStream& stream_;
    bool decides_;
};

/** Mutable types are announced as parameter lists. */
DDS_UnsignedShort announced_id(const TypeTable& table, DDS_UnsignedShort id) {
    constexpr DDS_UnsignedShort to_parameter_list = QEL_CDR_ENCAPSULATION_ID_PL_CDR_BE;
    const bool is_plain = id <= QEL_CDR_ENCAPSULATION_ID_CDR_LE;
    return table.is_mutable() && is_plain ? static_cast<DDS_UnsignedShort>(id + to_parameter_list)
                                          : id;
}

Success write_encapsulation(const TypeTable& table, QELCdrStream& stream, DDS_UnsignedShort id,
                            PayloadParts parts) {
    return !parts.encapsulation || CdrCursor(stream).write_encapsulation(announced_id(table, id));
}

Success read_encapsulation(QELCdrStream& stream, PayloadParts parts) {
    return !parts.encapsulation || CdrCursor(stream).read_encapsulation();
}

constexpr PayloadParts whole_sample{
    .encapsulation = true, .body = true, .selection = Selection::All};

}  // namespace

bool has_extended_headers(TULVEndpointData endpoint) {
    return endpoint != nullptr && TULVTypePluginDefaultEndpointData_getMaxSizeSerializedSample(
                                      endpoint) >= QEL_CDR_EXTENDED_HEADER_THRESHOLD;
}

Success serialize(const TypeTable& table, TULVEndpointData endpoint, const void* sample,
                  QELCdrStream* stream, DDS_UnsignedShort encapsulation_id, PayloadParts parts) {
    if (stream == nullptr) {
        return false;
    }
    if (!parts.body) {
        // The body that follows is aligned from here.
        return write_encapsulation(table, *stream, encapsulation_id, parts);
    }
    const OriginScope origin(*stream);
    if (sample == nullptr || !write_encapsulation(table, *stream, encapsulation_id, parts)) {
        return false;
    }
    const HeaderFormScope form(table, endpoint, *stream);
    return encode(table, sample, *stream, stream->extendedHeaders != 0, parts.selection);
}

Success deserialize(const TypeTable& table, void* sample, QELCdrStream* stream,
                    PayloadParts parts) {
    if (stream == nullptr) {
        return false;
    }
    const OriginScope origin(*stream);
    if ((parts.body && sample == nullptr) || !read_encapsulation(*stream, parts)) {
        return false;
    }
    if (!parts.body) {
        return true;
    }
    return decode(table, sample, *stream, parts.selection);
}

Success deserialize_unless_rejected(const TypeTable& table, void* sample, QELCdrStream* stream,
                                    PayloadParts parts) {
    if (stream == nullptr) {
        return false;
    }
    stream->rejected = 0;
    return deserialize(table, sample, stream, parts) && stream->rejected == 0;
}

Success skip_sample(const TypeTable& table, QELCdrStream* stream, PayloadParts parts) {
    if (stream == nullptr) {
        return false;
    }
    const OriginScope origin(*stream);
    return read_encapsulation(*stream, parts) && (!parts.body || skip(table, *stream));
}

Success serialize_to_buffer(const TypeTable& table, const void* sample, char* buffer,
                            DDS_UnsignedLong* length) {
    constexpr DDS_UnsignedShort id = QEL_CDR_ENCAPSULATION_ID_CDR_NATIVE;
    if (sample == nullptr || length == nullptr) {
        return false;
    }
    if (buffer == nullptr) {
        *length = exact_size(
            table, sample, false,
            {.with_encapsulation = true, .encapsulation_id = id, .current_alignment = 0});
        return true;
    }
    QELCdrStream stream;
    QELCdrStream_init(&stream, buffer, *length);
    if (!serialize(table, nullptr, sample, &stream, id, whole_sample)) {
        return false;
    }
    *length = static_cast<DDS_UnsignedLong>(stream.position);
    return true;
}

Success deserialize_from_buffer(const TypeTable& table, void* sample, const char* buffer,
                                DDS_UnsignedLong length) {
    if (buffer == nullptr) {
        return false;
    }
    QELCdrStream stream;
    // Decoding only reads; streams have one type for both directions.
    QELCdrStream_init(&stream, const_cast<char*>(buffer), length);
    return deserialize_unless_rejected(table, sample, &stream, whole_sample);
}

}  // namespace orvane::types
