#pragma once

#include "Selvane/Platform/Linux/XSettingValues.h"

#include <functional>
#include <memory>
#include <string>

namespace selvane {

/// What the settings manager of an X11 screen tells its programs, read and followed: the manager may come, go
/// and change its mind for as long as the program runs. Has an X connection of its own, whose questions wait
/// for the server's answers; there are a few at the start and one at each change.
///
/// Main thread. A lost connection means that there are no settings any more.
class XSettings {
public:
    /// `displayName` as in the variable DISPLAY; empty for the value of that variable.
    explicit XSettings(const std::string& displayName = {});
    XSettings(const XSettings&) = delete;
    XSettings& operator=(const XSettings&) = delete;
    ~XSettings();

    /// Those of the session's screen; nothing if the QGuiApplication isn't one of an X11 session.
    [[nodiscard]] static std::unique_ptr<XSettings> ofSession();

    /// Empty while no manager runs, or while what it tells can't be read.
    [[nodiscard]] const XSettingValues& values() const;

    /// The values have changed.
    std::function<void()> onChange;

private:
    class Connection;
    std::unique_ptr<Connection> _connection;
};

} // namespace selvane
