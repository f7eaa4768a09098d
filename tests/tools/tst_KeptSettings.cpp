// What a window keeps for the next one, and what it does not.
#include "WorkbenchWindow.h"
#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>
#include <algorithm>

class tst_KeptSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { _window.reset(); }

    void theWindowIsRemembered();
    void darkColoursOfOneRunAreNotKept();

private:
    QTemporaryDir _settings;
    std::unique_ptr<WorkbenchWindow> _window;
};

void tst_KeptSettings::initTestCase()
{
    QCoreApplication::setOrganizationName(QStringLiteral("orvane-test"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, _settings.path());
}

void tst_KeptSettings::init()
{
    QSettings().clear();
    _window = std::make_unique<WorkbenchWindow>(false);
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
}

void tst_KeptSettings::theWindowIsRemembered()
{
    QVERIFY(!_window->useSettings());
    _window->resize(777, 555);
    auto* const dock = _window->findChild<QDockWidget*>(QStringLiteral("NodeDock"));
    dock->hide();
    _window->findChild<QDockWidget*>(QStringLiteral("SceneDock"))
        ->findChild<QComboBox*>()
        ->setCurrentIndex(2);
    _window->findChild<QLineEdit*>(QStringLiteral("types"))->setText(QStringLiteral("Box, Sphere"));
    _window->setDark(true);
    QVERIFY(_window->palette().color(QPalette::Window).lightness() < 100);
    QVERIFY(_window->close());
    _window->setDark(false);

    _window = std::make_unique<WorkbenchWindow>(false);
    QVERIFY(_window->useSettings());
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
    QCOMPARE(_window->size(), QSize(777, 555));
    QVERIFY(_window->findChild<QDockWidget*>(QStringLiteral("NodeDock"))->isHidden());
    QCOMPARE(_window->findChild<QLineEdit*>(QStringLiteral("types"))->text(), QStringLiteral("Box, Sphere"));
    QCOMPARE(_window->findChild<QDockWidget*>(QStringLiteral("SceneDock"))
                 ->findChild<QComboBox*>()
                 ->currentIndex(),
             2);
    QVERIFY(_window->palette().color(QPalette::Window).lightness() < 100);
    _window->setDark(false);
}

void tst_KeptSettings::darkColoursOfOneRunAreNotKept()
{
    const auto goOnNextTime = [this] {
        QVERIFY2(_window->close(), "there is nothing to ask about");
        _window->setDark(false);
        _window = std::make_unique<WorkbenchWindow>(false);
        _window->useSettings();
    };
    const auto isDark = [this] { return _window->palette().color(QPalette::Window).lightness() < 100; };
    _window->useSettings();
    _window->showDark(true);
    QVERIFY(isDark());
    goOnNextTime();
    QVERIFY(!isDark());
    // What the user chooses then is kept.
    _window->showDark(true);
    const auto actions = _window->findChildren<QAction*>();
    const auto isChoice = [](const QAction* action) {
        return action->text().contains(QStringLiteral("&Dark"));
    };
    QAction* const choice = *std::find_if(actions.begin(), actions.end(), isChoice);
    choice->trigger();
    QVERIFY(!isDark());
    choice->trigger();
    goOnNextTime();
    QVERIFY(isDark());
    _window->setDark(false);
}

QTEST_MAIN(tst_KeptSettings)
#include "tst_KeptSettings.moc"
