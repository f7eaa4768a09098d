#include "LogCapture.h"
#include "QorNodeEditor.h"
#include "QorNodeEditorHeaderView.h"
#include "TinyNodeEditor.h"
#include <Orvane/MFBool.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorNodeEditorTreeView : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void looksAndTriggers();
    void pressFillsADelayedField_data();
    void pressFillsADelayedField();
    void secondPressFillsNothing();
    void otherPressesFillNothing();
    void fieldAtTheThresholdIsFilledFromTheStart();
    void waitCursorShowsWhileFilling();
    void menuOfAMultiField();
    void menuOfAValue();
    void menuOfAnMFNode();
    void menuOfASingleField();
    void menuBesideTheRows();
    void menuKey();
    void insertAtFront();
    void insertBeforeAndBehind();
    void removeValue();
    void newRowsShowAtOnce_data();
    void newRowsShowAtOnce();
    void slotsWithoutACurrentValueDoNothing();
    void slotsWithoutAModelDoNothing();
    void numberIsEditedByKeys();
    void severalEditsInOneFieldKeepTheirSize();
    void openEditorStaysOverLiveCommits();
    void textIsEditedByKeys();
    void wordIsChosenFromTheList();
    void truthIsChosenByMouseAndKeys();
    void escapeLeavesTheValue();
    void returnCommitsOnce();
    void doubleClickOpens();
    void otherColumnsOpenNothing();
    void singleClickAndTypingOpenNothing();
    void tabGoesToTheNextValue();
    void editOfABigFieldFallsBackToThePlaceholder();
    void insertIntoABigFieldFallsBackToThePlaceholder();
    void openEditorSurvivesInsertAndRemove();
    void viewEditsOnWhenTheRowOfAnEditorIsGone();
    void indexesOfDroppedRowsNeverMeetThoseOfNewOnes();
    void firstOfSeveralLinesShows();
    void severalLinesOnTopLeaveTheOtherRowsLow();
    void oddTextsAreShown();
};

namespace {

using Shown = TinyNodeEditor<QorNodeEditor>;

/// The rows as the view has them: first column, from top to bottom.
QStringList rowsOf(const QTreeView* view)
{
    QStringList rows;
    for (QModelIndex index = view->model()->index(0, 0); index.isValid(); index = view->indexBelow(index))
        rows << QString(index.parent().isValid() ? 1 : 0, QLatin1Char(' ')) + index.data().toString();
    return rows;
}

QByteArrayList treeLines(LogCapture& log)
{
    QByteArrayList lines;
    for (const QByteArray& line : log.take()) {
        if (line.startsWith("Tiny "))
            lines << line.mid(5);
    }
    return lines;
}

const std::string big = numbersText(51);

} // namespace

void tst_QorNodeEditorTreeView::cleanup()
{
    QVERIFY(!QWidget::keyboardGrabber());
    QVERIFY(!QApplication::activePopupWidget());
    QorMFieldItem::setValueCountThreshold(50);
}

void tst_QorNodeEditorTreeView::looksAndTriggers()
{
    const QorNodeEditorTreeView view(nullptr);
    QVERIFY(view.alternatingRowColors());
    QCOMPARE(view.editTriggers(), QAbstractItemView::EditTriggers(QAbstractItemView::DoubleClicked |
                                                                  QAbstractItemView::EditKeyPressed));
    QCOMPARE(view.contextMenuPolicy(), Qt::DefaultContextMenu);
    QVERIFY(qobject_cast<QorNodeEditorHeaderView*>(view.header()));
    QCOMPARE(view.header()->defaultAlignment(), Qt::Alignment(Qt::AlignLeft));
    QVERIFY(!view.dragEnabled());
}

void tst_QorNodeEditorTreeView::pressFillsADelayedField_data()
{
    QTest::addColumn<int>("column");
    QTest::newRow("name") << 0;
    QTest::newRow("value") << 1;
    QTest::newRow("type") << 2;
}

void tst_QorNodeEditorTreeView::pressFillsADelayedField()
{
    QFETCH(int, column);
    Shown shown({part("a", SFINT32_DT), part("big", MFINT32_DT, big.c_str()), part("b", SFINT32_DT)});
    QorMFieldItem* item = FieldRows::itemOf(shown.row("big"))->toMFieldItem();
    QCOMPARE(item->childCount(), 1);
    QVERIFY(!item->isInitialised());
    shown.click(shown.row("big").sibling(shown.row("big").row(), column));
    QCOMPARE(item->childCount(), 51);
    QVERIFY(item->isInitialised());
    shown.view()->expand(shown.row("big"));
    QCOMPARE(rowsOf(shown.view()).size(), 3 + 51);
    QCOMPARE(shown.cell("big", 50).data().toString().trimmed(), QStringLiteral("50"));
}

void tst_QorNodeEditorTreeView::secondPressFillsNothing()
{
    Shown shown({part("big", MFINT32_DT, big.c_str())});
    QorMFieldItem* item = FieldRows::itemOf(shown.row("big"))->toMFieldItem();
    shown.click(shown.cell("big"));
    const QorFieldItem* first = item->child(0);
    shown.click(shown.cell("big"));
    QCOMPARE(item->child(0), first);
    // Neither does a press on a field that fell back to its placeholder.
    item->updateChildValues(false);
    QCOMPARE(item->childCount(), 1);
    shown.click(shown.cell("big"));
    QCOMPARE(item->childCount(), 1);
}

void tst_QorNodeEditorTreeView::otherPressesFillNothing()
{
    Shown shown({part("big", MFINT32_DT, big.c_str()), part("one", SFINT32_DT)});
    QorMFieldItem* item = FieldRows::itemOf(shown.row("big"))->toMFieldItem();
    shown.click(shown.cell("big"), Qt::RightButton);
    shown.click(shown.cell("big"), Qt::MiddleButton);
    shown.click(shown.cell("one"));
    QTest::mouseClick(shown.view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      shown.view()->viewport()->rect().bottomRight() - QPoint(2, 2));
    QCOMPARE(item->childCount(), 1);
    // On an expanded row a press fills nothing in any column.
    shown.view()->expand(shown.row("big"));
    for (int column = 0; column < 3; ++column)
        shown.click(shown.row("big").sibling(shown.row("big").row(), column));
    QCOMPARE(item->childCount(), 1);
    QVERIFY(!item->isInitialised());
    QCOMPARE(rowsOf(shown.view()),
             QStringList({QStringLiteral("one"), QStringLiteral("big"), QStringLiteral(" 0")}));
}

void tst_QorNodeEditorTreeView::fieldAtTheThresholdIsFilledFromTheStart()
{
    Shown shown({part("list", MFINT32_DT, numbersText(50).c_str())});
    QorMFieldItem* item = FieldRows::itemOf(shown.row("list"))->toMFieldItem();
    const QorFieldItem* first = item->child(0);
    QCOMPARE(item->childCount(), 50);
    shown.click(shown.cell("list"));
    QCOMPARE(item->child(0), first);
}

void tst_QorNodeEditorTreeView::waitCursorShowsWhileFilling()
{
    struct CursorWatch : QObject
    {
        bool eventFilter(QObject* object, QEvent* event) override
        {
            if (event->type() == QEvent::CursorChange) {
                shapes << static_cast<QWidget*>(object)->cursor().shape();
                rows << item->childCount();
            }
            return false;
        }
        QorMFieldItem* item = nullptr;
        QList<int> shapes;
        QList<int> rows;
    };
    CursorWatch watch;
    Shown shown({part("big", MFINT32_DT, big.c_str())});
    watch.item = FieldRows::itemOf(shown.row("big"))->toMFieldItem();
    shown.view()->installEventFilter(&watch);
    shown.click(shown.cell("big"));
    QCOMPARE(watch.shapes, QList<int>({Qt::WaitCursor, Qt::ArrowCursor}));
    QCOMPARE(watch.rows, QList<int>({1, 51}));
    shown.click(shown.cell("big"));
    QCOMPARE(watch.shapes.size(), 2);
}

void tst_QorNodeEditorTreeView::menuOfAMultiField()
{
    Shown shown({part("list", MFFLOAT_DT, "1, 2"), part("nodes", MFNODE_DT)});
    shown.askForMenu(shown.cell("list"));
    QVERIFY(openMenu());
    QVERIFY(shown.menuAccepted);
    QCOMPARE(entriesOf(openMenu()), QStringList({QStringLiteral("Insert value at front")}));
    QVERIFY(!openMenu()->actions()[0]->isCheckable());
    QCOMPARE(openMenu()->parentWidget(), shown.view());
    openMenu()->close();
    // A list that the model cannot change has no menu.
    shown.askForMenu(shown.cell("nodes"));
    QVERIFY(!openMenu());
}

void tst_QorNodeEditorTreeView::menuOfAValue()
{
    Shown shown({part("list", MFFLOAT_DT, "1, 2")});
    shown.view()->expandAll();
    LogCapture log(osg::LOG_INFO);
    shown.askForMenu(shown.cell("list", 1));
    QCOMPARE(treeLines(log),
             QByteArrayList({"4 QorNodeEditorTreeView::contextMenuEvent: mfieldValueItem item hit.\n"}));
    QVERIFY(openMenu());
    QVERIFY(shown.menuAccepted);
    QCOMPARE(entriesOf(openMenu()),
             QStringList({QStringLiteral("Insert value before"), QStringLiteral("Insert value behind"),
                          QStringLiteral("Remove value")}));
    for (const QAction* action : openMenu()->actions())
        QVERIFY(!action->isCheckable());
    QCOMPARE(shown.view()->currentIndex(), shown.cell("list", 1));
    openMenu()->close();
}

void tst_QorNodeEditorTreeView::menuOfAnMFNode()
{
    Shown shown({part("nodes", MFNODE_DT)});
    const std::unique_ptr<Node> child(Tiny::makeNode(Tiny::makeType("Leaf")));
    Tiny::link(shown.node.get(), "nodes", child.get());
    shown.editor.setNode(nullptr);
    shown.editor.setNode(shown.node.get());
    shown.view()->expandAll();
    const QPoint place = shown.centre(shown.cell("nodes", 0));
    shown.askForMenu(shown.cell("nodes", 0));
    const auto menus = shown.view()->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(menus.size(), 1);
    QVERIFY(menus[0]->isEmpty());
    QVERIFY(shown.menuAccepted);
    QCOMPARE(menus[0]->pos(), shown.view()->viewport()->mapToGlobal(place));
    if (openMenu())
        openMenu()->close();
}

void tst_QorNodeEditorTreeView::menuOfASingleField()
{
    Shown shown({part("one", SFFLOAT_DT)});
    LogCapture log(osg::LOG_INFO);
    shown.askForMenu(shown.cell("one"));
    QVERIFY(!openMenu());
    QVERIFY(treeLines(log).isEmpty());
}

void tst_QorNodeEditorTreeView::menuBesideTheRows()
{
    Shown shown({part("one", SFFLOAT_DT)});
    LogCapture log(osg::LOG_INFO);
    shown.askForMenu(shown.view()->viewport()->rect().center());
    QVERIFY(!openMenu());
    QVERIFY(!shown.menuAccepted);
    QCOMPARE(treeLines(log), QByteArrayList({"4 QorNodeEditorTreeView::contextMenuEvent: no item hit.\n"}));
}

void tst_QorNodeEditorTreeView::menuKey()
{
    // The key asks at the middle of the view, where a row may or may not be.
    Shown shown({part("one", SFFLOAT_DT)});
    QContextMenuEvent event(QContextMenuEvent::Keyboard, shown.view()->viewport()->rect().center());
    QApplication::sendEvent(shown.view()->viewport(), &event);
    QVERIFY(!event.isAccepted());
}

void tst_QorNodeEditorTreeView::insertAtFront()
{
    Shown shown({part("list", MFINT32_DT, "1, 2"), part("truths", MFBOOL_DT)});
    LogCapture log(osg::LOG_INFO);
    shown.askForMenu(shown.cell("list"));
    choose("Insert value at front");
    QCOMPARE(shown.text("list"), std::string("0, 1, 2"));
    QCOMPARE(
        treeLines(log),
        QByteArrayList({"4 QorNodeEditorTreeView::onInsertValueBeforeSelected: inserting 1 at begin.\n"}));
    shown.askForMenu(shown.cell("truths"));
    choose("Insert value at front");
    QCOMPARE(shown.text("truths"), std::string("TRUE"));
}

void tst_QorNodeEditorTreeView::insertBeforeAndBehind()
{
    Shown shown({part("list", MFINT32_DT, "1, 2, 3")});
    shown.view()->expandAll();
    LogCapture log(osg::LOG_INFO);
    shown.askForMenu(shown.cell("list", 1));
    choose("Insert value before");
    QCOMPARE(shown.text("list"), std::string("1, 0, 2, 3"));
    QVERIFY(
        treeLines(log).contains("4 QorNodeEditorTreeView::onInsertValueBeforeSelected: inserting 1 at 1.\n"));
    QTest::qWait(1);
    shown.askForMenu(shown.cell("list", 3));
    choose("Insert value behind");
    QCOMPARE(shown.text("list"), std::string("1, 0, 2, 3, 0"));
    QVERIFY(
        treeLines(log).contains("4 QorNodeEditorTreeView::onInsertValueBeforeSelected: inserting 1 at 4.\n"));
}

void tst_QorNodeEditorTreeView::removeValue()
{
    Shown shown({part("list", MFINT32_DT, "1, 2, 3")});
    shown.view()->expandAll();
    shown.askForMenu(shown.cell("list", 1));
    choose("Remove value");
    QCOMPARE(shown.text("list"), std::string("1, 3"));
    QTest::qWait(1);
    QCOMPARE(rowsOf(shown.view()),
             QStringList({QStringLiteral("list"), QStringLiteral(" 0"), QStringLiteral(" 1")}));
    for (int left = 1; left >= 0; --left) {
        shown.askForMenu(shown.cell("list", 0));
        choose("Remove value");
        QTest::qWait(1);
        QCOMPARE(rowsOf(shown.view()).size(), 1 + left);
    }
}

void tst_QorNodeEditorTreeView::newRowsShowAtOnce_data()
{
    QTest::addColumn<QByteArray>("field");
    // Rows stand in reverse order of the parts: the first, one between, the last.
    QTest::newRow("top") << QByteArray("third");
    QTest::newRow("middle") << QByteArray("second");
    QTest::newRow("bottom") << QByteArray("first");
}

void tst_QorNodeEditorTreeView::newRowsShowAtOnce()
{
    QFETCH(QByteArray, field);
    Shown shown({part("first", MFINT32_DT, "1, 2"), part("second", MFINT32_DT, "1, 2"),
                 part("third", MFINT32_DT, "1, 2")});
    shown.view()->expandAll();
    QCOMPARE(rowsOf(shown.view()).size(), 9);
    LogCapture log(osg::LOG_FATAL);
    for (int i = 0; i < 3; ++i) {
        shown.askForMenu(shown.cell(field, 0));
        choose(i == 0 ? "Insert value before" : "Insert value behind");
        QTest::qWait(1);
        QCOMPARE(rowsOf(shown.view()).size(), 10 + i);
        QVERIFY(shown.view()->visualRect(shown.cell(field, 2 + i)).isValid());
        QVERIFY(!shown.view()->grab().isNull());
    }
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeEditorTreeView::slotsWithoutACurrentValueDoNothing()
{
    Shown shown({part("list", MFINT32_DT, "1, 2")});
    shown.view()->setCurrentIndex(QModelIndex());
    LogCapture log(osg::LOG_INFO);
    for (const char* slot : {"onInsertValueBeforeSelected", "onInsertValueBehindSelected"})
        QVERIFY(QMetaObject::invokeMethod(shown.view(), slot));
    QVERIFY(log.take().isEmpty());
    QVERIFY(QMetaObject::invokeMethod(shown.view(), "onRemoveSelectedValue"));
    QCOMPARE(log.take(),
             QByteArrayList({"Tiny 1 QorNodeEditorTreeView::onRemoveSelectedValue: invalid model index.\n"}));
    QVERIFY(QMetaObject::invokeMethod(shown.view(), "onInsertValueAtFront"));
    QVERIFY(log.take().contains("1 QorNodeModel::insertRows: invalid index.\n"));

    shown.view()->setCurrentIndex(shown.cell("list"));
    for (const char* slot :
         {"onInsertValueBeforeSelected", "onInsertValueBehindSelected", "onRemoveSelectedValue"})
        QVERIFY(QMetaObject::invokeMethod(shown.view(), slot));
    QVERIFY(log.take().isEmpty());
    QCOMPARE(shown.text("list"), std::string("1, 2"));
}

void tst_QorNodeEditorTreeView::slotsWithoutAModelDoNothing()
{
    QorNodeEditorTreeView view(nullptr);
    LogCapture log(osg::LOG_INFO);
    for (const char* slot : {"onInsertValueBeforeSelected", "onInsertValueBehindSelected",
                             "onInsertValueAtFront", "onRemoveSelectedValue"})
        QVERIFY(QMetaObject::invokeMethod(&view, slot));
    QVERIFY(log.take().isEmpty());
    QTest::mouseClick(view.viewport(), Qt::LeftButton);
}

void tst_QorNodeEditorTreeView::numberIsEditedByKeys()
{
    Shown shown({part("number", SFINT32_DT, "5"), part("real", SFFLOAT_DT, "1.5")});
    QWidget* editor = shown.open(shown.cell("number"));
    QVERIFY(editor);
    QCOMPARE(editor->geometry(), shown.view()->visualRect(shown.cell("number")));
    shown.type("42");
    QCOMPARE(shown.text("number"), std::string("42"));
    QCOMPARE(shown.openEditor(), editor);
    shown.type(Qt::Key_Up);
    QCOMPARE(shown.text("number"), std::string("43"));
    shown.type(Qt::Key_Return);
    QTRY_VERIFY(!shown.openEditor());
    QCOMPARE(shown.text("number"), std::string("43"));
    QVERIFY(shown.open(shown.cell("real")));
    shown.type("-2.25");
    shown.type(Qt::Key_Return);
    QTRY_VERIFY(!shown.openEditor());
    QCOMPARE(shown.text("real"), std::string("-2.25"));
}

void tst_QorNodeEditorTreeView::severalEditsInOneFieldKeepTheirSize()
{
    Shown shown({part("list", MFINT32_DT, "1, 2, 3"), part("other", MFFLOAT_DT, "1, 2, 3")});
    shown.view()->expandAll();
    for (const char* field : {"list", "other"}) {
        for (int value = 0; value < 3; ++value) {
            QWidget* editor = shown.open(shown.cell(field, value));
            QVERIFY(editor);
            QVERIFY(editor->isVisible());
            QVERIFY(editor->width() > 50 && editor->height() > 10);
            QCOMPARE(editor->geometry(), shown.view()->visualRect(shown.cell(field, value)));
            shown.type("7");
            shown.type(Qt::Key_Return);
            QTRY_VERIFY(!shown.openEditor());
        }
        QCOMPARE(shown.text(field), std::string("7, 7, 7"));
    }
}

void tst_QorNodeEditorTreeView::openEditorStaysOverLiveCommits()
{
    Shown shown({part("list", MFINT32_DT, "1, 2, 3"), part("other", SFINT32_DT)});
    shown.view()->expandAll();
    const QPointer<QWidget> editor(shown.open(shown.cell("list", 1)));
    QVERIFY(editor);
    const QRect place = editor->geometry();
    for (int i = 0; i < 5; ++i) {
        shown.type(Qt::Key_Up);
        QTest::qWait(5);
        QVERIFY(editor);
        QVERIFY(editor->isVisible());
        QCOMPARE(editor->geometry(), place);
    }
    QCOMPARE(shown.text("list"), std::string("1, 7, 3"));
    shown.editor.resize(600, 400);
    QTest::qWait(5);
    QVERIFY(editor->isVisible());
    shown.type(Qt::Key_Escape);
    QTRY_VERIFY(!editor);
    QCOMPARE(shown.text("list"), std::string("1, 7, 3"));
}

void tst_QorNodeEditorTreeView::textIsEditedByKeys()
{
    Shown shown({part("title", SFSTRING_DT, "old"), part("points", MFVEC3F_DT, "1 2 3, 4 5 6"),
                 part("words", MFSTRING_DT, "\"a\", \"b\"")});
    shown.view()->expandAll();
    QVERIFY(shown.open(shown.cell("title")));
    shown.type("new text");
    QCOMPARE(shown.text("title"), std::string("old"));
    shown.type(Qt::Key_Return);
    QCOMPARE(shown.text("title"), std::string("new text"));
    QVERIFY(!shown.openEditor());
    QVERIFY(shown.open(shown.cell("points", 1)));
    shown.type("7 8 9");
    shown.type(Qt::Key_Return);
    QCOMPARE(shown.text("points"), std::string("1 2 3, 7 8 9"));
    QVERIFY(shown.open(shown.cell("words", 0)));
    shown.type("x");
    shown.type(Qt::Key_Return);
    QCOMPARE(shown.cell("words", 0).data().toString(), QStringLiteral("x"));
}

void tst_QorNodeEditorTreeView::wordIsChosenFromTheList()
{
    Shown shown({listed("mode", SFSTRING_DT, "one", {"one", "two", "three"})});
    QWidget* editor = shown.open(shown.cell("mode"));
    QVERIFY(editor);
    auto* box = editor->findChild<QComboBox*>();
    QVERIFY(box->isVisible());
    QTest::mouseClick(box, Qt::LeftButton);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
    QCOMPARE(shown.text("mode"), std::string("two"));
    QVERIFY(!shown.openEditor());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!QWidget::keyboardGrabber());
}

void tst_QorNodeEditorTreeView::truthIsChosenByMouseAndKeys()
{
    Shown shown({part("on", SFBOOL_DT, "FALSE"), part("list", MFBOOL_DT, "FALSE, FALSE")});
    shown.view()->expandAll();
    for (const QModelIndex& cell : {shown.cell("on"), shown.cell("list", 0), shown.cell("list", 1)}) {
        QWidget* editor = shown.open(cell);
        QVERIFY(editor);
        auto* box = editor->findChild<QComboBox*>();
        QTest::mouseClick(box, Qt::LeftButton);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QTest::keyClick(box->view(), Qt::Key_Down);
        QTest::keyClick(box->view(), Qt::Key_Return);
        QVERIFY(!shown.openEditor());
    }
    QCOMPARE(shown.text("on"), std::string("TRUE"));
    QCOMPARE(shown.text("list"), std::string("FALSE, TRUE"));
}

void tst_QorNodeEditorTreeView::escapeLeavesTheValue()
{
    Shown shown({part("title", SFSTRING_DT, "old"), part("on", SFBOOL_DT, "FALSE")});
    QVERIFY(shown.open(shown.cell("title")));
    shown.type("new");
    shown.type(Qt::Key_Escape);
    QCOMPARE(shown.text("title"), std::string("old"));
    QVERIFY(!shown.openEditor());
    QVERIFY(shown.open(shown.cell("on")));
    shown.type(Qt::Key_Escape);
    QVERIFY(!shown.openEditor());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_QorNodeEditorTreeView::returnCommitsOnce()
{
    Shown shown({part("title", SFSTRING_DT, "old")});
    QVERIFY(shown.open(shown.cell("title")));
    shown.type("n");
    Tiny::reset();
    shown.type(Qt::Key_Return);
    QTest::qWait(5);
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
}

void tst_QorNodeEditorTreeView::doubleClickOpens()
{
    Shown shown({part("number", SFINT32_DT, "5")});
    shown.click(shown.cell("number"));
    QVERIFY(!shown.openEditor());
    QTest::mouseDClick(shown.view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                       shown.centre(shown.cell("number")));
    QVERIFY(shown.openEditor());
    shown.type("6");
    QCOMPARE(shown.text("number"), std::string("6"));
}

void tst_QorNodeEditorTreeView::otherColumnsOpenNothing()
{
    Shown shown({part("number", SFINT32_DT, "5")}, QSize(1200, 300));
    for (int column = 0; column < 10; ++column) {
        if (column == 1)
            continue;
        const QModelIndex cell = shown.model()->index(0, column);
        shown.click(cell);
        QTest::mouseDClick(shown.view()->viewport(), Qt::LeftButton, Qt::NoModifier, shown.centre(cell));
        QVERIFY(!shown.openEditor());
        QVERIFY(!shown.open(cell));
    }
}

void tst_QorNodeEditorTreeView::singleClickAndTypingOpenNothing()
{
    Shown shown({part("number", SFINT32_DT, "5")});
    shown.click(shown.cell("number"));
    shown.type("7");
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QVERIFY(!shown.openEditor());
    QCOMPARE(shown.text("number"), std::string("5"));
}

void tst_QorNodeEditorTreeView::tabGoesToTheNextValue()
{
    Shown shown({part("lower", SFINT32_DT, "5"), part("upper", SFINT32_DT, "6")});
    QVERIFY(shown.open(shown.cell("upper")));
    shown.type("8");
    shown.type(Qt::Key_Tab);
    QCOMPARE(shown.text("upper"), std::string("8"));
    QTest::qWait(5);
    QVERIFY(shown.view()->currentIndex() != shown.cell("upper"));
}

void tst_QorNodeEditorTreeView::editOfABigFieldFallsBackToThePlaceholder()
{
    Shown shown({part("big", MFINT32_DT, big.c_str()), part("one", SFINT32_DT)});
    shown.click(shown.cell("big"));
    shown.view()->expand(shown.row("big"));
    QCOMPARE(rowsOf(shown.view()).size(), 53);
    LogCapture log(osg::LOG_FATAL);
    QVERIFY(shown.open(shown.cell("big", 3)));
    shown.type(Qt::Key_Up);
    QTest::qWait(5);
    QVERIFY(!shown.view()->grab().isNull());
    QVERIFY(shown.text("big").find("2, 4, 4, 5") != std::string::npos);
    QCOMPARE(rowsOf(shown.view()),
             QStringList({QStringLiteral("one"), QStringLiteral("big"), QStringLiteral(" 0")}));
    shown.type(Qt::Key_Escape);
    QTest::qWait(5);
    QVERIFY(!shown.view()->grab().isNull());
    QVERIFY(log.take().count("1 QorNodeModel::index: row=3, column=0 out of bounds.\n") < 20);
}

void tst_QorNodeEditorTreeView::insertIntoABigFieldFallsBackToThePlaceholder()
{
    Shown shown({part("big", MFINT32_DT, big.c_str())});
    shown.click(shown.cell("big"));
    shown.view()->expand(shown.row("big"));
    shown.askForMenu(shown.cell("big", 2));
    choose("Insert value before");
    QTest::qWait(5);
    QCOMPARE(shown.field("big")->size(), 52U);
    QCOMPARE(rowsOf(shown.view()), QStringList({QStringLiteral("big"), QStringLiteral(" 0")}));
    QVERIFY(!shown.view()->grab().isNull());
}

void tst_QorNodeEditorTreeView::openEditorSurvivesInsertAndRemove()
{
    Shown shown({part("other", MFINT32_DT, "9"), part("list", MFINT32_DT, "1, 2, 3")});
    shown.view()->expandAll();
    QVERIFY(shown.open(shown.cell("list", 1)));
    shown.model()->insertRows(0, 1, shown.row("list"));
    QTest::qWait(5);
    shown.type(Qt::Key_Up);
    QTest::qWait(5);
    QCOMPARE(shown.text("list"), std::string("0, 1, 3, 3"));
    for (int i = 0; i < 4; ++i) {
        shown.model()->removeRows(0, 1, shown.row("list"));
        QTest::qWait(5);
        shown.type(Qt::Key_Up);
        QVERIFY(!shown.view()->grab().isNull());
    }
    QVERIFY(shown.text("list").empty());
}

void tst_QorNodeEditorTreeView::viewEditsOnWhenTheRowOfAnEditorIsGone()
{
    Shown shown({part("big", MFINT32_DT, big.c_str()), part("one", SFINT32_DT, "5")});
    shown.click(shown.cell("big"));
    shown.view()->expand(shown.row("big"));
    QVERIFY(shown.open(shown.cell("big", 3)));
    // The host grows the field under the open editor, and its rows fall back to the placeholder.
    shown.model()->insertRows(0, 1, shown.row("big"));
    QTest::qWait(5);
    shown.type(Qt::Key_Up);
    QTest::qWait(5);
    QVERIFY(shown.open(shown.cell("one")));
    shown.type("7");
    QCOMPARE(shown.text("one"), std::string("7"));
}

void tst_QorNodeEditorTreeView::indexesOfDroppedRowsNeverMeetThoseOfNewOnes()
{
    Shown shown({part("list", MFINT32_DT, "1, 2, 3"), part("other", MFINT32_DT, "1, 2, 3")});
    QorMFieldItem* item = FieldRows::itemOf(shown.row("list"))->toMFieldItem();
    for (int round = 0; round < 4; ++round) {
        // Rows that are built anew by hand, and indexes of each generation.
        QList<QPersistentModelIndex> kept;
        for (int generation = 0; generation < 3; ++generation) {
            for (int row = 0; row < 3; ++row)
                kept << QPersistentModelIndex(shown.model()->index(row, 1, shown.row("list")));
            shown.view()->expandAll();
            shown.view()->selectAll();
            item->updateChildValues(false);
        }
        if (round % 2 == 0)
            QVERIFY(shown.model()->insertRows(1, 1, shown.cell("list", 0).parent()));
        else
            QVERIFY(shown.model()->removeRows(1, 1, shown.cell("list", 0).parent()));
        for (int row = 0; row < 3; ++row) {
            int valid = 0;
            for (int i = row; i < kept.size(); i += 3)
                valid += kept[i].isValid() ? 1 : 0;
            QVERIFY(valid <= 1);
        }
        QTest::qWait(2);
    }
}

void tst_QorNodeEditorTreeView::firstOfSeveralLinesShows()
{
    Shown shown({part("code", SFSTRING_DT, "first"), part("last", SFSTRING_DT, "x")});
    const auto picture = [&] {
        return shown.view()->viewport()->grab(shown.view()->visualRect(shown.cell("code"))).toImage();
    };
    const QImage oneLine = picture();
    shown.field("code")->setValueByStr(0.0, "first\nsecond\nthird\nfourth\nfifth");
    QCOMPARE(shown.view()->visualRect(shown.cell("code")).height(),
             shown.view()->visualRect(shown.cell("last")).height());
    QCOMPARE(picture(), oneLine);
}

void tst_QorNodeEditorTreeView::severalLinesOnTopLeaveTheOtherRowsLow()
{
    Shown shown({part("one", SFINT32_DT), part("words", MFINT32_DT, "1, 2"), part("note", SFSTRING_DT, "a")});
    const auto height = [&](const QModelIndex& index) { return shown.view()->visualRect(index).height(); };
    const int oneLine = height(shown.cell("note"));
    QVERIFY(shown.view()->uniformRowHeights());
    shown.field("note")->setValueByStr(0.0, "a\nb\nc");
    shown.view()->expand(shown.row("words"));
    shown.editor.setNode(nullptr);
    shown.editor.setNode(shown.node.get());
    shown.view()->expandAll();
    QTest::qWait(1);
    QVERIFY(height(shown.cell("note")) > 2 * oneLine);
    for (const QModelIndex& cell : {shown.cell("one"), shown.cell("words"), shown.cell("words", 1)})
        QCOMPARE(height(cell), oneLine);
}

void tst_QorNodeEditorTreeView::oddTextsAreShown()
{
    Shown shown({part("long", SFSTRING_DT, std::string(200000, 'x').c_str()),
                 part("lines", SFSTRING_DT, "a\nb\nc"), part("words", MFSTRING_DT),
                 listed("none", SFSTRING_DT, "x", {}), limited("backwards", SFINT32_DT, "5", 9, 1)});
    dynamic_cast<SFString*>(shown.field("lines"))->setValue(0.0, std::string("a\0b", 3), Field::EXTERNAL_CT);
    QVERIFY(!shown.view()->grab().isNull());
    for (const char* field : {"long", "lines", "none", "backwards"}) {
        QVERIFY(shown.open(shown.cell(field)));
        QVERIFY(!shown.view()->grab().isNull());
        shown.type(Qt::Key_Escape);
    }
}

QTEST_MAIN(tst_QorNodeEditorTreeView)
#include "tst_QorNodeEditorTreeView.moc"
