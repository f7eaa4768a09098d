#include "QorNodePathMimeData.h"

#include <QtCore/QStringList>

namespace Orvane::Qt4 {

QorNodePathMimeData::QorNodePathMimeData(const Orvane::NodePath& nodePath)
    : _nodePath(nodePath)
{
}

QorNodePathMimeData::~QorNodePathMimeData() = default;

QStringList QorNodePathMimeData::formats() const
{
    return {QStringLiteral("vellumer/nodepath")};
}

void QorNodePathMimeData::setNodePath(const Orvane::NodePath& nodePath)
{
    _nodePath = nodePath;
}

} // namespace Orvane::Qt4
