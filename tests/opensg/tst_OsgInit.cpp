#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGThread.h>

#include <QtTest>

#include <thread>

class tst_OsgInit : public QObject
{
    Q_OBJECT

private slots:
    void imagesWorkBeforeTheStart();
    void exitWithoutAStartIsRefused();
    void startAndEndFollowEachOtherManyTimes();
    void exitLeavesReferencedContainersAlone();
    void anotherVersionIsRefused();
    void everyThreadStartsWithAspectZero();
    void announcedThreadsHaveTheirAspect();
};

void tst_OsgInit::imagesWorkBeforeTheStart()
{
    osg::ImageRefPtr image = osg::Image::create();
    QVERIFY(image != osg::NullFC);
    QVERIFY(image->set(osg::Image::OSG_RGBA_PF, 4));
}

void tst_OsgInit::exitWithoutAStartIsRefused()
{
    QVERIFY(!osg::osgExit());
}

void tst_OsgInit::startAndEndFollowEachOtherManyTimes()
{
    for (int i = 0; i < 3; ++i) {
        QVERIFY(osg::osgInit(0, nullptr));
        QVERIFY(osg::osgLogP);
        QVERIFY(osg::osgInit(0, nullptr));
        QVERIFY(osg::osgExit());
        QVERIFY(!osg::osgLogP);
        QVERIFY(!osg::osgExit());
    }
    osg::doInitLog();
    QVERIFY(osg::osgLogP);
}

void tst_OsgInit::exitLeavesReferencedContainersAlone()
{
    QVERIFY(osg::osgInit(0, nullptr));
    osg::ImagePtr image = osg::Image::create();
    osg::addRefCP(image);
    image->set(osg::Image::OSG_L_PF, 3, 1, 1, 1, 1, 0.0, reinterpret_cast<const osg::UInt8*>("abc"));
    QVERIFY(osg::osgExit());
    QCOMPARE(image.getRefCount(), 1);
    QCOMPARE(image->getData()[2], osg::UInt8('c'));
    QVERIFY(osg::osgInit(0, nullptr));
    QCOMPARE(image->getWidth(), 3);
    osg::subRefCP(image);
    QVERIFY(!image);
    QVERIFY(osg::osgExit());
}

void tst_OsgInit::anotherVersionIsRefused()
{
    QVERIFY(!osg::osgInit(0, nullptr, OSG_MAJOR_VERSION + 1));
}

void tst_OsgInit::everyThreadStartsWithAspectZero()
{
    QCOMPARE(osg::ThreadBase::getAspect(), 0u);
    QCOMPARE(osg::Thread::getAspect(), 0u);
    QCOMPARE(osg::WinThreadBase::getAspect(), 0u);
    osg::UInt32 aspect = 9;
    std::thread([&aspect] { aspect = osg::ThreadBase::getAspect(); }).join();
    QCOMPARE(aspect, 0u);
    QCOMPARE(osg::ThreadManager::getNumAspects(), 2u);
}

void tst_OsgInit::announcedThreadsHaveTheirAspect()
{
    osg::UInt32 first = 9, beyond = 9;
    std::thread([&] {
        osg::ExternalThread::get("worker")->initialize(1);
        first = osg::ThreadBase::getAspect();
        osg::ExternalThread::get("worker")->initialize(7);
        beyond = osg::ThreadBase::getAspect();
    }).join();
    QCOMPARE(first, 1u);
    QCOMPARE(beyond, 0u);
    QCOMPARE(osg::ThreadBase::getAspect(), 0u);
    QCOMPARE(osg::ExternalThread::get("worker"), osg::ExternalThread::get("worker"));
    QVERIFY(osg::ExternalThread::get("worker") != osg::ExternalThread::get(nullptr));
    QCOMPARE(osg::ExternalThread::get("worker")->getName(), "worker");
}

QTEST_APPLESS_MAIN(tst_OsgInit)
#include "tst_OsgInit.moc"
