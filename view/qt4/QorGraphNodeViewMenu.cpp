#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include "QorIconFactory.h"
#include "QorLog.h"
#include "QorPixels.h"
#include "QorTools.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <QtWidgets/QLayout>
#include <QtWidgets/QMenu>

namespace Orvane::Qt4 {

namespace {

/// The field that an entry stands for: its text, without the mnemonic that some desktops put into it.
QString fieldNameOf(const QAction& action)
{
    const QString text = action.text();
    const QString name = action.data().toString();
    return QString(text).remove(QLatin1Char('&')) == QString(name).remove(QLatin1Char('&')) ? name : text;
}

} // namespace

void QorGraphNodeView::updateFieldMenu(QMenu* menu, Orvane::Node* node, const MenuType& type)
{
    _fieldMenu->clear();
    if (_fieldMenu->layout())
        _fieldMenu->layout()->setSpacing(2);
    if (!node)
        return;

    const bool isOutput = type == OutputMenu;
    const NodePartType access = isOutput ? EVENTOUTP : EVENTINP;
    const auto onClicked =
        isOutput ? &QorGraphNodeView::onOutputSlotClicked : &QorGraphNodeView::onInputSlotClicked;
    for (unsigned int i = 0; const Field* const field = node->findField(i); ++i) {
        if (field->partType() != EXPOSEDFIELDP && field->partType() != access)
            continue;
        const QString name = field->_desc ? fromRuntime(field->_desc->name) : QString();
        QAction* action = menu->addAction(QIcon(QorIconFactory::the()->fieldIcon(field->dataType())), name,
                                          this, onClicked);
        action->setData(name);
        action->setCheckable(true);
        if (isOutput ? field->outRouteCount(true, false) : field->inRouteCount(true, false)) {
            action->setChecked(true);
            QFont font = action->font();
            font.setWeight(QFont::Bold);
            action->setFont(font);
        }
    }
}

QPointF QorGraphNodeView::calculateMenuPosition(const MenuType& type)
{
    if (type == InputMenu) {
        const QPointF corner(_pos.x() + _fieldAreaWidth, _pos.y() + _size.height());
        return _graphView->mapToGlobal(toPixel(corner)) - QPoint(_fieldMenu->width(), 0);
    }
    if (type == OutputMenu)
        return _graphView->mapToGlobal(toPixel(_pos + outputAreaRect().bottomLeft()));
    return {0.0, 0.0};
}

void QorGraphNodeView::showFields(const MenuType& type)
{
    QOR_NOTICE("QorGraphNodeView::showFields:\n");
    if (!_fieldMenu) {
        _fieldMenu = new QMenu(_graphView);
        _fieldMenu->setPalette(_palette);
    }
    updateFieldMenu(_fieldMenu, _node, type);
    // The width of a menu is right only once it shows.
    _fieldMenu->show();
    _fieldMenu->move(calculateMenuPosition(type).toPoint());
    _fieldMenu->exec();
}

void QorGraphNodeView::hideFields(const MenuType&)
{
    if (_fieldMenu)
        _fieldMenu->hide();
}

void QorGraphNodeView::onInputSlotClicked()
{
    if (const auto* action = qobject_cast<QAction*>(sender()))
        emit inputSlotClicked(fieldNameOf(*action));
}

void QorGraphNodeView::onOutputSlotClicked()
{
    if (const auto* action = qobject_cast<QAction*>(sender()))
        emit outputSlotClicked(fieldNameOf(*action));
}

} // namespace Orvane::Qt4
