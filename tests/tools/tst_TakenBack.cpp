// Steps of all kinds that are taken back and done again, and what they say of the file.
#include "Author.h"
#include "CodeDock.h"
#include "SceneEditing.h"
#include "TableDock.h"
#include <Orvane/SFImage.h>
#include <QAction>
#include <QCheckBox>
#include <QorCodeWidget.h>
#include <QorImgCanvasImpl.h>
#include <QorImgCanvasView.h>
#include <functional>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_TakenBack : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void aStrokeIsOneStep();
    void anAddedFieldIsTakenBack();
    void aRemovedFieldComesBackWithValueRoutesAndPlace();
    void undoBehindTheSaveIsAChange();
    void theFileOfACutBranchIsNeverReachedAgain();
    void mixedStepsGoBackToTheFile();
    void stepsOfADeletedNodeWaitForIt();

private:
    void stroke(int height);
    /// Every step taken back gives a text from before, and done again that from after.
    void goBackAndForth(const std::vector<QByteArray>& texts);

    std::unique_ptr<Author> _author;
};

static const QByteArray scene =
    "<X3D version='4.0' profile='Full'><Scene><Transform DEF='T'/><Transform DEF='U'/>"
    "<Script DEF='Mover' url='\"ecmascript: function initialize() {}\"'>"
    "<field name='first' type='SFVec3f' accessType='inputOutput' value='1 2 3'/>"
    "<field name='second' type='SFFloat' accessType='initializeOnly' value='4'/></Script>"
    "<Shape DEF='S'><Appearance><PixelTexture DEF='Ramp' image='8 1 4 1 2 3 4 5 6 7 "
    "8'/></Appearance><Box/></Shape>"
    "<ROUTE fromNode='Mover' fromField='first_changed' toNode='T' toField='translation'/>"
    "<ROUTE fromNode='Mover' fromField='first_changed' toNode='U' toField='translation'/></Scene></X3D>";

void tst_TakenBack::init()
{
    _author = std::make_unique<Author>();
    QVERIFY(_author->open(QStringLiteral("scene.x3d"), scene));
}

void tst_TakenBack::stroke(int height)
{
    auto* const dock = _author->window.findChild<TableDock*>();
    auto* const canvas = dock->findChild<QorImgCanvasView*>();
    const auto send = [canvas](QEvent::Type type, const QPoint& place, Qt::MouseButton button) {
        QMouseEvent event(type, place, canvas->mapToGlobal(place), button, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(canvas, &event);
    };
    send(QEvent::MouseButtonPress, {1, height}, Qt::LeftButton);
    for (int x = 2; x < canvas->width() - 2; x += canvas->width() / 7)
        send(QEvent::MouseMove, {x, height}, Qt::NoButton);
    QTest::mouseRelease(canvas, Qt::LeftButton, Qt::NoModifier, {canvas->width() - 2, height});
    _author->run();
}

void tst_TakenBack::goBackAndForth(const std::vector<QByteArray>& texts)
{
    QCOMPARE(_author->steps().count(), static_cast<int>(texts.size()) - 1);
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = texts.size() - 1; i-- > 0;) {
            _author->key(Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(_author->saved(), texts[i]);
        }
        QVERIFY(!_author->window.isWindowModified());
        for (std::size_t i = 1; i < texts.size(); ++i) {
            _author->key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
            QCOMPARE(_author->saved(), texts[i]);
        }
        QVERIFY(_author->window.isWindowModified());
    }
}

void tst_TakenBack::aStrokeIsOneStep()
{
    std::vector<QByteArray> texts{_author->saved()};
    _author->select("S");
    auto* const dock = _author->window.findChild<TableDock*>();
    dock->action()->trigger();
    QVERIFY(QTest::qWaitForWindowExposed(dock));
    dock->findChild<QorImgCanvasImpl*>()->findChild<QCheckBox*>(QStringLiteral("SetRed"))->click();
    for (const int height : {2, 40}) {
        stroke(height);
        texts.push_back(_author->saved());
        QVERIFY(texts.back() != texts[texts.size() - 2]);
    }
    goBackAndForth(texts);
    // The painter goes on from what has come back.
    _author->steps().undo();
    _author->steps().undo();
    _author->run();
    QCOMPARE(dock->findChild<QorImgCanvasImpl*>()->getImage()->getData()[0], osg::UInt8(0));
}

void tst_TakenBack::anAddedFieldIsTakenBack()
{
    std::vector<QByteArray> texts{_author->saved()};
    Node* const script = _author->select("Mover");
    auto* const widget = _author->window.findChild<CodeDock*>()->codeWidget();
    for (const char* name : {"third", "fourth"}) {
        emit widget->wantsAddField(script, QStringLiteral("SFFloat"), QStringLiteral("Field"),
                                   QString::fromLatin1(name), QStringLiteral("2.5"), {}, {});
        _author->run();
        texts.push_back(_author->saved());
        QVERIFY(texts.back().contains(name));
    }
    goBackAndForth(texts);
}

void tst_TakenBack::aRemovedFieldComesBackWithValueRoutesAndPlace()
{
    std::vector<QByteArray> texts{_author->saved()};
    Node* const script = _author->select("Mover");
    auto* const widget = _author->window.findChild<CodeDock*>()->codeWidget();
    for (const char* name : {"first", "second"}) {
        emit widget->wantsDeleteField(script, QString::fromLatin1(name));
        _author->run();
        texts.push_back(_author->saved());
    }
    QVERIFY(!texts[1].contains("ROUTE"));
    QVERIFY(!texts[2].contains("second"));
    goBackAndForth(texts);
    _author->steps().undo();
    _author->steps().undo();
    QCOMPARE(_author->value("Mover", "first"), std::string("1 2 3"));
}

void tst_TakenBack::undoBehindTheSaveIsAChange()
{
    const auto isModified = [this] { return _author->window.isWindowModified(); };
    _author->select("T");
    QVERIFY(_author->window.editing()->rename(QStringLiteral("A")));
    QVERIFY(isModified());
    _author->key(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!isModified());
    _author->key(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(isModified());
    // The question is asked, as the file has the name.
    Author::answer(QMessageBox::Cancel);
    QVERIFY(!_author->window.close());
    _author->key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(!isModified());
}

void tst_TakenBack::theFileOfACutBranchIsNeverReachedAgain()
{
    _author->select("T");
    QVERIFY(_author->window.editing()->rename(QStringLiteral("A")));
    _author->key(Qt::Key_S, Qt::ControlModifier);
    _author->steps().undo();
    QVERIFY(_author->steps().canRedo());
    QVERIFY(_author->window.editing()->rename(QStringLiteral("B")));
    QVERIFY(!_author->steps().canRedo());
    QVERIFY(!_author->find("A"));
    _author->steps().undo();
    QVERIFY(_author->window.isWindowModified());
    QVERIFY(_author->find("T"));
    _author->steps().redo();
    QVERIFY(_author->find("B"));
    QVERIFY(_author->window.isWindowModified());
}

void tst_TakenBack::mixedStepsGoBackToTheFile()
{
    std::vector<QByteArray> texts;
    const auto step = [&](const std::function<void()>& work) {
        if (work)
            work();
        _author->run();
        texts.push_back(_author->saved());
    };
    SceneEditing& editing = *_author->window.editing();
    step({});
    step([&] {
        _author->select("T");
        editing.addNode(QStringLiteral("Shape"), QStringLiteral("New"));
    });
    step([&] { editing.addNode(QStringLiteral("Sphere"), QStringLiteral("Ball")); });
    step([&] {
        _author->select("New");
        _author->key(Qt::Key_D, Qt::ControlModifier);
    });
    step([&] { editing.rename(QStringLiteral("Twin")); });
    step([&] { _author->key(Qt::Key_Up, Qt::AltModifier); });
    step([&] {
        _author->select("Mover");
        _author->key(Qt::Key_Delete);
    });
    step([&] {
        _author->select("T");
        _author->key(Qt::Key_X, Qt::ControlModifier);
    });
    step([&] {
        _author->select("U");
        _author->key(Qt::Key_V, Qt::ControlModifier);
    });
    goBackAndForth(texts);
}

void tst_TakenBack::stepsOfADeletedNodeWaitForIt()
{
    const QByteArray before = _author->saved();
    _author->select("T");
    QVERIFY(_author->window.editing()->addNode(QStringLiteral("Group"), QStringLiteral("G")));
    QVERIFY(_author->window.editing()->addNode(QStringLiteral("Shape"), QStringLiteral("Inner")));
    _author->select("T");
    _author->key(Qt::Key_Delete);
    QCOMPARE(_author->steps().count(), 3);
    for (int i = 0; i < 3; ++i)
        _author->steps().undo();
    _author->run();
    QCOMPARE(_author->saved(), before);
    for (int i = 0; i < 2; ++i)
        _author->steps().redo();
    QVERIFY(_author->find("Inner"));
    QCOMPARE(_author->find("Inner")->state(), RUNNING_NS);
}

QTEST_MAIN(tst_TakenBack)
#include "tst_TakenBack.moc"
