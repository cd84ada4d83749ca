#include "Selvane/App/DateText.h"
#include "Selvane/App/EmptyServices.h"
#include "Selvane/App/EndSoundPlayer.h"
#include "Selvane/App/LocalDataLifecycle.h"
#include "Selvane/App/ReleaseNotes.h"
#include "Selvane/Music/ChosenMusicController.h"
#include "Selvane/Platform/Linux/ActivationToken.h"
#include "Selvane/Platform/Linux/AutostartEntry.h"
#include "Selvane/Platform/Linux/CurrentDesktop.h"
#include "Selvane/Platform/Linux/DesktopAppearance.h"
#include "Selvane/Platform/Linux/FileDefaultsStore.h"
#include "Selvane/Platform/Linux/FreedesktopNotifications.h"
#include "Selvane/Platform/Linux/HeapRoom.h"
#include "Selvane/Platform/Linux/LinuxAttentionSignal.h"
#include "Selvane/Platform/Linux/LinuxProcessActivity.h"
#include "Selvane/Platform/Linux/LinuxScheduler.h"
#include "Selvane/Platform/Linux/LinuxSerialQueue.h"
#include "Selvane/Platform/Linux/LinuxStatusItem.h"
#include "Selvane/Platform/Linux/LoadedPages.h"
#include "Selvane/Platform/Linux/LocalZone.h"
#include "Selvane/Platform/Linux/LogindAwayMonitor.h"
#include "Selvane/Platform/Linux/MprisPlayers.h"
#include "Selvane/Platform/Linux/PulseAudioOutput.h"
#include "Selvane/Platform/Linux/SingleInstance.h"
#include "Selvane/Platform/Linux/StartupNotice.h"
#include "Selvane/Platform/Linux/SwayPlacer.h"
#include "Selvane/Platform/Linux/TerminationSignals.h"
#include "Selvane/Platform/Linux/X11ActivationMonitor.h"
#include "Selvane/Platform/Linux/X11PressMonitor.h"
#include "Selvane/Platform/Linux/X11ScreenSpace.h"
#include "Selvane/Platform/Linux/X11UnmanagedWindows.h"
#include "Selvane/UI/AppDelegate.h"
#include "Selvane/UI/PanelLoader.h"
#include "Selvane/UI/QtProgramWindows.h"
#include "Selvane/UI/TitleGlyphs.h"
#include "SelvaneCore/AppPaths.h"
#include "SelvaneCore/Log.h"
#include "SelvaneCore/PosixFileSystem.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QLocale>

#include <malloc.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace selvane {
namespace {

Date wallClock() {
    return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

/// A place among those that come with the program. Relative to the program, so that an installed tree can be
/// moved and the build tree works as it is.
std::filesystem::path installed(const char* place) {
    return std::filesystem::path(QCoreApplication::applicationDirPath().toStdString()) / ".." / place;
}

// What isn't built yet stands below as something that does nothing, one line each.
AppServices services(SerialQueue& queue, NotificationCenter& notifications, const StoreEnvironment& files,
                     const LocalDataLifecycle::Environment& lifecycle, AudioOutput& audioOutput,
                     Scheduler& scheduler, ExternalPlayers& players) {
    return {
        .makeUpdater = [] { return std::make_unique<EmptyUpdater>(); },
        .makeBackups =
            [&queue, files](auto directory) {
                return std::make_unique<BackupManager>(std::move(directory), files, queue);
            },
        .makeNotifier = [&notifications] { return std::make_unique<Notifier>(&notifications, wallClock); },
        .makeDataLifecycle = [lifecycle] { return std::make_unique<LocalDataLifecycle>(lifecycle); },
        .makeSettings = [](DefaultsStore& defaults) { return std::make_unique<AppSettings>(defaults); },
        .makeMusic =
            [&audioOutput, &scheduler, &players](AppSettings& settings) {
                return std::make_unique<ChosenMusicController>(settings, audioOutput, scheduler, players);
            },
        .makeFocusGuard = [](AppSettings&) { return std::make_unique<EmptyFocusGuard>(); },
        .makeFocusMode = [](AppSettings&) { return std::make_unique<EmptyFocusModeController>(); },
        .makeCalendar = [](AppSettings&) { return std::make_unique<EmptyCalendarWatcher>(); },
        .applyAppearance = [](AppearanceMode) {},
    };
}

/// Chooses how Qt draws frames, before it reads that from the environment. The panel's frames are small,
/// several in a second, and each of these choices spares them wake-ups. Gives the variables of the
/// environment that it has set, which concern nobody else.
std::vector<std::string> preferFramesOfFewWakeUps() {
    constexpr std::array choices{
        // Drawn once what happened is dealt with, not five milliseconds later.
        std::pair{"QT_QPA_UPDATE_IDLE_TIME", "0"},
        // Sent to the X server. Memory shared with it has to be waited for until it has read the last frame.
        std::pair{"QT_XCB_NO_MITSHM", "1"},
    };
    std::vector<std::string> chosen;
    for (const auto& [name, value] : choices) {
        if (!qEnvironmentVariableIsSet(name) && qputenv(name, value))
            chosen.emplace_back(name);
    }
    return chosen;
}

/// About what the panel has on the heap when its first frame is drawn, in bytes.
constexpr std::size_t panelHeap = 4U << 20U;

constexpr auto usage = R"(Usage: selvane [--service | --help | --version]

A focus timer that waits in the status area. Started again while it runs, it opens its panel.

  --service  as the session bus starts it: the message that it is started for opens nothing
  --help     tells this
  --version  tells the version
)";

/// What the program answers without being started, if that is what it was asked for.
std::optional<std::string> answer(std::span<char* const> words) {
    if (words.size() != 2)
        return std::nullopt;
    const std::string_view word = words[1];
    if (word == "--help" || word == "-h")
        return usage;
    if (word == "--version")
        return "Selvane " SELVANE_VERSION "\n";
    return std::nullopt;
}

/// Ends the busy pointer with which an X11 desktop accompanies the start of that name.
void endNamedStart(const std::string& id) {
    // Other desktops name starts too, but some would start an X server only to be told.
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        StartupNotice::complete(id);
}

/// Null where windows choose their own place, and where nobody would move them.
std::unique_ptr<WindowPlacer> windowPlacer() {
    const QByteArray socket = qgetenv("SWAYSOCK");
    if (socket.isEmpty() || !QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return nullptr;
    return std::make_unique<SwayPlacer>(socket.toStdString(), QCoreApplication::applicationPid());
}

int run(QGuiApplication& application, const std::string& startName, SingleInstance::Start start,
        std::vector<std::string> ownVariables) {
    const QDBusConnection sessionBus = QDBusConnection::sessionBus();
    LinuxScheduler scheduler;
    SingleInstance instance(sessionBus, scheduler, start);
    switch (instance.claim()) {
    case SingleInstance::Claim::first:
        break;
    case SingleInstance::Claim::second:
        if (instance.activateFirst()) {
            endNamedStart(startName);
            return EXIT_SUCCESS;
        }
        Log::line("it runs already, but doesn't answer; end that process and start again");
        return EXIT_FAILURE;
    case SingleInstance::Claim::refused:
        Log::line("the session bus refuses the program's name, so nothing keeps a second copy from starting");
        break;
    case SingleInstance::Claim::noBus:
        Log::line("there is no session bus, so nothing keeps a second copy from starting");
        break;
    }

    // Before everything that has something to write at its end.
    const TerminationSignals termination([] { QCoreApplication::quit(); });
    LogindAwayMonitor awayMonitor(scheduler, [] { return QDBusConnection::systemBus(); });
    LinuxProcessActivity processActivity;
    FreedesktopNotifications notifications(sessionBus, scheduler);
    PosixFileSystem fileSystem;
    LocalZone localZone;
    const auto calendar = [&localZone] { return localZone.current(); };
    const StoreEnvironment files{&fileSystem, wallClock, calendar};
    LinuxSerialQueue backupQueue;
    FileDefaultsStore defaults(AppPaths::defaultsFile("com.lorbin.selvane"), files, scheduler);
    // Whether anything was taken over once stood in that file too. Years-old settings must not come back now.
    if (defaults.wasDamaged())
        defaults.set(LocalDataLifecycle::migratedKey, SettingValue{true});
    ReleaseNotes releaseNotes({.version = SELVANE_VERSION, .build = SELVANE_BUILD_NUMBER}, fileSystem,
                              installed(SELVANE_DATA_DIRECTORY "/Changelog.json"));
    const LocalDataLifecycle::Environment lifecycle{
        .defaults = &defaults,
        .fileSystem = &fileSystem,
        .releaseNotes = &releaseNotes,
        .clock = wallClock,
        .calendar = calendar,
        .dateAndTime =
            [calendar](Date date) { return dateAndTime(date, calendar(), QLocale()).toStdString(); },
        .predecessor = {{
            .dataDirectory = AppPaths::dataDirectory().parent_path() / "Vesk",
            .newDataDirectory = AppPaths::dataDirectory(),
            .readDefaults =
                [&fileSystem] {
                    return FileDefaultsStore::read(fileSystem, AppPaths::defaultsFile("com.lorbin.vesk"));
                },
        }},
    };
    DesktopAppearance appearance(sessionBus);
    const TitleGlyphs titles;
    LinuxStatusItem statusItem(sessionBus, scheduler, appearance, titles);
    LinuxAttentionSignal attentionSignal(statusItem, scheduler);
    X11PressMonitor presses;
    X11ActivationMonitor activations;
    QtProgramWindows programWindows;
    AutostartEntry loginItem({
        .fileSystem = &fileSystem,
        .userSettings = AppPaths::settingsDirectory,
        .systemSettings = AppPaths::systemSettingsDirectories,
        .program =
            [] { return std::filesystem::path(QCoreApplication::applicationFilePath().toStdString()); },
        .desktops = currentDesktops,
    });
    PulseAudioOutput audioOutput(installed(SELVANE_PLUGIN_DIRECTORY "/libselvane-audio.so"), scheduler);
    EndSoundPlayer soundPlayer(audioOutput);
    const auto giveBackMemory = [&audioOutput] {
        // The end of the thread that plays sounds gives memory back anyway.
        if (audioOutput.mayBeLoading())
            return;
        malloc_trim(0);
        LoadedPages::giveBack();
    };
    audioOutput.onRest = giveBackMemory;
    MprisPlayers players(
        sessionBus, {
                        .scheduler = &scheduler,
                        .fileSystem = &fileSystem,
                        .chosenPlayer = [&defaults] { return defaults.text("musicPlayer").value_or(""); },
                        .withheld = std::move(ownVariables),
                    });
    const std::unique_ptr<WindowPlacer> placer = windowPlacer();
    const X11ScreenSpace screenSpace;
    const std::unique_ptr<UnmanagedWindows> unmanagedWindows = X11UnmanagedWindows::make();

    AppDelegate delegate({
        .scheduler = &scheduler,
        .awayMonitor = &awayMonitor,
        .processActivity = &processActivity,
        .soundPlayer = &soundPlayer,
        .attentionSignal = &attentionSignal,
        .loginItem = &loginItem,
        .defaults = &defaults,
        .fileSystem = &fileSystem,
        .clock = wallClock,
        .calendar = calendar,
        .file = AppPaths::file,
        .services = services(backupQueue, notifications, files, lifecycle, audioOutput, scheduler, players),
    });
    delegate.onQuit = [] { QCoreApplication::quit(); };
    delegate.applicationDidFinishLaunching({
        .statusItem = &statusItem,
        .appearance = &appearance,
        .presses = &presses,
        .activations = &activations,
        .programWindows = &programWindows,
        .makePanel =
            [](const PanelContext& context) {
                HeapRoom::make(panelHeap);
                return PanelLoader::load(context);
            },
        .prepareToMakePanel = PanelLoader::prepare,
        .giveBackMemory = giveBackMemory,
        .placer = placer.get(),
        .space = &screenSpace,
        .unmanagedWindows = unmanagedWindows.get(),
    });
    instance.onActivate = [&delegate] { delegate.applicationShouldHandleReopen(); };
    instance.onNamedStart = endNamedStart;
    // Without a window that opens, nobody else says that this start is over.
    endNamedStart(startName);

    return application.exec();
}

} // namespace
} // namespace selvane

int main(int argc, char* argv[]) {
    if (const auto answer = selvane::answer(std::span(argv, static_cast<std::size_t>(argc)))) {
        std::fputs(answer->c_str(), stdout);
        return EXIT_SUCCESS;
    }
    selvane::Log::toJournal();
    std::vector<std::string> ownVariables = selvane::preferFramesOfFewWakeUps();
    selvane::ActivationToken::prepare();
    // Qt takes it out of the environment.
    const char* const startName = std::getenv("DESKTOP_STARTUP_ID");
    const std::string name = startName ? startName : "";
    // Takes the words that are Qt's out of the count.
    QGuiApplication application(argc, argv);
    const bool isService = argc == 2 && std::string_view(argv[1]) == "--service";
    if (argc > 1 && !isService) {
        std::fprintf(stderr, "selvane: \"%s\" is not known.\n%s", argv[1], selvane::usage);
        return 2;
    }
    QGuiApplication::setApplicationName(QStringLiteral("Selvane"));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.lorbin.selvane"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return selvane::run(application, name,
                        isService ? selvane::SingleInstance::Start::byBus
                                  : selvane::SingleInstance::Start::byUser,
                        std::move(ownVariables));
}
