#include "Selvane/UI/Controls/Symbol.h"

#include "Selvane/UI/Controls/Spring.h"
#include "Selvane/UI/Symbols/SymbolImages.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QSignalBlocker>
#include <QVariantAnimation>

#include <cmath>
#include <utility>

namespace selvane {

namespace {

/// The pictures of all items that there are; the last item takes them with it.
std::shared_ptr<SymbolImages> sharedImages() {
    static std::weak_ptr<SymbolImages> images;
    auto shared = images.lock();
    if (!shared) {
        shared = std::make_shared<SymbolImages>();
        images = shared;
    }
    return shared;
}

SymbolWeight symbolWeight(Symbol::Weight weight) {
    switch (weight) {
    case Symbol::Light:
        return SymbolWeight::light;
    case Symbol::Regular:
        return SymbolWeight::regular;
    case Symbol::Medium:
        return SymbolWeight::medium;
    case Symbol::Semibold:
        return SymbolWeight::semibold;
    case Symbol::Bold:
        return SymbolWeight::bold;
    }
    __builtin_unreachable();
}

double wantedSide(double size) {
    return std::round(SymbolImages::squarePerPoint * size);
}

} // namespace

Symbol::Symbol(QQuickItem* parent) : QQuickItem(parent), _images(sharedImages()) {
    setFlag(ItemHasContents);
    setImplicitSize(wantedSide(_size), wantedSide(_size));
}

Symbol::~Symbol() = default;

void Symbol::setName(const QString& name) {
    if (_name == name)
        return;
    _name = name;
    if (_replaces && isComponentComplete())
        scaleTo(0, 0.15, 1);
    else
        show();
    Q_EMIT nameChanged();
}

void Symbol::setReplacing(bool replaces) {
    if (std::exchange(_replaces, replaces) == replaces)
        return;
    if (_motion && !replaces) {
        _motion->stop();
        setScale(1);
        show();
    }
    Q_EMIT replacesChanged();
}

void Symbol::show() {
    if (std::exchange(_shown, _name) == _name)
        return;
    update();
    Q_EMIT shownChanged();
}

void Symbol::scaleTo(double scale, double response, double dampingFraction) {
    if (!_motion) {
        _motion = new QVariantAnimation(this);
        connect(_motion, &QVariantAnimation::valueChanged, this,
                [this](const QVariant& value) { setScale(value.toDouble()); });
        connect(_motion, &QVariantAnimation::finished, this, [this] {
            if (_motion->endValue().toDouble() > 0) {
                update();
                return;
            }
            show();
            scaleTo(1, 0.2, 0.85);
        });
    }
    Spring spring;
    spring.setResponse(response);
    spring.setDampingFraction(dampingFraction);
    {
        // What is set tells at once where the motion would be by now, one that has ended too.
        const QSignalBlocker quiet(_motion);
        _motion->stop();
        _motion->setStartValue(this->scale());
        _motion->setEndValue(scale);
        _motion->setDuration(spring.duration());
        _motion->setEasingCurve(spring.curve());
    }
    _motion->start();
}

void Symbol::setSize(double size) {
    if (std::exchange(_size, size) == size)
        return;
    setImplicitSize(wantedSide(size), wantedSide(size));
    update();
    Q_EMIT sizeChanged();
}

void Symbol::setWeight(Weight weight) {
    if (std::exchange(_weight, weight) == weight)
        return;
    update();
    Q_EMIT weightChanged();
}

void Symbol::setColor(const QColor& color) {
    if (std::exchange(_color, color) == color)
        return;
    update();
    Q_EMIT colorChanged();
}

void Symbol::setLevel(int level) {
    if (std::exchange(_level, level) == level)
        return;
    update();
    Q_EMIT levelChanged();
}

int Symbol::parts() const {
    return _images->parts(_shown);
}

QSGNode* Symbol::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    const double ratio = window()->effectiveDevicePixelRatio();
    const QImage image = _images->tinted(_shown, {_size, symbolWeight(_weight), ratio, _level}, _color);
    if (image.isNull()) {
        delete node;
        return nullptr;
    }

    auto* picture = static_cast<QSGImageNode*>(node);
    if (picture == nullptr) {
        picture = window()->createImageNode();
        picture->setOwnsTexture(true);
    }
    picture->setTexture(window()->createTextureFromImage(image, QQuickWindow::TextureHasAlphaChannel));
    picture->setFiltering(smooth() ? QSGTexture::Linear : QSGTexture::Nearest);

    const QSizeF side = image.deviceIndependentSize();
    const QPointF wanted((width() - side.width()) / 2, (height() - side.height()) / 2);
    if (scale() != 1) {
        picture->setRect(QRectF(wanted, side));
        return picture;
    }
    // The middle of the item may lie between pixels; the picture may not, or it would be blurred.
    const QPointF inWindow = mapToScene(wanted);
    const auto onPixel = [ratio](double value) { return std::round(value * ratio) / ratio; };
    const QPointF corner = mapFromScene(QPointF(onPixel(inWindow.x()), onPixel(inWindow.y())));
    picture->setRect(QRectF(corner, side));
    return picture;
}

void Symbol::geometryChange(const QRectF& geometry, const QRectF& before) {
    QQuickItem::geometryChange(geometry, before);
    update();
}

void Symbol::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged)
        update();
}

} // namespace selvane
