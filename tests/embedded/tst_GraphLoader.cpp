#include <Orvane/GraphLoader.h>
#include <QtTest>

using namespace Orvane;

class tst_GraphLoader : public QObject
{
    Q_OBJECT

private slots:
    void formatsComeWithTheirSuffixes();
    void listsAreAppendedTo();
};

void tst_GraphLoader::formatsComeWithTheirSuffixes()
{
    std::list<std::string> filters;
    const int count = GraphLoader::getFormatList(filters, GraphLoader::FILTER_FS);
    QCOMPARE(static_cast<std::size_t>(count), filters.size());
    QCOMPARE(filters.front(), std::string("X3D XML (*.x3d *.x3dz)"));
    QCOMPARE(*std::next(filters.begin()), std::string("X3D Classic (*.x3dv *.x3dvz)"));
    QCOMPARE(filters.back(), std::string("VRML97 (*.wrl *.wrz *.vrml)"));
    std::list<std::string> names;
    QCOMPARE(GraphLoader::getFormatList(names, GraphLoader::PLAIN_FS), count);
    QCOMPARE(names, (std::list<std::string>{"X3D XML", "X3D Classic", "VRML97"}));
    QCOMPARE(*std::next(filters.begin()), std::string("X3D Classic (*.x3dv *.x3dvz)"));
    QCOMPARE(filters.back(), std::string("VRML97 (*.wrl *.wrz *.vrml)"));
}

void tst_GraphLoader::listsAreAppendedTo()
{
    std::list<std::string> suffixes = {"first"};
    const int count = GraphLoader::getSuffixList(suffixes);
    QCOMPARE(suffixes.size(), static_cast<std::size_t>(count) + 1);
    QCOMPARE(suffixes.front(), std::string("first"));
    QCOMPARE(suffixes,
             (std::list<std::string>{"first", "x3d", "x3dz", "x3dv", "x3dvz", "wrl", "wrz", "vrml"}));
}

QTEST_APPLESS_MAIN(tst_GraphLoader)
#include "tst_GraphLoader.moc"
