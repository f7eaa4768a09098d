#include "NodeDock.h"

#include "Selection.h"
#include "Steps.h"
#include "ValueKeys.h"
#include <QDropEvent>
#include <QHeaderView>
#include <QScrollBar>
#include <QSet>
#include <QVBoxLayout>
#include <QorNodeEditorTreeView.h>
#include <QorNodeModel.h>
#include <QorNodePathMimeData.h>
#include <QorObservingNodeEditor.h>
#include <array>
#include <vector>

using namespace Orvane::Qt4;

namespace {

const QorNodePathMimeData* draggedNode(const QDropEvent* event)
{
    return qobject_cast<const QorNodePathMimeData*>(event->mimeData());
}

} // namespace

NodeDock::NodeDock(Selection* selection, Steps* steps, QWidget* parent)
    : QDockWidget(tr("Node"), parent)
    , _selection(selection)
    , _delegate(steps, nullptr)
    , _editor(new QorObservingNodeEditor(this))
    , _findBar(nullptr)
{
    setObjectName(QStringLiteral("NodeDock"));
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_editor);
    _findBar = new FindBar(_editor->treeView(), {tr("All columns"), tr("Name"), tr("Value"), tr("Data type")},
                           content);
    layout->addWidget(_findBar);
    content->setFocusProxy(_editor->treeView());
    setWidget(content);
    connect(_findBar, &FindBar::wanted, this, &NodeDock::find);
    setAcceptDrops(true);
    _editor->setItemDelegate(&_delegate);
    _editor->setDescriptionVisible(true);
    new ValueKeys(_editor->treeView()); // which owns it
    _editor->treeView()->header()->setDefaultSectionSize(fontMetrics().averageCharWidth() * 21);

    connect(_selection, &Selection::changed, this,
            [this](const Orvane::NodePath& path) { showNode(path.node()); });
    connect(steps, &Steps::valueGiven, this, &NodeDock::refresh);
    connect(steps, &Steps::fieldsChanged, this, &NodeDock::refresh);
    connect(_editor, SIGNAL(nodeSelected(Orvane::Node*)), _selection, SLOT(selectNode(Orvane::Node*)));
}

NodeDock::~NodeDock()
{
    // The editor deletes neither its model nor a delegate.
    showNode(nullptr);
}

void NodeDock::showNode(Orvane::Node* node)
{
    _delegate.watch(nullptr);
    _editor->setNode(node);
    _delegate.watch(_editor->model());
}

void NodeDock::refresh(Orvane::Node* node)
{
    if (!node || node != _editor->node())
        return;
    QTreeView* const tree = _editor->treeView();
    QSet<QString> open;
    for (int row = 0; row < tree->model()->rowCount(); ++row) {
        const QModelIndex index = tree->model()->index(row, 0);
        if (tree->isExpanded(index))
            open.insert(index.data().toString());
    }
    const int scrolled = tree->verticalScrollBar()->value();
    const QModelIndex current = tree->currentIndex();
    const int currentRow = current.parent().isValid() ? current.parent().row() : current.row();
    showNode(nullptr);
    showNode(node);
    for (int row = 0; row < tree->model()->rowCount(); ++row) {
        const QModelIndex index = tree->model()->index(row, 0);
        tree->setExpanded(index, open.contains(index.data().toString()));
    }
    tree->setCurrentIndex(tree->model()->index(currentRow, 0));
    tree->verticalScrollBar()->setValue(scrolled);
}

void NodeDock::find(FindBar::Step step)
{
    QTreeView* tree = _editor->treeView();
    const QAbstractItemModel* model = tree->model();
    const int rows = model ? model->rowCount() : 0;
    // Rows of fields are told apart by their items alone; a row of a value counts as its field's.
    QModelIndex present = tree->currentIndex();
    while (present.parent().isValid())
        present = present.parent();
    const std::array<int, 3> columns = {QorNodeModel::FieldName, QorNodeModel::FieldValue,
                                        QorNodeModel::DataType};
    const auto isFound = [&](int row) {
        for (int i = 0; i < 3; ++i) {
            if (_findBar->choice() != 0 && _findBar->choice() != i + 1)
                continue;
            if (_findBar->matches(model->index(row, columns[static_cast<std::size_t>(i)]).data().toString()))
                return true;
        }
        return false;
    };
    std::vector<int> found;
    int before = 0;
    bool isMatch = false;
    bool isBehind = !present.isValid();
    for (int row = 0; !_findBar->text().isEmpty() && row < rows; ++row) {
        const bool isPresent =
            present.isValid() && model->index(row, 0).internalPointer() == present.internalPointer();
        isBehind = isBehind || isPresent;
        if (!isFound(row))
            continue;
        before += isBehind ? 0 : 1;
        isMatch = isMatch || isPresent;
        found.push_back(row);
    }
    const int match = _findBar->choose(step, static_cast<int>(found.size()), before, isMatch);
    if (match < 0)
        return;
    const QModelIndex row = model->index(found[static_cast<std::size_t>(match)], QorNodeModel::FieldName);
    tree->setCurrentIndex(row);
    tree->scrollTo(row);
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
