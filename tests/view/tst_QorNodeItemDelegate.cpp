#include "FieldRows.h"
#include "LogCapture.h"
#include "QorFieldEditor.h"
#include "QorNodeFieldEditor.h"
#include "QorNodeItemDelegate.h"
#include "SaidField.h"
#include "tinyruntime/Runtime.h"
#include <Orvane/FieldType.h>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorNodeItemDelegate : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void editorOfASingleField_data();
    void editorOfASingleField();
    void editorOfAValue_data();
    void editorOfAValue();
    void rowOfAMultiFieldOpensNothing();
    void rowOfAMultiFieldThatIsNoneOfTheTwoGetsText();
    void onlyTheValueColumnCanBeEdited();
    void accessDecides_data();
    void accessDecides();
    void invalidIndexesOpenNothing();
    void editorSignalsAreRelayed();
    void nodeButtonIsRelayed();
    void delegateFiltersTheKeysOfItsEditors();
    void dataGoesToAndFromTheItem();
    void indexWithoutItemIsReported();
    void otherWidgetsAreLeftAlone();
    void rowsOfDelayedFieldsAreRed();
    void otherRowsAreNotRed();
    void selectedRowKeepsItsColour();
    void textsLookAsTheyDoUncut_data();
    void textsLookAsTheyDoUncut();
    void valueIsTurnedIntoTextOncePerPaint();
};

namespace {

QByteArray nameOf(const QWidget* editor)
{
    return editor ? QByteArray(editor->metaObject()->className()).mid(int(sizeof("Orvane::Qt4::") - 1)) : "";
}

bool hasRed(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == QColor(200, 0, 0))
                return true;
        }
    }
    return false;
}

/// A cell as a delegate paints it, without smooth edges.
QImage painted(const QModelIndex& index, QStyle::State state = QStyle::State_Enabled,
               const QItemDelegate& delegate = QorNodeItemDelegate(nullptr),
               const QSize& size = QSize(300, 20))
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = image.rect();
    option.state = state;
    option.font = QApplication::font();
    option.font.setStyleStrategy(QFont::NoAntialias);
    option.font.setBold(true);
    option.fontMetrics = QFontMetrics(option.font);
    option.palette = QApplication::palette();
    option.displayAlignment = Qt::AlignLeft;
    option.textElideMode = Qt::ElideRight;
    delegate.paint(&painter, option, index);
    return image;
}

} // namespace

void tst_QorNodeItemDelegate::cleanup()
{
    QorMFieldItem::setValueCountThreshold(50);
}

void tst_QorNodeItemDelegate::editorOfASingleField_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("editor");
    const QMap<int, QByteArray> own = {{SFBOOL_DT, "QorBoolFieldEditor"},
                                       {SFFLOAT_DT, "QorFloatFieldEditor"},
                                       {SFIMAGE_DT, ""},
                                       {SFINT32_DT, "QorInt32FieldEditor"},
                                       {SFNODE_DT, "QorNodeFieldEditor"},
                                       {SFSTRING_DT, "QorStringFieldEditor"}};
    for (int type = SFBOOL_DT; type <= SFVEC4F_DT; type += 2)
        QTest::newRow(FieldType::dataTypeName(NodePartDataType(type)).c_str())
            << type << own.value(type, "QorDefaultFieldEditor");
}

void tst_QorNodeItemDelegate::editorOfASingleField()
{
    QFETCH(int, type);
    const FieldRows rows({part("field", NodePartDataType(type))});
    const QorNodeItemDelegate delegate(nullptr);
    QWidget parent;
    QWidget* editor = delegate.createEditor(&parent, QStyleOptionViewItem(), rows.cell("field"));
    QTEST(nameOf(editor), "editor");
    if (editor)
        QCOMPARE(editor->parentWidget(), &parent);
}

void tst_QorNodeItemDelegate::editorOfAValue_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("editor");
    QTest::newRow("MFBool") << int(MFBOOL_DT) << QByteArray("TRUE") << QByteArray("QorBoolFieldEditor");
    QTest::newRow("MFFloat") << int(MFFLOAT_DT) << QByteArray("1") << QByteArray("QorFloatFieldEditor");
    QTest::newRow("MFInt32") << int(MFINT32_DT) << QByteArray("1") << QByteArray("QorInt32FieldEditor");
    QTest::newRow("MFString") << int(MFSTRING_DT) << QByteArray("\"a\"")
                              << QByteArray("QorStringFieldEditor");
    QTest::newRow("MFDouble") << int(MFDOUBLE_DT) << QByteArray("1") << QByteArray("QorDefaultFieldEditor");
    QTest::newRow("MFColor") << int(MFCOLOR_DT) << QByteArray("1 0 0") << QByteArray("QorDefaultFieldEditor");
    QTest::newRow("MFVec3f") << int(MFVEC3F_DT) << QByteArray("1 0 0") << QByteArray("QorDefaultFieldEditor");
    QTest::newRow("MFRotation") << int(MFROTATION_DT) << QByteArray("0 0 1 0")
                                << QByteArray("QorDefaultFieldEditor");
}

void tst_QorNodeItemDelegate::editorOfAValue()
{
    QFETCH(int, type);
    QFETCH(QByteArray, text);
    const FieldRows rows({part("field", NodePartDataType(type), text)});
    const QorNodeItemDelegate delegate(nullptr);
    QWidget parent;
    QTEST(nameOf(delegate.createEditor(&parent, QStyleOptionViewItem(), rows.cell("field", 0))), "editor");
}

void tst_QorNodeItemDelegate::rowOfAMultiFieldOpensNothing()
{
    QWidget parent;
    const QorNodeItemDelegate delegate(nullptr);
    for (const NodePartDataType type :
         {MFBOOL_DT, MFFLOAT_DT, MFINT32_DT, MFNODE_DT, MFSTRING_DT, MFVEC3F_DT}) {
        const FieldRows rows({part("field", type)});
        QVERIFY(!delegate.createEditor(&parent, QStyleOptionViewItem(), rows.cell("field")));
    }
    QVERIFY(parent.findChildren<QWidget*>().isEmpty());
}

void tst_QorNodeItemDelegate::rowOfAMultiFieldThatIsNoneOfTheTwoGetsText()
{
    // A model that gives the multi field a plain row.
    struct Model : QorNodeModel
    {
        using QorNodeModel::QorNodeModel;
        QModelIndex cellOf(QorFieldItem* item) const { return createIndex(0, 1, item); }
    };
    const FieldRows rows({part("field", MFFLOAT_DT, "1")});
    const Model model(rows.node.get(), nullptr);
    QorFieldItem plain(rows.field("field"), nullptr);
    QWidget parent;
    const QorNodeItemDelegate delegate(nullptr);
    QCOMPARE(nameOf(delegate.createEditor(&parent, QStyleOptionViewItem(), model.cellOf(&plain))),
             QByteArray("QorDefaultFieldEditor"));
}

void tst_QorNodeItemDelegate::onlyTheValueColumnCanBeEdited()
{
    const FieldRows rows({part("field", SFINT32_DT)});
    QWidget parent;
    const QorNodeItemDelegate delegate(nullptr);
    for (int column = 0; column < 10; ++column) {
        const QModelIndex cell = rows.model.index(0, column);
        QVERIFY(cell.flags() & Qt::ItemIsEditable);
        QCOMPARE(delegate.createEditor(&parent, QStyleOptionViewItem(), cell) != nullptr, column == 1);
    }
}

void tst_QorNodeItemDelegate::accessDecides_data()
{
    QTest::addColumn<int>("access");
    QTest::addColumn<bool>("editable");
    QTest::addColumn<bool>("editableWithSwitch");
    QTest::newRow("none") << int(NO_PART) << false << false;
    QTest::newRow("field") << int(FIELDP) << false << true;
    QTest::newRow("event in") << int(EVENTINP) << true << true;
    QTest::newRow("event out") << int(EVENTOUTP) << false << false;
    QTest::newRow("exposed field") << int(EXPOSEDFIELDP) << true << true;
}

void tst_QorNodeItemDelegate::accessDecides()
{
    QFETCH(int, access);
    const FieldRows rows({part("one", SFINT32_DT, "1", NodePartType(access)),
                          part("many", MFINT32_DT, "1", NodePartType(access))});
    QWidget parent;
    QorNodeItemDelegate delegate(nullptr);
    QVERIFY(!delegate.isInitOnlyEditorEnabled());
    for (const QModelIndex& cell : {rows.cell("one"), rows.cell("many", 0)})
        QTEST(delegate.createEditor(&parent, QStyleOptionViewItem(), cell) != nullptr, "editable");
    delegate.setInitOnlyEditorEnabled(true);
    QVERIFY(delegate.isInitOnlyEditorEnabled());
    for (const QModelIndex& cell : {rows.cell("one"), rows.cell("many", 0)})
        QTEST(delegate.createEditor(&parent, QStyleOptionViewItem(), cell) != nullptr, "editableWithSwitch");
}

void tst_QorNodeItemDelegate::invalidIndexesOpenNothing()
{
    QWidget parent;
    QWidget editor;
    const QorNodeItemDelegate delegate(nullptr);
    QVERIFY(!delegate.createEditor(&parent, QStyleOptionViewItem(), QModelIndex()));
    delegate.setEditorData(&editor, QModelIndex());
    QVERIFY(!painted(QModelIndex()).isNull());
}

void tst_QorNodeItemDelegate::editorSignalsAreRelayed()
{
    const FieldRows rows({part("field", SFBOOL_DT)});
    QWidget parent;
    const QorNodeItemDelegate delegate(nullptr);
    QSignalSpy commits(&delegate, &QAbstractItemDelegate::commitData);
    QStringList closes;
    connect(&delegate, &QAbstractItemDelegate::closeEditor, this,
            [&](QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
                closes << QStringLiteral("%1 %2").arg(editor->objectName()).arg(hint);
            });
    auto* editor = qobject_cast<QorFieldEditor*>(
        delegate.createEditor(&parent, QStyleOptionViewItem(), rows.cell("field")));
    QVERIFY(editor);
    editor->setObjectName(QStringLiteral("mine"));
    editor->signalCommitData();
    QCOMPARE(commits.size(), 1);
    QCOMPARE(commits[0][0].value<QWidget*>(), editor);
    emit editor->closeEditor(editor, QAbstractItemDelegate::EditNextItem);
    emit editor->closeEditor(editor);
    QCOMPARE(closes, QStringList({QStringLiteral("mine 1"), QStringLiteral("mine 0")}));
}

void tst_QorNodeItemDelegate::nodeButtonIsRelayed()
{
    const FieldRows rows({part("field", SFNODE_DT)});
    const std::unique_ptr<Node> leaf(Tiny::makeNode(Tiny::makeType("Leaf")));
    Tiny::link(rows.node.get(), "field", leaf.get());
    QWidget parent;
    const QorNodeItemDelegate delegate(nullptr);
    QSignalSpy selected(&delegate, &QorNodeItemDelegate::nodeSelected);
    QWidget* editor = delegate.createEditor(&parent, QStyleOptionViewItem(), rows.cell("field"));
    delegate.setEditorData(editor, rows.cell("field"));
    QTest::mouseClick(editor->findChild<QPushButton*>(), Qt::LeftButton);
    QCOMPARE(selected.size(), 1);
    QCOMPARE(selected[0][0].value<Node*>(), leaf.get());
}

void tst_QorNodeItemDelegate::delegateFiltersTheKeysOfItsEditors()
{
    qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
    const FieldRows rows({part("field", SFINT32_DT)});
    QWidget parent;
    const QorNodeItemDelegate delegate(nullptr);
    QSignalSpy closes(&delegate, &QAbstractItemDelegate::closeEditor);
    QSignalSpy commits(&delegate, &QAbstractItemDelegate::commitData);
    QWidget* editor = delegate.createEditor(&parent, QStyleOptionViewItem(), rows.cell("field"));
    QTest::keyClick(editor, Qt::Key_Escape);
    QCOMPARE(commits.size(), 0);
    QCOMPARE(closes.size(), 1);
    QCOMPARE(closes[0][1].value<QAbstractItemDelegate::EndEditHint>(),
             QAbstractItemDelegate::RevertModelCache);
    QTest::keyClick(editor, Qt::Key_Tab);
    QCOMPARE(commits.size(), 1);
    QCOMPARE(closes.last()[1].value<QAbstractItemDelegate::EndEditHint>(),
             QAbstractItemDelegate::EditNextItem);
}

void tst_QorNodeItemDelegate::dataGoesToAndFromTheItem()
{
    FieldRows rows({part("field", SFINT32_DT, "7")});
    QWidget parent;
    const QorNodeItemDelegate delegate(nullptr);
    QWidget* editor = delegate.createEditor(&parent, QStyleOptionViewItem(), rows.cell("field"));
    delegate.setEditorData(editor, rows.cell("field"));
    auto* spinBox = editor->findChild<QSpinBox*>();
    QCOMPARE(spinBox->value(), 7);
    spinBox->setValue(8);
    delegate.setModelData(editor, &rows.model, rows.cell("field"));
    QCOMPARE(rows.text("field"), std::string("8"));
    delegate.setModelData(editor, nullptr, rows.cell("field"));
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(2));
}

void tst_QorNodeItemDelegate::indexWithoutItemIsReported()
{
    FieldRows rows({part("field", SFINT32_DT, "7")});
    QWidget editor;
    const QorNodeItemDelegate delegate(nullptr);
    LogCapture log;
    delegate.setModelData(&editor, &rows.model, QModelIndex());
    char line[256];
    std::snprintf(line, sizeof(line),
                  "1 QorNodeItemDelegate::setModelData: Invalid QorFieldItem! editor=%p, model=%p, "
                  "index.row=-1, index.col=-1\n",
                  static_cast<void*>(&editor), static_cast<void*>(&rows.model));
    QCOMPARE(log.take(), QByteArrayList({QByteArray(line)}));
}

void tst_QorNodeItemDelegate::otherWidgetsAreLeftAlone()
{
    FieldRows rows({part("field", SFINT32_DT, "7")});
    QSpinBox other;
    other.setValue(9);
    const QorNodeItemDelegate delegate(nullptr);
    delegate.setEditorData(&other, rows.cell("field"));
    delegate.setModelData(&other, &rows.model, rows.cell("field"));
    QCOMPARE(other.value(), 9);
    QCOMPARE(rows.text("field"), std::string("7"));
}

void tst_QorNodeItemDelegate::rowsOfDelayedFieldsAreRed()
{
    const FieldRows rows({part("big", MFINT32_DT, numbersText(51).c_str())});
    for (int column = 0; column < 10; ++column) {
        const QModelIndex cell = rows.model.index(0, column);
        QCOMPARE(hasRed(painted(cell)), !cell.data().toString().isEmpty());
    }
    QVERIFY(hasRed(painted(rows.model.index(0, 0, rows.model.index(0, 0)))));
    // Filled rows are not kept up to date either.
    rows.item("big")->toMFieldItem()->updateChildValues(true);
    QVERIFY(hasRed(painted(rows.cell("big", 50))));
    QVERIFY(hasRed(painted(rows.cell("big"))));
}

void tst_QorNodeItemDelegate::otherRowsAreNotRed()
{
    const FieldRows rows(
        {part("small", MFINT32_DT, numbersText(50).c_str()), part("one", SFINT32_DT, "123")});
    QVERIFY(!hasRed(painted(rows.cell("small"))));
    QVERIFY(!hasRed(painted(rows.cell("small", 49))));
    QVERIFY(!hasRed(painted(rows.cell("one"))));
}

void tst_QorNodeItemDelegate::selectedRowKeepsItsColour()
{
    const FieldRows rows({part("big", MFINT32_DT, numbersText(51).c_str())});
    const QStyle::State selected = QStyle::State_Enabled | QStyle::State_Selected | QStyle::State_Active;
    QVERIFY(!hasRed(painted(rows.cell("big"), selected)));
}

void tst_QorNodeItemDelegate::textsLookAsTheyDoUncut_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("short") << QByteArray("short");
    QTest::newRow("narrow letters") << QByteArray(20000, 'i');
    QTest::newRow("wide letters") << QByteArray(20000, 'W');
    QTest::newRow("words") << QByteArray("a few words and ").repeated(1000);
    QTest::newRow("many lines") << QByteArray("one line\n").repeated(500);
    QTest::newRow("long lines") << QByteArray("one line ").repeated(100).append('\n').repeated(20);
    QTest::newRow("blanks") << QByteArray(20000, ' ');
    QTest::newRow("ideographs") << QByteArray("\xe6\xbc\xa2").repeated(5000);
}

void tst_QorNodeItemDelegate::textsLookAsTheyDoUncut()
{
    QFETCH(QByteArray, text);
    const FieldRows rows({part("field", SFSTRING_DT, text)});
    for (const QSize& size : {QSize(300, 20), QSize(40, 20), QSize(300, 70), QSize(5, 5)}) {
        QCOMPARE(painted(rows.cell("field"), QStyle::State_Enabled, QorNodeItemDelegate(nullptr), size),
                 painted(rows.cell("field"), QStyle::State_Enabled, QItemDelegate(), size));
    }
}

void tst_QorNodeItemDelegate::valueIsTurnedIntoTextOncePerPaint()
{
    const FieldNode node({});
    auto said = std::make_unique<SaidField>("text", 1);
    said->lists = 0;
    SaidField* field = said.get();
    node.get()->data()->fields.push_back(std::move(said));
    const QorNodeModel model(node.get(), nullptr);
    field->conversions = 0;
    painted(model.index(field));
    QCOMPARE(field->conversions, 1);
}

QTEST_MAIN(tst_QorNodeItemDelegate)
#include "tst_QorNodeItemDelegate.moc"
