#pragma once

#include <QString>

namespace Orvane {
class Node;
}

/// The fields that an author adds to a script or shader.
namespace AuthorFields {

/// Adds a field, described in the words of the dialog for new fields. The result says why the node cannot
/// have it; empty when it has.
QString add(Orvane::Node& node, const QString& dataType, const QString& fieldType, const QString& name,
            const QString& defaultValue);

/// Takes a field out. The result says why it stays; empty when it is gone.
QString remove(Orvane::Node& node, const QString& name);

} // namespace AuthorFields
