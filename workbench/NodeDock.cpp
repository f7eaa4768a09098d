#include "NodeDock.h"

#include "Selection.h"
#include <QDropEvent>
#include <QHeaderView>
#include <QorNodeEditorTreeView.h>
#include <QorNodePathMimeData.h>
#include <QorObservingNodeEditor.h>

using namespace Orvane::Qt4;

namespace {

const QorNodePathMimeData* draggedNode(const QDropEvent* event)
{
    return qobject_cast<const QorNodePathMimeData*>(event->mimeData());
}

} // namespace

NodeDock::NodeDock(Selection* selection, QWidget* parent)
    : QDockWidget(tr("Node"), parent)
    , _selection(selection)
    , _delegate(nullptr)
    , _editor(new QorObservingNodeEditor(this))
{
    setObjectName(QStringLiteral("NodeDock"));
    setWidget(_editor);
    setAcceptDrops(true);
    _editor->setItemDelegate(&_delegate);
    _editor->setDescriptionVisible(true);
    _editor->treeView()->header()->setDefaultSectionSize(150);

    connect(_selection, &Selection::changed, this,
            [this](const Orvane::NodePath& path) { _editor->setNode(path.node()); });
    connect(_editor, SIGNAL(nodeSelected(Orvane::Node*)), _selection, SLOT(selectNode(Orvane::Node*)));
}

NodeDock::~NodeDock()
{
    // The editor deletes neither its model nor a delegate.
    _editor->setNode(nullptr);
}

void NodeDock::refresh(Orvane::Node* node)
{
    if (node != _editor->node())
        return;
    _editor->setNode(nullptr);
    _editor->setNode(node);
}

void NodeDock::dragEnterEvent(QDragEnterEvent* event)
{
    if (draggedNode(event))
        event->acceptProposedAction();
}

void NodeDock::dropEvent(QDropEvent* event)
{
    const QorNodePathMimeData* dragged = draggedNode(event);
    if (!dragged || !dragged->nodePath().node())
        return;
    event->acceptProposedAction();
    _selection->selectPath(dragged->nodePath());
}
