#pragma once

#include "OpenMenu.h"
#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include <QtGui/QWindow>

/// The user of a graph canvas on the screen: moves, presses and chooses with a real mouse.
class MouseOnGraph
{
public:
    explicit MouseOnGraph(Orvane::Qt4::QorGraphView& canvas)
        : _canvas(canvas)
    {
    }

    void move(QPoint to) { QTest::mouseMove(window(), at(to)); }
    void press(QPoint to, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(window(), button, {}, at(to));
    }
    void release(QPoint to, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(window(), button, {}, at(to));
    }
    void click(QPoint to, Qt::MouseButton button = Qt::LeftButton)
    {
        press(to, button);
        release(to, button);
    }
    /// Presses on the canvas, and on an entry of the field menu that opens.
    void chooseField(QPoint to, const char* entry)
    {
        whenMenuOpens(&_canvas, [entry] {
            QMenu* menu = openMenu();
            for (QAction* action : menu->actions()) {
                if (action->text() == QLatin1String(entry)) {
                    QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, {},
                                      menu->actionGeometry(action).center());
                    return;
                }
            }
            qFatal("no entry %s", entry);
        });
        press(to);
    }

    /// Places in the strips of a node's box, above the lines.
    QPoint inputOf(const Orvane::Node* node) const { return corner(node) + QPoint(3, 3); }
    QPoint outputOf(const Orvane::Node* node) const
    {
        return corner(node) + QPoint(static_cast<int>(box(node)->size().width()) - 3, 3);
    }
    /// The middle of a line between two boxes.
    QPoint between(const Orvane::Node* from, const Orvane::Node* to) const
    {
        const QRectF start = box(from)->rect();
        const QRectF end = box(to)->rect();
        return ((QPointF(start.right(), start.center().y()) + QPointF(end.left(), end.center().y())) / 2)
            .toPoint();
    }

private:
    QWindow* window() const { return _canvas.window()->windowHandle(); }
    QPoint at(QPoint to) const { return _canvas.mapTo(_canvas.window(), to); }
    const Orvane::Qt4::QorGraphNodeView* box(const Orvane::Node* node) const { return _canvas.viewOf(node); }
    QPoint corner(const Orvane::Node* node) const { return box(node)->pos().toPoint(); }

    Orvane::Qt4::QorGraphView& _canvas;
};
