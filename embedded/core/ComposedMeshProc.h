#pragma once

#include "core/GeometryProc.h"
#include "core/MeshBuilder.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <memory>
#include <vector>

namespace Orvane {

class TexCoordSets;
class VertexValues;

/// The points that a `Coordinate` or `CoordinateDouble` node shows; empty for any other node and for null.
/// Points in double precision are converted into \a converted, else the result is the field's own list.
ORVANE_API const std::vector<osg::Vec3f>& pointsOf(Node* coord, std::vector<osg::Vec3f>& converted);
/// The same for the values of the field, whatever has bent them.
ORVANE_API const std::vector<osg::Vec3f>& fieldPointsOf(Node* coord, std::vector<osg::Vec3f>& converted);

/// Behaviour of a mesh whose points and other values stand in nodes of their own, which others may share.
class ORVANE_API ComposedMeshProc : public MeshProc
{
public:
    explicit ComposedMeshProc(Node& node);
    ~ComposedMeshProc() override;

    const std::vector<TexChannel>& texChannels() const override;
    void fieldChanged(Field& field, double time) override;
    void update() override;
    bool hasShaderValues() const override;

protected:
    /// Builds what is shown of \a points.
    virtual MeshData build(const std::vector<osg::Vec3f>& points, MeshFaults& faults) = 0;

    /// Name of the field that lists the points of faces and lines, for messages.
    virtual const char* listName() const { return "coordIndex"; }

    /// Binds the values of a `Color` or `ColorRGBA` node, whichever the mesh has.
    void bindColors(MeshAttribute<osg::Color3f>& rgb, MeshAttribute<osg::Color4f>& rgba) const;
    /// Binds all values that a mesh of faces may have, per point until the caller says otherwise.
    void bindValues(MeshSource& source) const;
    /// True when the mesh is to tell which point each of its vertices shows.
    bool wantsPoints() const { return static_cast<bool>(_values); }

private:
    Use _color;
    Use _coord;
    Use _normal;
    Use _texCoord;
    std::unique_ptr<VertexValues> _values;       ///< for shaders and fog; null when there are none
    std::unique_ptr<TexCoordSets> _texCoordSets; ///< null when one plain list serves
    Node* _colorNode = nullptr;                  ///< good during an update only, like the two below
    Node* _normalNode = nullptr;
    Node* _texCoordNode = nullptr;
};

} // namespace Orvane
