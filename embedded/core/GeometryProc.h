#pragma once

#include "core/AppearanceProcs.h"
#include "core/ElementProc.h"
#include "core/MeshData.h"
#include "core/Surface.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGRefPtr.h>
#include <Orvane/Export.h>

namespace Orvane {

/// A mesh as the OpenSG core that draws it. Without faces, lines or points it draws nothing.
ORVANE_API osg::GeometryPtr makeGeometry();
/// Puts \a mesh, which it takes over, into a geometry of `makeGeometry`. \a hasAlpha says that the alphas of
/// its colours count.
ORVANE_API void setMesh(const osg::GeometryPtr& geometry, MeshData&& mesh, Surface::Kind kind,
                        bool hasAlpha = false);

/// Behaviour of a geometry node: keeps the OpenSG core that draws it in step with its fields. A core may be
/// shared by equal geometries, and may be another one after a change.
class ORVANE_API GeometryProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    /// The core; null before the first update.
    virtual osg::GeometryPtr geometry() const = 0;
    virtual Surface::Kind kind() const { return Surface::FACES; }
    /// False when both sides of faces are seen.
    virtual bool isSolid() const { return true; }
    virtual bool hasColors() const { return false; }
    /// What textures may take as coordinates, by sets of the core; empty when it has the usual one alone.
    virtual const std::vector<TexChannel>& texChannels() const;
    /// True when shaders get values of vertices that the scene gives for them alone.
    virtual bool hasShaderValues() const { return false; }
    /// A texture is put on the geometry: from now on it has texture coordinates, whatever the scene gives.
    virtual void needTexCoords() {}
};

/// A geometry with a core of its own, which stays the same object.
class ORVANE_API MeshProc : public GeometryProc
{
public:
    explicit MeshProc(Node& node);

    osg::GeometryPtr geometry() const override { return _geometry; }
    bool hasColors() const override { return _hasColors; }
    void needTexCoords() override;

protected:
    /// Shows \a mesh from now on, and tells the shapes.
    void show(MeshData&& mesh, bool hasAlpha = false);

private:
    void addTexCoords();

    osg::RefPtr<osg::GeometryPtr> _geometry;
    bool _hasColors = false;
    bool _needsTexCoords = false;
};

} // namespace Orvane
