#include "BaseTools.h"
#include "base/ValueFields.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFNode.h>
#include <Orvane/SFString.h>
#include <QtTest>

using namespace Orvane;

namespace {

/// A behaviour that does what the test says.
class TestProc : public Proc
{
public:
    using Proc::Proc;
    void fieldChanged(Field& field, double time) override
    {
        ++events;
        if (action)
            action(*this, field, time);
    }

    int events = 0;
    std::function<void(TestProc&, Field&, double)> action;
};

const ProcRegistration proc("IntegerTrigger", makeProc<TestProc>);

} // namespace

class tst_Cascade : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void writeReachesRoutesAndObserversInTheNextFrame();
    void severalWritesGiveOneEvent();
    void writesInSeveralFramesAllCount();
    void writeBeforeTheNodeRunsGivesNoEvent();
    void writeOfALoaderGivesNoEvent();
    void anyTimeStampIsDelivered();
    void orderOfDelivery();
    void chainOfRoutesRunsInOneFrame();
    void loopOfRoutesEnds();
    void loopRunsAgainWhileTheClockIsHeld();
    void fanInDeliversLastValue();
    void fanOutReachesAll();
    void hostWriteDuringTheCascadeWaitsForTheNextFrame();
    void behaviourWriteDuringTheCascadeGoesOn();
    void behaviourIsNotToldOfItsOwnWrite();
    void behavioursThatChaseEachOtherGoOnInTheNextFrame();
    void fieldMayDieWhilePending();
    void nodeMayBeDeletedInItsOwnEvent();
    void routeMayBeDeletedInTheEvent();
    void routeMayBeMadeInTheEvent();
    void nodeValuesAreRouted();
    void removedFieldGivesNoEvent();
    void routedToANodeThatDoesNotRunStoresTheValue();
    void listOperationsMarkTheField();
    void clearAndElemDoNot();
    void fieldsOfAnyAccessTellTheirObservers();

private:
    Node& trigger() { return _context->add("IntegerTrigger"); }
    static SFInt32& key(Node& node) { return field<SFInt32>(node, "integerKey"); }
    static TestProc& procOfNode(Node& node) { return *procAs<TestProc>(&node); }

    std::unique_ptr<TestContext> _context;
};

void tst_Cascade::init()
{
    _context = std::make_unique<TestContext>();
    _context->scene();
    _context->run();
}

void tst_Cascade::cleanup()
{
    _context.reset();
}

void tst_Cascade::writeReachesRoutesAndObserversInTheNextFrame()
{
    Node& a = trigger();
    Node& b = trigger();
    connectFields(key(a), key(b));
    TestObserver observer(nullptr);
    key(b)._inSlot->processEventSubject().attach(observer);
    key(a).setValue(0.0, 7, Field::EXTERNAL_CT);
    QCOMPARE(key(a).value(), 7);
    QCOMPARE(key(b).value(), -1);
    QCOMPARE(observer.count, 0);
    (*_context)->runFrame();
    QCOMPARE(key(b).value(), 7);
    QCOMPARE(observer.count, 1);
    QCOMPARE(procOfNode(b).events, 1);
    (*_context)->runFrame();
    QCOMPARE(observer.count, 1);
}

void tst_Cascade::severalWritesGiveOneEvent()
{
    Node& a = trigger();
    for (int i = 0; i < 5; ++i)
        key(a).setValue(0.0, i, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(a).events, 1);
    QCOMPARE(key(a).value(), 4);
}

void tst_Cascade::writesInSeveralFramesAllCount()
{
    Node& a = trigger();
    for (int i = 1; i <= 3; ++i) {
        key(a).setValue(0.0, 5, Field::EXTERNAL_CT);
        (*_context)->runFrame();
        QCOMPARE(procOfNode(a).events, i);
    }
}

void tst_Cascade::writeBeforeTheNodeRunsGivesNoEvent()
{
    const NodeRef a = _context->make("IntegerTrigger");
    key(*a).createOutSlot(false);
    TestObserver observer(nullptr);
    key(*a)._outSlot->processEventSubject().attach(observer);
    key(*a).setValue(0.0, 3, Field::EXTERNAL_CT);
    addChild(_context->scene(), *a);
    (*_context)->runFrame();
    QCOMPARE(observer.count, 0);
    QCOMPARE(key(*a).value(), 3);
}

void tst_Cascade::writeOfALoaderGivesNoEvent()
{
    Node& a = trigger();
    key(a).setValue(0.0, 3, Field::LOADER_CT);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(a).events, 0);
}

void tst_Cascade::anyTimeStampIsDelivered()
{
    Node& a = trigger();
    for (const double stamp : {123456.0, -1.0, (*_context)->timeStamp()}) {
        const int before = procOfNode(a).events;
        key(a).processValueChange(stamp, Field::EXTERNAL_CT);
        (*_context)->runFrame();
        QCOMPARE(procOfNode(a).events, before + 1);
    }
}

void tst_Cascade::orderOfDelivery()
{
    Node& a = trigger();
    Node& b = trigger();
    connectFields(key(a), key(b));
    key(a).createInSlot(false);
    std::string order;
    std::vector<BaseObject*> slots_;
    TestObserver in([&](double, BaseObject* slot, BaseObject*) {
        order += 'i';
        slots_.push_back(slot);
    });
    TestObserver out([&](double, BaseObject* slot, BaseObject*) {
        order += key(b).value() == 9 ? 'O' : 'o';
        slots_.push_back(slot);
    });
    TestObserver target([&](double, BaseObject*, BaseObject*) { order += 't'; });
    key(a)._inSlot->processEventSubject().attach(in);
    key(a)._outSlot->processEventSubject().attach(out);
    key(b)._inSlot->processEventSubject().attach(target);
    procOfNode(a).action = [&](TestProc&, Field&, double) { order += 'p'; };
    key(a).setValue(0.0, 9, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(order, std::string("ipot"));
    QCOMPARE(slots_[0], static_cast<BaseObject*>(key(a)._inSlot));
    QCOMPARE(slots_[1], static_cast<BaseObject*>(key(a)._outSlot));
}

void tst_Cascade::chainOfRoutesRunsInOneFrame()
{
    std::vector<Node*> nodes;
    for (int i = 0; i < 1000; ++i) {
        nodes.push_back(&trigger());
        if (i > 0)
            connectFields(key(*nodes[static_cast<std::size_t>(i) - 1]), key(*nodes.back()));
    }
    key(*nodes[0]).setValue(0.0, 42, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(key(*nodes.back()).value(), 42);
}

void tst_Cascade::loopOfRoutesEnds()
{
    Node& a = trigger();
    Node& b = trigger();
    connectFields(key(a), key(b));
    connectFields(key(b), key(a));
    key(a).setValue(0.0, 1, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(b).events, 1);
    QCOMPARE(procOfNode(a).events, 2);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(a).events, 2);
}

void tst_Cascade::loopRunsAgainWhileTheClockIsHeld()
{
    (*_context)->holdTime(10.0);
    Node& a = trigger();
    Node& b = trigger();
    connectFields(key(a), key(b));
    for (int i = 1; i <= 3; ++i) {
        key(a).setValue(0.0, i, Field::EXTERNAL_CT);
        (*_context)->runFrame();
        QCOMPARE((*_context)->timeStamp(), 10.0);
        QCOMPARE(key(b).value(), i);
    }
}

void tst_Cascade::fanInDeliversLastValue()
{
    Node& a = trigger();
    Node& b = trigger();
    Node& target = trigger();
    connectFields(key(a), key(target));
    connectFields(key(b), key(target));
    key(a).setValue(0.0, 1, Field::EXTERNAL_CT);
    key(b).setValue(0.0, 2, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(key(target).value(), 2);
    QCOMPARE(procOfNode(target).events, 1);
}

void tst_Cascade::fanOutReachesAll()
{
    Node& a = trigger();
    std::vector<Node*> targets;
    for (int i = 0; i < 50; ++i) {
        targets.push_back(&trigger());
        connectFields(key(a), key(*targets.back()));
    }
    key(a).setValue(0.0, 8, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    for (Node* target : targets)
        QCOMPARE(key(*target).value(), 8);
}

void tst_Cascade::hostWriteDuringTheCascadeWaitsForTheNextFrame()
{
    Node& a = trigger();
    Node& b = trigger();
    key(a).createOutSlot(false);
    TestObserver host([&](double, BaseObject*, BaseObject*) { key(b).setValue(0.0, 5, Field::EXTERNAL_CT); });
    key(a)._outSlot->processEventSubject().attach(host);
    key(a).setValue(0.0, 1, Field::EXTERNAL_CT);
    QVERIFY((*_context)->runFrame() <= 1.0 / 60.0);
    QCOMPARE(procOfNode(b).events, 0);
    QCOMPARE(key(b).value(), 5);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(b).events, 1);
}

void tst_Cascade::behaviourWriteDuringTheCascadeGoesOn()
{
    Node& a = trigger();
    Node& b = trigger();
    Node& c = trigger();
    connectFields(key(b), key(c));
    procOfNode(a).action = [&](TestProc&, Field&, double time) { key(b).setValue(time, 6, Field::EVENT_CT); };
    key(a).setValue(0.0, 1, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(b).events, 1);
    QCOMPARE(key(c).value(), 6);
}

void tst_Cascade::behaviourIsNotToldOfItsOwnWrite()
{
    Node& a = trigger();
    Node& b = trigger();
    connectFields(key(a), key(b));
    procOfNode(a).action = [&](TestProc&, Field&, double time) {
        key(a).setValue(time, key(a).value() + 1, Field::EVENT_CT);
    };
    key(a).setValue(0.0, 1, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(a).events, 1);
    QCOMPARE(key(a).value(), 2);
    key(a).setValue(0.0, 10, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(a).events, 2);
    QCOMPARE(key(a).value(), 11);
}

void tst_Cascade::behavioursThatChaseEachOtherGoOnInTheNextFrame()
{
    Node& a = trigger();
    Node& b = trigger();
    procOfNode(a).action = [&](TestProc&, Field&, double time) {
        key(b).setValue(time, key(a).value() + 1, Field::EVENT_CT);
    };
    procOfNode(b).action = [&](TestProc&, Field&, double time) {
        key(a).setValue(time, key(b).value() + 1, Field::EVENT_CT);
    };
    key(a).setValue(0.0, 0, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    const int events = procOfNode(a).events;
    QVERIFY(events > 1);
    (*_context)->runFrame();
    QVERIFY(procOfNode(a).events > events);
    QCOMPARE(key(a).value() % 2, 0);
}

void tst_Cascade::fieldMayDieWhilePending()
{
    const NodeRef a = _context->make("IntegerTrigger");
    addChild(_context->scene(), *a);
    Node& b = trigger();
    key(*a).setValue(0.0, 1, Field::EXTERNAL_CT);
    key(b).setValue(0.0, 1, Field::EXTERNAL_CT);
    delete a.get();
    QVERIFY(!a);
    (*_context)->runFrame();
    QCOMPARE(procOfNode(b).events, 1);
}

void tst_Cascade::nodeMayBeDeletedInItsOwnEvent()
{
    for (const bool byInSlot : {true, false}) {
        Node* a = &trigger();
        Node& b = trigger();
        connectFields(key(*a), key(b));
        key(*a).createInSlot(false);
        TestObserver killer([&](double, BaseObject*, BaseObject*) { delete a; });
        EventSlot* slot = byInSlot ? static_cast<EventSlot*>(key(*a)._inSlot) : key(*a)._outSlot;
        slot->processEventSubject().attach(killer);
        key(*a).setValue(0.0, 1, Field::EXTERNAL_CT);
        (*_context)->runFrame();
        QCOMPARE(killer.count, 1);
        QCOMPARE(procOfNode(b).events, 0);
    }
}

void tst_Cascade::routeMayBeDeletedInTheEvent()
{
    Node& a = trigger();
    Node& b = trigger();
    Node& c = trigger();
    Route* first = connectFields(key(a), key(b));
    connectFields(key(a), key(c));
    TestObserver killer([&](double, BaseObject*, BaseObject*) {
        delete first;
        first = nullptr;
    });
    key(a)._outSlot->processEventSubject().attach(killer);
    key(a).setValue(0.0, 1, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(key(b).value(), -1);
    QCOMPARE(key(c).value(), 1);
}

void tst_Cascade::routeMayBeMadeInTheEvent()
{
    Node& a = trigger();
    Node& b = trigger();
    key(a).createOutSlot(false);
    TestObserver maker([&](double, BaseObject*, BaseObject*) { connectFields(key(a), key(b)); });
    key(a)._outSlot->processEventSubject().attach(maker);
    key(a).setValue(0.0, 1, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(key(b).value(), 1);
}

void tst_Cascade::nodeValuesAreRouted()
{
    Node& a = _context->add("Shape");
    Node& b = _context->add("Shape");
    Node& c = _context->add("Group");
    Node& d = _context->add("Group");
    connectFields(field<SFNode>(a, "geometry"), field<SFNode>(b, "geometry"));
    connectFields(field<MFNode>(c, "children"), field<MFNode>(d, "children"));
    const NodeRef box = _context->make("Box");
    field<SFNode>(a, "geometry").setNode(0.0, box.get(), Field::EXTERNAL_CT);
    addChild(c, a);
    addChild(c, b);
    (*_context)->runFrame();
    QCOMPARE(field<SFNode>(b, "geometry").link().node(), box.get());
    QCOMPARE(field<MFNode>(d, "children").size(), 2U);
    QCOMPARE(field<MFNode>(d, "children")[1].node(), &b);
    field<MFNode>(c, "children").removeNode(0.0, 0, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(field<MFNode>(d, "children").size(), 1U);
    QVERIFY(box->isShared());
}

void tst_Cascade::removedFieldGivesNoEvent()
{
    Node& script = _context->add("Script");
    Field* number = addField(script, "number", SFINT32_DT, EXPOSEDFIELDP);
    number->createOutSlot(false);
    TestObserver observer(nullptr);
    number->_outSlot->processEventSubject().attach(observer);
    static_cast<SFInt32*>(number)->setValue(0.0, 1, Field::EXTERNAL_CT);
    QVERIFY(removeField(script, *number));
    static_cast<SFInt32*>(number)->setValue(0.0, 2, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(observer.count, 0);
}

void tst_Cascade::routedToANodeThatDoesNotRunStoresTheValue()
{
    Node& a = trigger();
    const NodeRef b = _context->make("IntegerTrigger");
    connectFields(key(a), key(*b));
    TestObserver observer(nullptr);
    key(*b)._inSlot->processEventSubject().attach(observer);
    key(a).setValue(0.0, 4, Field::EXTERNAL_CT);
    (*_context)->runFrame();
    QCOMPARE(key(*b).value(), 4);
    QCOMPARE(observer.count, 0);
}

void tst_Cascade::listOperationsMarkTheField()
{
    Node& info = _context->add("WorldInfo");
    auto& list = field<MLField<std::string, 0>>(info, "info");
    list.createOutSlot(false);
    TestObserver observer(nullptr);
    list._outSlot->processEventSubject().attach(observer);
    list.addValue("a");
    list.insertValue(0, "b");
    list.setElem(1, "c");
    list.removeValueByIndex(0);
    list.removeValueByIndex(9);
    list.setElem(-1, "x");
    (*_context)->runFrame();
    QCOMPARE(observer.count, 1);
    QCOMPARE(list.valueToString(), std::string("\"c\""));
}

void tst_Cascade::clearAndElemDoNot()
{
    Node& info = _context->add("WorldInfo");
    auto& list = field<MLField<std::string, 0>>(info, "info");
    list.createOutSlot(false);
    list.addValue("a");
    (*_context)->runFrame();
    TestObserver observer(nullptr);
    list._outSlot->processEventSubject().attach(observer);
    list.elem(0) = "b";
    list.clear();
    (*_context)->runFrame();
    QCOMPARE(observer.count, 0);
    QCOMPARE(list.size(), 0U);
}

void tst_Cascade::fieldsOfAnyAccessTellTheirObservers()
{
    Node& script = _context->add("Script");
    for (const NodePartType access : {FIELDP, EVENTINP, EVENTOUTP, EXPOSEDFIELDP}) {
        auto& value =
            static_cast<SFInt32&>(*addField(script, "value" + std::to_string(access), SFINT32_DT, access));
        value.createInSlot(false);
        value.createOutSlot(false);
        std::vector<BaseObject*> told;
        TestObserver observer([&](double, BaseObject* slot, BaseObject*) { told.push_back(slot); });
        value._inSlot->processEventSubject().attach(observer);
        value._outSlot->processEventSubject().attach(observer);
        value.setValue(0.0, 1, Field::EXTERNAL_CT);
        (*_context)->runFrame();
        QCOMPARE(told, (std::vector<BaseObject*>{value._inSlot, value._outSlot}));
    }
}

QTEST_APPLESS_MAIN(tst_Cascade)
#include "tst_Cascade.moc"
