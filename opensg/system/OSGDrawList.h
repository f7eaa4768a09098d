#pragma once

#include "OSGGLGeometry.h"

#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMatrix.h>

#include <vector>

namespace osg {

class GLObjects;
class RenderAction;

/// What one picture is made of: shapes with the lights that reach them, in drawing order after `sort`. The
/// containers are only pointed at: a list lives as long as the picture takes.
class DrawList
{
public:
    void clear();

    void pushLight(const Light& light, const Matrix& toWorld);
    void popLight();
    void pushMaterial(const Material* material);
    void popMaterial() { _openMaterials.pop_back(); }
    /// `center` and `radius` bound the shape in world coordinates.
    void add(const Geometry& geometry, const Matrix& toWorld, const Pnt3f& center, Real32 radius);

    /// Draws all; the viewport's context is current.
    void draw(RenderAction& action, RenderStatistics& statistics);

private:
    static constexpr UInt32 glLightCount = 8;

    struct PlacedLight
    {
        const Light* light;
        Matrix toWorld;
        bool hasSource;
        Pnt3f source;
        Real32 range;
    };

    // The lights in scope at a place: one more than at the place around it.
    struct Scope
    {
        UInt32 outer;
        UInt32 light;
        bool gathered;
        bool choose; ///< not all lights of the scope reach all shapes
        std::vector<UInt32> lights;
    };

    struct Item
    {
        const Geometry* geometry;
        const Material* material;
        UInt32 scope;
        Real32 radius;
        Pnt3f center;
        Matrix toWorld;
    };

    struct Order
    {
        UInt64 key;
        UInt32 item;
        bool operator<(const Order& other) const { return key < other.key; }
    };

    struct StateEntry
    {
        UInt16 place;
        StateChunk* chunk;
    };

    void gather(Scope& scope);
    UInt64 stateKey(const Item& item) const;
    void drawItems(RenderAction& action, const std::vector<Order>& order);
    void beginState(RenderAction& action);
    void endState(RenderAction& action);
    void setLights(RenderAction& action, const Item& item);
    void chooseLights(const Item& item, std::vector<UInt32>& chosen) const;
    void setMaterial(RenderAction& action, const Material* material, bool vertexColors);
    void setGeometry(RenderAction& action, const Item& item);
    void setPlace(RenderAction& action, const Matrix& toWorld);

    std::vector<PlacedLight> _lights;
    std::vector<Scope> _scopes;
    std::vector<UInt32> _openScopes;
    std::vector<const Material*> _openMaterials; ///< the last one counts; null for the geometries' own
    std::vector<Item> _items;
    std::vector<Order> _opaque;
    std::vector<Order> _transparent;

    // What GL is set to while drawing.
    GLObjects* _objects = nullptr;
    RenderStatistics* _statistics = nullptr;
    std::vector<StateEntry> _state;
    std::vector<StateEntry> _nextState;
    std::vector<UInt32> _chosen;
    UInt32 _scope = 0;
    UInt32 _lightInUse[glLightCount] = {};
    bool _materialSet = false;
    const Material* _material = nullptr;
    Real32 _alpha = 1;
    VertexArrays _arrays;
    const Geometry* _geometry = nullptr;
    const GLGeometry* _buffers = nullptr;
    UInt32 _frontFace = 0;
};

} // namespace osg
