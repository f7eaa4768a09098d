#pragma once

#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGStateChunk.h>

#include <vector>

namespace osg {

class ClipPlane;
class Fog;
class Geometry;
class Light;
class Material;

/// What a picture is made of: shapes with the lights that reach them, in the order in which they are drawn.
/// The containers are only pointed at: a list is good as long as SceneStamp stays as it is.
class DrawList
{
public:
    /// A chunk at its place in the state.
    struct StateEntry
    {
        UInt16 place;
        StateChunk* chunk;
    };

    struct Item
    {
        const Geometry* geometry;
        const Material* material; ///< tells items of equal state; may be null
        UInt32 firstState;
        UInt16 stateCount;
        bool vertexColors;
        bool transparent;
        UInt32 scope;
        Real32 faceShare; ///< of the shape's size that its faces have; 0 where no light need be near
        Matrix toWorld;
    };

    struct PlacedLight
    {
        const Light* light;
        Matrix pathToWorld; ///< of the light's own node
        Matrix toWorld;
        bool hasSource;
        Pnt3f source; ///< in world coordinates, like the range
        Real32 range;
    };

    struct PlacedFog
    {
        const Fog* fog;
        Matrix pathToWorld; ///< of the fog's own node
        Matrix toWorld;
    };

    struct PlacedPlane
    {
        const ClipPlane* plane;
        Matrix toWorld;
    };

    /// What acts on shapes at a place: what does so at the place around it, and a light, a fog or a plane.
    struct Scope
    {
        UInt32 outer;
        UInt32 light;
        UInt32 fog; ///< the innermost one
        UInt32 plane;
        bool gathered = false;
        bool choose = false; ///< not all of the lights may shine on each shape
        std::vector<UInt32> lights = {};
        std::vector<UInt32> planes = {};
    };

    /// Stands for no light, fog or plane.
    static constexpr UInt32 none = ~UInt32(0);

    struct Order
    {
        UInt64 key;
        UInt32 item;
        bool operator<(const Order& other) const { return key < other.key; }
    };

    /// GL's lights that may shine at once.
    static constexpr UInt32 lightLimit = 8;

    void clear();

    void pushLight(const Light& light, const Matrix& toWorld);
    void pushFog(const Fog& fog, const Matrix& toWorld);
    void pushClipPlane(const ClipPlane& plane, const Matrix& toWorld);
    /// Takes away what was pushed last of the three above.
    void popScope() { _openScopes.pop_back(); }
    void pushMaterial(const Material* material);
    void popMaterial() { _openMaterials.pop_back(); }
    void add(const Geometry& geometry, const Matrix& toWorld);

    /// Ends the collection: finds state and drawing order. A list that is to be kept for further pictures is
    /// also laid out in that order, with a box for each item.
    void arrange(bool keep);

    /// Puts lights and fogs where their beacons are now.
    void placeLights();
    /// Orders the transparent items as they are seen, the farthest first.
    void sortTransparent(const Matrix& viewing);
    /// The nearest lights that reach an item, those without a source first; at most `lightLimit`.
    void chooseLights(const Item& item, std::vector<UInt32>& chosen) const;

    /// Whether a light is so near to an item that it changes much over its faces.
    bool isNear(UInt32 item, UInt32 light) const;

    const std::vector<Item>& getItems() const { return _items; }
    /// The box of an item in world coordinates; kept lists only.
    const BoxVolume& getBox(UInt32 item) const { return _boxes[item]; }
    /// The box around everything; kept lists only.
    const BoxVolume& getBox() const { return _box; }
    const StateEntry* getState(const Item& item) const { return _states.data() + item.firstState; }
    const PlacedLight& getLight(UInt32 index) const { return _lights[index]; }
    const PlacedFog& getFog(UInt32 index) const { return _fogs[index]; }
    const PlacedPlane& getPlane(UInt32 index) const { return _planes[index]; }
    const Scope& getScope(const Item& item) const { return _scopes[item.scope]; }
    const std::vector<Order>& getOpaque() const { return _opaque; }
    const std::vector<Order>& getTransparent() const { return _transparent; }

private:
    void openScope(UInt32 light, UInt32 fog, UInt32 plane);
    void gather(Scope& scope);
    void resolveState(Item& item);
    UInt64 stateKey(const Item& item) const;
    void layOut();
    static Real32 faceShareOf(const Item& item);
    static BoxVolume computeBox(const Item& item);
    BoxVolume boxOf(UInt32 item) const { return _boxes.empty() ? computeBox(_items[item]) : _boxes[item]; }

    std::vector<PlacedLight> _lights;
    std::vector<PlacedFog> _fogs;
    std::vector<PlacedPlane> _planes;
    std::vector<Scope> _scopes;
    std::vector<UInt32> _openScopes;
    std::vector<const Material*> _openMaterials; ///< the last one counts; null for the geometries' own
    std::vector<Item> _items;
    std::vector<StateEntry> _states;
    std::vector<BoxVolume> _boxes;
    BoxVolume _box;
    std::vector<Order> _opaque;
    std::vector<Order> _transparent;
};

} // namespace osg
