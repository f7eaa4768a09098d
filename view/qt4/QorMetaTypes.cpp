#include "QorMetaTypes.h"

namespace {

void registerMetaTypes()
{
    qRegisterMetaType<Orvane::NodePath>("Orvane::NodePath");
    qRegisterMetaType<Orvane::Node*>("Orvane::Node*");
    qRegisterMetaType<Orvane::Route*>("Orvane::Route*");
    qRegisterMetaType<std::vector<Orvane::Node*>>("std::vector<Orvane::Node*>");
    qRegisterMetaType<osg::Pnt3f>("osg::Pnt3f");
    qRegisterMetaType<osg::Vec3f>("osg::Vec3f");
    qRegisterMetaType<Orvane::UInt64>("UInt64");
}

Q_CONSTRUCTOR_FUNCTION(registerMetaTypes)

} // namespace
