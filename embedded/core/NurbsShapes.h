#pragma once

#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <array>
#include <cstddef>
#include <vector>

namespace Orvane {

/// Pieces of a line, and of each side of a surface; more are not told apart on any screen.
constexpr std::size_t MostNurbsLinePieces = 8192;
constexpr std::size_t MostNurbsSidePieces = 512;
/// A higher order than this is that of no scene, and takes too long.
constexpr std::size_t HighestNurbsOrder = 64;

/// How many pieces a tessellation asks for: that many; or per control point; or as it looks well.
ORVANE_API std::size_t nurbsPieces(int tessellation, std::size_t controlPoints, std::size_t most);

/// The shares of the control points of one direction at the parameters at which it is sampled.
class ORVANE_API NurbsBasis
{
public:
    using Shares = std::array<double, HighestNurbsOrder>;

    /// True when \a count control points may have the order.
    static bool fits(int order, std::size_t count)
    {
        return order >= 2 && static_cast<std::size_t>(order) <= count &&
               static_cast<std::size_t>(order) <= HighestNurbsOrder;
    }

    /// For \a count control points that may have the order. Knots that do not fit are those of an even curve
    /// through both ends.
    NurbsBasis(std::size_t count, std::size_t order, const std::vector<double>& knots);

    std::size_t count() const { return _count; }
    std::size_t order() const { return _order; }
    /// Where a parameter, as knots count them, lies between the ends, which are 0 and 1.
    double shareOf(double parameter) const;

    /// Fills the shares of `order()` control points, and tells the first of them. \a t runs from 0 to 1.
    std::size_t sample(double t, Shares& shares) const;

private:
    std::size_t _count;
    std::size_t _order;
    std::vector<double> _knots;
};

/// A curve that control points pull at. Parameters run from 0 to 1.
class ORVANE_API NurbsLine
{
public:
    /// Weights that are missing or no usable number are 1.
    NurbsLine(std::vector<osg::Vec3f> points, const std::vector<double>& weights, const NurbsBasis& basis);

    osg::Vec3f at(double t) const;
    /// The direction in which it goes on, of length 1; null where it stands still.
    osg::Vec3f tangentAt(double t) const;
    std::vector<osg::Vec3f> sampled(std::size_t pieces) const;

private:
    std::vector<osg::Vec3f> _points;
    std::vector<double> _weights;
    NurbsBasis _basis;
};

/// A surface that control points pull at. Parameters run from 0 to 1.
class ORVANE_API NurbsPatch
{
public:
    /// The points stand row by row along u; there are at least as many as the bases count.
    NurbsPatch(std::vector<osg::Vec3f> points, const std::vector<double>& weights, const NurbsBasis& u,
               const NurbsBasis& v);

    const NurbsBasis& u() const { return _u; }
    const NurbsBasis& v() const { return _v; }

    osg::Vec3f at(double u, double v) const;
    /// Of length 1: along u and then along v it turns to the left. Null where the surface has no area.
    osg::Vec3f normalAt(double u, double v) const;
    /// The same surface over other points, with the weights of this one.
    NurbsPatch over(std::vector<osg::Vec3f> points) const;

private:
    osg::Vec3f crossAt(double u, double v) const;

    std::vector<osg::Vec3f> _points;
    std::vector<double> _weights;
    NurbsBasis _u;
    NurbsBasis _v;
};

} // namespace Orvane
