#include "QorNodePathMimeData.h"
#include "TinyTree.h"
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorNodePathMimeData : public QObject
{
    Q_OBJECT

private slots:
    void itHasOneFormatWithoutBytes();
    void itCarriesAPath();
    void receiversCast();
    void thePathMayBreakOnTheWay();
};

void tst_QorNodePathMimeData::itHasOneFormatWithoutBytes()
{
    const TinyTree tree;
    const QorNodePathMimeData data((NodePath(&tree.root())));
    QCOMPARE(data.formats(), QStringList{QStringLiteral("vellumer/nodepath")});
    QVERIFY(data.hasFormat(QStringLiteral("vellumer/nodepath")));
    QVERIFY(data.data(QStringLiteral("vellumer/nodepath")).isEmpty());
    QVERIFY(!data.hasFormat(QStringLiteral("text/plain")));
    QVERIFY(!data.hasText());
    QVERIFY(!data.hasUrls());
}

void tst_QorNodePathMimeData::itCarriesAPath()
{
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group");
    QorNodePathMimeData data((NodePath(&group)));
    QVERIFY(data.nodePath() == NodePath(&group));
    QCOMPARE(data.nodePath().node(), &group);
    data.setNodePath(NodePath(&tree.root()));
    QVERIFY(data.nodePath() == NodePath(&tree.root()));
    data.setNodePath(NodePath(nullptr));
    QVERIFY(!data.nodePath().isValid());
    QVERIFY(data.hasFormat(QStringLiteral("vellumer/nodepath")));
}

void tst_QorNodePathMimeData::receiversCast()
{
    const TinyTree tree;
    const std::unique_ptr<QMimeData> data(new QorNodePathMimeData(NodePath(&tree.root())));
    QCOMPARE(qobject_cast<QorNodePathMimeData*>(data.get())->nodePath().node(), &tree.root());
    QCOMPARE(dynamic_cast<QorNodePathMimeData*>(data.get())->nodePath().node(), &tree.root());
    QVERIFY(qobject_cast<QorMimeData*>(data.get()));
    const std::unique_ptr<QMimeData> other(new QMimeData);
    QVERIFY(!qobject_cast<QorNodePathMimeData*>(other.get()));
    const QorMimeData base;
    QVERIFY(base.formats().isEmpty());
    QVERIFY(!qobject_cast<const QorNodePathMimeData*>(&base));
}

void tst_QorNodePathMimeData::thePathMayBreakOnTheWay()
{
    TinyTree tree;
    const QorNodePathMimeData data((NodePath(&tree.root())));
    tree.end();
    QVERIFY(!data.nodePath().node());
}

QTEST_APPLESS_MAIN(tst_QorNodePathMimeData)
#include "tst_QorNodePathMimeData.moc"
