// Nodes that go from a scene in one folder to one in another: what they name by relative addresses is found.
#include "Author.h"
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeType.h>
#include <QClipboard>
#include <QImage>
#include <QMimeData>

using namespace Orvane;

class tst_PasteAddresses : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void addressesLeadToTheirFiles_data();
    void addressesLeadToTheirFiles();
    void inTheSameFolderTheyStay();
    void aNewSceneHasNoFolder();
    void inlinedFilesAreRead();
    void prototypesOfOtherFilesAreFound();
    void pasteIsTakenBack();
    void textFromElsewhereIsTakenAsItIs();

private:
    void goTo(const QString& name);
    void copy(const char* node)
    {
        _author->select(node);
        _author->key(Qt::Key_C, Qt::ControlModifier);
    }
    void paste() { _author->key(Qt::Key_V, Qt::ControlModifier); }
    QString url(const char* node) const
    {
        return QString::fromStdString((*dynamic_cast<MFString*>(_author->field(node, "url")))[0]);
    }

    std::unique_ptr<Author> _author;
};

static const char source[] =
    "<X3D version='4.0' profile='Full'><Scene>"
    "<ExternProtoDeclare name='Lamp' url='\"lib/lamp.x3d#Lamp\"'/>"
    "<ProtoDeclare name='Panel'><ProtoInterface><field name='picture' type='MFString' "
    "accessType='initializeOnly' "
    "value='\"a.png\"'/></ProtoInterface><ProtoBody><Shape><Appearance><ImageTexture>"
    "<IS><connect nodeField='url' protoField='picture'/></IS></ImageTexture></Appearance><Box/></Shape>"
    "</ProtoBody></ProtoDeclare>"
    "<Transform DEF='Top'><Shape><Appearance>"
    "<ImageTexture DEF='Near' url='\"a.png\"'/></Appearance><Box/></Shape>"
    "<Shape><Appearance><ImageTexture DEF='Below' url='\"lib/b c.png\"'/></Appearance><Box/></Shape>"
    "<Shape><Appearance><ImageTexture DEF='Missing' url='\"nowhere.png\"'/></Appearance><Box/></Shape>"
    "<Shape><Appearance><ImageTexture DEF='Web' "
    "url='\"http://example.org/a.png\"'/></Appearance><Box/></Shape>"
    "<Anchor DEF='Door' url='\"other.x3d#There\"'/><Anchor DEF='Step' url='\"#Here\"'/>"
    "<Script DEF='Code' url='\"ecmascript: function f() {}\"'/><Script DEF='Filed' url='\"code.js\"'/>"
    "</Transform>"
    "<Inline DEF='In' url='\"part.x3d\"'/>"
    "<ProtoInstance DEF='Light' name='Lamp'/><ProtoInstance DEF='Wall' name='Panel'/></Scene></X3D>";
static const char target[] = "<X3D version='4.0' profile='Full'><Scene><Group DEF='G'/></Scene></X3D>";

void tst_PasteAddresses::init()
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
    _author->write(QStringLiteral("here/other.x3d"), target);
    _author->write(QStringLiteral("here/part.x3d"),
                   "<X3D version='4.0'><Scene><Shape DEF='Part'><Box/></Shape></Scene></X3D>");
    _author->write(QStringLiteral("here/lib/lamp.x3d"),
                   "<X3D version='4.0'><Scene><ProtoDeclare name='Lamp'><ProtoInterface/><ProtoBody>"
                   "<Group><Shape><Sphere/></Shape></Group></ProtoBody></ProtoDeclare></Scene></X3D>");
    QVERIFY(_author->open(QStringLiteral("here/source.x3d"), source));
}

void tst_PasteAddresses::goTo(const QString& name)
{
    QVERIFY(_author->open(name, target));
    _author->select("G");
}

void tst_PasteAddresses::addressesLeadToTheirFiles_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QString>("address");
    QTest::newRow("beside") << QByteArray("Near") << QStringLiteral("../here/a.png");
    QTest::newRow("below, with a blank") << QByteArray("Below") << QStringLiteral("../here/lib/b c.png");
    QTest::newRow("with a place in the file")
        << QByteArray("Door") << QStringLiteral("../here/other.x3d#There");
    QTest::newRow("code in a file") << QByteArray("Filed") << QStringLiteral("../here/code.js");
    QTest::newRow("code itself") << QByteArray("Code") << QStringLiteral("ecmascript: function f() {}");
    QTest::newRow("a place in the scene") << QByteArray("Step") << QStringLiteral("#Here");
    QTest::newRow("a network") << QByteArray("Web") << QStringLiteral("http://example.org/a.png");
    QTest::newRow("no file") << QByteArray("Missing") << QStringLiteral("nowhere.png");
}

void tst_PasteAddresses::addressesLeadToTheirFiles()
{
    QFETCH(QByteArray, node);
    QFETCH(QString, address);
    copy("Top");
    goTo(QStringLiteral("there/target.x3d"));
    paste();
    QVERIFY(_author->find("Top"));
    QCOMPARE(url(node.constData()), address);
    // The file says the same when it is read again.
    QVERIFY(_author->window.document()->save());
    QVERIFY(_author->window.document()->openByUser(_author->path(QStringLiteral("there/target.x3d"))));
    QCOMPARE(url(node.constData()), address);
}

void tst_PasteAddresses::inTheSameFolderTheyStay()
{
    copy("Top");
    goTo(QStringLiteral("here/target.x3d"));
    paste();
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
    QCOMPARE(url("Below"), QStringLiteral("lib/b c.png"));
}

void tst_PasteAddresses::aNewSceneHasNoFolder()
{
    copy("Top");
    _author->key(Qt::Key_N, Qt::ControlModifier);
    paste();
    QVERIFY2(url("Near").endsWith(_author->path(QStringLiteral("here/a.png"))), qPrintable(url("Near")));
}

void tst_PasteAddresses::inlinedFilesAreRead()
{
    copy("In");
    goTo(QStringLiteral("there/deep/target.x3d"));
    paste();
    QCOMPARE(url("In"), QStringLiteral("../../here/part.x3d"));
    std::vector<Node*> children;
    _author->find("In")->collectAllChildren(children, 0);
    QCOMPARE(children.size(), std::size_t(1));
    QCOMPARE(children.front()->type()->name, std::string("Shape"));
}

void tst_PasteAddresses::prototypesOfOtherFilesAreFound()
{
    copy("Light");
    goTo(QStringLiteral("there/target.x3d"));
    paste();
    std::vector<Node*> children;
    _author->find("Light")->collectAllChildren(children, 0);
    QVERIFY(!children.empty());
    QVERIFY2(_author->saved().contains("../here/lib/lamp.x3d#Lamp"), _author->saved().constData());

    QVERIFY(_author->window.document()->save());
    QVERIFY(_author->open(QStringLiteral("here/again.x3d"), source));
    copy("Wall");
    goTo(QStringLiteral("there/second.x3d"));
    paste();
    QVERIFY2(_author->saved().contains("../here/a.png"), _author->saved().constData());
}

void tst_PasteAddresses::pasteIsTakenBack()
{
    copy("Top");
    goTo(QStringLiteral("there/target.x3d"));
    const QByteArray before = _author->saved();
    paste();
    const QByteArray after = _author->saved();
    QVERIFY(after.contains("../here/a.png"));
    _author->key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(_author->saved(), before);
    QVERIFY(!_author->window.isWindowModified());
    _author->steps().redo();
    _author->run();
    QCOMPARE(_author->saved(), after);
}

void tst_PasteAddresses::textFromElsewhereIsTakenAsItIs()
{
    copy("Top");
    const QString words = QApplication::clipboard()->text();
    goTo(QStringLiteral("there/target.x3d"));
    QApplication::clipboard()->setText(words);
    paste();
    QCOMPARE(url("Near"), QStringLiteral("a.png"));
    QVERIFY(!QApplication::clipboard()->mimeData()->hasFormat(QStringLiteral("application/x-orvane-origin")));
}

QTEST_MAIN(tst_PasteAddresses)
#include "tst_PasteAddresses.moc"
