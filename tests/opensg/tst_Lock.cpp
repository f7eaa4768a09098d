#include <OpenSG/OSGLock.h>

#include <QtTest>

#include <thread>

using namespace osg;

namespace {

bool obtainableElsewhere(Lock* lock)
{
    bool obtained = false;
    std::thread([&] {
        obtained = lock->request();
        if (obtained)
            lock->release();
    }).join();
    return obtained;
}

} // namespace

class tst_Lock : public QObject
{
    Q_OBJECT

private slots:
    void nameLeadsToOneLock();
    void findMakesNone();
    void createdLocksAreNew();
    void lockIsRecursive();
    void requestFailsWhileAnotherThreadHasIt();
    void lastReleaseDeletes();
    void namedLockOutlivesItsUsers();
    void nullIsSafe();
};

void tst_Lock::nameLeadsToOneLock()
{
    Lock* lock = Lock::get("tst_Lock::one");
    QVERIFY(lock);
    QCOMPARE(Lock::get("tst_Lock::one"), lock);
    QCOMPARE(Lock::find("tst_Lock::one"), lock);
    QVERIFY(Lock::get("tst_Lock::two") != lock);
}

void tst_Lock::findMakesNone()
{
    QVERIFY(!Lock::find("tst_Lock::none"));
    QVERIFY(!Lock::find("tst_Lock::none"));
    QVERIFY(!Lock::find(nullptr));
}

void tst_Lock::createdLocksAreNew()
{
    Lock* a = Lock::create();
    Lock* b = Lock::get(nullptr);
    QVERIFY(a != b);
    QCOMPARE(a->getRefCount(), 0);
    for (Lock* lock : {a, b}) {
        addRefP(lock);
        QCOMPARE(lock->getRefCount(), 1);
        subRefP(lock);
    }
}

void tst_Lock::lockIsRecursive()
{
    Lock* lock = Lock::get("tst_Lock::recursive");
    lock->aquire();
    lock->aquire();
    QVERIFY(lock->request());
    lock->release();
    lock->release();
    QVERIFY(!obtainableElsewhere(lock));
    lock->release();
    QVERIFY(obtainableElsewhere(lock));
}

void tst_Lock::requestFailsWhileAnotherThreadHasIt()
{
    Lock* lock = Lock::get("tst_Lock::request");
    QVERIFY(obtainableElsewhere(lock));
    lock->aquire();
    QVERIFY(!obtainableElsewhere(lock));
    lock->release();
}

void tst_Lock::lastReleaseDeletes()
{
    struct Watched : MemoryObject
    {
        explicit Watched(bool& flag)
            : dead(flag)
        {
        }
        ~Watched() override { dead = true; }
        bool& dead;
    };
    bool dead = false;
    auto* object = new Watched(dead);
    addRefP(object);
    addRefP(object);
    subRefP(object);
    QVERIFY(!dead);
    subRefP(object);
    QVERIFY(dead);

    dead = false;
    subRefP(new Watched(dead));
    QVERIFY(dead);
}

void tst_Lock::namedLockOutlivesItsUsers()
{
    Lock* lock = Lock::get("tst_Lock::named");
    addRefP(lock);
    subRefP(lock);
    QCOMPARE(Lock::find("tst_Lock::named"), lock);
    QVERIFY(obtainableElsewhere(lock));
}

void tst_Lock::nullIsSafe()
{
    addRefP(static_cast<Lock*>(nullptr));
    subRefP(static_cast<Lock*>(nullptr));
}

QTEST_APPLESS_MAIN(tst_Lock)
#include "tst_Lock.moc"
