#include "Selvane/UI/Controls/Digits.h"

#include <QFontMetricsF>

#include <algorithm>

namespace selvane {

double widestDigit(const QFontMetricsF& metrics) {
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

} // namespace selvane
