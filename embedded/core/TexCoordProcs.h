#pragma once

#include "core/AppearanceProcs.h"
#include "core/MeshData.h"
#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

/// Behaviour of texture coordinates, of one set or of several.
class ORVANE_API TexCoordProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Appends the nodes of the sets, at most one for each texture unit; null where a list has a gap.
    virtual void collectSets(std::vector<TexCoordProc*>& sets) { sets.push_back(this); }

    /// How textures know the set, and where its coordinates come from when not from a list.
    virtual TexChannel channel() const;
    /// The listed coordinates; none when they are made.
    virtual TexCoordView view() const;
    /// Makes coordinates that depend on the mesh alone. False when they do not.
    virtual bool makeLocal(const MeshData& /*mesh*/, TexCoordSet& /*set*/) { return false; }
};

/// The sets of coordinates of one mesh, beyond the one plain list that most have.
class ORVANE_API TexCoordSets
{
public:
    /// True when \a proc needs more than its one list.
    static bool areNeeded(TexCoordProc& proc);

    /// Collects the sets of \a proc.
    void read(TexCoordProc& proc);
    const std::vector<TexChannel>& channels() const { return _channels; }
    /// The lists of the sets; good until the nodes change.
    const std::vector<TexCoordView>& views() const { return _views; }
    /// Makes the sets that \a mesh has now as it needs them: one for each channel, with those that follow
    /// from the mesh.
    void complete(MeshData& mesh) const;

private:
    std::vector<TexCoordProc*> _procs; ///< good during an update only
    std::vector<TexChannel> _channels;
    std::vector<TexCoordView> _views;
};

} // namespace Orvane
