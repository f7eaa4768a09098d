#pragma once

#include <OpenSG/OSGBaseTypes.h>

namespace osg {

/// One component of a pixel as a number: whole numbers are stretched to 0 .. 1 (with a sign -1 .. 1), numbers
/// with a fraction are taken as they are. `dataType` is a known Image::Type; no alignment is asked for.
Real64 loadSample(const UInt8* from, Int32 dataType);
/// The other way; whole numbers are rounded and kept within their range, what is no number counts as 0.
void storeSample(UInt8* to, Int32 dataType, Real64 value);

/// IEEE 754 binary16 and back; what is too large becomes infinite.
Real32 halfToFloat(UInt16 half);
UInt16 floatToHalf(Real32 value);

} // namespace osg
