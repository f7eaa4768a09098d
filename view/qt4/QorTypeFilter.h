#pragma once

#include <QtCore/QStringList>

namespace Orvane {
class Node;
}

namespace Orvane::Qt4 {

/// Whether nodes of the type of \a node have rows under two lists of type names: all have while both are
/// empty, else those that \a hide, when it is not empty, does not name and those that \a show names. Names
/// are compared case by case.
bool isTypeShown(const Orvane::Node& node, const QStringList& show, const QStringList& hide);

} // namespace Orvane::Qt4
