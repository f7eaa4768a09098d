#include "core/FaceList.h"
#include "core/MeshData.h"
#include <algorithm>
#include <limits>

namespace Orvane {

namespace {

constexpr std::size_t MaxCount = std::numeric_limits<std::uint32_t>::max() / 4;

} // namespace

void FaceList::readPolygons(MeshFaults& faults)
{
    if (!prepare(faults))
        return;
    const std::vector<int>& index = *_index;
    const auto pointCount = static_cast<unsigned int>(_points->size());
    _faces.reserve(index.size() / 4 + 1);
    std::size_t first = 0;
    bool inRange = true;
    for (std::size_t i = 0; i < index.size(); ++i) {
        if (index[i] < 0) {
            addFace(first, i - first, inRange, faults);
            first = i + 1;
            inRange = true;
        } else if (static_cast<unsigned int>(index[i]) >= pointCount)
            inRange = false;
    }
    if (first < index.size())
        addFace(first, index.size() - first, inRange, faults);
}

void FaceList::readEqual(std::size_t corners, MeshFaults& faults)
{
    if (!prepare(faults))
        return;
    const auto pointCount = static_cast<unsigned int>(_points->size());
    const auto inRange = [&](int i) { return i >= 0 && static_cast<unsigned int>(i) < pointCount; };
    _faces.reserve(_index->size() / corners);
    auto face = _index->begin();
    for (std::size_t first = 0; first + corners <= _index->size(); first += corners) {
        const auto next = face + static_cast<std::ptrdiff_t>(corners);
        addFace(first, corners, std::all_of(face, next, inRange), faults);
        face = next;
    }
}

bool FaceList::prepare(MeshFaults& faults)
{
    if (_points->size() > MaxCount || _index->size() > MaxCount) {
        faults.add(MeshFaults::INDEX_OUT_OF_RANGE, MaxCount);
        return false;
    }
    for (std::size_t i = 0; i < _points->size(); ++i) {
        if (!isDrawable((*_points)[i])) {
            _undrawable.resize(_points->size());
            _undrawable[i] = true;
        }
    }
    return true;
}

void FaceList::addFace(std::size_t first, std::size_t count, bool inRange, MeshFaults& faults)
{
    Face face{static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(count)};
    if (!inRange) {
        faults.add(MeshFaults::INDEX_OUT_OF_RANGE, first);
        face.count = 0;
    } else if (count < 3) {
        // An end mark without a face before it is no fault.
        if (count > 0)
            faults.add(MeshFaults::TOO_FEW_CORNERS, first);
        face.count = 0;
    } else if (!_undrawable.empty()) {
        for (std::uint32_t i = 0; i < face.count; ++i) {
            if (_undrawable[pointAt(face.first + i)]) {
                faults.add(MeshFaults::NOT_FINITE, pointAt(face.first + i));
                face.count = 0;
            }
        }
    }
    _faces.push_back(face);
    if (face.count > 0) {
        _cornerCount += face.count;
        _triangleCount += face.count - 2;
    }
}

std::vector<int> pointRuns(const std::vector<int>& counts, std::size_t pointCount)
{
    std::vector<int> index;
    std::size_t first = 0;
    for (const int count : counts) {
        if (count <= 0)
            continue;
        const std::size_t last = std::min(pointCount, first + static_cast<std::size_t>(count));
        for (std::size_t i = first; i < last; ++i)
            index.push_back(static_cast<int>(i));
        if (last > first)
            index.push_back(-1);
        first = last;
    }
    return index;
}

} // namespace Orvane
