// The workbench under any use, for some seconds; `orvane-random-walk` goes on for longer.
#include "Program.h"
#include <QRegularExpression>
#include <QtTest>

class tst_RandomWalk : public QObject
{
    Q_OBJECT

private slots:
    void anyUseIsSurvived_data();
    void anyUseIsSurvived();
    void theyWereNoIdleRuns();

private:
    int _counts[4] = {}; ///< scenes, changes, dialogs, menus of all runs
};

void tst_RandomWalk::anyUseIsSurvived_data()
{
    QTest::addColumn<QString>("seed");
    QTest::addColumn<QStringList>("scenes");
    const QStringList some{exampleScene(QStringLiteral("gears.x3d")),
                           exampleScene(QStringLiteral("ramp.x3d"))};
    const QStringList others{exampleScene(QStringLiteral("two-windows.x3d")),
                             exampleScene(QStringLiteral("pond.x3d"))};
    QTest::newRow("1") << QStringLiteral("1") << some;
    QTest::newRow("2") << QStringLiteral("2") << others;
    QTest::newRow("3") << QStringLiteral("3") << some + others;
}

void tst_RandomWalk::anyUseIsSurvived()
{
    QFETCH(QString, seed);
    QFETCH(QStringList, scenes);
    const Program walk = Program::run(
        QStringLiteral("orvane-random-walk"),
        QStringList{QStringLiteral("--steps"), QStringLiteral("250"), QStringLiteral("--seed"), seed} +
            scenes);
    QVERIFY2(walk.status == 0, qPrintable(walk.errors.right(8000)));
    const QRegularExpressionMatch counts =
        QRegularExpression(QStringLiteral("(\\d+) scenes, (\\d+) changes, (\\d+) dialogs, (\\d+) menus"))
            .match(walk.output);
    QVERIFY2(counts.hasMatch(), qPrintable(walk.output));
    for (int i = 0; i < 4; ++i)
        _counts[i] += counts.captured(i + 1).toInt();
}

void tst_RandomWalk::theyWereNoIdleRuns()
{
    QVERIFY(_counts[0] > 3);
    QVERIFY(_counts[1] > 40);
    QVERIFY(_counts[2] > 3);
    QVERIFY(_counts[3] > 3);
}

QTEST_GUILESS_MAIN(tst_RandomWalk)
#include "tst_RandomWalk.moc"
