#pragma once

#include "NavigationScene.h"
#include "base/Graph.h"
#include "base/NodeRef.h"
#include "core/SceneProc.h"
#include <string>
#include <vector>

using Rectangles = std::vector<std::string>;

/// A scene with layers in a window, and the ports that it has there.
class LayerScene : public NavigationScene
{
public:
    using NavigationScene::NavigationScene;

    std::vector<osg::ViewportPtr> ports() const { return window().winPtr()->getPort(); }
    /// The ports as "left bottom width height" in pixels, the lowest one first.
    static Rectangles rectanglesOf(Orvane::WindowProc& window)
    {
        Rectangles result;
        for (const osg::ViewportPtr& port : window.winPtr()->getPort())
            result.push_back(
                std::to_string(port->getPixelLeft()) + ' ' + std::to_string(port->getPixelBottom()) + ' ' +
                std::to_string(port->getPixelWidth()) + ' ' + std::to_string(port->getPixelHeight()));
        return result;
    }
    Rectangles rectangles() const { return rectanglesOf(window()); }

    /// Where the camera of a port stands.
    osg::Vec3f eyeOf(std::size_t index) const
    {
        osg::Matrix viewing;
        ports().at(index)->getCamera()->getViewing(viewing, 400, 400);
        viewing.invert();
        return osg::Vec3f(viewing[3][0], viewing[3][1], viewing[3][2]);
    }

    Orvane::SceneProc& sceneProc() const
    {
        return *Orvane::procAs<Orvane::SceneProc>(context->findRoot(Orvane::Scene::_type));
    }
    /// How many messages have a word.
    int told(const char* word) const
    {
        int count = 0;
        for (const Orvane::LoadMessage& message : context->loadReport().messages)
            count += message.text.find(word) != std::string::npos ? 1 : 0;
        return count;
    }
    std::size_t messages() const { return context->loadReport().messages.size(); }
};
