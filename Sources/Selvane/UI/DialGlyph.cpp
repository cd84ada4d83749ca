#include "Selvane/UI/DialGlyph.h"

#include "Selvane/Platform/InkColor.h"

#include <QImage>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <memory_resource>
#include <utility>
#include <vector>

namespace selvane {

namespace {

constexpr double steps = 120.0;
/// The dial is designed on a square of this side; other sizes scale it.
constexpr double designSide = 16.0;
constexpr double designLineWidth = 2.6;
constexpr double dotSide = 4.5;
constexpr double trackOpacity = 0.25;
constexpr double pausedOpacity = 0.4;

QPen pen(QColor ink, double opacity, double width, Qt::PenCapStyle cap) {
    ink.setAlphaF(static_cast<float>(opacity));
    return QPen(ink, width, Qt::SolidLine, cap);
}

} // namespace

/// The memory of the drawings: few large pieces, which go whole. Among everything else the drawings would
/// leave holes behind.
class DialGlyph::Drawings final {
public:
    std::pmr::monotonic_buffer_resource memory{256 * 1024};
};

class DialGlyph::Image final : public TemplateImage {
public:
    Image(const State& state, std::shared_ptr<Drawings> drawings)
        : _state(state), _drawings(std::move(drawings)), _masks(&_drawings->memory) {}

    [[nodiscard]] bool resembles(const TemplateImage& other) const override {
        const auto* const dial = dynamic_cast<const Image*>(&other);
        if (dial == nullptr || dial->_state.style != _state.style || dial->_state.drifting != _state.drifting)
            return false;
        // The quotients of whole numbers of steps are not exact.
        return std::abs(dial->_state.remaining - _state.remaining) * steps < 1.5;
    }

    [[nodiscard]] Pixmap pixmap(int side, Ink ink) const override {
        if (side <= 0)
            return {};
        Pixmap result{side, {}};
        const Mask& coverage = mask(side);
        result.argb.reserve(coverage.size());
        for (const std::uint8_t alpha : coverage)
            result.argb.push_back(static_cast<std::uint32_t>(alpha) << 24 | inkColor(ink));
        return result;
    }

    /// It is drawn again when it is asked for.
    void forgetDrawings() const { _masks.clear(); }

private:
    /// Coverage of the drawing at one size, a byte a pixel; the ink is laid over it on demand.
    using Mask = std::pmr::vector<std::uint8_t>;

    const Mask& mask(int side) const {
        Mask& coverage = _masks[side];
        if (coverage.empty()) {
            QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            // Replacing is the same as laying over where no stroke shines through another, and it is done in
            // this thread, while strokes that are laid over wake others.
            if (_state.style != DialGlyph::Style::paused)
                painter.setCompositionMode(QPainter::CompositionMode_Source);
            DialMark::paint(painter, QRectF(0, 0, side, side), _state, designLineWidth * side / designSide,
                            Qt::black);
            painter.end();
            coverage.reserve(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
            for (int y = 0; y < side; ++y) {
                const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
                for (int x = 0; x < side; ++x)
                    coverage.push_back(static_cast<std::uint8_t>(qAlpha(row[x])));
            }
        }
        return coverage;
    }

    State _state;
    std::shared_ptr<Drawings> _drawings;
    mutable std::pmr::map<int, Mask> _masks;
};

DialGlyph::DialGlyph() : _drawings(std::make_shared<Drawings>()) {}

DialGlyph::~DialGlyph() = default;

std::size_t DialGlyph::Hash::operator()(const State& state) const noexcept {
    const auto style = static_cast<std::size_t>(state.style);
    return std::hash<double>{}(state.remaining) * 31 + style * 2 + (state.drifting ? 1 : 0);
}

std::shared_ptr<const TemplateImage> DialGlyph::image(const State& state) {
    const State quantised{std::round(state.remaining * steps) / steps, state.style, state.drifting};
    auto& image = _images[quantised];
    if (!image)
        image = std::make_shared<Image>(quantised, _drawings);
    return image;
}

void DialGlyph::forgetUnused() {
    std::erase_if(_images, [](const auto& item) { return item.second.use_count() == 1; });
    for (const auto& [state, image] : _images)
        image->forgetDrawings();
    // Every drawing is that of one of the images.
    _drawings->memory.release();
}

namespace DialMark {

void paint(QPainter& painter, const QRectF& bounds, const DialGlyph::State& state, double lineWidth,
           QColor ink) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);

    const double scale = bounds.width() / designSide;
    const double padding = lineWidth * 0.5 + 0.5 * scale;
    const QRectF circle = bounds.adjusted(padding, padding, -padding, -padding);

    if (state.style != DialGlyph::Style::idle) {
        painter.setPen(pen(ink, trackOpacity, lineWidth, Qt::FlatCap));
        painter.drawEllipse(circle);
    }

    const double share = std::clamp(state.remaining, 0.0, 1.0);
    if (share > 0) {
        const double opacity = state.style == DialGlyph::Style::paused ? pausedOpacity : 1.0;
        painter.setPen(pen(ink, opacity, lineWidth, Qt::RoundCap));
        if (share >= 1)
            painter.drawEllipse(circle);
        else // Sixteenths of a degree, anticlockwise from three o'clock.
            painter.drawArc(circle, 90 * 16, -static_cast<int>(std::lround(share * 360 * 16)));
    }

    if (state.drifting) {
        const double side = dotSide * scale;
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        painter.drawEllipse(QRectF(bounds.center() - QPointF(side / 2, side / 2), QSizeF(side, side)));
    }
    painter.restore();
}

} // namespace DialMark

} // namespace selvane
