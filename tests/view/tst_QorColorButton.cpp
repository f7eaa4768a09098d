#include "QorColorButton.h"
#include <QtTest>

using Orvane::Qt4::QorColorButton;

class tst_QorColorButton : public QObject
{
    Q_OBJECT

private slots:
    void colorLivesInThePalette();
    void enabledButtonIsFilledWithItsColor();
    void disabledButtonKeepsOnlyItsFrame();
    void setColorOnDisabledButtonChangesColorAndFrame();
    void flatIsIgnored();
    void sizeFollowsTheFont();
    void clickIsReported();
};

namespace {

QColor pixelOf(QorColorButton& button, int x, int y)
{
    return button.grab().toImage().pixelColor(x, y);
}

} // namespace

void tst_QorColorButton::colorLivesInThePalette()
{
    QorColorButton button(nullptr);
    button.setColor(QColor(10, 20, 30));
    QCOMPARE(button.color(), QColor(10, 20, 30));
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(button.palette().color(group, QPalette::Button), QColor(10, 20, 30));
    QPalette colors;
    colors.setColor(QPalette::Button, Qt::yellow);
    button.setPalette(colors);
    QCOMPARE(button.color(), QColor(Qt::yellow));
}

void tst_QorColorButton::enabledButtonIsFilledWithItsColor()
{
    QorColorButton button;
    button.resize(20, 10);
    button.setColor(QColor(200, 20, 30));
    const QImage image = button.grab().toImage();
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 20; ++x)
            QCOMPARE(image.pixelColor(x, y), QColor(200, 20, 30));
    }
}

void tst_QorColorButton::disabledButtonKeepsOnlyItsFrame()
{
    QorColorButton button;
    button.resize(20, 10);
    button.setColor(QColor(200, 20, 30));
    button.setEnabled(false);
    QCOMPARE(pixelOf(button, 0, 0), QColor(200, 20, 30));
    QCOMPARE(pixelOf(button, 10, 0), QColor(200, 20, 30));
    QCOMPARE(pixelOf(button, 10, 5), button.palette().color(QPalette::Disabled, QPalette::Window));
}

void tst_QorColorButton::setColorOnDisabledButtonChangesColorAndFrame()
{
    QorColorButton button;
    button.resize(20, 10);
    button.setEnabled(false);
    const QColor fill = pixelOf(button, 10, 5);
    button.setColor(Qt::blue);
    QCOMPARE(button.color(), QColor(Qt::blue));
    QCOMPARE(pixelOf(button, 0, 5), QColor(Qt::blue));
    QCOMPARE(pixelOf(button, 10, 5), fill);
}

void tst_QorColorButton::flatIsIgnored()
{
    QorColorButton button;
    button.resize(20, 10);
    button.setColor(Qt::red);
    const QImage before = button.grab().toImage();
    button.setFlat(true);
    QCOMPARE(button.grab().toImage(), before);
}

void tst_QorColorButton::sizeFollowsTheFont()
{
    QorColorButton button;
    const int height = button.fontMetrics().height();
    QCOMPARE(button.sizeHint(), QSize(2 * height, height + 4));
}

void tst_QorColorButton::clickIsReported()
{
    QorColorButton button;
    button.resize(20, 10);
    button.show();
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
}

QTEST_MAIN(tst_QorColorButton)
#include "tst_QorColorButton.moc"
