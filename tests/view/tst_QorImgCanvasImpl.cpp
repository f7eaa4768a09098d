#include "QorImgCanvasImpl.h"
#include "QorImgCanvasView.h"
#include <QtGui/QIntValidator>
#include <QtTest>

using namespace Orvane::Qt4;

namespace {

class Frame : public QorImgCanvasImpl
{
public:
    Frame()
        : QorImgCanvasImpl(nullptr)
    {
        show();
    }
    ~Frame() override
    {
        osg::ImagePtr image = getImage();
        osg::subRefCP(image);
    }

    template <class Widget>
    Widget* child(const char* name) const
    {
        return findChild<Widget*>(QString::fromLatin1(name));
    }
    QorImgCanvasView* canvas() const { return findChild<QorImgCanvasView*>(); }
    QLineEdit* line() const { return child<QLineEdit>("lineSize"); }
    int entry(int i, int channel) { return getImage()->getData(0, 0, 0)[4 * i + channel]; }
};

} // namespace

class tst_QorImgCanvasImpl : public QObject
{
    Q_OBJECT

private slots:
    void formHasItsTexts();
    void formHasItsSizesAndPolicies();
    void formHasItsLayouts();
    void canvasFillsTheFrameBeside();
    void hostsNameWins();
    void sizesThatCanBeTyped();
    void typingASizeResizesTheTable();
    void textThatIsNoNumberIsIgnored();
    void setAllTicksTheFour();
    void boxesSwitchChannels_data();
    void boxesSwitchChannels();
    void lagrangeCannotBeChosen();
    void gridSliderSetsTheGrid();
    void resetButtonClears();
    void setImageShowsItsWidth();
    void setImageOfNullShowsTwo();
    void refusedImageShowsItsWidthAllTheSame();
    void closingTells();
};

void tst_QorImgCanvasImpl::formHasItsTexts()
{
    Frame frame;
    QCOMPARE(frame.windowTitle(), QStringLiteral("Lookup Table Painter"));
    const QVector<QPair<const char*, const char*>> texts = {{"InterpolationLinear", "Linear"},
                                                            {"InterpolationLagrange", "Lagrange"},
                                                            {"SetRed", "Red"},
                                                            {"SetGreen", "Green"},
                                                            {"SetBlue", "Blue"},
                                                            {"SetAlpha", "Alpha"},
                                                            {"SetAll", "[Re]Set All"},
                                                            {"lblSize", "Size:"},
                                                            {"lineSize", "256"},
                                                            {"textLabel1", "Grid:"},
                                                            {"buttonCancel", "&Reset Curve"},
                                                            {"buttonOk", "&Save"},
                                                            {"buttonOpen", "&Open"}};
    for (const auto& [name, text] : texts) {
        const auto* widget = frame.child<QWidget>(name);
        QVERIFY2(widget, name);
        QCOMPARE(widget->property("text").toString(), QString::fromLatin1(text));
    }
    QCOMPARE(frame.child<QGroupBox>("Interpolation")->title(), QStringLiteral("Interpolation"));
    QCOMPARE(frame.child<QGroupBox>("Set")->title(), QStringLiteral("Color Channel"));
    QCOMPARE(frame.child<QPushButton>("buttonCancel")->shortcut().toString(), QStringLiteral("Alt+R"));
    QCOMPARE(frame.child<QPushButton>("buttonOk")->shortcut().toString(), QStringLiteral("Alt+S"));
    QCOMPARE(frame.child<QPushButton>("buttonOpen")->shortcut().toString(), QStringLiteral("Alt+O"));
    QCOMPARE(frame.child<QPushButton>("buttonOk")->windowTitle(), QString());
}

void tst_QorImgCanvasImpl::formHasItsSizesAndPolicies()
{
    Frame frame;
    const auto policy = [&](const char* name) { return frame.child<QWidget>(name)->sizePolicy(); };
    const auto largest = [&](const char* name) { return frame.child<QWidget>(name)->maximumSize(); };
    using P = QSizePolicy;
    const auto stretched = [](P policy) {
        policy.setHorizontalStretch(1);
        return policy;
    };
    QCOMPARE(frame.sizePolicy(), P(P::Expanding, P::Expanding));
    QCOMPARE(policy("Interpolation"), P(P::Minimum, P::Minimum));
    QCOMPARE(policy("Set"), P(P::Minimum, P::Minimum));
    QCOMPARE(policy("InterpolationLagrange").verticalPolicy(), P::Fixed);
    QCOMPARE(policy("lblSize").horizontalPolicy(), P::Minimum);
    QCOMPARE(policy("lblSize").verticalPolicy(), P::Preferred);
    QCOMPARE(policy("lineSize"), stretched(P(P::Minimum, P::Fixed)));
    QCOMPARE(policy("gridSlider"), stretched(P(P::Preferred, P::Minimum)));
    QCOMPARE(policy("buttonCancel"), P(P::Minimum, P::Minimum));
    QCOMPARE(policy("buttonOk"), P(P::Minimum, P::Preferred));
    QCOMPARE(policy("buttonOpen"), P(P::Minimum, P::Preferred));
    QCOMPARE(largest("Interpolation"), QSize(32000, 70));
    QCOMPARE(largest("Set"), QSize(32000, 160));
    QCOMPARE(largest("lblSize"), QSize(32000, 30));
    QCOMPARE(largest("lineSize"), QSize(32000, 30));
    QCOMPARE(largest("textLabel1"), QSize(30, 30));
    QCOMPARE(largest("gridSlider"), QSize(32000, 20));
    for (const char* button : {"buttonCancel", "buttonOk", "buttonOpen"}) {
        QCOMPARE(largest(button), QSize(32000, 30));
        QVERIFY(frame.child<QPushButton>(button)->autoDefault());
    }
    QVERIFY(!frame.child<QPushButton>("buttonCancel")->isDefault());
    QVERIFY(frame.child<QPushButton>("buttonOk")->isDefault());
    QVERIFY(frame.child<QPushButton>("buttonOpen")->isDefault());
    QCOMPARE(frame.child<QWidget>("layoutWidget")->geometry(), QRect(QPoint(10, 20), QPoint(230, 69)));
    QCOMPARE(frame.child<QWidget>("layoutWidget1")->geometry(), QRect(QPoint(11, 21), QPoint(231, 118)));
    QCOMPARE(frame.child<QWidget>("Interpolation")->focusPolicy(), Qt::NoFocus);
    QCOMPARE(frame.child<QLineEdit>("lineSize")->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight);
    auto* slider = frame.child<QSlider>("gridSlider");
    QCOMPARE(slider->minimum(), 0);
    QCOMPARE(slider->maximum(), 8);
    QCOMPARE(slider->pageStep(), 4);
    QCOMPARE(slider->value(), 2);
    QCOMPARE(slider->orientation(), Qt::Horizontal);
}

void tst_QorImgCanvasImpl::formHasItsLayouts()
{
    Frame frame;
    auto* grid = qobject_cast<QGridLayout*>(frame.layout());
    QVERIFY(grid);
    QCOMPARE(grid->objectName(), QStringLiteral("gridLayout"));
    QCOMPARE(grid->contentsMargins(), QMargins(9, 9, 9, 9));
    QCOMPARE(grid->spacing(), 6);
    auto* row = qobject_cast<QHBoxLayout*>(grid->itemAtPosition(0, 0)->layout());
    QVERIFY(row);
    auto* column = qobject_cast<QVBoxLayout*>(row->itemAt(0)->layout());
    QVERIFY(column);
    QStringList names;
    for (int i = 0; i < column->count(); ++i) {
        QLayoutItem* item = column->itemAt(i);
        names += item->widget()   ? item->widget()->objectName()
                 : item->layout() ? item->layout()->objectName()
                                  : QStringLiteral("-");
    }
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("Interpolation Set hboxLayout2 hboxLayout3 - buttonCancel hboxLayout4"));
    QCOMPARE(column->itemAt(4)->spacerItem()->sizeHint(), QSize(252, 21));
    QCOMPARE(row->itemAt(1)->widget()->objectName(), QStringLiteral("frame"));
    auto* box = frame.child<QFrame>("frame");
    QCOMPARE(box->frameShape(), QFrame::StyledPanel);
    QCOMPARE(box->frameShadow(), QFrame::Raised);
}

void tst_QorImgCanvasImpl::canvasFillsTheFrameBeside()
{
    Frame frame;
    QCOMPARE(frame.objectName(), QStringLiteral("QorImgCanvas"));
    QCOMPARE(frame.focusPolicy(), Qt::StrongFocus);
    QCOMPARE(frame.canvas()->minimumSize(), QSize(400, 400));
    QCOMPARE(frame.canvas()->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, QSizePolicy::Minimum));
    auto* box = frame.child<QFrame>("frame");
    QCOMPARE(box->layout()->itemAt(0)->widget(), frame.canvas());
    QCOMPARE(qobject_cast<QHBoxLayout*>(box->layout())->stretch(0), 10);
    QVERIFY(box->width() >= 400);
}

void tst_QorImgCanvasImpl::hostsNameWins()
{
    QorImgCanvasImpl frame(nullptr, "mine");
    QCOMPARE(frame.objectName(), QStringLiteral("mine"));
    osg::subRefCP(frame.getImage());
}

void tst_QorImgCanvasImpl::sizesThatCanBeTyped()
{
    Frame frame;
    QString text = QStringLiteral("65536");
    int position = 0;
    const QValidator* validator = frame.line()->validator();
    QCOMPARE(validator->validate(text, position), QValidator::Acceptable);
    text = QStringLiteral("65537");
    QVERIFY(validator->validate(text, position) != QValidator::Acceptable);
    text = QStringLiteral("2");
    QCOMPARE(validator->validate(text, position), QValidator::Acceptable);
    text = QStringLiteral("1");
    QCOMPARE(validator->validate(text, position), QValidator::Intermediate);
}

void tst_QorImgCanvasImpl::typingASizeResizesTheTable()
{
    Frame frame;
    QSignalSpy changed(&frame, &QorImgCanvasImpl::imageChanged);
    frame.line()->selectAll();
    QTest::keyClick(frame.line(), Qt::Key_1);
    QCOMPARE(frame.getImage()->getWidth(), 1);
    QTest::keyClick(frame.line(), Qt::Key_2);
    QCOMPARE(frame.getImage()->getWidth(), 12);
    QTest::keyClick(frame.line(), Qt::Key_8);
    QCOMPARE(frame.getImage()->getWidth(), 128);
    QCOMPARE(changed.count(), 3);
}

void tst_QorImgCanvasImpl::textThatIsNoNumberIsIgnored()
{
    Frame frame;
    QSignalSpy changed(&frame, &QorImgCanvasImpl::imageChanged);
    frame.setSize(QString());
    frame.setSize(QStringLiteral("many"));
    frame.line()->clear();
    QCOMPARE(changed.count(), 0);
    QCOMPARE(frame.getImage()->getWidth(), 256);
}

void tst_QorImgCanvasImpl::setAllTicksTheFour()
{
    Frame frame;
    const auto ticked = [&] {
        QString bits;
        for (const char* name : {"SetRed", "SetGreen", "SetBlue", "SetAlpha", "SetAll"})
            bits += QLatin1Char(frame.child<QCheckBox>(name)->isChecked() ? '1' : '0');
        return bits;
    };
    QCOMPARE(ticked(), QStringLiteral("00000"));
    auto* all = frame.child<QCheckBox>("SetAll");
    QTest::mouseClick(all, Qt::LeftButton, {}, QPoint(8, all->height() / 2));
    QCOMPARE(ticked(), QStringLiteral("11111"));
    frame.child<QCheckBox>("SetGreen")->click();
    QCOMPARE(ticked(), QStringLiteral("10111"));
    all->click();
    QCOMPARE(ticked(), QStringLiteral("00000"));
    frame.setAll(true);
    QCOMPARE(ticked(), QStringLiteral("11110"));
}

void tst_QorImgCanvasImpl::boxesSwitchChannels_data()
{
    QTest::addColumn<QByteArray>("box");
    QTest::addColumn<int>("channel");
    QTest::newRow("red") << QByteArray("SetRed") << 0;
    QTest::newRow("green") << QByteArray("SetGreen") << 1;
    QTest::newRow("blue") << QByteArray("SetBlue") << 2;
    QTest::newRow("alpha") << QByteArray("SetAlpha") << 3;
}

void tst_QorImgCanvasImpl::boxesSwitchChannels()
{
    QFETCH(QByteArray, box);
    QFETCH(int, channel);
    Frame frame;
    frame.child<QCheckBox>(box.constData())->click();
    QTest::mouseClick(frame.canvas(), Qt::LeftButton, {}, QPoint(frame.canvas()->width() / 2, 0));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(frame.entry(127, i) > 200, i == channel);
}

void tst_QorImgCanvasImpl::lagrangeCannotBeChosen()
{
    Frame frame;
    auto* lagrange = frame.child<QRadioButton>("InterpolationLagrange");
    QVERIFY(!lagrange->isEnabled());
    QCOMPARE(lagrange->focusPolicy(), Qt::NoFocus);
    QTest::mouseClick(lagrange, Qt::LeftButton);
    QVERIFY(!lagrange->isChecked());
    QVERIFY(frame.child<QRadioButton>("InterpolationLinear")->isChecked());
}

void tst_QorImgCanvasImpl::gridSliderSetsTheGrid()
{
    Frame frame;
    const QImage four = frame.canvas()->grab().toImage();
    frame.child<QSlider>("gridSlider")->setValue(0);
    const QImage none = frame.canvas()->grab().toImage();
    QVERIFY(four != none);
    // No lines: the middle of the upper left quarter is as the background.
    QCOMPARE(none.pixel(frame.canvas()->width() / 4, 30), none.pixel(30, 30));
    frame.child<QSlider>("gridSlider")->setValue(2);
    QCOMPARE(frame.canvas()->grab().toImage(), four);
}

void tst_QorImgCanvasImpl::resetButtonClears()
{
    Frame frame;
    frame.setAll(true);
    QTest::mouseClick(frame.canvas(), Qt::LeftButton, {}, QPoint(frame.canvas()->width() / 2, 0));
    QVERIFY(frame.entry(127, 0) > 200);
    QTest::mouseClick(frame.child<QPushButton>("buttonCancel"), Qt::LeftButton);
    QVERIFY(frame.entry(127, 0) < 130);
}

void tst_QorImgCanvasImpl::setImageShowsItsWidth()
{
    Frame frame;
    osg::ImagePtr image = osg::Image::create();
    image->set(osg::Image::OSG_RGBA_PF, 77, 1);
    image->getData(0, 0, 0)[4 * 30] = 200;
    osg::subRefCP(frame.getImage());
    QSignalSpy changed(&frame, &QorImgCanvasImpl::imageChanged);
    frame.setImage(image);
    QCOMPARE(frame.line()->text(), QStringLiteral("77"));
    QVERIFY(frame.getImage() == image);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(frame.entry(30, 0), 200); // was not written to
    // Typing works again.
    frame.line()->setText(QStringLiteral("16"));
    QCOMPARE(image->getWidth(), 16);
}

void tst_QorImgCanvasImpl::setImageOfNullShowsTwo()
{
    Frame frame;
    const osg::ImagePtr before = frame.getImage();
    QSignalSpy changed(&frame, &QorImgCanvasImpl::imageChanged);
    frame.setImage(osg::NullFC);
    QCOMPARE(frame.line()->text(), QStringLiteral("2"));
    QVERIFY(frame.getImage() == before);
    QCOMPARE(before->getWidth(), 256);
    QCOMPARE(changed.count(), 0);
}

void tst_QorImgCanvasImpl::refusedImageShowsItsWidthAllTheSame()
{
    Frame frame;
    const osg::ImagePtr before = frame.getImage();
    osg::ImagePtr image = osg::Image::create();
    image->set(osg::Image::OSG_RGB_PF, 33, 4);
    frame.setImage(image);
    osg::subRefCP(image);
    QCOMPARE(frame.line()->text(), QStringLiteral("33"));
    QVERIFY(frame.getImage() == before);
}

void tst_QorImgCanvasImpl::closingTells()
{
    Frame frame;
    QSignalSpy closed(&frame, &QorImgCanvasImpl::closed);
    QVERIFY(frame.close());
    QCOMPARE(closed.count(), 1);
    QVERIFY(!frame.isVisible());
}

QTEST_MAIN(tst_QorImgCanvasImpl)
#include "tst_QorImgCanvasImpl.moc"
