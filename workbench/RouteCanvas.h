#pragma once

#include <QHash>
#include <QorGraphView.h>
#include <vector>

class QUndoStack;

namespace Orvane::Qt4 {
class QorGraphNodeView;
}

/// The route graph of the workbench: nodes are dropped onto it, and what the user does to routes goes through
/// a stack of steps that can be taken back.
class RouteCanvas : public Orvane::Qt4::QorGraphView
{
    Q_OBJECT

public:
    /// \a steps is borrowed.
    explicit RouteCanvas(QUndoStack* steps, QWidget* parent = nullptr);
    ~RouteCanvas() override;

    /// The boxes of today, in the order in which they came.
    std::vector<Orvane::Qt4::QorGraphNodeView*> boxes() const;

    /// Adds a box for each node at or below \a root that has routes, and spreads them.
    void showRoutesBelow(Orvane::Node* root);
    /// Spreads the boxes by their routes from left to right, and zooms out as far as labels can be read. They
    /// become as wide as their names ask, where there is room.
    void layOut();

signals:
    /// A node was dropped here.
    void nodeDropped(Orvane::NodePath path);
    /// Something for the user to read.
    void told(const QString& text);

protected:
    /// The tip of a box is its node's type and whole name.
    bool event(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void deleteSelectedRoutesEvent() override;
    Orvane::Qt4::QorGraphEdge* addRoute(Orvane::Route* route) override;

private:
    void createRoute(Orvane::UInt64 fromNode, unsigned int fromField, Orvane::UInt64 toNode,
                     unsigned int toField);

    QUndoStack* _steps;
    std::vector<Orvane::Route*> _unwanted;
    QHash<const Orvane::Route*, const Orvane::Qt4::QorGraphEdge*> _lines; ///< as they came last
};
