#include "ValueKeys.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QTimer>
#include <QorBoolFieldEditor.h>
#include <QorNodeEditorTreeView.h>
#include <QorNodeModel.h>

using namespace Orvane::Qt4;

namespace {

/// The choice between the two truths leaves all keys to the tree until its list is open.
void openChoice(const QorNodeEditorTreeView& tree)
{
    const auto* const editor = tree.findChild<QorBoolFieldEditor*>();
    auto* const choice = editor && editor->isVisible() ? editor->findChild<QComboBox*>() : nullptr;
    if (choice)
        choice->showPopup();
}

} // namespace

ValueKeys::ValueKeys(QorNodeEditorTreeView* tree)
    : QObject(tree)
    , _tree(tree)
{
    _tree->installEventFilter(this);
}

bool ValueKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _tree && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2)
    {
        const QModelIndex row = _tree->currentIndex();
        const QModelIndex value = row.sibling(row.row(), QorNodeModel::FieldValue);
        // The view goes on with the key.
        if (value.isValid() && value != row && !_tree->isColumnHidden(value.column()))
            _tree->setCurrentIndex(value);
        QTimer::singleShot(0, _tree, [tree = _tree] { openChoice(*tree); });
    }
    return QObject::eventFilter(watched, event);
}
