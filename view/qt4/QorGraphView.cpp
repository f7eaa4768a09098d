#include "QorGraphView.h"

#include "QorGraphNodeView.h"
#include "QorLog.h"
#include "QorPixels.h"
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <algorithm>
#include <cmath>

namespace Orvane::Qt4 {

float QorGraphView::_routeHitDistance = 5.0F;

QorGraphView::QorGraphView(QWidget* parent)
    : QWidget(parent)
    , _fontMetrics(font())
    , _routeNewObserver(this, 0)
    , _routeDeleteObserver(this, 1)
    , _nodeDeleteObserver(this, 1)
    , _nameSpaceObserver(this, 2)
{
    setObjectName(QStringLiteral("QorGraphView"));
    updateViewMatrix();
    setAutoFillBackground(true);
    setBackgroundColor(QColor(0, 0, 0));
    setAttribute(Qt::WA_MouseTracking);
    setFocusPolicy(Qt::StrongFocus);
    makeMenus();
    makeEdgeLabel();
    setUpColors();

    Orvane::Route::_newObject.attach(_routeNewObserver);
    Orvane::Route::_deleteObject.attach(_routeDeleteObserver);
    Orvane::Node::_deleteObject.attach(_nodeDeleteObserver);
    Orvane::Node::_nameSpaceChanged.attach(_nameSpaceObserver);
}

QorGraphView::~QorGraphView() = default;

void QorGraphView::makeMenus()
{
    _canvasMenu = new QMenu(this);
    _canvasMenu->addAction(tr("Remove all views"), this, &QorGraphView::clear);
    _canvasMenu->addAction(tr("Show node type"), this, &QorGraphView::toggleNodeTypeVisible)
        ->setCheckable(true);
    _canvasMenu->addAction(tr("Update edges"), this, qOverload<>(&QorGraphView::updateEdges));

    _nodeMenu = new QMenu(this);
    _nodeMenu->hide();
    _nodeMenu->addAction(tr("Import connected"), this, &QorGraphView::onImportConnectedActivated);
    _nodeMenu->addAction(tr("Import children"), this, &QorGraphView::onImportChildrenActivated);
    _nodeMenu->addAction(tr("Import children recursively"), this,
                         &QorGraphView::onImportChildrenRecursivelyActivated);
    _nodeMenu->addAction(tr("Remove"), this, &QorGraphView::onRemoveActivated);
}

void QorGraphView::makeEdgeLabel()
{
    _edgeLabel = new QLabel(this);
    _edgeLabel->setFrameStyle(QFrame::Box | QFrame::Plain);
    _edgeLabel->setAutoFillBackground(true);
    // Names are shown as they are, also such as look like markup.
    _edgeLabel->setTextFormat(Qt::PlainText);
    QColor background(Qt::darkYellow);
    background.setAlpha(180);
    QPalette colors;
    colors.setBrush(QPalette::All, _edgeLabel->backgroundRole(), background);
    colors.setBrush(QPalette::All, _edgeLabel->foregroundRole(), QColor(Qt::white));
    _edgeLabel->setPalette(colors);
    _edgeLabel->hide();
}

void QorGraphView::setUpColors()
{
    const auto set = [](QPalette& palette, QPalette::ColorRole role, int red, int green, int blue) {
        palette.setBrush(QPalette::All, role, QColor(red, green, blue));
    };
    set(_edgePalette, QPalette::Button, 20, 180, 20);
    set(_edgePalette, QPalette::Highlight, 230, 10, 10);
    set(_nodePalette, QPalette::Window, 120, 120, 120);
    set(_nodePalette, QPalette::Button, 120, 120, 120);
    set(_nodePalette, QPalette::Highlight, 147, 147, 0);
    set(_nodePalette, QPalette::WindowText, 240, 240, 240);
    set(_nodePalette, QPalette::Text, 240, 240, 240);
    // Field menus take these colours, and some styles paint menus on the base.
    set(_nodePalette, QPalette::Base, 120, 120, 120);
    _nodeFont.setFamily(QStringLiteral("Arial"));
    _nodeFont.setWeight(QFont::Bold);
}

QString QorGraphView::modeToString(Mode mode) const
{
    switch (mode) {
    case DEFAULT_M:
        return QStringLiteral("DEFAULT_M");
    case MOVENODE_M:
        return QStringLiteral("MOVENODE_M");
    case RECTSELECT_M:
        return QStringLiteral("RECTSELECT_M");
    case CREATEROUTE_M:
        return QStringLiteral("CREATEROUTE_M");
    case PANCANVAS_M:
        return QStringLiteral("PANCANVAS_M");
    default:
        return QStringLiteral("INVALID_M");
    }
}

void QorGraphView::setMode(Mode mode)
{
    if (mode == _mode)
        return;
    const bool leaves = _mode == DEFAULT_M && mode >= MOVENODE_M && mode <= PANCANVAS_M;
    const bool returns = _mode >= MOVENODE_M && _mode <= PANCANVAS_M && mode == DEFAULT_M;
    if (!leaves && !returns) {
        QOR_WARNING("QorGraphView::setMode: invalid transition %s->%s\n", qPrintable(modeToString(_mode)),
                    qPrintable(modeToString(mode)));
        return;
    }
    _mode = mode;
}

const QColor& QorGraphView::backgroundColor() const
{
    return palette().brush(QPalette::Current, QPalette::Window).color();
}

void QorGraphView::setBackgroundColor(QColor color)
{
    QPalette colors;
    colors.setBrush(QPalette::All, backgroundRole(), color);
    setPalette(colors);
    update();
}

void QorGraphView::setNodeColor(QColor color)
{
    _nodeColor = color;
    update();
}

void QorGraphView::setScale(qreal factor)
{
    // The square is the determinant of the view, which has to have an inverse.
    if (factor == _scale || !std::isfinite(factor * factor))
        return;
    _scale = std::max(0.1, factor);
    updateViewMatrix();
}

void QorGraphView::setTranslation(QPointF translation)
{
    if (!std::isfinite(translation.x()) || !std::isfinite(translation.y()))
        return;
    _translation = translation;
    updateViewMatrix();
}

void QorGraphView::updateViewMatrix()
{
    const QMatrix toWorld = _viewMatrix.inverted();
    _viewMatrix.reset();
    _viewMatrix.translate(_translation.x(), _translation.y());
    _viewMatrix.scale(_scale, _scale);
    for (int i = _nodeViews.size() - 1; i >= 0; --i) {
        QorGraphNodeView& view = *_nodeViews.at(i);
        const QPointF world = toWorld.map(view.pos());
        const QSizeF worldSize = view.size() * toWorld.m11();
        view.move(_viewMatrix.map(world));
        view.resize(worldSize * _viewMatrix.m11());
    }
    if (_mode == CREATEROUTE_M)
        _routeLine.setP1(toPixel(_viewMatrix.map(toWorld.map(QPointF(_routeLine.p1())))));
    update();
}

void QorGraphView::layout(unsigned int)
{
}

void QorGraphView::resizeEvent(QResizeEvent*)
{
    _translation = QPointF(width() * 0.5, height() * 0.5);
    updateViewMatrix();
}

void QorGraphView::showEvent(QShowEvent*)
{
    updateViewMatrix();
    updateEdges();
}

} // namespace Orvane::Qt4
