#pragma once

#include "QorExport.h"
#include <QtCore/QObject>
#include <QtCore/QRectF>
#include <QtGui/QFont>
#include <QtGui/QPalette>

class QMouseEvent;
class QPainter;

namespace Orvane::Qt4 {

class QorGraphView;

/// What a graph canvas paints: a light object that is no widget, with place and size in the canvas's own
/// pixels. The canvas paints it, hands mouse events to it and rewrites its place when the view changes.
/// Owned by its canvas, and gone only with it. Changes do not repaint: the canvas decides when.
class QOR_EXPORT QorGraphDrawable : public QObject
{
    Q_OBJECT

public:
    /// \a graphView is the owner.
    explicit QorGraphDrawable(QorGraphView* graphView);
    ~QorGraphDrawable() override;

    /// The canvas.
    QorGraphView* graphView() const { return _graphView; }

    /// Top left corner in pixels of the canvas.
    QPointF pos() const { return _pos; }
    /// Width and height in pixels of the canvas; (-1, -1) until it is set.
    QSizeF size() const { return _size; }
    QRectF rect() const { return QRectF(_pos, _size); }
    void move(const QPointF& pos) { _pos = pos; }
    void move(int x, int y) { _pos = QPointF(x, y); }
    void resize(const QSizeF& size) { _size = size; }
    void resize(int width, int height) { _size = QSizeF(width, height); }

    /// Opacity, 0 to 255; other numbers are kept as they are.
    int alpha() const { return _alpha; }
    void setAlpha(int alpha) { _alpha = alpha; }
    const QFont& font() const { return _font; }
    void setFont(const QFont& font) { _font = font; }
    const QPalette& palette() const { return _palette; }
    void setPalette(const QPalette& palette) { _palette = palette; }

    /// Whether the drawable is selected.
    bool isSelected() const { return _selected; }

public slots:
    /// Change the selection; the canvas is repainted.
    void toggleSelection();
    void deselect();
    void select();

protected:
    friend class QorGraphView;

    virtual void paint(QPainter* painter) = 0;
    /// The positions of mouse events are relative to the drawable.
    virtual void mousePressEvent(QMouseEvent* event);
    virtual void mouseMoveEvent(QMouseEvent* event);
    virtual void mouseReleaseEvent(QMouseEvent* event);
    virtual void enterEvent(QEvent* event);
    virtual void leaveEvent(QEvent* event);

    QorGraphView* _graphView;
    QPointF _pos;
    QSizeF _size;
    QPalette _palette;
    int _alpha = 255;
    bool _selected = false;
    QFont _font;
};

} // namespace Orvane::Qt4
