// A scene that is saved or exported into another folder: what it names by relative addresses is not lost.
#include "Author.h"
#include "Autosave.h"
#include "SceneEditing.h"
#include <Orvane/Authoring.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeType.h>
#include <QDialogButtonBox>
#include <QImage>
#include <QorFileDialog.h>

using Orvane::Qt4::QorFileDialog;

class tst_MovedScene : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void saveAsRewritesAddresses_data();
    void saveAsRewritesAddresses();
    void whatIsRewrittenIsOneStep();
    void keptAddressesStayAndAreNotAskedAboutAgain();
    void cancelWritesNothing();
    void theSameFolderIsNotAskedAbout();
    void aFailedSaveLeavesTheAddresses();
    void prototypesAreRewrittenToo();
    void exportRewritesTheFileAlone();
    void aNewSceneCountsFromItsFile();
    void theCopyAgainstLossFindsItsFiles();
    void aPlaceInAnotherFolderIsKnownToTheClipboard();

private:
    /// Gives the next file dialog a name.
    void nameFile(const QString& name) const;
    bool saveAs(const QString& name) const
    {
        nameFile(name);
        return _author->window.document()->saveAs();
    }
    QString url(const char* node) const
    {
        return QString::fromStdString((*dynamic_cast<Orvane::MFString*>(_author->field(node, "url")))[0]);
    }
    QByteArray read(const QString& name) const { return Author::read(_author->path(name)); }

    std::unique_ptr<Author> _author;
};

static const char source[] =
    "<X3D version='4.0' profile='Full'><Scene>"
    "<ExternProtoDeclare name='Lamp' url='\"lib/lamp.x3d#Lamp\"'/>"
    "<ProtoDeclare name='Panel'><ProtoInterface><field name='picture' type='MFString' "
    "accessType='initializeOnly' value='\"a.png\"'/></ProtoInterface><ProtoBody><Shape><Appearance>"
    "<MultiTexture><ImageTexture><IS><connect nodeField='url' protoField='picture'/></IS></ImageTexture>"
    "<ImageTexture DEF='Inside' url='\"a.png\"'/></MultiTexture></Appearance><Box/></Shape>"
    "</ProtoBody></ProtoDeclare>"
    "<Transform DEF='Top'><Shape><Appearance><ImageTexture DEF='Near' url='\"a.png\"'/></Appearance><Box/>"
    "</Shape><Shape><Appearance><ImageTexture DEF='Below' url='\"lib/b c.png\"'/></Appearance><Box/></Shape>"
    "<Shape><Appearance><ImageTexture DEF='Missing' url='\"nowhere.png\"'/></Appearance><Box/></Shape>"
    "<Shape><Appearance><ImageTexture DEF='Web' url='\"http://example.org/a.png\"'/></Appearance><Box/>"
    "</Shape><Anchor DEF='Door' url='\"other.x3d#There\"'/><Anchor DEF='Step' url='\"#Here\"'/>"
    "<Script DEF='Code' url='\"ecmascript: function f() {}\"'/><Script DEF='Filed' url='\"code.js\"'/>"
    "</Transform><Inline DEF='In' url='\"part.x3d\"'/>"
    "<ProtoInstance DEF='Light' name='Lamp'/><ProtoInstance DEF='Wall' name='Panel'/>"
    "<ProtoInstance DEF='Own' name='Panel'><fieldValue name='picture' value='\"lib/b c.png\"'/>"
    "</ProtoInstance></Scene></X3D>";

void tst_MovedScene::init()
{
    _author = std::make_unique<Author>();
    const auto picture = [this](const QString& name) {
        _author->write(name, {});
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(_author->path(name), "PNG"));
    };
    picture(QStringLiteral("here/a.png"));
    picture(QStringLiteral("here/lib/b c.png"));
    _author->write(QStringLiteral("here/code.js"), "function initialize() {}\n");
    _author->write(QStringLiteral("here/other.x3d"), "<X3D version='4.0'><Scene/></X3D>");
    _author->write(QStringLiteral("here/part.x3d"),
                   "<X3D version='4.0'><Scene><Shape DEF='Part'><Box/></Shape></Scene></X3D>");
    _author->write(QStringLiteral("here/lib/lamp.x3d"),
                   "<X3D version='4.0'><Scene><ProtoDeclare name='Lamp'><ProtoInterface/><ProtoBody>"
                   "<Group><Shape><Sphere/></Shape></Group></ProtoBody></ProtoDeclare></Scene></X3D>");
    QVERIFY(QDir(_author->path(QString())).mkpath(QStringLiteral("there/deep")));
    QVERIFY(_author->open(QStringLiteral("here/source.x3d"), source));
}

void tst_MovedScene::nameFile(const QString& name) const
{
    auto* const timer = new QTimer(qApp);
    const QString path = _author->path(name);
    connect(timer, &QTimer::timeout, timer, [timer, path] {
        auto* const dialog = qobject_cast<QorFileDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        timer->stop();
        timer->deleteLater();
        dialog->selectFile(path);
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    });
    timer->start(10);
}

void tst_MovedScene::saveAsRewritesAddresses_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QString>("address");
    const auto row = [](const char* name, const char* node, const char* address) {
        QTest::newRow(name) << QByteArray(node) << QString::fromLatin1(address);
    };
    row("beside", "Near", "../../here/a.png");
    row("below, with a blank", "Below", "../../here/lib/b c.png");
    row("with a place in the file", "Door", "../../here/other.x3d#There");
    row("code in a file", "Filed", "../../here/code.js");
    row("an inlined file", "In", "../../here/part.x3d");
    row("code itself", "Code", "ecmascript: function f() {}");
    row("a place in the scene", "Step", "#Here");
    row("a network", "Web", "http://example.org/a.png");
    row("no file", "Missing", "nowhere.png");
}

void tst_MovedScene::saveAsRewritesAddresses()
{
    QFETCH(QByteArray, node);
    QFETCH(QString, address);
    QString asked;
    Author::answer(QMessageBox::Yes, &asked);
    QVERIFY(saveAs(QStringLiteral("there/deep/new.x3d")));
    QVERIFY2(asked.contains(QStringLiteral("new.x3d")), qPrintable(asked));
    QCOMPARE(url(node.constData()), address);
    QVERIFY(_author->window.document()->openByUser(_author->path(QStringLiteral("there/deep/new.x3d"))));
    QCOMPARE(url(node.constData()), address);
}

void tst_MovedScene::whatIsRewrittenIsOneStep()
{
    Author::answer(QMessageBox::Yes);
    QVERIFY(saveAs(QStringLiteral("there/new.x3d")));
    QCOMPARE(_author->steps().count(), 1);
    QVERIFY(!_author->window.isWindowModified());
    QVERIFY(read(QStringLiteral("there/new.x3d")).contains("../here/a.png"));
    // Saved again in its place there is nothing to ask.
    QVERIFY(_author->window.editing()->addNode(QStringLiteral("Group"), QString()));
    QVERIFY(_author->window.document()->save());
    _author->steps().undo();

    _author->steps().undo();
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
    QVERIFY(_author->window.isWindowModified());
    _author->steps().redo();
    QCOMPARE(url("Near"), QStringLiteral("../here/a.png"));
    _author->steps().undo();
    // The scene counts from the first folder again.
    Author::answer(QMessageBox::Yes);
    QVERIFY(_author->window.document()->save());
    QCOMPARE(url("Near"), QStringLiteral("../here/a.png"));
    QVERIFY(read(QStringLiteral("there/new.x3d")).contains("../here/a.png"));
}

void tst_MovedScene::keptAddressesStayAndAreNotAskedAboutAgain()
{
    Author::answer(QMessageBox::No);
    QVERIFY(saveAs(QStringLiteral("there/new.x3d")));
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
    QVERIFY(!read(QStringLiteral("there/new.x3d")).contains("../here"));
    QCOMPARE(_author->steps().count(), 0);
    QTRY_VERIFY(_author->log()->toPlainText().contains(QStringLiteral("counts from the folder")));
    // A question would wait for ever.
    QVERIFY(_author->window.document()->save());
}

void tst_MovedScene::cancelWritesNothing()
{
    QVERIFY(_author->select("Top"));
    QVERIFY(_author->window.editing()->rename(QStringLiteral("Changed")));
    Author::answer(QMessageBox::Cancel);
    QVERIFY(!saveAs(QStringLiteral("there/new.x3d")));
    QVERIFY(!QFile::exists(_author->path(QStringLiteral("there/new.x3d"))));
    QCOMPARE(_author->window.document()->file(), _author->path(QStringLiteral("here/source.x3d")));
    QVERIFY(_author->window.isWindowModified());
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
}

void tst_MovedScene::theSameFolderIsNotAskedAbout()
{
    QVERIFY(saveAs(QStringLiteral("here/again.x3dv")));
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
    QCOMPARE(_author->steps().count(), 0);
}

void tst_MovedScene::aFailedSaveLeavesTheAddresses()
{
    const QByteArray before = _author->saved();
    QVERIFY(QDir().mkpath(_author->path(QStringLiteral("there/wrong.x3d"))));
    Author::answer(QMessageBox::Yes);
    auto& document = *_author->window.document();
    Orvane::Node* const root = _author->context()->findRoot(Orvane::Scene::_type);
    const std::string origin = Orvane::Authoring::origin(*root);
    // The dialog does not take a folder; a file may become one behind its back.
    nameFile(QStringLiteral("there/wrong2.x3d"));
    const auto away = [this] {
        QDir().rename(_author->path(QStringLiteral("there")), _author->path(QStringLiteral("gone")));
    };
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            away();
    });
    watch.start(1);
    QVERIFY(!document.saveAs());
    delete _author->window.findChild<QMessageBox*>();
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
    QCOMPARE(Orvane::Authoring::origin(*root), origin);
    QCOMPARE(_author->steps().count(), 0);
    QCOMPARE(_author->saved(), before);
}

void tst_MovedScene::prototypesAreRewrittenToo()
{
    Author::answer(QMessageBox::Yes);
    QVERIFY(saveAs(QStringLiteral("there/new.x3dv")));
    const QByteArray written = read(QStringLiteral("there/new.x3dv"));
    QVERIFY2(written.contains("../here/lib/lamp.x3d#Lamp"), written.constData());
    QVERIFY2(!written.contains("\"a.png\""), written.constData());
    QVERIFY(!written.contains("\"lib/b c.png\""));
    // An instance says what it said before, and no more.
    QCOMPARE(written.count("../here/a.png"), 3);
    QCOMPARE(written.count("../here/lib/b c.png"), 2);
    QVERIFY(_author->window.document()->openByUser(_author->path(QStringLiteral("there/new.x3dv"))));
    std::vector<Orvane::Node*> children;
    _author->find("Light")->collectAllChildren(children, 0);
    QVERIFY(!children.empty());
    // All is found but nowhere.png and what is in the network.
    QCOMPARE(_author->context()->loadReport().messages.size(), std::size_t(2));
    // Back again the addresses lead there all the same, and there is nothing to ask.
    QVERIFY(saveAs(QStringLiteral("here/back.x3dv")));
    QCOMPARE(read(QStringLiteral("here/back.x3dv")).count("../here/a.png"), 3);
    // Another folder has another way there.
    Author::answer(QMessageBox::Yes);
    QVERIFY(saveAs(QStringLiteral("there/deep/last.x3dv")));
    QCOMPARE(read(QStringLiteral("there/deep/last.x3dv")).count("../../here/a.png"), 3);
}

void tst_MovedScene::exportRewritesTheFileAlone()
{
    const QByteArray before = _author->saved();
    Author::answer(QMessageBox::Yes);
    nameFile(QStringLiteral("there/out.x3dv"));
    _author->key(Qt::Key_E, Qt::ControlModifier);
    const QByteArray written = read(QStringLiteral("there/out.x3dv"));
    QCOMPARE(written.count("../here/a.png"), 3);
    QVERIFY(written.contains("../here/lib/lamp.x3d#Lamp"));
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
    QCOMPARE(_author->saved(), before);
    QCOMPARE(_author->steps().count(), 0);
    QVERIFY(!_author->window.isWindowModified());

    Author::answer(QMessageBox::No);
    nameFile(QStringLiteral("there/kept.x3dv"));
    _author->key(Qt::Key_E, Qt::ControlModifier);
    QVERIFY(read(QStringLiteral("there/kept.x3dv")).contains("\"a.png\""));
    Author::answer(QMessageBox::Cancel);
    nameFile(QStringLiteral("there/none.x3dv"));
    _author->key(Qt::Key_E, Qt::ControlModifier);
    QVERIFY(!QFile::exists(_author->path(QStringLiteral("there/none.x3dv"))));
}

void tst_MovedScene::aNewSceneCountsFromItsFile()
{
    _author->key(Qt::Key_N, Qt::ControlModifier);
    QVERIFY(_author->window.editing()->addNode(QStringLiteral("Inline"), QStringLiteral("New")));
    QVERIFY(saveAs(QStringLiteral("here/fresh.x3d")));
    _author->field("New", "url")->setValueByStr(0.0, "\"part.x3d\"");
    _author->run();
    std::vector<Orvane::Node*> children;
    _author->find("New")->collectAllChildren(children, 0);
    QCOMPARE(children.size(), std::size_t(1));
}

void tst_MovedScene::theCopyAgainstLossFindsItsFiles()
{
    Author::answer(QMessageBox::Yes);
    QVERIFY(saveAs(QStringLiteral("there/new.x3d")));
    _author->steps().undo();
    emit _author->window.findChild<Autosave*>()->due();
    const QByteArray copy = Author::read(Autosave::copyOf(_author->window.document()->file()));
    QVERIFY2(copy.contains("../here/a.png"), copy.constData());
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
}

void tst_MovedScene::aPlaceInAnotherFolderIsKnownToTheClipboard()
{
    Author::answer(QMessageBox::Yes);
    QVERIFY(saveAs(QStringLiteral("there/new.x3d")));
    _author->select("Top");
    _author->key(Qt::Key_C, Qt::ControlModifier);
    QVERIFY(_author->open(QStringLiteral("there/deep/target.x3d"),
                          "<X3D version='4.0' profile='Full'><Scene><Group DEF='G'/></Scene></X3D>"));
    _author->select("G");
    _author->key(Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(url("Near"), QStringLiteral("../../here/a.png"));
}

QTEST_MAIN(tst_MovedScene)
#include "tst_MovedScene.moc"
