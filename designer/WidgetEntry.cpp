#include "WidgetEntry.h"

#include <QIcon>
#include <QPainter>
#include <QWidget>

WidgetEntry::WidgetEntry(const Description& description, QObject* parent)
    : QObject(parent)
    , _description(description)
{
}

QString WidgetEntry::name() const
{
    return QStringLiteral("Orvane::Qt4::") + QLatin1String(_description.className);
}

QString WidgetEntry::group() const
{
    return QStringLiteral("Orvane");
}

QString WidgetEntry::toolTip() const
{
    return QLatin1String(_description.toolTip);
}

QString WidgetEntry::whatsThis() const
{
    return toolTip();
}

QString WidgetEntry::includeFile() const
{
    return QLatin1String(_description.className) + QStringLiteral(".h");
}

QIcon WidgetEntry::icon() const
{
    QPixmap tile(22, 22);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(46, 94, 140));
    painter.drawRoundedRect(QRectF(1, 1, 20, 20), 4, 4);
    QFont font = painter.font();
    font.setPixelSize(11);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(tile.rect(), Qt::AlignCenter, QLatin1String(_description.letters));
    return tile;
}

QWidget* WidgetEntry::createWidget(QWidget* parent)
{
    return _description.make(parent);
}

QString WidgetEntry::domXml() const
{
    // Objects are called as their class, without "Qor".
    QString object = QLatin1String(_description.className).mid(3);
    object[0] = object[0].toLower();
    return QStringLiteral(
               "<ui language=\"c++\" displayname=\"%5\"><widget class=\"%1\" name=\"%2\"><property "
               "name=\"geometry\"><rect>"
               "<x>0</x><y>0</y><width>%3</width><height>%4</height></rect></property></widget></ui>")
        .arg(name(), object)
        .arg(_description.size.width())
        .arg(_description.size.height())
        .arg(QLatin1String(_description.className));
}
