#pragma once

#include "QorExport.h"
#include <QtCore/QString>
#include <string>

namespace Orvane {
class Node;
}

namespace Orvane::Qt4 {

/// Reads a text of the runtime: UTF-8 when it is valid UTF-8 with at least one character of several bytes,
/// else Latin-1. The result is never a null string.
QOR_EXPORT QString fromRuntime(const std::string& text);

/// As above, up to the first null byte; a null pointer gives a null string.
QOR_EXPORT QString fromRuntime(const char* text);

/// Writes a text for the runtime: Latin-1 when every character fits, else UTF-8.
QOR_EXPORT std::string toRuntime(const QString& text);

/// What users see as the name of a node: its name if it has one, else its id string; empty for null. Valid as
/// long as the node keeps its name.
QOR_EXPORT const std::string& nodeName(const Orvane::Node* node);

} // namespace Orvane::Qt4
