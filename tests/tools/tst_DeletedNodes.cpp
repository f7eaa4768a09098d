// Nodes that were deleted and may come back: they rest meanwhile, and go on where they were.
#include "Author.h"
#include "FieldCommands.h"
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <QClipboard>
#include <sys/resource.h>
#include <unistd.h>

using namespace Orvane;

class tst_DeletedNodes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void clocksRest();
    void clocksGoOnAsIfTheyHadNotBeenAway();
    void anotherViewpointIsBoundMeanwhile();
    void scriptsTakeNoEventsAndKeepTheirVariables();
    void followersGoOnFromWhereTheyWere();
    void whatIsSharedRunsOn();
    void drawnAgainAfterUndo();
    void deletedForGoodInAllStates();
    void removedFromAFieldOfNodesRests();
    void rowsThatWereNeverOpenedNeedNoRepair();
    void aCutThatCannotBeCopiedDeletesNothing();

private:
    void hold(double time)
    {
        _author->context()->holdTime(time);
        _author->run(3);
    }
    std::string valueOf(Node* node, const char* name) const
    {
        return node->findField(name, Node::EXACT_FSO)->valueToString();
    }
    void send(Node* node, const char* name, const char* value)
    {
        node->findField(name, Node::EXACT_FSO)->setValueByStr(0.0, value);
        _author->run();
    }

    std::unique_ptr<Author> _author;
};

static const char scene[] =
    "<X3D version='4.0' profile='Full'><Scene>"
    "<Viewpoint DEF='V1' position='0 0 10'/><Viewpoint DEF='V2' position='0 0 20'/>"
    "<Group DEF='G'><TimeSensor DEF='Clock' cycleInterval='10' loop='true'/>"
    "<PositionDamper DEF='Damper' tau='5'/>"
    "<Script DEF='Counter'><field name='go' type='SFInt32' accessType='inputOnly'/>"
    "<field name='count' type='SFInt32' accessType='outputOnly'/><![CDATA[ecmascript:\n"
    "var n = 0;\nfunction go(value) { n += value; count = n; }\n]]></Script>"
    "<Transform DEF='T'><Shape DEF='S'><Box/></Shape></Transform></Group>"
    "<Group DEF='H'><TimeSensor USE='Clock'/><Group DEF='Below'><Transform "
    "DEF='Deep'><Shape><Sphere/></Shape>"
    "</Transform></Group></Group></Scene></X3D>";

void tst_DeletedNodes::init()
{
    _author = std::make_unique<Author>();
    _author->context()->holdTime(100.0);
    QVERIFY(_author->open(QStringLiteral("scene.x3d"), scene));
    hold(101.0);
}

void tst_DeletedNodes::clocksRest()
{
    _author->select("H");
    _author->key(Qt::Key_Delete); // the second place of the clock
    Node* const clock = _author->select("Clock");
    _author->key(Qt::Key_Delete);
    QVERIFY(!_author->find("Clock"));
    const std::string before = valueOf(clock, "fraction_changed");
    hold(103.0);
    QCOMPARE(valueOf(clock, "fraction_changed"), before);
    QVERIFY(clock->state() < SETUP_NS);
    _author->key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(clock->state(), RUNNING_NS);
    hold(104.0);
    QVERIFY(valueOf(clock, "fraction_changed") != before);
}

void tst_DeletedNodes::clocksGoOnAsIfTheyHadNotBeenAway()
{
    Node* const clock = _author->find("Clock");
    const std::string begun = valueOf(clock, "cycleTime");
    for (const char* group : {"G", "H"}) {
        _author->select(group);
        _author->key(Qt::Key_Delete);
    }
    hold(103.0);
    _author->steps().undo();
    _author->steps().undo();
    hold(104.0);
    QCOMPARE(valueOf(clock, "isActive"), std::string("TRUE"));
    QCOMPARE(valueOf(clock, "cycleTime"), begun);
}

void tst_DeletedNodes::anotherViewpointIsBoundMeanwhile()
{
    Node* const first = _author->select("V1");
    Node* const second = _author->find("V2");
    QCOMPARE(valueOf(first, "isBound"), std::string("TRUE"));
    send(second, "set_bind", "true");
    send(first, "set_bind", "true");
    _author->key(Qt::Key_Delete);
    QCOMPARE(valueOf(first, "isBound"), std::string("FALSE"));
    QCOMPARE(valueOf(second, "isBound"), std::string("TRUE"));
    send(first, "set_bind", "true"); // which it does not hear
    QCOMPARE(valueOf(second, "isBound"), std::string("TRUE"));
    _author->steps().undo();
    _author->run();
    QCOMPARE(valueOf(first, "isBound"), std::string("TRUE"));
    QCOMPARE(valueOf(second, "isBound"), std::string("FALSE"));
}

void tst_DeletedNodes::scriptsTakeNoEventsAndKeepTheirVariables()
{
    Node* const script = _author->select("Counter");
    send(script, "go", "5");
    QCOMPARE(valueOf(script, "count"), std::string("5"));
    _author->key(Qt::Key_Delete);
    send(script, "go", "100");
    QCOMPARE(valueOf(script, "count"), std::string("5"));
    _author->steps().undo();
    _author->run();
    send(script, "go", "2");
    QCOMPARE(valueOf(script, "count"), std::string("7"));
}

void tst_DeletedNodes::followersGoOnFromWhereTheyWere()
{
    Node* const damper = _author->select("Damper");
    send(damper, "set_destination", "10 0 0");
    hold(103.0);
    const std::string before = valueOf(damper, "value_changed");
    QVERIFY(before != "0 0 0");
    _author->key(Qt::Key_Delete);
    hold(105.0);
    QCOMPARE(valueOf(damper, "value_changed"), before);
    _author->steps().undo();
    hold(106.0);
    const double x =
        QString::fromStdString(valueOf(damper, "value_changed")).section(QLatin1Char(' '), 0, 0).toDouble();
    QVERIFY(x > QString::fromStdString(before).section(QLatin1Char(' '), 0, 0).toDouble());
    QVERIFY(x < 10.0);
}

void tst_DeletedNodes::whatIsSharedRunsOn()
{
    Node* const clock = _author->find("Clock");
    _author->select("G");
    _author->key(Qt::Key_Delete);
    QCOMPARE(clock->state(), RUNNING_NS);
    const std::string before = valueOf(clock, "fraction_changed");
    hold(103.0);
    QVERIFY(valueOf(clock, "fraction_changed") != before);
}

void tst_DeletedNodes::drawnAgainAfterUndo()
{
    const auto triangles = [this] {
        _author->run(3);
        return _author->context()->frameStatistics().triangles;
    };
    const auto all = triangles();
    QVERIFY(all > 0);
    _author->select("G");
    _author->key(Qt::Key_Delete);
    QVERIFY(triangles() < all);
    _author->steps().undo();
    QCOMPARE(triangles(), all);
}

void tst_DeletedNodes::deletedForGoodInAllStates()
{
    for (const char* name : {"G", "H", "V1", "V2"}) {
        _author->select(name);
        _author->key(Qt::Key_Delete);
    }
    hold(105.0);
    _author->steps().clear();
    _author->run(3);
    QVERIFY(!_author->find("Counter"));
    QVERIFY(_author->open(QStringLiteral("other.x3d"), "<X3D version='4.0'><Scene/></X3D>"));
}

void tst_DeletedNodes::removedFromAFieldOfNodesRests()
{
    _author->select("H");
    _author->key(Qt::Key_Delete);
    Node* const clock = _author->find("Clock");
    auto* const children = dynamic_cast<MFNode*>(_author->field("G", "children"));
    {
        const FieldRecorder recorder(&_author->steps(), children);
        QVERIFY(children->removeNode(0.0, 0, Field::EXTERNAL_CT));
    }
    QVERIFY(clock->state() < SETUP_NS);
    _author->steps().undo();
    QCOMPARE(clock->state(), RUNNING_NS);
    _author->steps().redo();
    QVERIFY(clock->state() < SETUP_NS);
}

void tst_DeletedNodes::rowsThatWereNeverOpenedNeedNoRepair()
{
    _author->log()->clear();
    auto* const children = dynamic_cast<MFNode*>(_author->field("Below", "children"));
    const QModelIndex root = _author->tree()->model()->index(0, 0);
    _author->select("H"); // whose own row stays closed
    const QModelIndex closed = _author->tree()->currentIndex();
    _author->tree()->expand(closed);
    QVERIFY(_author->tree()->isExpanded(root));
    // Below has a row, but nobody has looked below it.
    const QModelIndex below = _author->tree()->model()->index(1, 0, closed);
    QCOMPARE(_author->tree()->model()->rowCount(below), 1);
    children->removeNode(0.0, 0, Field::EXTERNAL_CT);
    _author->run();
    QVERIFY2(!_author->log()->toPlainText().contains(QStringLiteral("removal at index")),
             qPrintable(_author->log()->toPlainText()));
    QCOMPARE(_author->tree()->model()->rowCount(below), 0);
}

void tst_DeletedNodes::aCutThatCannotBeCopiedDeletesNothing()
{
#if defined(__SANITIZE_ADDRESS__)
    QSKIP("The sanitizer ends a program that has no room.");
#endif
    QApplication::clipboard()->setText(QStringLiteral("before"));
    _author->select("Counter");
    // A text that takes more room than there is.
    constexpr std::size_t size = std::size_t(64) << 20;
    std::string& code = static_cast<MFString&>(*_author->field("Counter", "url")).elem(0);
    const std::string before = code;
    code += "//" + std::string(size, 'x');
    QFile memory(QStringLiteral("/proc/self/statm"));
    QVERIFY(memory.open(QIODevice::ReadOnly));
    const rlim_t used =
        memory.readAll().split(' ').constFirst().toULongLong() * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
    rlimit limit = {};
    QCOMPARE(::getrlimit(RLIMIT_AS, &limit), 0);
    const rlimit tight{used + size / 2, limit.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_AS, &tight), 0);
    QTest::keyClick(_author->tree(), Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(::setrlimit(RLIMIT_AS, &limit), 0);
    code = before;
    QVERIFY(_author->find("Counter"));
    QCOMPARE(_author->steps().count(), 0);
    QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("before"));
    QVERIFY2(_author->told().contains(QStringLiteral("room")), qPrintable(_author->told()));
}

QTEST_MAIN(tst_DeletedNodes)
#include "tst_DeletedNodes.moc"
