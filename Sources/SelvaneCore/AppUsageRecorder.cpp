#include "SelvaneCore/AppUsageRecorder.h"

#include "SelvaneCore/AppUsageOrder.h"

#include <algorithm>
#include <utility>

namespace selvane {

namespace {

/// Anything shorter was a flicker.
constexpr Seconds shortestUsage{1.0};

} // namespace

void AppUsageRecorder::begin(const std::optional<std::string>& bundleID, const std::string& name, Date at) {
    // 1. The time of an open segment is dropped, not counted.
    _totals.clear();
    _segmentStart.reset();
    // 2. The front, if the caller knows it.
    if (bundleID)
        _frontmost = App{*bundleID, name};
    // 3. Record if anything is in front.
    resume(at);
}

void AppUsageRecorder::activate(const std::string& bundleID, const std::string& name, Date at) {
    // 1. and 2. Closing ends the recording for a moment.
    const bool wasRecording = isRecording();
    close(at);
    // 3. The new front.
    _frontmost = App{bundleID, name};
    // 4. Recording goes on, but never starts here.
    if (wasRecording)
        _segmentStart = at;
}

void AppUsageRecorder::suspend(Date at) {
    close(at);
}

void AppUsageRecorder::resume(Date at) {
    if (!_segmentStart && _frontmost)
        _segmentStart = at;
}

std::vector<AppUsage> AppUsageRecorder::finish(Date at) {
    // 1. The last segment counts too.
    close(at);
    // 2. Without flickers.
    std::erase_if(_totals, [](const AppUsage& usage) { return usage.seconds < shortestUsage; });
    // 3. In the order of every list of usage.
    std::ranges::stable_sort(_totals, ranksBefore);
    // 4. Nothing is left for the next session.
    return std::exchange(_totals, {});
}

void AppUsageRecorder::close(Date at) {
    // 1. Nothing is open while idle.
    if (!_segmentStart)
        return;
    // 2. The clock may have been set back.
    if (_frontmost)
        total(*_frontmost).seconds += std::max(elapsed(*_segmentStart, at), Seconds{0.0});
    // 3. Idle.
    _segmentStart.reset();
}

AppUsage& AppUsageRecorder::total(const App& app) {
    const auto found = std::ranges::find(_totals, app.bundleID, &AppUsage::bundleID);
    if (found != _totals.end())
        return *found;
    return _totals.emplace_back(AppUsage{app.bundleID, app.name, Seconds{0.0}});
}

} // namespace selvane
