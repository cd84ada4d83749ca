#pragma once

#include "Selvane/App/AppEnvironment.h"

namespace selvane {

/// Services that do nothing and know nothing. A model that is given them keeps time and keeps its records.

class EmptyUpdater final : public Updater {
public:
    [[nodiscard]] bool updateAvailable() const override { return false; }
};

class EmptyNotifier final : public Notifier {
public:
    void schedule(Phase, Date) override {}
    void scheduleMeetingHeadsUp(const std::string&, Date, Seconds) override {}
    void notifyDataNotice(const std::string&, const std::string&) override {}
    void removePending(std::span<const std::string_view>) override {}
    void requestAuthorization() override {}
};

class EmptyMusicController final : public MusicController {
public:
    void play() override {}
    void pause() override {}
    void syncSettings() override {}
};

class EmptyFocusGuard final : public FocusGuard {
public:
    void focusStarted() override {}
    void focusPaused() override {}
    std::optional<std::vector<AppUsage>> finish() override { return std::nullopt; }
    void settingsChanged() override {}
    [[nodiscard]] std::optional<std::string> driftAppName() const override { return std::nullopt; }
};

class EmptyFocusModeController final : public FocusModeController {
public:
    void set(bool) override {}
};

class EmptyCalendarWatcher final : public CalendarWatcher {
public:
    void refresh() override {}
    [[nodiscard]] std::optional<CalendarEvent> nextEvent() const override { return std::nullopt; }
};

class EmptySoundPlayer final : public SoundPlayer {
public:
    void play(std::string_view) override {}
};

class EmptyAttentionSignal final : public AttentionSignal {
public:
    void perform() override {}
};

} // namespace selvane
