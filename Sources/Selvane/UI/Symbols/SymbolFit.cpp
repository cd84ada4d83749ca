#include "Selvane/UI/Symbols/SymbolFit.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace selvane {

namespace {

constexpr double middle = SymbolDrawing::side / 2;
/// Straight pieces shorter than this are part of a corner, and curves smaller than that have no outermost
/// points worth the while, in units of the grid.
constexpr double shortestStroke = 1.7;
constexpr double smallestCurve = 5.0;
/// Coordinates of the grid that differ by less are one.
constexpr double same = 0.05;
/// A stroke up to this wide is one pixel and what is left over, a wider one two.
constexpr double widestSinglePixel = 1.6;

bool isOdd(double strokeWidth) {
    const auto pixels = static_cast<int>(std::ceil(strokeWidth - (widestSinglePixel - 1)));
    return std::max(1, pixels) % 2 == 1;
}

/// The nearest of `origin` + k to `value`, k whole; of two equally near ones the one that is nearer to 0, so
/// that mirrored values give mirrored results.
double nearest(double value, double origin) {
    const double distance = std::abs(value);
    const double below = std::floor(distance - origin + 0.5 - 1e-9) + origin;
    return std::copysign(std::max(below, 0.0), value);
}

} // namespace

SymbolFit::SymbolFit(const SymbolDrawing& drawing, double scale, double strokeWidth) : _scale(scale) {
    const std::vector<Guide> across = guides(drawing, Direction::horizontal, strokeWidth);
    const std::vector<Guide> down = guides(drawing, Direction::vertical, strokeWidth);

    // A stroke in the very middle wants the grid to be as odd or even as it is. Both directions follow, or a
    // circle would be none.
    const double ideal = SymbolDrawing::side * scale;
    _pixels = static_cast<int>(std::lround(ideal));
    for (const std::vector<Guide>* const direction : {&across, &down}) {
        const auto inMiddle = std::ranges::find_if(*direction, [](const Guide& guide) {
            return guide.toEdge == 0 && std::abs(guide.unit - middle) < same;
        });
        if (inMiddle == direction->end())
            continue;
        if ((_pixels % 2 != 0) != inMiddle->isOdd)
            _pixels += ideal > _pixels ? 1 : -1;
        break;
    }
    _pixels += 2 * margin;

    _x = stops(across);
    _y = stops(down);
}

std::vector<SymbolFit::Guide> SymbolFit::guides(const SymbolDrawing& drawing, Direction direction,
                                                double strokeWidth) {
    const auto along = [direction](const QPointF& point) {
        return direction == Direction::horizontal ? point.x() : point.y();
    };
    const auto across = [direction](const QPointF& point) {
        return direction == Direction::horizontal ? point.y() : point.x();
    };

    std::vector<Guide> guides;
    for (const SymbolDrawing::Shape& shape : drawing.shapes) {
        const double half = shape.strokes * strokeWidth / 2;
        const QRectF bounds = shape.path.boundingRect();
        const double low = along(bounds.topLeft());
        const double high = along(bounds.bottomRight());
        const auto add = [&](double unit) {
            if (!shape.filled)
                guides.push_back({unit, 0, isOdd(2 * half)});
            else if (std::abs(unit - low) < same)
                guides.push_back({unit, -half, false});
            else if (std::abs(unit - high) < same)
                guides.push_back({unit, half, false});
        };
        if (bounds.width() < same && bounds.height() < same)
            add((low + high) / 2);
        bool isCurved = false;
        QPointF from;
        for (int index = 0; index < shape.path.elementCount(); ++index) {
            const QPainterPath::Element element = shape.path.elementAt(index);
            if (element.isLineTo() && std::abs(along(element) - along(from)) < same &&
                std::abs(across(element) - across(from)) >= shortestStroke)
                add(along(element));
            isCurved = isCurved || element.isCurveTo();
            from = element;
        }
        if (isCurved && bounds.width() >= smallestCurve && bounds.height() >= smallestCurve) {
            add(low);
            add(high);
        }
    }
    return guides;
}

SymbolFit::Stops SymbolFit::stops(std::vector<Guide> guides) const {
    // From the outermost inward, as the file has them where two are one; a guide that lies within a pixel of
    // another moves along with it instead.
    std::ranges::stable_sort(guides, std::ranges::greater{}, [](const Guide& guide) {
        return std::lround(std::abs(guide.unit - middle) / same);
    });
    Stops stops;
    for (const Guide& guide : guides) {
        const bool isCrowded = std::ranges::any_of(
            stops, [&](const Stop& stop) { return std::abs(stop.unit - guide.unit) * _scale < 1.0; });
        if (isCrowded)
            continue;
        const double free = (guide.unit - middle) * _scale;
        // Counted from the middle, whole pixels or halves of them.
        const double offset = (_pixels % 2 != 0) == guide.isOdd ? 0.0 : 0.5;
        const double fixed = nearest(free + guide.toEdge, offset) - guide.toEdge;
        stops.push_back({guide.unit, _pixels / 2.0 + fixed});
    }
    std::ranges::sort(stops, {}, &Stop::unit);
    return stops;
}

double SymbolFit::place(double unit, const Stops& stops) const {
    if (stops.empty())
        return _pixels / 2.0 + (unit - middle) * _scale;
    if (unit <= stops.front().unit)
        return stops.front().pixel + (unit - stops.front().unit) * _scale;
    if (unit >= stops.back().unit)
        return stops.back().pixel + (unit - stops.back().unit) * _scale;
    const auto next = std::ranges::upper_bound(stops, unit, {}, &Stop::unit);
    const auto last = std::prev(next);
    return std::lerp(last->pixel, next->pixel, (unit - last->unit) / (next->unit - last->unit));
}

QPainterPath SymbolFit::place(const QPainterPath& path) const {
    QPainterPath placed = path;
    for (int index = 0; index < path.elementCount(); ++index) {
        const QPainterPath::Element element = path.elementAt(index);
        placed.setElementPositionAt(index, place(element.x, _x), place(element.y, _y));
    }
    return placed;
}

} // namespace selvane
