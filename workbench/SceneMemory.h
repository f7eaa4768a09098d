#pragma once

#include "ScenePlace.h"
#include <OpenSG/OSGMatrix.h>
#include <QString>
#include <string>
#include <vector>

class Selection;

namespace Orvane {
namespace Qt4 {
class QorViewManager;
}
} // namespace Orvane

/// What a user sees of a scene: the selected place, the bound nodes and where each view looks from. It is
/// found again, as far as that is there, when the same scene has been read anew. A value without pointers.
class SceneMemory
{
public:
    SceneMemory(Orvane::Qt4::QorViewManager& manager, const Selection& selection);

    /// Selects, binds and looks as before. A viewpoint that has other values now is looked through afresh.
    void recall(Orvane::Qt4::QorViewManager& manager, Selection& selection) const;

private:
    struct Bound
    {
        ScenePlace place;
        std::string values;
    };

    ScenePlace _selected;
    std::vector<Bound> _bound;
    std::vector<osg::Matrix> _views; ///< of those viewareas that tell
};
