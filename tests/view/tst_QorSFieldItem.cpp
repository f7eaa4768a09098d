#include "FieldNode.h"
#include "QorNodeModel.h"
#include "QorSFieldItem.h"
#include <OpenSG/OSGImage.h>
#include <Orvane/SFImage.h>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

Tiny::Part imagePart()
{
    Tiny::Part part;
    part.name = "image";
    part.dataType = SFIMAGE_DT;
    part.description = "Pixels";
    return part;
}

/// A node with one image field, whose image ends with it.
class ImageNode
{
public:
    ImageNode()
        : node({imagePart()})
        , item(node.field(0), nullptr)
    {
    }

    osg::ImagePtr setImage()
    {
        osg::ImagePtr image = osg::Image::create();
        node.as<SFImage>(0).setValue(0.0, Orvane::Image(image), Field::EXTERNAL_CT);
        return image;
    }
    QString display() { return item.data(QorNodeModel::FieldValue, Qt::DisplayRole).toString(); }
    QString toolTip() { return item.data(QorNodeModel::FieldValue, Qt::ToolTipRole).toString(); }

    FieldNode node;
    QorSFieldItem item;
};

} // namespace

class tst_QorSFieldItem : public QObject
{
    Q_OBJECT

private slots:
    void otherFieldsAreShownAsTheyAre();
    void anImageShowsFormatAndSize();
    void theToolTipOfAnImageTellsAll();
    void anImageWithoutPixelsReadsAsZeros();
    void onlyTheValueColumnOfAnImageDiffers();
};

void tst_QorSFieldItem::otherFieldsAreShownAsTheyAre()
{
    Tiny::Part part;
    part.name = "radius";
    part.dataType = SFFLOAT_DT;
    part.value = "1.5";
    part.description = "How large it is";
    const FieldNode node({part});
    QorSFieldItem item(node.field(0), nullptr);
    QorFieldItem base(node.field(0), nullptr);
    QCOMPARE(item.data(QorNodeModel::FieldValue, Qt::DisplayRole).toString(), QStringLiteral("1.5"));
    for (int column = -1; column <= 10; ++column) {
        for (int role : {Qt::DisplayRole, Qt::ToolTipRole, Qt::EditRole})
            QCOMPARE(item.data(column, role), base.data(column, role));
    }
    QCOMPARE(item.childCount(), 0);
}

void tst_QorSFieldItem::anImageShowsFormatAndSize()
{
    ImageNode image;
    QVERIFY(image.setImage()->set(osg::Image::OSG_BGRA_PF, 7, 5, 3));
    QCOMPARE(image.display(), QStringLiteral("BGRA, 7x5x3"));
}

void tst_QorSFieldItem::theToolTipOfAnImageTellsAll()
{
    ImageNode image;
    QVERIFY(image.setImage()->set(osg::Image::OSG_RGBA_PF, 4, 2, 1, 2, 3, 0.25, nullptr,
                                  osg::Image::OSG_UINT16_IMAGEDATA, true, 6));
    // Two levels of 8 and 2 pixels of 8 bytes, on 6 sides, in 3 frames.
    QCOMPARE(image.toolTip(), QStringLiteral("RGBA, 4x2x1,\n#mm: 2, #sides: 6,\n#frame: 3, frameDelay: 0.25\n"
                                             "dataType: UCHAR16\nsize:1440 bytes\nalpha channel: 1,\n"
                                             "color channel: 1"));

    ImageNode grey;
    QVERIFY(grey.setImage()->set(osg::Image::OSG_L_PF, 2));
    QCOMPARE(grey.toolTip(),
             QStringLiteral("LUMINANCE, 2x1x1,\n#mm: 1, #sides: 1,\n#frame: 1, frameDelay: 0\n"
                            "dataType: UCHAR8\nsize:2 bytes\nalpha channel: 0,\n"
                            "color channel: 0"));
}

void tst_QorSFieldItem::anImageWithoutPixelsReadsAsZeros()
{
    ImageNode image;
    QVERIFY(image.node.as<SFImage>(0).image().rco() == osg::NullFC);
    QCOMPARE(image.display(), QStringLiteral("UNKNOWN_PIXEL_FORMAT, 0x0x0"));
    QCOMPARE(image.toolTip(), QStringLiteral("UNKNOWN_PIXEL_FORMAT, 0x0x0,\n#mm: 0, #sides: 0,\n#frame: 0, "
                                             "frameDelay: 0\ndataType: UNKNOWN_IMAGEDATA_TYPE\nsize:0 bytes\n"
                                             "alpha channel: 0,\ncolor channel: 0"));
}

void tst_QorSFieldItem::onlyTheValueColumnOfAnImageDiffers()
{
    ImageNode image;
    QVERIFY(image.setImage()->set(osg::Image::OSG_RGB_PF, 1));
    QorFieldItem base(image.node.field(0), nullptr);
    for (int column = -1; column <= 10; ++column) {
        for (int role : {Qt::DisplayRole, Qt::ToolTipRole, Qt::EditRole}) {
            const bool differs = column == QorNodeModel::FieldValue && role != Qt::EditRole;
            QCOMPARE(image.item.data(column, role) != base.data(column, role), differs);
        }
    }
}

QTEST_APPLESS_MAIN(tst_QorSFieldItem)
#include "tst_QorSFieldItem.moc"
