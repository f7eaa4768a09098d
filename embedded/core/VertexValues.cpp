#include "core/VertexValues.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/MFFloat.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <limits>
#include <string>
#include <utility>

namespace Orvane {

namespace {

/// No OpenGL takes more of them.
constexpr std::size_t MostAttributes = 16;

/// Of a vertex where edges of a face cross.
constexpr std::uint32_t NoPoint = std::numeric_limits<std::uint32_t>::max();

const Part attribPart("attrib");
const Part depthPart("depth");
const Part fogCoordPart("fogCoord");
const Part namePart("name");
const Part numComponentsPart("numComponents");
const Part valuePart("value");

/// Behaviour of a `FloatVertexAttribute`: numbers or vectors.
class FloatValuesProc : public VertexValuesProc
{
public:
    using VertexValuesProc::VertexValuesProc;

    osg::VertexAttribute describe() override
    {
        const int wanted = numComponentsPart.read<SFInt32>(node()).value();
        osg::VertexAttribute result;
        result.rows = static_cast<osg::UInt32>(std::clamp(wanted, 1, 4));
        if (static_cast<int>(result.rows) != wanted)
            complain("numComponents", "expected 1 to 4, found " + std::to_string(wanted));
        result.name = namePart.read<SFString>(node()).value();
        result.values = valuePart.read<MFFloat>(node()).values();
        return result;
    }
};

/// Behaviour of a `Matrix3VertexAttribute` or a `Matrix4VertexAttribute`. Rows of a scene's matrix, for
/// vectors in front, are columns of OpenGL's, for vectors behind.
template <class Matrices, osg::UInt32 size>
class MatrixValuesProc : public VertexValuesProc
{
public:
    using VertexValuesProc::VertexValuesProc;

    osg::VertexAttribute describe() override
    {
        osg::VertexAttribute result;
        result.columns = result.rows = size;
        result.name = namePart.read<SFString>(node()).value();
        const auto& matrices = valuePart.read<Matrices>(node()).values();
        result.values.reserve(matrices.size() * size * size);
        for (const auto& matrix : matrices)
            result.values.insert(result.values.end(), matrix.v.begin(), matrix.v.end());
        return result;
    }
};

const ProcRegistration fogCoordinate("FogCoordinate", makeProc<DescriptionProc>);
const ProcRegistration floats("FloatVertexAttribute", makeProc<FloatValuesProc>);
const ProcRegistration matrices3("Matrix3VertexAttribute", makeProc<MatrixValuesProc<MFMatrix3f, 3>>);
const ProcRegistration matrices4("Matrix4VertexAttribute", makeProc<MatrixValuesProc<MFMatrix4f, 4>>);

/// The values of vertices, picked from those of points; zeros where there are none.
std::vector<float> picked(const std::vector<float>& values, const std::vector<std::uint32_t>& points,
                          std::size_t size)
{
    std::vector<float> result(points.size() * size);
    const std::size_t count = values.size() / size;
    for (std::size_t vertex = 0; vertex < points.size(); ++vertex) {
        if (points[vertex] < count)
            std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(points[vertex] * size), size,
                        result.begin() + static_cast<std::ptrdiff_t>(vertex * size));
    }
    return result;
}

} // namespace

bool VertexValues::areGiven(const Node& geometry)
{
    return (attribPart.isIn(geometry) && attribPart.read<MFNode>(geometry).size() > 0) ||
           fogCoordPart.readNode(geometry);
}

bool VertexValues::read(ElementProc& user, const std::vector<std::uint32_t>& points)
{
    if (attribPart.isIn(std::as_const(user).node()))
        readAttributes(user, points);
    return readFogDepths(user, points);
}

bool VertexValues::readFogDepths(ElementProc& user, const std::vector<std::uint32_t>& points)
{
    Node* const node = resolved(fogCoordPart.readNode(std::as_const(user).node()));
    const bool isGiven =
        node && depthPart.isIn(*node) && readField(*node, depthPart.in(*node)).dataType() == MFFLOAT_DT;
    _fogUse.set(user, isGiven ? procAs<ElementProc>(node) : nullptr);
    _fogDepths.clear();
    if (!isGiven)
        return true;
    const std::vector<float>& depths = depthPart.read<MFFloat>(*node).values();
    if (depths.empty())
        return true;
    bool isWhole = true;
    _fogDepths.reserve(points.size());
    for (const std::uint32_t point : points) {
        // False for what is no number.
        const bool isUsable = point < depths.size() && depths[point] > 0.0F;
        _fogDepths.push_back(isUsable ? std::min(depths[point], 1.0F) : 0.0F);
        isWhole = isWhole && (point < depths.size() || point == NoPoint);
    }
    return isWhole;
}

void VertexValues::readAttributes(ElementProc& user, const std::vector<std::uint32_t>& points)
{
    const auto& list = attribPart.read<MFNode>(std::as_const(user).node());
    std::vector<Use> uses;
    _attributes.clear();
    for (unsigned int i = 0; i < list.size() && _attributes.size() < MostAttributes; ++i) {
        auto* const proc = elementOf<VertexValuesProc>(list.elem(static_cast<int>(i)).directNode());
        if (!proc)
            continue;
        uses.emplace_back();
        uses.back().set(user, proc);
        osg::VertexAttribute attribute = proc->describe();
        attribute.values = picked(attribute.values, points, std::size_t(attribute.columns) * attribute.rows);
        if (!points.empty())
            _attributes.push_back(std::move(attribute));
    }
    _uses = std::move(uses);
    _areUsed = !_attributes.empty();
}

std::vector<osg::VertexAttribute> VertexValues::take()
{
    return std::move(_attributes);
}

} // namespace Orvane
