#pragma once

#include "Selvane/App/AppSettings.h"
#include "Selvane/App/BackupManager.h"
#include "Selvane/App/CalendarWatcher.h"
#include "Selvane/App/DataLifecycle.h"
#include "Selvane/App/FocusGuard.h"
#include "Selvane/App/FocusModeController.h"
#include "Selvane/App/MusicController.h"
#include "Selvane/App/Notifier.h"
#include "Selvane/App/Updater.h"
#include "Selvane/Platform/AttentionSignal.h"
#include "Selvane/Platform/AwayMonitor.h"
#include "Selvane/Platform/LoginItem.h"
#include "Selvane/Platform/ProcessActivity.h"
#include "Selvane/Platform/Scheduler.h"
#include "Selvane/Platform/SoundPlayer.h"
#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/DefaultsStore.h"
#include "SelvaneCore/FileSystem.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace selvane {

/// How the model gets its services. Each function is called once, during the model's construction, in the
/// order of the fields.
struct AppServices {
    std::function<std::unique_ptr<Updater>()> makeUpdater;
    std::function<std::unique_ptr<BackupManager>(std::filesystem::path directory)> makeBackups;
    std::function<std::unique_ptr<Notifier>()> makeNotifier;
    std::function<std::unique_ptr<DataLifecycle>()> makeDataLifecycle;
    std::function<std::unique_ptr<AppSettings>(DefaultsStore&)> makeSettings;
    std::function<std::unique_ptr<MusicController>(AppSettings&)> makeMusic;
    std::function<std::unique_ptr<FocusGuard>(AppSettings&)> makeFocusGuard;
    std::function<std::unique_ptr<FocusModeController>(AppSettings&)> makeFocusMode;
    std::function<std::unique_ptr<CalendarWatcher>(AppSettings&)> makeCalendar;
    /// Dresses the whole application in a light or dark appearance, or in the desktop's own.
    std::function<void(AppearanceMode)> applyAppearance;
};

/// What the model needs of the world. What is pointed to outlives the model.
struct AppEnvironment {
    Scheduler* scheduler;
    AwayMonitor* awayMonitor;
    ProcessActivity* processActivity;
    SoundPlayer* soundPlayer;
    AttentionSignal* attentionSignal;
    LoginItem* loginItem;
    DefaultsStore* defaults;
    FileSystem* fileSystem;
    /// The wall clock.
    std::function<Date()> clock;
    /// The calendar in the zone in force now.
    std::function<Calendar()> calendar;
    /// The file of that name in the data folder.
    std::function<std::filesystem::path(std::string_view name)> file;
    AppServices services;
};

} // namespace selvane
