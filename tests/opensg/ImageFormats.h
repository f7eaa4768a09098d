#pragma once

#include "ImageTestTools.h"
#include <QtTest>

/// Tests of a file type by the formats of pixels that it keeps. A row says what is written and the pixel
/// format that comes back.
namespace imageFormats {

inline void addColumns()
{
    QTest::addColumn<uint>("format");
    QTest::addColumn<int>("type");
    QTest::addColumn<uint>("result");
}

inline void addRow(const char* name, uint format, int type, uint result)
{
    QTest::newRow(name) << format << type << result;
}

/// The components and their type are kept to the last bit.
inline void comeBack(const char* mime)
{
    QFETCH(uint, format);
    QFETCH(int, type);
    const osg::ImageRefPtr image = ImageTestTools::rampImage(format, 5, 3, type);
    const osg::ImageRefPtr back = ImageTestTools::decoded(ImageTestTools::encoded(image, mime), mime);
    QVERIFY(back);
    QTEST(back->getPixelFormat(), "result");
    QCOMPARE(back->getDataType(), type);
    QCOMPARE(back->getWidth(), 5);
    QCOMPARE(back->getHeight(), 3);
    QCOMPARE(ImageTestTools::pixels(back), ImageTestTools::pixels(image));
}

} // namespace imageFormats
