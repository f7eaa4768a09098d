#include "BaseTools.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/SFNode.h>
#include <QtTest>

using namespace Orvane;

class tst_Route : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _context.reset(); }

    void createTellsWhenBothSlotsHoldIt();
    void deleteTellsWhileBothSlotsHoldIt();
    void refusesOtherDataTypes();
    void refusesAccessThatDoesNotFit();
    void refusesASecondRoute();
    void refusesOtherContexts();
    void typesAndCounts();
    void observerMayDeleteTheNewRoute();
    void slotsDeleteTheirRoutes();

private:
    std::unique_ptr<TestContext> _context;
    Field* _from = nullptr;
    Field* _to = nullptr;
};

void tst_Route::init()
{
    _context = std::make_unique<TestContext>();
    _from = _context->add("Transform").findField("translation", Node::EXACT_FSO);
    _to = _context->add("Transform").findField("translation", Node::EXACT_FSO);
}

void tst_Route::createTellsWhenBothSlotsHoldIt()
{
    Route* told = nullptr;
    TestObserver observer([&](double, BaseObject* first, BaseObject*) {
        auto* route = dynamic_cast<Route*>(first);
        if (*route->outSlot()->begin() == route && *route->inSlot()->begin() == route)
            told = route;
    });
    Route::_newObject.attach(observer);
    Route* const route = connectFields(*_from, *_to);
    QVERIFY(route);
    QCOMPARE(told, route);
    QCOMPARE(route->outSlot(), _from->_outSlot);
    QCOMPARE(route->inSlot(), _to->_inSlot);
    QCOMPARE(route->type(), Route::SCENE_RT);
    QCOMPARE(_from->_outSlot->findRoute(_to->_inSlot), route);
    QVERIFY(!_from->_outSlot->findRoute(nullptr));
}

void tst_Route::deleteTellsWhileBothSlotsHoldIt()
{
    Route* const route = connectFields(*_from, *_to);
    bool right = false;
    TestObserver observer([&](double, BaseObject* first, BaseObject*) {
        auto* dying = dynamic_cast<Route*>(first);
        right = dying == route && _from->_outSlot->findRoute(_to->_inSlot) == route &&
                *_to->_inSlot->begin() == route;
    });
    Route::_deleteObject.attach(observer);
    delete route;
    QVERIFY(right);
    QVERIFY(!_from->_outSlot->findRoute(_to->_inSlot));
    QVERIFY(_to->_inSlot->begin() == _to->_inSlot->end());
}

void tst_Route::refusesOtherDataTypes()
{
    QVERIFY(!connectFields(*_from, *_to->node()->findField("rotation", Node::EXACT_FSO)));
}

void tst_Route::refusesAccessThatDoesNotFit()
{
    Node& script = _context->add("Script");
    Field* const plain = addField(script, "plain", SFVEC3F_DT, FIELDP);
    Field* const in = addField(script, "in", SFVEC3F_DT, EVENTINP);
    Field* const out = addField(script, "out", SFVEC3F_DT, EVENTOUTP);
    QVERIFY(!connectFields(*_from, *plain));
    QVERIFY(!connectFields(*plain, *_to));
    QVERIFY(!connectFields(*in, *_to));
    QVERIFY(!connectFields(*_from, *out));
    QVERIFY(connectFields(*_from, *in));
    QVERIFY(connectFields(*out, *_to));
    // The parts that an IS connection joins have the same access.
    QVERIFY(connectFields(*in, *addField(script, "body", SFVEC3F_DT, EVENTINP), Route::IS_RT));
}

void tst_Route::refusesASecondRoute()
{
    QVERIFY(connectFields(*_from, *_to));
    QVERIFY(!connectFields(*_from, *_to));
    QVERIFY(!connectFields(*_from, *_to, Route::IS_RT));
    QVERIFY(connectFields(*_to, *_from));
}

void tst_Route::refusesOtherContexts()
{
    const TestContext other;
    QVERIFY(!connectFields(*_from, *other.add("Transform").findField("translation", Node::EXACT_FSO)));
}

void tst_Route::typesAndCounts()
{
    Field* const script = _context->add("Transform").findField("translation", Node::EXACT_FSO);
    Field* const is = _context->add("Transform").findField("translation", Node::EXACT_FSO);
    connectFields(*_from, *_to);
    connectFields(*_from, *script, Route::SCRIPT_RT);
    connectFields(*_from, *is, Route::IS_RT);
    QCOMPARE(_from->outRouteCount(true, false), 2U);
    QCOMPARE(_from->outRouteCount(false, true), 1U);
    QCOMPARE(_from->outRouteCount(true, true), 3U);
    QCOMPARE(_from->outRouteCount(false, false), 0U);
    QCOMPARE(_from->inRouteCount(true, true), 0U);
    QCOMPARE(is->inRouteCount(true, false), 0U);
    QCOMPARE(is->inRouteCount(false, true), 1U);
    QCOMPARE(_from->_outSlot->findRoute(script->_inSlot)->type(), Route::SCRIPT_RT);
}

void tst_Route::observerMayDeleteTheNewRoute()
{
    TestObserver observer([](double, BaseObject* route, BaseObject*) { delete route; });
    Route::_newObject.attach(observer);
    QVERIFY(!connectFields(*_from, *_to));
    QCOMPARE(_from->outRouteCount(true, true), 0U);
}

void tst_Route::slotsDeleteTheirRoutes()
{
    connectFields(*_from, *_to);
    TestObserver observer(nullptr);
    Route::_deleteObject.attach(observer);
    delete _to->node();
    QCOMPARE(observer.count, 1);
    QCOMPARE(_from->outRouteCount(true, true), 0U);
}

QTEST_APPLESS_MAIN(tst_Route)
#include "tst_Route.moc"
