#include "core/PickSensorProc.h"
#include "core/DoubleMatrix.h"
#include "core/ListEdit.h"
#include "core/Places.h"
#include "core/SceneState.h"
#include <OpenSG/OSGTriangleTree.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <limits>

namespace Orvane {

namespace {

const Part enabledPart("enabled");
const Part intersectionTypePart("intersectionType");
const Part isActivePart("isActive");
const Part matchCriterionPart("matchCriterion");
const Part pickTargetPart("pickTarget");
const Part pickedGeometryPart("pickedGeometry");
const Part pickingGeometryPart("pickingGeometry");
const Part sortOrderPart("sortOrder");

} // namespace

void PickSensorProc::start(double time)
{
    ElementProc::start(time);
    setTicking(true);
}

void PickSensorProc::fieldChanged(Field& field, double)
{
    if (field.partType() != EVENTOUTP)
        requestUpdate();
}

void PickSensorProc::childrenChanged(Field& field)
{
    if (field.partType() != EVENTOUTP)
        requestUpdate();
}

void PickSensorProc::elementChanged(ElementProc&)
{
    requestUpdate();
}

void PickSensorProc::elementGone()
{
    requestUpdate();
}

void PickSensorProc::update()
{
    _geometry.set(*this, elementOf<GeometryProc>(pickingGeometryPart.readNode(node())));
    _seenVersion = 0;
    requestFrame();
}

void PickSensorProc::tick(double time)
{
    // What changes the picture asks for frames; standing by needs none.
    requestFrame(StandByInterval);
    const unsigned long version = pictureVersion();
    if (version == _seenVersion)
        return;
    _seenVersion = version;
    std::vector<Pick> picks;
    if (enabledPart.read<SFBool>(node()).value() && _geometry.element()) {
        readWords();
        if (readGeometry())
            look(picks);
    }
    send(picks, time);
}

unsigned int PickSensorProc::word(const Part& part, const std::vector<std::string>& words,
                                  unsigned int fallback)
{
    const std::string& found = part.read<SFString>(node()).value();
    const auto place = std::find(words.begin(), words.end(), found);
    if (place != words.end())
        return static_cast<unsigned int>(place - words.begin());
    std::string expected = words.front();
    for (std::size_t i = 1; i < words.size(); ++i)
        expected.append(i + 1 < words.size() ? ", " : " or ").append(words[i]);
    complain(part.name(),
             "expected " + expected + ", found \"" + found + "\"; it counts as " + words[fallback]);
    return fallback;
}

void PickSensorProc::readWords()
{
    _isExact = word(intersectionTypePart, {"BOUNDS", "GEOMETRY"}, 0) == 1;
    _order = static_cast<Order>(word(sortOrderPart, {"ANY", "CLOSEST", "ALL", "ALL_SORTED"}, CLOSEST));
    _criterion = static_cast<PickFilter::Criterion>(
        word(matchCriterionPart, {"MATCH_ANY", "MATCH_EVERY", "MATCH_ONLY_ONE"}, PickFilter::MATCH_ANY));
}

void PickSensorProc::look(std::vector<Pick>& picks)
{
    const std::shared_ptr<SceneState> state = SceneState::of(node());
    const PickFilter filter(readLabels(node()), _criterion);
    if (!state || !state->layer() || !filter.isOpen())
        return;
    const PickTargets targets(pickTargetPart.read<MFNode>(node()), filter);
    for (const osg::Matrix& place : placesOf(*this)) {
        lookFrom(*state->layer(), targets, place, picks);
        if (!picks.empty())
            break;
    }
    choose(picks);
}

void PickSensorProc::lookFrom(SceneLayer& layer, const PickTargets& targets, const osg::Matrix& place,
                              std::vector<Pick>& picks)
{
    osg::Matrix4d toSensor;
    if (!toDouble(place).inverse(toSensor))
        return;
    std::vector<PickTarget> found;
    if (!targets.collect(layer, toSensor, region(), found))
        complain("pickTarget", "expected fewer shapes, found groups that are used in each other too often");
    for (const PickTarget& target : found) {
        Pick pick;
        if (!meets(target, pick))
            continue;
        pick.shape = target.shape;
        picks.push_back(std::move(pick));
        if (_order == ANY)
            return;
    }
}

void PickSensorProc::choose(std::vector<Pick>& picks) const
{
    if (isSorted())
        std::stable_sort(picks.begin(), picks.end(),
                         [](const Pick& a, const Pick& b) { return a.distance < b.distance; });
    if (_order == CLOSEST && !picks.empty())
        picks.resize(1);
}

void PickSensorProc::send(std::vector<Pick>& picks, double time)
{
    if (picks.empty() && !_hasTold)
        return;
    _hasTold = !picks.empty();
    std::vector<Node*> shapes;
    std::vector<Spot> spots;
    for (Pick& pick : picks) {
        if (std::find(shapes.begin(), shapes.end(), pick.shape) == shapes.end())
            shapes.push_back(pick.shape);
        spots.insert(spots.end(), pick.spots.begin(), pick.spots.end());
    }
    if (isActivePart.read<SFBool>(node()).value() != _hasTold)
        isActivePart.edit<SFBool>(node()).setValue(time, _hasTold, Field::EVENT_CT);
    setNodes(pickedGeometryPart.edit<MFNode>(node()), shapes, time);
    sendSpots(spots, time);
}

osg::GeometryPtr PickSensorProc::geometryOf(Surface::Kind kind, const char* expected)
{
    const auto* const geometry = static_cast<const GeometryProc*>(_geometry.element());
    if (geometry->kind() == kind)
        return geometry->geometry();
    complain("pickingGeometry",
             std::string("expected ") + expected + ", found a node " + geometry->node().type()->name);
    return osg::GeometryPtr();
}

std::vector<osg::Vec3d> PickSensorProc::verticesOf(const osg::GeometryPtr& geometry)
{
    std::vector<osg::Vec3d> vertices;
    if (!geometry || !geometry->getPositions())
        return vertices;
    const std::vector<osg::Pnt3f>& positions = geometry->getPositions()->getField();
    const auto add = [&](std::size_t place) {
        if (place < positions.size())
            vertices.emplace_back(osg::Vec3d(osg::Vec3f(positions[place])));
    };
    if (geometry->getIndices()) {
        for (const osg::UInt32 index : geometry->getIndices()->getField())
            add(index);
    } else {
        for (std::size_t i = 0; i < positions.size(); ++i)
            add(i);
    }
    return vertices;
}

double PickSensorProc::distanceFrom(const osg::Vec3d& origin, const PickTarget& target) const
{
    const Convex from = Convex::point(origin);
    if (!_isExact)
        return Convex::distance(from, boxOf(target).in(target.toSensor));
    double nearest = std::numeric_limits<double>::infinity();
    target.geometry->getTriangleTree().anyIn(
        boxIn(target.toOwn, region()), [&](const osg::Pnt3f& a, const osg::Pnt3f& b, const osg::Pnt3f& c) {
            const Convex triangle = triangleOf(a, b, c).in(target.toSensor);
            nearest = std::min(nearest, Convex::distance(from, triangle));
            return false;
        });
    return nearest < std::numeric_limits<double>::infinity() ? nearest : 0.0;
}

bool PickSensorProc::isInside(const PickTarget& target, const osg::Vec3d& place) const
{
    if (_isExact)
        return isEnclosed(*target.geometry, place);
    return target.box().intersect(osg::Pnt3f(osg::Vec3f(place)));
}

bool PickSensorProc::isEnclosed(const osg::Geometry& geometry, const osg::Vec3d& place)
{
    if (!geometry.getBox().intersect(osg::Pnt3f(osg::Vec3f(place))))
        return false;
    // A ray that grazes an edge counts it twice or not at all; of three in odd directions one may.
    static const osg::Vec3d Directions[] = {
        {0.5377, 0.8339, -0.1246}, {-0.7259, 0.2631, 0.6354}, {0.1873, -0.5911, 0.7845}};
    int votes = 0;
    for (const osg::Vec3d& direction : Directions)
        votes += geometry.getTriangleTree().countHits(osg::Pnt3d(place), direction) % 2 == 1 ? 1 : 0;
    return votes >= 2;
}

Convex PickSensorProc::boxOf(const PickTarget& target)
{
    osg::Pnt3f center;
    osg::Vec3f size;
    target.box().getCenter(center);
    target.box().getSize(size);
    return Convex::box(osg::Vec3d(osg::Vec3f(center)), osg::Vec3d(size));
}

Convex PickSensorProc::triangleOf(const osg::Pnt3f& a, const osg::Pnt3f& b, const osg::Pnt3f& c)
{
    return Convex::triangle(osg::Vec3d(osg::Vec3f(a)), osg::Vec3d(osg::Vec3f(b)), osg::Vec3d(osg::Vec3f(c)));
}

} // namespace Orvane
