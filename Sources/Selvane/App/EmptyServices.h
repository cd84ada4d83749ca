#pragma once

#include "Selvane/App/AppEnvironment.h"

namespace selvane {

/// Services that do nothing and know nothing. A model that is given them keeps time and keeps its records.

class EmptyUpdater final : public Updater {
public:
    [[nodiscard]] bool updateAvailable() const override { return false; }
    [[nodiscard]] bool canCheckForUpdates() const override { return false; }
    void checkForUpdates() override {}
};

class EmptyMusicController final : public MusicController {
public:
    void play() override {}
    void pause() override {}
    void syncSettings() override {}
    void openPlayer() override {}
    [[nodiscard]] bool isPlaying() const override { return false; }
};

class EmptyFocusGuard final : public FocusGuard {
public:
    void focusStarted() override {}
    void focusPaused() override {}
    std::optional<std::vector<AppUsage>> finish() override { return std::nullopt; }
    void settingsChanged() override {}
    [[nodiscard]] std::optional<std::string> driftAppName() const override { return std::nullopt; }
    [[nodiscard]] const std::optional<std::vector<AppUsage>>& lastUsage() const override {
        return _lastUsage;
    }

private:
    std::optional<std::vector<AppUsage>> _lastUsage;
};

class EmptyFocusModeController final : public FocusModeController {
public:
    void set(bool) override {}
    [[nodiscard]] std::optional<std::string> problem() const override { return std::nullopt; }
    [[nodiscard]] const std::optional<std::string>& lastError() const override { return _lastError; }

private:
    std::optional<std::string> _lastError;
};

class EmptyCalendarWatcher final : public CalendarWatcher {
public:
    void refresh() override {}
    [[nodiscard]] std::optional<CalendarEvent> nextEvent() const override { return std::nullopt; }
};

} // namespace selvane
