#include "platform/internal/cdr_parameter_cursor.hpp"

using pexa::CdrParameterCursor;

QELBool QELCdrStream_serializeParameterHeader(QELCdrStream* self, QELCdrOpenParameter* parameter,
                                              QELBool extended, DDS_UnsignedLong id,
                                              QELBool mustUnderstand) {
    CdrParameterCursor cursor(*self);
    return cursor.open_parameter(*parameter, extended != 0, id, mustUnderstand != 0) &&
           cursor.commit();
}

QELBool QELCdrStream_serializeParameterLength(QELCdrStream* self,
                                              const QELCdrOpenParameter* parameter) {
    return CdrParameterCursor(*self).close_parameter(*parameter);
}

QELBool QELCdrStream_serializeListEnd(QELCdrStream* self) {
    CdrParameterCursor cursor(*self);
    return cursor.write_list_end() && cursor.commit();
}

QELBool QELCdrStream_deserializeParameterHeader(QELCdrStream* self, QELCdrParameterHeader* header) {
    CdrParameterCursor cursor(*self);
    return cursor.read_parameter(*header) && cursor.commit();
}

QELBool QELCdrStream_moveToNextParameterHeader(QELCdrStream* self,
                                               const QELCdrParameterHeader* header) {
    CdrParameterCursor cursor(*self);
    return cursor.leave_parameter(*header) && cursor.commit();
}
