#include "LogCapture.h"
#include "QorMetaTypes.h"
#include "QorTools.h"
#include "TinyTree.h"
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
    void linksStandInOrderOfFieldAndElement();
    void emptyLinksAreNotListed();
    void linksAreAppended();
    void linksStopAtAPrototypeWhenAsked();
    void indexOfALinkIsItsPlaceInTheField();
    void linkOfAnotherFieldHasNoIndex();
    void rowOfALinkCountsTheEarlierFields();
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

void tst_QorTools::linksStandInOrderOfFieldAndElement()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "out", "out");
    TinyTree::add(tree.root(), "Group", "b");
    TinyTree::add(tree.root(), "Group", "in", "in");
    TinyTree::add(tree.root(), "Group", "c");
    TinyTree::add(tree.root(), "Group", "a", "single");
    QList<Orvane::NodeLink*> links;
    nodeLinks(&tree.root(), links, false);
    std::string names;
    for (Orvane::NodeLink* link : links)
        names += nodeName(link->directNode()) + " ";
    QCOMPARE(names, std::string("a b c in out "));
    QCOMPARE(links[0], &TinyTree::single(tree.root()).link());
    QCOMPARE(links[2], &TinyTree::children(tree.root())[1]);
}

void tst_QorTools::emptyLinksAreNotListed()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(tree.root(), "Group", "b");
    // As at the end of nodes that hold each other: a link without a node stays in its list.
    struct Access : Orvane::NodeLink
    {
        static void empty(Orvane::NodeLink& link) { static_cast<Access&>(link)._node = nullptr; }
        static void fill(Orvane::NodeLink& link, Orvane::Node* node)
        {
            static_cast<Access&>(link)._node = node;
        }
    };
    Orvane::MFNode& children = TinyTree::children(tree.root());
    Orvane::Node* const first = children[0].directNode();
    Access::empty(children[0]);
    QList<Orvane::NodeLink*> links;
    nodeLinks(&tree.root(), links, false);
    QCOMPARE(links, QList<Orvane::NodeLink*>{&children[1]});
    // Its place in the list counts all the same.
    QCOMPARE(nodeLinkIndex(&children, &children[1]), 1);
    Access::fill(children[0], first);
}

void tst_QorTools::linksAreAppended()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    QList<Orvane::NodeLink*> links{nullptr};
    nodeLinks(&tree.root(), links, false);
    QCOMPARE(links, (QList<Orvane::NodeLink*>{nullptr, &TinyTree::children(tree.root())[0]}));
    nodeLinks(nullptr, links, false);
    QCOMPARE(links.size(), 2);
}

void tst_QorTools::linksStopAtAPrototypeWhenAsked()
{
    const TinyTree tree("ProtoLamp");
    TinyTree::add(tree.root(), "Group");
    LogCapture log(osg::LOG_LOG);
    QList<Orvane::NodeLink*> links;
    nodeLinks(&tree.root(), links, true);
    QVERIFY(links.isEmpty());
    QCOMPARE(log.take(), QByteArrayList{"0 ::nodeLinks: node root is proto.\n"});
    nodeLinks(&tree.root(), links, false);
    QCOMPARE(links.size(), 1);
    // Any other type is read either way.
    const TinyTree plain;
    TinyTree::add(plain.root(), "Group");
    nodeLinks(&plain.root(), links, true);
    QCOMPARE(links.size(), 2);
    QVERIFY(log.take().isEmpty());
}

void tst_QorTools::indexOfALinkIsItsPlaceInTheField()
{
    const TinyTree tree;
    Orvane::Node& shared = TinyTree::add(tree.root(), "Group");
    Tiny::link(&tree.root(), "children", &shared);
    Tiny::link(&tree.root(), "single", &shared);
    Orvane::MFNode& children = TinyTree::children(tree.root());
    LogCapture log;
    QCOMPARE(nodeLinkIndex(&children, &children[0]), 0);
    QCOMPARE(nodeLinkIndex(&children, &children[1]), 1);
    const QByteArray field = address(&children);
    QCOMPARE(log.take(), QByteArrayList({"3 nodeLinkIndex: searching NodeLink " + address(&children[0]) +
                                             " in MFNode " + field + "\n",
                                         "3 nodeLinkIndex: searching NodeLink " + address(&children[1]) +
                                             " in MFNode " + field + "\n"}));
    Orvane::SFNode& single = TinyTree::single(tree.root());
    QCOMPARE(nodeLinkIndex(&single, &single.link()), 0);
    QVERIFY(log.take().isEmpty());
}

void tst_QorTools::linkOfAnotherFieldHasNoIndex()
{
    const TinyTree tree;
    Orvane::Node& shared = TinyTree::add(tree.root(), "Group");
    Tiny::link(&tree.root(), "single", &shared);
    Orvane::MFNode& children = TinyTree::children(tree.root());
    Orvane::SFNode& single = TinyTree::single(tree.root());
    LogCapture log(osg::LOG_WARNING);
    QCOMPARE(nodeLinkIndex(&children, &single.link()), -1);
    QCOMPARE(log.take(),
             QByteArrayList{"2 nodeLinkIndex: unable to find NodeLink " + address(&single.link()) +
                            " in MFNode " + address(&children) + ".\n"});
    QCOMPARE(nodeLinkIndex(&single, &children[0]), -1);
    QCOMPARE(nodeLinkIndex(tree.root().findField(0U), &children[0]), -1);
    QCOMPARE(nodeLinkIndex(nullptr, &children[0]), -1);
    QVERIFY(log.take().isEmpty());
    // A copy is not the element.
    Orvane::NodeLink copy(children[0]);
    QCOMPARE(nodeLinkIndex(&children, &copy), -1);
}

void tst_QorTools::rowOfALinkCountsTheEarlierFields()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    TinyTree::add(tree.root(), "Group");
    Orvane::MFNode& children = TinyTree::children(tree.root());
    QCOMPARE(nodeLinkRow(&children[1]), 1);
    TinyTree::add(tree.root(), "Group", nullptr, "single");
    QCOMPARE(nodeLinkRow(&children[1]), 2);
    QCOMPARE(nodeLinkRow(&TinyTree::single(tree.root()).link()), 0);
    StrayLink stray(&children, children[0].directNode());
    LogCapture log(osg::LOG_WARNING);
    QCOMPARE(nodeLinkRow(&stray), -1);
    QCOMPARE(log.take().size(), 1);
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
