#include "Palettes.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace {

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

void usePalette(bool dark)
{
    static bool isDark = false;
    if (dark == isDark)
        return;
    isDark = dark;
    static const QString systemStyle = QApplication::style()->objectName();
    // The styles of some systems paint with colours of their own.
    QApplication::setStyle(QStyleFactory::create(dark ? QStringLiteral("fusion") : systemStyle));
    QApplication::setPalette(dark ? darkPalette() : QApplication::style()->standardPalette());
}
