#pragma once

#include "WindowEvents.h"
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGViewport.h>
#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/Field.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <Orvane/TouchPointRecord.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <QtTest>
#include <cmath>
#include <string>

/// A scene in a window of 400 x 400 pixels without GL, moved by the calls that a host's widget makes. The
/// clock stands until a test moves it.
class NavigationScene
{
public:
    explicit NavigationScene(const std::string& body, int width = 400, int height = 400)
    {
        Orvane::System::the().init(0, nullptr, 382);
        context = Orvane::Context::create();
        context->holdTime(now);
        loaded = load(body);
        if (!context->findRoot(Orvane::ContextSetup::_type))
            Orvane::ContextSetup::create(context, nullptr, Orvane::HOST_NC);
        if (!context->findRoot(Orvane::Engine::_type))
            Orvane::Engine::create(context, nullptr, Orvane::HOST_NC);
        if (!context->findRoot(Orvane::Scene::_type))
            Orvane::Scene::create(context, nullptr, Orvane::HOST_NC);
        context->setRootState(0.0, Orvane::RUNNING_NS);
        osg::WindowPtr pointer = osg::PassiveWindow::create();
        window().setWinPtr(pointer, true);
        window().resize(width, height);
        context->runFrame();
        context->runFrame();
    }
    NavigationScene(const NavigationScene&) = delete;
    NavigationScene& operator=(const NavigationScene&) = delete;
    ~NavigationScene()
    {
        context->subRef();
        Orvane::System::the().exit();
    }

    bool load(const std::string& body) const
    {
        return context->load("navigation.x3d", "<X3D version='4.0'><Scene>" + body + "</Scene></X3D>",
                             Orvane::Context::REPLACE_LT, {});
    }

    Orvane::WindowProc& window() const { return *events.windows.front(); }
    Orvane::Node& node(const char* name) const
    {
        return *Orvane::NodeNameSpace::findNode(context->findRoot(Orvane::Scene::_type)->nameSpace(), name);
    }
    std::string get(const char* name, const char* field) const
    {
        return node(name).findField(field, Orvane::Node::DECLARED_FSO)->valueToString();
    }
    void set(const char* name, const char* field, const char* value)
    {
        node(name).findField(field, Orvane::Node::DECLARED_FSO)->setValueByStr(0.0, value);
        context->runFrame();
    }

    /// Runs a frame \a seconds later.
    void run(double seconds = 0.0)
    {
        now += seconds;
        context->holdTime(now);
        context->runFrame();
    }
    /// Runs frames of a sixtieth of a second.
    void runFor(double seconds)
    {
        for (int i = 0; i < static_cast<int>(seconds * 60.0 + 0.5); ++i)
            run(1.0 / 60.0);
    }

    osg::ViewportPtr port(int index = 0) const
    {
        return dynamic_cast<Orvane::Viewarea*>(window().window()->viewareas()->elem(index).node())
            ->getViewareaProc()
            ->vptPtr();
    }
    /// From the camera to the world.
    osg::Matrix camera(int index = 0) const
    {
        osg::Matrix viewing;
        port(index)->getCamera()->getViewing(viewing, 400, 400);
        viewing.invert();
        return viewing;
    }
    osg::Vec3f eye(int index = 0) const { return column(3, index); }
    osg::Vec3f right(int index = 0) const { return column(0, index); }
    osg::Vec3f up(int index = 0) const { return column(1, index); }
    osg::Vec3f forward(int index = 0) const { return -column(2, index); }
    bool isFinite() const
    {
        const osg::Matrix matrix = camera();
        for (osg::UInt32 column = 0; column < 4; ++column) {
            for (osg::UInt32 row = 0; row < 4; ++row) {
                if (!std::isfinite(matrix[column][row]))
                    return false;
            }
        }
        return true;
    }
    /// Pixels from the upper left corner at which a point of the world is seen.
    osg::Vec2f seenAt(const osg::Vec3f& world) const
    {
        osg::Matrix clip;
        port()->getCamera()->getWorldToScreen(clip, *port());
        osg::Pnt3f point(world[0], world[1], world[2]);
        clip.multFullMatrixPnt(point);
        return osg::Vec2f((point[0] + 1.0F) * 0.5F * static_cast<float>(port()->getPixelWidth()),
                          (1.0F - point[1]) * 0.5F * static_cast<float>(port()->getPixelHeight()));
    }

    void drag(int button, int fromX, int fromY, int toX, int toY)
    {
        window().buttonPress(button, fromX, fromY);
        run();
        window().mouseMove(fromX / 2 + toX / 2, fromY / 2 + toY / 2);
        run();
        window().mouseMove(toX, toY);
        run();
        window().buttonRelease(button, toX, toY);
        run();
    }
    void wheel(bool up, int x = 200, int y = 200)
    {
        window().buttonPress(up ? 8 : 16, x, y);
        run();
    }
    void hold(int key, double seconds)
    {
        window().keyPress(key);
        runFor(seconds);
        window().keyRelease(key);
        run();
    }
    void tap(int key)
    {
        window().keyPress(key);
        window().keyRelease(key);
        run();
    }
    void send(const char* message)
    {
        window().message(message);
        run();
    }
    void touch(std::vector<Orvane::TouchPointRecord> points)
    {
        window().touchEvent(points);
        run();
    }
    static Orvane::TouchPointRecord finger(int id, int state, float x, float y)
    {
        return {id, state, id == 0, x, y, 1.0F};
    }

    WindowEvents events;
    Orvane::Context* context = nullptr;
    double now = 1000.0;
    bool loaded = false;

private:
    osg::Vec3f column(osg::UInt32 index, int area) const
    {
        const osg::Matrix matrix = camera(area);
        return osg::Vec3f(matrix[index][0], matrix[index][1], matrix[index][2]);
    }
};

/// True when two vectors lie closer than a thousandth of their size, or \a slack.
inline bool isNear(const osg::Vec3f& a, const osg::Vec3f& b, float slack = 1e-3F)
{
    return (a - b).length() <= slack + 1e-3F * b.length();
}

#define QCOMPARE_NEAR(actual, ...)                                                                           \
    QVERIFY2(isNear(actual, __VA_ARGS__), qPrintable(QStringLiteral("%1 %2 %3")                              \
                                                         .arg(double((actual)[0]))                           \
                                                         .arg(double((actual)[1]))                           \
                                                         .arg(double((actual)[2]))))
