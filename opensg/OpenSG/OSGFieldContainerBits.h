#pragma once

#include "OSGBaseTypes.h"

namespace osg {

/// Field masks that hold for every container; a class names its own bits `XFieldMask`.
namespace FieldBits {
inline constexpr BitVector AllFields = ~BitVector(0);
inline constexpr BitVector NoField = 0;
} // namespace FieldBits

/// Where a change comes from, as `FieldContainer::changed` is told it.
namespace ChangedOrigin {
inline constexpr UInt32 External = 0x1;
inline constexpr UInt32 Sync = 0x2;
inline constexpr UInt32 Child = 0x4;
inline constexpr UInt32 Abstract = 0x8;
inline constexpr UInt32 AbstrIgnoreCore = 0x100;
inline constexpr UInt32 AbstrIgnoreChild = 0x200;
inline constexpr UInt32 AbstrCheckValid = 0x400;
inline constexpr UInt32 AbstrIncRefCount = 0x800;
} // namespace ChangedOrigin

} // namespace osg
