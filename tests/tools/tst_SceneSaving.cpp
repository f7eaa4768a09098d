#include "SceneSaving.h"
#include <Orvane/Context.h>
#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QorFileDialog.h>
#include <functional>

using Orvane::Qt4::QorFileDialog;

class tst_SceneSaving : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void sceneIsWrittenAsItsSuffixSays();
    void boxesSayHow_data();
    void boxesSayHow();
    void cancelWritesNothing();
    void failureIsTold();
    void dialogStartsAtTheFile();

private:
    QString path(const char* name) const { return _folder->filePath(QLatin1String(name)); }
    static QByteArray contentOf(const QString& file);
    /// Saves; \a use has the dialog, and accepts it or not.
    QString save(const QString& file, const std::function<void(QorFileDialog*)>& use);
    /// Saves under a name, with one box ticked.
    QString saveAs(const QString& target, const char* box = nullptr);

    Orvane::Context* _context = nullptr;
    std::unique_ptr<QTemporaryDir> _folder;
};

void tst_SceneSaving::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    _context = Orvane::Context::create();
    QVERIFY(
        _context->load("saved.x3d",
                       "<X3D version='4.0'><Scene visible='false'><ProtoDeclare name='P'><ProtoBody><Group/>"
                       "</ProtoBody></ProtoDeclare><Transform DEF='Named' translation='1 2 3'><Shape/>"
                       "</Transform><TimeSensor/><ProtoInstance name='P'/></Scene></X3D>",
                       Orvane::Context::REPLACE_LT, std::string()));
}

void tst_SceneSaving::cleanup()
{
    std::exchange(_context, nullptr)->subRef();
}

QByteArray tst_SceneSaving::contentOf(const QString& file)
{
    QFile read(file);
    return read.open(QIODevice::ReadOnly) ? read.readAll() : QByteArray();
}

QString tst_SceneSaving::save(const QString& file, const std::function<void(QorFileDialog*)>& use)
{
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (auto* dialog = qobject_cast<QorFileDialog*>(QApplication::activeModalWidget())) {
            timer.stop();
            use(dialog);
        }
    });
    timer.start(10);
    const SaveTarget target = askForTarget({file, {}}, nullptr);
    return target.file.isEmpty() ? QString() : saveScene(*_context, target).told;
}

QString tst_SceneSaving::saveAs(const QString& target, const char* box)
{
    return save(QString(), [&](QorFileDialog* dialog) {
        if (box)
            dialog->findChild<QCheckBox*>(QLatin1String(box))->click();
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        name->setText(target);
        QTest::keyClick(name, Qt::Key_Return);
    });
}

void tst_SceneSaving::sceneIsWrittenAsItsSuffixSays()
{
    QVERIFY(saveAs(path("a.x3d")).contains(path("a.x3d")));
    QVERIFY(contentOf(path("a.x3d")).contains("<Transform DEF='Named'") ||
            contentOf(path("a.x3d")).contains("<Transform DEF=\"Named\""));
    saveAs(path("b.x3dv"));
    QVERIFY(contentOf(path("b.x3dv")).contains("DEF Named Transform {"));
    // One that says nothing gets a suffix.
    saveAs(path("c"));
    QVERIFY(contentOf(path("c.x3d")).contains("<X3D"));
}

void tst_SceneSaving::boxesSayHow_data()
{
    QTest::addColumn<QByteArray>("box");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isWritten");
    const auto row = [](const char* box, const char* text, bool isWritten) {
        QTest::newRow(box) << QByteArray(box) << QByteArray(text) << isWritten;
    };
    row("skipRootCheck", "visible=\"false\"", false);
    row("useTabCheck", "\t", true);
    row("resolveProtoCheck", "ProtoInstance", false);
    row("writeProcInfoCheck", "TimeSensor.time = ", true);
    row("writeAbstractCheck", "X3DGroupingNode", true);
    row("writeDefaultValueCheck", "scaleOrientation", true);
}

void tst_SceneSaving::boxesSayHow()
{
    QFETCH(QByteArray, box);
    QFETCH(QByteArray, text);
    saveAs(path("without.x3d"));
    saveAs(path("with.x3d"), box.constData());
    QFETCH(bool, isWritten);
    QCOMPARE(contentOf(path("without.x3d")).contains(text), !isWritten);
    QCOMPARE(contentOf(path("with.x3d")).contains(text), isWritten);
}

void tst_SceneSaving::cancelWritesNothing()
{
    QCOMPARE(save(path("d.x3d"), [](QorFileDialog* dialog) { dialog->reject(); }), QString());
    QVERIFY(!QFile::exists(path("d.x3d")));
}

void tst_SceneSaving::failureIsTold()
{
    const QString told = saveAs(path("e.picture"));
    QVERIFY2(told.contains(QStringLiteral("cannot be written")), qPrintable(told));
    QVERIFY(!QFile::exists(path("e.picture")));
}

void tst_SceneSaving::dialogStartsAtTheFile()
{
    save(path("f.x3d"), [this](QorFileDialog* dialog) {
        QCOMPARE(dialog->directory().canonicalPath(), QDir(_folder->path()).canonicalPath());
        QCOMPARE(dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text(),
                 QStringLiteral("f.x3d"));
        QCOMPARE(dialog->nameFilters(), QorFileDialog::buildFileFilters());
        dialog->reject();
    });
}

QTEST_MAIN(tst_SceneSaving)
#include "tst_SceneSaving.moc"
