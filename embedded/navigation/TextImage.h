#pragma once

#include <OpenSG/OSGImageFields.h>
#include <OpenSG/OSGRefPtr.h>
#include <string>
#include <vector>

namespace Orvane {

/// An image of lines of text on a dark, half transparent ground. Letters are drawn from a built-in table of
/// ASCII; what is not in it shows as a hollow box. They are small where the text is wider than \a width
/// pixels otherwise. Lines and texts past a screenful are cut.
osg::RefPtr<osg::ImagePtr> textImage(const std::vector<std::string>& lines, int width);

} // namespace Orvane
