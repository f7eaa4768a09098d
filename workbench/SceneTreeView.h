#pragma once

#include <QPoint>
#include <QorScenegraphTreeView.h>

/// A tree of a scene whose nodes can be dragged out of it.
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

protected:
    /// The star opens all below a row, to a depth that ends in a graph that contains itself.
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    QPoint _pressPosition;
    Orvane::NodePath _pressedPath;
};
