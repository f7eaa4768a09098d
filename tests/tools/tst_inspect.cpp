#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// The command as its user meets it: what it prints and how it ends.
class tst_inspect : public QObject
{
    Q_OBJECT

private slots:
    void goodSceneEndsWithZero();
    void badSceneEndsWithOneAndItsPlace();
    void oneBadSceneOfSeveralEndsWithOne();
    void badUsageEndsWithTwo_data();
    void badUsageEndsWithTwo();
    void jsonHoldsEveryScene();
    void jsonIsValidWhateverTheTextsHold();
    void framesRunWithoutAWindow();
    void convertWritesTheScene();
    void convertSaysWhatTheEncodingHasNoWordsFor();
    void convertTakesTheOptionsOfWriting();
    void convertToAnUnknownSuffixEndsWithOne();
    void aFaultOfAScriptIsSaidOnce();
    void moreFaultsThanAreListedAreSaid();
    void everyExampleIsFreeOfMessages();

private:
    struct Run
    {
        int code = -1;
        QByteArray out;
        QByteArray err;
    };
    Run run(const QStringList& arguments) const;
    QString write(const char* name, const QByteArray& text) const;

    QTemporaryDir _folder;
};

tst_inspect::Run tst_inspect::run(const QStringList& arguments) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    process.setProcessEnvironment(environment);
    process.start(qEnvironmentVariable("ORVANE_BIN_DIR") + QStringLiteral("/orvane-inspect"), arguments);
    Run result;
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.code = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

QString tst_inspect::write(const char* name, const QByteArray& text) const
{
    QFile file(_folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("the temporary folder takes no file");
    return file.fileName();
}

void tst_inspect::goodSceneEndsWithZero()
{
    const QString path = write("good.x3d", "<X3D><Scene><Group DEF='G'/><Group USE='G'/></Scene></X3D>");
    const Run result = run({path});
    QCOMPARE(result.code, 0);
    QVERIFY(result.out.startsWith(
        path.toUtf8() + ": ok, 1 nodes, 1 named, 1 USEs, 0 routes, 0 protos, 0 scripts, 0 messages, "));
    QVERIFY(result.out.endsWith(" ms, 58 bytes\n"));
    QCOMPARE(result.err, QByteArray());
}

void tst_inspect::badSceneEndsWithOneAndItsPlace()
{
    const QString path = write("bad.x3d", "<X3D>\n<Scene></X3D>");
    const Run result = run({path});
    QCOMPARE(result.code, 1);
    QVERIFY(result.out.startsWith(path.toUtf8() +
                                  ":2:10: expected the end tag of the open element, found \"X3D>\"\n"));
    QVERIFY(result.out.contains(path.toUtf8() + ": failed, "));
    QCOMPARE(run({_folder.filePath(QStringLiteral("none.x3d"))}).code, 1);
}

void tst_inspect::oneBadSceneOfSeveralEndsWithOne()
{
    const QString good = write("good.x3d", "<X3D><Scene/></X3D>");
    const QString bad = write("bad.x3d", "<X3D>");
    const Run result = run({bad, good});
    QCOMPARE(result.code, 1);
    QVERIFY(result.out.contains(good.toUtf8() + ": ok, "));
}

void tst_inspect::badUsageEndsWithTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no scene") << QStringList();
    QTest::newRow("unknown option") << QStringList{QStringLiteral("--wrong"), QStringLiteral("a.x3d")};
    QTest::newRow("no value") << QStringList{QStringLiteral("a.x3d"), QStringLiteral("--time")};
    QTest::newRow("no number") << QStringList{QStringLiteral("--time"), QStringLiteral("soon"),
                                              QStringLiteral("a.x3d")};
    QTest::newRow("broken number") << QStringList{QStringLiteral("--frames"), QStringLiteral("1.5"),
                                                  QStringLiteral("a.x3d")};
    QTest::newRow("negative") << QStringList{QStringLiteral("--frames"), QStringLiteral("-1"),
                                             QStringLiteral("a.x3d")};
    QTest::newRow("no convert") << QStringList{QStringLiteral("--use-tabs"), QStringLiteral("a.x3d")};
    QTest::newRow("two to convert") << QStringList{QStringLiteral("--convert"), QStringLiteral("o.x3d"),
                                                   QStringLiteral("a.x3d"), QStringLiteral("b.x3d")};
}

void tst_inspect::badUsageEndsWithTwo()
{
    QFETCH(QStringList, arguments);
    const Run result = run(arguments);
    QCOMPARE(result.code, 2);
    QVERIFY(result.err.contains("usage: orvane-inspect"));
    QCOMPARE(result.out, QByteArray());
}

void tst_inspect::jsonHoldsEveryScene()
{
    const QString good = write("good.x3d", "<X3D><Scene><Group a='b'/></Scene></X3D>");
    const QString bad = write("bad.x3d", "<X3D>");
    const Run result = run({QStringLiteral("--json"), good, bad});
    QCOMPARE(result.code, 1);
    QJsonParseError error;
    const QJsonArray scenes = QJsonDocument::fromJson(result.out, &error).array();
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(scenes.size(), 2);
    const QJsonObject first = scenes[0].toObject();
    QCOMPARE(first[QLatin1String("scene")].toString(), good);
    QCOMPARE(first[QLatin1String("ok")].toBool(), true);
    QCOMPARE(first[QLatin1String("nodes")].toInt(), 1);
    const QJsonObject message = first[QLatin1String("messages")].toArray()[0].toObject();
    QCOMPARE(message[QLatin1String("severity")].toString(), QStringLiteral("warning"));
    QCOMPARE(message[QLatin1String("file")].toString(), good);
    QCOMPARE(message[QLatin1String("line")].toInt(), 1);
    QCOMPARE(message[QLatin1String("column")].toInt(), 23);
    QCOMPARE(scenes[1].toObject()[QLatin1String("ok")].toBool(true), false);
}

void tst_inspect::jsonIsValidWhateverTheTextsHold()
{
    const QString path = write("text.x3d", "<X3D><Scene><Group \xC3\xBC='1' \xE2\x82\xAC='2' a&quot;b='3'/>"
                                           "<Group USE='\xFC &#1; \\'/></Scene></X3D>");
    const Run result = run({QStringLiteral("--json"), path});
    QJsonParseError error;
    QJsonDocument::fromJson(result.out, &error);
    QVERIFY2(error.error == QJsonParseError::NoError, result.out.constData());
}

void tst_inspect::framesRunWithoutAWindow()
{
    const QString path =
        write("clock.x3d", "<X3D><Scene><Engine><Window/></Engine><TimeSensor loop='true'/></Scene></X3D>");
    QCOMPARE(run({QStringLiteral("--frames"), QStringLiteral("3"), path}).code, 0);
    QCOMPARE(run({QStringLiteral("--time"), QStringLiteral("1.5"), path}).code, 0);
}

void tst_inspect::convertWritesTheScene()
{
    const QString path = write("scene.x3d", "<X3D><Scene><Shape><Box size='1 2 3'/></Shape></Scene></X3D>");
    const QString out = _folder.filePath(QStringLiteral("out.x3dz"));
    QCOMPARE(run({QStringLiteral("--convert"), out, path}).code, 0);
    const QString plain = _folder.filePath(QStringLiteral("out.x3d"));
    QCOMPARE(run({QStringLiteral("--convert"), plain, out}).code, 0);
    QFile file(plain);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("<Box size=\"1 2 3\"/>"));
}

void tst_inspect::convertSaysWhatTheEncodingHasNoWordsFor()
{
    const QString path = write("scene.x3d", "<X3D><Scene><Shape><Disk2D/></Shape></Scene></X3D>");
    const QString out = _folder.filePath(QStringLiteral("out.wrl"));
    const Run plain = run({QStringLiteral("--convert"), out, path});
    QCOMPARE(plain.code, 0);
    QVERIFY2(plain.out.startsWith(out.toUtf8() + ": Disk2D: VRML97 has no such node; "),
             plain.out.constData());
    const Run json = run({QStringLiteral("--json"), QStringLiteral("--convert"), out, path});
    const QJsonObject scene = QJsonDocument::fromJson(json.out).array()[0].toObject();
    QCOMPARE(scene[QLatin1String("written")].toString(), out);
    QCOMPARE(scene[QLatin1String("writeNotes")].toArray().size(), 1);
    QCOMPARE(run({out}).code, 0);
}

void tst_inspect::convertTakesTheOptionsOfWriting()
{
    const QString path =
        write("scene.x3d", "<X3D><Scene><ProtoDeclare name='P'><ProtoBody><Group/></ProtoBody>"
                           "</ProtoDeclare><Engine><Window/></Engine><Group><ProtoInstance "
                           "name='P'/></Group><TimeSensor/></Scene></X3D>");
    const QString out = _folder.filePath(QStringLiteral("out.x3dv"));
    const auto written = [&](const char* option) {
        if (run({QStringLiteral("--convert"), out, QLatin1String(option), path}).code != 0)
            return QByteArray("not written");
        QFile file(out);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    };
    QVERIFY(!written("--skip-root").contains("Engine"));
    QVERIFY(written("--use-tabs").contains("\n\tchildren [\n"));
    QVERIFY(!written("--resolve-protos").contains("PROTO"));
    QVERIFY(written("--write-proc-info").contains("# TimeSensor.isActive = FALSE"));
    QVERIFY(written("--write-abstract-nodes").contains("X3DGroupingNode"));
    QVERIFY(written("--write-default-values").contains("loop FALSE"));
    const QByteArray plain = written("--");
    for (const char* text : {"Engine", "PROTO", "  children [\n"})
        QVERIFY2(plain.contains(text), text);
    for (const char* text : {"isActive", "X3DGroupingNode", "loop FALSE"})
        QVERIFY2(!plain.contains(text), text);
}

void tst_inspect::convertToAnUnknownSuffixEndsWithOne()
{
    const QString path = write("scene.x3d", "<X3D><Scene/></X3D>");
    const Run result = run({QStringLiteral("--convert"), _folder.filePath(QStringLiteral("out.obj")), path});
    QCOMPARE(result.code, 1);
    QVERIFY(result.out.contains("expected a suffix of an encoding that can be written"));
}

void tst_inspect::aFaultOfAScriptIsSaidOnce()
{
    const QString path = write("fault.x3d", "<X3D profile='Full'><Scene><Script DEF='S' url='\"ecmascript: "
                                            "function initialize() { nothing(); }\"'/></Scene></X3D>");
    const Run result = run({QStringLiteral("--frames"), QStringLiteral("3"), path});
    QCOMPARE(result.code, 0);
    QCOMPARE((result.out + result.err).count("'nothing'"), 1);
    QVERIFY2(result.out.contains("fault.x3d:1:"), result.out.constData());
}

void tst_inspect::moreFaultsThanAreListedAreSaid()
{
    const QString path =
        write("faults.x3d", "<X3D profile='Full'><Scene><Script DEF='S' url='\"ecmascript: var n = 0; "
                            "function prepareEvents() { throw ++n; }\"'/></Scene></X3D>");
    const auto faults = [&](const char* frames) {
        return run({QStringLiteral("--frames"), QString::fromLatin1(frames), path}).out;
    };
    QVERIFY(!faults("20").contains("more faults"));
    const QByteArray many = faults("150");
    QCOMPARE(many.count("Script \"S\""), 101);
    QCOMPARE(many.count("more faults"), 1);
}

void tst_inspect::everyExampleIsFreeOfMessages()
{
    const QDir folder(qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/examples/scenes"));
    QStringList scenes;
    for (const QString& name :
         folder.entryList({QStringLiteral("*.x3d*"), QStringLiteral("*.wrl")}, QDir::Files))
        scenes << folder.filePath(name);
    QVERIFY(!scenes.isEmpty());
    const Run result = run(QStringList{QStringLiteral("--frames"), QStringLiteral("2")} + scenes);
    QVERIFY2(result.code == 0, result.out.constData());
    QCOMPARE(result.out.count(", 0 messages, "), scenes.size());
}

QTEST_GUILESS_MAIN(tst_inspect)
#include "tst_inspect.moc"
