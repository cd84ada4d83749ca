#pragma once

#include "Selvane/UI/WindowCoordinator.h"
#include "Support/Journal.h"

namespace selvane::test {

/// A main window that only notes what it is asked for.
class RecordingWindows final : public WindowCoordinator {
public:
    explicit RecordingWindows(Journal& journal) : _journal(journal) {}

    void showSettings() override { _journal.note("windows.settings"); }
    void bringForward() override { _journal.note("windows.forward"); }

private:
    Journal& _journal;
};

} // namespace selvane::test
