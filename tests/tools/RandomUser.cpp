#include "RandomUser.h"

#include "CodeDock.h"
#include "DocumentFile.h"
#include "GraphDock.h"
#include "NodeDock.h"
#include "RouteCanvas.h"
#include "SceneDock.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "Steps.h"
#include "TableDock.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDirIterator>
#include <QDockWidget>
#include <QDropEvent>
#include <QFileInfo>
#include <QGLWidget>
#include <QMenu>
#include <QMimeData>
#include <QTextEdit>
#include <QWheelEvent>
#include <QorCodeWidget.h>
#include <QorGraphNodeView.h>
#include <QorImgCanvasImpl.h>
#include <QorImgCanvasView.h>
#include <QorNodeEditor.h>
#include <QorNodeEditorTreeView.h>
#include <QorViewManager.h>
#include <QtTest>
#include <numeric>

using namespace Orvane::Qt4;

namespace {

constexpr double frameTime = 0.05; ///< seconds of the scene between steps

/// All that can be seen and used.
template <class T>
QList<T*> usable(const QWidget* parent)
{
    QList<T*> widgets = parent->findChildren<T*>();
    widgets.erase(
        std::remove_if(widgets.begin(), widgets.end(),
                       [](const T* widget) { return !widget->isVisible() || !widget->isEnabled(); }),
        widgets.end());
    return widgets;
}

} // namespace

RandomUser::RandomUser(quint32 seed, const QStringList& scenes, bool isLive)
    : _random(seed)
    , _answers(seed + 1)
    , _isLive(isLive)
    , _robot(
          _answers, [this] { return _scenes.at(static_cast<int>(_answers.bounded(_scenes.size()))); },
          [this] { return fileToSave(); })
{
    for (const QString& scene : scenes)
        _scenes << copyOf(scene);
    QDir::setCurrent(_folder.path());
    makeWindow();
}

RandomUser::~RandomUser()
{
    _window.reset();
    QDir::setCurrent(QDir::rootPath());
}

/// Scenes find their textures and parts beside them, and nothing is written where they came from.
QString RandomUser::copyOf(const QString& scene)
{
    const QFileInfo file(scene);
    const QDir from = file.absoluteDir();
    const QString to = _folder.filePath(QString::number(_scenes.size()));
    QDirIterator files(from.path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString copy = to + QLatin1Char('/') + from.relativeFilePath(files.next());
        QDir().mkpath(QFileInfo(copy).path());
        QFile::copy(files.filePath(), copy);
        QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    }
    return to + QLatin1Char('/') + file.fileName();
}

/// One of twenty, so that files are written over too.
QString RandomUser::fileToSave()
{
    static const char* const suffixes[] = {"x3d", "x3dv", "wrl"};
    ++_files;
    return _folder.filePath(
        QStringLiteral("0/saved%1.%2").arg(_files % 20).arg(QLatin1String(suffixes[_files % 3])));
}

void RandomUser::makeWindow()
{
    ++windows;
    _window = std::make_unique<WorkbenchWindow>(_isLive);
    QObject::connect(_window->steps(), &QUndoStack::indexChanged, _window.get(), [this] { ++changes; });
    QObject::connect(_window->document(), &DocumentFile::opened, _window.get(), [this] { ++opened; });
    // Lines of the log go to its panel alone.
    osg::osgLogP->setLogType(osg::LOG_BUFFER, true);
    if (!_window->useSettings())
        _window->resize(1150, 850);
    _window->show();
    _window->activateWindow();
    QApplication::setActiveWindow(_window.get());
    QCoreApplication::processEvents();
    openAnother();
    settle();
}

QString RandomUser::scene() const
{
    return _window ? _window->document()->file() : QString();
}

const std::vector<RandomUser::Habit>& RandomUser::habits()
{
    static const std::vector<Habit> habits = {
        {10, "command", &RandomUser::triggerAction},
        {8, "undo", &RandomUser::undoOrRedo},
        {10, "keys", &RandomUser::typeKeys},
        {4, "button", &RandomUser::clickButton},
        {3, "context menu", &RandomUser::openContextMenu},
        {4, "mouse", &RandomUser::useMouseAnywhere},
        {12, "view", &RandomUser::useView},
        {8, "select", &RandomUser::selectNode},
        {10, "field", &RandomUser::editField},
        {5, "drop", &RandomUser::dropNode},
        {5, "route", &RandomUser::drawRoute},
        {6, "canvas", &RandomUser::useCanvas},
        {2, "delete routes", &RandomUser::deleteRoutes},
        {4, "code", &RandomUser::editCode},
        {4, "table", &RandomUser::paintTable},
        {2, "window", &RandomUser::changeWindow},
        {2, "fill in", &RandomUser::fillInAnything},
        {6, "frames", &RandomUser::runFrames},
        {1, "open", &RandomUser::openAnother},
        {1, "save", &RandomUser::saveAs},
    };
    return habits;
}

const char* RandomUser::step()
{
    static const int total = std::accumulate(habits().begin(), habits().end(), 0,
                                             [](int sum, const Habit& habit) { return sum + habit.weight; });
    int choice = below(total);
    const Habit* habit = habits().data();
    while (choice >= habit->weight)
        choice -= (habit++)->weight;
    _robot.watch(true);
    (this->*habit->act)();
    _robot.watch(false);
    settle();
    return habit->name;
}

/// Answers what is open, draws, and begins anew when the window was closed.
void RandomUser::settle()
{
    _robot.finish();
    if (!_isLive) {
        _time += frameTime;
        _window->holdTime(_time);
        _window->viewManager()->runFrame();
    }
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    _robot.finish();
    if (_window->isVisible()) {
        if (!QApplication::activeWindow())
            QApplication::setActiveWindow(_window.get());
        return;
    }
    _window.reset();
    makeWindow();
}

// ---- Files

void RandomUser::openAnother()
{
    _window->document()->openByUser(_scenes.at(below(_scenes.size())));
}

void RandomUser::saveAs()
{
    if (_window->document()->saveAs())
        ++saved;
}

// ---- Commands

void RandomUser::triggerAction()
{
    QAction* const action = any(_window->findChildren<QAction*>());
    if (action && action->isEnabled() && !action->isSeparator())
        action->trigger();
}

void RandomUser::undoOrRedo()
{
    for (int i = below(8); i >= 0; --i) {
        if (once(3))
            _window->steps()->redo();
        else
            _window->steps()->undo();
    }
}

void RandomUser::typeKeys()
{
    static const Qt::Key keys[] = {
        Qt::Key_Up,     Qt::Key_Down, Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Return,   Qt::Key_Escape,
        Qt::Key_Delete, Qt::Key_Tab,  Qt::Key_Space,  Qt::Key_F2,     Qt::Key_PageDown, Qt::Key_Home,
        Qt::Key_End,    Qt::Key_A,    Qt::Key_C,      Qt::Key_V,      Qt::Key_X,        Qt::Key_D,
        Qt::Key_Z,      Qt::Key_F,    Qt::Key_Insert, Qt::Key_PageUp, Qt::Key_Asterisk, Qt::Key_Plus,
        Qt::Key_Minus,  Qt::Key_1,    Qt::Key_W,      Qt::Key_L,      Qt::Key_F3,       Qt::Key_Backspace};
    static const Qt::KeyboardModifier modifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier,
                                                     Qt::ShiftModifier, Qt::AltModifier};
    const QPointer<QWidget> target(anyWidget());
    if (target && !once(3))
        target->setFocus();
    for (int i = below(6); i >= 0; --i) {
        QWidget* const focus = once(4) && target ? target.data() : QApplication::focusWidget();
        QWidget* const receiver = focus && focus->window()->isVisible() ? focus : _window.get();
        if (once(8))
            DialogRobot::type(receiver, _robot.anyText());
        else
            QTest::keyClick(receiver, keys[below(sizeof(keys) / sizeof(keys[0]))], modifiers[below(5)]);
        if (!_window->isVisible())
            return;
    }
}

void RandomUser::clickButton()
{
    if (auto* const button = any(usable<QAbstractButton>(_window.get())))
        button->click();
}

void RandomUser::openContextMenu()
{
    const QPointer<QWidget> widget(anyWidget());
    if (!widget)
        return;
    const QPoint place = placeIn(widget);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget->mapToGlobal(place));
    QApplication::sendEvent(widget, &event);
}

void RandomUser::fillInAnything()
{
    if (auto* const dock = any(usable<QDockWidget>(_window.get())))
        _robot.fillIn(dock->widget() ? dock->widget() : dock);
}

void RandomUser::runFrames()
{
    for (int i = 0; i < 10 && !_isLive; ++i) {
        _time += frameTime;
        _window->holdTime(_time);
        _window->viewManager()->runFrame();
    }
}

void RandomUser::changeWindow()
{
    auto* const dock = any(_window->findChildren<QDockWidget*>());
    switch (below(7)) {
    case 0:
        _window->resize(400 + below(900), 300 + below(700));
        break;
    case 1:
        if (dock)
            dock->setFloating(!dock->isFloating());
        break;
    case 2:
        if (dock && !dock->isFloating())
            _window->addDockWidget(static_cast<Qt::DockWidgetArea>(1 << below(4)), dock);
        break;
    case 3:
        _window->setWindowState(_window->windowState() ^ Qt::WindowFullScreen);
        break;
    case 4:
        if (once(4))
            _window->close();
        break;
    default:
        if (dock)
            dock->setVisible(!once(3));
    }
}

// ---- Mouse and keys

QWidget* RandomUser::anyWidget()
{
    return any(usable<QWidget>(_window.get()));
}

QPoint RandomUser::placeIn(const QWidget* widget)
{
    return {below(qMax(1, widget->width())), below(qMax(1, widget->height()))};
}

void RandomUser::sendMouse(QWidget* widget, QEvent::Type type, QPoint place, Qt::MouseButton button,
                           Qt::MouseButtons buttons)
{
    QMouseEvent event(type, place, widget->mapToGlobal(place), button, buttons, _modifiers);
    QApplication::sendEvent(widget, &event);
}

void RandomUser::drag(QWidget* widget, Qt::MouseButton button)
{
    const QPointer<QWidget> living(widget);
    _modifiers = once(4) ? Qt::ShiftModifier : once(4) ? Qt::ControlModifier : Qt::NoModifier;
    QPoint place = placeIn(widget);
    sendMouse(widget, once(8) ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, place, button,
              button);
    for (int i = below(8); i > 0 && living; --i) {
        place = once(4) ? placeIn(widget) : place + QPoint(below(41) - 20, below(41) - 20);
        sendMouse(widget, QEvent::MouseMove, place, Qt::NoButton, button);
        if (once(2))
            runFrames();
    }
    if (living)
        sendMouse(widget, QEvent::MouseButtonRelease, place, button, Qt::NoButton);
    _modifiers = Qt::NoModifier;
}

void RandomUser::turnWheel(QWidget* widget)
{
    const QPoint place = placeIn(widget);
    QWheelEvent event(place, widget->mapToGlobal(place), QPoint(), QPoint(0, 120 * (below(5) - 2)),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

void RandomUser::useMouseAnywhere()
{
    QWidget* const widget = anyWidget();
    // A drag out of the tree would wait for a real mouse.
    if (!widget || qobject_cast<SceneTreeView*>(widget->parentWidget()))
        return;
    if (once(4))
        turnWheel(widget);
    else
        drag(widget, once(3) ? Qt::RightButton : Qt::LeftButton);
}

void RandomUser::useView()
{
    auto* const view = any(usable<QGLWidget>(_window->viewManager()));
    if (!view)
        return;
    static const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::MiddleButton,
                                              Qt::RightButton};
    static const Qt::Key keys[] = {Qt::Key_Up, Qt::Key_Left, Qt::Key_PageDown, Qt::Key_W,
                                   Qt::Key_E,  Qt::Key_F,    Qt::Key_Escape,   Qt::Key_Home,
                                   Qt::Key_A,  Qt::Key_Q,    Qt::Key_Space};
    switch (below(5)) {
    case 0:
        turnWheel(view);
        break;
    case 1:
        QTest::keyPress(view, keys[below(sizeof(keys) / sizeof(keys[0]))]);
        runFrames();
        break;
    default:
        sendMouse(view, QEvent::MouseMove, placeIn(view), Qt::NoButton, Qt::NoButton);
        drag(view, buttons[below(4)]);
    }
}

// ---- Panels

QModelIndex RandomUser::anyRow(QAbstractItemView* view)
{
    QModelIndex row;
    for (int i = 0; i < 5 && !row.isValid(); ++i)
        row = view->indexAt(placeIn(view->viewport()));
    return row;
}

void RandomUser::selectNode()
{
    auto* const tree = _window->findChild<SceneTreeView*>();
    const QModelIndex row = anyRow(tree);
    if (!row.isValid())
        return;
    const QPoint place = tree->visualRect(row).center();
    sendMouse(tree->viewport(), QEvent::MouseButtonPress, place, Qt::LeftButton, Qt::LeftButton);
    sendMouse(tree->viewport(), QEvent::MouseButtonRelease, place, Qt::LeftButton, Qt::NoButton);
    if (once(2))
        tree->setExpanded(row, !tree->isExpanded(row));
    if (once(6))
        QTest::keyClick(tree, Qt::Key_Asterisk);
}

void RandomUser::editField()
{
    auto* const editor = _window->findChild<NodeDock*>()->findChild<QorNodeEditor*>();
    QTreeView* const fields = editor ? editor->treeView() : nullptr;
    if (!fields)
        return;
    const QModelIndex row = anyRow(fields);
    if (!row.isValid())
        return;
    fields->setExpanded(row.sibling(row.row(), 0), once(2));
    const QModelIndex value = row.sibling(row.row(), once(5) ? 0 : QorNodeModel::FieldValue);
    fields->setCurrentIndex(value);
    if (value.flags() & Qt::ItemIsEditable)
        fields->edit(value);
    const QPointer<QWidget> opened(fields->viewport()->findChild<QWidget*>());
    if (!opened)
        return;
    _robot.fillIn(opened);
    if (opened)
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : opened.data(),
                        once(4)   ? Qt::Key_Escape
                        : once(4) ? Qt::Key_Tab
                                  : Qt::Key_Return);
}

void RandomUser::dropNode()
{
    auto* const tree = _window->findChild<SceneTreeView*>();
    const std::unique_ptr<QMimeData> data(SceneTreeView::dragData(_window->selection()->path()));
    if (!data)
        return;
    const QWidgetList targets{tree->viewport(), tree->viewport(), _window->findChild<GraphDock*>()->canvas(),
                              _window->findChild<NodeDock*>()};
    QWidget* const target = any(targets);
    const QPoint place = placeIn(target);
    QDragEnterEvent enter(place, Qt::MoveAction | Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return;
    QDragMoveEvent move(placeIn(target), Qt::MoveAction | Qt::CopyAction, data.get(), Qt::LeftButton,
                        Qt::NoModifier);
    QApplication::sendEvent(target, &move);
    if (once(5)) {
        QDragLeaveEvent leave;
        QApplication::sendEvent(target, &leave);
        return;
    }
    QDropEvent drop(place, Qt::MoveAction | Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
}

/// As a drag from box to box does: many of these routes cannot be.
void RandomUser::drawRoute()
{
    auto* const dock = _window->findChild<GraphDock*>();
    if (once(4))
        dock->showAllRoutes();
    if (once(3))
        dock->addSelected();
    const auto boxes = dock->canvas()->boxes();
    if (boxes.empty())
        return;
    for (int i = 0; i < 100; ++i) {
        const Orvane::Node* const from = boxes.at(_random.bounded(static_cast<int>(boxes.size())))->node();
        const Orvane::Node* const to = boxes.at(_random.bounded(static_cast<int>(boxes.size())))->node();
        const unsigned int out = _random.bounded(from->partDescCount());
        const unsigned int in = _random.bounded(to->partDescCount());
        const Orvane::Field* const source = from->findField(out);
        const Orvane::Field* const sink = to->findField(in);
        if (!source || !sink || (source->dataType() != sink->dataType() && !once(60)))
            continue;
        emit dock->canvas()->wantsCreateRoute(from->ID(), out, to->ID(), in);
        return;
    }
}

void RandomUser::useCanvas()
{
    auto* const dock = _window->findChild<GraphDock*>();
    if (!dock->isVisible())
        dock->toggleViewAction()->trigger();
    if (once(5)) {
        turnWheel(dock->canvas());
        return;
    }
    const auto boxes = dock->canvas()->boxes();
    _modifiers = once(3) ? Qt::ControlModifier : Qt::NoModifier;
    const auto target = [&]() -> QPoint {
        if (boxes.empty() || once(3))
            return placeIn(dock->canvas());
        const QorGraphNodeView* const box = boxes.at(_random.bounded(static_cast<int>(boxes.size())));
        return (box->pos() +
                QPointF(box->size().width() * below(11), box->size().height() * below(11)) / 10.0)
            .toPoint();
    };
    static const Qt::MouseButton buttons[] = {Qt::LeftButton, Qt::LeftButton, Qt::MiddleButton,
                                              Qt::RightButton};
    const Qt::MouseButton button = buttons[below(4)];
    sendMouse(dock->canvas(), QEvent::MouseButtonPress, target(), button, button);
    _robot.finish();
    sendMouse(dock->canvas(), QEvent::MouseMove, placeIn(dock->canvas()), Qt::NoButton, button);
    sendMouse(dock->canvas(), QEvent::MouseButtonRelease, target(), button, Qt::NoButton);
    _modifiers = Qt::NoModifier;
}

void RandomUser::deleteRoutes()
{
    RouteCanvas* const canvas = _window->findChild<GraphDock*>()->canvas();
    if (once(3))
        canvas->selectAll();
    else
        useCanvas();
    QTest::keyClick(canvas, Qt::Key_Delete);
}

void RandomUser::editCode()
{
    static const char* const codes[] = {"function f(v) { return v; }\n",
                                        "}",
                                        "/*",
                                        "print('x');",
                                        "\n",
                                        "void main() { gl_FragColor = vec4(1.0); }",
                                        "ecmascript:",
                                        "#version 120\n",
                                        "undefinedName.x = 1;",
                                        "\"",
                                        "("};
    auto* const dock = _window->findChild<CodeDock*>();
    if (!dock->isVisible())
        dock->toggleViewAction()->trigger();
    if (Orvane::Node* const node = _window->selection()->node(); node && once(2))
        dock->openNode(node);
    const QPointer<QWidget> widget(dock->codeWidget());
    auto* const text = any(usable<QTextEdit>(widget));
    if (!text)
        return;
    QTextCursor cursor = text->textCursor();
    cursor.setPosition(below(qMax(1, text->document()->characterCount())));
    if (once(4))
        cursor.movePosition(QTextCursor::NextWord, QTextCursor::KeepAnchor, below(5));
    text->setTextCursor(cursor);
    text->insertPlainText(QLatin1String(codes[below(sizeof(codes) / sizeof(codes[0]))]));
    if (auto* const button = any(usable<QAbstractButton>(widget)); button && once(2))
        button->click();
}

void RandomUser::paintTable()
{
    auto* const dock = _window->findChild<TableDock*>();
    if (dock->action()->isEnabled())
        dock->action()->trigger();
    if (auto* const painter = any(usable<QorImgCanvasView>(dock)))
        drag(painter, once(4) ? Qt::RightButton : Qt::LeftButton);
}
