#include "WorkbenchWindow.h"

#include "CodeDock.h"
#include "DocumentFile.h"
#include "FileDrops.h"
#include "FindActions.h"
#include "GraphDock.h"
#include "Icons.h"
#include "KeysDialog.h"
#include "LogDock.h"
#include "LogGuide.h"
#include "NodeDock.h"
#include "Palettes.h"
#include "PanelKeys.h"
#include "Picker.h"
#include "RouteCanvas.h"
#include "SceneDock.h"
#include "SceneEditing.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "Steps.h"
#include "TableDock.h"
#include "ViewAttendant.h"
#include <Orvane/Context.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QorRenderView.h>
#include <QorTools.h>
#include <QorViewManager.h>
#include <SAI/SAIBrowserRef.h>

using Orvane::Qt4::QorRenderView;
using Orvane::Qt4::QorViewManager;

namespace {

const QString geometryKey = QStringLiteral("window/geometry");
const QString stateKey = QStringLiteral("window/state");
const QString filterKey = QStringLiteral("scene/filter");
const QString toolBarName = QStringLiteral("ToolBar");
const QString darkKey = QStringLiteral("window/dark");

} // namespace

WorkbenchWindow::WorkbenchWindow(bool interactive)
    : _manager(new QorViewManager(this,
                                  interactive ? QorViewManager::TimerTrigger : QorViewManager::ManualTrigger))
    , _selection(new Selection(this))
    , _steps(new Steps(this))
    , _document(new DocumentFile(_manager, _steps, _selection, this))
    , _sceneDock(new SceneDock(_selection, this))
    , _nodeDock(new NodeDock(_selection, _steps, this))
    , _graphDock(new GraphDock(_selection, _steps, this))
    , _codeDock(new CodeDock(_selection, _steps, this))
    , _logDock(new LogDock(this))
    , _tableDock(new TableDock(_selection, _steps, this))
    , _editing(new SceneEditing(_selection, _steps, _sceneDock->treeView(), this))
    , _attendant(new ViewAttendant(_manager, this))
    , _status(new QLabel(this))
{
    useStyle();
    setCentralWidget(_manager);
    makeDocks();
    takeFiles(this);
    // A panel that floats is a window of its own.
    for (QDockWidget* const dock : findChildren<QDockWidget*>())
        takeFiles(dock);
    makeMenus();
    statusBar()->addPermanentWidget(_status);
    connect(_codeDock, &CodeDock::told, this, &WorkbenchWindow::tell);
    connect(_graphDock->canvas(), &RouteCanvas::told, this, &WorkbenchWindow::tell);
    connect(_editing, &SceneEditing::told, this, &WorkbenchWindow::tell);
    connect(_document, &DocumentFile::told, this, &WorkbenchWindow::tell);
    connect(_logDock, &LogDock::told, this, &WorkbenchWindow::tell);
    connect(_document, &DocumentFile::logWanted, _logDock, &LogDock::showLine);
    _document->setCode(_codeDock);
    connect(_codeDock, &CodeDock::fileDropped, _document, &DocumentFile::openByUser);
    _editing->setGuard([this](Orvane::Node& node) { return _codeDock->mayLeave(node); });
    connect(_document, &DocumentFile::opened, this, [this] {
        statusBar()->clearMessage();
        updateStatus();
        if (auto* view = _manager->findChild<QorRenderView*>())
            view->setFocus();
    });
    connect(&_statusTimer, &QTimer::timeout, this, &WorkbenchWindow::updateStatus);
    _statusTimer.start(500);
    updateStatus();
    tell(tr("Open a scene by %1, or drop a file on the window.")
             .arg(_document->openAction()->shortcut().toString(QKeySequence::NativeText)));
}

void WorkbenchWindow::makeDocks()
{
    addDockWidget(Qt::RightDockWidgetArea, _sceneDock);
    addDockWidget(Qt::RightDockWidgetArea, _nodeDock);
    const int letter = fontMetrics().averageCharWidth();
    const int width = letter * 51;
    resizeDocks({_sceneDock, _nodeDock}, {width, width}, Qt::Horizontal);
    addDockWidget(Qt::LeftDockWidgetArea, _codeDock);
    resizeDocks({_codeDock}, {letter * 45}, Qt::Horizontal);
    _codeDock->hide();
    addDockWidget(Qt::BottomDockWidgetArea, _logDock);
    resizeDocks({_logDock}, {fontMetrics().lineSpacing() * 9}, Qt::Vertical);
    // It needs more room than is left beside the view.
    addDockWidget(Qt::LeftDockWidgetArea, _tableDock);
    _tableDock->setFloating(true);
    _tableDock->hide();
    tabifyDockWidget(_logDock, _graphDock);
    _graphDock->hide();
}

void WorkbenchWindow::makeMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    _document->addTo(file);
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    QAction* undo = _steps->createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = _steps->createRedoAction(this, tr("&Redo"));
    redo->setShortcut(QKeySequence::Redo);
    edit->addActions({undo, redo});
    edit->addSeparator();
    const auto* finding = new FindActions(
        {_sceneDock->findBar(), _nodeDock->findBar(), _codeDock->findBar(), _logDock->findBar()}, this);
    edit->addActions(finding->actions());
    edit->addSeparator();
    edit->addAction(_codeDock->applyAction());
    auto* guide = new LogGuide([this] { return sceneRoot(); }, _selection, _codeDock, this);
    connect(_logDock, &LogDock::lineChosen, guide, &LogGuide::follow);
    connect(guide, &LogGuide::told, this, &WorkbenchWindow::tell);

    QMenu* view = makeViewMenu();
    QMenu* node = menuBar()->addMenu(tr("&Node"));
    _editing->addTo(node);
    node->addSeparator();
    node->addAction(_tableDock->action());
    _sceneDock->treeView()->addAction(_tableDock->action());
    SceneTreeView* tree = _sceneDock->treeView();
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(tree, &QWidget::customContextMenuRequested, node,
            [tree, node](const QPoint& place) { node->popup(tree->viewport()->mapToGlobal(place)); });

    makeToolBar({undo, redo});
    view->addSeparator();
    view->addAction(findChild<QToolBar*>(toolBarName)->toggleViewAction());
    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(
        tr("&Commands and keys..."), this, [this] { showKeys(*menuBar(), this); }, Qt::Key_F1);
}

std::vector<QDockWidget*> WorkbenchWindow::panels() const
{
    return {_sceneDock, _nodeDock, _codeDock, _logDock, _graphDock, _tableDock};
}

QMenu* WorkbenchWindow::createPopupMenu()
{
    auto* const menu = new QMenu(this); // the window deletes it once it was shown
    for (const QDockWidget* const dock : panels())
        menu->addAction(dock->toggleViewAction());
    menu->addSeparator();
    menu->addAction(findChild<QToolBar*>(toolBarName)->toggleViewAction());
    return menu;
}

QMenu* WorkbenchWindow::makeViewMenu()
{
    QMenu* view = menuBar()->addMenu(tr("&View"));
    _pick = (new Picker(_manager, _selection, this))->action();
    view->addAction(_pick);
    view->addAction(
        tr("&Go to the view"), this,
        [this] {
            if (auto* shown = _manager->findChild<QorRenderView*>())
                shown->setFocus(Qt::ShortcutFocusReason);
        },
        Qt::CTRL | Qt::Key_0);
    view->addSeparator();
    view->addAction(_attendant->buttonsAction());
    view->addSeparator();
    int number = 0;
    for (QDockWidget* const dock : panels()) {
        // A panel behind another one is shown by the tick as well.
        QAction* toggle = dock->toggleViewAction();
        toggle->setShortcut(Qt::CTRL | (Qt::Key_1 + number++));
        auto* const keys = new PanelKeys(dock);
        const auto isBehind = std::make_shared<bool>(false);
        connect(toggle, &QAction::toggled, dock,
                [=] { *isBehind = !dock->isHidden() && dock->visibleRegion().isEmpty(); });
        connect(toggle, &QAction::triggered, dock, [=](bool shown) {
            if (!shown && !*isBehind)
                return;
            keys->lead();
        });
        view->addAction(toggle);
    }
    view->addSeparator();
    _graphDock->addTo(view->addMenu(tr("Route bo&xes")));
    view->addSeparator();
    _dark = view->addAction(tr("&Dark colours"), this, &WorkbenchWindow::setDark);
    _dark->setCheckable(true);
    return view;
}

void WorkbenchWindow::makeToolBar(const QList<QAction*>& edits)
{
    QToolBar* bar = addToolBar(tr("&Tool bar"));
    bar->setObjectName(toolBarName);
    bar->setMovable(false);
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    bar->setIconSize(QSize(size, size));
    _document->openAction()->setIcon(drawnIcon(Drawing::Open));
    _document->saveAction()->setIcon(drawnIcon(Drawing::Save));
    edits.at(0)->setIcon(drawnIcon(Drawing::Undo));
    edits.at(1)->setIcon(drawnIcon(Drawing::Redo));
    bar->addActions({_document->openAction(), _document->saveAction()});
    bar->addSeparator();
    bar->addActions(edits);
    bar->addSeparator();
    bar->addActions({_pick, _tableDock->action()});
}

WorkbenchWindow::~WorkbenchWindow() = default;

void WorkbenchWindow::showButtons(bool visible)
{
    _attendant->buttonsAction()->setChecked(visible);
}

Orvane::Context* WorkbenchWindow::context() const
{
    const std::unique_ptr<__SAI_SAIBrowserRef> browser(_manager->getSAI());
    return browser ? browser->getExecutionContext() : nullptr;
}

bool WorkbenchWindow::open(const QString& file)
{
    const bool ok = _document->open(file);
    updateStatus();
    return ok;
}

QString WorkbenchWindow::loadError() const
{
    return _document->error();
}

void WorkbenchWindow::tell(const QString& text)
{
    // What was told of one step is not true of later ones.
    constexpr int Milliseconds = 15000;
    statusBar()->showMessage(text, Milliseconds);
}

bool WorkbenchWindow::useSettings()
{
    _keepsSettings = true;
    const QSettings settings;
    _sceneDock->setFilter(settings.value(filterKey).toString());
    setDark(settings.value(darkKey).toBool());
    const bool isKnown = restoreGeometry(settings.value(geometryKey).toByteArray());
    return restoreState(settings.value(stateKey).toByteArray()) && isKnown;
}

void WorkbenchWindow::setDark(bool dark)
{
    _isDarkKept = dark;
    showDark(dark);
}

void WorkbenchWindow::showDark(bool dark)
{
    _dark->setChecked(dark);
    usePalette(dark);
}

void WorkbenchWindow::showRoutes()
{
    _graphDock->showAllRoutes();
}

void WorkbenchWindow::closeEvent(QCloseEvent* event)
{
    if (!_document->mayClose()) {
        event->ignore();
        return;
    }
    if (_keepsSettings) {
        QSettings settings;
        settings.setValue(geometryKey, saveGeometry());
        settings.setValue(stateKey, saveState());
        settings.setValue(filterKey, _sceneDock->filter());
        settings.setValue(darkKey, _isDarkKept);
    }
    QMainWindow::closeEvent(event);
}

void WorkbenchWindow::takeFiles(QWidget* widget)
{
    connect(new FileDrops(widget), &FileDrops::dropped, _document, &DocumentFile::openByUser);
}

void WorkbenchWindow::holdTime(double seconds)
{
    if (Orvane::Context* scene = context())
        scene->holdTime(seconds);
}

Orvane::Node* WorkbenchWindow::sceneRoot() const
{
    Orvane::Context* scene = context();
    return scene ? scene->findRoot(Orvane::Scene::_type) : nullptr;
}

bool WorkbenchWindow::showNode(const QString& name)
{
    const Orvane::Node* root = sceneRoot();
    Orvane::Node* node =
        root ? Orvane::NodeNameSpace::findNode(root->nameSpace(), Orvane::Qt4::toRuntime(name)) : nullptr;
    if (node)
        _selection->selectNode(node);
    return node;
}

void WorkbenchWindow::updateStatus()
{
    Orvane::Context* scene = context();
    if (!scene)
        return;
    _sceneDock->setRootNode(sceneRoot());
    _graphDock->setRootNode(sceneRoot());
    _editing->setRootNode(sceneRoot());
    const Orvane::FrameStatistics statistics = scene->frameStatistics();
    _status->setText(tr("%1 frames/s   %L2 triangles")
                         .arg(statistics.framesPerSecond, 0, 'f', 1)
                         .arg(static_cast<qulonglong>(statistics.triangles)));
}
