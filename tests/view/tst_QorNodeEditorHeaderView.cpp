#include "QorNodeEditor.h"
#include "QorNodeEditorHeaderView.h"
#include "TinyNodeEditor.h"

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorNodeEditorHeaderView : public QObject
{
    Q_OBJECT

private slots:
    void sectionsStayWhereTheyAre();
    void menuHasAnEntryForEachColumn();
    void entriesHideAndShowColumns();
    void marksAreRightEachTime();
    void menuIsReplacedEachTime();
    void entryWithoutAColumnDoesNothing();
    void menuWithoutANodeIsEmpty();
    void hiddenColumnsOutliveTheModel();
};

namespace {

using Shown = TinyNodeEditor<QorNodeEditor>;

const QStringList titles = {QStringLiteral("Fieldname"),    QStringLiteral("Fieldvalue"),
                            QStringLiteral("Datatype"),     QStringLiteral("Fieldtype"),
                            QStringLiteral("ID"),           QStringLiteral("Value restriction"),
                            QStringLiteral("Valuetype"),    QStringLiteral("Default value"),
                            QStringLiteral("Auto process"), QStringLiteral("Extension")};

QPoint askForMenu(const QorNodeEditorTreeView* view)
{
    QWidget* viewport = view->header()->viewport();
    const QPoint place(20, viewport->height() / 2);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &event);
    return event.globalPos();
}

} // namespace

void tst_QorNodeEditorHeaderView::sectionsStayWhereTheyAre()
{
    const Shown shown({part("number", SFINT32_DT)});
    auto* header = qobject_cast<QorNodeEditorHeaderView*>(shown.view()->header());
    QVERIFY(header);
    QVERIFY(!header->sectionsMovable());
    QVERIFY(!header->sectionsClickable());
    QCOMPARE(header->orientation(), Qt::Horizontal);
    QCOMPARE(header->defaultAlignment(), Qt::Alignment(Qt::AlignLeft));
}

void tst_QorNodeEditorHeaderView::menuHasAnEntryForEachColumn()
{
    const Shown shown({part("number", SFINT32_DT)});
    const QPoint place = askForMenu(shown.view());
    QMenu* menu = openMenu();
    QVERIFY(menu);
    QCOMPARE(menu->pos(), place);
    QCOMPARE(menu->title(), QStringLiteral("Show field column"));
    QCOMPARE(menu->parentWidget(), shown.view()->header());
    QCOMPARE(entriesOf(menu), titles);
    for (const QAction* action : menu->actions()) {
        QVERIFY(action->isCheckable());
        QVERIFY(action->isChecked());
        QVERIFY(!action->actionGroup()->isExclusive());
    }
    menu->close();
}

void tst_QorNodeEditorHeaderView::entriesHideAndShowColumns()
{
    const Shown shown({part("number", SFINT32_DT)});
    for (int column = 0; column < 10; ++column) {
        askForMenu(shown.view());
        choose(titles[column].toLatin1());
        for (int i = 0; i < 10; ++i)
            QCOMPARE(shown.view()->isColumnHidden(i), i == column);
        // The header has gone with its last column, but not its menu.
        askForMenu(shown.view());
        choose(titles[column].toLatin1());
        QVERIFY(!shown.view()->isColumnHidden(column));
    }
}

void tst_QorNodeEditorHeaderView::marksAreRightEachTime()
{
    Shown shown({part("number", SFINT32_DT)});
    shown.editor.hideColumn(QorNodeModel::DataType);
    askForMenu(shown.view());
    QVERIFY(!openMenu()->actions()[2]->isChecked());
    QVERIFY(openMenu()->actions()[3]->isChecked());
    openMenu()->close();
    shown.editor.showColumn(QorNodeModel::DataType);
    askForMenu(shown.view());
    QVERIFY(openMenu()->actions()[2]->isChecked());
    openMenu()->close();
}

void tst_QorNodeEditorHeaderView::menuIsReplacedEachTime()
{
    const Shown shown({part("number", SFINT32_DT)});
    for (int i = 0; i < 3; ++i) {
        askForMenu(shown.view());
        openMenu()->close();
        QCOMPARE(shown.view()->header()->findChildren<QMenu*>().size(), 1);
    }
}

void tst_QorNodeEditorHeaderView::entryWithoutAColumnDoesNothing()
{
    const Shown shown({part("number", SFINT32_DT)});
    QAction stranger(QStringLiteral("no column"));
    for (QAction* action : {&stranger, static_cast<QAction*>(nullptr)})
        QVERIFY(
            QMetaObject::invokeMethod(shown.view()->header(), "onContextAction", Q_ARG(QAction*, action)));
    for (int i = 0; i < 10; ++i)
        QVERIFY(!shown.view()->isColumnHidden(i));
}

void tst_QorNodeEditorHeaderView::menuWithoutANodeIsEmpty()
{
    Shown shown({part("number", SFINT32_DT)});
    shown.editor.setNode(nullptr);
    QCOMPARE(shown.view()->header()->findChildren<QMenu*>().size(), 1);
    QVERIFY(shown.view()->header()->findChild<QMenu*>()->isEmpty());
    QCOMPARE(shown.view()->header()->findChild<QMenu*>()->title(), QStringLiteral("Show field column"));
    askForMenu(shown.view());
    QVERIFY(shown.view()->header()->findChild<QMenu*>()->isEmpty());
}

void tst_QorNodeEditorHeaderView::hiddenColumnsOutliveTheModel()
{
    Shown shown({part("number", SFINT32_DT)});
    shown.editor.hideColumn(QorNodeModel::ID);
    shown.editor.setNode(nullptr);
    shown.editor.setNode(shown.node.get());
    QVERIFY(shown.view()->isColumnHidden(4));
}

QTEST_MAIN(tst_QorNodeEditorHeaderView)
#include "tst_QorNodeEditorHeaderView.moc"
