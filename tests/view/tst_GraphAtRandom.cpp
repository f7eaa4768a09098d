// A route graph over a running scene under any use: random presses, moves, keys, menus and turns of the
// wheel, while routes, names, fields and nodes come and go, also while a field menu is open and inside the
// canvas's own signals. What is tested is that the canvas never touches what has died and shows what is
// there. Meant to be run with the address sanitizer; each seed is one run, always the same.
#include "LogCapture.h"
#include "OpenMenu.h"
#include "QorGraphEdge.h"
#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include "base/Graph.h"
#include "base/NodeClass.h"
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <Orvane/Observer.h>
#include <Orvane/Route.h>
#include <QtCore/QPointer>
#include <QtCore/QRandomGenerator>
#include <algorithm>
#include <map>
#include <set>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

const char* const nodeTypes[] = {"Group", "Transform", "TimeSensor", "TouchSensor", "PositionInterpolator",
                                 "Script"};

/// The nodes that live, as the runtime tells their deaths.
class Living : public Observer
{
public:
    Living()
        : Observer(nullptr)
    {
        Node::_deleteObject.attach(*this);
    }
    void notify(const double&, BaseObject* subject, BaseObject*, BaseObject*) override
    {
        if (const auto* node = dynamic_cast<Node*>(subject))
            nodes.erase(node->ID());
    }
    bool contains(const Node* node) const
    {
        return std::any_of(nodes.begin(), nodes.end(),
                           [&](const auto& entry) { return entry.second == node; });
    }

    /// By id, so that runs do not depend on addresses.
    std::map<UInt64, Node*> nodes;
};

class Canvas : public QorGraphView
{
public:
    using QorGraphView::QorGraphView;

    /// The lines after a rebuild, which ends any mode.
    QList<QorGraphEdge*> lines()
    {
        _added.clear();
        updateEdges();
        return _added;
    }

protected:
    QorGraphEdge* addRoute(Route* route) override
    {
        QorGraphEdge* edge = QorGraphView::addRoute(route);
        if (edge)
            _added.append(edge);
        return edge;
    }

private:
    QList<QorGraphEdge*> _added;
};

/// A user, an author and a host at once, all led by one seed.
class Use
{
public:
    explicit Use(quint32 seed)
        : _random(seed)
        , _context(Context::create())
        , _scene(createRoot(_context, "Scene", nullptr, HOST_NC))
    {
        _context->setRootState(0.0, RUNNING_NS);
        _host.resize(500, 400);
        _host.show();
        while (_held.size() < 8)
            makeNode();
    }
    ~Use()
    {
        closeMenus();
        delete _canvas;
        _held.clear();
        _context->subRef();
    }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

    void step()
    {
        if (!_canvas)
            makeCanvas();
        if (QMenu* menu = openMenu())
            useMenu(menu);
        if (!_canvas)
            return;
        // A route that is begun shall often be ended.
        const bool drawsRoute = _canvas->mode() == QorGraphView::CREATEROUTE_M;
        switch (drawsRoute && once(2) ? 5 : below(12)) {
        case 0:
        case 1:
            changeScene();
            break;
        case 2:
            changeContent();
            break;
        case 3:
            turnOrType();
            break;
        case 4:
            changeView();
            break;
        case 5:
        case 6:
        case 7:
            press();
            break;
        case 8:
        case 9:
            moveMouse();
            break;
        default:
            release();
        }
        QCoreApplication::processEvents();
    }

    /// Paints, and compares the canvas with the scene.
    void check()
    {
        if (!_canvas)
            return;
        _canvas->grab();
        QVERIFY(_canvas->mode() >= QorGraphView::DEFAULT_M && _canvas->mode() <= QorGraphView::PANCANVAS_M);
        const auto boxes = _canvas->findChildren<QorGraphNodeView*>();
        for (const QorGraphNodeView* box : boxes)
            QVERIFY(!box->node() || _living.contains(box->node()));
        std::size_t expected = 0;
        for (const auto& [id, node] : _living.nodes) {
            const QorGraphNodeView* box = _canvas->viewOf(node);
            if (!box)
                continue;
            QCOMPARE(box->node(), node);
            for (unsigned int i = 0; const Field* field = node->findField(i); ++i) {
                if (!field->_inSlot)
                    continue;
                for (const Route* route : *field->_inSlot)
                    expected += route->type() != Route::IS_RT && _canvas->viewOf(sourceOf(*route)) ? 1 : 0;
            }
        }
        if (!_canvas->isVisible())
            return;
        const QList<QorGraphEdge*> lines = _canvas->lines();
        QCOMPARE(static_cast<std::size_t>(lines.size()), expected);
        QCOMPARE(std::set<QorGraphEdge*>(lines.begin(), lines.end()).size(), expected);
        for (const QorGraphEdge* line : lines) {
            QVERIFY(!line->isSelected());
            QVERIFY(_living.contains(line->srcNode()->node()));
            QVERIFY(_living.contains(line->destNode()->node()));
        }
        ++checks;
    }

    int checks = 0;
    int menus = 0;
    int begun = 0;
    int deaths = 0;
    int canvases = 0;

private:
    static const Node* sourceOf(const Route& route) { return route.outSlot()->field()->node(); }

    int below(int limit) { return static_cast<int>(_random.bounded(limit)); }
    bool once(int in) { return below(in) == 0; }

    Node* anyNode()
    {
        if (_living.nodes.empty())
            return nullptr;
        return std::next(_living.nodes.begin(), below(static_cast<int>(_living.nodes.size())))->second;
    }
    Field* anyField(const Node& node)
    {
        return node.findField(static_cast<unsigned int>(below(static_cast<int>(node.partDescCount()))));
    }
    MFNode& children() const { return static_cast<MFNode&>(*_scene->findField("children", Node::EXACT_FSO)); }

    void makeNode()
    {
        _held.push_back(createNode(*_context, *findType(nodeTypes[below(6)]), HOST_NC));
        Node* node = _held.back().get();
        _living.nodes.emplace(node->ID(), node);
        if (once(2))
            setName(*node, _scene->nameSpace(), "n" + std::to_string(below(20)));
        if (node->type()->name == "Script")
            node->addField("out" + std::to_string(below(3)), SFVEC3F_DT, EVENTOUTP);
        if (once(2))
            children().insertNode(0.0, 0, node, Field::EXTERNAL_CT);
    }
    void makeCanvas()
    {
        ++canvases;
        _canvas = new Canvas(&_host);
        _canvas->resize(500, 400);
        _canvas->show();
        QObject::connect(_canvas, &QorGraphView::nodeSelected, _canvas, [this](Node* node) {
            QVERIFY(_living.contains(node));
            if (once(10))
                changeScene();
            else if (once(20))
                changeContent();
            else if (once(100))
                delete _canvas;
        });
        QObject::connect(_canvas, &QorGraphView::wantsCreateRoute, _canvas,
                         [](UInt64 from, unsigned int out, UInt64 to, unsigned int in) {
                             Route::create(*Node::findNode(from)->findField(out)->_outSlot,
                                           *Node::findNode(to)->findField(in)->_inSlot, Route::SCENE_RT);
                         });
        QObject::connect(_canvas, &QorGraphView::wantsDeleteRoute, _canvas,
                         [](Route* route) { delete route; });
        for (int i = 0; i < 6; ++i)
            _canvas->add(anyNode(), somewhere());
    }

    /// Routes, names, fields and nodes come and go.
    void changeScene()
    {
        Node* const node = anyNode();
        switch (below(8)) {
        case 0:
            if (_living.nodes.size() < 30)
                makeNode();
            break;
        case 1:
            if (_living.nodes.size() > 6 && !_held.empty()) {
                const std::size_t before = _living.nodes.size();
                _held.erase(_held.begin() + below(static_cast<int>(_held.size())));
                deaths += _living.nodes.size() < before ? 1 : 0;
            }
            break;
        case 2:
            if (children().size() > 0) {
                const std::size_t before = _living.nodes.size();
                children().removeNode(0.0, below(static_cast<int>(children().size())), Field::EXTERNAL_CT);
                deaths += _living.nodes.size() < before ? 1 : 0;
            }
            break;
        case 3:
            if (node)
                setName(*node, _scene->nameSpace(),
                        once(3) ? std::string() : "n" + std::to_string(below(20)));
            break;
        case 4:
            if (node && node->type()->name == "Script") {
                const std::string name = "out" + std::to_string(below(3));
                if (Field* field = node->findField(name, Node::EXACT_FSO))
                    node->removeField(*field);
                else
                    node->addField(name, SFVEC3F_DT, once(2) ? EVENTOUTP : EVENTINP);
            }
            break;
        case 5:
            if (Route* route = anyRoute())
                delete route;
            break;
        case 6:
            connectAny();
            break;
        default:
            _context->runFrame();
        }
    }
    Route* anyRoute()
    {
        for (int i = 0; i < 10; ++i) {
            const Node* const node = anyNode();
            for (unsigned int part = 0; const Field* field = node ? node->findField(part) : nullptr; ++part) {
                if (field->_inSlot && field->_inSlot->begin() != field->_inSlot->end())
                    return *field->_inSlot->begin();
            }
        }
        return nullptr;
    }
    void connectAny()
    {
        for (int i = 0; i < 40; ++i) {
            const Node* const from = anyNode();
            const Node* const to = anyNode();
            Field* const out = from ? anyField(*from) : nullptr;
            Field* const in = to ? anyField(*to) : nullptr;
            if (!out || !in || out->dataType() != in->dataType())
                continue;
            EventOutSlot* const outSlot = out->getOutSlot(true, false);
            in->createInSlot(false);
            if (outSlot && in->_inSlot &&
                Route::create(*outSlot, *in->_inSlot, once(3) ? Route::SCRIPT_RT : Route::SCENE_RT))
                return;
        }
    }

    /// Boxes come and go.
    void changeContent()
    {
        Node* const node = anyNode();
        switch (below(10)) {
        case 0:
            _canvas->remove(node);
            break;
        case 1:
            _canvas->importDirectNeighboursOf(node);
            break;
        case 2:
            _canvas->importChildrenOf(once(2) ? node : _scene);
            break;
        case 3:
            _canvas->importChildrenRecursive(_scene);
            break;
        case 4:
            if (once(4))
                _canvas->clear();
            break;
        default:
            _canvas->add(node, somewhere());
        }
    }
    void changeView()
    {
        switch (below(9)) {
        case 0:
            _canvas->setScale(below(30) / 10.0);
            break;
        case 1:
            _canvas->setTranslation(somewhere());
            break;
        case 2:
            _canvas->resize(300 + below(200), 200 + below(200));
            break;
        case 3:
            _canvas->setVisible(once(3) ? !_canvas->isVisible() : true);
            break;
        case 4:
            _canvas->setManageRoutes(once(2));
            break;
        case 5:
            _canvas->setMode(static_cast<QorGraphView::Mode>(below(7)));
            break;
        case 6:
            _canvas->toggleNodeTypeVisible();
            break;
        case 7:
            if (QorGraphNodeView* box = anyBox())
                box->move(somewhere());
            break;
        default:
            if (once(4))
                delete _canvas;
        }
    }

    QPoint somewhere() { return {below(500), below(400)}; }
    QorGraphNodeView* anyBox()
    {
        for (int i = 0; i < 10; ++i) {
            if (QorGraphNodeView* box = _canvas->viewOf(anyNode()))
                return box;
        }
        return nullptr;
    }
    /// Mostly on a box or a line, on the strips more often than they are large.
    QPoint target()
    {
        const QorGraphNodeView* const box = once(4) ? nullptr : anyBox();
        if (!box)
            return somewhere();
        const double right = box->size().width();
        const double xs[] = {2.0, right - 2.0, right / 2.0, right + 4.0};
        return (box->pos() + QPointF(xs[below(4)], box->size().height() * (1 + below(3)) / 4.0)).toPoint();
    }
    void send(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        const Qt::KeyboardModifiers keys = once(3) ? Qt::ControlModifier : Qt::NoModifier;
        QMouseEvent event(type, at, _canvas->mapToGlobal(at), button, buttons, keys);
        QCoreApplication::sendEvent(_canvas, &event);
    }
    Qt::MouseButton anyButton()
    {
        const Qt::MouseButton buttons[] = {Qt::LeftButton,   Qt::LeftButton,  Qt::LeftButton,
                                           Qt::MiddleButton, Qt::RightButton, Qt::BackButton};
        return buttons[below(6)];
    }
    void press()
    {
        const Qt::MouseButton button = anyButton();
        _pressed = button;
        const bool wasIdle = _canvas->mode() == QorGraphView::DEFAULT_M;
        // For a field menu, which does not give back control before it is closed.
        QTimer::singleShot(0, &_host, [this] {
            QMenu* menu = openMenu();
            if (!menu)
                return;
            for (int i = below(3); i > 0 && _canvas; --i) {
                if (once(2))
                    changeScene();
                else if (once(2))
                    changeContent();
                else
                    changeView();
            }
            if ((menu = openMenu()))
                useMenu(menu);
        });
        send(once(10) ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, target(), button, button);
        begun += wasIdle && _canvas && _canvas->mode() == QorGraphView::CREATEROUTE_M ? 1 : 0;
    }
    void moveMouse()
    {
        const Qt::MouseButtons buttons[] = {Qt::NoButton, Qt::NoButton, Qt::LeftButton, Qt::MiddleButton};
        send(QEvent::MouseMove, target(), Qt::NoButton, buttons[below(4)]);
    }
    void release()
    {
        send(QEvent::MouseButtonRelease, target(), once(4) ? anyButton() : _pressed, Qt::NoButton);
    }
    void turnOrType()
    {
        if (once(2)) {
            const int angle = 120 * (below(5) - 2);
            QWheelEvent event(QPoint(9, 9), _canvas->mapToGlobal(QPoint(9, 9)), QPoint(), QPoint(0, angle),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(_canvas, &event);
            return;
        }
        const Qt::Key keys[] = {Qt::Key_Delete, Qt::Key_Delete, Qt::Key_A, Qt::Key_Space};
        QKeyEvent event(QEvent::KeyPress, keys[below(4)], Qt::NoModifier);
        QCoreApplication::sendEvent(_canvas, &event);
    }
    void useMenu(QMenu* menu)
    {
        ++menus;
        const QPointer<QMenu> living(menu);
        const QList<QAction*> actions = menu->actions();
        if (!actions.isEmpty() && !once(4))
            actions.at(below(actions.size()))->trigger();
        if (living)
            living->close();
    }
    static void closeMenus()
    {
        while (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    }

    QRandomGenerator _random;
    Living _living;
    Context* _context;
    Node* _scene;
    std::vector<NodeRef> _held;
    QWidget _host;
    Qt::MouseButton _pressed = Qt::LeftButton;
    QPointer<Canvas> _canvas;
};

} // namespace

class tst_GraphAtRandom : public QObject
{
    Q_OBJECT

private slots:
    void canvasIsTrueUnderAnyUse_data();
    void canvasIsTrueUnderAnyUse();
};

void tst_GraphAtRandom::canvasIsTrueUnderAnyUse_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 6; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void tst_GraphAtRandom::canvasIsTrueUnderAnyUse()
{
    QFETCH(quint32, seed);
    const LogCapture quiet(osg::LOG_FATAL);
    Use use(seed);
    for (int i = 0; i < 3000; ++i) {
        use.step();
        if (i % 25 == 0)
            use.check();
        if (QTest::currentTestFailed())
            return;
    }
    // It was no idle run.
    QVERIFY(use.checks > 20);
    QVERIFY(use.menus > 50);
    QVERIFY(use.begun > 5);
    QVERIFY(use.deaths > 10);
    QVERIFY(use.canvases > 1);
}

QTEST_MAIN(tst_GraphAtRandom)
#include "tst_GraphAtRandom.moc"
