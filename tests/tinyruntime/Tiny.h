#pragma once

#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/NavigatorProc.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The test's side of the tiny runtime. It does what the headers of the runtime say in the simplest way,
/// draws nothing, reads no files, and enters states on demand that a healthy runtime never does. Windows are
/// made by the test, which fires the subjects itself. Everything here belongs to the test that uses it.
namespace Tiny {

/// Calls on the runtime in order, such as "System::init 0 null 382"; a test may add lines of its own.
ORVANE_API std::vector<std::string>& trace();

/// What `Field::processValueChange` was told.
struct FieldWrite
{
    Orvane::Field* field;
    double time;
    Orvane::Field::CallerType caller;
};
ORVANE_API std::vector<FieldWrite>& fieldWrites();

/// How the runtime behaves; `reset` brings these values back.
struct Switches
{
    bool refuseContext = false; ///< `Context::create` gives null
    bool refuseLoad = false;    ///< both loads fail
    bool refuseRoutes = false;  ///< `Route::create` gives null
    bool noFormats = false;     ///< no file formats, no suffixes
    std::vector<double> waits;  ///< results of the next frames, the first one first
    double wait = 1000.0;       ///< result of a frame when `waits` is empty
    std::function<void(Orvane::Context*)> onFrame;
    std::function<void(Orvane::Context*)> onLoad;
    std::function<void(Orvane::Context*)> onEnd; ///< the context is about to die
    std::vector<Orvane::NavigatorProc::Message> messages;
};
ORVANE_API Switches& switches();

/// The next answer of `SceneBaseNodeProc::pick`, and the ray that it was asked with.
struct Pick
{
    bool hit = false;
    std::vector<Orvane::Node*> nodes;
    osg::Pnt3f point;
    osg::Vec3f normal;
    osg::NodePtr osgNode;
    unsigned int triangle = 0;
    osg::Line ray;
};
ORVANE_API Pick& pick();

/// Forgets trace, writes and pick, and brings back the switches. Contexts and nodes stay.
ORVANE_API void reset();

ORVANE_API int livingContexts();
ORVANE_API int framesOf(const Orvane::Context* context);
ORVANE_API Orvane::NodeState stateOf(const Orvane::Context* context);
ORVANE_API void setTime(Orvane::Context* context, double time);
/// The context that was created last; null when it is gone.
ORVANE_API Orvane::Context* lastContext();

/// A part of a node type as a test writes it down.
struct Part
{
    std::string name;
    Orvane::NodePartDataType dataType = Orvane::SFBOOL_DT;
    Orvane::NodePartType access = Orvane::EXPOSEDFIELDP;
    std::string value; ///< the default
    std::string description;
    unsigned int restriction = Orvane::NodePartDesc::NONE_VR;
    std::string valueType;
    double minValue = 0.0;
    double maxValue = 0.0;
    std::vector<std::string> valueList;
    bool autoProcess = false;
    bool objExt = false;
    bool privateAccess = false;
};

/// A type of the given name, which lives until the process ends.
ORVANE_API Orvane::NodeType* makeType(const std::string& name, const std::vector<Part>& parts = {},
                                      bool isProto = false);
/// A node that belongs to \a context, and dies with it, or else to the caller. It also dies with its last
/// link.
ORVANE_API Orvane::Node* makeNode(Orvane::NodeType* type, const char* name = nullptr,
                                  Orvane::Context* context = nullptr);
/// Gives a node a name (null: takes it away) and fires the subject.
ORVANE_API void setName(Orvane::Node* node, const char* name);
ORVANE_API void setState(Orvane::Node* node, Orvane::NodeState state);
/// Adds a field to one node, behind the others; the same for its type name and without a description.
ORVANE_API Orvane::Field* addField(Orvane::Node* node, const Part& part);
ORVANE_API Orvane::Field* addFieldWithoutDescription(Orvane::Node* node);
/// Appends \a child to the node field of that name.
ORVANE_API void link(Orvane::Node* parent, const std::string& field, Orvane::Node* child);
/// Makes a node a reference: links to it lead to \a target, which must outlive it.
ORVANE_API void refer(Orvane::Node* reference, Orvane::Node* target);

/// A window node whose attributes a test sets at will.
class ORVANE_API TinyWindow : public Orvane::Window
{
public:
    explicit TinyWindow(Orvane::Context* context = nullptr);
    ~TinyWindow() override;

    osg::Vec2f sizeValue{-1.0F, -1.0F};
    osg::Vec2f positionValue{-1.0F, -1.0F};
    bool fullScreenValue = false;
    bool decorationValue = true;
    bool cursorVisibleValue = true;
    int samplesValue = 1;
    std::string pipeValue;
    std::string titleValue;
};

/// A window that writes down what it is told.
class ORVANE_API TinyWindowProc : public Orvane::WindowProc
{
public:
    /// \a window may be null.
    explicit TinyWindowProc(Orvane::Window* window);
    ~TinyWindowProc() override;

    void render() override;
    void resize(int width, int height) override;
    void keyPress(int key) override;
    void keyRelease(int key) override;
    void buttonPress(int button, int x, int y) override;
    void buttonRelease(int button, int x, int y) override;
    void mouseMove(int x, int y) override;
    void touchEvent(std::vector<Orvane::TouchPointRecord>& points) override;
    void message(const std::string& name) override;

    /// Takes what was written down so far, such as "buttonPress 1 10 20".
    std::vector<std::string> takeCalls() { return std::exchange(_calls, {}); }
    void note(const std::string& call) { _calls.push_back(call); }

    std::vector<std::vector<Orvane::TouchPointRecord>> touches;
    int setWinPtrCount = 0;

private:
    std::vector<std::string> _calls;
};

class ORVANE_API TinyViewareaProc : public Orvane::ViewareaProc
{
public:
    explicit TinyViewareaProc(Orvane::Node* viewarea = nullptr);
    ~TinyViewareaProc() override;

    void setOverSensor(bool over) { _overSensor = over; }
    void setViewport(const osg::ViewportPtr& viewport) { _viewport = viewport; }
};

class ORVANE_API TinyViewarea : public Orvane::Viewarea
{
public:
    explicit TinyViewarea(Orvane::Context* context = nullptr);
    ~TinyViewarea() override;

    TinyViewareaProc proc;
};

} // namespace Tiny
