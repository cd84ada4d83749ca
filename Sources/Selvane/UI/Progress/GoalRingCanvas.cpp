#include "Selvane/UI/Progress/GoalRingCanvas.h"

#include "Selvane/UI/Controls/Digits.h"
#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Progress/HeatmapPainting.h"
#include "Selvane/UI/Progress/ProgressText.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>

#include <cmath>
#include <utility>

namespace selvane {

namespace {

constexpr double lineWidth = 3.5;
constexpr double trackOpacity = 0.08;
/// The baselines, from the top.
constexpr double numberLine = 21;
constexpr double captionLine = 30;
/// As wide as texts can be at their height without touching the ring.
constexpr double numberRoom = 28;
constexpr double captionRoom = 24;
constexpr int numberSize = 13;
constexpr int captionSize = 8;
constexpr int smallestSize = 6;

/// The program's font in the largest size, up to `size`, in which the text is no wider than its room. Its own
/// figures, not rounded ones: no rounded family can be counted on, and one that some desktops have would make
/// the ring look foreign beside the rest.
template <typename Width>
QFont fitting(int size, QFont::Weight weight, double room, Width widthOf) {
    QFont font = QGuiApplication::font();
    font.setWeight(weight);
    font.setPixelSize(size);
    while (size > smallestSize && widthOf(QFontMetricsF(font)) > room)
        font.setPixelSize(--size);
    return font;
}

} // namespace

GoalRingCanvas::GoalRingCanvas(QQuickItem* parent) : StillItem(parent) {
    setImplicitSize(side, side);
}

void GoalRingCanvas::setMinutes(int minutes) {
    if (std::exchange(_minutes, minutes) == minutes)
        return;
    update();
    Q_EMIT minutesChanged();
}

void GoalRingCanvas::setGoal(int goal) {
    if (std::exchange(_goal, goal) == goal)
        return;
    update();
    Q_EMIT minutesChanged();
}

double GoalRingCanvas::reached() const {
    return ProgressText::goalFraction(_minutes, _goal);
}

QString GoalRingCanvas::tooltip() const {
    return ProgressText::goalTooltip(_minutes, _goal);
}

void GoalRingCanvas::setFraction(double fraction) {
    if (std::exchange(_fraction, fraction) == fraction)
        return;
    update();
    Q_EMIT fractionChanged();
}

void GoalRingCanvas::setInk(const QColor& ink) {
    if (std::exchange(_ink, ink) == ink)
        return;
    update();
    Q_EMIT inkChanged();
}

void GoalRingCanvas::setLift(double lift) {
    if (std::exchange(_lift, lift) == lift)
        return;
    update();
    Q_EMIT liftChanged();
}

void GoalRingCanvas::setTextInk(const QColor& ink) {
    if (std::exchange(_textInk, ink) == ink)
        return;
    update();
    Q_EMIT textInkChanged();
}

void GoalRingCanvas::setCaptionInk(const QColor& ink) {
    if (std::exchange(_captionInk, ink) == ink)
        return;
    update();
    Q_EMIT captionInkChanged();
}

void GoalRingCanvas::paint(QPainter* painter, const QSizeF& /*size*/) {
    painter->setRenderHint(QPainter::Antialiasing);
    paintRing(*painter);
    paintNumber(*painter);
    paintCaption(*painter);
}

void GoalRingCanvas::paintRing(QPainter& painter) const {
    const QRectF circle =
        QRectF(0, 0, side, side).marginsRemoved({lineWidth / 2, lineWidth / 2, lineWidth / 2, lineWidth / 2});
    painter.setPen(QPen(faded(_ink, lifted(trackOpacity, _lift)), lineWidth));
    painter.drawEllipse(circle);

    // In sixteenths of a degree, which are finer than any screen.
    constexpr int top = 90 * 16;
    painter.setPen(QPen(_ink, lineWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle, top, -static_cast<int>(std::lround(_fraction * 360 * 16)));
}

void GoalRingCanvas::paintNumber(QPainter& painter) const {
    const QString number = QString::number(_minutes);
    const auto count = static_cast<double>(number.size());
    painter.setFont(fitting(numberSize, QFont::DemiBold, numberRoom,
                            [&](const QFontMetricsF& metrics) { return count * widestDigit(metrics); }));
    painter.setPen(_textInk);
    const QFontMetricsF metrics(painter.font());
    const double cell = widestDigit(metrics);
    double left = (side - count * cell) / 2;
    for (const QChar digit : number) {
        painter.drawText(QPointF(left + (cell - metrics.horizontalAdvance(digit)) / 2, numberLine),
                         QString(digit));
        left += cell;
    }
}

void GoalRingCanvas::paintCaption(QPainter& painter) const {
    const QString caption = ProgressText::goalCaption(_goal);
    painter.setFont(fitting(captionSize, QFont::Medium, captionRoom, [&](const QFontMetricsF& metrics) {
        return metrics.horizontalAdvance(caption);
    }));
    painter.setPen(_captionInk);
    const double width = QFontMetricsF(painter.font()).horizontalAdvance(caption);
    painter.drawText(QPointF((side - width) / 2, captionLine), caption);
}

} // namespace selvane
