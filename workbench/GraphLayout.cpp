#include "GraphLayout.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

namespace {

using Numbers = std::vector<int>;

class Layout
{
public:
    Layout(int count, const std::vector<std::pair<int, int>>& lines)
        : _next(static_cast<std::size_t>(count))
        , _previous(_next.size())
        , _layer(_next.size(), 0)
        , _place(_next.size(), 0.0)
        , _part(_next.size())
    {
        std::iota(_part.begin(), _part.end(), 0);
        for (const auto& [from, to] : lines) {
            if (from != to)
                next(from).push_back(to);
        }
        dropLinesBack();
        for (int box = 0; box < count; ++box) {
            for (int to : next(box)) {
                previous(to).push_back(box);
                _part[index(rootOf(to))] = rootOf(box);
            }
        }
        findLayers();
    }

    std::vector<QPointF> places(const QSizeF& cell)
    {
        std::map<int, Numbers> parts;
        Numbers alone;
        const int count = static_cast<int>(_next.size());
        for (int box = 0; box < count; ++box) {
            if (next(box).empty() && previous(box).empty())
                alone.push_back(box);
            else
                parts[rootOf(box)].push_back(box);
        }
        double top = 0.0;
        for (const auto& [root, boxes] : parts)
            top = placePart(boxes, top) + 1.0;

        // As many in a row as make it about as wide as high on the screen.
        const int columns = std::max(4, static_cast<int>(std::sqrt(alone.size() / 3.0)));
        for (std::size_t i = 0; i < alone.size(); ++i) {
            _layer[index(alone[i])] = static_cast<int>(i) % columns;
            _place[index(alone[i])] = top + static_cast<int>(i) / columns;
        }
        std::vector<QPointF> corners;
        for (std::size_t box = 0; box < _next.size(); ++box)
            corners.emplace_back(_layer[box] * cell.width(), _place[box] * cell.height());
        return corners;
    }

private:
    static std::size_t index(int box) { return static_cast<std::size_t>(box); }
    Numbers& next(int box) { return _next[index(box)]; }
    Numbers& previous(int box) { return _previous[index(box)]; }

    int rootOf(int box)
    {
        while (_part[index(box)] != box) {
            _part[index(box)] = _part[index(_part[index(box)])];
            box = _part[index(box)];
        }
        return box;
    }

    /// Takes out the lines that lead back to a box on the way; graphs may be deeper than the call stack.
    void dropLinesBack()
    {
        enum State : char { Unseen, OnWay, Done };
        std::vector<State> states(_next.size(), Unseen);
        std::vector<std::pair<int, std::size_t>> way;
        for (int start = 0; start < static_cast<int>(_next.size()); ++start) {
            if (states[index(start)] == Unseen) {
                way.emplace_back(start, 0);
                states[index(start)] = OnWay;
            }
            while (!way.empty()) {
                auto& [box, line] = way.back();
                if (line == next(box).size()) {
                    states[index(box)] = Done;
                    way.pop_back();
                    continue;
                }
                const int to = next(box)[line];
                if (states[index(to)] == OnWay) {
                    next(box).erase(next(box).begin() + static_cast<std::ptrdiff_t>(line));
                    continue;
                }
                ++line;
                if (states[index(to)] == Unseen) {
                    states[index(to)] = OnWay;
                    way.emplace_back(to, 0);
                }
            }
        }
    }

    /// Each box one behind the last of those that lead to it.
    void findLayers()
    {
        std::vector<std::size_t> open;
        Numbers ready;
        for (int box = 0; box < static_cast<int>(_next.size()); ++box) {
            open.push_back(previous(box).size());
            if (open.back() == 0)
                ready.push_back(box);
        }
        while (!ready.empty()) {
            const int box = ready.back();
            ready.pop_back();
            for (int to : next(box)) {
                _layer[index(to)] = std::max(_layer[index(to)], _layer[index(box)] + 1);
                if (--open[index(to)] == 0)
                    ready.push_back(to);
            }
        }
    }

    /// Places boxes that lines join, from \a top on, and gives the row below them.
    double placePart(const Numbers& boxes, double top)
    {
        std::map<int, Numbers> layers;
        for (int box : boxes)
            layers[_layer[index(box)]].push_back(box);
        std::size_t rows = 0;
        for (const auto& [number, layer] : layers)
            rows = std::max(rows, layer.size());
        const auto place = [&](const Numbers& layer) {
            const double first = top + (static_cast<double>(rows) - static_cast<double>(layer.size())) / 2.0;
            for (std::size_t i = 0; i < layer.size(); ++i)
                _place[index(layer[i])] = first + static_cast<double>(i);
        };
        for (const auto& [number, layer] : layers)
            place(layer);

        // Each box to the middle of its neighbours, forwards and backwards in turn.
        constexpr int sweeps = 4;
        const auto settle = [&](Numbers& layer, const std::vector<Numbers>& neighbours) {
            std::map<int, double> middles;
            for (int box : layer)
                middles[box] = middleOf(neighbours[index(box)], _place[index(box)]);
            std::stable_sort(layer.begin(), layer.end(),
                             [&](int a, int b) { return middles[a] < middles[b]; });
            place(layer);
        };
        for (int sweep = 0; sweep < sweeps; ++sweep) {
            for (auto layer = layers.begin(); layer != layers.end(); ++layer)
                settle(layer->second, _previous);
            for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer)
                settle(layer->second, _next);
        }
        return top + static_cast<double>(rows);
    }

    double middleOf(const Numbers& neighbours, double otherwise) const
    {
        if (neighbours.empty())
            return otherwise;
        double sum = 0.0;
        for (int box : neighbours)
            sum += _place[index(box)];
        return sum / static_cast<double>(neighbours.size());
    }

    std::vector<Numbers> _next;
    std::vector<Numbers> _previous;
    Numbers _layer;
    std::vector<double> _place; ///< row, in which boxes between rows have halves
    Numbers _part;              ///< tree of boxes that lines join
};

} // namespace

std::vector<QPointF> layeredLayout(int boxCount, const std::vector<std::pair<int, int>>& lines,
                                   const QSizeF& cell)
{
    return Layout(boxCount, lines).places(cell);
}
