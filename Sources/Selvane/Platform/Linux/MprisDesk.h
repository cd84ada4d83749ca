#pragma once

#include "Selvane/Platform/Linux/ApplicationLauncher.h"
#include "Selvane/Platform/Linux/DefaultApplications.h"
#include "Selvane/Platform/Linux/InstalledApplications.h"
#include "Selvane/Platform/Scheduler.h"

#include <QtDBus/QDBusConnection>

#include <functional>
#include <string>

namespace selvane {

/// How long players are waited for.
struct MprisPatience {
    /// For an answer.
    Seconds answer{3};
    /// For music, once a player was told to make some.
    Seconds music{2};
    /// For a player that was started.
    Seconds start{15};
    /// For music that nobody wants any more, from a player that was told to pause while it was about to play.
    Seconds unwanted{5};
};

/// What all that is done with the players of a desktop needs. Outlives it.
struct MprisDesk {
    QDBusConnection bus;
    Scheduler& scheduler;
    InstalledApplications applications;
    DefaultApplications defaults;
    /// The name of the desktop entry of the music player that the user chose; empty if none.
    std::function<std::string()> chosenPlayer;
    ApplicationLauncher& launcher;
    MprisPatience patience;
};

} // namespace selvane
