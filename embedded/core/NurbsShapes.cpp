#include "core/NurbsShapes.h"
#include "core/NormalGenerator.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

/// A sum of weighted points.
struct WeightedSum
{
    double sums[4] = {};

    void add(const osg::Vec3f& point, double weight)
    {
        for (osg::UInt32 i = 0; i < 3; ++i)
            sums[i] += weight * static_cast<double>(point[i]);
        sums[3] += weight;
    }
    osg::Vec3f value() const
    {
        const double scale = sums[3] != 0.0 ? 1.0 / sums[3] : 0.0;
        return osg::Vec3f(static_cast<float>(sums[0] * scale), static_cast<float>(sums[1] * scale),
                          static_cast<float>(sums[2] * scale));
    }
};

std::vector<double> usableWeights(const std::vector<double>& weights, std::size_t count)
{
    std::vector<double> result(count, 1.0);
    for (std::size_t i = 0; i < std::min(count, weights.size()); ++i) {
        if (weights[i] > 0.0 && weights[i] < 1e15)
            result[i] = weights[i];
    }
    return result;
}

/// A step along a parameter that floats still tell apart, and that stays between the ends.
struct Step
{
    explicit Step(double t)
        : from(std::max(0.0, t - Half))
        , to(std::min(1.0, t + Half))
    {
    }
    static constexpr double Half = 1e-3;
    double from;
    double to;
};

} // namespace

std::size_t nurbsPieces(int tessellation, std::size_t controlPoints, std::size_t most)
{
    constexpr std::size_t PiecesPerPoint = 6;
    const std::size_t asked = static_cast<std::size_t>(std::abs(static_cast<long>(tessellation)));
    const std::size_t points = std::min(controlPoints, most);
    const std::size_t pieces =
        tessellation > 0 ? asked : points * (asked > 0 ? std::min(asked, most) : PiecesPerPoint);
    return std::clamp<std::size_t>(pieces, 1, most);
}

NurbsBasis::NurbsBasis(std::size_t count, std::size_t order, const std::vector<double>& knots)
    : _count(count)
    , _order(order)
    , _knots(knots)
{
    const auto isBad = [](double knot) { return !std::isfinite(knot); };
    if (_knots.size() == count + order && std::is_sorted(_knots.begin(), _knots.end()) &&
        std::none_of(_knots.begin(), _knots.end(), isBad) && _knots[order - 1] < _knots[count])
        return;
    _knots.assign(order, 0.0);
    for (std::size_t i = 1; i <= count - order; ++i)
        _knots.push_back(static_cast<double>(i));
    _knots.insert(_knots.end(), order, static_cast<double>(count - order + 1));
}

double NurbsBasis::shareOf(double parameter) const
{
    const double low = _knots[_order - 1];
    const double share = (parameter - low) / (_knots[_count] - low);
    return share > 0.0 ? std::min(share, 1.0) : 0.0;
}

std::size_t NurbsBasis::sample(double t, Shares& shares) const
{
    const double low = _knots[_order - 1];
    const double high = _knots[_count];
    const double u = low + (high - low) * t;
    const auto begin = _knots.begin() + static_cast<std::ptrdiff_t>(_order);
    const auto end = _knots.begin() + static_cast<std::ptrdiff_t>(_count);
    auto span = static_cast<std::size_t>(std::upper_bound(begin, end, u) - _knots.begin()) - 1;
    while (span > _order - 1 && !(_knots[span] < _knots[span + 1]))
        --span;
    shares[0] = 1.0;
    for (std::size_t degree = 1; degree < _order; ++degree) {
        double saved = 0.0;
        for (std::size_t i = 0; i < degree; ++i) {
            const double right = _knots[span + i + 1] - u;
            const double left = u - _knots[span + 1 + i - degree];
            const double share = right + left != 0.0 ? shares[i] / (right + left) : 0.0;
            shares[i] = saved + right * share;
            saved = left * share;
        }
        shares[degree] = saved;
    }
    return span + 1 - _order;
}

NurbsLine::NurbsLine(std::vector<osg::Vec3f> points, const std::vector<double>& weights,
                     const NurbsBasis& basis)
    : _points(std::move(points))
    , _weights(usableWeights(weights, _points.size()))
    , _basis(basis)
{
}

osg::Vec3f NurbsLine::at(double t) const
{
    NurbsBasis::Shares shares;
    const std::size_t first = _basis.sample(t, shares);
    WeightedSum sum;
    for (std::size_t i = 0; i < _basis.order(); ++i)
        sum.add(_points[first + i], shares[i] * _weights[first + i]);
    return sum.value();
}

osg::Vec3f NurbsLine::tangentAt(double t) const
{
    const Step step(t);
    return unitVector(at(step.to) - at(step.from));
}

std::vector<osg::Vec3f> NurbsLine::sampled(std::size_t pieces) const
{
    std::vector<osg::Vec3f> result;
    result.reserve(pieces + 1);
    for (std::size_t i = 0; i <= pieces; ++i)
        result.push_back(at(static_cast<double>(i) / static_cast<double>(pieces)));
    return result;
}

NurbsPatch::NurbsPatch(std::vector<osg::Vec3f> points, const std::vector<double>& weights,
                       const NurbsBasis& u, const NurbsBasis& v)
    : _points(std::move(points))
    , _weights(usableWeights(weights, _points.size()))
    , _u(u)
    , _v(v)
{
}

NurbsPatch NurbsPatch::over(std::vector<osg::Vec3f> points) const
{
    return NurbsPatch(std::move(points), _weights, _u, _v);
}

osg::Vec3f NurbsPatch::at(double u, double v) const
{
    NurbsBasis::Shares uShares;
    NurbsBasis::Shares vShares;
    const std::size_t uFirst = _u.sample(u, uShares);
    const std::size_t vFirst = _v.sample(v, vShares);
    WeightedSum sum;
    for (std::size_t j = 0; j < _v.order(); ++j) {
        for (std::size_t i = 0; i < _u.order(); ++i) {
            const std::size_t point = (vFirst + j) * _u.count() + uFirst + i;
            sum.add(_points[point], uShares[i] * vShares[j] * _weights[point]);
        }
    }
    return sum.value();
}

osg::Vec3f NurbsPatch::crossAt(double u, double v) const
{
    const Step uStep(u);
    const Step vStep(v);
    return unitVector((at(uStep.to, v) - at(uStep.from, v)).cross(at(u, vStep.to) - at(u, vStep.from)));
}

osg::Vec3f NurbsPatch::normalAt(double u, double v) const
{
    const osg::Vec3f normal = crossAt(u, v);
    if (normal[0] != 0.0F || normal[1] != 0.0F || normal[2] != 0.0F)
        return normal;
    // A side that is drawn together in one point has its normals beside it.
    constexpr double Inwards = 0.01;
    return crossAt(u + (0.5 - u) * Inwards, v + (0.5 - v) * Inwards);
}

} // namespace Orvane
