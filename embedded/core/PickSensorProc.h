#pragma once

#include "core/Convex.h"
#include "core/ElementProc.h"
#include "core/GeometryProc.h"
#include "core/Part.h"
#include "core/PickTargets.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

/// Behaviour of a node that asks which shapes its own geometry, which is not drawn, meets. It looks once a
/// frame, and only when the picture has changed. Places and distances are told in the sensor's own system.
class ORVANE_API PickSensorProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void childrenChanged(Field& field) override;
    void update() override;
    void tick(double time) override;

protected:
    /// A place where the sensor's geometry meets a shape.
    struct Spot
    {
        osg::Vec3f point;
        osg::Vec3f normal;
        osg::Vec3f texCoord;
        double distance = 0.0;
    };

    /// A shape that the sensor's geometry meets.
    struct Pick
    {
        Node* shape = nullptr;
        double distance = 0.0;
        std::vector<Spot> spots; ///< of those sensors that tell of places
    };

    void elementChanged(ElementProc& element) override;
    void elementGone() override;

    /// Takes over the sensor's geometry. False when there is none that it can work with.
    virtual bool readGeometry() = 0;
    /// The box round it.
    virtual osg::BoxVolume region() const = 0;
    /// True when the sensor's geometry meets a shape, with \a pick filled but for the shape.
    virtual bool meets(const PickTarget& target, Pick& pick) const = 0;
    /// Tells the places of what was picked, in order.
    virtual void sendSpots(const std::vector<Spot>& /*spots*/, double /*time*/) {}

    /// The geometry of a kind; null, with a message when it is another one.
    osg::GeometryPtr geometryOf(Surface::Kind kind, const char* expected);
    /// The places of the vertices of a geometry, in the order in which they are drawn.
    static std::vector<osg::Vec3d> verticesOf(const osg::GeometryPtr& geometry);

    /// True when shapes themselves count and not the boxes round them.
    bool isExact() const { return _isExact; }
    /// True when the distances of picks count.
    bool isSorted() const { return _order == CLOSEST || _order == ALL_SORTED; }
    /// The distance from a place to what of a shape is in or near the region; 0 for what lies around it.
    double distanceFrom(const osg::Vec3d& origin, const PickTarget& target) const;
    /// True when a place of the shape's own system lies inside of its surface, or of its box.
    bool isInside(const PickTarget& target, const osg::Vec3d& place) const;
    /// True when a place lies inside of a closed surface.
    static bool isEnclosed(const osg::Geometry& geometry, const osg::Vec3d& place);
    /// The box round a shape, in the shape's own system.
    static Convex boxOf(const PickTarget& target);
    static Convex triangleOf(const osg::Pnt3f& a, const osg::Pnt3f& b, const osg::Pnt3f& c);

    template <class F, class T>
    void tell(const Part& part, std::vector<T>&& values, double time)
    {
        F& field = part.edit<F>(node());
        if (field.values() == values)
            return;
        field.editValues() = std::move(values);
        field.processValueChange(time, Field::EVENT_CT);
    }

private:
    enum Order { ANY, CLOSEST, ALL, ALL_SORTED };
    static constexpr double StandByInterval = 1.0;

    void readWords();
    unsigned int word(const Part& part, const std::vector<std::string>& words, unsigned int fallback);
    void look(std::vector<Pick>& picks);
    void lookFrom(SceneLayer& layer, const PickTargets& targets, const osg::Matrix& place,
                  std::vector<Pick>& picks);
    void choose(std::vector<Pick>& picks) const;
    void send(std::vector<Pick>& picks, double time);

    Use _geometry;
    unsigned long _seenVersion = 0; ///< 0 to look in any case
    Order _order = CLOSEST;
    PickFilter::Criterion _criterion = PickFilter::MATCH_ANY;
    bool _isExact = false;
    bool _hasTold = false; ///< that something was picked
};

} // namespace Orvane
