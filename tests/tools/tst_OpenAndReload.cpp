// A scene that is read anew, and one that cannot be read.
#include "Author.h"
#include "LogDock.h"
#include "SceneEditing.h"
#include <Orvane/MFNode.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodePath.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QAbstractButton>
#include <QorRenderView.h>

class tst_OpenAndReload : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void reloadKeepsTheSelection();
    void reloadKeepsTheSelectedPlaceOfASharedNode();
    void reloadSelectsNothingThatHasGone();
    void reloadKeepsWhatIsBound();
    void reloadKeepsWhereTheUserLooksFrom();
    void aViewpointThatWasRewrittenIsShown();
    void aNewSceneIsNotReloaded();
    void aFailureLeadsToTheLineOfTheLog();
    void aFileThatOthersHaveWrittenIsAskedAbout();

private:
    void reload(const QByteArray& text)
    {
        _author->write(QStringLiteral("scene.x3d"), text);
        _author->key(Qt::Key_F5);
    }
    osg::Matrix place() const;
    void walk();

    std::unique_ptr<Author> _author;
};

static const QByteArray scene =
    "<X3D version='4.0' profile='Full'><Scene><NavigationInfo type='\"EXAMINE\"' "
    "transitionType='\"TELEPORT\"'/>"
    "<Viewpoint DEF='V1' position='0 0 10'/><Viewpoint DEF='V2' position='0 0 20'/>"
    "<Group DEF='G'><Transform translation='1 0 0'><Shape DEF='S'><Box/></Shape></Transform>"
    "<Transform DEF='T'><Shape USE='S'/></Transform></Group></Scene></X3D>";

void tst_OpenAndReload::init()
{
    _author = std::make_unique<Author>();
    QVERIFY(_author->open(QStringLiteral("scene.x3d"), scene));
}

static Orvane::ViewareaProc* viewarea(const Author& author)
{
    auto* const view = author.window.findChild<Orvane::Qt4::QorRenderView*>();
    auto* const area =
        dynamic_cast<Orvane::Viewarea*>(view->windowProc()->window()->viewareas()->elem(0).node());
    return area->getViewareaProc();
}

osg::Matrix tst_OpenAndReload::place() const
{
    osg::Matrix place;
    return viewarea(*_author)->userPlace(place) ? place : osg::Matrix::identity();
}

/// Turns the scene by a drag.
void tst_OpenAndReload::walk()
{
    auto* const view = _author->window.findChild<Orvane::Qt4::QorRenderView*>();
    view->windowProc()->buttonPress(1, 200, 200);
    _author->run();
    view->windowProc()->mouseMove(260, 230);
    _author->run();
    view->windowProc()->buttonRelease(1, 260, 230);
    _author->run();
}

void tst_OpenAndReload::reloadKeepsTheSelection()
{
    for (const char* name : {"T", "G", "V2"}) {
        _author->select(name);
        reload(QByteArray(scene).replace("1 0 0", "2 0 0"));
        QCOMPARE(_author->window.selection()->node(), _author->find(name));
    }
    // A node without a name is known by its place, a named one by its name.
    Orvane::NodePath path(_author->find("G"));
    path.addNode(dynamic_cast<Orvane::MFNode*>(_author->field("G", "children"))->elem(0).directNode());
    _author->window.selection()->selectPath(path);
    reload(QByteArray(scene).replace("1 0 0", "3 0 0"));
    QCOMPARE(_author->window.selection()
                 ->node()
                 ->findField("translation", Orvane::Node::EXACT_FSO)
                 ->valueToString(),
             std::string("3 0 0"));
    _author->select("V2");
    reload(QByteArray(scene).replace("<Viewpoint DEF='V1' position='0 0 10'/>", ""));
    QCOMPARE(_author->window.selection()->node(), _author->find("V2"));
}

void tst_OpenAndReload::reloadKeepsTheSelectedPlaceOfASharedNode()
{
    Orvane::NodePath path(_author->find("T"));
    path.addNode(_author->find("S"));
    _author->window.selection()->selectPath(path);
    reload(scene);
    Orvane::NodePath again(_author->find("T"));
    again.addNode(_author->find("S"));
    QVERIFY(_author->window.selection()->path() == again);
}

void tst_OpenAndReload::reloadSelectsNothingThatHasGone()
{
    _author->select("T");
    reload("<X3D version='4.0'><Scene><Group DEF='T'/></Scene></X3D>");
    QVERIFY(!_author->window.selection()->node());
}

void tst_OpenAndReload::reloadKeepsWhatIsBound()
{
    _author->field("V2", "set_bind")->setValueByStr(0.0, "true");
    _author->run();
    reload(scene);
    _author->run();
    QCOMPARE(_author->value("V2", "isBound"), std::string("TRUE"));
    QCOMPARE(_author->value("V1", "isBound"), std::string("FALSE"));
    QVERIFY(!_author->window.isWindowModified());
}

void tst_OpenAndReload::reloadKeepsWhereTheUserLooksFrom()
{
    const osg::Matrix first = place();
    walk();
    const osg::Matrix before = place();
    QVERIFY(!before.equals(first, 1e-3F));
    reload(QByteArray(scene).replace("1 0 0", "2 0 0"));
    _author->run(3);
    QVERIFY(place().equals(before, 1e-4F));
    // With another viewpoint as well.
    _author->field("V2", "set_bind")->setValueByStr(0.0, "true");
    _author->run(3);
    walk();
    const osg::Matrix second = place();
    reload(scene);
    _author->run(3);
    QVERIFY(place().equals(second, 1e-4F));
}

void tst_OpenAndReload::aViewpointThatWasRewrittenIsShown()
{
    walk();
    reload(QByteArray(scene).replace("0 0 10", "0 0 33"));
    _author->run(3);
    QCOMPARE(place()[3][2], 33.0F);
}

void tst_OpenAndReload::aNewSceneIsNotReloaded()
{
    _author->key(Qt::Key_N, Qt::ControlModifier);
    _author->key(Qt::Key_F5);
    QVERIFY(_author->told().contains(QStringLiteral("no file")));
}

void tst_OpenAndReload::aFailureLeadsToTheLineOfTheLog()
{
    _author->window.findChild<LogDock*>()->hide();
    QVERIFY(
        !_author->open(QStringLiteral("broken.x3d"), "<X3D version='4.0'><Scene>\n<Group></Scene></X3D>"));
    auto* const box = _author->window.findChild<QMessageBox*>();
    QVERIFY(box);
    QVERIFY2(box->informativeText().contains(QStringLiteral("broken.x3d:2:")),
             qPrintable(box->informativeText()));
    QAbstractButton* log = nullptr;
    const auto buttons = box->buttons();
    for (QAbstractButton* const button : buttons)
        log = button->text().contains(QStringLiteral("log")) ? button : log;
    QVERIFY(log);
    QTRY_VERIFY(_author->log()->toPlainText().contains(QStringLiteral("broken.x3d:2:")));
    QTest::mouseClick(log, Qt::LeftButton);
    QVERIFY(_author->window.findChild<LogDock*>()->isVisible());
    const QString line = _author->log()->textCursor().selectedText();
    QVERIFY2(line.contains(QStringLiteral("broken.x3d:2:")), qPrintable(line));
    QTRY_VERIFY(!_author->window.findChild<QMessageBox*>());
}

void tst_OpenAndReload::aFileThatOthersHaveWrittenIsAskedAbout()
{
    const auto rename = [this](const char* from, const char* to) {
        _author->select(from);
        QVERIFY(_author->window.editing()->rename(QString::fromLatin1(to)));
    };
    DocumentFile& document = *_author->window.document();
    rename("T", "First");
    QVERIFY(document.save());
    rename("First", "Second");
    QVERIFY(document.save()); // its own writes are none of others
    rename("Second", "Third");
    QTest::qWait(20);
    const QByteArray other = "<X3D version='4.0'><Scene><Group DEF='Other'/></Scene></X3D>";
    const QString file = _author->write(QStringLiteral("scene.x3d"), other);
    Author::answer(QMessageBox::Cancel);
    QVERIFY(!document.save());
    QCOMPARE(Author::read(file), other);
    QVERIFY(_author->window.isWindowModified());
    Author::answer(QMessageBox::Save);
    QVERIFY(document.save());
    QVERIFY(Author::read(file).contains("Third"));
    rename("Third", "Fourth");
    QVERIFY(document.save());
}

QTEST_MAIN(tst_OpenAndReload)
#include "tst_OpenAndReload.moc"
