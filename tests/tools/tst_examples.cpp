#include "Program.h"

#include <QFile>
#include <QTest>

class tst_examples : public QObject
{
    Q_OBJECT

private slots:
    void runs_data();
    void runs();
    void ownRuntimeFollowsItsPlant();
    void missingSceneEndsWithAMessage_data();
    void missingSceneEndsWithAMessage();
    void staysBelowEightyLines();
};

static void eachExample()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("manager") << QStringLiteral("example-manager");
    QTest::newRow("own frames") << QStringLiteral("example-own-frames");
    QTest::newRow("node editor") << QStringLiteral("example-node-editor");
    QTest::newRow("scene tree") << QStringLiteral("example-scene-tree");
    QTest::newRow("route graph") << QStringLiteral("example-route-graph");
    QTest::newRow("code") << QStringLiteral("example-code");
    QTest::newRow("log") << QStringLiteral("example-log");
    QTest::newRow("lookup table") << QStringLiteral("example-lookup-table");
    QTest::newRow("save") << QStringLiteral("example-save");
}

void tst_examples::runs_data()
{
    eachExample();
}

void tst_examples::runs()
{
    QFETCH(QString, name);
    const Program program = Program::run(
        name, {exampleScene(QStringLiteral("gears.x3d")), QStringLiteral("--frames"), QStringLiteral("5")});
    QVERIFY2(program.status == 0, qPrintable(program.errors));
    QVERIFY2(!program.errors.contains(QStringLiteral("FATAL")), qPrintable(program.errors));
}

void tst_examples::ownRuntimeFollowsItsPlant()
{
    const Program program = Program::run(QStringLiteral("example-own-runtime"),
                                         {QStringLiteral("--frames"), QStringLiteral("5")});
    QVERIFY2(program.status == 0, qPrintable(program.errors));
    QCOMPARE(program.output.trimmed(), QStringLiteral("22.5 degrees"));
}

void tst_examples::missingSceneEndsWithAMessage_data()
{
    eachExample();
}

void tst_examples::missingSceneEndsWithAMessage()
{
    QFETCH(QString, name);
    const Program program = Program::run(name, {QStringLiteral("/no/such/scene.x3d")});
    QCOMPARE(program.status, 1);
    QVERIFY(program.errors.contains(QStringLiteral("/no/such/scene.x3d")));
}

void tst_examples::staysBelowEightyLines()
{
    const QDir folder(qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/examples"));
    int found = 0;
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile source(folder.filePath(name + QStringLiteral("/main.cpp")));
        if (!source.open(QIODevice::ReadOnly))
            continue;
        ++found;
        QVERIFY2(source.readAll().count('\n') < 80, qPrintable(name));
    }
    QCOMPARE(found, 10);
}

QTEST_MAIN(tst_examples)
#include "tst_examples.moc"
