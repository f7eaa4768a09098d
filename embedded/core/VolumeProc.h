#pragma once

#include "core/ElementProc.h"
#include "core/VolumeStyles.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSHLChunk.h>
#include <Orvane/Export.h>
#include <memory>
#include <optional>

namespace Orvane {

/// Behaviour of a volume: a box of `dimensions` round the origin, whose inside a program draws with what is
/// transparent. Derived classes tell how rays gather the voxels.
class ORVANE_API VolumeProc : public ElementProc
{
public:
    using ProgramRef = osg::RefPtr<osg::SHLProgramPtr>;

    explicit VolumeProc(Node& node);

    void update() override;

    osg::NodePtr tree() const override { return _tree; }

protected:
    /// Writes how rays gather voxels 0, the volume's own.
    virtual void describe(VolumeText& text) = 0;

    /// The style that \a use follows from now on.
    VolumeStyleProc* useStyle(Use& use, Node* styleNode);
    /// The styles of a list, null for those that are none. A projection, which gathers by a rule of its own,
    /// is none here.
    std::vector<VolumeStyleProc*> useStyles(std::vector<Use>& uses);
    /// The image with depth of a field; none, with a message when it is flat.
    std::optional<SurfaceTexture> useSpace(Use& use, const Part& part, const char* name);

private:
    void hide();
    void show(const osg::Vec3f& size, const VolumeText& text);

    osg::RefPtr<osg::NodePtr> _tree;
    osg::RefPtr<osg::GeometryPtr> _box;
    osg::RefPtr<osg::MaterialGroupPtr> _look;
    osg::RefPtr<osg::SHLChunkPtr> _chunk;
    std::shared_ptr<ProgramRef> _program;
    VolumeText::Parts _parts;
    Use _voxels;
};

} // namespace Orvane
