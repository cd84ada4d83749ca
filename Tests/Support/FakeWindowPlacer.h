#pragma once

#include "Selvane/Platform/WindowPlacer.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace selvane::test {

/// A desktop that places windows when a test lets them appear.
class FakeWindowPlacer final : public WindowPlacer {
public:
    std::unique_ptr<Placement> placeNext(const std::string& title, Choose choose) override {
        ++asked;
        awaited = title;
        return std::make_unique<FakePlacement>(*this, std::move(choose));
    }

    /// The window that is waited for appears.
    void appear() {
        if (_placement)
            _placement->appear();
    }
    [[nodiscard]] bool isPlacing() const { return _placement != nullptr; }

    Screen screen{{0, 0, 1280, 800}, {0, 0, 1280, 772}};
    int asked = 0;
    std::string awaited;
    /// Where the window was sent last.
    std::optional<ScreenPoint> corner;

private:
    class FakePlacement final : public Placement {
    public:
        FakePlacement(FakeWindowPlacer& placer, Choose choose) : _placer(placer), _choose(std::move(choose)) {
            _placer._placement = this;
        }
        FakePlacement(const FakePlacement&) = delete;
        FakePlacement& operator=(const FakePlacement&) = delete;
        ~FakePlacement() override {
            if (_placer._placement == this)
                _placer._placement = nullptr;
        }

        void appear() {
            _hasWindow = true;
            repeat();
        }
        [[nodiscard]] bool hasWindow() const override { return _hasWindow; }
        void repeat() override {
            if (_hasWindow)
                _placer.corner = _choose(_placer.screen);
        }

    private:
        FakeWindowPlacer& _placer;
        Choose _choose;
        bool _hasWindow = false;
    };

    FakePlacement* _placement = nullptr;
};

} // namespace selvane::test
