#pragma once

#include "QorGraphDrawable.h"
#include <memory>

class QKeyEvent;
class QMenu;

namespace Orvane {
class Node;
}

namespace Orvane::Qt4 {

class QorGraphLabel;

/// The box that stands for a node on a graph canvas: a strip at the left for the fields that receive routes,
/// one at the right for those that send, and the body between them. A press on a strip opens a menu of these
/// fields. Owned by its canvas, which takes the node away when that dies.
class QOR_EXPORT QorGraphNodeView : public QorGraphDrawable
{
    Q_OBJECT

public:
    /// \a node is borrowed and may be null. The size is that of scale 1.
    QorGraphNodeView(QorGraphView* view, Orvane::Node* node);
    ~QorGraphNodeView() override;

    /// Null once the node has died.
    Orvane::Node* node() const { return _node; }
    QorGraphView* parentWidget() const;

    /// Whether the label shows the node's type above its id.
    bool isNodeTypeVisible() const { return _nodeTypeVisible; }
    void setNodeTypeVisible(bool visible) { _nodeTypeVisible = visible; }

    /// The strips, relative to the box.
    const QRectF inputAreaRect() const;
    const QRectF outputAreaRect() const;

    /// Arrow keys move the box by two pixels; other keys are ignored.
    virtual void keyPressEvent(QKeyEvent* event);

signals:
    /// The left button went down or up over the strip of fields that receive,
    void inputAreaPressed();
    void inputAreaReleased();
    /// over the strip of fields that send,
    void outputAreaPressed();
    void outputAreaReleased();
    /// or over the rest of the box.
    void pressed();
    void released();
    /// A field was chosen in the menu of fields that send.
    void outputSlotClicked(const QString& name);
    /// A field was chosen in the menu of fields that receive.
    void inputSlotClicked(const QString& name);

protected:
    friend class QorGraphView;

    /// What a menu of fields lists.
    enum MenuType : int {
        InputMenu = 0, ///< fields that can receive a route
        OutputMenu = 1 ///< fields that can send a route
    };
    /// Where a triangle has its point.
    enum ArrowDirection : int { ArrowLeft = 0, ArrowRight = 1 };

    /// Width of a strip in percent of the box, and how far the input menu reaches under the box in pixels.
    static constexpr double _fieldAreaWidth = 8.0;

    void paint(QPainter* painter) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

    /// Whether a point of the canvas lies in one of the two strips.
    bool inputAreaContains(const QPoint& point) const;
    bool outputAreaContains(const QPoint& point) const;
    /// Where the field menu goes on the screen; it has its width only once it shows.
    QPointF calculateMenuPosition(const MenuType& type);
    void paintArrow(QPainter* painter, const QRect& rect, const ArrowDirection& direction,
                    const QColor& color);
    /// Fills the field menu anew with the fields of \a node that fit its type.
    void updateFieldMenu(QMenu* menu, Orvane::Node* node, const MenuType& type);

protected slots:
    /// Opens the field menu and returns when the user has chosen or dismissed it; box and canvas may be gone
    /// by then.
    void showFields(const MenuType& type);
    void hideFields(const MenuType& type);
    void onInputSlotClicked();
    void onOutputSlotClicked();

private:
    QString labelText() const;

    Orvane::Node* _node;
    QMenu* _fieldMenu = nullptr;
    bool _nodeTypeVisible = false;
    bool _hovered = false;
    std::unique_ptr<QorGraphLabel> _label;
};

} // namespace Orvane::Qt4
