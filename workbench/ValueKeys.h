#pragma once

#include <QObject>

namespace Orvane::Qt4 {
class QorNodeEditorTreeView;
}

/// Has F2 edit the value of the current row of a field tree from every column: the keys that go from row to
/// row do not go to another column.
class ValueKeys : public QObject
{
    Q_OBJECT

public:
    /// Belongs to \a tree.
    explicit ValueKeys(Orvane::Qt4::QorNodeEditorTreeView* tree);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Orvane::Qt4::QorNodeEditorTreeView* _tree;
};
