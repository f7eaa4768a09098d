#include "QorMetaTypes.h"
#include "QorTools.h"
#include "tinyruntime/Tiny.h"
#include <QtTest>

using namespace Orvane::Qt4;

class tst_QorTools : public QObject
{
    Q_OBJECT

private slots:
    void textOfTheRuntimeIsLatin1OrUtf8_data();
    void textOfTheRuntimeIsLatin1OrUtf8();
    void emptyTextIsNotNull();
    void nullPointerGivesNullText();
    void nullBytesInsideAStringAreKept();
    void textForTheRuntimeIsLatin1WhenItFits_data();
    void textForTheRuntimeIsLatin1WhenItFits();
    void nodeNameIsNameElseIdElseEmpty();
    void signalTypesAreRegistered_data();
    void signalTypesAreRegistered();
};

void tst_QorTools::textOfTheRuntimeIsLatin1OrUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("ascii") << QByteArray("plain") << QStringLiteral("plain");
    QTest::newRow("latin1") << QByteArray("Gr\xf6\xdf"
                                          "e")
                            << QStringLiteral("Größe");
    QTest::newRow("utf8, two bytes") << QByteArray("Gr\xc3\xb6\xc3\x9f"
                                                   "e")
                                     << QStringLiteral("Größe");
    QTest::newRow("utf8, three bytes") << QByteArray("5 \xe2\x82\xac") << QStringLiteral("5 €");
    QTest::newRow("utf8, four bytes") << QByteArray("\xf0\x9f\x98\x80") << QStringLiteral("\U0001F600");
    QTest::newRow("utf8, byte order mark") << QByteArray("\xef\xbb\xbf"
                                                         "a")
                                           << QStringLiteral("\uFEFF"
                                                             "a");
    QTest::newRow("utf8 cut short") << QByteArray("a\xe2\x82") << QStringLiteral("a\u00e2\u0082");
    QTest::newRow("utf8 and latin1") << QByteArray("\xc3\xb6\xf6") << QStringLiteral("Ã¶ö");
    QTest::newRow("overlong") << QByteArray("\xc0\xaf") << QStringLiteral("À¯");
    QTest::newRow("surrogate") << QByteArray("\xed\xa0\x80") << QStringLiteral("\u00ed\u00a0\u0080");
}

void tst_QorTools::textOfTheRuntimeIsLatin1OrUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(fromRuntime(bytes.toStdString()), text);
    QCOMPARE(fromRuntime(bytes.constData()), text);
}

void tst_QorTools::emptyTextIsNotNull()
{
    QVERIFY(fromRuntime(std::string()).isEmpty());
    QVERIFY(!fromRuntime(std::string()).isNull());
    QVERIFY(!fromRuntime("").isNull());
}

void tst_QorTools::nullPointerGivesNullText()
{
    QVERIFY(fromRuntime(static_cast<const char*>(nullptr)).isNull());
}

void tst_QorTools::nullBytesInsideAStringAreKept()
{
    const std::string bytes("a\0b", 3);
    QCOMPARE(fromRuntime(bytes).size(), 3);
    QCOMPARE(toRuntime(fromRuntime(bytes)), bytes);
}

void tst_QorTools::textForTheRuntimeIsLatin1WhenItFits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("null") << QString() << QByteArray("");
    QTest::newRow("ascii") << QStringLiteral("plain") << QByteArray("plain");
    QTest::newRow("latin1") << QStringLiteral("Größe ÿ")
                            << QByteArray("Gr\xf6\xdf"
                                          "e \xff");
    QTest::newRow("euro sign") << QStringLiteral("ö €") << QByteArray("\xc3\xb6 \xe2\x82\xac");
    QTest::newRow("beyond 16 bits") << QStringLiteral("\U0001F600") << QByteArray("\xf0\x9f\x98\x80");
}

void tst_QorTools::textForTheRuntimeIsLatin1WhenItFits()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(QByteArray::fromStdString(toRuntime(text)), bytes);
}

void tst_QorTools::nodeNameIsNameElseIdElseEmpty()
{
    QCOMPARE(nodeName(nullptr), std::string());
    Orvane::NodeType* type = Tiny::makeType("Thing");
    const std::unique_ptr<Orvane::Node> node(Tiny::makeNode(type));
    QCOMPARE(nodeName(node.get()), node->getIDStr());
    QVERIFY(!node->getIDStr().empty());
    Tiny::setName(node.get(), "Lamp");
    QCOMPARE(nodeName(node.get()), std::string("Lamp"));
}

void tst_QorTools::signalTypesAreRegistered_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char* name : {"Orvane::NodePath", "Orvane::Node*", "Orvane::Route*",
                             "std::vector<Orvane::Node*>", "osg::Pnt3f", "osg::Vec3f", "UInt64"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_QorTools::signalTypesAreRegistered()
{
    QFETCH(QByteArray, name);
    QVERIFY(QMetaType::type(name) != QMetaType::UnknownType);
}

QTEST_APPLESS_MAIN(tst_QorTools)
#include "tst_QorTools.moc"
