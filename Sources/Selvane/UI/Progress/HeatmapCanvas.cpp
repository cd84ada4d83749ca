#include "Selvane/UI/Progress/HeatmapCanvas.h"

#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Controls/ShapePainting.h"
#include "Selvane/UI/Progress/HeatmapDays.h"
#include "Selvane/UI/Progress/HeatmapGrid.h"
#include "Selvane/UI/Progress/HeatmapLayout.h"
#include "Selvane/UI/Progress/HeatmapPainting.h"
#include "Selvane/UI/QtText.h"

#include <QKeyEvent>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <optional>
#include <utility>

namespace selvane {

namespace {

/// The corner's radius as a part of the square's side.
constexpr double roundness = 0.3;

std::optional<HeatmapGrid::Step> stepOf(int key) {
    switch (key) {
    case Qt::Key_Up:
        return HeatmapGrid::Step::dayBack;
    case Qt::Key_Down:
        return HeatmapGrid::Step::dayForth;
    case Qt::Key_Left:
        return HeatmapGrid::Step::weekBack;
    case Qt::Key_Right:
        return HeatmapGrid::Step::weekForth;
    case Qt::Key_Home:
        return HeatmapGrid::Step::first;
    case Qt::Key_End:
        return HeatmapGrid::Step::last;
    default:
        return std::nullopt;
    }
}

double outlineOpacity(HeatmapGrid::Outline outline) {
    switch (outline) {
    case HeatmapGrid::Outline::none:
        return 0;
    case HeatmapGrid::Outline::today:
        return 0.5;
    case HeatmapGrid::Outline::frozen:
        return 0.6;
    }
    return 0;
}

} // namespace

HeatmapCanvas::HeatmapCanvas(QQuickItem* parent)
    : StillItem(parent), _layout(std::make_unique<HeatmapLayout>()), _grid(std::make_unique<HeatmapGrid>()) {
    setAcceptHoverEvents(true);
    setActiveFocusOnTab(true);
}

HeatmapCanvas::~HeatmapCanvas() = default;

void HeatmapCanvas::setDays(const HeatmapData& days) {
    if (_days == days)
        return;
    _days = days;
    rebuild();
}

template <typename Value>
void HeatmapCanvas::setLayout(Value HeatmapLayout::*field, Value value) {
    if (std::exchange((*_layout).*field, value) == value)
        return;
    const QSizeF content = _layout->contentSize();
    setImplicitSize(std::max(_layout->offeredWidth, content.width()), content.height());
    Q_EMIT layoutChanged();
    rebuild();
}

int HeatmapCanvas::weeks() const {
    return _layout->weeks;
}

void HeatmapCanvas::setWeeks(int weeks) {
    setLayout(&HeatmapLayout::weeks, std::max(weeks, 0));
}

double HeatmapCanvas::cell() const {
    return _layout->cell;
}

void HeatmapCanvas::setCell(double cell) {
    setLayout(&HeatmapLayout::cell, cell);
}

double HeatmapCanvas::gap() const {
    return _layout->gap;
}

void HeatmapCanvas::setGap(double gap) {
    setLayout(&HeatmapLayout::gap, gap);
}

double HeatmapCanvas::offeredWidth() const {
    return _layout->offeredWidth;
}

void HeatmapCanvas::setOfferedWidth(double width) {
    setLayout(&HeatmapLayout::offeredWidth, width);
}

double HeatmapCanvas::labelHeight() const {
    return _layout->labelHeight;
}

void HeatmapCanvas::setLabelHeight(double height) {
    setLayout(&HeatmapLayout::labelHeight, height);
}

double HeatmapCanvas::labelSpacing() const {
    return _layout->labelSpacing;
}

void HeatmapCanvas::setLabelSpacing(double spacing) {
    setLayout(&HeatmapLayout::labelSpacing, spacing);
}

void HeatmapCanvas::setInk(const QColor& ink) {
    if (std::exchange(_ink, ink) == ink)
        return;
    update();
    Q_EMIT inkChanged();
}

void HeatmapCanvas::setLift(double lift) {
    if (std::exchange(_lift, lift) == lift)
        return;
    update();
    Q_EMIT liftChanged();
}

void HeatmapCanvas::setLabelInk(const QColor& ink) {
    if (std::exchange(_labelInk, ink) == ink)
        return;
    update();
    Q_EMIT labelInkChanged();
}

void HeatmapCanvas::componentComplete() {
    StillItem::componentComplete();
    rebuild();
}

void HeatmapCanvas::rebuild() {
    if (!isComponentComplete())
        return;
    // The chosen day stays the same where a new day moves the grid.
    const std::optional<DayKey> chosen =
        _cursor < 0 ? std::nullopt : std::optional(_grid->squares()[static_cast<std::size_t>(_cursor)].day);
    *_grid = _days.days() ? HeatmapGrid(*_days.days(), _layout->weeks, QLocale()) : HeatmapGrid();
    setCursor(chosen ? _grid->offsetOf(*chosen) : -1);
    if (_hovered >= static_cast<int>(_grid->squares().size()))
        _hovered = -1;
    update();
    Q_EMIT daysChanged();
    tellOfTip();
}

void HeatmapCanvas::geometryChange(const QRectF& geometry, const QRectF& oldGeometry) {
    StillItem::geometryChange(geometry, oldGeometry);
    if (geometry.size() != oldGeometry.size())
        tellOfTip();
}

// The chosen day

int HeatmapCanvas::cursor() const {
    return _cursor < 0 ? _grid->last() : _cursor;
}

void HeatmapCanvas::setCursor(int offset) {
    // The keyboard begins at today; from there it goes along when a new day comes.
    _cursor = offset >= _grid->last() ? -1 : offset;
}

QString HeatmapCanvas::words(int offset) const {
    if (offset < 0)
        return {};
    return HeatmapGrid::tooltip(_grid->squares()[static_cast<std::size_t>(offset)], QLocale());
}

QRectF HeatmapCanvas::square(int offset) const {
    return offset < 0 ? QRectF() : _layout->square(offset, width());
}

QString HeatmapCanvas::tip() const {
    return _hovered >= 0 ? words(_hovered) : cursorTip();
}

QRectF HeatmapCanvas::tipSquare() const {
    return _hovered >= 0 ? square(_hovered) : cursorSquare();
}

QString HeatmapCanvas::cursorTip() const {
    return hasActiveFocus() ? words(cursor()) : QString();
}

QRectF HeatmapCanvas::cursorSquare() const {
    return hasActiveFocus() ? square(cursor()) : QRectF();
}

QString HeatmapCanvas::summary() const {
    return _grid->summary();
}

void HeatmapCanvas::setHovered(int offset) {
    if (std::exchange(_hovered, offset) != offset)
        tellOfTip();
}

void HeatmapCanvas::tellOfTip() {
    Q_EMIT tipSquareChanged();
    Q_EMIT tipChanged();
}

void HeatmapCanvas::hoverMoveEvent(QHoverEvent* event) {
    const std::optional<int> offset = _layout->offsetAt(event->position(), width());
    const bool hasSquare = offset && *offset < static_cast<int>(_grid->squares().size());
    setHovered(hasSquare ? *offset : -1);
    StillItem::hoverMoveEvent(event);
}

void HeatmapCanvas::hoverLeaveEvent(QHoverEvent* event) {
    setHovered(-1);
    StillItem::hoverLeaveEvent(event);
}

void HeatmapCanvas::keyPressEvent(QKeyEvent* event) {
    const std::optional<HeatmapGrid::Step> step = stepOf(event->key());
    if (!step || event->modifiers() & ~Qt::KeypadModifier || _grid->squares().empty()) {
        event->ignore();
        return;
    }
    setCursor(_grid->stepped(cursor(), *step));
    // What was chosen last is what counts, also while the pointer rests on another day.
    _hovered = -1;
    tellOfTip();
}

void HeatmapCanvas::focusInEvent(QFocusEvent* event) {
    StillItem::focusInEvent(event);
    tellOfTip();
}

void HeatmapCanvas::focusOutEvent(QFocusEvent* event) {
    StillItem::focusOutEvent(event);
    tellOfTip();
}

// Painting

void HeatmapCanvas::paint(QPainter* painter, const QSizeF& /*size*/) {
    painter->setRenderHint(QPainter::Antialiasing);
    const double scale = HeatmapPainting::scaleOf(*painter);
    paintSquares(*painter, scale);
    paintLabels(*painter, scale);
}

void HeatmapCanvas::paintSquares(QPainter& painter, double scale) const {
    // Squares begin and end with a pixel, so that all of them are sharp and alike.
    const double side = crispPlace(_layout->cell, scale);
    for (int offset = 0; const HeatmapGrid::Square& day : _grid->squares()) {
        const QPointF place = square(offset++).topLeft();
        const QPointF corner(crispPlace(place.x(), scale), crispPlace(place.y(), scale));
        HeatmapPainting::fillSquare(painter, corner, side, side * roundness,
                                    faded(_ink, lifted(HeatmapPainting::opacityOfLevel(day.level), _lift)));
        if (day.outline != HeatmapGrid::Outline::none)
            HeatmapPainting::outlineSquare(painter, corner, side, side * roundness,
                                           faded(_ink, outlineOpacity(day.outline)));
    }
}

void HeatmapCanvas::paintLabels(QPainter& painter, double scale) const {
    painter.setFont(HeatmapPainting::labelFont());
    painter.setPen(_labelInk);
    const double monthLine = HeatmapPainting::baseline(0, _layout->labelHeight, scale);
    for (const HeatmapGrid::MonthLabel& label : _grid->monthLabels()) {
        const double left = square(label.column * HeatmapGrid::rows).left();
        painter.drawText(QPointF(crispPlace(left, scale), monthLine), label.name);
    }
    for (int row = 0; const std::string_view label : HeatmapGrid::weekdayLabels) {
        const QRectF beside = square(row++);
        painter.drawText(QPointF(crispPlace(_layout->left(width()), scale),
                                 HeatmapPainting::baseline(beside.top(), beside.height(), scale)),
                         qtText(label));
    }
}

} // namespace selvane
