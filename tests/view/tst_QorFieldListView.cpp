#include "FieldRows.h"
#include "QorFieldListView.h"
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorFieldListView : public QObject
{
    Q_OBJECT

private slots:
    void emptyAtFirst();
    void fieldsAreListedInOrder();
    void partTypesAreComparedAsAWhole_data();
    void partTypesAreComparedAsAWhole();
    void onlyExtensionsOnDemand();
    void columnsAreShownInOrder_data();
    void columnsAreShownInOrder();
    void sameColumnsChangeNothing();
    void sameNodeIsListedAnew();
    void otherNodeIsListed();
    void fieldWithoutDescription();
    void deadNodeHasNoFields();
    void columnText();
    void hooksOfASubclassAreCalled();
    void textsOfTheSceneAreLatin1OrUtf8();
};

namespace {

std::vector<Tiny::Part> someParts()
{
    Tiny::Part added = part("added", SFSTRING_DT, "", EXPOSEDFIELDP);
    added.objExt = true;
    return {part("plain", SFINT32_DT, "5", FIELDP), part("set", SFBOOL_DT, "", EVENTINP),
            part("changed", MFFLOAT_DT, "", EVENTOUTP), part("shown", SFTIME_DT), added};
}

struct List
{
    List()
        : node(Tiny::makeNode(Tiny::makeType("Listed", someParts())))
    {
    }

    QStringList rows() const
    {
        QStringList rows;
        for (int i = 0; i < view.topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = view.topLevelItem(i);
            rows << QStringList{item->text(0), item->text(1), item->text(2)}.join(QLatin1Char('|'));
        }
        return rows;
    }
    QStringList header() const
    {
        const QTreeWidgetItem* item = view.headerItem();
        return {item->text(0), item->text(1), item->text(2)};
    }

    std::unique_ptr<Node> node;
    QorFieldListView view;
};

QStringList texts(std::initializer_list<const char*> list)
{
    QStringList result;
    for (const char* text : list)
        result << QString::fromUtf8(text);
    return result;
}

} // namespace

void tst_QorFieldListView::emptyAtFirst()
{
    const List list;
    QVERIFY(!list.view.node());
    QVERIFY(!list.view.isExtensionsOnly());
    QCOMPARE(int(list.view.getShownPartTypes()), 0);
    QCOMPARE(int(list.view.getShownColumns()), 7);
    QVERIFY(!list.view.rootIsDecorated());
    QCOMPARE(list.view.columnCount(), 3);
    QCOMPARE(list.header(), texts({"Name", "Data type", "Field type"}));
    QCOMPARE(list.view.topLevelItemCount(), 0);
}

void tst_QorFieldListView::fieldsAreListedInOrder()
{
    List list;
    list.view.setNode(list.node.get());
    QCOMPARE(list.view.node(), list.node.get());
    QCOMPARE(list.rows(), texts({"plain|SFInt32|Field", "set|SFBool|EventIn", "changed|MFFloat|EventOut",
                                 "shown|SFTime|ExposedField", "added|SFString|ExposedField"}));
    list.view.setNode(nullptr);
    QVERIFY(!list.view.node());
    QVERIFY(list.rows().isEmpty());
}

void tst_QorFieldListView::partTypesAreComparedAsAWhole_data()
{
    QTest::addColumn<int>("types");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("all") << 0 << texts({"plain", "set", "changed", "shown", "added"});
    QTest::newRow("fields") << 1 << texts({"plain"});
    QTest::newRow("event ins") << 2 << texts({"set"});
    QTest::newRow("fields and event ins") << 3 << QStringList();
    QTest::newRow("event outs") << 4 << texts({"changed"});
    QTest::newRow("exposed fields") << 7 << texts({"shown", "added"});
}

void tst_QorFieldListView::partTypesAreComparedAsAWhole()
{
    QFETCH(int, types);
    QFETCH(QStringList, names);
    List list;
    list.view.showColumns(QorFieldListView::COLUMN_NAME);
    list.view.setNode(list.node.get());
    list.view.showPartTypes(NodePartType(types));
    QCOMPARE(int(list.view.getShownPartTypes()), types);
    for (QString& name : names)
        name += QStringLiteral("||");
    QCOMPARE(list.rows(), names);
}

void tst_QorFieldListView::onlyExtensionsOnDemand()
{
    List list;
    list.view.setNode(list.node.get());
    list.view.setExtensionsOnly(true);
    QVERIFY(list.view.isExtensionsOnly());
    QCOMPARE(list.rows(), texts({"added|SFString|ExposedField"}));
    list.view.showPartTypes(FIELDP);
    QVERIFY(list.rows().isEmpty());
    list.view.setExtensionsOnly(false);
    QCOMPARE(list.rows(), texts({"plain|SFInt32|Field"}));

    const std::unique_ptr<Node> bare(Tiny::makeNode(Tiny::makeType("Bare", {part("plain", SFINT32_DT)})));
    list.view.showPartTypes(NO_PART);
    list.view.setExtensionsOnly(true);
    list.view.setNode(bare.get());
    QVERIFY(list.rows().isEmpty());
    list.view.setNode(nullptr);
}

void tst_QorFieldListView::columnsAreShownInOrder_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QStringList>("header");
    QTest::addColumn<QString>("row");
    QTest::newRow("none") << 0 << texts({"", "", ""}) << QStringLiteral("||");
    QTest::newRow("name") << 1 << texts({"Name", "", ""}) << QStringLiteral("plain||");
    QTest::newRow("data type") << 2 << texts({"Data type", "", ""}) << QStringLiteral("SFInt32||");
    QTest::newRow("name, data type") << 3 << texts({"Name", "Data type", ""})
                                     << QStringLiteral("plain|SFInt32|");
    QTest::newRow("field type") << 4 << texts({"Field type", "", ""}) << QStringLiteral("Field||");
    QTest::newRow("name, field type")
        << 5 << texts({"Name", "Field type", ""}) << QStringLiteral("plain|Field|");
    QTest::newRow("types") << 6 << texts({"Data type", "Field type", ""}) << QStringLiteral("SFInt32|Field|");
    QTest::newRow("unknown flag") << 9 << texts({"Name", "", ""}) << QStringLiteral("plain||");
}

void tst_QorFieldListView::columnsAreShownInOrder()
{
    QFETCH(int, columns);
    QFETCH(QStringList, header);
    QFETCH(QString, row);
    List list;
    list.view.setNode(list.node.get());
    list.view.showColumns(QorFieldListView::Column(columns));
    QCOMPARE(int(list.view.getShownColumns()), columns);
    QCOMPARE(list.view.columnCount(), 3);
    QCOMPARE(list.header(), header);
    QCOMPARE(list.rows().value(0), row);
    QCOMPARE(list.rows().size(), 5);
    list.view.showColumns(QorFieldListView::COLUMN_NAME | QorFieldListView::COLUMN_DATA_TYPE |
                          QorFieldListView::COLUMN_FIELD_TYPE);
    QCOMPARE(list.header(), texts({"Name", "Data type", "Field type"}));
    QCOMPARE(list.rows().value(0), QStringLiteral("plain|SFInt32|Field"));
}

void tst_QorFieldListView::sameColumnsChangeNothing()
{
    List list;
    list.view.setNode(list.node.get());
    const QTreeWidgetItem* first = list.view.topLevelItem(0);
    list.view.headerItem()->setText(0, QStringLiteral("mine"));
    list.view.showColumns(list.view.getShownColumns());
    QCOMPARE(list.view.topLevelItem(0), first);
    QCOMPARE(list.header().value(0), QStringLiteral("mine"));
}

void tst_QorFieldListView::sameNodeIsListedAnew()
{
    List list;
    list.view.setNode(list.node.get());
    Tiny::addField(list.node.get(), part("more", SFBOOL_DT));
    QCOMPARE(list.rows().size(), 5);
    list.view.setNode(list.node.get());
    QCOMPARE(list.rows().value(5), QStringLiteral("more|SFBool|ExposedField"));
}

void tst_QorFieldListView::otherNodeIsListed()
{
    List list;
    list.view.setNode(list.node.get());
    const std::unique_ptr<Node> other(Tiny::makeNode(Tiny::makeType("Other", {part("x", MFNODE_DT)})));
    list.view.setNode(other.get());
    QCOMPARE(list.rows(), texts({"x|MFNode|ExposedField"}));
    list.view.setNode(nullptr);
}

void tst_QorFieldListView::fieldWithoutDescription()
{
    List list;
    Tiny::addFieldWithoutDescription(list.node.get());
    list.view.setNode(list.node.get());
    QCOMPARE(list.rows().value(5), QStringLiteral("||"));
    list.view.showPartTypes(EXPOSEDFIELDP);
    QCOMPARE(list.rows().size(), 2);
    list.view.showPartTypes(NO_PART);
    list.view.setExtensionsOnly(true);
    QCOMPARE(list.rows().size(), 1);
}

void tst_QorFieldListView::deadNodeHasNoFields()
{
    List list;
    list.view.setNode(list.node.get());
    list.node.reset();
    QVERIFY(!list.view.node());
    list.view.updateView();
    QVERIFY(list.rows().isEmpty());
    list.view.showColumns(QorFieldListView::COLUMN_NAME);
    QVERIFY(list.rows().isEmpty());
}

void tst_QorFieldListView::columnText()
{
    struct View : QorFieldListView
    {
        using QorFieldListView::getColumnText;
    };
    const View view;
    const List list;
    const Field* field = list.node->findField(0U);
    QCOMPARE(view.getColumnText(field, View::COLUMN_NAME), QStringLiteral("plain"));
    QCOMPARE(view.getColumnText(field, View::COLUMN_DATA_TYPE), QStringLiteral("SFInt32"));
    QCOMPARE(view.getColumnText(field, View::COLUMN_FIELD_TYPE), QStringLiteral("Field"));
    for (const int other : {0, 3, 5, 6, 7, 8})
        QVERIFY(view.getColumnText(field, View::Column(other)).isNull());
}

void tst_QorFieldListView::hooksOfASubclassAreCalled()
{
    struct View : QorFieldListView
    {
        void updateView() override { ++updates; }
        void initListView() override { ++inits; }
        int updates = 0;
        int inits = 0;
    };
    View view;
    view.setNode(nullptr);
    view.setExtensionsOnly(false);
    view.showPartTypes(NO_PART);
    QCOMPARE(view.updates, 3);
    QCOMPARE(view.inits, 0);
    view.showColumns(View::COLUMN_NAME);
    QCOMPARE(view.updates, 4);
    QCOMPARE(view.inits, 1);
}

void tst_QorFieldListView::textsOfTheSceneAreLatin1OrUtf8()
{
    List list;
    Tiny::addField(list.node.get(), part("Gr\xf6\xdf", SFBOOL_DT));
    Tiny::addField(list.node.get(), part("\xe2\x82\xac", SFBOOL_DT));
    list.view.showColumns(QorFieldListView::COLUMN_NAME);
    list.view.setNode(list.node.get());
    QCOMPARE(list.rows().mid(5), texts({"Größ||", "€||"}));
}

QTEST_MAIN(tst_QorFieldListView)
#include "tst_QorFieldListView.moc"
