#pragma once

#include <QPointF>
#include <QSizeF>
#include <utility>
#include <vector>

/// Where boxes go so that lines lead from left to right: in layers, each behind all that lead to it, with few
/// crossings. Parts of the graph that no line joins lie below each other, boxes without any line in rows at
/// the end. Lines are pairs of box numbers, source first; those that would close a circle are left out of
/// account. Gives the top left corners, beginning at (0, 0), when each box gets \a cell.
std::vector<QPointF> layeredLayout(int boxCount, const std::vector<std::pair<int, int>>& lines,
                                   const QSizeF& cell);
