#include "Icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <initializer_list>

namespace {

void addLine(QPainterPath& path, std::initializer_list<QPointF> points)
{
    path.moveTo(*points.begin());
    for (const QPointF& point : points)
        path.lineTo(point);
}

void addFace(QPainterPath& path, std::initializer_list<QPointF> points)
{
    addLine(path, points);
    path.closeSubpath();
}

/// The lines of a drawing on a ground of 16 by 16.
QPainterPath linesOf(Drawing drawing)
{
    QPainterPath path;
    switch (drawing) {
    case Drawing::New:
        addFace(path, {{3.5, 1.5}, {9.5, 1.5}, {12.5, 4.5}, {12.5, 14.5}, {3.5, 14.5}});
        addLine(path, {{9.5, 1.5}, {9.5, 4.5}, {12.5, 4.5}});
        break;
    case Drawing::Open:
        addLine(path, {{1.5, 13.5}, {1.5, 3.5}, {5.5, 3.5}, {7, 5.5}, {12.5, 5.5}, {12.5, 8}});
        addFace(path, {{1.5, 13.5}, {4, 8}, {15, 8}, {12.5, 13.5}});
        break;
    case Drawing::Save:
        addFace(path, {{2.5, 2.5}, {11, 2.5}, {13.5, 5}, {13.5, 13.5}, {2.5, 13.5}});
        addLine(path, {{5.5, 2.5}, {5.5, 5.5}, {10, 5.5}, {10, 2.5}});
        addLine(path, {{4.5, 13.5}, {4.5, 8.5}, {11.5, 8.5}, {11.5, 13.5}});
        break;
    case Drawing::Undo:
        addLine(path, {{6.5, 2.5}, {3, 6}, {6.5, 9.5}});
        path.moveTo(3, 6);
        path.cubicTo(9, 6, 13, 7.5, 13, 13.5);
        break;
    case Drawing::Redo:
        addLine(path, {{9.5, 2.5}, {13, 6}, {9.5, 9.5}});
        path.moveTo(13, 6);
        path.cubicTo(7, 6, 3, 7.5, 3, 13.5);
        break;
    case Drawing::Pick:
        addFace(path, {{3.5, 1.5}, {3.5, 12}, {6.3, 9.6}, {8.2, 14}, {10.2, 13.1}, {8.3, 8.9}, {12, 8.9}});
        break;
    case Drawing::Routes:
        path.addRect(1.5, 2.5, 5, 4);
        path.addRect(9.5, 9.5, 5, 4);
        path.moveTo(6.5, 4.5);
        path.cubicTo(12, 4.5, 4, 11.5, 9.5, 11.5);
        break;
    case Drawing::Table:
        addLine(path, {{2.5, 1.5}, {2.5, 13.5}, {14.5, 13.5}});
        path.moveTo(4.5, 11);
        path.cubicTo(8, 11, 7, 4, 10, 4);
        path.cubicTo(12, 4, 12, 7, 14, 7);
        break;
    case Drawing::Close:
        addLine(path, {{4, 4}, {12, 12}});
        addLine(path, {{12, 4}, {4, 12}});
        break;
    case Drawing::Up:
        addLine(path, {{3.5, 10.5}, {8, 5.5}, {12.5, 10.5}});
        break;
    case Drawing::Down:
        addLine(path, {{3.5, 5.5}, {8, 10.5}, {12.5, 5.5}});
        break;
    case Drawing::Float:
        path.addRect(3.5, 6.5, 6, 6);
        addLine(path, {{6.5, 6.5}, {6.5, 3.5}, {12.5, 3.5}, {12.5, 9.5}, {9.5, 9.5}});
        break;
    }
    return path;
}

class DrawingEngine : public QIconEngine
{
public:
    explicit DrawingEngine(Drawing drawing)
        : _drawing(drawing)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        constexpr double ground = 16.0;
        const double scale = std::min(rect.width(), rect.height()) / ground;
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center() - QPointF(ground, ground) * scale / 2.0);
        painter->scale(scale, scale);
        painter->setPen(QPen(QGuiApplication::palette().color(group, QPalette::WindowText), 1.2,
                             Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(linesOf(_drawing));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return result;
    }

    QIconEngine* clone() const override { return new DrawingEngine(_drawing); }

private:
    Drawing _drawing;
};

} // namespace

QIcon drawnIcon(Drawing drawing)
{
    return QIcon(new DrawingEngine(drawing)); // which owns it
}
