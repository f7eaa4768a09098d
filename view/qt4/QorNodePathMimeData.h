#pragma once

#include "QorMimeData.h"
#include <Orvane/NodePath.h>

namespace Orvane::Qt4 {

/// A place in the graph on its way through drag and drop. Its only format, "vellumer/nodepath", has no bytes:
/// a receiver tests `hasFormat`, casts to this class and reads `nodePath`. A host makes one for a `QDrag`,
/// which owns it.
class QOR_EXPORT QorNodePathMimeData : public QorMimeData
{
    Q_OBJECT

public:
    /// Carries a path.
    explicit QorNodePathMimeData(const Orvane::NodePath& nodePath);
    ~QorNodePathMimeData() override;

    QStringList formats() const override;

    /// The path that is carried; not valid once its nodes have died.
    const Orvane::NodePath& nodePath() const { return _nodePath; }
    void setNodePath(const Orvane::NodePath& nodePath);

private:
    Orvane::NodePath _nodePath;
};

} // namespace Orvane::Qt4
