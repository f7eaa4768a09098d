#pragma once

#include "QorExport.h"
#include <QtCore/QList>
#include <QtCore/QString>
#include <string>

class QWidget;

namespace Orvane {
class Field;
class Node;
class NodeLink;
} // namespace Orvane

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

/// Appends the links of all node fields of \a node that lead to a node, in order of field and element. With
/// \a stopAtProto true an instance of a prototype gives none, and a log line.
QOR_EXPORT void nodeLinks(Orvane::Node* node, QList<Orvane::NodeLink*>& links, bool stopAtProto);

/// Position of \a link in its node field; -1 when \a field does not hold it, with a log line for a field of
/// many nodes.
QOR_EXPORT int nodeLinkIndex(Orvane::Field* field, Orvane::NodeLink* link);

/// Row of \a link among the links of its parent, as `nodeLinks` lists them; -1, as `nodeLinkIndex`, when its
/// field does not hold it.
QOR_EXPORT int nodeLinkRow(Orvane::NodeLink* link);

/// Has \a widget show letters of simple scripts as they stand in the font, without kerning and ligatures,
/// which take a third to a half of the time of its texts.
QOR_EXPORT void dropShaping(QWidget& widget);

} // namespace Orvane::Qt4
