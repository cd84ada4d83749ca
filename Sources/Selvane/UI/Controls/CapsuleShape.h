#pragma once

#include "Selvane/UI/Controls/Look.h"
#include "Selvane/UI/Controls/RoundedShape.h"

namespace selvane {

struct CapsuleColors;

/// A capsule in the glass of a level, or flat: the one way to put a capsule behind something. It takes the
/// same room at every level. Main thread.
class CapsuleShape : public selvane::RoundedShape {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(selvane::Look::Glass level READ level WRITE setLevel NOTIFY shapeChanged FINAL)
    Q_PROPERTY(bool dark READ isDark WRITE setDark NOTIFY shapeChanged FINAL)
    Q_PROPERTY(bool highContrast READ isHighContrast WRITE setHighContrast NOTIFY shapeChanged FINAL)
    /// True if the capsule answers to the pointer; some levels do not.
    Q_PROPERTY(bool interactive READ isInteractive WRITE setInteractive NOTIFY shapeChanged FINAL)
    Q_PROPERTY(bool hovered READ isHovered WRITE setHovered NOTIFY shapeChanged FINAL)
    Q_PROPERTY(bool pressed READ isPressed WRITE setPressed NOTIFY shapeChanged FINAL)

public:
    using RoundedShape::RoundedShape;

    [[nodiscard]] Look::Glass level() const { return _level; }
    void setLevel(Look::Glass level) { set(_level, level); }
    [[nodiscard]] bool isDark() const { return _dark; }
    void setDark(bool dark) { set(_dark, dark); }
    [[nodiscard]] bool isHighContrast() const { return _highContrast; }
    void setHighContrast(bool highContrast) { set(_highContrast, highContrast); }
    [[nodiscard]] bool isInteractive() const { return _interactive; }
    void setInteractive(bool interactive) { set(_interactive, interactive); }
    [[nodiscard]] bool isHovered() const { return _hovered; }
    void setHovered(bool hovered) { set(_hovered, hovered); }
    [[nodiscard]] bool isPressed() const { return _pressed; }
    void setPressed(bool pressed) { set(_pressed, pressed); }

protected:
    [[nodiscard]] QBrush fill(const QRectF& shape) const override;
    [[nodiscard]] QBrush edge(const QRectF& shape) const override;

private:
    [[nodiscard]] CapsuleColors colors() const;

    Look::Glass _level = Look::Flat;
    bool _dark = false;
    bool _highContrast = false;
    bool _interactive = false;
    bool _hovered = false;
    bool _pressed = false;
};

} // namespace selvane
