#include "QorSFieldItem.h"

#include "QorNodeModel.h"
#include <OpenSG/OSGImage.h>
#include <Orvane/SFImage.h>
#include <QtCore/QObject>

namespace Orvane::Qt4 {

namespace {

QString imageText(const Orvane::Image& image)
{
    const osg::ImagePtr pixels = image.rco();
    return QStringLiteral("%1, %2x%3x%4")
        .arg(QorFieldItem::pixelFormatToString(pixels ? pixels->getPixelFormat() : 0))
        .arg(image.width())
        .arg(image.height())
        .arg(image.depth());
}

QString imageToolTip(const Orvane::Image& image)
{
    const osg::ImagePtr pixels = image.rco();
    return QObject::tr("%1, %2x%3x%4,\n#mm: %5, #sides: %6,\n#frame: %7, frameDelay: %8\ndataType: %9\n"
                       "size:%10 bytes\nalpha channel: %11,\ncolor channel: %12")
        .arg(QorFieldItem::pixelFormatToString(pixels ? pixels->getPixelFormat() : 0))
        .arg(image.width())
        .arg(image.height())
        .arg(image.depth())
        .arg(pixels ? pixels->getMipMapCount() : 0)
        .arg(pixels ? pixels->getSideCount() : 0)
        .arg(pixels ? pixels->getFrameCount() : 0)
        .arg(pixels ? pixels->getFrameDelay() : 0.0)
        .arg(QorFieldItem::dataTypeToString(pixels ? static_cast<unsigned int>(pixels->getDataType()) : 0))
        .arg(pixels ? pixels->getSize(true, true, true) : 0)
        .arg(pixels ? int(pixels->hasAlphaChannel()) : 0)
        .arg(pixels ? int(pixels->hasColorChannel()) : 0);
}

} // namespace

QorSFieldItem::QorSFieldItem(Orvane::Field* field, QorFieldItem* parent)
    : QorFieldItem(field, parent)
{
}

QorSFieldItem::~QorSFieldItem() = default;

QVariant QorSFieldItem::data(int column, int role)
{
    const auto* image = column == QorNodeModel::FieldValue ? dynamic_cast<const SFImage*>(_field) : nullptr;
    if (image && role == Qt::DisplayRole)
        return imageText(image->image());
    if (image && role == Qt::ToolTipRole)
        return imageToolTip(image->image());
    return QorFieldItem::data(column, role);
}

} // namespace Orvane::Qt4
