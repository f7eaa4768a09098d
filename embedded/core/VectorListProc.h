#pragma once

#include "core/ElementProc.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <optional>
#include <vector>

namespace Orvane {

/// Behaviour of a node that lists points or normals. Another behaviour may bend the list: meshes then show
/// other values than the field has.
class ORVANE_API VectorListProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// What is shown in place of the field's values; null when these are.
    const std::vector<osg::Vec3f>* bent() const { return _bent ? &*_bent : nullptr; }

    /// Shows other values from now on.
    void bend(std::vector<osg::Vec3f>&& values)
    {
        _bent = std::move(values);
        changed();
    }
    void unbend()
    {
        if (!_bent)
            return;
        _bent.reset();
        changed();
    }

private:
    std::optional<std::vector<osg::Vec3f>> _bent;
};

} // namespace Orvane
