#include "base/ValueFields.h"
#include "core/ComposedMeshProc.h"
#include "core/Part.h"
#include <Orvane/MFDouble.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <cmath>
#include <string>

namespace Orvane {

namespace {

const Part controlPointPart("controlPoint");
const Part knotPart("knot");
const Part orderPart("order");
const Part solidPart("solid");
const Part tessellationPart("tessellation");
const Part uDimensionPart("uDimension");
const Part uKnotPart("uKnot");
const Part uOrderPart("uOrder");
const Part uTessellationPart("uTessellation");
const Part vDimensionPart("vDimension");
const Part vKnotPart("vKnot");
const Part vOrderPart("vOrder");
const Part vTessellationPart("vTessellation");
const Part weightPart("weight");

/// Pieces of a line, and of each side of a surface; more are not told apart on any screen.
constexpr std::size_t MostLinePieces = 8192;
constexpr std::size_t MostSidePieces = 512;
/// A higher order than this is that of no scene, and takes too long.
constexpr std::size_t HighestOrder = 64;

/// The shares of the control points of one direction at the parameters at which it is sampled.
class Basis
{
public:
    /// For \a count control points. Knots that do not fit are those of an even curve through both ends.
    Basis(std::size_t count, std::size_t order, const std::vector<double>& knots)
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

    std::size_t order() const { return _order; }

    /// Fills the shares of `order()` control points, and tells the first of them. \a t runs from 0 to 1.
    std::size_t sample(double t, std::vector<double>& shares) const
    {
        const double low = _knots[_order - 1];
        const double high = _knots[_count];
        const double u = low + (high - low) * t;
        const auto begin = _knots.begin() + static_cast<std::ptrdiff_t>(_order);
        const auto end = _knots.begin() + static_cast<std::ptrdiff_t>(_count);
        auto span = static_cast<std::size_t>(std::upper_bound(begin, end, u) - _knots.begin()) - 1;
        while (span > _order - 1 && !(_knots[span] < _knots[span + 1]))
            --span;
        shares.assign(_order, 0.0);
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

private:
    std::size_t _count;
    std::size_t _order;
    std::vector<double> _knots;
};

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

/// How many pieces a tessellation asks for: that many; or per control point; or as it looks well.
std::size_t pieceCount(int tessellation, std::size_t controlPoints, std::size_t most)
{
    constexpr std::size_t PiecesPerPoint = 6;
    const std::size_t asked = static_cast<std::size_t>(std::abs(static_cast<long>(tessellation)));
    const std::size_t points = std::min(controlPoints, most);
    const std::size_t pieces =
        tessellation > 0 ? asked : points * (asked > 0 ? std::min(asked, most) : PiecesPerPoint);
    return std::clamp<std::size_t>(pieces, 1, most);
}

/// A shape that control points pull at.
class NurbsProc : public MeshProc
{
public:
    using MeshProc::MeshProc;

    void update() override
    {
        Node* const points = resolved(controlPointPart.readNode(node()));
        _controlPoints.set(*this, procAs<ElementProc>(points));
        std::vector<osg::Vec3f> converted;
        show(build(pointsOf(points, converted)));
    }

protected:
    virtual MeshData build(const std::vector<osg::Vec3f>& points) = 0;

    double weight(std::size_t point) const
    {
        const std::vector<double>& weights = weightPart.read<MFDouble>(node()).values();
        const double weight = point < weights.size() ? weights[point] : 1.0;
        return weight > 0.0 && weight < 1e15 ? weight : 1.0;
    }
    int number(const Part& part) const { return part.read<SFInt32>(node()).value(); }

    /// True when control points of that number may have the order.
    bool fits(const char* part, int order, std::size_t count)
    {
        if (order >= 2 && static_cast<std::size_t>(order) <= std::min(count, HighestOrder))
            return true;
        if (count > 0)
            complain(part, "expected an order from 2 to the number of control points, " +
                               std::to_string(count) + ", and at most " + std::to_string(HighestOrder) +
                               ", found " + std::to_string(order));
        return false;
    }

private:
    Use _controlPoints;
};

class NurbsCurveProc : public NurbsProc
{
public:
    using NurbsProc::NurbsProc;

    Surface::Kind kind() const override { return Surface::LINES; }

protected:
    MeshData build(const std::vector<osg::Vec3f>& points) override
    {
        MeshData mesh;
        const int order = number(orderPart);
        if (!fits("order", order, points.size()))
            return mesh;
        const Basis basis(points.size(), static_cast<std::size_t>(order),
                          knotPart.read<MFDouble>(node()).values());
        const std::size_t pieces = pieceCount(number(tessellationPart), points.size(), MostLinePieces);
        std::vector<double> shares;
        for (std::size_t i = 0; i <= pieces; ++i) {
            const std::size_t first =
                basis.sample(static_cast<double>(i) / static_cast<double>(pieces), shares);
            WeightedSum sum;
            for (std::size_t k = 0; k < shares.size(); ++k)
                sum.add(points[first + k], shares[k] * weight(first + k));
            const osg::Pnt3f place(sum.value());
            if (!isDrawable(place))
                return MeshData();
            mesh.positions.push_back(place);
            if (i > 0) {
                mesh.indices.push_back(static_cast<std::uint32_t>(i - 1));
                mesh.indices.push_back(static_cast<std::uint32_t>(i));
            }
        }
        return mesh;
    }
};

class NurbsPatchSurfaceProc : public NurbsProc
{
public:
    using NurbsProc::NurbsProc;

    bool isSolid() const override { return solidPart.read<SFBool>(node()).value(); }

protected:
    MeshData build(const std::vector<osg::Vec3f>& points) override
    {
        const auto uCount = static_cast<std::size_t>(std::max(0, number(uDimensionPart)));
        const auto vCount = static_cast<std::size_t>(std::max(0, number(vDimensionPart)));
        if (uCount == 0 || vCount == 0)
            return {};
        if (points.size() / uCount < vCount) {
            complain("controlPoint", "expected " + std::to_string(uCount) + " x " + std::to_string(vCount) +
                                         " points, found " + std::to_string(points.size()));
            return {};
        }
        if (!fits("uOrder", number(uOrderPart), uCount) || !fits("vOrder", number(vOrderPart), vCount))
            return {};
        const Basis uBasis(uCount, static_cast<std::size_t>(number(uOrderPart)),
                           uKnotPart.read<MFDouble>(node()).values());
        const Basis vBasis(vCount, static_cast<std::size_t>(number(vOrderPart)),
                           vKnotPart.read<MFDouble>(node()).values());
        const std::size_t columns = pieceCount(number(uTessellationPart), uCount, MostSidePieces) + 1;
        const std::size_t rows = pieceCount(number(vTessellationPart), vCount, MostSidePieces) + 1;

        std::vector<osg::Vec3f> grid;
        std::vector<osg::Vec2f> texCoords;
        std::vector<int> index;
        std::vector<double> uShares;
        std::vector<double> vShares;
        for (std::size_t row = 0; row < rows; ++row) {
            const double v = static_cast<double>(row) / static_cast<double>(rows - 1);
            const std::size_t vFirst = vBasis.sample(v, vShares);
            for (std::size_t column = 0; column < columns; ++column) {
                const double u = static_cast<double>(column) / static_cast<double>(columns - 1);
                const std::size_t uFirst = uBasis.sample(u, uShares);
                WeightedSum sum;
                for (std::size_t j = 0; j < vShares.size(); ++j) {
                    for (std::size_t i = 0; i < uShares.size(); ++i) {
                        const std::size_t point = (vFirst + j) * uCount + uFirst + i;
                        sum.add(points[point], uShares[i] * vShares[j] * weight(point));
                    }
                }
                grid.push_back(sum.value());
                texCoords.emplace_back(static_cast<float>(u), static_cast<float>(v));
                if (row == 0 || column == 0)
                    continue;
                const std::size_t last = row * columns + column;
                for (const std::size_t corner : {last - columns - 1, last - columns, last, last - 1})
                    index.push_back(static_cast<int>(corner));
            }
        }
        MeshFaults faults("corner");
        FaceList faces(grid, index);
        faces.readQuads(faults);
        MeshSource source;
        source.faces = &faces;
        source.creaseAngle = 3.1415927F; // smooth all over
        source.texCoords.values = &texCoords;
        return buildMesh(source, faults);
    }
};

const ProcRegistration curve("NurbsCurve", makeProc<NurbsCurveProc>);
const ProcRegistration patch("NurbsPatchSurface", makeProc<NurbsPatchSurfaceProc>);

} // namespace

} // namespace Orvane
