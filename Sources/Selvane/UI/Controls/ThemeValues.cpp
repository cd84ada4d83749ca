#include "Selvane/UI/Controls/ThemeValues.h"

#include "Selvane/UI/Controls/Ink.h"

namespace selvane {

ThemeValues::ThemeValues(QObject* parent) : QObject(parent), _palette(Palette::of({})) {}

void ThemeValues::setLook(Look* look) {
    if (look == _look)
        return;
    if (_look)
        _look->disconnect(this);
    _look = look;
    if (_look) {
        connect(_look, &Look::changed, this, &ThemeValues::lookChanged);
        connect(_look, &QObject::destroyed, this, &ThemeValues::lookChanged);
    }
    lookChanged();
}

QString ThemeValues::unavailable() const {
    return QStringLiteral("Not available now");
}

bool ThemeValues::dark() const {
    return _look && _look->isDark();
}

bool ThemeValues::highContrast() const {
    return _look && _look->isHighContrast();
}

bool ThemeValues::reducesMotion() const {
    return _look && _look->reducesMotion();
}

Look::Glass ThemeValues::glass() const {
    return _look ? _look->glass() : Look::Flat;
}

QColor ThemeValues::blended(const QColor& from, const QColor& to, double part) {
    return selvane::blended(from, to, part);
}

double ThemeValues::lifted(double opacity, double lift) {
    return selvane::lifted(opacity, lift);
}

void ThemeValues::lookChanged() {
    _palette = Palette::of({.isDark = dark(), .isHighContrast = highContrast()});
    Q_EMIT changed();
}

} // namespace selvane
