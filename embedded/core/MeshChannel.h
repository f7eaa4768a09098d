#pragma once

#include "core/MeshBuilder.h"
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace Orvane {

/// Stands for an index that leads nowhere.
constexpr std::uint32_t NoIndex = std::numeric_limits<std::uint32_t>::max();

/// Where the values of one property of a mesh come from, once normals are made where they were missing. What
/// it is bound to must outlive it.
template <class Value>
class MeshChannel
{
public:
    void bind(const MeshAttribute<Value>& attribute, const std::vector<int>& coordIndex)
    {
        if (!attribute.isGiven())
            return;
        _values = attribute.values;
        bindIndex(attribute, coordIndex, _values->size());
    }
    /// Binds indices of \a count values that stand elsewhere.
    void bindIndex(const MeshAttribute<Value>& attribute, const std::vector<int>& coordIndex,
                   std::size_t count)
    {
        _isGiven = true;
        _count = count;
        const bool indexed = attribute.index && !attribute.index->empty();
        if (indexed && !(attribute.perVertex && *attribute.index == coordIndex))
            _index = attribute.index;
        _kind = attribute.perVertex ? (_index ? Kind::Corner : Kind::Point) : Kind::Face;
    }
    void bindPoints(std::vector<Value> values) { own(std::move(values), Kind::Point); }
    void bindCorners(std::vector<Value> values, std::vector<std::uint32_t> places)
    {
        own(std::move(values), Kind::Made);
        _made = std::move(places);
    }

    bool isGiven() const { return _isGiven; }
    bool isPerPoint() const { return !_isGiven || _kind == Kind::Point; }
    bool isPerFace() const { return _isGiven && _kind == Kind::Face; }

    /// Index of the value of a corner; `NoIndex` when the scene names one that does not exist.
    std::uint32_t at(std::uint32_t place, std::uint32_t point, std::uint32_t face, MeshFaults& faults) const
    {
        if (!_isGiven)
            return NoIndex;
        std::uint32_t i = point;
        if (_kind == Kind::Made)
            i = _made[place];
        else if (_kind != Kind::Point) {
            i = _kind == Kind::Face ? face : place;
            if (_index)
                i = i < _index->size() ? static_cast<std::uint32_t>((*_index)[i]) : NoIndex;
        }
        if (i < _count)
            return i;
        faults.add(MeshFaults::ATTRIBUTE_OUT_OF_RANGE, place);
        return NoIndex;
    }
    Value value(std::uint32_t i, const Value& fallback) const
    {
        return i == NoIndex ? fallback : (*_values)[i];
    }

private:
    enum class Kind { Point, Face, Corner, Made };

    void own(std::vector<Value> values, Kind kind)
    {
        _owned = std::move(values);
        _values = &_owned;
        _isGiven = true;
        _count = _owned.size();
        _kind = kind;
    }

    const std::vector<Value>* _values = nullptr;
    const std::vector<int>* _index = nullptr;
    std::vector<Value> _owned;
    std::vector<std::uint32_t> _made;
    Kind _kind = Kind::Point;
    std::size_t _count = 0;
    bool _isGiven = false;
};

} // namespace Orvane
