// The node editors over nodes of the embedded runtime.
#include "EmbeddedWorld.h"
#include "LogCapture.h"
#include "NodeEditorOnScreen.h"
#include "QorBoolFieldEditor.h"
#include "QorDefaultFieldEditor.h"
#include "QorFloatFieldEditor.h"
#include "QorInt32FieldEditor.h"
#include "QorMFieldItem.h"
#include "QorNodeFieldEditor.h"
#include "QorObservingNodeEditor.h"
#include "QorStringFieldEditor.h"
#include "QorTools.h"
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSpinBox>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

using Shown = NodeEditorOnScreen<QorObservingNodeEditor>;

/// A value of a data type, as a user types it.
QByteArray sampleOf(NodePartDataType type)
{
    static const QMap<int, QByteArray> samples = {{SFCOLOR_DT, "0.25 0.5 0.75"},
                                                  {SFCOLORRGBA_DT, "0.25 0.5 0.75 1"},
                                                  {SFDOUBLE_DT, "0.5"},
                                                  {SFFLOAT_DT, "1"},
                                                  {SFINT32_DT, "1"},
                                                  {SFBOOL_DT, "TRUE"},
                                                  {SFIMAGE_DT, "1 1 1 0x80"},
                                                  {SFMATRIX3D_DT, "2 0 0 0 2 0 0 0 2"},
                                                  {SFMATRIX3F_DT, "2 0 0 0 2 0 0 0 2"},
                                                  {SFMATRIX4D_DT, "2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 2"},
                                                  {SFMATRIX4F_DT, "2 0 0 0 0 2 0 0 0 0 2 0 0 0 0 2"},
                                                  {SFROTATION_DT, "0 1 0 0.5"},
                                                  {SFSTRING_DT, "typed text"},
                                                  {SFTIME_DT, "3.5"},
                                                  {SFVEC2D_DT, "0.25 0.5"},
                                                  {SFVEC2F_DT, "0.25 0.5"},
                                                  {SFVEC3D_DT, "0.25 0.5 0.75"},
                                                  {SFVEC3F_DT, "0.25 0.5 0.75"},
                                                  {SFVEC4D_DT, "0.25 0.5 0.75 1"},
                                                  {SFVEC4F_DT, "0.25 0.5 0.75 1"}};
    return samples.value(type % 2 ? type : type - 1);
}

/// What an editor did to the cell, as a user works it; empty when all is as it should be.
QString workEditor(Shown& shown, const QModelIndex& index, Field* field, bool byMouse)
{
    const bool isValue = index.parent().isValid();
    const auto text = [&] {
        if (auto* strings = dynamic_cast<MFString*>(field))
            return fromRuntime((*strings)[index.row()]);
        const QString whole = fromRuntime(field->valueToString());
        return isValue ? whole.section(QStringLiteral(", "), index.row(), index.row()) : whole;
    };
    const QString before = text();
    QPointer<QWidget> editor(byMouse ? shown.openByMouse(index) : shown.open(index));
    if (!editor)
        return QStringLiteral("no editor");
    if (!editor->isVisible() || editor->height() < 10)
        return QStringLiteral("the editor cannot be seen");

    if (qobject_cast<QorInt32FieldEditor*>(editor) || qobject_cast<QorFloatFieldEditor*>(editor)) {
        const auto* whole = editor->findChild<QSpinBox*>();
        const auto* real = editor->findChild<QDoubleSpinBox*>();
        const bool atTop = whole ? whole->value() == whole->maximum() : real->value() == real->maximum();
        shown.type(atTop ? Qt::Key_Down : Qt::Key_Up);
        if (text() == before)
            return QStringLiteral("the step was not written");
        shown.type(Qt::Key_Return);
        QTest::qWait(0);
    } else if (qobject_cast<QorBoolFieldEditor*>(editor)) {
        auto* box = editor->findChild<QComboBox*>();
        const int other = 1 - box->currentIndex();
        QTest::mouseClick(box, Qt::LeftButton);
        QTest::keyClick(static_cast<QWidget*>(box->view()), other ? Qt::Key_Down : Qt::Key_Up);
        QTest::keyClick(static_cast<QWidget*>(box->view()), Qt::Key_Return);
        const QString wanted = isValue && index.row() == 0 ? before : box->itemText(other);
        if (text() != wanted)
            return QStringLiteral("the choice was not written");
    } else if (qobject_cast<QorNodeFieldEditor*>(editor)) {
        if (editor->findChild<QPushButton*>()->isEnabled())
            return QStringLiteral("a button without a node");
        shown.type(Qt::Key_Escape);
    } else if (auto* box = editor->findChild<QComboBox*>(); box->isVisible()) {
        const int last = box->count() - 1;
        if (last < 0)
            return QStringLiteral("no values to choose from");
        QTest::mouseClick(box, Qt::LeftButton);
        QTest::keyClick(static_cast<QWidget*>(box->view()), Qt::Key_End);
        QTest::keyClick(static_cast<QWidget*>(box->view()), Qt::Key_Return);
        if (text() != box->itemText(last))
            return QStringLiteral("the choice was not written: %1").arg(text());
    } else {
        shown.type(sampleOf(field->dataType()).constData());
        shown.type(Qt::Key_Return);
        if (text() != QLatin1String(sampleOf(field->dataType())))
            return QStringLiteral("the text was not written: %1").arg(text());
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (editor)
        return QStringLiteral("the editor stays open");
    if (QWidget::keyboardGrabber())
        return QStringLiteral("the keyboard stays taken");
    return QString();
}

} // namespace

class tst_NodeEditorInScene : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void everyFieldOfEveryNodeTypeIsShownAndEdited();
    void valueFollowsTheFrames();
    void unreadableTextKeepsTheValueAndIsTold_data();
    void unreadableTextKeepsTheValueAndIsTold();
    void removedNodeEmptiesTheEditor();
    void anyUseLeavesTheEditorIntact_data();
    void anyUseLeavesTheEditorIntact();
};

void tst_NodeEditorInScene::cleanup()
{
    QorMFieldItem::setValueCountThreshold(50);
    QVERIFY(!QWidget::keyboardGrabber());
}

void tst_NodeEditorInScene::everyFieldOfEveryNodeTypeIsShownAndEdited()
{
    const EmbeddedWorld world;
    const LogCapture log(osg::LOG_FATAL);
    std::vector<NodeType*> types;
    NodeType::getTypeVec(types, 1);
    int edited = 0;
    NodeRef first = world.make("Group");
    Shown shown(first.get(), QSize(420, 220));
    for (NodeType* type : types) {
        const NodeRef node = world.make(*type);
        shown.editor.setNode(node.get());
        for (unsigned int part = 0; part < node->partDescCount(); ++part) {
            Field* field = node->findField(part);
            if (field->_desc->privateAccess())
                continue;
            const QByteArray place = QByteArray::fromStdString(type->name + "." + field->name());
            const QModelIndex cell = shown.cell(field);
            QVERIFY2(cell.isValid(), place);
            const bool isMulti = field->cardinality() == 1;
            const bool isEditable = field->partType() != EVENTOUTP && field->dataType() != SFIMAGE_DT;
            if (!isMulti) {
                if (!isEditable) {
                    QVERIFY2(!shown.open(cell), place);
                    continue;
                }
                const QString fault = workEditor(shown, cell, field, edited % 2 != 0);
                QVERIFY2(fault.isEmpty(), place + ": " + fault.toUtf8());
                ++edited;
                continue;
            }

            QVERIFY2(!shown.open(cell), place);
            if (field->dataType() == MFNODE_DT)
                continue;
            // Two values, in rows of their own.
            const QByteArray value = sampleOf(field->dataType());
            const QByteArray quoted = field->dataType() == MFSTRING_DT ? '"' + value + '"' : value;
            field->setValueByStr(0.0, quoted + ", " + quoted);
            QVERIFY2(field->size() == 2, place + " " + value);
            static_cast<QorFieldItem*>(cell.internalPointer())->toMFieldItem()->updateChildValues(false);
            shown.model()->renewIndexes();
            shown.view()->expand(shown.row(field));
            for (int row = 0; row < 2; ++row) {
                const QModelIndex valueCell = shown.cell(field, row);
                if (!isEditable) {
                    QVERIFY2(!shown.open(valueCell), place);
                    continue;
                }
                const QString fault = workEditor(shown, valueCell, field, edited % 2 != 0);
                QVERIFY2(fault.isEmpty(), place + " value: " + fault.toUtf8());
                QCOMPARE(field->size(), 2U);
                ++edited;
            }
            shown.view()->collapse(shown.row(field));
        }
        QVERIFY(!shown.view()->grab().isNull());
    }
    QVERIFY2(edited > 2000, QByteArray::number(edited));
}

void tst_NodeEditorInScene::valueFollowsTheFrames()
{
    const EmbeddedWorld world;
    Node& node = world.add("NavigationInfo");
    world->runFrame();
    Shown shown(&node);
    const auto picture = [&] {
        return shown.view()->viewport()->grab(shown.view()->visualRect(shown.cell("speed"))).toImage();
    };
    const QImage before = picture();
    class Watch : public QObject
    {
    public:
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::Paint)
                region |= static_cast<QPaintEvent*>(event)->region();
            return false;
        }
        QRegion region;
    };
    QTest::qWait(20);
    Watch watch;
    shown.view()->viewport()->installEventFilter(&watch);
    shown.field("speed")->setValueByStr(0.0, "8.75");
    world->runFrame();
    QVERIFY(watch.region.isEmpty());
    QTest::qWait(20);
    QCOMPARE(watch.region, QRegion(shown.view()->visualRect(shown.cell("speed"))));
    QVERIFY(picture() != before);
}

void tst_NodeEditorInScene::unreadableTextKeepsTheValueAndIsTold_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("colour") << QByteArray("Material") << QByteArray("diffuseColor") << QByteArray("red");
    QTest::newRow("colour, too short")
        << QByteArray("Material") << QByteArray("diffuseColor") << QByteArray("1 0");
    QTest::newRow("vector") << QByteArray("Transform") << QByteArray("translation") << QByteArray("1 2 x");
    QTest::newRow("rotation") << QByteArray("Transform") << QByteArray("rotation") << QByteArray("0 0 1");
    QTest::newRow("time") << QByteArray("TimeSensor") << QByteArray("cycleInterval") << QByteArray("soon");
    QTest::newRow("empty") << QByteArray("Transform") << QByteArray("scale") << QByteArray("");
}

void tst_NodeEditorInScene::unreadableTextKeepsTheValueAndIsTold()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, text);
    const EmbeddedWorld world;
    const NodeRef node = world.make(type);
    Shown shown(node.get());
    const std::string before = shown.text(field);
    QVERIFY(shown.open(shown.cell(field)));
    LogCapture log(osg::LOG_WARNING);
    shown.type(Qt::Key_Delete);
    shown.type(text.constData());
    shown.type(Qt::Key_Return);
    QCOMPARE(shown.text(field), before);
    int told = 0;
    for (const QByteArray& line : log.take())
        told += line.startsWith("Orvane ") ? 1 : 0;
    QCOMPARE(told, 1);
    // The cell shows what the field has.
    QCOMPARE(shown.cell(field).data().toString().toStdString(), before);
}

void tst_NodeEditorInScene::removedNodeEmptiesTheEditor()
{
    const EmbeddedWorld world;
    Node& node = world.add("NavigationInfo");
    Shown shown(&node);
    shown.view()->expandAll();
    QVERIFY(shown.open(shown.cell("avatarSize", 1)));
    shown.type(Qt::Key_Up);
    world.removeAdded();
    world->runFrame();
    QVERIFY(!shown.editor.node());
    QVERIFY(!shown.model());
    QTest::qWait(5);
    QVERIFY(!shown.editor.grab().isNull());
}

void tst_NodeEditorInScene::anyUseLeavesTheEditorIntact_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 6; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void tst_NodeEditorInScene::anyUseLeavesTheEditorIntact()
{
    QFETCH(quint32, seed);
    QorMFieldItem::setValueCountThreshold(6);
    const LogCapture log(osg::LOG_FATAL);
    const EmbeddedWorld world;
    NodeRef node = world.make("Script");
    const NodePartDataType types[] = {MFFLOAT_DT, SFVEC3F_DT, MFBOOL_DT,  MFSTRING_DT, SFSTRING_DT, SFBOOL_DT,
                                      MFVEC3F_DT, SFNODE_DT,  SFFLOAT_DT, MFINT32_DT,  SFINT32_DT};
    int name = 0;
    const auto fill = [&](Node& target) {
        for (const NodePartDataType type : types)
            addField(target, "f" + std::to_string(++name), type, EXPOSEDFIELDP);
    };
    fill(*node);
    Shown shown(node.get(), QSize(500, 300));
    QWidget* viewport = shown.view()->viewport();
    QRandomGenerator random(seed);
    const auto place = [&] {
        return QPoint(random.bounded(viewport->width()), random.bounded(viewport->height()));
    };
    const auto pick = [&]() -> QModelIndex {
        QModelIndex index = shown.model()->index(random.bounded(shown.model()->rowCount()), 0);
        if (random.bounded(2) && shown.model()->rowCount(index) > 0)
            index = shown.model()->index(random.bounded(shown.model()->rowCount(index)), 1, index);
        return index.sibling(index.row(), 1);
    };
    const Qt::Key keys[] = {Qt::Key_Up,       Qt::Key_Down, Qt::Key_Return, Qt::Key_Escape,  Qt::Key_Tab,
                            Qt::Key_F2,       Qt::Key_1,    Qt::Key_Minus,  Qt::Key_Left,    Qt::Key_Right,
                            Qt::Key_Asterisk, Qt::Key_End,  Qt::Key_Home,   Qt::Key_PageDown};
    for (int step = 0; step < 400; ++step) {
        if (!shown.model())
            shown.editor.setNode(node.get());
        const QModelIndex index = pick();
        switch (random.bounded(16)) {
        case 0:
        case 1:
        case 2:
            shown.open(index);
            break;
        case 3:
        case 4:
        case 5:
            shown.type(keys[random.bounded(14)]);
            break;
        case 6:
            QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, place());
            break;
        case 7:
            QTest::mouseDClick(viewport, Qt::LeftButton, Qt::NoModifier, place());
            break;
        case 8:
            shown.view()->setExpanded(index.sibling(index.row(), 0), random.bounded(3) != 0);
            break;
        case 9:
        case 10:
            shown.askForMenu(place());
            if (QMenu* menu = openMenu(); menu && !menu->isEmpty())
                QTest::mouseClick(
                    menu, Qt::LeftButton, Qt::NoModifier,
                    menu->actionGeometry(menu->actions()[random.bounded(menu->actions().size())]).center());
            while (QWidget* popup = QApplication::activePopupWidget())
                popup->close();
            break;
        case 11:
            shown.view()->verticalScrollBar()->setValue(random.bounded(40));
            break;
        case 12:
            shown.field(("f" + std::to_string(name - random.bounded(11))).c_str())->setValueByStr(0.0, "1");
            world->runFrame();
            break;
        case 13:
            shown.editor.resize(400 + random.bounded(200), 200 + random.bounded(200));
            break;
        case 14:
            if (random.bounded(4) == 0) {
                // The node dies under whatever is open.
                node = world.make("Script");
                fill(*node);
                QVERIFY(!shown.editor.node());
            }
            break;
        default:
            QTest::qWait(0);
            break;
        }
        if (random.bounded(8) == 0)
            viewport->grab();
        while (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    }
}

QTEST_MAIN(tst_NodeEditorInScene)
#include "tst_NodeEditorInScene.moc"
