#pragma once

#include "QorExport.h"
#include "QorMetaTypes.h"
#include <Orvane/Observer.h>
#include <QtCore/QHash>
#include <QtCore/QLine>
#include <QtCore/QList>
#include <QtGui/QFontMetrics>
#include <QtGui/QMatrix>
#include <QtWidgets/QWidget>
#include <vector>

class QLabel;
class QMenu;

namespace Orvane::Qt4 {

class QorGraphEdge;
class QorGraphNodeView;

/// The canvas of the route graph editor: boxes for the nodes that somebody added, and a line for each route
/// of the scene between two of them. Users draw and delete routes on it with the mouse; it changes the scene
/// itself or asks its host to, and always shows what the runtime then reports. Routes and nodes may change
/// only on the thread of the widgets.
class QOR_EXPORT QorGraphView : public QWidget
{
    Q_OBJECT

public:
    /// What the mouse is at.
    enum Mode : int {
        INVALID_M = 0,
        DEFAULT_M = 1,     ///< idle: hover, selection, menus
        MOVENODE_M = 2,    ///< the left button drags the selected boxes
        RECTSELECT_M = 3,  ///< the left button drags a rubber band
        CREATEROUTE_M = 4, ///< a route has a source and follows the mouse
        PANCANVAS_M = 5    ///< the middle button drags the canvas
    };

    /// Rebuilds the lines of a canvas when a route comes or goes.
    class QOR_EXPORT RouteObserver : public Orvane::Observer
    {
    public:
        /// \a view is borrowed; \a mode is 0 for new routes, 1 for those about to go.
        RouteObserver(QorGraphView* view, int mode);
        ~RouteObserver() override;

        void notify(const double& time, Orvane::BaseObject* subject, Orvane::BaseObject* a,
                    Orvane::BaseObject* b) override;

    private:
        QorGraphView* _view;
        int _mode;
    };

    /// Takes dying nodes off a canvas, and repaints it when names change.
    class QOR_EXPORT NodeObserver : public Orvane::Observer
    {
    public:
        /// \a view is borrowed; \a mode is 1 for dying nodes, 2 for names.
        NodeObserver(QorGraphView* view, int mode);
        ~NodeObserver() override;

        void notify(const double& time, Orvane::BaseObject* subject, Orvane::BaseObject* a,
                    Orvane::BaseObject* b) override;

    private:
        QorGraphView* _view;
        int _mode;
    };

    /// An empty canvas.
    explicit QorGraphView(QWidget* parent = nullptr);
    ~QorGraphView() override;

    using QWidget::layout;

    /// What the mouse is at.
    Mode mode() const { return _mode; }
    /// Modes lead from `DEFAULT_M` to another one and back; any other change is refused with a log line.
    void setMode(Mode mode);
    QString modeToString(Mode mode) const;

    /// Zoom factor, and where the origin lies in pixels of the canvas.
    double scale() const { return _scale; }
    const QPointF& translation() const { return _translation; }
    /// Colour of the canvas.
    const QColor& backgroundColor() const;
    /// Colour of the status line.
    const QColor& nodeColor() const { return _nodeColor; }

    /// Whether the canvas makes and deletes routes itself; else it emits `wantsCreateRoute` and
    /// `wantsDeleteRoute`.
    bool isManagingRoutes() const { return _manageRoutes; }
    void setManageRoutes(bool manage) { _manageRoutes = manage; }

    /// Puts a box for \a node on top, its corner at \a pos in pixels of the canvas. Null, and no box, for a
    /// null node and for one that has a box already. The canvas owns the box.
    QorGraphNodeView* add(Orvane::Node* node, QPoint pos);
    /// The box of a node, or null.
    QorGraphNodeView* viewOf(const Orvane::Node* node) const;
    /// The topmost box over a point of the canvas, or null.
    QorGraphNodeView* nodeViewAt(const QPoint& point) const;

    /// These add boxes at (0, 0), the last one on top: for the children of a node,
    void importChildrenOf(Orvane::Node* node);
    /// for all nodes below it, the deepest first,
    void importChildrenRecursive(Orvane::Node* node);
    /// and for the nodes at the other ends of its routes.
    void importDirectNeighboursOf(Orvane::Node* node);

    /// How far from a line a press still hits it, in pixels, for all canvases.
    static float routeHitDistance() { return _routeHitDistance; }
    static void setRouteHitDistance(float distance) { _routeHitDistance = distance; }

    /// Distance of two points.
    static float magnitude(const QPoint& a, const QPoint& b);
    /// Distance of \a p from the line from \a a to \a b; false, and \a distance left alone, when its foot
    /// lies beyond an end or the line has no length.
    static bool distancePointLine(const QPoint& p, const QPoint& a, const QPoint& b, float& distance);

public slots:
    /// Select boxes; nothing is deselected.
    void select(Orvane::Node* node);
    void selectAll();
    /// Deselects all boxes; lines stay selected.
    void deselectAll();
    /// Turns the type on the label of each box on or off, each for itself.
    void toggleNodeTypeVisible();
    /// For an empty canvas only: with boxes it never returns. `toggleNodeTypeVisible` and the boxes' own
    /// setters are what programs call.
    void setNodeTypeVisible(bool visible);

    /// Takes the box of a node off the canvas; the box object stays.
    void remove(const Orvane::Node* node);
    /// Takes everything off the canvas.
    void clear();
    /// Reads the routes of the scene anew, but for \a deletedRoute; a hidden canvas does it when it shows.
    void updateEdges(Orvane::Route* deletedRoute);
    void updateEdges();

    /// Zoom factor, at least 0.1; a number that is not finite is ignored.
    void setScale(qreal factor);
    /// Where the origin lies, in pixels of the canvas. A resize brings it back to the middle.
    void setTranslation(QPointF translation);
    void setBackgroundColor(QColor color);
    void setNodeColor(QColor color);

signals:
    /// A box was selected by itself.
    void nodeSelected(Orvane::Node* node);
    /// The user has drawn a route; the field numbers are part indexes.
    void wantsCreateRoute(UInt64 fromNodeId, unsigned int fromFieldId, UInt64 toNodeId,
                          unsigned int toFieldId);
    /// The user wants the route to go. For direct connections: it may be gone later.
    void wantsDeleteRoute(Orvane::Route* route);

protected slots:
    /// Deletes the routes of the selected lines or asks for it, each once.
    virtual void deleteSelectedRoutesEvent();
    /// Makes a route or asks for it; unknown nodes and fields are passed over.
    virtual void createRouteEvent(UInt64 fromNodeId, unsigned int fromFieldId, UInt64 toNodeId,
                                  unsigned int toFieldId);

    void onOutputSlotClicked(const QString& name);
    void onInputSlotClicked(const QString& name);
    void onImportConnectedActivated();
    void onImportChildrenActivated();
    void onImportChildrenRecursivelyActivated();
    void onRemoveActivated();

protected:
    virtual void processDefaultPressEvent(QMouseEvent* event);
    virtual void processDefaultMoveEvent(QMouseEvent* event);
    virtual void processRectSelectMoveEvent(QMouseEvent* event);
    virtual void processMoveNodeMoveEvent(QMouseEvent* event);
    virtual void processPanCanvasMoveEvent(QMouseEvent* event);
    virtual void paintEmptyView(QPaintEvent* event);
    /// Adds the line of a route when both its nodes have boxes, else gives null; ends any mode.
    virtual QorGraphEdge* addRoute(Orvane::Route* route);

    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

    /// The ends of a line, and where routes leave a box.
    QPoint startPoint(const QorGraphEdge* edge);
    QPoint endPoint(const QorGraphEdge* edge);
    QPoint outSlotPos(QorGraphNodeView* view, const QString& name);
    void paintEdges(QPainter* painter);
    /// Brings the boxes, which stand in pixels, from the old view to the new one.
    void updateViewMatrix();
    /// Does nothing: boxes lie where they were put.
    void layout(unsigned int);

private:
    /// What tells one line from another.
    struct EdgeKey
    {
        const QorGraphNodeView* src;
        const QorGraphNodeView* dest;
        unsigned int outSlotId;
        unsigned int inSlotId;

        bool operator==(const EdgeKey& other) const
        {
            return src == other.src && dest == other.dest && outSlotId == other.outSlotId &&
                   inSlotId == other.inSlotId;
        }
        friend uint qHash(const EdgeKey& key, uint seed)
        {
            return ::qHash(key.src, seed) ^ (::qHash(key.dest, seed) * 31U) ^ (key.outSlotId * 65599U) ^
                   (key.inSlotId << 16);
        }
    };

    void setUpColors();
    void makeMenus();
    void makeEdgeLabel();

    void dropEdges();
    QorGraphEdge* unusedEdge(const EdgeKey& key);
    /// Calls an operation with the node of each selected box.
    void forSelectedNodes(void (QorGraphView::*operation)(Orvane::Node*));
    void forget(const Orvane::Node* node);

    QorGraphEdge* edgeAt(const QPoint& point);
    QString edgeText(const QorGraphEdge* edge) const;
    void pressEdge(QorGraphEdge* edge, QMouseEvent* event);
    void pressBox(QorGraphNodeView* view, QMouseEvent* event);
    void hover(QorGraphNodeView* view);
    void showEdgeLabel(const QorGraphEdge* edge, const QMouseEvent* event);
    void selectByRect();
    /// Repaints after boxes were selected or moved.
    void updateBoxes(const QList<QorGraphNodeView*>& views);

    bool isSeen(const QRectF& place, double reach) const;
    void paintBoxes(QPainter* painter);
    void paintNewRoute(QPainter* painter);
    void paintStatus(QPainter* painter, int milliseconds);

    QList<QorGraphNodeView*> _nodeViews; ///< the topmost first
    QList<QorGraphEdge*> _edges;
    QList<QorGraphNodeView*> _selectedNodes;
    QList<QorGraphEdge*> _selectedEdges;
    QorGraphNodeView* _hoverView = nullptr;
    QMenu* _canvasMenu = nullptr;
    QMenu* _nodeMenu = nullptr;
    QLabel* _edgeLabel = nullptr;
    Mode _mode = DEFAULT_M;
    QColor _nodeColor = QColor(180, 180, 180);
    QPointF _mousePos;
    QPointF _pressOffset;
    QRect _selectRect;
    double _scale = 1.0;
    QPointF _translation;
    QMatrix _viewMatrix; ///< translation, then scale
    bool _partialUpdate = false;
    QFontMetrics _fontMetrics;
    QPalette _edgePalette;
    QPalette _nodePalette;
    QFont _nodeFont;
    bool _manageRoutes = true;
    QLine _routeLine;
    QorGraphNodeView* _routeSource = nullptr;
    unsigned int _routeSourceField = 0;

    // Lookups: the boxes in the list by node, all boxes ever made by node, all lines ever made.
    QHash<const Orvane::Node*, QorGraphNodeView*> _viewOfNode;
    QMultiHash<const Orvane::Node*, QorGraphNodeView*> _allViews;
    QMultiHash<EdgeKey, QorGraphEdge*> _allEdges;

    // These leave their subjects when they go.
    RouteObserver _routeNewObserver;
    RouteObserver _routeDeleteObserver;
    NodeObserver _nodeDeleteObserver;
    NodeObserver _nameSpaceObserver;

    static float _routeHitDistance;
};

} // namespace Orvane::Qt4
