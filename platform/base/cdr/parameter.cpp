#include "platform/base/cdr/step.hpp"

using pexa::CdrParameterCursor;

QELBool QELCdrStream_serializeParameterHeader(QELCdrStream* self, QELCdrOpenParameter* parameter,
                                              QELBool extended, DDS_UnsignedLong id,
                                              QELBool mustUnderstand) {
    return pexa::base::take_step(self, [&](CdrParameterCursor& cursor) {
        return cursor.open_parameter(*parameter, extended != 0, id, mustUnderstand != 0);
    });
}

QELBool QELCdrStream_serializeParameterLength(QELCdrStream* self,
                                              const QELCdrOpenParameter* parameter) {
    return CdrParameterCursor(*self).close_parameter(*parameter);
}

QELBool QELCdrStream_serializeListEnd(QELCdrStream* self) {
    return pexa::base::take_step(
        self, [](CdrParameterCursor& cursor) { return cursor.write_list_end(); });
}

QELBool QELCdrStream_deserializeParameterHeader(QELCdrStream* self, QELCdrParameterHeader* header) {
    return pexa::base::take_step(
        self, [&](CdrParameterCursor& cursor) { return cursor.read_parameter(*header); });
}

QELBool QELCdrStream_moveToNextParameterHeader(QELCdrStream* self,
                                               const QELCdrParameterHeader* header) {
    return pexa::base::take_step(
        self, [&](CdrParameterCursor& cursor) { return cursor.leave_parameter(*header); });
}
