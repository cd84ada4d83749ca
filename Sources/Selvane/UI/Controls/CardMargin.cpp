#include "Selvane/UI/Controls/CardMargin.h"

#include <QVariant>
#include <QWindow>

namespace selvane::CardMargin {

namespace {

constexpr char property[] = "selvaneCardMargin";

} // namespace

void set(QWindow& window, int margin) {
    window.setProperty(property, margin);
}

int of(const QWindow& window) {
    return window.property(property).toInt();
}

} // namespace selvane::CardMargin
