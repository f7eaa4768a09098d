#include "QorNodeEditor.h"

#include "QorLog.h"
#include "QorNodeEditorTreeView.h"
#include "QorNodeItemDelegate.h"
#include "QorTools.h"
#include <Orvane/NodeType.h>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace Orvane::Qt4 {

namespace {

const int DeleteKind = 1;
const int NameKind = 2;

/// A label for texts of the scene: never read as markup, and never in the way of a narrow editor.
QLabel* makeLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(1);
    return label;
}

} // namespace

QorNodeEditor::NodeObserver::NodeObserver(QorNodeEditor* editor, int kind)
    : Orvane::Observer(nullptr)
    , _editor(editor)
    , _kind(kind)
{
}

QorNodeEditor::NodeObserver::~NodeObserver() = default;

void QorNodeEditor::NodeObserver::notify(const double&, Orvane::BaseObject* subject, Orvane::BaseObject* a,
                                         Orvane::BaseObject*)
{
    auto* node = dynamic_cast<Orvane::Node*>(_kind == DeleteKind ? subject : a);
    if (!node || node != _editor->_node)
        return;
    // The items of the model hold fields of a node that is going: model and items go first.
    if (_kind == DeleteKind)
        _editor->setNode(nullptr);
    else if (_kind == NameKind)
        _editor->showNodeName();
}

QorNodeEditor::QorNodeEditor(QWidget* parent)
    : QWidget(parent)
    , _nodeNameLabel(makeLabel(this))
    , _nodeTypeLabel(makeLabel(this))
    , _descriptionLabel(makeLabel(this))
    , _treeView(new QorNodeEditorTreeView(this))
    , _nameSpaceObserver(this, NameKind)
    , _deleteObserver(this, DeleteKind)
{
    QFont bold(_nodeNameLabel->font());
    bold.setWeight(QFont::Bold);
    _nodeTypeLabel->setFont(bold);
    _descriptionLabel->setWordWrap(true);
    _descriptionLabel->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* headLine = new QHBoxLayout;
    headLine->setContentsMargins(2, 2, 2, 2);
    headLine->setSpacing(2);
    headLine->addWidget(_nodeTypeLabel, 0);
    headLine->addWidget(_nodeNameLabel, 0, Qt::AlignRight);
    layout->addLayout(headLine, 0);
    layout->addWidget(_descriptionLabel, 0);
    layout->addWidget(_treeView, 0);

    Orvane::Node::_deleteObject.attach(_deleteObserver);
    Orvane::Node::_nameSpaceChanged.attach(_nameSpaceObserver);
}

QorNodeEditor::~QorNodeEditor() = default;

QorNodeItemDelegate* QorNodeEditor::itemDelegate() const
{
    return _itemDelegate;
}

void QorNodeEditor::setItemDelegate(QorNodeItemDelegate* delegate)
{
    if (delegate == _itemDelegate)
        return;
    // By name, so that the signal and the slot of a subclass that declares them again are meant.
    if (_itemDelegate) {
        disconnect(_itemDelegate, SIGNAL(nodeSelected(Orvane::Node*)), this,
                   SIGNAL(nodeSelected(Orvane::Node*)));
        disconnect(_itemDelegate, SIGNAL(nodeSelected(Orvane::Node*)), this, SLOT(setNode(Orvane::Node*)));
    }
    _itemDelegate = delegate;
    if (_itemDelegate) {
        connect(_itemDelegate, SIGNAL(nodeSelected(Orvane::Node*)), this,
                SIGNAL(nodeSelected(Orvane::Node*)));
        connect(_itemDelegate, SIGNAL(nodeSelected(Orvane::Node*)), this, SLOT(setNode(Orvane::Node*)));
    }
}

void QorNodeEditor::setGuiElementFilter(const GuiElementFilter& filter)
{
    _guiElementFilter = filter;
    _nodeNameLabel->setVisible(_guiElementFilter & NODE_NAME_GE);
    _nodeTypeLabel->setVisible(_guiElementFilter & NODE_TYPE_GE);
}

void QorNodeEditor::setFieldTypeFilter(const FieldTypeFilter& filter)
{
    _fieldTypeFilter = filter;
}

void QorNodeEditor::setNode(Orvane::Node* node)
{
    if (!node) {
        _node = nullptr;
        delete _model;
        _model = nullptr;
        _treeView->setModel(nullptr);
        _nodeNameLabel->clear();
        _nodeTypeLabel->clear();
        _descriptionLabel->clear();
        return;
    }
    if (node == _node)
        return;
    _node = node;
    delete _model;
    _model = new QorNodeModel(node, nullptr);
    if (!_itemDelegate) {
        QOR_NOTICE("QorNodeEditor::setNode: no item delegate set! Creating a default QorNodeItemDelegate\n");
        setItemDelegate(new QorNodeItemDelegate(nullptr));
    }
    _treeView->setItemDelegate(_itemDelegate);
    _treeView->setModel(_model);
    showNodeName();
    _nodeTypeLabel->setText(fromRuntime(node->type()->name));
    _descriptionLabel->setText(fromRuntime(node->type()->description));
}

void QorNodeEditor::showNodeName()
{
    _nodeNameLabel->setText(fromRuntime(nodeName(_node)));
}

void QorNodeEditor::showColumn(QorNodeModel::FieldColumn column)
{
    _treeView->showColumn(column);
}

void QorNodeEditor::hideColumn(QorNodeModel::FieldColumn column)
{
    _treeView->hideColumn(column);
}

void QorNodeEditor::setDescriptionVisible(bool visible)
{
    _descriptionLabel->setVisible(visible);
}

QSize QorNodeEditor::sizeHint() const
{
    return {280, 300};
}

} // namespace Orvane::Qt4
