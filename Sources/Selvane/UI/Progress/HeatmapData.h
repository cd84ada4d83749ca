#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace selvane {

struct HeatmapDays;

/// The days of a heatmap on their way through QML: shared, and never changed.
class HeatmapData {
    Q_GADGET
    QML_VALUE_TYPE(heatmapData)

public:
    /// No days at all, not even today.
    HeatmapData() = default;
    explicit HeatmapData(HeatmapDays days);

    /// Null without days.
    [[nodiscard]] const HeatmapDays* days() const { return _days.get(); }

    /// Whether both are of the same making.
    friend bool operator==(const HeatmapData&, const HeatmapData&) = default;

private:
    std::shared_ptr<const HeatmapDays> _days;
};

} // namespace selvane
