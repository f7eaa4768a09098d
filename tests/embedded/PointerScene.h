#pragma once

#include "Numbers.h"
#include "WindowEvents.h"
#include "base/Graph.h"
#include <OpenSG/OSGPassiveWindow.h>
#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <QtGlobal>
#include <cmath>
#include <list>
#include <string>
#include <vector>

/// A running scene in a window of 200 by 200 pixels, with the input of the window and the events of fields.
/// The viewer stands at 0 0 10 unless the scene says otherwise; the clock is held.
class PointerScene
{
public:
    /// \a body is XML, between the tags of the scene.
    explicit PointerScene(const std::string& body, const std::string& file = "sensors.x3d")
    {
        Orvane::System::the().init(0, nullptr, 382);
        context = Orvane::Context::create();
        context->holdTime(_time);
        if (!load(body, file))
            qFatal("scene not loaded: %s", body.c_str());
        for (auto create :
             {makeRoot<Orvane::ContextSetup>, makeRoot<Orvane::Engine>, makeRoot<Orvane::Scene>})
            create(context);
        context->setRootState(0.0, Orvane::RUNNING_NS);
        for (Orvane::WindowProc* proc : windows.windows) {
            osg::WindowPtr pointer = osg::PassiveWindow::create();
            proc->setWinPtr(pointer, true);
            proc->resize(200, 200);
        }
        frame();
        frame();
    }
    PointerScene(const PointerScene&) = delete;
    PointerScene& operator=(const PointerScene&) = delete;
    ~PointerScene()
    {
        _watches.clear();
        context->subRef();
        Orvane::System::the().exit();
    }

    bool load(const std::string& body, const std::string& file = "sensors.x3d") const
    {
        return context->load(file, "<X3D version='4.0' profile='Full'><Scene>" + body + "</Scene></X3D>",
                             Orvane::Context::REPLACE_LT, {});
    }

    Orvane::WindowProc& window(std::size_t index = 0) const { return *windows.windows.at(index); }
    Orvane::ViewareaProc& viewarea(int index = 0) const
    {
        return *dynamic_cast<Orvane::Viewarea*>(window().window()->viewareas()->elem(index).node())
                    ->getViewareaProc();
    }

    Orvane::Node* find(const char* name) const
    {
        Orvane::Node* const scene = context->findRoot(Orvane::Scene::_type);
        return Orvane::NodeNameSpace::findNode(scene->nameSpace(), name);
    }
    Orvane::Field& field(const std::string& path) const
    {
        const std::size_t dot = path.find('.');
        Orvane::Node* const node = find(path.substr(0, dot).c_str());
        Orvane::Field* const found =
            node ? node->findField(path.substr(dot + 1), Orvane::Node::DECLARED_FSO) : nullptr;
        if (!found)
            qFatal("no field %s", path.c_str());
        return *found;
    }
    std::string get(const std::string& path) const { return field(path).valueToString(); }
    /// The numbers of a field.
    std::vector<double> numbers(const std::string& path) const { return numbersIn(get(path)); }
    void set(const std::string& path, const char* value) const { field(path).setValueByStr(0.0, value); }

    /// A frame, a tenth of a second later.
    void frame()
    {
        _time += 0.1;
        context->holdTime(_time);
        context->runFrame();
    }
    double time() const { return _time; }

    /// Writes down the events of a field as "Name.field value".
    void watch(const std::string& path)
    {
        Orvane::Field& watched = field(path);
        watched.createOutSlot(false);
        _watches.emplace_back(*this, path);
        watched._outSlot->processEventSubject().attach(_watches.back());
    }
    std::vector<std::string> take() { return std::exchange(events, {}); }

    /// The pixel at which a place on the plane z = \a z is seen by the standard viewer.
    static int pixelX(double x, double z = 0.0) { return static_cast<int>(std::lround(100 + scale(z) * x)); }
    static int pixelY(double y, double z = 0.0) { return static_cast<int>(std::lround(101 - scale(z) * y)); }

    void move(double x, double y, double z = 0.0) const { window().mouseMove(pixelX(x, z), pixelY(y, z)); }
    void press(double x, double y, double z = 0.0) const
    {
        window().buttonPress(1, pixelX(x, z), pixelY(y, z));
    }
    void release(double x, double y, double z = 0.0) const
    {
        window().buttonRelease(1, pixelX(x, z), pixelY(y, z));
    }

    WindowEvents windows;
    Orvane::Context* context;
    std::vector<std::string> events;

private:
    class Watch : public Orvane::Observer
    {
    public:
        Watch(PointerScene& scene, std::string path)
            : Orvane::Observer("watch")
            , _scene(scene)
            , _path(std::move(path))
        {
        }
        void notify(const double&, Orvane::BaseObject* slot, Orvane::BaseObject*,
                    Orvane::BaseObject*) override
        {
            const auto& source = dynamic_cast<Orvane::EventSlot&>(*slot);
            _scene.events.push_back(_path + " " + source.field()->valueToString());
        }

    private:
        PointerScene& _scene;
        std::string _path;
    };

    template <class Root>
    static void makeRoot(Orvane::Context* context)
    {
        if (!context->findRoot(Root::_type))
            Root::create(context, nullptr, Orvane::HOST_NC);
    }

    static double scale(double z) { return 100.0 / (std::tan(0.7854 / 2) * (10.0 - z)); }

    double _time = 1000.0;
    std::list<Watch> _watches;
};

/// The events of `PointerScene::take`.
using Events = std::vector<std::string>;

/// Whether numbers are alike; a pixel of the window is 0.04 units wide at z = 0.
inline bool isClose(const std::vector<double>& values, const std::vector<double>& expected,
                    double tolerance = 0.05)
{
    if (values.size() != expected.size())
        return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!(std::abs(values[i] - expected[i]) <= tolerance))
            return false;
    }
    return true;
}
