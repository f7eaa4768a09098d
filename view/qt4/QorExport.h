#pragma once

#include <QtCore/qglobal.h>

/// Marks what the library gives to its users. CMake defines the name while it builds the library itself.
#ifdef orvaneViewQt4_EXPORTS
#define QOR_EXPORT Q_DECL_EXPORT
#else
#define QOR_EXPORT Q_DECL_IMPORT
#endif
