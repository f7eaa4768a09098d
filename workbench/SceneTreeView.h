#pragma once

#include <QPoint>
#include <QorScenegraphTreeView.h>

/// A tree of a scene whose nodes can be dragged out of it, and to other places in it.
class SceneTreeView : public Orvane::Qt4::QorScenegraphTreeView
{
    Q_OBJECT

public:
    explicit SceneTreeView(QWidget* parent);

    /// Opens the rows that lead to a place, makes its row the current one and scrolls there. Where the tree
    /// hides part of the way, the last row before takes its place.
    void reveal(const Orvane::NodePath& path);

    /// What a drag of the row carries; null for a row without a node.
    static QMimeData* dragData(const Orvane::NodePath& path);

signals:
    /// A node was dropped at a row: with \a side 0 onto it, with -1 above it and with 1 below it.
    void nodeDropped(const Orvane::NodePath& moved, const Orvane::NodePath& target, int side);

protected:
    /// The star opens all below a row, to a depth that ends in a graph that contains itself. The row that the
    /// keys lead to is selected.
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void selectCurrent();
    int sideOf(const QModelIndex& row, const QPoint& place) const;
    void markDrop(const QModelIndex& row, int side);

    QPersistentModelIndex _dropRow; ///< over which something is dragged
    int _dropSide = 0;
    QPoint _pressPosition;
    Orvane::NodePath _pressedPath;
};
