#include "WorkbenchWindow.h"

#include "CodeDock.h"
#include "FindActions.h"
#include "GraphDock.h"
#include "LogDock.h"
#include "LogGuide.h"
#include "NodeDock.h"
#include "Picker.h"
#include "RouteCanvas.h"
#include "SceneDock.h"
#include "SceneSaving.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "TableDock.h"
#include "ViewAttendant.h"
#include <Orvane/Context.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QUndoStack>
#include <QorFileDialog.h>
#include <QorRenderView.h>
#include <QorTools.h>
#include <QorViewManager.h>
#include <SAI/SAIBrowserRef.h>

using Orvane::Qt4::QorFileDialog;
using Orvane::Qt4::QorRenderView;
using Orvane::Qt4::QorViewManager;

WorkbenchWindow::WorkbenchWindow(bool interactive)
    : _manager(new QorViewManager(this,
                                  interactive ? QorViewManager::TimerTrigger : QorViewManager::ManualTrigger))
    , _selection(new Selection(this))
    , _steps(new QUndoStack(this))
    , _sceneDock(new SceneDock(_selection, this))
    , _graphDock(new GraphDock(_selection, _steps, this))
    , _attendant(new ViewAttendant(_manager, this))
    , _status(new QLabel(this))
{
    setWindowTitle(tr("Orvane workbench"));
    setCentralWidget(_manager);
    auto* nodeDock = new NodeDock(_selection, this);
    addDockWidget(Qt::RightDockWidgetArea, _sceneDock);
    addDockWidget(Qt::RightDockWidgetArea, nodeDock);
    resizeDocks({_sceneDock, nodeDock}, {360, 360}, Qt::Horizontal);
    auto* codeDock = new CodeDock(_selection, this);
    addDockWidget(Qt::LeftDockWidgetArea, codeDock);
    codeDock->hide();
    connect(codeDock, &CodeDock::fieldsChanged, nodeDock, &NodeDock::refresh);
    connect(codeDock, &CodeDock::told, statusBar(),
            [this](const QString& text) { statusBar()->showMessage(text); });
    auto* logDock = new LogDock(this);
    addDockWidget(Qt::BottomDockWidgetArea, logDock);
    resizeDocks({logDock}, {150}, Qt::Vertical);
    // It needs more room than is left beside the view.
    auto* tableDock = new TableDock(_selection, this);
    addDockWidget(Qt::LeftDockWidgetArea, tableDock);
    tableDock->setFloating(true);
    tableDock->hide();
    tabifyDockWidget(logDock, _graphDock);
    _graphDock->hide();
    connect(_graphDock->canvas(), &RouteCanvas::told, statusBar(),
            [this](const QString& text) { statusBar()->showMessage(text); });
    statusBar()->addPermanentWidget(_status);

    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* openAction = file->addAction(tr("&Open..."), this, &WorkbenchWindow::openByDialog);
    openAction->setShortcut(QKeySequence::Open);
    QAction* reload = file->addAction(tr("&Reload"), this, [this] {
        if (!_file.isEmpty())
            openOrTell(_file);
    });
    reload->setShortcut(QKeySequence::Refresh);
    QAction* saveAction = file->addAction(tr("Save &as..."), this, &WorkbenchWindow::saveByDialog);
    saveAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
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
    const auto* finding =
        new FindActions({_sceneDock->findBar(), nodeDock->findBar(), logDock->findBar()}, this);
    edit->addActions(finding->actions());
    auto* guide = new LogGuide([this] { return sceneRoot(); }, _selection, codeDock, this);
    connect(logDock, &LogDock::lineChosen, guide, &LogGuide::follow);
    connect(guide, &LogGuide::told, statusBar(),
            [this](const QString& text) { statusBar()->showMessage(text); });

    QMenu* view = menuBar()->addMenu(tr("&View"));
    view->addAction((new Picker(_manager, _selection, this))->action());
    view->addSeparator();
    view->addAction(_attendant->buttonsAction());
    view->addAction(_sceneDock->toggleViewAction());
    view->addAction(nodeDock->toggleViewAction());
    view->addAction(codeDock->toggleViewAction());
    view->addAction(logDock->toggleViewAction());
    view->addAction(_graphDock->toggleViewAction());
    view->addAction(tr("All &routes"), _graphDock, &GraphDock::showAllRoutes);

    menuBar()->addMenu(tr("&Node"))->addAction(tableDock->action());
    _sceneDock->treeView()->setContextMenuPolicy(Qt::ActionsContextMenu);
    _sceneDock->treeView()->addAction(tableDock->action());

    connect(&_statusTimer, &QTimer::timeout, this, &WorkbenchWindow::updateStatus);
    _statusTimer.start(500);
    updateStatus();
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
    _loadError.clear();
    // An address is told by its scheme; anything else is a file name, and one with odd characters too.
    const QString path = QFileInfo(file).absoluteFilePath();
    const bool ok = _manager->loadContextByURL(path);
    if (ok) {
        _file = path;
        _steps->clear();
        setWindowTitle(tr("%1 - Orvane workbench").arg(QFileInfo(file).fileName()));
        if (auto* view = _manager->findChild<QorRenderView*>())
            view->setFocus();
    } else if (Orvane::Context* scene = context()) {
        for (const Orvane::LoadMessage& message : scene->loadReport().messages) {
            if (message.severity == Orvane::LoadMessage::ERROR_LM)
                _loadError += (_loadError.isEmpty() ? QString() : QStringLiteral("\n")) +
                              QString::fromUtf8(message.toString().c_str());
        }
    }
    if (!ok && _loadError.isEmpty())
        _loadError = tr("%1: the scene cannot be loaded").arg(path);
    updateStatus();
    return ok;
}

void WorkbenchWindow::openByDialog()
{
    const QString file =
        QFileDialog::getOpenFileName(this, tr("Open scene"), QFileInfo(_file).path(),
                                     QorFileDialog::buildFileFilters().join(QStringLiteral(";;")));
    if (!file.isEmpty())
        openOrTell(file);
}

void WorkbenchWindow::saveByDialog()
{
    Orvane::Context* scene = context();
    const QString told = scene ? saveSceneByDialog(*scene, _file, this) : QString();
    if (!told.isEmpty())
        statusBar()->showMessage(told);
}

void WorkbenchWindow::openOrTell(const QString& file)
{
    if (open(file))
        statusBar()->clearMessage();
    else
        statusBar()->showMessage(_loadError.section(QLatin1Char('\n'), 0, 0));
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
    const Orvane::FrameStatistics statistics = scene->frameStatistics();
    _status->setText(tr("%1 frames/s   %L2 triangles")
                         .arg(statistics.framesPerSecond, 0, 'f', 1)
                         .arg(static_cast<qulonglong>(statistics.triangles)));
}
