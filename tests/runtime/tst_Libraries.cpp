#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/GraphLoader.h>
#include <Orvane/Image.h>
#include <Orvane/NavigatorProc.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodePath.h>
#include <Orvane/NodeProc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Observer.h>
#include <Orvane/Route.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/Scene.h>
#include <Orvane/SceneBaseNodeProc.h>
#include <Orvane/System.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/WindowProc.h>
#include <QFileInfo>
#include <QtTest>
#include <cstring>
#include <dlfcn.h>

using namespace Orvane;

/// Programs name the libraries that they link, so each class stands in the one it has always been in.
class tst_Libraries : public QObject
{
    Q_OBJECT

private slots:
    void classesStandInTheirLibraries_data();
    void classesStandInTheirLibraries();
};

namespace {

/// Where an operation that is not virtual stands.
template <class Operation>
void* address(Operation operation)
{
    void* where = nullptr;
    std::memcpy(&where, &operation, sizeof where);
    return where;
}

} // namespace

void tst_Libraries::classesStandInTheirLibraries_data()
{
    QTest::addColumn<void*>("operation");
    QTest::addColumn<QString>("library");
    const auto row = [](const char* name, void* operation, const char* library) {
        QTest::newRow(name) << operation << QString::fromLatin1(library);
    };
    row("RefCountObject", address(&RefCountObject::subRef), "liborvaneBase");
    row("Subject", address(&Subject::attach), "liborvaneBase");
    row("Observer", address<Observer& (Observer::*)(const Observer&)>(&Observer::operator=), "liborvaneBase");
    row("Node", address(&Node::findNode), "liborvaneBase");
    row("NodeProc", address(&NodeProc::contextTimeStamp), "liborvaneBase");
    row("NodeType", address(&NodeType::getTypeVec), "liborvaneBase");
    row("NodePartDesc", address(&NodePartDesc::valueList), "liborvaneBase");
    row("Field", address(&Field::createInSlot), "liborvaneBase");
    row("EventOutSlot", address(&EventOutSlot::findRoute), "liborvaneBase");
    row("Route", address(&Route::create), "liborvaneBase");
    row("NodeLink", address(&NodeLink::parent), "liborvaneBase");
    row("NodePath", address(&NodePath::isValid), "liborvaneBase");
    row("NodeNameSpace", address(&NodeNameSpace::findNode), "liborvaneBase");
    row("Context", address(&Context::create), "liborvaneBase");
    row("System", address(&System::the), "liborvaneBase");
    row("Image", address(&Image::width), "liborvaneBase");
    row("ContextSetup", address(&ContextSetup::create), "liborvaneBase");
    row("Engine", address(&Engine::create), "liborvaneEngineNodePool");
    row("WindowProc", address(&WindowProc::title), "liborvaneEngineNodePool");
    row("Viewarea", address(&Viewarea::getViewareaProc), "liborvaneEngineNodePool");
    row("ViewareaProc", address(&ViewareaProc::vptPtr), "liborvaneEngineNodePool");
    row("Scene", address(&Scene::create), "liborvaneCoreNodePool");
    row("SceneBaseNode", address(&SceneBaseNode::getSceneBaseNodeProc), "liborvaneCoreNodePool");
    row("SceneBaseNodeProc", address(&SceneBaseNodeProc::pick), "liborvaneCoreNodePool");
    row("NavigatorProc", address(&NavigatorProc::getMessageCount), "liborvaneNavigationNodePool");
    row("GraphLoader", address(&GraphLoader::getFormatList), "liborvaneLoaderPool");
    row("URL", address(&Relayne::URL::toString), "libRelayne");
    // Its operations are virtual: what the object points at is the table of its class.
    static SAIBrowserRef browser(nullptr);
    row("SAIBrowserRef", *reinterpret_cast<void**>(&browser), "liborvaneScriptNodePool");
}

void tst_Libraries::classesStandInTheirLibraries()
{
    QFETCH(void*, operation);
    QFETCH(QString, library);
    Dl_info info{};
    QVERIFY(::dladdr(operation, &info) != 0);
    QCOMPARE(QFileInfo(QString::fromLocal8Bit(info.dli_fname)).baseName(), library);
}

QTEST_APPLESS_MAIN(tst_Libraries)
#include "tst_Libraries.moc"
