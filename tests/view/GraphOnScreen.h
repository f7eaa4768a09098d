#pragma once

#include "FieldRows.h"
#include "LogCapture.h"
#include "OpenMenu.h"
#include "QorGraphEdge.h"
#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include "tinyruntime/Tiny.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Node.h>
#include <Orvane/Route.h>
#include <QtGui/QWindow>

/// A graph canvas that tells what it is made of, and gives tests what is for subclasses.
class TestGraph : public Orvane::Qt4::QorGraphView
{
public:
    using QorGraphView::createRouteEvent;
    using QorGraphView::deleteSelectedRoutesEvent;
    using QorGraphView::endPoint;
    using QorGraphView::layout;
    using QorGraphView::outSlotPos;
    using QorGraphView::QorGraphView;
    using QorGraphView::startPoint;

    /// The lines of today, in order.
    QList<Orvane::Qt4::QorGraphEdge*> lines()
    {
        _added.clear();
        updateEdges();
        return _added;
    }
    /// Calls of `addRoute` since the last call of this.
    int takeAddCalls() { return std::exchange(_addCalls, 0); }

    QWindow* window() const { return windowHandle(); }
    QColor pixel(int x, int y) { return grab().toImage().pixelColor(x, y); }

protected:
    Orvane::Qt4::QorGraphEdge* addRoute(Orvane::Route* route) override
    {
        ++_addCalls;
        auto* edge = QorGraphView::addRoute(route);
        if (edge)
            _added.append(edge);
        return edge;
    }

private:
    QList<Orvane::Qt4::QorGraphEdge*> _added;
    int _addCalls = 0;
};

/// Parts of the nodes that tests put on a canvas: part 0 can do both, 1 only receives, 2 only sends, 3 is
/// only a field, 4 is as 0 with another type.
inline Orvane::NodeType* routedType()
{
    static Orvane::NodeType* type = Tiny::makeType(
        "Routed", {part("value", Orvane::SFFLOAT_DT), part("go", Orvane::SFFLOAT_DT, "", Orvane::EVENTINP),
                   part("gone", Orvane::SFFLOAT_DT, "", Orvane::EVENTOUTP),
                   part("inner", Orvane::SFFLOAT_DT, "", Orvane::FIELDP), part("title", Orvane::SFSTRING_DT),
                   part("children", Orvane::MFNODE_DT), part("single", Orvane::SFNODE_DT)});
    return type;
}

/// A node of the test's own.
inline std::unique_ptr<Orvane::Node> routedNode(const char* name = nullptr)
{
    return std::unique_ptr<Orvane::Node>(Tiny::makeNode(routedType(), name));
}

/// A new route between parts of two nodes; it goes with them.
inline Orvane::Route* connectParts(const Orvane::Node& from, unsigned int out, const Orvane::Node& to,
                                   unsigned int in, Orvane::Route::Type type = Orvane::Route::SCENE_RT)
{
    from.findField(out)->createOutSlot(false);
    to.findField(in)->createInSlot(false);
    return Orvane::Route::create(*from.findField(out)->_outSlot, *to.findField(in)->_inSlot, type);
}

/// A visible canvas of 400 by 300 pixels, whose origin is (200, 150), with nodes "a", "b", "c" beside it.
struct GraphOnScreen
{
    GraphOnScreen()
        : a(routedNode("a"))
        , b(routedNode("b"))
        , c(routedNode("c"))
    {
        // Menus have room on all sides.
        canvas.setGeometry(250, 100, 400, 300);
        canvas.show();
        canvas.activateWindow();
        if (!QTest::qWaitForWindowActive(&canvas))
            qFatal("the canvas does not come to the screen");
        // A move to where the pointer is already would be none.
        move(QPoint(398, 298));
        move(QPoint(397, 298));
    }
    ~GraphOnScreen()
    {
        // Whatever a test left pressed or open.
        while (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
        QTestPrivate::qtestMouseButtons = Qt::NoButton;
    }

    /// Boxes for a and b at (50, 50) and (200, 100), and a route from a.gone to b.go.
    void addPair()
    {
        boxA = canvas.add(a.get(), QPoint(50, 50));
        boxB = canvas.add(b.get(), QPoint(200, 100));
        route = connectParts(*a, 2, *b, 1);
    }

    // The mouse, in pixels of the canvas.
    void press(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {})
    {
        QTest::mousePress(canvas.window(), button, keys, at);
    }
    void move(QPoint to) { QTest::mouseMove(canvas.window(), to); }
    void release(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(canvas.window(), button, {}, at);
    }
    void click(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {})
    {
        press(at, button, keys);
        release(at, button);
    }
    /// Opens a field menu by a press, and chooses an entry of it.
    void chooseField(QPoint at, const char* entry)
    {
        whenMenuOpens(&canvas, [entry] { chooseByMouse(entry); });
        press(at);
    }
    /// Moves onto an entry of the menu that is open, presses and releases.
    static void chooseByMouse(const char* entry)
    {
        QMenu* menu = openMenu();
        for (QAction* action : menu->actions()) {
            if (action->text() == QLatin1String(entry)) {
                QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, {},
                                  menu->actionGeometry(action).center());
                return;
            }
        }
        qFatal("no entry %s", entry);
    }

    QByteArrayList selectedNames() const
    {
        QByteArrayList names;
        for (const auto& node : {a.get(), b.get(), c.get()}) {
            const auto* box = canvas.viewOf(node);
            if (box && box->isSelected())
                names << node->name()->c_str();
        }
        return names;
    }

    std::unique_ptr<Orvane::Node> a;
    std::unique_ptr<Orvane::Node> b;
    std::unique_ptr<Orvane::Node> c;
    TestGraph canvas;
    Orvane::Qt4::QorGraphNodeView* boxA = nullptr;
    Orvane::Qt4::QorGraphNodeView* boxB = nullptr;
    Orvane::Route* route = nullptr;
};
