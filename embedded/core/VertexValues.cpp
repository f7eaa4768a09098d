#include "core/VertexValues.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/MFFloat.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <string>
#include <utility>

namespace Orvane {

namespace {

/// No OpenGL takes more of them.
constexpr std::size_t MostAttributes = 16;

const Part attribPart("attrib");
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
    return attribPart.isIn(geometry) && attribPart.read<MFNode>(geometry).size() > 0;
}

void VertexValues::read(ElementProc& user, const std::vector<std::uint32_t>& points)
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
