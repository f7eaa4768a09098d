#include "Palettes.h"

#include "Icons.h"
#include "TextColors.h"
#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>
#include <utility>

namespace {

/// The icons of title bars are small pictures in black, which are hard to see in large or dark windows.
class WorkbenchStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override
    {
        if (icon == SP_TitleBarCloseButton || icon == SP_DockWidgetCloseButton)
            return drawnIcon(Drawing::Close);
        if (icon == SP_TitleBarNormalButton)
            return drawnIcon(Drawing::Float);
        return QProxyStyle::standardIcon(icon, option, widget);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        // The frames of these are darker than their ground, which on a dark one cannot be seen.
        if (!isDark() || (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton))
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing, element == PE_IndicatorRadioButton);
        painter->setPen(option->palette.color(QPalette::Disabled, QPalette::WindowText));
        if (element == PE_IndicatorCheckBox)
            painter->drawRect(option->rect.adjusted(1, 1, -2, -2));
        else
            painter->drawEllipse(QRectF(option->rect).adjusted(1, 1, -2, -2));
        painter->restore();
    }
};

const QString& systemStyle()
{
    static const QString name = QApplication::style()->objectName();
    return name;
}

QPalette darkPalette()
{
    const QColor window(45, 47, 51);
    const QColor base(32, 34, 37);
    const QColor text(222, 224, 228);
    const QColor faint(128, 131, 137);
    const QColor highlight(62, 108, 168);
    QPalette palette(QColor(58, 61, 66), window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, QColor(39, 41, 45));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::Link, QColor(120, 170, 240));
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    return palette;
}

} // namespace

void useStyle()
{
    static bool isUsed = false;
    if (std::exchange(isUsed, true))
        return;
    QApplication::setStyle(new WorkbenchStyle(systemStyle())); // which takes it
}

void usePalette(bool dark)
{
    static bool isDark = false;
    if (dark == isDark)
        return;
    isDark = dark;
    useStyle();
    // The styles of some systems paint with colours of their own.
    QApplication::setStyle(new WorkbenchStyle(dark ? QStringLiteral("fusion") : systemStyle()));
    QApplication::setPalette(dark ? darkPalette() : QApplication::style()->standardPalette());
}
