#include "SceneFiles.h"
#include <Orvane/System.h>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

/// Scenes of other people, each loaded and run in a process of its own: none may crash, hang or be refused
/// without a word. The folder that ORVANE_SCENES names is gone through; without it the examples are.
class tst_Corpus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everySceneLoadsOrSaysWhy_data();
    void everySceneLoadsOrSaysWhy();
    void cleanupTestCase();

private:
    void checkMessages(const QJsonArray& messages);

    int _clean = 0;
    int _withMessages = 0;
    int _refused = 0;
};

namespace {

constexpr int longestRun = 60000; // ms

} // namespace

void tst_Corpus::initTestCase()
{
    Orvane::System::the().init(0, nullptr, 382);
}

void tst_Corpus::everySceneLoadsOrSaysWhy_data()
{
    QTest::addColumn<QString>("path");
    const QString source = qEnvironmentVariable("ORVANE_SOURCE_DIR");
    const QDir folder(qEnvironmentVariable("ORVANE_SCENES", source + QStringLiteral("/examples/scenes")));
    const QStringList paths = sceneFiles(folder.path());
    QVERIFY2(!paths.isEmpty(), qPrintable(QStringLiteral("no scenes in ") + folder.path()));
    for (const QString& path : paths)
        QTest::newRow(qPrintable(folder.relativeFilePath(path))) << path;
}

void tst_Corpus::everySceneLoadsOrSaysWhy()
{
    QFETCH(QString, path);
    QProcess inspect;
    inspect.start(qEnvironmentVariable("ORVANE_BIN_DIR") + QStringLiteral("/orvane-inspect"),
                  {QStringLiteral("--json"), QStringLiteral("--frames"), QStringLiteral("5"), path});
    const bool hasEnded = inspect.waitForFinished(longestRun);
    if (!hasEnded)
        inspect.kill();
    QVERIFY2(hasEnded, "the scene hangs");
    QCOMPARE(inspect.exitStatus(), QProcess::NormalExit);

    const QJsonArray scenes = QJsonDocument::fromJson(inspect.readAllStandardOutput()).array();
    QCOMPARE(scenes.size(), 1);
    const QJsonObject scene = scenes[0].toObject();
    const bool isLoaded = scene[QStringLiteral("ok")].toBool();
    const QJsonArray messages = scene[QStringLiteral("messages")].toArray();
    QCOMPARE(inspect.exitCode(), isLoaded ? 0 : 1);
    QVERIFY2(isLoaded || !messages.isEmpty(), "refused without a message");
    checkMessages(messages);
    ++(!isLoaded ? _refused : messages.isEmpty() ? _clean : _withMessages);
}

/// Each message says where, and what was expected.
void tst_Corpus::checkMessages(const QJsonArray& messages)
{
    for (const QJsonValue& value : messages) {
        const QJsonObject message = value.toObject();
        const QString text = message[QStringLiteral("text")].toString();
        qInfo().noquote() << message[QStringLiteral("line")].toInt() << ':'
                          << message[QStringLiteral("column")].toInt() << text;
        QVERIFY(!message[QStringLiteral("file")].toString().isEmpty());
        QVERIFY(message[QStringLiteral("line")].toInt() > 0);
        QVERIFY(message[QStringLiteral("column")].toInt() > 0);
        // Faults of the file say what was expected; the engine words those of code, and kept types have no
        // fault.
        const bool ofCode =
            text.startsWith(QLatin1String("Script \"")) && text.contains(QLatin1String(" of its code: "));
        const bool ofKeptType = text.contains(QLatin1String(": nodes of this type are kept and "));
        QVERIFY2(ofCode || ofKeptType || text.contains(QLatin1String("expected ")), qPrintable(text));
    }
}

void tst_Corpus::cleanupTestCase()
{
    qInfo("%d scenes without a message, %d with messages, %d refused", _clean, _withMessages, _refused);
    Orvane::System::the().exit();
}

QTEST_GUILESS_MAIN(tst_Corpus)
#include "tst_Corpus.moc"
