#include "QorWindowToolbar.h"

#include "QorTools.h"
#include "icons/examineNav.xpm"
#include "icons/firstView.xpm"
#include "icons/flyNav.xpm"
#include "icons/lastView.xpm"
#include "icons/nextDrawMode.xpm"
#include "icons/nextInfoScreen.xpm"
#include "icons/nextView.xpm"
#include "icons/prevView.xpm"
#include "icons/resetViewPosition.xpm"
#include "icons/showAll.xpm"
#include "icons/toggleDrawVolume.xpm"
#include "icons/toggleHeadlight.xpm"
#include "icons/toggleToolbar.xpm"
#include "icons/walkNav.xpm"
#include <Orvane/NavigatorProc.h>
#include <Orvane/WindowProc.h>
#include <QtGui/QPixmap>
#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

namespace Orvane::Qt4 {

namespace {

const int ButtonSize = 20;

QPushButton* addButton(QWidget* strip, QLayout* layout, const char** icon)
{
    auto* button = new QPushButton(strip);
    button->setFixedSize(ButtonSize, ButtonSize);
    button->setIcon(QIcon(QPixmap(icon)));
    layout->addWidget(button);
    return button;
}

} // namespace

QMap<QString, const char**> QorWindowToolbar::messageIconMap;

QorWindowToolbar::QorWindowToolbar(QWidget* parent, Orvane::WindowProc* windowProc)
    : QFrame(parent)
    , _windowProc(windowProc)
{
    // Only a native window shows over a native GL widget when the host keeps siblings from becoming native.
    setAttribute(Qt::WA_NativeWindow);

    if (messageIconMap.isEmpty()) {
        messageIconMap = {
            {QStringLiteral("toggleHeadlight"), toggleHeadlight_xpm},
            {QStringLiteral("toggleDrawVolume"), toggleDrawVolume_xpm},
            {QStringLiteral("nextInfoScreen"), nextInfoScreen_xpm},
            {QStringLiteral("nextDrawMode"), nextDrawMode_xpm},
            {QStringLiteral("nextView"), nextView_xpm},
            {QStringLiteral("prevView"), prevView_xpm},
            {QStringLiteral("lastView"), lastView_xpm},
            {QStringLiteral("firstView"), firstView_xpm},
            {QStringLiteral("walkNav"), walkNav_xpm},
            {QStringLiteral("flyNav"), flyNav_xpm},
            {QStringLiteral("examineNav"), examineNav_xpm},
            {QStringLiteral("showAll"), showAll_xpm},
            {QStringLiteral("resetViewPosition"), resetViewPosition_xpm},
        };
    }

    _layout = new QHBoxLayout(this);
    _layout->setContentsMargins(0, 0, 0, 0);
    _layout->setSpacing(0);
    _buttonGroup = new QButtonGroup(this);
    createButtons();
}

void QorWindowToolbar::createButtons()
{
    for (unsigned int i = 0; i < Orvane::NavigatorProc::getMessageCount(); ++i) {
        const Orvane::NavigatorProc::Message* message = Orvane::NavigatorProc::getMessage(i);
        const char** icon = message ? messageIconMap.value(fromRuntime(message->name)) : nullptr;
        if (!icon)
            continue;
        QPushButton* button = addButton(this, _layout, icon);
        button->setObjectName(fromRuntime(message->name));
        button->setToolTip(fromRuntime(message->description));
        _buttonGroup->addButton(button);
    }

    _toggleButton = addButton(this, _layout, toggleToolbar_xpm);
    _toggleButton->setCheckable(true);
    _toggleButton->setChecked(true);
    _toggleButton->setToolTip(tr("Show/hide window toolbar."));

    connect(_toggleButton, &QPushButton::toggled, this, &QorWindowToolbar::setButtonsVisible);
    connect(_buttonGroup, QOverload<QAbstractButton*>::of(&QButtonGroup::buttonClicked), this,
            &QorWindowToolbar::onBtnClicked);
    resize(_layout->sizeHint());
}

bool QorWindowToolbar::buttonsVisible() const
{
    const QList<QAbstractButton*> buttons = _buttonGroup->buttons();
    return !buttons.isEmpty() && buttons.first()->isVisible();
}

void QorWindowToolbar::setButtonsVisible(bool visible)
{
    const QList<QAbstractButton*> buttons = _buttonGroup->buttons();
    for (QAbstractButton* button : buttons)
        button->setVisible(visible);

    _layout->invalidate();
    resize(_layout->sizeHint());
    if (parentWidget())
        move(parentWidget()->width() - _layout->sizeHint().width(), y());
}

void QorWindowToolbar::onBtnClicked(QAbstractButton* button)
{
    if (_windowProc && qobject_cast<QPushButton*>(button))
        _windowProc->message(toRuntime(button->objectName()));
}

} // namespace Orvane::Qt4
