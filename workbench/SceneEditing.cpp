#include "SceneEditing.h"

#include "AddNodeDialog.h"
#include "FieldCommands.h"
#include "GraphReach.h"
#include "NameEdit.h"
#include "NodeCommands.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "Steps.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Authoring.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QRegularExpression>
#include <QorTools.h>
#include <algorithm>
#include <list>

using namespace Orvane::Qt4;

namespace {

bool isRootPath(const Orvane::NodePath& path)
{
    std::list<Orvane::NodeLink*> links;
    path.nodeLinks(links);
    return links.empty();
}

/// True for what every encoding of scene files can write as the name of a node.
bool isNodeName(const QString& name)
{
    static const QRegularExpression form(
        QStringLiteral("\\A[^\\s0-9+\\-\"#'&<>,.:\\[\\\\\\]{}][^\\s\"#'&<>,.:\\[\\\\\\]{}]*\\z"));
    return form.match(name).hasMatch();
}

QString nodeText(const QString& type, bool isPrototype)
{
    const QString name = type.toHtmlEscaped();
    const QString element = isPrototype ? QStringLiteral("<ProtoInstance name='%1'/>").arg(name)
                                        : QStringLiteral("<%1/>").arg(name);
    return QStringLiteral("<X3D version='4.0' profile='Full'><Scene>%1</Scene></X3D>").arg(element);
}

/// Of the address of the file that the nodes on the clipboard come from.
const QString originFormat = QStringLiteral("application/x-orvane-origin");

/// Nodes for the clipboard, which takes the data.
QMimeData* clipping(const std::string& text, const std::string& origin)
{
    auto* const data = new QMimeData;
    data->setText(fromRuntime(text));
    if (!origin.empty())
        data->setData(originFormat, QByteArray::fromStdString(origin));
    return data;
}

} // namespace

SceneEditing::SceneEditing(Selection* selection, Steps* steps, SceneTreeView* tree, QWidget* window)
    : QObject(window)
    , _selection(selection)
    , _steps(steps)
    , _tree(tree)
    , _window(window)
{
    QAction* const add =
        makeAction(tr("&Add node..."), Qt::CTRL | Qt::SHIFT | Qt::Key_A, &SceneEditing::askForNode);
    add->setShortcutContext(Qt::WindowShortcut);
    const std::size_t first = _actions.size();
    makeAction(tr("&Rename..."), Qt::Key_F2, &SceneEditing::askForName);
    makeAction(tr("&Duplicate"), Qt::CTRL | Qt::Key_D, &SceneEditing::duplicateSelected);
    makeAction(tr("D&elete"), QKeySequence::Delete, &SceneEditing::deleteSelected);
    makeAction(QString(), {}, nullptr);
    makeAction(tr("Cu&t"), QKeySequence::Cut, &SceneEditing::cutSelected);
    makeAction(tr("&Copy"), QKeySequence::Copy, &SceneEditing::copy);
    QAction* const pasteAction = makeAction(tr("&Paste"), QKeySequence::Paste, &SceneEditing::paste);
    makeAction(QString(), {}, nullptr);
    makeAction(tr("Move &up"), Qt::ALT | Qt::Key_Up, &SceneEditing::moveUp);
    makeAction(tr("Move do&wn"), Qt::ALT | Qt::Key_Down, &SceneEditing::moveDown);
    _onSelected.assign(_actions.begin() + static_cast<std::ptrdiff_t>(first), _actions.end());
    _onSelected.erase(std::find(_onSelected.begin(), _onSelected.end(), pasteAction));

    connect(_selection, &Selection::changed, this, &SceneEditing::updateActions);
    connect(_steps, &Steps::childTaken, this, &SceneEditing::leaveNode);
    connect(_steps, &Steps::nodePlaced, _selection, &Selection::selectNode);
    connect(_tree, &SceneTreeView::nodeDropped, this, &SceneEditing::moveTo);
    connect(_steps, &Steps::indexChanged, this, &SceneEditing::tellOfLoss);
    updateActions();
}

QAction* SceneEditing::makeAction(const QString& text, const QKeySequence& keys,
                                  void (SceneEditing::*command)())
{
    auto* const action = new QAction(text, this);
    _actions.push_back(action);
    if (!command) {
        action->setSeparator(true);
        return action;
    }
    connect(action, &QAction::triggered, this, command);
    action->setShortcut(keys);
    // Elsewhere these keys mean texts, routes and views.
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    _tree->addAction(action);
    return action;
}

void SceneEditing::addTo(QMenu* menu)
{
    for (QAction* const action : _actions)
        menu->addAction(action);
}

void SceneEditing::setRootNode(Orvane::Node* root)
{
    const unsigned long long id = root ? root->ID() : 0;
    if (id == _rootId)
        return;
    _rootId = id;
    updateActions();
}

Orvane::Node* SceneEditing::root() const
{
    return Orvane::Node::findNode(_rootId);
}

void SceneEditing::updateActions()
{
    const Orvane::NodePath& path = _selection->path();
    const bool mayEdit = root() && path.node() && !isRootPath(path);
    for (QAction* const action : _actions)
        action->setEnabled(root());
    for (QAction* const action : _onSelected)
        action->setEnabled(mayEdit);
}

/// Bodies and inlined files can be tried with other values, which no file of the scene keeps.
void SceneEditing::tellOfLoss(int steps)
{
    const int before = std::exchange(_stepCount, steps);
    const QUndoCommand* const last = steps > before ? _steps->command(steps - 1) : nullptr;
    // When steps end, the selection may have done so.
    if (!last || last->id() != FieldCommand::Id || !isForeign(_selection->path()))
        return;
    const QString text =
        tr("%1 belongs to a prototype or to an inlined file: its new value will not be saved.")
            .arg(fromRuntime(nodeName(_selection->node())));
    FWARNING(("%s\n", toRuntime(text).c_str()));
    emit told(text);
}

/// A selected node that has left the scene is no longer shown.
void SceneEditing::leaveNode(Orvane::Node* parent)
{
    Orvane::Node* const node = _selection->path().node();
    if (!node || !strandedNodes(*node).empty())
        _selection->selectNode(parent);
}

// ---- New nodes

std::vector<Orvane::HeldNode> SceneEditing::makeNodes(const QString& text, const QByteArray& origin)
{
    std::vector<Orvane::HeldNode> nodes;
    std::string error;
    Orvane::Node* const scene = root();
    if (!scene || !Orvane::Authoring::read(*scene, toRuntime(text), nodes, error, origin.toStdString()))
        emit told(tr("There are no nodes to add: %1").arg(fromRuntime(error)));
    else if (nodes.empty())
        emit told(tr("There are no nodes to add."));
    return nodes;
}

/// From the root to the selected node, as far as the scene is not foreign.
std::vector<Orvane::Node*> SceneEditing::wayToSelected() const
{
    std::vector<Orvane::Node*> way{root()};
    std::list<Orvane::NodeLink*> links;
    _selection->path().nodeLinks(links);
    for (auto link = links.rbegin(); link != links.rend() && !(*link)->field()->_desc->privateAccess();
         ++link)
        way.push_back((*link)->directNode());
    return way;
}

/// The selected node, or the nearest one above that takes children of the type; null when none does.
Orvane::Node* SceneEditing::parentFor(const Orvane::NodeType& type) const
{
    const std::vector<Orvane::Node*> way = wayToSelected();
    const auto takes = [&type](Orvane::Node* node) { return Orvane::Authoring::fieldFor(*node, type); };
    const auto parent = std::find_if(way.rbegin(), way.rend(), takes);
    return parent == way.rend() ? nullptr : *parent;
}

/// Puts a node at or above the selected place; a node that fills the only place for it makes room.
bool SceneEditing::putBelow(Orvane::Node& node)
{
    Orvane::Node* const parent = parentFor(*node.type());
    if (!parent) {
        emit told(tr("Nothing from the selected node up has a place for a %1.")
                      .arg(fromRuntime(node.type()->name)));
        return false;
    }
    const NodePlace to = NodePlace::endOf(*Orvane::Authoring::fieldFor(*parent, *node.type()));
    if (!to.node()) {
        _steps->push(new AddNodeCommand(*_steps, to, node));
        return true;
    }
    auto* const step = new QUndoCommand; // the stack takes it
    new DeleteNodeCommand(*_steps, to, step);
    step->setText((new AddNodeCommand(*_steps, to, node, step))->text());
    _steps->push(step);
    return true;
}

bool SceneEditing::addNode(const QString& type, const QString& name)
{
    if (!root() || !isNameFree(name, nullptr))
        return false;
    const std::vector<Orvane::NodeType*> prototypes = Orvane::Authoring::prototypes(*root());
    const bool isPrototype = std::any_of(prototypes.begin(), prototypes.end(),
                                         [&](const auto* each) { return each->name == toRuntime(type); });
    const std::vector<Orvane::HeldNode> made = makeNodes(nodeText(type, isPrototype));
    if (made.empty())
        return false;
    Orvane::Node& node = *made.front().node();
    if (!name.isEmpty())
        Orvane::Authoring::setName(node, toRuntime(name));
    return putBelow(node);
}

bool SceneEditing::addText(const QString& text, const QByteArray& origin)
{
    const std::vector<Orvane::HeldNode> made = makeNodes(text, origin);
    if (made.empty())
        return false;
    const auto hasPlace = [this](const Orvane::HeldNode& node) {
        return node.node() && parentFor(*node.node()->type());
    };
    if (std::none_of(made.begin(), made.end(), hasPlace)) {
        // A step that changes nothing would be left; this one only tells.
        return made.front().node() && putBelow(*made.front().node());
    }
    const Orvane::NodePath target = _selection->path();
    bool ok = true;
    _steps->beginMacro(tr("paste"));
    for (const Orvane::HeldNode& node : made) {
        ok = node.node() && putBelow(*node.node()) && ok;
        // The next one goes beside it, not below.
        _selection->selectPath(target);
    }
    _steps->endMacro();
    if (ok)
        _selection->selectNode(made.back().node());
    return ok;
}

void SceneEditing::askForNode()
{
    if (!root())
        return;
    AddNodeDialog dialog(
        wayToSelected(), [this](const QString& name) { return nameFault(name, nullptr); }, _window);
    if (dialog.exec() == QDialog::Accepted)
        addNode(dialog.typeName(), dialog.nodeName());
}

// ---- The selected node

void SceneEditing::deleteSelected()
{
    const NodePlace place = NodePlace::of(_selection->path());
    if (isForeign(_selection->path()))
        emit told(tr("This node belongs to a prototype or to an inlined file."));
    else if (place.node() && (!_guard || _guard(*place.node())))
        _steps->push(new DeleteNodeCommand(*_steps, place));
}

/// False, and told, when there is no copy.
bool SceneEditing::copySelected()
{
    const Orvane::Node* const node = _selection->node();
    if (!node)
        return false;
    std::string error;
    const std::string text = Orvane::Authoring::text(*node, error);
    if (text.empty()) {
        emit told(fromRuntime(error));
        return false;
    }
    QApplication::clipboard()->setMimeData(clipping(text, Orvane::Authoring::origin(*node)));
    return true;
}

void SceneEditing::cutSelected()
{
    if (copySelected())
        deleteSelected();
}

void SceneEditing::paste()
{
    const QMimeData* const clipped = QApplication::clipboard()->mimeData();
    if (!clipped || clipped->text().isEmpty())
        emit told(tr("There is no text on the clipboard."));
    else
        addText(clipped->text(), clipped->data(originFormat));
}

void SceneEditing::duplicateSelected()
{
    NodePlace place = NodePlace::of(_selection->path());
    const Orvane::Field* const field = place.find();
    if (!field)
        return;
    if (field->cardinality() == 0 || isForeign(_selection->path())) {
        emit told(tr("There is no place for a second %1 here.").arg(fromRuntime(place.node()->type()->name)));
        return;
    }
    std::string error;
    const std::vector<Orvane::HeldNode> made =
        makeNodes(fromRuntime(Orvane::Authoring::text(*place.node(), error)));
    if (made.empty())
        return;
    ++place.index;
    _steps->push(new AddNodeCommand(*_steps, place, *made.front().node()));
}

/// Why a node cannot bear a name; empty when it can.
QString SceneEditing::nameFault(const QString& name, const Orvane::Node* bearer) const
{
    if (name.isEmpty())
        return {};
    if (!isNodeName(name))
        return tr("\"%1\" cannot be the name of a node.").arg(name);
    const Orvane::Node* const other = Orvane::NodeNameSpace::findNode(root()->nameSpace(), toRuntime(name));
    return other && other != bearer ? tr("There is another node called %1.").arg(name) : QString();
}

bool SceneEditing::isNameFree(const QString& name, const Orvane::Node* bearer)
{
    const QString fault = nameFault(name, bearer);
    if (!fault.isEmpty())
        emit told(fault);
    return fault.isEmpty();
}

bool SceneEditing::rename(const QString& name)
{
    Orvane::Node* const node = _selection->node();
    if (!node || !root() || !isNameFree(name, node))
        return false;
    if (isForeign(_selection->path())) {
        emit told(tr("This node belongs to a prototype or to an inlined file."));
        return false;
    }
    if (toRuntime(name) != (node->name() ? *node->name() : std::string()))
        _steps->push(new RenameCommand(*node, toRuntime(name)));
    return true;
}

void SceneEditing::askForName()
{
    const Orvane::Node* const node = _selection->node();
    if (!node || !root())
        return;
    // The node may die while the box is open.
    const unsigned long long id = node->ID();
    QString name = node->name() ? fromRuntime(*node->name()) : QString();
    const auto check = [this, id](const QString& text) {
        return root() ? nameFault(text, Orvane::Node::findNode(id)) : QString();
    };
    if (NameEdit::ask(name, check, _window) && _selection->node() && _selection->node()->ID() == id)
        rename(name);
}

// ---- Moves

void SceneEditing::moveSelected(int rows)
{
    const NodePlace from = NodePlace::of(_selection->path());
    const Orvane::Field* const field = from.find();
    NodePlace to = from;
    to.index += rows;
    const bool isInList = field && field->cardinality() == 1 && !isForeign(_selection->path());
    if (isInList && to.index >= 0 && to.index < static_cast<int>(field->size()))
        _steps->push(new MoveNodeCommand(*_steps, from, to));
    else if (from.node())
        emit told(tr("This node has no neighbour on that side with which it could change places."));
}

/// \a side is 0 for below the target, else the side of it on which the node is to stand.
void SceneEditing::moveTo(const Orvane::NodePath& moved, const Orvane::NodePath& target, int side)
{
    const NodePlace from = NodePlace::of(moved);
    const Orvane::Node* const node = from.node();
    Orvane::Node* const hit = target.node();
    if (!node || !hit || isForeign(moved) || isForeign(target) || hit->context() != root()->context()) {
        emit told(tr("This node cannot be moved there."));
        return;
    }
    NodePlace to = side == 0 ? NodePlace() : NodePlace::of(target);
    const Orvane::Field* field = to.find();
    if (field && field->cardinality() == 1 && Orvane::Authoring::accepts(*field, *node->type())) {
        to.index += side > 0 ? 1 : 0;
    } else {
        field = Orvane::Authoring::fieldFor(*hit, *node->type());
        to = field ? NodePlace::endOf(*field) : NodePlace();
    }
    const bool isSameField = field && to.parent == from.parent && to.field == from.field;
    if (isSameField && to.index > from.index)
        --to.index;
    if (isSameField && to.index == from.index)
        return;
    const std::vector<Orvane::Node*> below = nodesBelow({moved.node()});
    const bool isInside = field && std::find(below.begin(), below.end(), field->node()) != below.end();
    if (!field || isInside || (field->cardinality() == 0 && to.node()))
        emit told(tr("There is no place for this node there."));
    else
        _steps->push(new MoveNodeCommand(*_steps, from, to));
}
