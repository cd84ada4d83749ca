#include "Selvane/UI/Timer/TimeText.h"

#include "Selvane/UI/Controls/Digits.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace selvane {

namespace {

constexpr double trackingOfSize = -0.02;
constexpr double lineHeightOfSize = 1.2;
/// How far a digit comes from above, in parts of the font's size.
constexpr double rollDistanceOfSize = 0.36;
/// What leaves fades faster than what comes.
constexpr double leavingFade = 1.5;

struct Measures {
    double digit;
    double colon;

    [[nodiscard]] double cell(QChar character) const { return character == u':' ? colon : digit; }
};

QFont timeFont(int pixelSize) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(QFont::DemiBold);
    return font;
}

/// Whole pixels, so that equal digits look alike in every cell.
Measures measure(const QFont& font) {
    const QFontMetricsF metrics(font);
    const double tracking = trackingOfSize * font.pixelSize();
    return {std::round(widestDigit(metrics) + tracking),
            std::round(metrics.horizontalAdvance(QChar(u':')) + tracking)};
}

/// Times of one shape lie in the same cells.
QString shape(QString time) {
    for (QChar& character : time) {
        if (character != u':')
            character = u'0';
    }
    return time;
}

double widthOf(const QString& time, const Measures& measures) {
    double width = 0;
    for (const QChar character : time)
        width += measures.cell(character);
    return width;
}

} // namespace

TimeText::TimeText(QQuickItem* parent) : SteppedItem(parent) {
    layOut();
}

void TimeText::setTime(const QString& time) {
    const QString before = std::exchange(_time, time);
    if (before == time)
        return;
    if (shape(before) != shape(time))
        layOut();
    // How to change is decided when all that changed with the time is known.
    decideSoon();
    Q_EMIT timeChanged();
}

void TimeText::setSize(double size) {
    if (std::exchange(_size, size) == size)
        return;
    layOut();
    Q_EMIT sizeChanged();
}

void TimeText::setMaximumWidth(double width) {
    if (std::exchange(_maximumWidth, width) == width)
        return;
    layOut();
    Q_EMIT maximumWidthChanged();
}

void TimeText::setColor(const QColor& color) {
    if (std::exchange(_color, color) == color)
        return;
    repaint();
    Q_EMIT colorChanged();
}

void TimeText::setRunning(bool running) {
    if (std::exchange(_isRunning, running) != running)
        Q_EMIT isRunningChanged();
}

void TimeText::setReducesMotion(bool reducesMotion) {
    if (std::exchange(_reducesMotion, reducesMotion) != reducesMotion)
        Q_EMIT reducesMotionChanged();
}

void TimeText::layOut() {
    int pixelSize = std::max(static_cast<int>(std::lround(_size)), 1);
    QFont font = timeFont(pixelSize);
    Measures measures = measure(font);
    while (_maximumWidth > 0 && pixelSize > 1 && widthOf(_time, measures) > _maximumWidth) {
        font = timeFont(--pixelSize);
        measures = measure(font);
    }

    _edges.assign(1, 0);
    for (const QChar character : std::as_const(_time))
        _edges.push_back(_edges.back() + measures.cell(character));

    const QFontMetricsF metrics(font);
    const QRectF zero = metrics.tightBoundingRect(QStringLiteral("0"));
    const QRectF colon = metrics.tightBoundingRect(QStringLiteral(":"));
    const double height = std::round(lineHeightOfSize * _size);
    // The digits stand in the middle of the line, and the dots of the colon in the middle of the digits.
    _baseline = std::round(height / 2 - zero.center().y());
    _colonRise = colon.center().y() - zero.center().y();
    setBaselineOffset(_baseline);
    // An even width, so that the time stands on whole pixels where it is centred.
    setImplicitSize(std::ceil(_edges.back() / 2) * 2, height);

    const bool fontDiffers = std::exchange(_font, font) != font;
    repaint();
    if (fontDiffers)
        Q_EMIT fontChanged();
}

void TimeText::decide() {
    if (_roll.time() == _time)
        return;
    DigitRoll::Pace pace = DigitRoll::Pace::smooth;
    if (_reducesMotion || !isShown() || _roll.time().isEmpty())
        pace = DigitRoll::Pace::none;
    else if (_isRunning)
        pace = DigitRoll::Pace::tick;
    // Also the digits of a roll that hadn't ended yet.
    const QRectF before = rollingArea();
    _roll.change(_time, pace, now());
    if (pace == DigitRoll::Pace::tick)
        repaint(before | rollingArea());
    else
        repaint();
    scheduleStep();
}

void TimeText::shownChanged() {
    const QRectF rolling = rollingArea();
    _roll.settle();
    // Until the roll learns of another time, it is drawn without it.
    if (_roll.time() != _time)
        repaint();
    else
        repaint(rolling);
}

void TimeText::step() {
    repaint(rollingArea());
    scheduleStep();
}

void TimeText::scheduleStep() {
    if (const auto delay = isShown() ? _roll.untilNextStep(now()) : std::nullopt)
        stepAfter(*delay);
    else
        stopSteps();
}

QRectF TimeText::rollingArea() const {
    const std::vector<DigitRoll::Cell> cells = _roll.cells();
    const double left = std::floor((width() - _edges.back()) / 2);
    QRectF area;
    for (std::size_t index = 0; index < cells.size() && index + 1 < _edges.size(); ++index) {
        if (cells[index].before)
            area |= QRectF(left + _edges[index], 0, _edges[index + 1] - _edges[index], height());
    }
    return area.isEmpty() ? area : area.adjusted(-2, 0, 2, 0);
}

void TimeText::draw(QPainter& painter) {
    // The roll learns of a time a little later, which may be too late for a picture taken now.
    if (_roll.time() != _time) {
        _roll.change(_time, DigitRoll::Pace::none, now());
        if (painter.hasClipping())
            QMetaObject::invokeMethod(
                this, [this] { repaint(); }, Qt::QueuedConnection);
    }
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(_font);

    const QFontMetricsF metrics(_font);
    const double scale = painter.transform().m11();
    const double left = std::floor((width() - _edges.back()) / 2);
    const double position = _roll.position(now());
    const double distance = rollDistanceOfSize * _font.pixelSize();
    const auto draw = [&](QChar character, std::size_t index, double offset, double opacity) {
        if (character.isNull() || opacity <= 0)
            return;
        QColor shade = _color;
        shade.setAlphaF(shade.alphaF() * static_cast<float>(std::min(opacity, 1.0)));
        painter.setPen(shade);
        const double free = _edges[index + 1] - _edges[index] - metrics.horizontalAdvance(character);
        const double x = std::round((left + _edges[index] + free / 2) * scale) / scale;
        const double rise = character == u':' ? _colonRise : 0;
        const double y = std::round((_baseline - rise + offset) * scale) / scale;
        painter.drawText(QPointF(x, y), character);
    };
    const QRectF wanted = painter.hasClipping() ? painter.clipBoundingRect() : boundingRect();
    const std::vector<DigitRoll::Cell> cells = _roll.cells();
    for (std::size_t index = 0; index < cells.size() && index + 1 < _edges.size(); ++index) {
        const auto& [shown, before] = cells[index];
        // Ink may reach a little into the cells beside its own.
        if (left + _edges[index + 1] < wanted.left() - 2 || left + _edges[index] > wanted.right() + 2)
            continue;
        if (!before) {
            draw(shown, index, 0, 1);
            continue;
        }
        draw(*before, index, position * distance, 1 - leavingFade * position);
        draw(shown, index, (position - 1) * distance, position);
    }
}

} // namespace selvane
