#pragma once

#include "PointerScene.h"
#include <Orvane/LoadReport.h>
#include <Orvane/MFVec3f.h>
#include <QtTest>
#include <cmath>

// Scenes with pick sensors: the sensor is P, and looks below the group All.

namespace PickScene {

using Orvane::LoadMessage;
using Orvane::MFNode;
using Orvane::MFVec3f;
using Orvane::NodeLink;

/// A sensor at a place, with the words of its fields.
inline std::string sensor(const std::string& type, const std::string& fields, const std::string& geometry,
                          const std::string& targets = "<Group USE='All' containerField='pickTarget'/>",
                          const char* place = "0 0 0")
{
    return std::string("<Transform DEF='Place' translation='") + place + "'><" + type + " DEF='P' " + fields +
           ">" + geometry + targets + "</" + type + "></Transform>";
}

inline std::string exact(const std::string& fields = {})
{
    return "intersectionType='GEOMETRY' " + fields;
}

inline std::string shape(const std::string& name, const std::string& geometry, const char* place = "0 0 0",
                         const char* more = "")
{
    return "<Transform DEF='T" + name + "' translation='" + place + "' " + more + "><Shape DEF='" + name +
           "'>" + geometry + "</Shape></Transform>";
}

inline std::string all(const std::string& content)
{
    return "<Group DEF='All'>" + content + "</Group>";
}

inline std::string points(const std::string& places)
{
    return "<PointSet containerField='pickingGeometry'><Coordinate point='" + places + "'/></PointSet>";
}

inline std::string line(const std::string& places)
{
    return "<LineSet containerField='pickingGeometry' vertexCount='2'><Coordinate DEF='Ends' point='" +
           places + "'/></LineSet>";
}

inline const std::string ball = "<Sphere containerField='pickingGeometry' radius='1'/>";
inline const std::string unitBox = "<Box size='2 2 2'/>";

inline void settle(PointerScene& scene)
{
    for (int i = 0; i < 3; ++i)
        scene.frame();
}

/// The DEF names of what is picked, in order.
inline QString picked(const PointerScene& scene)
{
    QStringList names;
    auto& field = static_cast<MFNode&>(scene.field("P.pickedGeometry"));
    for (NodeLink& link : field)
        names << (link.node()->name() ? QString::fromStdString(*link.node()->name()) : QString());
    return names.join(QLatin1Char(' '));
}

inline bool areClose(const std::vector<double>& a, const std::vector<double>& b)
{
    bool close = a.size() == b.size();
    for (std::size_t i = 0; close && i < a.size(); ++i)
        close = std::abs(a[i] - b[i]) < 1e-4;
    return close;
}

/// The numbers of a list of places.
inline std::vector<double> places(const PointerScene& scene, const char* path)
{
    std::vector<double> numbers;
    for (const osg::Vec3f& place : static_cast<MFVec3f&>(scene.field(path)).values()) {
        for (osg::UInt32 i = 0; i < 3; ++i)
            numbers.push_back(static_cast<double>(place[i]));
    }
    return numbers;
}

inline const std::vector<LoadMessage>& messages(const PointerScene& scene)
{
    return scene.context->loadReport().messages;
}

} // namespace PickScene
