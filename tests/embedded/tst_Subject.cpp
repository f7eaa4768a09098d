#include "BaseTools.h"
#include <Orvane/Subject.h>
#include <QtTest>

using namespace Orvane;

namespace {

/// Attached to each other at static places: the process must end well whichever goes first.
TestObserver observerBeforeSubject(nullptr);
Subject staticSubject;
TestObserver observerAfterSubject(nullptr);

/// Appends its letter at each call.
std::unique_ptr<TestObserver> letter(std::string& text, char c)
{
    return std::make_unique<TestObserver>([&text, c](double, BaseObject*, BaseObject*) { text += c; });
}

} // namespace

class tst_Subject : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void deliversInOrderOfAttachment();
    void handsOnTimeAndObjects();
    void attachingTwiceDeliversOnce();
    void detachOfStrangerDoesNothing();
    void observerLeavesWhenItDies();
    void subjectMayDieFirst();
    void copyIsAttachedToNothing();
    void nullNameMeansUnnamed();
    void whoLeavesDuringDeliveryGetsNothingMore();
    void whoJoinsDuringDeliveryGetsTheNextOne();
    void whoLeavesAndJoinsAgainGetsTheNextOne();
    void observerMayDeleteItselfDuringDelivery();
    void observerMayDeleteAllDuringDelivery();
    void subjectMayDieDuringDelivery();
    void subjectMayDieDuringNestedDelivery();
    void nestedDeliveryReachesAll();
    void emptySubjectIsUntouched();
    void oneObserverAtManySubjects();
};

void tst_Subject::initTestCase()
{
    staticSubject.attach(observerBeforeSubject);
    staticSubject.attach(observerAfterSubject);
}

void tst_Subject::deliversInOrderOfAttachment()
{
    std::string text;
    const auto a = letter(text, 'a');
    const auto b = letter(text, 'b');
    const auto c = letter(text, 'c');
    Subject subject;
    subject.attach(*b);
    subject.attach(*c);
    subject.attach(*a);
    subject.fire(0.0, nullptr);
    QCOMPARE(text, std::string("bca"));
    subject.detach(*b);
    subject.attach(*b);
    subject.fire(0.0, nullptr);
    QCOMPARE(text, std::string("bcacab"));
}

void tst_Subject::handsOnTimeAndObjects()
{
    Subject subject;
    TestObserver one(nullptr);
    TestObserver two(nullptr);
    bool right = false;
    TestObserver observer([&](double time, BaseObject* first, BaseObject* second) {
        right = time == 2.5 && first == &one && second == &two;
    });
    subject.attach(observer);
    subject.fire(2.5, &one, &two);
    QVERIFY(right);
}

void tst_Subject::attachingTwiceDeliversOnce()
{
    Subject subject;
    TestObserver observer(nullptr);
    subject.attach(observer);
    subject.attach(observer);
    subject.fire(0.0, nullptr);
    QCOMPARE(observer.count, 1);
    subject.detach(observer);
    subject.fire(0.0, nullptr);
    QCOMPARE(observer.count, 1);
}

void tst_Subject::detachOfStrangerDoesNothing()
{
    Subject subject;
    TestObserver member(nullptr);
    TestObserver stranger(nullptr);
    subject.detach(stranger);
    subject.attach(member);
    subject.detach(stranger);
    subject.fire(0.0, nullptr);
    QCOMPARE(member.count, 1);
    QCOMPARE(stranger.count, 0);
}

void tst_Subject::observerLeavesWhenItDies()
{
    Subject first;
    Subject second;
    {
        TestObserver observer(nullptr);
        first.attach(observer);
        second.attach(observer);
    }
    QVERIFY(first.isUntouched());
    second.fire(0.0, nullptr);
}

void tst_Subject::subjectMayDieFirst()
{
    TestObserver observer(nullptr);
    {
        Subject subject;
        subject.attach(observer);
    }
    Subject other;
    other.attach(observer);
    other.fire(0.0, nullptr);
    QCOMPARE(observer.count, 1);
}

void tst_Subject::copyIsAttachedToNothing()
{
    Subject subject;
    TestObserver observer(nullptr);
    subject.attach(observer);
    TestObserver copy(observer);
    TestObserver assigned(nullptr);
    assigned = observer;
    QCOMPARE(copy.observerName(), std::string("test"));
    subject.fire(0.0, nullptr);
    QCOMPARE(observer.count, 1);
    QCOMPARE(copy.count, 0);
    QCOMPARE(assigned.count, 0);
}

void tst_Subject::nullNameMeansUnnamed()
{
    class Unnamed : public Observer
    {
    public:
        Unnamed()
            : Observer(nullptr)
        {
        }
        void notify(const double&, BaseObject*, BaseObject*, BaseObject*) override {}
    } unnamed;
    QVERIFY(unnamed.observerName().empty());
}

void tst_Subject::whoLeavesDuringDeliveryGetsNothingMore()
{
    Subject subject;
    TestObserver last(nullptr);
    TestObserver next(nullptr);
    TestObserver first([&](double, BaseObject*, BaseObject*) {
        subject.detach(next);
        subject.detach(first);
    });
    subject.attach(first);
    subject.attach(next);
    subject.attach(last);
    subject.fire(0.0, nullptr);
    subject.fire(0.0, nullptr);
    QCOMPARE(first.count, 1);
    QCOMPARE(next.count, 0);
    QCOMPARE(last.count, 2);
}

void tst_Subject::whoJoinsDuringDeliveryGetsTheNextOne()
{
    Subject subject;
    TestObserver joiner(nullptr);
    TestObserver first([&](double, BaseObject*, BaseObject*) { subject.attach(joiner); });
    subject.attach(first);
    subject.fire(0.0, nullptr);
    QCOMPARE(joiner.count, 0);
    subject.fire(0.0, nullptr);
    QCOMPARE(joiner.count, 1);
}

void tst_Subject::whoLeavesAndJoinsAgainGetsTheNextOne()
{
    Subject subject;
    TestObserver again(nullptr);
    TestObserver first([&](double, BaseObject*, BaseObject*) {
        subject.detach(again);
        subject.attach(again);
    });
    subject.attach(first);
    subject.attach(again);
    subject.fire(0.0, nullptr);
    QCOMPARE(again.count, 0);
}

void tst_Subject::observerMayDeleteItselfDuringDelivery()
{
    Subject subject;
    TestObserver last(nullptr);
    class SelfEnding : public Observer
    {
    public:
        SelfEnding()
            : Observer("self-ending")
        {
        }
        void notify(const double&, BaseObject*, BaseObject*, BaseObject*) override { delete this; }
    };
    subject.attach(*new SelfEnding);
    subject.attach(last);
    subject.fire(0.0, nullptr);
    QCOMPARE(last.count, 1);
    subject.fire(0.0, nullptr);
    QCOMPARE(last.count, 2);
}

void tst_Subject::observerMayDeleteAllDuringDelivery()
{
    Subject subject;
    std::vector<std::unique_ptr<TestObserver>> others;
    TestObserver killer([&](double, BaseObject*, BaseObject*) { others.clear(); });
    subject.attach(killer);
    int called = 0;
    for (int i = 0; i < 3; ++i) {
        others.push_back(
            std::make_unique<TestObserver>([&called](double, BaseObject*, BaseObject*) { ++called; }));
        subject.attach(*others.back());
    }
    subject.fire(0.0, nullptr);
    QCOMPARE(called, 0);
    QCOMPARE(killer.count, 1);
}

void tst_Subject::subjectMayDieDuringDelivery()
{
    auto subject = std::make_unique<Subject>();
    TestObserver killer([&](double, BaseObject*, BaseObject*) { subject.reset(); });
    TestObserver last(nullptr);
    subject->attach(killer);
    subject->attach(last);
    subject->fire(0.0, nullptr);
    QCOMPARE(killer.count, 1);
    QCOMPARE(last.count, 0);
}

void tst_Subject::subjectMayDieDuringNestedDelivery()
{
    auto subject = std::make_unique<Subject>();
    TestObserver killer([&](double, BaseObject*, BaseObject*) {
        if (killer.count == 1)
            subject->fire(0.0, nullptr);
        else
            subject.reset();
    });
    TestObserver last(nullptr);
    subject->attach(killer);
    subject->attach(last);
    subject->fire(0.0, nullptr);
    QCOMPARE(killer.count, 2);
    QCOMPARE(last.count, 0);
}

void tst_Subject::nestedDeliveryReachesAll()
{
    Subject subject;
    TestObserver nesting([&](double, BaseObject*, BaseObject*) {
        if (nesting.count == 1)
            subject.fire(0.0, nullptr);
    });
    TestObserver last(nullptr);
    subject.attach(nesting);
    subject.attach(last);
    subject.fire(0.0, nullptr);
    QCOMPARE(nesting.count, 2);
    QCOMPARE(last.count, 2);
}

void tst_Subject::emptySubjectIsUntouched()
{
    Subject subject;
    QVERIFY(subject.isUntouched());
    TestObserver observer(nullptr);
    subject.attach(observer);
    QVERIFY(!subject.isUntouched());
    subject.detach(observer);
    QVERIFY(subject.isUntouched());
}

void tst_Subject::oneObserverAtManySubjects()
{
    std::vector<std::unique_ptr<Subject>> subjects;
    auto observer = std::make_unique<TestObserver>(nullptr);
    for (int i = 0; i < 20000; ++i) {
        subjects.push_back(std::make_unique<Subject>());
        subjects.back()->attach(*observer);
        subjects.back()->attach(*observer);
    }
    for (const auto& subject : subjects)
        subject->fire(0.0, nullptr);
    QCOMPARE(observer->count, 20000);
    for (std::size_t i = 0; i < subjects.size(); i += 2)
        subjects[i].reset();
    observer.reset();
    for (std::size_t i = 1; i < subjects.size(); i += 2)
        QVERIFY(subjects[i]->isUntouched());
}

QTEST_APPLESS_MAIN(tst_Subject)
#include "tst_Subject.moc"
