#include "FieldNode.h"
#include "LogCapture.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "QorSFieldItem.h"
#include "SaidField.h"
#include "tinyruntime/Runtime.h"
#include <Orvane/FieldType.h>
#include <Orvane/MFBool.h>
#include <Orvane/MFString.h>
#include <QtCore/QTranslator>
#include <QtTest>
#include <set>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

/// Makes indexes of any item, and tells every signal of the model.
class Model : public QorNodeModel
{
public:
    explicit Model(Node* node)
        : QorNodeModel(node, nullptr)
    {
        const auto note = [this](const char* signal) {
            return [this, signal] { signalNames.append(signal); };
        };
        connect(this, &Model::dataChanged, this, note("dataChanged"));
        connect(this, &Model::layoutChanged, this, note("layoutChanged"));
        connect(this, &Model::modelReset, this, note("modelReset"));
        connect(this, &Model::rowsAboutToBeInserted, this, note("rowsAboutToBeInserted"));
        connect(this, &Model::rowsInserted, this, note("rowsInserted"));
        connect(this, &Model::rowsAboutToBeRemoved, this, note("rowsAboutToBeRemoved"));
        connect(this, &Model::rowsRemoved, this, note("rowsRemoved"));
    }
    QModelIndex indexOf(QorFieldItem* item) const { return createIndex(0, 0, item); }

    QByteArrayList signalNames;
};

QorFieldItem* itemOf(const QModelIndex& index)
{
    return static_cast<QorFieldItem*>(index.internalPointer());
}

QString display(const QModelIndex& index)
{
    return index.data(Qt::DisplayRole).toString();
}

QString value(const FieldNode& node, unsigned int part = 0)
{
    return QString::fromLatin1(node.field(part)->valueToString().c_str());
}

/// The texts of the rows below \a parent in the column of values.
QStringList rows(const QAbstractItemModel& model, const QModelIndex& parent)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(parent); ++row)
        texts << display(model.index(row, QorNodeModel::FieldValue, parent)).trimmed();
    return texts;
}

QByteArray pointerText(const void* pointer)
{
    char buffer[64];
    qsnprintf(buffer, sizeof(buffer), "%p", pointer);
    return buffer;
}

/// The data types whose lists can be changed.
const std::set<NodePartDataType> EditableLists = {
    MFBOOL_DT,   MFCOLOR_DT, MFCOLORRGBA_DT, MFDOUBLE_DT, MFFLOAT_DT, MFINT32_DT, MFROTATION_DT,
    MFSTRING_DT, MFVEC2F_DT, MFVEC3F_DT,     MFVEC4F_DT,  MFVEC2D_DT, MFVEC3D_DT, MFVEC4D_DT};

} // namespace

class tst_QorNodeModel : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void rowsStandInReverseOrderOfTheParts();
    void privateFieldsHaveNoRow();
    void aNodeWithoutAPublicFieldGivesNoRows();
    void rowsGoByCardinality();
    void aFieldOfUnknownCardinalityCountsAsSingle();
    void buildingIsTimed();
    void aModelWithoutNodeIsEmpty();
    void setNodeBuildsTheRowsAnewInSilence();
    void setNodeKeepsTheNodeOfTheConstructor();
    void itHasNoSignalsAndSlotsOfItsOwn();

    void columnsHaveHeaders_data();
    void columnsHaveHeaders();
    void headersAreTranslatedInTheContextOfTheModel();
    void onlyHorizontalTextsAreHeaders();

    void anIndexCarriesTheItemInEveryColumn();
    void anIndexOutsideItsParentIsLogged();
    void anIndexOutsideTheTopLevelIsInvalid();
    void aFieldIsFoundInTheColumnOfItsValue();
    void theParentOfAValueIsToldByItsItem();
    void everyRowHasTenColumns();
    void dataIsThatOfTheItem();
    void everyCellIsFlaggedEditable();

    void setDataHandsTheTextToTheField();
    void setDataOfATextThatDoesNotParseIsTrue();
    void setDataNeedsAText();
    void setDataNeedsARow();
    void setDataGoesByTheFieldOfAValueRow();

    void onlySomeListsCanChange_data();
    void onlySomeListsCanChange();
    void valueRowsCanChangeTheirField();
    void withoutAnItemNothingCanChange();

    void newValuesAreThoseOfTheirClass_data();
    void newValuesAreThoseOfTheirClass();
    void aTruthAtTheEndIsFalseAndElsewhereTrue();
    void valuesAreInsertedInFront();
    void severalValuesAreInserted();
    void insertingBehindTheEndAddsNothing();
    void insertingNoRowAddsNothing();
    void insertingIsTold();
    void insertingIntoAnotherClassIsLogged();
    void insertingIntoASingleFieldIsLogged();
    void insertingWithoutAFieldIsLoggedAndTrue();
    void insertingIntoALargeFieldLeavesItsPlaceholder();

    void oneValueIsRemovedWhateverTheCount();
    void removingShrinksEveryClass_data();
    void removingShrinksEveryClass();
    void removingOutsideTheFieldIsLogged();
    void removingIsTold();
    void removingFromAnotherClassIsLogged();
    void removingWithoutAFieldIsFalse();
    void removingFromALargeFieldLeavesItsPlaceholder();
    void rowsReachTheThresholdFromAbove();
};

void tst_QorNodeModel::cleanup()
{
    QorMFieldItem::setValueCountThreshold(50);
}

void tst_QorNodeModel::rowsStandInReverseOrderOfTheParts()
{
    const FieldNode node({part("a", SFBOOL_DT), part("b", MFFLOAT_DT), part("c", SFSTRING_DT)});
    const QorNodeModel model(node.get(), nullptr);
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(display(model.index(0, 0)), QStringLiteral("c"));
    QCOMPARE(display(model.index(1, 0)), QStringLiteral("b"));
    QCOMPARE(display(model.index(2, 0)), QStringLiteral("a"));
}

void tst_QorNodeModel::privateFieldsHaveNoRow()
{
    const FieldNode node({part("a", SFBOOL_DT), privatePart("hidden"), part("b", SFBOOL_DT)});
    const QorNodeModel model(node.get(), nullptr);
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(display(model.index(0, 0)), QStringLiteral("b"));
    QCOMPARE(display(model.index(1, 0)), QStringLiteral("a"));
}

void tst_QorNodeModel::aNodeWithoutAPublicFieldGivesNoRows()
{
    const FieldNode bare({});
    QCOMPARE(QorNodeModel(bare.get(), nullptr).rowCount(), 0);
    const FieldNode hiding({privatePart("hidden")});
    const QorNodeModel model(hiding.get(), nullptr);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 10);
    QVERIFY(!model.index(0, 0).isValid());
}

void tst_QorNodeModel::rowsGoByCardinality()
{
    const FieldNode node({part("single", SFVEC3F_DT), part("many", MFTIME_DT), part("strings", MFSTRING_DT)});
    const QorNodeModel model(node.get(), nullptr);
    QVERIFY(itemOf(model.index(2, 0))->toSFieldItem());
    QVERIFY(itemOf(model.index(1, 0))->toMFieldItem());
    QVERIFY(itemOf(model.index(0, 0))->toMFieldItem());
}

void tst_QorNodeModel::aFieldOfUnknownCardinalityCountsAsSingle()
{
    const FieldNode node({});
    auto field = std::make_unique<SaidField>("1, 2", 2);
    field->lists = 2;
    node.get()->data()->fields.push_back(std::move(field));
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex row = model.index(0, 0);
    QVERIFY(itemOf(row)->toSFieldItem());
    LogCapture log(osg::LOG_WARNING);
    QVERIFY(!model.insertRows(0, 1, row));
    QCOMPARE(log.take().size(), 1);
    QVERIFY(!model.removeRows(0, 1, row));
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeModel::buildingIsTimed()
{
    const FieldNode node({part("a", SFBOOL_DT)});
    LogCapture log;
    QorNodeModel model(node.get(), nullptr);
    model.setNode(node.get());
    const QByteArrayList lines = log.take();
    QCOMPARE(lines.size(), 2);
    const QRegularExpression text(QStringLiteral("^3 QorNodeModel::setupModelData: took \\d+ms\n$"));
    for (const QByteArray& line : lines)
        QVERIFY2(text.match(QString::fromLatin1(line)).hasMatch(), line);
}

void tst_QorNodeModel::aModelWithoutNodeIsEmpty()
{
    QObject owner;
    auto* model = new QorNodeModel(&owner);
    QCOMPARE(model->QObject::parent(), &owner);
    QVERIFY(!model->node());
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(model->columnCount(), 10);
    QVERIFY(!model->index(0, 0).isValid());
    QVERIFY(!model->index(static_cast<Field*>(nullptr)).isValid());

    const FieldNode node({part("a", SFBOOL_DT)});
    model->setNode(node.get());
    QCOMPARE(model->rowCount(), 1);
    QVERIFY(!model->node());

    const QorNodeModel nothing(nullptr, nullptr);
    QCOMPARE(nothing.rowCount(), 0);
}

void tst_QorNodeModel::setNodeBuildsTheRowsAnewInSilence()
{
    const FieldNode first({part("a", SFBOOL_DT)});
    const FieldNode second({part("b", MFFLOAT_DT, "1, 2"), part("c", SFBOOL_DT)});
    Model model(first.get());
    model.setNode(second.get());
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(display(model.index(0, 0)), QStringLiteral("c"));
    QCOMPARE(model.rowCount(model.index(1, 0)), 2);
    QVERIFY(model.signalNames.isEmpty());
}

void tst_QorNodeModel::setNodeKeepsTheNodeOfTheConstructor()
{
    const FieldNode first({});
    const FieldNode second({});
    Model model(first.get());
    QCOMPARE(model.node(), first.get());
    model.setNode(second.get());
    QCOMPARE(model.node(), first.get());
}

void tst_QorNodeModel::itHasNoSignalsAndSlotsOfItsOwn()
{
    QCOMPARE(QorNodeModel::staticMetaObject.methodCount(),
             QAbstractItemModel::staticMetaObject.methodCount());
}

void tst_QorNodeModel::columnsHaveHeaders_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<QString>("text");
    const char* const texts[] = {"Fieldname",    "Fieldvalue",        "Datatype",  "Fieldtype",
                                 "ID",           "Value restriction", "Valuetype", "Default value",
                                 "Auto process", "Extension"};
    for (int i = 0; i < 10; ++i)
        QTest::newRow(texts[i]) << i << QString::fromLatin1(texts[i]);
    QTest::newRow("10") << 10 << QStringLiteral("Unknown");
    QTest::newRow("12") << 12 << QStringLiteral("Unknown");
    QTest::newRow("-1") << -1 << QStringLiteral("Unknown");
}

void tst_QorNodeModel::columnsHaveHeaders()
{
    QFETCH(int, section);
    const FieldNode node({});
    const QorNodeModel model(node.get(), nullptr);
    QTEST(model.headerData(section, Qt::Horizontal, Qt::DisplayRole).toString(), "text");
    QTEST(QorNodeModel::fieldColumnName(static_cast<QorNodeModel::FieldColumn>(section)), "text");
}

void tst_QorNodeModel::headersAreTranslatedInTheContextOfTheModel()
{
    class Translator : public QTranslator
    {
    public:
        QString translate(const char* context, const char* text, const char*, int) const override
        {
            return QString::fromLatin1(context) + QLatin1Char(':') + QString::fromLatin1(text);
        }
        bool isEmpty() const override { return false; }
    };
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name};
    const QCoreApplication app(argc, argv);
    Translator translator;
    QCoreApplication::installTranslator(&translator);
    QCOMPARE(QorNodeModel::fieldColumnName(QorNodeModel::FieldName),
             QStringLiteral("QorNodeModel:Fieldname"));
    QCOMPARE(QorNodeModel::fieldColumnName(static_cast<QorNodeModel::FieldColumn>(10)),
             QStringLiteral("QorNodeModel:Unknown"));

    SaidField field("", 51);
    QorMFieldItem item(&field, nullptr);
    QVERIFY(item.data(0, Qt::ToolTipRole).toString().startsWith(QLatin1String("QObject:This multi field")));
}

void tst_QorNodeModel::onlyHorizontalTextsAreHeaders()
{
    const FieldNode node({});
    const QorNodeModel model(node.get(), nullptr);
    QVERIFY(!model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::ToolTipRole).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::DecorationRole).isValid());
}

void tst_QorNodeModel::anIndexCarriesTheItemInEveryColumn()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2")});
    const QorNodeModel model(node.get(), nullptr);
    const QModelIndex top = model.index(0, 0);
    for (int column = 0; column < 10; ++column) {
        const QModelIndex cell = model.index(0, column);
        QCOMPARE(cell.internalPointer(), top.internalPointer());
        QCOMPARE(cell.row(), 0);
        QCOMPARE(cell.column(), column);
        // The rows of values hang below every column of their field.
        QCOMPARE(itemOf(model.index(1, column, cell)), itemOf(top)->child(1));
    }
    QCOMPARE(itemOf(top)->field(), node.field(0));
}

void tst_QorNodeModel::anIndexOutsideItsParentIsLogged()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2")});
    const QorNodeModel model(node.get(), nullptr);
    const QModelIndex top = model.index(0, 0);
    LogCapture log;
    QVERIFY(!model.index(2, 0, top).isValid());
    QVERIFY(!model.index(0, 10, top).isValid());
    QCOMPARE(log.take(), QByteArrayList({"1 QorNodeModel::index: row=2, column=0 out of bounds.\n",
                                         "1 QorNodeModel::index: row=0, column=10 out of bounds.\n"}));
    QVERIFY(!model.index(-1, 0, top).isValid());
    QVERIFY(!model.index(0, -1, top).isValid());
    QVERIFY(model.index(1, 9, top).isValid());
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeModel::anIndexOutsideTheTopLevelIsInvalid()
{
    const FieldNode node({part("a", SFBOOL_DT)});
    const QorNodeModel model(node.get(), nullptr);
    LogCapture log;
    QVERIFY(!model.index(1, 0).isValid());
    QVERIFY(!model.index(-1, 0).isValid());
    QVERIFY(model.index(0, 12).isValid());
    QVERIFY(!model.data(model.index(0, 12)).isValid());
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeModel::aFieldIsFoundInTheColumnOfItsValue()
{
    const FieldNode node({part("a", SFBOOL_DT), part("b", MFFLOAT_DT, "1"), privatePart("hidden")});
    const FieldNode other({part("a", SFBOOL_DT)});
    const QorNodeModel model(node.get(), nullptr);
    QCOMPARE(model.index(node.field(0)), model.index(1, QorNodeModel::FieldValue));
    QCOMPARE(model.index(node.field(1)), model.index(0, QorNodeModel::FieldValue));
    QVERIFY(!model.index(node.field(2)).isValid());
    QVERIFY(!model.index(other.field(0)).isValid());
    QVERIFY(!model.index(static_cast<Field*>(nullptr)).isValid());
}

void tst_QorNodeModel::theParentOfAValueIsToldByItsItem()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2"), part("b", SFBOOL_DT)});
    const QorNodeModel model(node.get(), nullptr);
    QVERIFY(!model.parent(QModelIndex()).isValid());
    const QModelIndex field = model.index(1, 3);
    QVERIFY(!model.parent(field).isValid());
    const QModelIndex parent = model.parent(model.index(1, 4, field));
    QCOMPARE(parent.row(), 0);
    QCOMPARE(parent.column(), 0);
    QCOMPARE(parent.internalPointer(), field.internalPointer());
    QCOMPARE(model.rowCount(parent), 2);
}

void tst_QorNodeModel::everyRowHasTenColumns()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2"), part("b", SFBOOL_DT)});
    const QorNodeModel model(node.get(), nullptr);
    QCOMPARE(model.columnCount(), 10);
    QCOMPARE(model.columnCount(model.index(0, 0)), 10);
    QCOMPARE(model.columnCount(model.index(0, 0, model.index(1, 0))), 10);
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
    QCOMPARE(model.rowCount(model.index(1, 7)), 2);
    QCOMPARE(model.rowCount(model.index(0, 0, model.index(1, 0))), 0);
}

void tst_QorNodeModel::dataIsThatOfTheItem()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2"), part("b", SFSTRING_DT, "text")});
    const QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(1, 0);
    for (const QModelIndex& parent : {QModelIndex(), list}) {
        for (int column = 0; column < 10; ++column) {
            const QModelIndex cell = model.index(1, column, parent);
            for (int role : {Qt::DisplayRole, Qt::ToolTipRole})
                QCOMPARE(model.data(cell, role), itemOf(cell)->data(column, role));
            for (int role : {Qt::EditRole, Qt::DecorationRole, Qt::TextAlignmentRole, Qt::UserRole})
                QVERIFY(!model.data(cell, role).isValid());
        }
    }
    QVERIFY(!model.data(QModelIndex()).isValid());
    QCOMPARE(display(model.index(0, 1)), QStringLiteral("text"));
    node.field(1)->setValueByStr(0.0, "other");
    QCOMPARE(display(model.index(0, 1)), QStringLiteral("other"));
}

void tst_QorNodeModel::everyCellIsFlaggedEditable()
{
    Tiny::Part out = part("out", SFBOOL_DT);
    out.access = EVENTOUTP;
    const FieldNode node({out, part("list", MFFLOAT_DT, "1")});
    const QorNodeModel model(node.get(), nullptr);
    const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
    for (int column = 0; column < 10; ++column) {
        QCOMPARE(model.flags(model.index(0, column)), flags);
        QCOMPARE(model.flags(model.index(1, column)), flags);
        QCOMPARE(model.flags(model.index(0, column, model.index(0, 0))), flags);
    }
    QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags(Qt::ItemIsEnabled));
}

void tst_QorNodeModel::setDataHandsTheTextToTheField()
{
    const FieldNode node({part("a", SFSTRING_DT, "old"), part("n", SFINT32_DT, "1")});
    Model model(node.get());
    LogCapture log;
    Tiny::fieldWrites().clear();
    QVERIFY(model.setData(model.index(1, 1), QString::fromLatin1("gr\xf6\xdf"), Qt::UserRole));
    QCOMPARE(node.field(0)->valueToString(), std::string("gr\xf6\xdf"));
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
    QCOMPARE(Tiny::fieldWrites().front().field, node.field(0));
    QCOMPARE(Tiny::fieldWrites().front().time, 0.0);

    QVERIFY(model.setData(model.index(0, 5), 42));
    QCOMPARE(value(node, 1), QStringLiteral("42"));
    QVERIFY(model.setData(model.index(1, 1), QStringLiteral("")));
    QCOMPARE(node.field(0)->valueToString(), std::string());
    QVERIFY(model.setData(model.index(1, 1), QString::fromLatin1("up to here\0not this", 19)));
    QCOMPARE(value(node), QStringLiteral("up to here"));
    QVERIFY(model.setData(model.index(1, 1), QString(QChar(0x6f22))));
    QCOMPARE(node.field(0)->valueToString(), std::string("\xe6\xbc\xa2"));
    QVERIFY(model.signalNames.isEmpty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeModel::setDataOfATextThatDoesNotParseIsTrue()
{
    const FieldNode node({part("n", SFINT32_DT, "1")});
    QorNodeModel model(node.get(), nullptr);
    QVERIFY(model.setData(model.index(0, 1), QStringLiteral("one")));
    QCOMPARE(value(node), QStringLiteral("1"));
}

void tst_QorNodeModel::setDataNeedsAText()
{
    const FieldNode node({part("a", SFSTRING_DT, "old")});
    QorNodeModel model(node.get(), nullptr);
    LogCapture log;
    QVERIFY(!model.setData(model.index(0, 1), QVariant()));
    QVERIFY(!model.setData(QModelIndex(), QVariant(QString())));
    QCOMPARE(value(node), QStringLiteral("old"));
    const QByteArray line = "1 QorNodeModel::setData: QVariant is not a valid QString.\n";
    QCOMPARE(log.take(), QByteArrayList({line, line}));
}

void tst_QorNodeModel::setDataNeedsARow()
{
    const FieldNode node({part("a", SFSTRING_DT, "old")});
    Model model(node.get());
    QorFieldItem fieldless(nullptr, nullptr);
    LogCapture log;
    QVERIFY(!model.setData(QModelIndex(), QStringLiteral("new")));
    QVERIFY(!model.setData(model.indexOf(nullptr), QStringLiteral("new")));
    QVERIFY(!model.setData(model.indexOf(&fieldless), QStringLiteral("new")));
    QCOMPARE(log.take(), QByteArrayList({"1 QorNodeModel::setData: index is invalid.\n",
                                         "1 QorNodeModel::setData: could not get item of index.\n",
                                         "1 QorNodeModel::setData: could not get item of index.\n"}));
}

void tst_QorNodeModel::setDataGoesByTheFieldOfAValueRow()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2")});
    QorNodeModel model(node.get(), nullptr);
    QVERIFY(model.setData(model.index(1, 1, model.index(0, 0)), QStringLiteral("7, 8, 9")));
    QCOMPARE(value(node), QStringLiteral("7, 8, 9"));
    QCOMPARE(model.rowCount(model.index(0, 0)), 2);
}

void tst_QorNodeModel::onlySomeListsCanChange_data()
{
    QTest::addColumn<int>("type");
    for (int type = SFBOOL_DT; type <= MFRESERVED3_DT; ++type)
        QTest::newRow(FieldType::dataTypeName(static_cast<NodePartDataType>(type)).c_str()) << type;
}

void tst_QorNodeModel::onlySomeListsCanChange()
{
    QFETCH(int, type);
    const auto dataType = static_cast<NodePartDataType>(type);
    const FieldNode node({part("a", dataType)});
    const QorNodeModel model(node.get(), nullptr);
    LogCapture log;
    const bool expected = EditableLists.count(dataType) != 0;
    QCOMPARE(model.canInsertRows(model.index(0, 0)), expected);
    QCOMPARE(model.canRemoveRows(model.index(0, 1)), expected);
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeModel::valueRowsCanChangeTheirField()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1")});
    const QorNodeModel model(node.get(), nullptr);
    const QModelIndex value = model.index(0, 1, model.index(0, 0));
    QVERIFY(model.canInsertRows(value));
    QVERIFY(model.canRemoveRows(value));
}

void tst_QorNodeModel::withoutAnItemNothingCanChange()
{
    const FieldNode node({});
    const Model model(node.get());
    QorFieldItem fieldless(nullptr, nullptr);
    LogCapture log;
    QVERIFY(!model.canInsertRows(QModelIndex()));
    QVERIFY(!model.canRemoveRows(QModelIndex()));
    QCOMPARE(log.take(), QByteArrayList({"1 QorNodeModel::canInsertRows: invalid index.\n",
                                         "1 QorNodeModel::canRemoveRows: invalid index.\n"}));
    QVERIFY(!model.canInsertRows(model.indexOf(nullptr)));
    QVERIFY(!model.canRemoveRows(model.indexOf(nullptr)));
    QVERIFY(!model.canInsertRows(model.indexOf(&fieldless)));
    QVERIFY(!model.canRemoveRows(model.indexOf(&fieldless)));
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeModel::newValuesAreThoseOfTheirClass_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("appended");
    QTest::addColumn<QString>("inserted");
    const auto row = [](const char* name, NodePartDataType type, const char* appended,
                        const char* inserted = nullptr) {
        QTest::newRow(name) << static_cast<int>(type) << QString::fromLatin1(appended)
                            << QString::fromLatin1(inserted ? inserted : appended);
    };
    row("MFBool", MFBOOL_DT, "FALSE", "TRUE");
    row("MFColor", MFCOLOR_DT, "0.8 0.8 0.8");
    row("MFColorRGBA", MFCOLORRGBA_DT, "0.8 0.8 0.8 0");
    row("MFDouble", MFDOUBLE_DT, "0");
    row("MFInt32", MFINT32_DT, "0");
    row("MFFloat", MFFLOAT_DT, "0");
    row("MFRotation", MFROTATION_DT, "0 0 1 0");
    row("MFString", MFSTRING_DT, "");
    row("MFVec2f", MFVEC2F_DT, "0 0");
    row("MFVec3f", MFVEC3F_DT, "0 0 0");
    row("MFVec4f", MFVEC4F_DT, "0 0 0 0");
    row("MFVec2d", MFVEC2D_DT, "0 0");
    row("MFVec3d", MFVEC3D_DT, "0 0 0");
    row("MFVec4d", MFVEC4D_DT, "0 0 0 0");
}

void tst_QorNodeModel::newValuesAreThoseOfTheirClass()
{
    QFETCH(int, type);
    QFETCH(QString, appended);
    QFETCH(QString, inserted);
    const FieldNode node({part("a", static_cast<NodePartDataType>(type))});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    QVERIFY(model.insertRows(0, 1, list));
    QVERIFY(model.insertRows(1, 1, list));
    QVERIFY(model.insertRows(1, 1, list));
    QCOMPARE(rows(model, list), QStringList({inserted, inserted, appended}));
    QCOMPARE(node.field(0)->size(), 3U);
}

void tst_QorNodeModel::aTruthAtTheEndIsFalseAndElsewhereTrue()
{
    const FieldNode node({part("a", MFBOOL_DT)});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    QVERIFY(model.insertRows(0, 1, list));
    QCOMPARE(value(node), QStringLiteral("TRUE"));
    QVERIFY(model.insertRows(1, 1, list));
    QCOMPARE(value(node), QStringLiteral("TRUE, FALSE"));
    QVERIFY(model.insertRows(1, 1, list));
    QCOMPARE(value(node), QStringLiteral("TRUE, TRUE, FALSE"));
}

void tst_QorNodeModel::valuesAreInsertedInFront()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2")});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    QVERIFY(model.insertRows(1, 1, list));
    QCOMPARE(value(node), QStringLiteral("1, 0, 2"));
    QVERIFY(model.insertRows(3, 1, list));
    QCOMPARE(value(node), QStringLiteral("1, 0, 2, 0"));
    QCOMPARE(rows(model, list), value(node).split(QStringLiteral(", ")));
}

void tst_QorNodeModel::severalValuesAreInserted()
{
    const FieldNode node({part("a", MFINT32_DT, "1, 2")});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    QVERIFY(model.insertRows(1, 2, list));
    QCOMPARE(value(node), QStringLiteral("1, 0, 0, 2"));
    QVERIFY(model.insertRows(4, 3, list));
    QCOMPARE(value(node), QStringLiteral("1, 0, 0, 2, 0, 0, 0"));
    QCOMPARE(model.rowCount(list), 7);
}

void tst_QorNodeModel::insertingBehindTheEndAddsNothing()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2")});
    Model model(node.get());
    const QModelIndex list = model.index(0, 0);
    QVERIFY(model.insertRows(3, 1, list));
    QCOMPARE(value(node), QStringLiteral("1, 2"));
    QCOMPARE(model.rowCount(list), 2);
    QCOMPARE(model.signalNames, QByteArrayList({"rowsAboutToBeInserted", "rowsInserted"}));
    QVERIFY(model.insertRows(-1, 1, list));
    QCOMPARE(value(node), QStringLiteral("1, 2"));
}

void tst_QorNodeModel::insertingNoRowAddsNothing()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2"), part("nodes", MFNODE_DT)});
    Model model(node.get());
    LogCapture log(osg::LOG_WARNING);
    for (int count : {0, -1}) {
        for (int row : {0, 1, 2})
            QVERIFY(model.insertRows(row, count, model.index(1, 0)));
        QVERIFY(model.insertRows(0, count, model.index(0, 0)));
    }
    QCOMPARE(value(node), QStringLiteral("1, 2"));
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeModel::insertingIsTold()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2, 3"), part("b", SFBOOL_DT)});
    Model model(node.get());
    const QModelIndex list = model.index(1, 0);
    QList<int> sizes;
    connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, this,
            [&](const QModelIndex& parent, int first, int last) {
                QCOMPARE(parent, list);
                QCOMPARE(first, 1);
                QCOMPARE(last, 2);
                sizes << static_cast<int>(node.field(0)->size()) << model.rowCount(parent);
            });
    connect(&model, &QAbstractItemModel::rowsInserted, this,
            [&](const QModelIndex& parent, int first, int last) {
                QCOMPARE(parent, list);
                QCOMPARE(first, 1);
                QCOMPARE(last, 2);
                sizes << static_cast<int>(node.field(0)->size()) << model.rowCount(parent);
            });
    LogCapture log;
    QVERIFY(model.insertRows(1, 2, list));
    QCOMPARE(sizes, QList<int>({3, 3, 5, 5}));
    QCOMPARE(model.signalNames, QByteArrayList({"rowsAboutToBeInserted", "rowsInserted"}));
    QCOMPARE(log.take(),
             QByteArrayList({"3 QorNodeModel::insertRows: MFString, beginInsertRows(from=1, to=2)\n",
                             "3 QorNodeModel::insertRows: updating child values. mfieldItem=" +
                                 pointerText(static_cast<void*>(itemOf(list)->toMFieldItem())) + "\n"}));
}

void tst_QorNodeModel::insertingIntoAnotherClassIsLogged()
{
    const FieldNode node({part("nodes", MFNODE_DT)});
    // The child goes with its link.
    Tiny::link(node.get(), "nodes", Tiny::makeNode(Tiny::makeType("Child")));
    Model model(node.get());
    const QModelIndex list = model.index(0, 0);
    LogCapture log(osg::LOG_WARNING);
    const QByteArray line =
        "2 QorNodeModel::insertRows: inserting rows not supported for field type MFNode.\n";
    QVERIFY(model.insertRows(0, 2, list));
    QCOMPARE(log.take(), QByteArrayList({line, line}));
    QVERIFY(model.insertRows(1, 2, list));
    QVERIFY(model.insertRows(2, 2, list));
    QVERIFY(log.take().isEmpty());
    QCOMPARE(node.field(0)->size(), 1U);
    QCOMPARE(model.rowCount(list), 1);
    QCOMPARE(model.signalNames.size(), 6);
}

void tst_QorNodeModel::insertingIntoASingleFieldIsLogged()
{
    const FieldNode node({part("a", SFFLOAT_DT, "1")});
    Model model(node.get());
    LogCapture log;
    QVERIFY(!model.canInsertRows(model.index(0, 0)));
    QVERIFY(log.take().isEmpty());
    QVERIFY(!model.insertRows(0, 1, model.index(0, 0)));
    QCOMPARE(log.take(),
             QByteArrayList({"2 QorNodeModel::insertRows: inserting rows into an SF field item is "
                             "not possible.\n"}));
    QVERIFY(model.signalNames.isEmpty());
}

void tst_QorNodeModel::insertingWithoutAFieldIsLoggedAndTrue()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1")});
    Model model(node.get());
    QorFieldItem fieldless(nullptr, nullptr);
    LogCapture log;
    QVERIFY(!model.insertRows(0, 1));
    QCOMPARE(log.take(), QByteArrayList({"1 QorNodeModel::insertRows: invalid index.\n"}));

    const QByteArray line = "1 QorNodeModel::insertRows: invalid mfield item.\n";
    QVERIFY(model.insertRows(0, 1, model.indexOf(nullptr)));
    QVERIFY(model.insertRows(0, 1, model.indexOf(&fieldless)));
    QVERIFY(model.insertRows(0, 1, model.index(0, 0, model.index(0, 0))));
    QCOMPARE(log.take(), QByteArrayList({line, line, line}));
    QVERIFY(model.signalNames.isEmpty());
    QCOMPARE(value(node), QStringLiteral("1"));
}

void tst_QorNodeModel::insertingIntoALargeFieldLeavesItsPlaceholder()
{
    QorMFieldItem::setValueCountThreshold(2);
    const FieldNode node({part("a", MFFLOAT_DT, "5, 6, 7")});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    itemOf(list)->toMFieldItem()->updateChildValues(true);
    QCOMPARE(model.rowCount(list), 3);
    QVERIFY(model.insertRows(3, 1, list));
    QCOMPARE(value(node), QStringLiteral("5, 6, 7, 0"));
    QCOMPARE(rows(model, list), QStringList{QStringLiteral("5")});
    QVERIFY(itemOf(list)->toMFieldItem()->isInitialised());
}

void tst_QorNodeModel::oneValueIsRemovedWhateverTheCount()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2, 3")});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    QVERIFY(model.removeRows(1, 5, list));
    QCOMPARE(value(node), QStringLiteral("1, 3"));
    QCOMPARE(rows(model, list), QStringList({QStringLiteral("1"), QStringLiteral("3")}));
    QVERIFY(model.removeRows(1, 0, list));
    QCOMPARE(value(node), QStringLiteral("1"));
    QVERIFY(model.removeRows(0, 1, list));
    QCOMPARE(node.field(0)->size(), 0U);
    QCOMPARE(model.rowCount(list), 0);
}

void tst_QorNodeModel::removingShrinksEveryClass_data()
{
    QTest::addColumn<int>("type");
    for (NodePartDataType type : EditableLists)
        QTest::newRow(FieldType::dataTypeName(type).c_str()) << static_cast<int>(type);
}

void tst_QorNodeModel::removingShrinksEveryClass()
{
    QFETCH(int, type);
    const FieldNode node({part("a", static_cast<NodePartDataType>(type))});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    QVERIFY(model.insertRows(0, 3, list));
    LogCapture log(osg::LOG_WARNING);
    QVERIFY(model.removeRows(1, 1, list));
    QCOMPARE(node.field(0)->size(), 2U);
    QCOMPARE(model.rowCount(list), 2);
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeModel::removingOutsideTheFieldIsLogged()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2")});
    Model model(node.get());
    const QModelIndex list = model.index(0, 0);
    LogCapture log;
    QVERIFY(!model.removeRows(2, 1, list));
    QVERIFY(!model.removeRows(-1, 1, list));
    QCOMPARE(log.take(), QByteArrayList({"1 QorNodeModel::insertRows: invalid row index 2 (size=2).\n",
                                         "1 QorNodeModel::insertRows: invalid row index -1 (size=2).\n"}));
    QVERIFY(model.signalNames.isEmpty());
    QCOMPARE(value(node), QStringLiteral("1, 2"));
}

void tst_QorNodeModel::removingIsTold()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1, 2, 3")});
    Model model(node.get());
    const QModelIndex list = model.index(0, 0);
    QList<int> told;
    const auto note = [&](const QModelIndex& parent, int first, int last) {
        QCOMPARE(parent, list);
        told << first << last << static_cast<int>(node.field(0)->size()) << model.rowCount(parent);
    };
    connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, note);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, note);
    LogCapture log;
    QVERIFY(model.removeRows(1, 2, list));
    QCOMPARE(told, QList<int>({1, 2, 3, 3, 1, 2, 2, 2}));
    QCOMPARE(model.signalNames, QByteArrayList({"rowsAboutToBeRemoved", "rowsRemoved"}));
    QCOMPARE(log.take(),
             QByteArrayList({"3 QorNodeModel::removeRows: MFString, beginRemoveRows(from=1, to=2)\n"}));
}

void tst_QorNodeModel::removingFromAnotherClassIsLogged()
{
    const FieldNode node({part("times", MFTIME_DT, "1")});
    Model model(node.get());
    LogCapture log(osg::LOG_WARNING);
    QVERIFY(model.removeRows(0, 1, model.index(0, 0)));
    QCOMPARE(log.take(), QByteArrayList({"2 QorNodeModel::insertRows: inserting rows not supported for field "
                                         "type MFTime.\n"}));
    QCOMPARE(value(node), QStringLiteral("1"));
    QCOMPARE(model.signalNames, QByteArrayList({"rowsAboutToBeRemoved", "rowsRemoved"}));
}

void tst_QorNodeModel::removingWithoutAFieldIsFalse()
{
    const FieldNode node({part("a", MFFLOAT_DT, "1"), part("b", SFFLOAT_DT, "2")});
    Model model(node.get());
    QorFieldItem fieldless(nullptr, nullptr);
    LogCapture log;
    QVERIFY(!model.removeRows(0, 1));
    QCOMPARE(log.take(), QByteArrayList({"1 QorNodeModel::removeRows: invalid index.\n"}));
    QVERIFY(!model.removeRows(0, 1, model.indexOf(nullptr)));
    QVERIFY(!model.removeRows(0, 1, model.indexOf(&fieldless)));
    QVERIFY(!model.removeRows(0, 1, model.index(0, 0)));
    QVERIFY(!model.removeRows(0, 1, model.index(0, 0, model.index(1, 0))));
    QVERIFY(log.take().isEmpty());
    QVERIFY(model.signalNames.isEmpty());
    QCOMPARE(value(node), QStringLiteral("1"));
}

void tst_QorNodeModel::removingFromALargeFieldLeavesItsPlaceholder()
{
    QorMFieldItem::setValueCountThreshold(2);
    const FieldNode node({part("a", MFFLOAT_DT, "5, 6, 7, 8")});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    itemOf(list)->toMFieldItem()->updateChildValues(true);
    QVERIFY(model.removeRows(0, 1, list));
    QCOMPARE(value(node), QStringLiteral("6, 7, 8"));
    QCOMPARE(rows(model, list), QStringList{QStringLiteral("5")});
}

void tst_QorNodeModel::rowsReachTheThresholdFromAbove()
{
    QorMFieldItem::setValueCountThreshold(2);
    const FieldNode node({part("a", MFFLOAT_DT, "5, 6, 7")});
    QorNodeModel model(node.get(), nullptr);
    const QModelIndex list = model.index(0, 0);
    QCOMPARE(rows(model, list), QStringList{QString()});
    QVERIFY(model.removeRows(0, 1, list));
    QCOMPARE(rows(model, list), QStringList({QStringLiteral("6"), QStringLiteral("7")}));
}

QTEST_APPLESS_MAIN(tst_QorNodeModel)
#include "tst_QorNodeModel.moc"
