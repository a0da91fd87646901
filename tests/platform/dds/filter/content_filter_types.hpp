#pragma once

#include "pexa/typecode.h"

namespace filter_test {

/// struct Address { long host; long app; }, final.
extern const DDS_TypeCode address_type;

/// A mutable type with a member of each kind:
///   0 Address target, 1 long level, 2 enum Kind { IDLE = 0, BUSY = 1, FAILED = 7 } kind,
///   3 string<16> name, 4 mutable union Command command, 5 Address history[2],
///   300 mutable struct Extra { 0 long size; 1 string<8> label; 2 enum Mode { OFF, ON } mode; }
///   extra
/// with union Command by Kind: 1 IDLE long _u.limit, 2 BUSY sequence<Address, 3> _u.items,
/// 3 FAILED string<8> _u.note.
extern const DDS_TypeCode probe_type;

/// The same as a final type, in which Command and Extra are final too.
extern const DDS_TypeCode flat_type;

}  // namespace filter_test
