#include "LogCapture.h"
#include "QorObservingNodeEditor.h"
#include "TinyNodeEditor.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/SFInt32.h>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QSignalSpy>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorObservingNodeEditor : public QObject
{
    Q_OBJECT

private slots:
    void changedValueIsPaintedAndNothingElse();
    void manyChangesMakeOnePaint();
    void valueIsReadWhenItIsPainted();
    void summaryFollowsButValueRowsDoNot();
    void rowsOutOfSightCostNothing();
    void onlyWhatIsPaintedIsTurnedIntoText();
    void openEditorKeepsItsText();
    void allPublicFieldsAreObservedWhateverTheirAccess();
    void privateFieldGetsSlotsButNoObserver();
    void existingSlotsAreKept();
    void sameNodeIsObservedAnew();
    void otherNodeIsObservedInstead();
    void nullObservesNothing();
    void deathOfTheNodeEndsAllObservers();
    void destroyedEditorIsOutOfTheSubjects();
    void strangeSubjectsAreReported();
    void notificationWithoutAModelIsIgnored();
    void nodeButtonTellsByTheSignalOfTheSubclass();
    void noDataChangedIsEmitted();
};

namespace {

const std::vector<Tiny::Part> parts = {part("number", SFINT32_DT, "5"), part("other", SFINT32_DT, "6"),
                                       part("list", MFFLOAT_DT, "1, 2"), part("child", SFNODE_DT),
                                       part("title", SFSTRING_DT, "x")};

using Shown = TinyNodeEditor<QorObservingNodeEditor>;

/// What is painted in the tree.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget* widget)
    {
        QTest::qWait(20);
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            ++count;
            region |= static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
    int count = 0;
    QRegion region;
};

void write(const Shown& shown, const char* field, const char* text)
{
    shown.field(field)->setValueByStr(0.0, text);
}

int observersOf(const Field* field)
{
    return (field->_inSlot && !field->_inSlot->processEventSubject().isUntouched() ? 1 : 0) +
           (field->_outSlot && !field->_outSlot->processEventSubject().isUntouched() ? 1 : 0);
}

} // namespace

void tst_QorObservingNodeEditor::changedValueIsPaintedAndNothingElse()
{
    const Shown shown(parts);
    PaintWatch watch(shown.view()->viewport());
    write(shown, "number", "17");
    QCOMPARE(watch.count, 0);
    QTest::qWait(20);
    QCOMPARE(watch.count, 1);
    QCOMPARE(watch.region, QRegion(shown.view()->visualRect(shown.cell("number"))));
    QCOMPARE(shown.cell("number").data().toString(), QStringLiteral("17"));
}

void tst_QorObservingNodeEditor::manyChangesMakeOnePaint()
{
    const Shown shown(parts);
    PaintWatch watch(shown.view()->viewport());
    for (int i = 0; i < 100; ++i) {
        write(shown, "number", std::to_string(i).c_str());
        write(shown, "other", std::to_string(i).c_str());
    }
    QTest::qWait(20);
    QCOMPARE(watch.count, 1);
    QCOMPARE(watch.region, QRegion(shown.view()->visualRect(shown.cell("number"))) |
                               QRegion(shown.view()->visualRect(shown.cell("other"))));
}

void tst_QorObservingNodeEditor::valueIsReadWhenItIsPainted()
{
    const Shown shown(parts);
    const auto pictureOf = [&](const char* field) {
        return shown.view()->viewport()->grab(shown.view()->visualRect(shown.cell(field))).toImage();
    };
    const QImage before = pictureOf("number");
    write(shown, "number", "123456");
    QVERIFY(pictureOf("number") != before);
}

void tst_QorObservingNodeEditor::summaryFollowsButValueRowsDoNot()
{
    const Shown shown(parts);
    shown.view()->expandAll();
    PaintWatch watch(shown.view()->viewport());
    write(shown, "list", "7, 8, 9");
    QTest::qWait(20);
    QCOMPARE(watch.region, QRegion(shown.view()->visualRect(shown.cell("list"))));
    QCOMPARE(shown.cell("list").data().toString(), QStringLiteral("3 values [MFFloat]"));
    QCOMPARE(shown.model()->rowCount(shown.row("list")), 2);
    QCOMPARE(shown.cell("list", 0).data().toString(), QStringLiteral("1"));
}

void tst_QorObservingNodeEditor::rowsOutOfSightCostNothing()
{
    std::vector<Tiny::Part> many = parts;
    for (int i = 0; i < 60; ++i)
        many.push_back(part(("more" + std::to_string(i)).c_str(), SFINT32_DT));
    const Shown shown(many, QSize(400, 200));
    PaintWatch watch(shown.view()->viewport());
    // Rows stand in reverse order: the first field is far below.
    write(shown, "number", "17");
    QTest::qWait(20);
    QCOMPARE(watch.count, 0);
    write(shown, "more59", "17");
    QTest::qWait(20);
    QCOMPARE(watch.count, 1);
}

void tst_QorObservingNodeEditor::onlyWhatIsPaintedIsTurnedIntoText()
{
    /// Notes which rows are measured and painted: both turn their texts.
    struct Delegate : QorNodeItemDelegate
    {
        Delegate()
            : QorNodeItemDelegate(nullptr)
        {
        }
        QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
        {
            rows << index.row();
            return QorNodeItemDelegate::sizeHint(option, index);
        }
        void paint(QPainter* painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const override
        {
            rows << index.row();
            QorNodeItemDelegate::paint(painter, option, index);
        }
        mutable QSet<int> rows;
    };
    std::vector<Tiny::Part> many = parts;
    for (int i = 0; i < 200; ++i)
        many.push_back(part(("more" + std::to_string(i)).c_str(), SFINT32_DT));
    const Delegate delegate;
    Shown shown(many, QSize(400, 200));
    shown.editor.setItemDelegate(const_cast<Delegate*>(&delegate));
    shown.editor.setNode(nullptr);
    shown.editor.setNode(shown.node.get());
    for (const char* field : {"number", "title", "more100", "more199"})
        write(shown, field, "17");
    QTest::qWait(20);
    const int height = shown.view()->visualRect(shown.model()->index(0, 0)).height();
    const int visible = shown.view()->viewport()->height() / height + 1;
    QVERIFY(!delegate.rows.isEmpty());
    for (const int row : delegate.rows)
        QVERIFY2(row <= visible, QByteArray::number(row));
    shown.editor.setNode(nullptr);
}

void tst_QorObservingNodeEditor::openEditorKeepsItsText()
{
    Shown shown(parts);
    QWidget* editor = shown.open(shown.cell("title"));
    QVERIFY(editor);
    shown.type("typed");
    write(shown, "title", "changed behind");
    QTest::qWait(20);
    QCOMPARE(editor->findChild<QLineEdit*>()->text(), QStringLiteral("typed"));
    QCOMPARE(shown.openEditor(), editor);
    shown.type(Qt::Key_Return);
    QCOMPARE(shown.text("title"), std::string("typed"));
}

void tst_QorObservingNodeEditor::allPublicFieldsAreObservedWhateverTheirAccess()
{
    const Shown shown({part("a", SFINT32_DT, "", FIELDP), part("b", SFINT32_DT, "", EVENTINP),
                       part("c", SFINT32_DT, "", EVENTOUTP), part("d", SFINT32_DT, "", EXPOSEDFIELDP),
                       part("e", MFNODE_DT)});
    for (const char* name : {"a", "b", "c", "d", "e"}) {
        QVERIFY(shown.field(name)->_inSlot);
        QVERIFY(shown.field(name)->_outSlot);
        QCOMPARE(observersOf(shown.field(name)), 2);
    }
}

void tst_QorObservingNodeEditor::privateFieldGetsSlotsButNoObserver()
{
    const Shown shown({privatePart("hidden", SFINT32_DT), part("number", SFINT32_DT)});
    QVERIFY(shown.field("hidden")->_inSlot);
    QVERIFY(shown.field("hidden")->_outSlot);
    QCOMPARE(observersOf(shown.field("hidden")), 0);
    LogCapture log;
    write(shown, "hidden", "3");
    QVERIFY(log.take().isEmpty());
}

void tst_QorObservingNodeEditor::existingSlotsAreKept()
{
    const std::unique_ptr<Node> node(Tiny::makeNode(Tiny::makeType("Thing", parts)));
    Field* field = node->findField(0);
    field->createInSlot(false);
    const EventInSlot* slot = field->_inSlot;
    QorNodeItemDelegate delegate(nullptr);
    QorObservingNodeEditor editor;
    editor.setItemDelegate(&delegate);
    editor.setNode(node.get());
    QCOMPARE(field->_inSlot, slot);
    QCOMPARE(observersOf(field), 2);
    editor.setNode(nullptr);
}

void tst_QorObservingNodeEditor::sameNodeIsObservedAnew()
{
    /// Takes the lines that have come before its turn.
    struct Listener : Observer
    {
        Listener()
            : Observer(nullptr)
            , log(osg::LOG_WARNING)
        {
        }
        void notify(const double&, BaseObject*, BaseObject*, BaseObject*) override
        {
            before = log.take().size();
        }
        LogCapture log;
        int before = 0;
    };
    Shown shown(parts);
    const QorNodeModel* model = shown.model();
    // Without a row for the field, each of its observers writes a line.
    const FieldNode other({});
    shown.view()->setModel(nullptr);
    shown.model()->setNode(other.get());
    Listener listener;
    shown.field("number")->_outSlot->processEventSubject().attach(listener);

    // The observers of the in slot and of the out slot were there first.
    write(shown, "number", "17");
    QCOMPARE(listener.before, 2);
    QCOMPARE(listener.log.take().size(), 0);
    for (int i = 0; i < 3; ++i) {
        shown.editor.setNode(shown.node.get());
        QCOMPARE(shown.model(), model);
        listener.log.take();
        write(shown, "number", "18");
        // As many as before, but that of the out slot is a new one and stands behind.
        QCOMPARE(listener.before, 1);
        QCOMPARE(listener.log.take().size(), 1);
    }
}

void tst_QorObservingNodeEditor::otherNodeIsObservedInstead()
{
    Shown shown(parts);
    const std::unique_ptr<Node> other(Tiny::makeNode(Tiny::makeType("Other", parts)));
    shown.editor.setNode(other.get());
    QCOMPARE(observersOf(shown.field("number")), 0);
    QCOMPARE(observersOf(other->findField(0)), 2);
    LogCapture log(osg::LOG_WARNING);
    write(shown, "number", "17");
    QVERIFY(log.take().isEmpty());
    shown.editor.setNode(nullptr);
}

void tst_QorObservingNodeEditor::nullObservesNothing()
{
    Shown shown(parts);
    for (int i = 0; i < 2; ++i) {
        shown.editor.setNode(nullptr);
        for (const Tiny::Part& each : parts)
            QCOMPARE(observersOf(shown.field(each.name.c_str())), 0);
    }
}

void tst_QorObservingNodeEditor::deathOfTheNodeEndsAllObservers()
{
    // Whoever is told behind the editor still sees the fields, and nobody at them.
    struct Late : Observer
    {
        Late()
            : Observer(nullptr)
        {
        }
        void notify(const double&, BaseObject* subject, BaseObject*, BaseObject*) override
        {
            const auto* node = dynamic_cast<Node*>(subject);
            for (unsigned int i = 0; i < node->partDescCount(); ++i)
                left += observersOf(node->findField(i));
            ++calls;
        }
        int left = 0;
        int calls = 0;
    };
    Shown shown(parts);
    Late late;
    Node::_deleteObject.attach(late);
    shown.node.reset();
    QCOMPARE(late.calls, 1);
    QCOMPARE(late.left, 0);
    QVERIFY(!shown.editor.node());
    QVERIFY(!shown.editor.model());
}

void tst_QorObservingNodeEditor::destroyedEditorIsOutOfTheSubjects()
{
    const std::unique_ptr<Node> node(Tiny::makeNode(Tiny::makeType("Thing", parts)));
    QorNodeItemDelegate delegate(nullptr);
    std::unique_ptr<QorNodeModel> left;
    {
        QorObservingNodeEditor editor;
        editor.setItemDelegate(&delegate);
        editor.setNode(node.get());
        left.reset(editor.model());
    }
    QCOMPARE(observersOf(node->findField(0)), 0);
    node->findField(0)->setValueByStr(0.0, "8");
}

void tst_QorObservingNodeEditor::strangeSubjectsAreReported()
{
    Shown shown(parts);
    const std::unique_ptr<Node> other(Tiny::makeNode(Tiny::makeType("Other", parts)));
    other->findField(0)->createInSlot(false);
    QorObservingNodeEditor::ChangedObserver observer(&shown.editor);
    LogCapture log(osg::LOG_WARNING);
    PaintWatch watch(shown.view()->viewport());
    observer.notify(0.0, nullptr, nullptr, nullptr);
    observer.notify(0.0, other.get(), nullptr, nullptr);
    const QByteArray line = "2 QorObservingNodeEditor::ChangedObserver::notify: no valid field!\n";
    QCOMPARE(log.take(), QByteArrayList({line, line}));
    observer.notify(0.0, other->findField(0)->_inSlot, nullptr, nullptr);
    QCOMPARE(log.take(),
             QByteArrayList({"2 QorObservingNodeEditor::ChangedObserver::notify: Invalid model index "
                             "for field number\n"}));
    QTest::qWait(20);
    QCOMPARE(watch.count, 0);
}

void tst_QorObservingNodeEditor::notificationWithoutAModelIsIgnored()
{
    Shown shown(parts);
    QorObservingNodeEditor::ChangedObserver observer(&shown.editor);
    shown.editor.setNode(nullptr);
    LogCapture log(osg::LOG_WARNING);
    observer.notify(0.0, shown.field("number")->_inSlot, nullptr, nullptr);
    QVERIFY(log.take().isEmpty());
}

void tst_QorObservingNodeEditor::nodeButtonTellsByTheSignalOfTheSubclass()
{
    Shown shown(parts);
    const std::unique_ptr<Node> child(
        Tiny::makeNode(Tiny::makeType("Leaf", {part("size", SFINT32_DT)}), "Oak"));
    Tiny::link(shown.node.get(), "child", child.get());
    QSignalSpy selected(&shown.editor, &QorObservingNodeEditor::nodeSelected);
    QSignalSpy byName(&shown.editor, SIGNAL(nodeSelected(Orvane::Node*)));
    QWidget* editor = shown.open(shown.cell("child"));
    QVERIFY(editor);
    QTest::mouseClick(editor->findChild<QPushButton*>(), Qt::LeftButton);
    QCOMPARE(selected.size(), 1);
    QCOMPARE(byName.size(), 1);
    QCOMPARE(shown.editor.node(), child.get());
    QCOMPARE(observersOf(child->findField(0)), 2);
    QCOMPARE(observersOf(shown.field("number")), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    shown.editor.setNode(nullptr);
}

void tst_QorObservingNodeEditor::noDataChangedIsEmitted()
{
    Shown shown(parts);
    QSignalSpy changes(shown.model(), &QAbstractItemModel::dataChanged);
    write(shown, "number", "17");
    QVERIFY(shown.open(shown.cell("number")));
    shown.type("8");
    QCOMPARE(shown.text("number"), std::string("8"));
    QCOMPARE(changes.size(), 0);
}

QTEST_MAIN(tst_QorObservingNodeEditor)
#include "tst_QorObservingNodeEditor.moc"
