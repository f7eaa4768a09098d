#include "SceneDock.h"

#include "NodeSearch.h"
#include "SceneModel.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QRegularExpression>
#include <QorNodeItem.h>
#include <QorTools.h>
#include <algorithm>

using namespace Orvane::Qt4;

namespace {

enum FindChoice : int { NameOrType = 0, NameAlone = 1, TypeAlone = 2 };
enum FilterMode : int { AllTypes = 0, OnlyTypes = 1, OtherTypes = 2 };

QStringList allTypes()
{
    std::vector<Orvane::NodeType*> types;
    Orvane::NodeType::getTypeVec(types, 1);
    QStringList names;
    for (const Orvane::NodeType* type : types)
        names << fromRuntime(type->name);
    return names;
}

QorNodeItem* itemOf(const QModelIndex& index)
{
    return static_cast<QorNodeItem*>(index.internalPointer());
}

} // namespace

SceneDock::EndObserver::EndObserver(SceneDock* dock)
    : Orvane::Observer("SceneDock")
    , _dock(dock)
{
    Orvane::Node::_deleteObject.attach(*this);
}

void SceneDock::EndObserver::notify(const double&, Orvane::BaseObject* node, Orvane::BaseObject*,
                                    Orvane::BaseObject*)
{
    const auto* dying = dynamic_cast<const Orvane::Node*>(node);
    if (dying && dying->ID() == _dock->_rootId)
        _dock->setRootNode(nullptr);
}

SceneDock::SceneDock(Selection* selection, QWidget* parent)
    : QDockWidget(tr("Scene"), parent)
    , _selection(selection)
    , _view(new SceneTreeView(this))
    , _findBar(nullptr)
    , _filterMode(new QComboBox(this))
    , _types(new QLineEdit(this))
    , _bodies(new QCheckBox(tr("Bodies"), this))
    , _endObserver(this)
{
    setObjectName(QStringLiteral("SceneDock"));
    _filterMode->addItems({tr("All types"), tr("Only"), tr("All but")});
    _types->setObjectName(QStringLiteral("types"));
    _types->setPlaceholderText(tr("Types, such as Shape"));
    _types->setEnabled(false);
    _types->setCompleter(new QCompleter(allTypes(), _types));
    _bodies->setObjectName(QStringLiteral("bodies"));
    _bodies->setToolTip(tr("Shows what lies inside instances of prototypes."));

    auto* bar = new QHBoxLayout;
    bar->addWidget(_filterMode);
    bar->addWidget(_types, 1);
    bar->addWidget(_bodies);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(bar);
    layout->addWidget(_view);
    _findBar = new FindBar(_view, {tr("Name or type"), tr("Name"), tr("Type")}, content);
    layout->addWidget(_findBar);
    content->setFocusProxy(_view);
    setWidget(content);

    connect(_findBar, &FindBar::wanted, this, &SceneDock::find);
    connect(_filterMode, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &SceneDock::applyFilter);
    connect(_types, &QLineEdit::editingFinished, this, &SceneDock::applyFilter);
    connect(_bodies, &QCheckBox::toggled, this, &SceneDock::applyFilter);
    connect(_view, SIGNAL(nodeSelected(Orvane::NodePath)), _selection, SLOT(selectPath(Orvane::NodePath)));
    connect(_selection, &Selection::changed, _view, &SceneTreeView::reveal);
    _rebuildTimer.setSingleShot(true);
    _rebuildTimer.setInterval(50);
    connect(&_rebuildTimer, &QTimer::timeout, this, &SceneDock::rebuildChanged);
}

SceneDock::~SceneDock()
{
    _view->setModel(nullptr);
}

void SceneDock::setRootNode(Orvane::Node* root)
{
    const unsigned long long id = root ? root->ID() : 0;
    if (id == _rootId)
        return;
    _rootId = id;
    _view->setModel(nullptr);
    _model.reset();
    _changedRows.clear();
    if (!root)
        return;
    _model = std::make_unique<SceneModel>(root, nullptr);
    connect(_model.get(), &SceneModel::childsRemoved, this, &SceneDock::refresh);
    connect(_model.get(), &QAbstractItemModel::rowsInserted, this, &SceneDock::rebuildLater);
    connect(_model.get(), &QAbstractItemModel::rowsRemoved, this, &SceneDock::rebuildLater);
    applyFilter();
    _view->setModel(_model.get());
    _view->expand(_model->index(0, 0));
    _view->reveal(_selection->path());
}

void SceneDock::find(FindBar::Step step)
{
    Orvane::Node* root = _rootId ? Orvane::Node::findNode(_rootId) : nullptr;
    if (!root)
        return;
    const NodeSearch search(*root, _bodies->isChecked());
    const Orvane::Node* present = _selection->node();
    std::vector<int> found;
    int before = 0;
    bool isBehind = !present;
    bool isMatch = false;
    for (int i = 0; !_findBar->text().isEmpty() && i < search.size(); ++i) {
        const Orvane::Node& node = *search.node(i);
        isBehind = isBehind || &node == present;
        const bool isNamed =
            _findBar->choice() != TypeAlone && node.name() && _findBar->matches(fromRuntime(*node.name()));
        const bool isOfType =
            _findBar->choice() != NameAlone && _findBar->matches(fromRuntime(node.type()->name));
        if (!isNamed && !isOfType)
            continue;
        before += isBehind ? 0 : 1;
        isMatch = isMatch || &node == present;
        found.push_back(i);
    }
    const int match = _findBar->choose(step, static_cast<int>(found.size()), before, isMatch);
    if (match >= 0)
        _selection->selectPath(search.path(found[static_cast<std::size_t>(match)]));
}

QString SceneDock::filter() const
{
    return QStringLiteral("%1 %2 %3")
        .arg(_filterMode->currentIndex())
        .arg(_bodies->isChecked() ? 1 : 0)
        .arg(_types->text());
}

void SceneDock::setFilter(const QString& filter)
{
    const int mode = filter.section(QLatin1Char(' '), 0, 0).toInt();
    _types->setText(filter.section(QLatin1Char(' '), 2));
    _bodies->setChecked(filter.section(QLatin1Char(' '), 1, 1) == QLatin1String("1"));
    _filterMode->setCurrentIndex(mode >= AllTypes && mode <= OtherTypes ? mode : AllTypes);
    applyFilter();
}

bool SceneDock::isFiltering() const
{
    return !_model->showTypeFilter().isEmpty() || !_model->hideTypeFilter().isEmpty();
}

void SceneDock::applyFilter()
{
    const int mode = _filterMode->currentIndex();
    _types->setEnabled(mode != AllTypes);
    if (!_model)
        return;
    const QStringList types =
        _types->text().split(QRegularExpression(QStringLiteral("[\\s,;]+")), Qt::SkipEmptyParts);
    const QStringList shown = mode == OnlyTypes ? types : QStringList();
    const QStringList hidden = mode == OtherTypes ? types : QStringList();
    if (shown == _model->showTypeFilter() && hidden == _model->hideTypeFilter() &&
        _bodies->isChecked() == _model->isShowingProtoBody())
        return;
    _model->setShowTypeFilter(shown);
    _model->setHideTypeFilter(hidden);
    _model->setShowProtoBody(_bodies->isChecked());
    rebuild();
}

/// Reads the whole tree anew, as its rows do not follow the filters by themselves.
void SceneDock::rebuild()
{
    QorNodeItem* root = _model->rootItem();
    if (!root || !root->isValid())
        return;
    root->invalidate(nullptr);
    root->updateCache(true);
    _view->reveal(_selection->path());
}

/// Single rows that come and go are counted without regard to filters.
void SceneDock::rebuildLater(const QModelIndex& parent)
{
    if (!isFiltering())
        return;
    const Orvane::NodePath& path = itemOf(parent)->nodePath();
    if (std::find(_changedRows.begin(), _changedRows.end(), path) == _changedRows.end())
        _changedRows.push_back(path);
    if (!_rebuildTimer.isActive())
        _rebuildTimer.start();
}

void SceneDock::rebuildChanged()
{
    const std::vector<Orvane::NodePath> changed = std::exchange(_changedRows, {});
    for (const Orvane::NodePath& path : changed) {
        QorNodeItem* item =
            _model && path.isValid() ? _model->recursiveSearchItemOf(_model->rootItem(), path) : nullptr;
        if (!item || !item->isValid())
            continue;
        item->invalidate(nullptr);
        item->updateCache(true);
    }
}

void SceneDock::refresh(const QModelIndex& index)
{
    const QModelIndex row = index.sibling(index.row(), 0);
    if (!_view->isExpanded(row))
        return;
    _view->collapse(row);
    _view->expand(row);
}
