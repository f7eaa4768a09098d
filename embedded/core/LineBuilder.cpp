#include "core/LineBuilder.h"

namespace Orvane {

namespace {

/// The colours that a set of lines or points picks from, of either kind.
class ColorPicker
{
public:
    ColorPicker(const MeshAttribute<osg::Color3f>& rgb, const MeshAttribute<osg::Color4f>& rgba)
        : _rgb(rgb)
        , _rgba(rgba)
    {
    }

    bool isGiven() const { return _rgb.isGiven() || _rgba.isGiven(); }
    bool isPerVertex() const { return _rgb.isGiven() ? _rgb.perVertex : _rgba.perVertex; }

    /// Adds the colour whose number stands at \a place of the colour index, or is \a number without one.
    void add(std::size_t place, std::size_t number, MeshData& mesh, MeshFaults& faults) const
    {
        if (!isGiven())
            return;
        const std::vector<int>* const index = _rgb.isGiven() ? _rgb.index : _rgba.index;
        std::size_t i = number;
        if (index && !index->empty())
            i = place < index->size() && (*index)[place] >= 0 ? static_cast<std::size_t>((*index)[place])
                                                              : ~0ULL;
        if (i >= (_rgb.isGiven() ? _rgb.values->size() : _rgba.values->size())) {
            faults.add(MeshFaults::ATTRIBUTE_OUT_OF_RANGE, place);
            mesh.colors.emplace_back(1.0F, 1.0F, 1.0F, 1.0F);
        } else if (_rgb.isGiven()) {
            const osg::Color3f& color = (*_rgb.values)[i];
            mesh.colors.emplace_back(color.red(), color.green(), color.blue(), 1.0F);
        } else
            mesh.colors.push_back((*_rgba.values)[i]);
    }

private:
    const MeshAttribute<osg::Color3f>& _rgb;
    const MeshAttribute<osg::Color4f>& _rgba;
};

class LineWriter
{
public:
    LineWriter(const LineSource& source, MeshFaults& faults)
        : _source(source)
        , _colors(source.colors, source.colorsRGBA)
        , _faults(faults)
    {
    }

    MeshData write()
    {
        const std::vector<int>& index = *_source.index;
        _mesh.positions.reserve(index.size());
        _mesh.indices.reserve(2 * index.size());
        std::size_t first = 0;
        for (std::size_t i = 0; i <= index.size(); ++i) {
            if (i < index.size() && index[i] >= 0)
                continue;
            if (i > first)
                addLine(first, i);
            else if (i < index.size())
                ++_line;
            first = i + 1;
        }
        return std::move(_mesh);
    }

private:
    void addLine(std::size_t first, std::size_t last)
    {
        const std::size_t line = _line++;
        if (last - first < 2) {
            _faults.add(MeshFaults::TOO_FEW_CORNERS, first);
            return;
        }
        for (std::size_t i = first; i < last; ++i) {
            const auto point = static_cast<std::size_t>((*_source.index)[i]);
            if (point >= _source.points->size()) {
                _faults.add(MeshFaults::INDEX_OUT_OF_RANGE, i);
                return;
            }
            if (!isDrawable((*_source.points)[point])) {
                _faults.add(MeshFaults::NOT_FINITE, point);
                return;
            }
        }
        for (std::size_t i = first; i < last; ++i) {
            const auto point = static_cast<std::size_t>((*_source.index)[i]);
            const auto vertex = static_cast<std::uint32_t>(_mesh.positions.size());
            _mesh.positions.emplace_back((*_source.points)[point]);
            if (_source.wantsPoints)
                _mesh.points.push_back(static_cast<std::uint32_t>(point));
            const bool perVertex = _colors.isPerVertex();
            _colors.add(perVertex ? i : line, perVertex ? point : line, _mesh, _faults);
            if (i > first) {
                _mesh.indices.push_back(vertex - 1);
                _mesh.indices.push_back(vertex);
            }
        }
    }

    const LineSource& _source;
    ColorPicker _colors;
    MeshFaults& _faults;
    MeshData _mesh;
    std::size_t _line = 0;
};

} // namespace

MeshData buildLines(const LineSource& source, MeshFaults& faults)
{
    return LineWriter(source, faults).write();
}

MeshData buildPoints(const PointSource& source, MeshFaults& faults)
{
    const ColorPicker picker(source.colors, source.colorsRGBA);
    const std::vector<osg::Vec3f>& points = *source.points;
    MeshData mesh;
    mesh.positions.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!isDrawable(points[i])) {
            faults.add(MeshFaults::NOT_FINITE, i);
            continue;
        }
        mesh.positions.emplace_back(points[i]);
        if (source.wantsPoints)
            mesh.points.push_back(static_cast<std::uint32_t>(i));
        picker.add(i, i, mesh, faults);
    }
    return mesh;
}

} // namespace Orvane
