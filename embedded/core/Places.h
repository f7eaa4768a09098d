#pragma once

#include <OpenSG/OSGMatrix.h>
#include <vector>

namespace Orvane {

class ElementProc;

/// The matrices to the world from the system of each group in which an element stands, one for each way from
/// the root of its layer. What stands in hidden groups counts too. At most 1024 places are found, and ways
/// are given up that only groups in rings have.
std::vector<osg::Matrix> placesOf(const ElementProc& element);

} // namespace Orvane
