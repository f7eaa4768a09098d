#pragma once

#include <OpenSG/OSGVector.h>
#include <Orvane/Node.h>
#include <Orvane/NodePath.h>
#include <Orvane/Route.h>
#include <QtCore/QMetaType>
#include <vector>

// The types that the library's signals carry. They are declared here alone, and registered under these names
// and as "UInt64" when the library is loaded.
Q_DECLARE_METATYPE(Orvane::NodePath)
Q_DECLARE_METATYPE(Orvane::Node*)
Q_DECLARE_METATYPE(Orvane::Route*)
Q_DECLARE_METATYPE(std::vector<Orvane::Node*>)
Q_DECLARE_METATYPE(osg::Pnt3f)
Q_DECLARE_METATYPE(osg::Vec3f)
