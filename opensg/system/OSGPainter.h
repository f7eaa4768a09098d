#pragma once

#include "OSGDrawList.h"
#include "OSGGLGeometry.h"
#include "OSGSceneDepth.h"
#include "OSGSurroundings.h"

namespace osg {

class FrustumVolume;
class GLObjects;
class RenderAction;
struct RenderStatistics;

/// Draws a list into the viewport of an action, whose context is current, with as few changes of GL state as
/// the order of the list allows. What GL is set to at first it is set to again at the end.
class Painter
{
public:
    /// With a `frustum`, items of a kept list that are out of it are left out.
    void draw(DrawList& list, const FrustumVolume* frustum, RenderAction& action,
              RenderStatistics& statistics);

private:
    using Item = DrawList::Item;

    void begin();
    void end();
    void drawItems(const std::vector<DrawList::Order>& order, const FrustumVolume* frustum);
    void setScope(const Item& item);
    void setLights(const Item& item);
    void setFog(UInt32 fog, bool byDepth);
    void setPlanes(const std::vector<UInt32>& planes);
    bool hasNearLight(UInt32 item) const;
    void setState(const Item& item, bool nearLights);
    void tellProgram();
    void clearState();
    void setTextured(bool textured);
    void setGeometry(const Item& item);
    void setProjector();
    void setEnvironment();
    void clearAttributes();
    void setAttributes();
    void setPlace(const Matrix& toWorld);

    const DrawList* _list = nullptr;
    RenderAction* _action = nullptr;
    RenderStatistics* _statistics = nullptr;
    GLObjects* _objects = nullptr;
    UInt32 _unitCount = 0;

    // What GL is set to.
    std::vector<DrawList::StateEntry> _state;
    const Item* _stateItem = nullptr;
    Real32 _alpha = 1;
    bool _textured = false;
    TexCoordSets _sets;      ///< that the present state asks for
    TexCoordSets _boundSets; ///< that the arrays were set to
    UInt32 _scope = 0;
    UInt32 _lights[DrawList::lightLimit] = {};
    bool _hasSources = false; ///< a light of these has a place
    std::vector<UInt32> _chosen;
    UInt32 _fog = DrawList::none;
    bool _fogByDepth = false; ///< the geometry tells how deep in fog it lies
    std::vector<UInt32> _planes;
    VertexArrays _arrays;
    const Geometry* _geometry = nullptr;
    const GLGeometry* _buffers = nullptr;
    UInt32 _attributes = 0; ///< arrays that are on for programs, a bit each
    UInt32 _frontFace = 0;
    Surroundings _surroundings;
    SceneDepth _depth;
};

} // namespace osg
