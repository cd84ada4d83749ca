#include "Selvane/UI/Timer/KeyboardLoan.h"

#include <QQuickWindow>

#include <utility>

namespace selvane {

void KeyboardLoan::take(QQuickItem* item) {
    _lender = item && item->window() ? item->window()->activeFocusItem() : nullptr;
    _wasSeen = _lender && _lender->property("visualFocus").toBool();
}

void KeyboardLoan::giveBack() {
    const QPointer<QQuickItem> lender = std::exchange(_lender, nullptr);
    if (lender && lender->isVisible() && lender->isEnabled())
        lender->forceActiveFocus(_wasSeen ? Qt::TabFocusReason : Qt::OtherFocusReason);
}

} // namespace selvane
