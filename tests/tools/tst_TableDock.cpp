// The lookup table painter of the workbench, over a shape on the screen that shows the table.
#include "FrameGrabber.h"
#include "Selection.h"
#include "Steps.h"
#include "TableDock.h"
#include "WorkbenchWindow.h"
#include <Orvane/Node.h>
#include <Orvane/SFImage.h>
#include <QAction>
#include <QCheckBox>
#include <QGLWidget>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QorImgCanvasImpl.h>
#include <QorImgCanvasView.h>
#include <QorViewManager.h>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_TableDock : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aTableIsFoundByTheShapeThatUsesIt();
    void nodesWithoutATableHaveNone();
    void theActionIsInTheMenuInTheToolBarAndInTheTree();
    void openingWritesNothing();
    void aStrokeShowsOnTheShapeAtOnce();
    void onlyWhatIsPaintedChanges_data();
    void onlyWhatIsPaintedChanges();
    void resettingACurveLeavesTheOtherChannels();
    void theCommandThatShowsItKeepsItsText();
    void anotherSizeIsWritten();
    void anotherImageIsWritten();
    void otherWritersAreFollowed();
    void aFieldWithoutATableRestsThePainter();
    void aTableOfOneEntryIsPainted();
    void greyBecomesColour();
    void anotherSceneRestsThePainter();

private:
    void open(const QByteArray& image);
    void runFrames(int count);
    void paint(QPoint from, QPoint to);
    Node* nodeCalled(const char* name) const;
    SFImage& image() const
    {
        return static_cast<SFImage&>(*nodeCalled("Ramp")->findField("image", Node::EXACT_FSO));
    }
    TableDock* dock() const { return _window->findChild<TableDock*>(); }
    QorImgCanvasImpl* painter() const { return dock()->findChild<QorImgCanvasImpl*>(); }
    QorImgCanvasView* canvas() const { return dock()->findChild<QorImgCanvasView*>(); }
    /// Of the table in the field, which has four channels.
    std::vector<osg::UInt8> bytes() const
    {
        const osg::ImagePtr table = image().image().rco();
        return {table->getData(), table->getData() + table->getSize()};
    }
    void edit(const char* name = "Ramp");
    /// The colour that the shape has at a share of its width.
    QColor colorAt(double share) const;

    FrameGrabber _grabber; // before the first view manager
    std::unique_ptr<WorkbenchWindow> _window;
    QTemporaryDir _folder;
    int _count = 0;
};

static QByteArray row(int width, const QByteArray& components, const QByteArray& pixel)
{
    return QByteArray::number(width) + " 1 " + components + (" " + pixel).repeated(width);
}

/// A colour that rises unevenly, and the table that it makes.
static std::vector<osg::UInt8> rampBytes(int width)
{
    std::vector<osg::UInt8> table;
    for (int i = 0; i < width; ++i)
        for (const int value : {16 + i * 128 / width, 32 + i * i * 200 / (width * width), 250 - i * 3, 255})
            table.push_back(static_cast<osg::UInt8>(value));
    return table;
}

static QByteArray ramp(int width)
{
    const std::vector<osg::UInt8> table = rampBytes(width);
    QByteArray text = QByteArray::number(width) + " 1 3";
    for (std::size_t i = 0; i < table.size(); i += 4)
        text += " 0x" + QByteArray(reinterpret_cast<const char*>(&table[i]), 3).toHex();
    return text;
}

void tst_TableDock::init()
{
    _window = std::make_unique<WorkbenchWindow>(false);
    _window->resize(1000, 700);
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
    _grabber.setActive(true);
    open(row(64, "3", "0x000000"));
}

void tst_TableDock::cleanup()
{
    _window.reset();
}

/// A face that fills the view, black until the table is painted.
void tst_TableDock::open(const QByteArray& image)
{
    const QString name = _folder.filePath(QStringLiteral("scene%1.x3d").arg(++_count));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<X3D version='4.0'><Scene><Viewpoint position='0 0 2'/><Group DEF='Empty'/>"
               "<Transform DEF='Place'><Shape DEF='S'><Appearance><Material diffuseColor='1 1 1'/>"
               "<PixelTexture DEF='Ramp' repeatS='false' repeatT='false' image='" +
               image +
               "'/></Appearance><IndexedFaceSet solid='false' coordIndex='0 1 2 3 -1'>"
               "<Coordinate point='-2 -2 0 2 -2 0 2 2 0 -2 2 0'/>"
               "<TextureCoordinate point='0 0 1 0 1 1 0 1'/></IndexedFaceSet></Shape></Transform>"
               "</Scene></X3D>");
    file.close();
    QVERIFY2(_window->open(name), qPrintable(_window->loadError()));
    runFrames(3);
}

void tst_TableDock::runFrames(int count)
{
    for (int i = 0; i < count; ++i) {
        _window->viewManager()->runFrame();
        QCoreApplication::processEvents();
    }
}

Node* tst_TableDock::nodeCalled(const char* name) const
{
    _window->showNode(QString::fromLatin1(name));
    return _window->selection()->node();
}

/// Opens the painter, beside what is looked at.
void tst_TableDock::edit(const char* name)
{
    nodeCalled(name);
    dock()->move(400, 480);
    dock()->action()->trigger();
    QVERIFY(QTest::qWaitForWindowExposed(dock()));
    QCoreApplication::processEvents();
}

/// Presses the left button and moves. QTest takes the upper left corner for no place at all.
void tst_TableDock::paint(QPoint from, QPoint to)
{
    QMouseEvent press(QEvent::MouseButtonPress, from, canvas()->mapToGlobal(from), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(canvas(), &press);
    QMouseEvent move(QEvent::MouseMove, to, canvas()->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(canvas(), &move);
}

QColor tst_TableDock::colorAt(double share) const
{
    auto* gl = _window->findChild<QGLWidget*>();
    const QImage picture = _grabber.picture(gl);
    return picture.isNull()
               ? QColor()
               : QColor(picture.pixel(static_cast<int>(share * picture.width()), picture.height() / 2));
}

void tst_TableDock::aTableIsFoundByTheShapeThatUsesIt()
{
    SFImage* table = &image();
    for (const char* name : {"Ramp", "S", "Place"}) {
        QCOMPARE(TableDock::findTable(nodeCalled(name)), table);
        QVERIFY(dock()->action()->isEnabled());
    }
}

void tst_TableDock::nodesWithoutATableHaveNone()
{
    QVERIFY(!TableDock::findTable(nullptr));
    QVERIFY(!TableDock::findTable(nodeCalled("Empty")));
    QVERIFY(!dock()->action()->isEnabled());
    for (const QByteArray& other : {QByteArray("0 0 0"), QByteArray("1 2 3 0xFF0000 0x00FF00")}) {
        open(other);
        QVERIFY(!TableDock::findTable(nodeCalled("Ramp")));
        QVERIFY(!dock()->action()->isEnabled());
        QVERIFY(!dock()->open(image()));
        QVERIFY(!dock()->isVisible());
    }
}

void tst_TableDock::theActionIsInTheMenuInTheToolBarAndInTheTree()
{
    int places = 0;
    const auto widgets = _window->findChildren<QWidget*>();
    for (const QWidget* widget : widgets)
        places += widget->actions().contains(dock()->action()) ? 1 : 0;
    QCOMPARE(places, 4); // a button of the tool bar has it too;
}

void tst_TableDock::openingWritesNothing()
{
    const osg::ImagePtr before = image().image().rco();
    QVERIFY(!dock()->isVisible());
    edit("S");
    QVERIFY(dock()->isVisible());
    QVERIFY(painter()->isEnabled());
    QVERIFY(dock()->windowTitle().contains(QStringLiteral("Ramp")));
    QCOMPARE(painter()->findChild<QLineEdit*>(QStringLiteral("lineSize"))->text(), QStringLiteral("64"));
    QVERIFY(image().image().rco() == before);
    QVERIFY(painter()->getImage() != before);
}

void tst_TableDock::aStrokeShowsOnTheShapeAtOnce()
{
    edit();
    runFrames(2);
    QCOMPARE(colorAt(0.5), QColor(Qt::black));
    painter()->findChild<QCheckBox*>(QStringLiteral("SetRed"))->click();
    const int right = canvas()->width() - 1;
    paint(QPoint(0, 0), QPoint(right, 0));
    runFrames(2);
    // The button is still down.
    QVERIFY(colorAt(0.3).red() > 240);
    QVERIFY(colorAt(0.7).red() > 240);
    QVERIFY(colorAt(0.5).green() < 15);
    QTest::mouseRelease(canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(right, 0));

    // The right half falls to nothing, in the node's value and on the screen.
    const int bottom = canvas()->height() - 1;
    QTest::mouseClick(canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(right / 2, 0));
    paint(QPoint(right / 2 + 1, bottom), QPoint(right, bottom));
    QTest::mouseRelease(canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(right, bottom));
    runFrames(2);
    QVERIFY(colorAt(0.3).red() > 240);
    QVERIFY(colorAt(0.7).red() < 15);
    const QString text = QString::fromStdString(image().valueToString());
    QVERIFY2(text.startsWith(QStringLiteral("64 1 4 0xFF0000FF 0xFF0000FF")), qPrintable(text));
    QVERIFY2(text.endsWith(QStringLiteral(" 0x000000FF")), qPrintable(text));
}

void tst_TableDock::onlyWhatIsPaintedChanges_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("16") << 16;
    QTest::newRow("64") << 64;
}

void tst_TableDock::onlyWhatIsPaintedChanges()
{
    QFETCH(int, width);
    open(ramp(width));
    edit();
    const QString first = QString::fromStdString(image().valueToString());
    painter()->findChild<QCheckBox*>(QStringLiteral("SetRed"))->click();
    const std::vector<osg::UInt8> before = rampBytes(width);
    const int right = canvas()->width() - 1;
    for (const int start : {right / 2, right / 4}) {
        const std::vector<osg::UInt8> old = start == right / 2 ? before : bytes();
        const int end = start + right / 8;
        paint(QPoint(start, 0), QPoint(end, 0));
        QTest::mouseRelease(canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(end, 0));
        const std::vector<osg::UInt8> painted = bytes();
        QCOMPARE(painted.size(), before.size());
        QVERIFY(painted != old);
        QCOMPARE(painted[4 * static_cast<std::size_t>((width - 1) * (start + end) / (2 * right))],
                 osg::UInt8(255));
        for (int i = 0; i < width; ++i) {
            const bool isFar = i < (width - 1) * start / right - 1 || i > (width - 1) * end / right + 2;
            for (int channel = isFar ? 0 : 1; channel < 4; ++channel) {
                const auto k = static_cast<std::size_t>(4 * i + channel);
                QVERIFY2(painted[k] == old[k],
                         qPrintable(QStringLiteral("entry %1, channel %2").arg(i).arg(channel)));
            }
        }
        dock()->resize(dock()->width() + 37, dock()->height()); // the curves are placed on other pixels
        runFrames(2);
    }
    auto* const steps = _window->findChild<Steps*>();
    QCOMPARE(steps->index(), 2);
    steps->undo();
    steps->undo();
    QCOMPARE(QString::fromStdString(image().valueToString()), first);
    runFrames(2);
    QVERIFY(std::equal(before.begin(), before.end(), painter()->getImage()->getData()));
}

void tst_TableDock::resettingACurveLeavesTheOtherChannels()
{
    open(ramp(16));
    edit();
    painter()->findChild<QCheckBox*>(QStringLiteral("SetGreen"))->click();
    QTest::mouseClick(painter()->findChild<QPushButton*>(QStringLiteral("buttonCancel")), Qt::LeftButton);
    const std::vector<osg::UInt8> before = rampBytes(16);
    const std::vector<osg::UInt8> after = bytes();
    QCOMPARE(after.size(), before.size());
    QVERIFY(after != before);
    for (std::size_t i = 0; i < after.size(); ++i)
        QVERIFY(i % 4 == 1 || after[i] == before[i]);
}

void tst_TableDock::theCommandThatShowsItKeepsItsText()
{
    const QString text = dock()->toggleViewAction()->text();
    edit();
    QVERIFY(dock()->windowTitle() != text);
    QCOMPARE(dock()->toggleViewAction()->text(), text);
    QCOMPARE(text, QStringLiteral("Lookup table"));
}

void tst_TableDock::anotherSizeIsWritten()
{
    edit();
    painter()->findChild<QLineEdit*>(QStringLiteral("lineSize"))->setText(QStringLiteral("12"));
    runFrames(2);
    QCOMPARE(image().image().width(), 12);
    QCOMPARE(image().image().height(), 1);
}

void tst_TableDock::anotherImageIsWritten()
{
    edit();
    osg::ImagePtr other = osg::Image::create();
    other->set(osg::Image::OSG_RGBA_PF, 2, 1);
    std::fill_n(other->getData(), 8, osg::UInt8(255));
    canvas()->setImage(other); // as an opened file does
    runFrames(2);
    QCOMPARE(image().image().width(), 2);
    QCOMPARE(colorAt(0.5), QColor(Qt::white));
}

void tst_TableDock::otherWritersAreFollowed()
{
    edit();
    image().setValueByStr(0.0, "3 1 3 0xFF0000 0x00FF00 0x0000FF");
    runFrames(2);
    QCOMPARE(painter()->getImage()->getWidth(), 3);
    QCOMPARE(painter()->getImage()->getData()[5], osg::UInt8(255));
    QVERIFY(painter()->isEnabled());
    // What follows does not write in its turn.
    QCOMPARE(QString::fromStdString(image().valueToString()),
             QStringLiteral("3 1 3 0xFF0000 0x00FF00 0x0000FF"));
}

void tst_TableDock::aFieldWithoutATableRestsThePainter()
{
    edit();
    image().setValueByStr(0.0, "0 0 0");
    runFrames(2);
    QVERIFY(!painter()->isEnabled());
    painter()->setSize(QStringLiteral("8"));
    QCOMPARE(image().image().width(), 0);
}

void tst_TableDock::aTableOfOneEntryIsPainted()
{
    open("1 1 3 0x102030");
    edit();
    QVERIFY(painter()->isEnabled());
    painter()->setAll(true);
    paint(QPoint(0, 0), QPoint(canvas()->width() - 1, 0));
    QTest::mouseRelease(canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(canvas()->width() - 1, 0));
    runFrames(2);
    QCOMPARE(image().image().width(), 1);
}

void tst_TableDock::greyBecomesColour()
{
    open(row(16, "1", "0x80"));
    edit();
    QVERIFY(painter()->isEnabled());
    QCOMPARE(painter()->getImage()->getPixelFormat(), osg::UInt32(osg::Image::OSG_RGBA_PF));
    const osg::UInt8 grey[] = {128, 128, 128, 255};
    QVERIFY(std::equal(std::begin(grey), std::end(grey), painter()->getImage()->getData()));
}

void tst_TableDock::anotherSceneRestsThePainter()
{
    edit();
    painter()->setAll(true);
    paint(QPoint(0, 0), QPoint(50, 0)); // the stroke is not over yet
    open(row(8, "3", "0x00FF00"));
    QVERIFY(!painter()->isEnabled());
    painter()->setSize(QStringLiteral("5"));
    runFrames(2);
    QCOMPARE(image().image().width(), 8);
    edit();
    QVERIFY(painter()->isEnabled());
    QCOMPARE(painter()->getImage()->getWidth(), 8);
}

QTEST_MAIN(tst_TableDock)
#include "tst_TableDock.moc"
