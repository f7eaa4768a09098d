#include <OpenSG/OSGNode.h>
#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/FieldType.h>
#include <Orvane/GraphLoader.h>
#include <Orvane/LogModule.h>
#include <Orvane/MFBool.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFDouble.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFRotation.h>
#include <Orvane/MFString.h>
#include <Orvane/MFVec2d.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3d.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/MFVec4d.h>
#include <Orvane/MFVec4f.h>
#include <Orvane/NavigatorProc.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodePath.h>
#include <Orvane/Observer.h>
#include <Orvane/Route.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFImage.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFNode.h>
#include <Orvane/SFString.h>
#include <Orvane/Scene.h>
#include <Orvane/SceneBaseNodeProc.h>
#include <Orvane/System.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QtTest>
#include <algorithm>
#include <cstring>
#include <functional>
#include <set>
#include <typeinfo>

using namespace Orvane;

namespace {

// What the interface promises at compile time.

template <class Derived, class Base>
constexpr bool derives = std::is_base_of<Base, Derived>::value;

static_assert(derives<RefCountObject, BaseObject> && derives<NotificationHandler, BaseObject>);
static_assert(derives<Observer, NotificationHandler> && derives<Node, BaseObject> &&
              derives<NodeProc, BaseObject>);
static_assert(derives<EventSlot, BaseObject> && derives<EventInSlot, EventSlot> &&
              derives<EventOutSlot, EventSlot>);
static_assert(derives<Route, BaseObject> && derives<NodeLink, BaseObject> &&
              derives<Context, RefCountObject>);
static_assert(derives<ContextSetup, Node> && derives<Engine, Node> && derives<Scene, SceneBaseNode>);
static_assert(derives<SceneBaseNode, Node> && derives<SceneBaseNodeProc, NodeProc>);
static_assert(derives<Window, Node> && derives<WindowProc, NodeProc>);
static_assert(derives<Viewarea, Node> && derives<ViewareaProc, NodeProc> && derives<NavigatorProc, NodeProc>);
static_assert(derives<Orvane::SAIBrowserRef, SAI::Base::SAIBrowserRef>);
static_assert(std::is_same<__SAI_SAIBrowserRef, SAI::Base::SAIBrowserRef>::value);
static_assert(!derives<Field, BaseObject> && !derives<Subject, BaseObject> && !derives<NodeType, BaseObject>);

static_assert(derives<SFBool, XField<bool, 0>> && derives<SFInt32, XField<int, 0>> &&
              derives<SFFloat, XField<float, 0>>);
static_assert(derives<MFInt32, MVField<int, 0>> && derives<MFFloat, MVField<float, 0>>);
static_assert(derives<MFDouble, MVField<double, 0>> && derives<MFRotation, MVField<Rotation, 0>>);
static_assert(derives<MFColor, MVField<osg::Color3<float>, 0>> &&
              derives<MFColorRGBA, MVField<osg::Color4<float>, 0>>);
static_assert(derives<MFVec2f, MVField<osg::Vector<float, 2>, 0>> &&
              derives<MFVec3f, MVField<osg::Vector<float, 3>, 0>>);
static_assert(derives<MFVec4f, MVField<osg::Vector<float, 4>, 0>> &&
              derives<MFVec2d, MVField<osg::Vector<double, 2>, 0>>);
static_assert(derives<MFVec3d, MVField<osg::Vector<double, 3>, 0>> &&
              derives<MFVec4d, MVField<osg::Vector<double, 4>, 0>>);
static_assert(derives<MFBool, MLField<bool, 0>> && derives<MFString, MLField<std::string, 0>>);
static_assert(derives<MFNode, MLField<NodeLink, 1>> && derives<SFNode, Field> && derives<SFString, Field> &&
              derives<SFImage, Field>);

static_assert(HOST_NC == 1 && RUNNING_NS == 3 && Context::REPLACE_LT == 0 && Field::EXTERNAL_CT == 0);
static_assert(Route::SCENE_RT == 1 && Route::SCRIPT_RT == 4 && Node::DECLARED_FSO == 1 &&
              GraphLoader::FILTER_FS == 1);
static_assert(NO_PART == 0 && FIELDP == 1 && EVENTINP == 2 && EVENTOUTP == 4 && EXPOSEDFIELDP == 7);
static_assert(NodePartDesc::NONE_VR == 1 && NodePartDesc::CDATA_VR == 2 && NodePartDesc::NODE_TYPE_VR == 3);
static_assert(NodePartDesc::MIN_MAX_VR == 4 && NodePartDesc::LIST_VR == 5);
static_assert(SFBOOL_DT == 1 && SFCOLOR_DT == 3 && SFCOLORRGBA_DT == 5 && SFDOUBLE_DT == 7 &&
              SFFLOAT_DT == 9);
static_assert(SFIMAGE_DT == 11 && SFINT32_DT == 13 && SFMATRIX3D_DT == 15 && SFMATRIX3F_DT == 17);
static_assert(SFMATRIX4D_DT == 19 && SFMATRIX4F_DT == 21 && SFNODE_DT == 23 && SFROTATION_DT == 25);
static_assert(SFSTRING_DT == 27 && SFTIME_DT == 29 && SFVEC2D_DT == 31 && SFVEC2F_DT == 33 &&
              SFVEC3D_DT == 35);
static_assert(SFVEC3F_DT == 37 && SFVEC4D_DT == 39 && SFVEC4F_DT == 41 && SFRESERVED1_DT == 43);
static_assert(MFBOOL_DT == 2 && MFNODE_DT == 24 && MFVEC4F_DT == 42 && MFRESERVED3_DT == 48);
static_assert(std::is_same<UInt64, unsigned long long>::value);

static_assert(std::is_same<decltype(RefCountObject::_refCount), int>::value);
static_assert(std::is_same<decltype(Field::_desc), NodePartDesc*>::value);
static_assert(std::is_same<decltype(Field::_inSlot), EventInSlot*>::value);
static_assert(std::is_same<decltype(Field::_outSlot), EventOutSlot*>::value);
static_assert(std::is_same<decltype(NodePartDesc::id), unsigned int>::value);
static_assert(std::is_same<decltype(NodePartDesc::valueType), std::string>::value);
static_assert(std::is_same<decltype(NodePartDesc::valueRestriction), unsigned int>::value);
static_assert(std::is_same<decltype(NodePartDesc::minValue), double>::value);
static_assert(std::is_same<decltype(NodePartDesc::maxValue), double>::value);
static_assert(std::is_same<decltype(NodePartDesc::name), std::string>::value);
static_assert(std::is_same<decltype(NodePartDesc::defaultValue), std::string>::value);
static_assert(std::is_same<decltype(NodePartDesc::description), std::string>::value);
static_assert(std::is_same<decltype(NodeType::name), std::string>::value);
static_assert(std::is_same<decltype(NodeType::description), std::string>::value);
static_assert(std::is_same<decltype(NavigatorProc::Message::name), std::string>::value);
static_assert(std::is_same<decltype(NavigatorProc::Message::description), std::string>::value);
static_assert(sizeof(TouchPointRecord{0, 0, true, 0.0F, 0.0F, 0.0F}) > 0);

/// Needs the symbol of what it is given.
template <class T>
void use(T value)
{
    volatile unsigned char sink = 0;
    unsigned char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    for (const unsigned char byte : bytes)
        sink = sink ^ byte;
}

/// Needs the operation of class C with exactly this type.
template <class C, class Result, class... Arguments>
void useOf(Result (C::*operation)(Arguments...))
{
    use(operation);
}
template <class C, class Result, class... Arguments>
void useConst(Result (C::*operation)(Arguments...) const)
{
    use(operation);
}

/// Place of a virtual operation among those of its class.
template <class Operation>
std::ptrdiff_t place(Operation operation)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof(words) == sizeof(operation));
    std::memcpy(words, &operation, sizeof(words));
    return words[0];
}

template <class... Operations>
bool standInOrder(Operations... operations)
{
    const std::vector<std::ptrdiff_t> places = {place(operations)...};
    return std::is_sorted(places.begin(), places.end(), std::less_equal<>());
}

template <class T, class FieldClass>
void useListOperations()
{
    use(static_cast<T* (FieldClass::*)(const T&)>(&FieldClass::addValue));
    use(static_cast<T* (FieldClass::*)(int, const T&)>(&FieldClass::insertValue));
    use(static_cast<void (FieldClass::*)(int)>(&FieldClass::removeValueByIndex));
    use(static_cast<T& (FieldClass::*)(int)>(&FieldClass::elem));
    use(static_cast<void (FieldClass::*)(int, const T&)>(&FieldClass::setElem));
}

/// Counts what it is told.
class Counter : public Observer
{
public:
    explicit Counter(const char* name = nullptr)
        : Observer(name)
    {
    }
    void notify(const double& time, BaseObject* first, BaseObject* second, BaseObject* third) override
    {
        ++count;
        lastTime = time;
        objects = {first, second, third};
        if (action)
            action();
    }

    int count = 0;
    double lastTime = -1.0;
    std::vector<BaseObject*> objects;
    std::function<void()> action;
};

} // namespace

/// A use of everything that the view library may ask of a runtime. Built once with each runtime.
class tst_Interface : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void operationsAreThere();
    void staticsAreThere();
    void typeInformationIsThere();
    void virtualOperationsStandInOrder();
    void everyDataTypeHasAName();
    void attachingTwiceDeliversOnce();
    void aDestroyedObserverIsOutOfItsSubjects();
    void aDestroyedSubjectLetsItsObserversLive();
    void detachingAStrangerDoesNothing();
    void leavingAndJoiningDuringADelivery();
    void aSubjectMayDieDuringItsDelivery();
    void copiesOfObserversAreAttachedToNothing();
    void rootsAreMadeOnceAndFound();
    void theSceneIsTheRootOfItsNameSpace();
    void namesAndIdsOfNodes();
    void fieldsAreAddedToSingleNodes();
    void removedRootsAreGone();
    void framesGiveTheirWait();
    void referencesAreCounted();
    void pathsOfRootsAreEmpty();
    void pathsOutliveTheirNodes();
    void copiesOfLinksAreNoLinks();
    void theBrowserObjectOutlivesItsContext();
    void imagesWithoutPixels();
    void addressesBecomeText();
};

void tst_Interface::initTestCase()
{
    System::the().init(0, nullptr, 382);
    System::the().init(0, nullptr, 382);
}

void tst_Interface::cleanupTestCase()
{
    System::the().exit();
    System::the().exit();
}

void tst_Interface::operationsAreThere()
{
    useConst<RefCountObject, void>(&RefCountObject::subRef);
    use(static_cast<Node* (*)(unsigned long long)>(&Node::findNode));
    useConst<Node, unsigned long long>(&Node::ID);
    useConst<Node, const std::string&>(&Node::getIDStr);
    useOf<Node, Context*>(&Node::context);
    useConst<Node, Node*>(&Node::contextRoot);
    useOf<Node, bool>(&Node::isShared);
    useConst<Node, int>(&Node::childCount);
    useOf<Node, int, std::vector<Node*>&, unsigned int>(&Node::collectAllChildren);
    useConst<Node, Field*, unsigned int>(&Node::findField);
    useConst<Node, Field*, const std::string&, Node::FieldSearchOrder>(&Node::findField);
    useConst<Node, unsigned int>(&Node::partDescCount);
    useConst<Node, int, const std::string&>(&Node::findEventInSlotID);
    useConst<Node, int, const std::string&>(&Node::findEventOutSlotID);
    useConst<Node, NodeType*>(&Node::type);
    useConst<Node, const std::string*>(&Node::name);
    useConst<Node, NodeState>(&Node::state);
    useConst<Node, NodeNameSpace*>(&Node::nameSpace);
    useConst<NodeType, bool>(&NodeType::isProto);
    useConst<NodeType, bool>(&NodeType::isContextRoot);
    use(static_cast<unsigned int (*)(std::vector<NodeType*>&, int)>(&NodeType::getTypeVec));
    useConst<NodePartDesc, bool>(&NodePartDesc::autoProcess);
    useConst<NodePartDesc, bool>(&NodePartDesc::objExt);
    useConst<NodePartDesc, bool>(&NodePartDesc::privateAccess);
    useConst<NodePartDesc, const std::string&>(&NodePartDesc::dataTypeName);
    useConst<NodePartDesc, const std::string&>(&NodePartDesc::partTypeName);
    useConst<NodePartDesc, std::vector<std::string>>(&NodePartDesc::valueList);
    use(static_cast<const std::string& (*)(NodePartDataType)>(&FieldType::dataTypeName));
    useOf<Field, void, const double&, const char*>(&Field::setValueByStr);
    useOf<Field, void, const double&, Field::CallerType>(&Field::processValueChange);
    useConst<Field, unsigned int, bool, bool>(&Field::inRouteCount);
    useConst<Field, unsigned int, bool, bool>(&Field::outRouteCount);
    useOf<Field, EventOutSlot*, bool, bool>(&Field::getOutSlot);
    useOf<Field, void, bool>(&Field::createInSlot);
    useOf<Field, void, bool>(&Field::createOutSlot);
    useConst<Field, Node*>(&Field::node);

    use(static_cast<void (XField<bool, 0>::*)(const double&, const bool&, Field::CallerType)>(
        &SFBool::setValue));
    use(static_cast<void (XField<int, 0>::*)(const double&, const int&, Field::CallerType)>(
        &SFInt32::setValue));
    use(static_cast<void (XField<float, 0>::*)(const double&, const float&, Field::CallerType)>(
        &SFFloat::setValue));
    use(&SFBool::value);
    use(&SFInt32::value);
    use(&SFFloat::value);
    useConst<SFString, const std::string&>(&SFString::value);
    useOf<SFString, void, const double&, const std::string&, Field::CallerType>(&SFString::setValue);
    useOf<SFNode, NodeLink&>(&SFNode::link);
    useConst<SFNode, const NodeLink&>(&SFNode::link);
    useOf<SFNode, bool, const double&, Node*, Field::CallerType>(&SFNode::setNode);
    useConst<SFImage, Image>(&SFImage::image);

    useListOperations<int, MVField<int, 0>>();
    useListOperations<float, MVField<float, 0>>();
    useListOperations<double, MVField<double, 0>>();
    useListOperations<osg::Color3f, MVField<osg::Color3f, 0>>();
    useListOperations<osg::Color4f, MVField<osg::Color4f, 0>>();
    useListOperations<osg::Vec2f, MVField<osg::Vec2f, 0>>();
    useListOperations<osg::Vec3f, MVField<osg::Vec3f, 0>>();
    useListOperations<osg::Vec4f, MVField<osg::Vec4f, 0>>();
    useListOperations<osg::Vec2d, MVField<osg::Vec2d, 0>>();
    useListOperations<osg::Vec3d, MVField<osg::Vec3d, 0>>();
    useListOperations<osg::Vec4d, MVField<osg::Vec4d, 0>>();
    useListOperations<Rotation, MVField<Rotation, 0>>();
    useListOperations<bool, MLField<bool, 0>>();
    useListOperations<std::string, MLField<std::string, 0>>();
    use(static_cast<std::string& (MLField<std::string, 0>::*)(int)>(&MFString::operator[]));
    use(&MFNode::elem);
    use(&MFNode::operator[]);
    use(&MFNode::begin);
    use(&MFNode::end);
    use(&MFNode::addNode);
    use(&MFNode::insertNode);
    use(&MFNode::removeNode);

    useOf<NodeLink, Node*>(&NodeLink::node);
    useOf<NodeLink, Node*>(&NodeLink::directNode);
    useConst<NodeLink, Node*>(&NodeLink::parent);
    useConst<NodeLink, Field*>(&NodeLink::field);
    useConst<NodePath, Node*>(&NodePath::node);
    useConst<NodePath, bool>(&NodePath::isValid);
    useOf<NodePath, const NodePath&, Node*>(&NodePath::addNode);
    useConst<NodePath, void, std::list<NodeLink*>&>(&NodePath::nodeLinks);
    useOf<NodePath, void, const std::list<NodeLink*>&>(&NodePath::setNode);
    use(static_cast<Node* (*)(NodeNameSpace*, const std::string&)>(&NodeNameSpace::findNode));
    use(static_cast<NodeNameSpace* (*)(NodeNameSpace*, const std::string&, Context*, bool)>(
        &NodeNameSpace::findNameSpace));
    useConst<NodeNameSpace, Node*>(&NodeNameSpace::rootNode);
    useConst<NodeNameSpace, const Relayne::URL&>(&NodeNameSpace::baseURL);
    use(static_cast<Route* (*)(EventOutSlot&, EventInSlot&, Route::Type)>(&Route::create));
    useConst<Route, EventOutSlot*>(&Route::outSlot);
    useConst<Route, EventInSlot*>(&Route::inSlot);
    useConst<Route, Route::Type>(&Route::type);
    useOf<EventOutSlot, Route*, EventInSlot*>(&EventOutSlot::findRoute);
    useConst<EventSlot, EventSlot::RouteIterator>(&EventSlot::begin);
    useConst<EventSlot, EventSlot::RouteIterator>(&EventSlot::end);
    useOf<EventSlot, Subject&>(&EventSlot::processEventSubject);
    useConst<EventSlot, Field*>(&EventSlot::field);
    useConst<Image, int>(&Image::width);
    useConst<Image, int>(&Image::height);
    useConst<Image, int>(&Image::depth);
    useConst<Image, osg::ImagePtr>(&Image::rco);

    useOf<Subject, void, Observer&>(&Subject::attach);
    useOf<Subject, void, Observer&>(&Subject::detach);
    use(static_cast<System& (*)()>(&System::the));
    useOf<System, void, int, char**, int>(&System::init);
    useOf<System, void>(&System::exit);
    use(static_cast<Context* (*)()>(&Context::create));
    useOf<Context, bool, const std::string&, Context::LoadType, std::string>(&Context::load);
    useOf<Context, bool, const std::string&, const std::string&, Context::LoadType, std::string>(
        &Context::load);
    useOf<Context, Node*, const NodeType&>(&Context::findRoot);
    useOf<Context, bool, NodeType&>(&Context::removeRoot);
    useOf<Context, bool, const double&, NodeState>(&Context::setRootState);
    useOf<Context, double>(&Context::runFrame);
    useConst<Context, double>(&Context::timeStamp);
    use(static_cast<ContextSetup* (*)(BaseObject*, const char*, NodeCreator)>(&ContextSetup::create));
    use(static_cast<Engine* (*)(BaseObject*, const char*, NodeCreator)>(&Engine::create));
    use(static_cast<Scene* (*)(BaseObject*, const char*, NodeCreator)>(&Scene::create));
    useOf<NodeProc, double>(&NodeProc::contextTimeStamp);

    useOf<WindowProc, std::string>(&WindowProc::title);
    useOf<WindowProc, void, osg::WindowPtr&, bool>(&WindowProc::setWinPtr);
    useOf<WindowProc, void, int, int>(&WindowProc::browsePickedNode);
    useConst<WindowProc, Window*>(&WindowProc::window);
    useConst<WindowProc, const osg::WindowPtr&>(&WindowProc::winPtr);
    useConst<Window, const osg::Vec2f&>(&Window::size);
    useConst<Window, const osg::Vec2f&>(&Window::position);
    useConst<Window, bool>(&Window::fullScreen);
    useConst<Window, bool>(&Window::decoration);
    useConst<Window, bool>(&Window::cursorVisible);
    useConst<Window, int>(&Window::samples);
    useConst<Window, const std::string&>(&Window::pipe);
    useConst<Window, MFNode*>(&Window::viewareas);
    useOf<Viewarea, ViewareaProc*>(&Viewarea::getViewareaProc);
    useOf<ViewareaProc, osg::ViewportPtr>(&ViewareaProc::vptPtr);
    useConst<ViewareaProc, bool>(&ViewareaProc::overSensor);
    useOf<SceneBaseNode, SceneBaseNodeProc*>(&SceneBaseNode::getSceneBaseNodeProc);
    useOf<SceneBaseNodeProc, bool, const osg::Line&, std::vector<Node*>&, osg::Pnt3f*, osg::Vec3f*,
          osg::NodePtr*, unsigned int*, float*>(&SceneBaseNodeProc::pick);
    use(static_cast<unsigned int (*)()>(&NavigatorProc::getMessageCount));
    use(static_cast<NavigatorProc::Message* (*)(unsigned int)>(&NavigatorProc::getMessage));
    use(static_cast<int (*)(std::list<std::string>&, GraphLoader::FormatStyle)>(&GraphLoader::getFormatList));
    use(static_cast<int (*)(std::list<std::string>&)>(&GraphLoader::getSuffixList));
    useConst<Relayne::URL, std::string>(&Relayne::URL::toString);
}

void tst_Interface::staticsAreThere()
{
    for (Subject* subject :
         {&Node::_childAdded, &Node::_childRemoved, &Node::_deleteObject, &Node::_nameSpaceChanged,
          &Route::_newObject, &Route::_deleteObject, &WindowProc::_newWidget, &WindowProc::_deleteWidget,
          &WindowProc::_showWidget, &WindowProc::_hideWidget, &WindowProc::_resizeWidget,
          &WindowProc::_repositionWidget, &WindowProc::_cursorWidget, &WindowProc::_fullScreenWidget,
          &WindowProc::_beginFrameWidget, &WindowProc::_endFrameWidget})
    {
        Counter counter;
        subject->attach(counter);
        subject->fire(2.5, nullptr);
        QCOMPARE(counter.count, 1);
        QCOMPARE(counter.lastTime, 2.5);
    }
    QVERIFY(&ContextSetup::_type != &Engine::_type);
    QCOMPARE(Scene::_type.name, std::string("Scene"));
    QVERIFY(LogModuleName[0] != '\0');
}

void tst_Interface::typeInformationIsThere()
{
    const std::vector<const std::type_info*> infos = {&typeid(BaseObject),
                                                      &typeid(RefCountObject),
                                                      &typeid(NotificationHandler),
                                                      &typeid(Observer),
                                                      &typeid(Node),
                                                      &typeid(NodeProc),
                                                      &typeid(NodeType),
                                                      &typeid(NodePartDesc),
                                                      &typeid(Field),
                                                      &typeid(EventSlot),
                                                      &typeid(EventInSlot),
                                                      &typeid(EventOutSlot),
                                                      &typeid(Route),
                                                      &typeid(NodeLink),
                                                      &typeid(NodePath),
                                                      &typeid(NodeNameSpace),
                                                      &typeid(Context),
                                                      &typeid(ContextSetup),
                                                      &typeid(Engine),
                                                      &typeid(Scene),
                                                      &typeid(SceneBaseNode),
                                                      &typeid(Window),
                                                      &typeid(WindowProc),
                                                      &typeid(Viewarea),
                                                      &typeid(ViewareaProc),
                                                      &typeid(SceneBaseNodeProc),
                                                      &typeid(NavigatorProc),
                                                      &typeid(SFBool),
                                                      &typeid(MFBool),
                                                      &typeid(SFInt32),
                                                      &typeid(MFInt32),
                                                      &typeid(SFFloat),
                                                      &typeid(MFFloat),
                                                      &typeid(MFDouble),
                                                      &typeid(SFString),
                                                      &typeid(MFString),
                                                      &typeid(SFNode),
                                                      &typeid(MFNode),
                                                      &typeid(SFImage),
                                                      &typeid(MFColor),
                                                      &typeid(MFColorRGBA),
                                                      &typeid(MFRotation),
                                                      &typeid(MFVec2f),
                                                      &typeid(MFVec3f),
                                                      &typeid(MFVec4f),
                                                      &typeid(MFVec2d),
                                                      &typeid(MFVec3d),
                                                      &typeid(MFVec4d)};
    std::set<std::string> names;
    for (const std::type_info* info : infos)
        names.insert(info->name());
    QCOMPARE(names.size(), infos.size());
}

void tst_Interface::virtualOperationsStandInOrder()
{
    QVERIFY(standInOrder(&Field::name, &Field::dataType, &Field::dataTypeName, &Field::partType,
                         &Field::fieldTypeName, &Field::valueToString, &Field::cardinality, &Field::size,
                         &Field::clear));
    QVERIFY(standInOrder(&WindowProc::render, &WindowProc::resize, &WindowProc::keyPress,
                         &WindowProc::keyRelease, &WindowProc::buttonPress, &WindowProc::buttonRelease,
                         &WindowProc::mouseMove, &WindowProc::touchEvent, &WindowProc::message));
    using Browser = __SAI_SAIBrowserRef;
    QVERIFY(standInOrder(&Browser::getName, &Browser::getVersion, &Browser::getCurrentSpeed,
                         &Browser::getCurrentFrameRate, &Browser::getExecutionContext, &Browser::loadURL,
                         &Browser::setDescription, &Browser::print, &Browser::dispose));
    // The destructor stands behind them.
    QCOMPARE(place(&Browser::getName), std::ptrdiff_t(1));
}

void tst_Interface::everyDataTypeHasAName()
{
    std::set<std::string> names;
    for (int i = 1; i <= 48; ++i)
        names.insert(FieldType::dataTypeName(static_cast<NodePartDataType>(i)));
    QCOMPARE(names.size(), std::size_t(48));
    QVERIFY(!names.count(std::string()));
    QCOMPARE(FieldType::dataTypeName(SFBOOL_DT), std::string("SFBool"));
    QCOMPARE(FieldType::dataTypeName(MFNODE_DT), std::string("MFNode"));
}

void tst_Interface::attachingTwiceDeliversOnce()
{
    Subject subject;
    Counter counter;
    subject.attach(counter);
    subject.attach(counter);
    NodeLink first;
    subject.fire(1.5, &first, nullptr, &counter);
    QCOMPARE(counter.count, 1);
    QCOMPARE(counter.lastTime, 1.5);
    QCOMPARE(counter.objects, (std::vector<BaseObject*>{&first, nullptr, &counter}));
    subject.detach(counter);
    subject.fire(1.5, nullptr);
    QCOMPARE(counter.count, 1);
}

void tst_Interface::aDestroyedObserverIsOutOfItsSubjects()
{
    Subject one;
    Subject two;
    Counter stays;
    {
        Counter goes;
        one.attach(goes);
        two.attach(goes);
        one.attach(stays);
    }
    one.fire(0.0, nullptr);
    two.fire(0.0, nullptr);
    QCOMPARE(stays.count, 1);
}

void tst_Interface::aDestroyedSubjectLetsItsObserversLive()
{
    Counter counter;
    Subject other;
    {
        Subject subject;
        subject.attach(counter);
        other.attach(counter);
    }
    other.fire(0.0, nullptr);
    QCOMPARE(counter.count, 1);
}

void tst_Interface::detachingAStrangerDoesNothing()
{
    Subject subject;
    Counter stranger;
    subject.detach(stranger);
    Counter counter;
    subject.attach(counter);
    subject.detach(stranger);
    subject.fire(0.0, nullptr);
    QCOMPARE(counter.count, 1);
}

void tst_Interface::leavingAndJoiningDuringADelivery()
{
    Subject subject;
    Counter first;
    auto second = std::make_unique<Counter>();
    Counter third;
    Counter late;
    subject.attach(first);
    subject.attach(*second);
    subject.attach(third);
    first.action = [&] {
        second.reset();
        subject.detach(third);
        subject.attach(late);
    };
    subject.fire(0.0, nullptr);
    QCOMPARE(first.count, 1);
    QCOMPARE(third.count, 0);
    QCOMPARE(late.count, 0);
    first.action = nullptr;
    subject.fire(0.0, nullptr);
    QCOMPARE(late.count, 1);
    QCOMPARE(third.count, 0);
}

void tst_Interface::aSubjectMayDieDuringItsDelivery()
{
    auto subject = std::make_unique<Subject>();
    Counter first;
    Counter second;
    subject->attach(first);
    subject->attach(second);
    first.action = [&] { subject.reset(); };
    subject->fire(0.0, nullptr);
    QCOMPARE(first.count, 1);
    QCOMPARE(second.count, 0);
}

void tst_Interface::copiesOfObserversAreAttachedToNothing()
{
    Subject subject;
    Counter original("watch");
    subject.attach(original);
    Counter copy(original);
    QCOMPARE(copy.observerName(), std::string("watch"));
    subject.fire(0.0, nullptr);
    QCOMPARE(original.count, 1);
    QCOMPARE(copy.count, 0);
    Counter unnamed;
    unnamed = original;
    subject.fire(0.0, nullptr);
    QCOMPARE(unnamed.observerName(), std::string("watch"));
    QCOMPARE(original.count, 2);
}

void tst_Interface::rootsAreMadeOnceAndFound()
{
    Context* context = Context::create();
    QVERIFY(context);
    QVERIFY(!context->findRoot(Scene::_type));
    Scene* scene = Scene::create(context, nullptr, HOST_NC);
    QVERIFY(scene);
    QVERIFY(!Scene::create(context, nullptr, HOST_NC));
    QVERIFY(!Scene::create(nullptr, nullptr, HOST_NC));
    ContextSetup* setup = ContextSetup::create(context, nullptr, HOST_NC);
    Engine* engine = Engine::create(context, nullptr, HOST_NC);
    QCOMPARE(context->findRoot(Scene::_type), scene);
    QCOMPARE(dynamic_cast<Scene*>(context->findRoot(Scene::_type)), scene);
    QCOMPARE(context->findRoot(ContextSetup::_type), setup);
    QCOMPARE(context->findRoot(Engine::_type), engine);
    for (Node* root : {static_cast<Node*>(scene), static_cast<Node*>(setup), static_cast<Node*>(engine)}) {
        QVERIFY(root->type()->isContextRoot());
        QCOMPARE(root->contextRoot(), root);
        QCOMPARE(root->context(), context);
        QVERIFY(!root->isShared());
    }
    QVERIFY(context->setRootState(0.0, RUNNING_NS));
    QCOMPARE(scene->state(), RUNNING_NS);
    context->subRef();
}

void tst_Interface::theSceneIsTheRootOfItsNameSpace()
{
    Context* context = Context::create();
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "scene", context, false));
    Scene* scene = Scene::create(context, nullptr, HOST_NC);
    NodeNameSpace* names = NodeNameSpace::findNameSpace(nullptr, "scene", context, false);
    QVERIFY(names);
    QCOMPARE(names->rootNode(), scene);
    QCOMPARE(scene->nameSpace(), names);
    QCOMPARE(NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false), names);
    QVERIFY(!NodeNameSpace::findNode(names, "nobody"));
    QVERIFY(!NodeNameSpace::findNode(nullptr, "nobody"));
    context->subRef();
}

void tst_Interface::namesAndIdsOfNodes()
{
    Context* context = Context::create();
    Scene* scene = Scene::create(context, nullptr, HOST_NC);
    QVERIFY(!scene->name());
    QVERIFY(!scene->getIDStr().empty());
    const UInt64 id = scene->ID();
    QVERIFY(id != 0);
    QCOMPARE(Node::findNode(id), scene);
    for (unsigned int i = 0; i < scene->partDescCount(); ++i) {
        Field* field = scene->findField(i);
        QVERIFY(field);
        QCOMPARE(field->_desc->id, i);
        QCOMPARE(field->node(), scene);
        QCOMPARE(scene->findField(field->name(), Node::DECLARED_FSO), field);
    }
    QVERIFY(!scene->findField(scene->partDescCount()));
    QVERIFY(!scene->findField(static_cast<unsigned int>(-1)));
    QVERIFY(!scene->findField("no such field", Node::DECLARED_FSO));
    QCOMPARE(scene->findEventInSlotID("no such event"), -1);
    QCOMPARE(scene->findEventOutSlotID("no such event"), -1);
    std::vector<Node*> children;
    QCOMPARE(scene->collectAllChildren(children, 0), scene->childCount());
    context->subRef();
    QVERIFY(!Node::findNode(id));
}

void tst_Interface::removedRootsAreGone()
{
    Context* context = Context::create();
    QVERIFY(!context->removeRoot(Scene::_type));
    Counter deaths;
    Node::_deleteObject.attach(deaths);
    Scene* scene = Scene::create(context, nullptr, HOST_NC);
    const UInt64 id = scene->ID();
    bool readable = false;
    deaths.action = [&] {
        const auto* node = dynamic_cast<Node*>(deaths.objects.front());
        readable = readable || (node && node->ID() == id && node->state() != RUNNING_NS);
    };
    QVERIFY(context->removeRoot(Scene::_type));
    QVERIFY(readable);
    QVERIFY(!Node::findNode(id));
    QVERIFY(!context->findRoot(Scene::_type));
    context->subRef();
}

void tst_Interface::framesGiveTheirWait()
{
    Context* context = Context::create();
    QVERIFY(context->timeStamp() >= 0.0);
    QVERIFY(context->runFrame() >= 0.0);
    QVERIFY(context->timeStamp() >= 0.0);
    context->subRef();
}

void tst_Interface::referencesAreCounted()
{
    Context* context = Context::create();
    QCOMPARE(context->_refCount, 1);
    ++context->_refCount;
    context->subRef();
    QCOMPARE(context->_refCount, 1);
    context->subRef();
}

void tst_Interface::pathsOfRootsAreEmpty()
{
    Context* context = Context::create();
    Scene* scene = Scene::create(context, nullptr, HOST_NC);
    NodePath path(scene);
    std::list<NodeLink*> links(1, nullptr);
    path.nodeLinks(links);
    QVERIFY(links.empty());
    QVERIFY(path.isValid());
    QCOMPARE(path.node(), scene);
    const NodePath copy(path);
    QVERIFY(copy == path);
    QVERIFY(!(NodePath() == path));
    QCOMPARE(path.addNode(nullptr).node(), scene);
    NodePath assigned;
    assigned = path;
    QVERIFY(assigned == path);
    QVERIFY(!NodePath(std::list<NodeLink*>()).isValid());
    assigned.setNode(links);
    QVERIFY(!assigned.isValid());
    context->subRef();
}

void tst_Interface::pathsOutliveTheirNodes()
{
    Context* context = Context::create();
    const NodePath path(Scene::create(context, nullptr, HOST_NC));
    context->subRef();
    QVERIFY(!path.isValid());
    QVERIFY(!path.node());
    std::list<NodeLink*> links(1, nullptr);
    path.nodeLinks(links);
    QVERIFY(links.empty());
}

void tst_Interface::fieldsAreAddedToSingleNodes()
{
    Context* context = Context::create();
    Scene* scene = Scene::create(context, nullptr, HOST_NC);
    const unsigned int count = scene->partDescCount();
    const std::string typeField = count > 0 ? scene->findField(0U)->name() : "";
    Field* first = scene->addField("first", SFINT32_DT, FIELDP);
    Field* second = scene->addField("second", MFSTRING_DT, EXPOSEDFIELDP);
    QVERIFY(first && second);
    QCOMPARE(scene->partDescCount(), count + 2);
    QCOMPARE(scene->findField("first", Node::EXACT_FSO), first);
    QCOMPARE(first->_desc->id, count);
    QCOMPARE(second->_desc->id, count + 1);
    QVERIFY(first->_desc->objExt());
    QCOMPARE(first->partType(), FIELDP);
    QVERIFY(dynamic_cast<MFString*>(second));

    QVERIFY(!scene->addField("first", SFBOOL_DT, FIELDP));
    QVERIFY(!scene->addField("", SFBOOL_DT, FIELDP));
    QVERIFY(!scene->addField("third", NO_DT, FIELDP));
    QVERIFY(!scene->addField("third", SFRESERVED1_DT, FIELDP));
    QVERIFY(!scene->addField("third", SFBOOL_DT, NO_PART));
    QCOMPARE(scene->partDescCount(), count + 2);

    QVERIFY(scene->removeField(*first));
    QVERIFY(!scene->removeField(*first));
    QCOMPARE(std::string(first->name()), std::string("first"));
    QCOMPARE(second->_desc->id, count);
    QCOMPARE(scene->findField(count), second);
    QVERIFY(!scene->findField("first", Node::EXACT_FSO));
    if (count > 0)
        QVERIFY(!scene->removeField(*scene->findField(typeField, Node::EXACT_FSO)));
    context->subRef();
}

void tst_Interface::copiesOfLinksAreNoLinks()
{
    NodeLink empty;
    QVERIFY(!empty.node() && !empty.directNode() && !empty.parent() && !empty.field());
    NodeLink copy(empty);
    QVERIFY(!copy.field());
    copy = empty;
    QVERIFY(!copy.node());
}

void tst_Interface::theBrowserObjectOutlivesItsContext()
{
    Orvane::SAIBrowserRef nothing(nullptr);
    QVERIFY(!nothing.getExecutionContext());
    QVERIFY(!nothing.loadURL({"nowhere.x3d"}));
    Context* context = Context::create();
    Orvane::SAIBrowserRef browser(context);
    QCOMPARE(browser.getExecutionContext(), context);
    QCOMPARE(context->_refCount, 1);
    context->subRef();
    QVERIFY(!browser.getExecutionContext());
    QVERIFY(!browser.loadURL({"nowhere.x3d"}));
    browser.dispose();
}

void tst_Interface::imagesWithoutPixels()
{
    const Image image;
    QCOMPARE(image.width(), 0);
    QCOMPARE(image.height(), 0);
    QCOMPARE(image.depth(), 0);
    QVERIFY(!image.rco());
    const Image copy(image);
    QVERIFY(!copy.rco());
}

void tst_Interface::addressesBecomeText()
{
    QCOMPARE(Relayne::URL("file:///a/b.x3d?q=1#c").toString(), std::string("file:///a/b.x3d?q=1#c"));
    QCOMPARE(Relayne::URL("b.x3d").toString(), std::string("b.x3d"));
    QCOMPARE(Relayne::URL().toString(), std::string());
}

QTEST_APPLESS_MAIN(tst_Interface)
#include "tst_Interface.moc"
