#include "FieldNode.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "QorSFieldItem.h"
#include "SaidField.h"
#include <QtCore/QRandomGenerator>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

const int ColumnCount = 10;

/// Counts the living ones.
class CountedItem : public QorFieldItem
{
public:
    CountedItem(int& living, QorFieldItem* parent)
        : QorFieldItem(nullptr, parent)
        , _living(living)
    {
        ++_living;
    }
    ~CountedItem() override { --_living; }

private:
    int& _living;
};

/// The word wrap as it is told, step by step on a copy of the text.
QString wrappedByHand(const QString& text, int width)
{
    if (text.size() <= width)
        return text;
    QString copy = text;
    int position = 0;
    int start = 0;
    while (position < copy.size()) {
        while (position - start < width) {
            const int blank = copy.indexOf(QLatin1Char(' '), position);
            if (blank < 0)
                return copy;
            position = blank + 1;
        }
        copy.insert(position, QLatin1Char('\n'));
        ++position;
        start += width;
    }
    return copy;
}

QString display(QorFieldItem& item, int column)
{
    return item.data(column, Qt::DisplayRole).toString();
}

/// The tool tip of a field behind its first line.
QString wrapped(const QString& description)
{
    Tiny::Part part;
    part.name = "f";
    part.description = description.toStdString();
    const FieldNode node({part});
    QorFieldItem item(node.field(0), nullptr);
    const QString tip = item.data(0, Qt::ToolTipRole).toString();
    const QString head = QStringLiteral("<b>f</b> <i>[SFBool]</i><br />");
    return tip.startsWith(head) ? tip.mid(head.size()) : QStringLiteral("no head: ") + tip;
}

} // namespace

class tst_QorFieldItem : public QObject
{
    Q_OBJECT

private slots:
    void theRootHasNeitherFieldNorParent();
    void childrenStandInTheOrderInWhichTheyCame();
    void thereIsNoChildOutsideTheRows();
    void theRowIsAlwaysZero();
    void anItemTakesItsChildrenWithIt();
    void removeChildTakesOutEveryOccurrenceAndDeletesOnce();
    void removeChildOfNullDeletesNothing();
    void removeAllChildsLeavesThemAlive();
    void castsGiveTheClassOrNull();
    void updateCacheOfTheBaseDoesNothing();
    void aCopyClaimsTheSameChildren();
    void everyColumnShowsItsText();
    void otherColumnsAreInvalid();
    void otherRolesAreInvalid();
    void theIdIsZeroWithoutADescription();
    void theIdOfAFieldWithoutANumberIsTheLargest();
    void restrictionsHaveWords_data();
    void restrictionsHaveWords();
    void truthsAreTexts();
    void textsOfTheRuntimeMayHoldAnyCharacter();
    void theToolTipIsTheSameInEveryColumn();
    void namesWithPlaceMarkersStayAsTheyAre();
    void descriptionsAreWrapped_data();
    void descriptionsAreWrapped();
    void wrappingFollowsTheStepsForAnyText();
    void pixelFormatsHaveWords_data();
    void pixelFormatsHaveWords();
    void imageDataTypesHaveWords_data();
    void imageDataTypesHaveWords();
};

void tst_QorFieldItem::theRootHasNeitherFieldNorParent()
{
    const QorFieldItem root(nullptr, nullptr);
    QVERIFY(!root.field());
    QVERIFY(!root.parent());
    QCOMPARE(root.childCount(), 0);
    QCOMPARE(root.columnCount(), ColumnCount);
}

void tst_QorFieldItem::childrenStandInTheOrderInWhichTheyCame()
{
    QorFieldItem root(nullptr, nullptr);
    auto* first = new QorFieldItem(nullptr, &root);
    auto* second = new QorFieldItem(nullptr, &root);
    root.appendChild(first);
    root.appendChild(second);
    QCOMPARE(root.childCount(), 2);
    QCOMPARE(root.child(0), first);
    QCOMPARE(root.child(1), second);
    QCOMPARE(first->parent(), &root);
}

void tst_QorFieldItem::thereIsNoChildOutsideTheRows()
{
    QorFieldItem root(nullptr, nullptr);
    root.appendChild(new QorFieldItem(nullptr, &root));
    QVERIFY(!root.child(-1));
    QVERIFY(!root.child(1));
}

void tst_QorFieldItem::theRowIsAlwaysZero()
{
    QorFieldItem root(nullptr, nullptr);
    root.appendChild(new QorFieldItem(nullptr, &root));
    root.appendChild(new QorFieldItem(nullptr, &root));
    QCOMPARE(root.row(), 0);
    QCOMPARE(root.child(1)->row(), 0);

    SaidField field("1, 2, 3", 3);
    QorMFieldItem list(&field, nullptr);
    QCOMPARE(list.child(2)->row(), 0);
}

void tst_QorFieldItem::anItemTakesItsChildrenWithIt()
{
    int living = 0;
    {
        QorFieldItem root(nullptr, nullptr);
        auto* child = new CountedItem(living, &root);
        child->appendChild(new CountedItem(living, child));
        root.appendChild(child);
        QCOMPARE(living, 2);
    }
    QCOMPARE(living, 0);
}

void tst_QorFieldItem::removeChildTakesOutEveryOccurrenceAndDeletesOnce()
{
    int living = 0;
    QorFieldItem root(nullptr, nullptr);
    auto* twice = new CountedItem(living, &root);
    auto* other = new CountedItem(living, &root);
    root.appendChild(twice);
    root.appendChild(other);
    root.appendChild(twice);
    root.removeChild(twice);
    QCOMPARE(living, 1);
    QCOMPARE(root.childCount(), 1);
    QCOMPARE(root.child(0), other);
}

void tst_QorFieldItem::removeChildOfNullDeletesNothing()
{
    int living = 0;
    QorFieldItem root(nullptr, nullptr);
    root.appendChild(nullptr);
    root.appendChild(new CountedItem(living, &root));
    root.appendChild(nullptr);
    root.removeChild(nullptr);
    QCOMPARE(root.childCount(), 1);
    QCOMPARE(living, 1);
}

void tst_QorFieldItem::removeAllChildsLeavesThemAlive()
{
    int living = 0;
    QorFieldItem root(nullptr, nullptr);
    const std::unique_ptr<QorFieldItem> child(new CountedItem(living, &root));
    root.appendChild(child.get());
    root.removeAllChilds();
    QCOMPARE(root.childCount(), 0);
    QCOMPARE(living, 1);
    QCOMPARE(child->parent(), &root);
}

void tst_QorFieldItem::castsGiveTheClassOrNull()
{
    SaidField field("1", 1);
    QorFieldItem base(&field, nullptr);
    QVERIFY(!base.toSFieldItem());
    QVERIFY(!base.toMFieldItem());
    QVERIFY(!base.toMFieldValueItem());

    QorSFieldItem single(&field, nullptr);
    QCOMPARE(static_cast<QorFieldItem&>(single).toSFieldItem(), &single);
    QVERIFY(!single.toMFieldItem());
    QVERIFY(!single.toMFieldValueItem());

    QorMFieldItem list(&field, nullptr);
    QCOMPARE(static_cast<QorFieldItem&>(list).toMFieldItem(), &list);
    QVERIFY(!list.toSFieldItem());
    QVERIFY(!list.toMFieldValueItem());

    QorFieldItem* value = list.child(0);
    QCOMPARE(static_cast<QorFieldItem*>(value->toMFieldValueItem()), value);
    QVERIFY(!value->toSFieldItem());
    QVERIFY(!value->toMFieldItem());
}

void tst_QorFieldItem::updateCacheOfTheBaseDoesNothing()
{
    SaidField field("1", 1);
    QorMFieldItem list(&field, nullptr);
    field.text = "2";
    static_cast<QorFieldItem&>(list).updateCache();
    QCOMPARE(list.getStringValue(0), QStringLiteral("1"));
    list.updateCache();
    QCOMPARE(list.getStringValue(0), QStringLiteral("2"));
}

void tst_QorFieldItem::aCopyClaimsTheSameChildren()
{
    SaidField field("1, 2", 2);
    SaidField other("", 0);
    QorFieldItem parent(nullptr, nullptr);

    QorFieldItem base(&field, &parent);
    base.appendChild(new QorFieldItem(nullptr, &base));
    QorFieldItem baseCopy(base);
    QCOMPARE(baseCopy.field(), base.field());
    QCOMPARE(baseCopy.parent(), base.parent());
    QCOMPARE(baseCopy.child(0), base.child(0));
    baseCopy.removeAllChilds();

    QorSFieldItem single(&field, &parent);
    single.appendChild(new QorFieldItem(nullptr, &single));
    QorSFieldItem singleCopy(&other, nullptr);
    singleCopy = single;
    QCOMPARE(singleCopy.field(), single.field());
    QCOMPARE(singleCopy.child(0), single.child(0));
    singleCopy.removeAllChilds();

    QorMFieldItem list(&field, &parent);
    QorMFieldItem listCopy(list);
    QCOMPARE(listCopy.isInitialised(), true);
    QCOMPARE(listCopy.getStringValue(1), QStringLiteral(" 2"));
    QCOMPARE(listCopy.child(1), list.child(1));
    listCopy.removeAllChilds();
    QorMFieldItem assigned(&other, nullptr);
    assigned = list;
    QCOMPARE(assigned.childCount(), 2);
    QCOMPARE(assigned.getStringValue(0), QStringLiteral("1"));
    assigned.removeAllChilds();

    QorMFieldValueItem value(1, &field, &list);
    const QorMFieldValueItem valueCopy(value);
    QCOMPARE(valueCopy.index(), 1);
    QorMFieldValueItem valueAssigned(0, &other, nullptr);
    valueAssigned = value;
    QCOMPARE(valueAssigned.index(), 1);
    QCOMPARE(display(valueAssigned, 1), QStringLiteral(" 2"));
}

void tst_QorFieldItem::everyColumnShowsItsText()
{
    Tiny::Part part;
    part.name = "radius";
    part.dataType = SFFLOAT_DT;
    part.access = FIELDP;
    part.value = "1.5";
    part.restriction = NodePartDesc::MIN_MAX_VR;
    part.valueType = "[0, 10]";
    part.autoProcess = true;
    const FieldNode node({Tiny::Part(), part});
    QorFieldItem item(node.field(1), nullptr);

    QCOMPARE(display(item, QorNodeModel::FieldName), QStringLiteral("radius"));
    QCOMPARE(display(item, QorNodeModel::FieldValue), QStringLiteral("1.5"));
    QCOMPARE(display(item, QorNodeModel::DataType), QStringLiteral("SFFloat"));
    QCOMPARE(display(item, QorNodeModel::FieldType), QStringLiteral("Field"));
    QCOMPARE(display(item, QorNodeModel::ID), QStringLiteral("1"));
    QCOMPARE(display(item, QorNodeModel::ValueRestriction), QStringLiteral("MIN_MAX_VR"));
    QCOMPARE(display(item, QorNodeModel::ValueType), QStringLiteral("[0, 10]"));
    QCOMPARE(display(item, QorNodeModel::DefaultValue), QStringLiteral("1.5"));
    QCOMPARE(display(item, QorNodeModel::AutoProcess), QStringLiteral("true"));
    QCOMPARE(display(item, QorNodeModel::Extension), QStringLiteral("false"));

    node.field(1)->setValueByStr(0.0, "2");
    QCOMPARE(display(item, QorNodeModel::FieldValue), QStringLiteral("2"));
    QCOMPARE(display(item, QorNodeModel::DefaultValue), QStringLiteral("1.5"));
}

void tst_QorFieldItem::otherColumnsAreInvalid()
{
    const FieldNode node({Tiny::Part()});
    QorFieldItem item(node.field(0), nullptr);
    QVERIFY(!item.data(-1, Qt::DisplayRole).isValid());
    QVERIFY(!item.data(ColumnCount, Qt::DisplayRole).isValid());
}

void tst_QorFieldItem::otherRolesAreInvalid()
{
    const FieldNode node({Tiny::Part()});
    QorFieldItem item(node.field(0), nullptr);
    for (int column = 0; column < ColumnCount; ++column) {
        for (int role : {Qt::DecorationRole, Qt::EditRole, Qt::StatusTipRole, Qt::CheckStateRole})
            QVERIFY(!item.data(column, role).isValid());
    }
}

void tst_QorFieldItem::theIdIsZeroWithoutADescription()
{
    const FieldNode node({Tiny::Part()});
    QorFieldItem item(Tiny::addFieldWithoutDescription(node.get()), nullptr);
    QCOMPARE(display(item, QorNodeModel::ID), QStringLiteral("0"));
}

void tst_QorFieldItem::theIdOfAFieldWithoutANumberIsTheLargest()
{
    SaidField field("", 0);
    field.desc.id = static_cast<unsigned int>(-1);
    QorFieldItem item(&field, nullptr);
    QCOMPARE(display(item, QorNodeModel::ID), QStringLiteral("4294967295"));
}

void tst_QorFieldItem::restrictionsHaveWords_data()
{
    QTest::addColumn<unsigned int>("restriction");
    QTest::addColumn<QString>("word");
    QTest::newRow("0") << 0U << QStringLiteral("UNKNOWN_VR");
    QTest::newRow("1") << 1U << QStringLiteral("NONE_VR");
    QTest::newRow("2") << 2U << QStringLiteral("CDATA_VR");
    QTest::newRow("3") << 3U << QStringLiteral("NODE_TYPE_VR");
    QTest::newRow("4") << 4U << QStringLiteral("MIN_MAX_VR");
    QTest::newRow("5") << 5U << QStringLiteral("LIST_VR");
    QTest::newRow("6") << 6U << QStringLiteral("UNKNOWN_VR");
    QTest::newRow("-1") << static_cast<unsigned int>(-1) << QStringLiteral("UNKNOWN_VR");
}

void tst_QorFieldItem::restrictionsHaveWords()
{
    QFETCH(unsigned int, restriction);
    Tiny::Part part;
    part.restriction = restriction;
    const FieldNode node({part});
    QorFieldItem item(node.field(0), nullptr);
    QTEST(display(item, QorNodeModel::ValueRestriction), "word");
}

void tst_QorFieldItem::truthsAreTexts()
{
    Tiny::Part on;
    on.autoProcess = true;
    on.objExt = true;
    const FieldNode node({on, Tiny::Part()});
    QorFieldItem yes(node.field(0), nullptr);
    QorFieldItem no(node.field(1), nullptr);
    for (int column : {QorNodeModel::AutoProcess, QorNodeModel::Extension}) {
        QCOMPARE(yes.data(column, Qt::DisplayRole), QVariant(QStringLiteral("true")));
        QCOMPARE(no.data(column, Qt::DisplayRole), QVariant(QStringLiteral("false")));
        QCOMPARE(no.data(column, Qt::DisplayRole).type(), QVariant::String);
        QVERIFY(!no.data(column, Qt::CheckStateRole).isValid());
    }
}

void tst_QorFieldItem::textsOfTheRuntimeMayHoldAnyCharacter()
{
    Tiny::Part part;
    part.dataType = SFSTRING_DT;
    part.name = "gr\xf6\xdf"
                "e";
    part.value = std::string("a\0b", 3);
    part.valueType = "\xe6\xbc\xa2";
    const FieldNode node({part});
    QorFieldItem item(node.field(0), nullptr);
    QCOMPARE(display(item, QorNodeModel::FieldName), QString::fromLatin1("gr\xf6\xdf"
                                                                         "e"));
    QCOMPARE(display(item, QorNodeModel::FieldValue), QString::fromLatin1("a\0b", 3));
    QCOMPARE(display(item, QorNodeModel::ValueType), QString(QChar(0x6f22)));
}

void tst_QorFieldItem::theToolTipIsTheSameInEveryColumn()
{
    Tiny::Part part;
    part.name = "radius";
    part.dataType = SFFLOAT_DT;
    part.description = "How large it is";
    const FieldNode node({part});
    QorFieldItem item(node.field(0), nullptr);
    for (int column = -1; column <= ColumnCount; ++column)
        QCOMPARE(item.data(column, Qt::ToolTipRole).toString(),
                 QStringLiteral("<b>radius</b> <i>[SFFloat]</i><br />How large it is"));
}

void tst_QorFieldItem::namesWithPlaceMarkersStayAsTheyAre()
{
    Tiny::Part part;
    part.name = "a%2";
    const FieldNode node({part});
    QorFieldItem item(node.field(0), nullptr);
    QCOMPARE(item.data(0, Qt::ToolTipRole).toString(), QStringLiteral("<b>a%2</b> <i>[SFBool]</i><br />"));
}

void tst_QorFieldItem::descriptionsAreWrapped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    const QString word28(28, QLatin1Char('x'));
    const auto keep = [](const char* name, const QString& text) { QTest::newRow(name) << text << text; };
    keep("empty", QString());
    keep("28 characters with blanks", QStringLiteral("12345 789 12345 789 12345 78"));
    keep("28 blanks", QString(28, QLatin1Char(' ')));
    keep("one long word", QString(200, QLatin1Char('x')));
    keep("no blank past the width", QStringLiteral("a b c d ") + QString(50, QLatin1Char('x')));

    // The first break comes behind the first blank at or past the width, and the blank stays in front of it.
    QTest::newRow("blank at the width")
        << word28 + QStringLiteral(" end") << word28 + QStringLiteral(" \nend");
    QTest::newRow("blank just inside the width") << QString(27, QLatin1Char('x')) + QStringLiteral(" end")
                                                 << QString(27, QLatin1Char('x')) + QStringLiteral(" \nend");
    QTest::newRow("blank that ends before the width")
        << QString(26, QLatin1Char('x')) + QStringLiteral(" ab cd")
        << QString(26, QLatin1Char('x')) + QStringLiteral(" ab \ncd");
    QTest::newRow("blank at the end") << word28 + QStringLiteral(" ") << word28 + QStringLiteral(" \n");
    // The start of a line counts on by the width alone, so a word of three widths is followed by breaks that
    // make up for it.
    QTest::newRow("long word in front") << QString(84, QLatin1Char('x')) + QStringLiteral(" end")
                                        << QString(84, QLatin1Char('x')) + QStringLiteral(" \n\n\nend");
    // The newlines count as characters: the lines hold 28, 27 and 27 of the text.
    QTest::newRow("lines drift shorter")
        << QStringLiteral("123456789012345678901234567 12345678901234567890123456 "
                          "12345678901234567890123456 1")
        << QStringLiteral("123456789012345678901234567 \n12345678901234567890123456 \n"
                          "12345678901234567890123456 \n1");
}

void tst_QorFieldItem::descriptionsAreWrapped()
{
    QFETCH(QString, text);
    QTEST(wrapped(text), "result");
}

void tst_QorFieldItem::wrappingFollowsTheStepsForAnyText()
{
    QRandomGenerator random(7);
    for (int run = 0; run < 2000; ++run) {
        QString text;
        const int length = random.bounded(300);
        const int rarity = 2 + random.bounded(40);
        for (int i = 0; i < length; ++i)
            text += QLatin1Char(random.bounded(rarity) == 0 ? ' ' : 'x');
        QCOMPARE(wrapped(text), wrappedByHand(text, 28));
    }
}

void tst_QorFieldItem::pixelFormatsHaveWords_data()
{
    QTest::addColumn<unsigned int>("number");
    QTest::addColumn<QString>("word");
    QTest::newRow("0") << 0U << QStringLiteral("UNKNOWN_PIXEL_FORMAT");
    QTest::newRow("GL_ALPHA") << 6406U << QStringLiteral("UNKNOWN_PIXEL_FORMAT");
    QTest::newRow("GL_RGB") << 6407U << QStringLiteral("RGB");
    QTest::newRow("GL_RGBA") << 6408U << QStringLiteral("RGBA");
    QTest::newRow("GL_LUMINANCE") << 6409U << QStringLiteral("LUMINANCE");
    QTest::newRow("GL_LUMINANCE_ALPHA") << 6410U << QStringLiteral("LUMINANCE_ALPHA");
    QTest::newRow("GL_INTENSITY") << 32841U << QStringLiteral("INTENSITY");
    QTest::newRow("GL_BGR") << 32992U << QStringLiteral("BGR");
    QTest::newRow("GL_BGRA") << 32993U << QStringLiteral("BGRA");
    QTest::newRow("GL_COMPRESSED_RGB_S3TC_DXT1_EXT") << 33776U << QStringLiteral("RGB_DXT1");
    QTest::newRow("GL_COMPRESSED_RGBA_S3TC_DXT1_EXT") << 33777U << QStringLiteral("RGBA_DXT1");
    QTest::newRow("GL_COMPRESSED_RGBA_S3TC_DXT3_EXT") << 33778U << QStringLiteral("RGBA_DXT3");
    QTest::newRow("GL_COMPRESSED_RGBA_S3TC_DXT5_EXT") << 33779U << QStringLiteral("RGBA_DXT5");
    QTest::newRow("behind the last") << 33780U << QStringLiteral("UNKNOWN_PIXEL_FORMAT");
}

void tst_QorFieldItem::pixelFormatsHaveWords()
{
    QFETCH(unsigned int, number);
    QTEST(QorFieldItem::pixelFormatToString(number), "word");
}

void tst_QorFieldItem::imageDataTypesHaveWords_data()
{
    QTest::addColumn<unsigned int>("number");
    QTest::addColumn<QString>("word");
    QTest::newRow("0") << 0U << QStringLiteral("UNKNOWN_IMAGEDATA_TYPE");
    QTest::newRow("GL_UNSIGNED_BYTE") << 5121U << QStringLiteral("UCHAR8");
    QTest::newRow("GL_SHORT") << 5122U << QStringLiteral("UNKNOWN_IMAGEDATA_TYPE");
    QTest::newRow("GL_UNSIGNED_SHORT") << 5123U << QStringLiteral("UCHAR16");
    QTest::newRow("GL_INT") << 5124U << QStringLiteral("UNKNOWN_IMAGEDATA_TYPE");
    QTest::newRow("GL_UNSIGNED_INT") << 5125U << QStringLiteral("UCHAR32");
    QTest::newRow("GL_FLOAT") << 5126U << QStringLiteral("FLOAT32");
    QTest::newRow("GL_HALF_FLOAT") << 5131U << QStringLiteral("FLOAT16");
}

void tst_QorFieldItem::imageDataTypesHaveWords()
{
    QFETCH(unsigned int, number);
    QTEST(QorFieldItem::dataTypeToString(number), "word");
}

QTEST_APPLESS_MAIN(tst_QorFieldItem)
#include "tst_QorFieldItem.moc"
