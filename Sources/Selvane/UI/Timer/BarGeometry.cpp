#include "Selvane/UI/Timer/BarGeometry.h"

#include <algorithm>

namespace selvane::BarGeometry {

double fillWidth(double progress, double headPresence, double trackWidth) {
    return std::max(progress * trackWidth, trackHeight * headPresence);
}

double headOffset(double fillWidth) {
    // Its middle stands where the end cap of the fill is round.
    return std::max(fillWidth - (trackHeight + headSize) / 2, 0.0);
}

} // namespace selvane::BarGeometry
