#pragma once

#include "Selvane/Platform/Linux/Mpris.h"
#include "Selvane/Platform/Linux/MprisDesk.h"
#include "SelvaneCore/Subscription.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtDBus/QDBusMessage>

#include <functional>
#include <string>

namespace selvane {

/// Something that takes several messages to get done with a player. It hears nothing any more once it is over
/// or destroyed; what was sent till then stays sent. What fails it tells in the log, in one line at most.
/// Main thread; never waits.
class PlayerCommand : public QObject {
    Q_OBJECT
public:
    explicit PlayerCommand(const MprisDesk& desk);
    ~PlayerCommand() override;

    virtual void begin() = 0;

    /// Ends it without a word.
    void abandon();

    /// Called once when there is nothing left to do, maybe in `begin`.
    std::function<void()> onEnd;

protected:
    /// What it is if no answer comes in time.
    enum class Silence { isTheEnd, isAnAnswer };

    /// Sends a message to the player. If it doesn't answer, or isn't there any more, the command is over;
    /// otherwise `answered` is called, also if the player refused.
    void ask(const QDBusMessage& message, std::function<void(const QDBusMessage&)> answered,
             Silence silence = Silence::isTheEnd);
    /// Ends it since the player of that name is silent.
    void failSilent(const std::string& busName);

    /// Calls `onName` with each name, but for the bus's own ones, that gets an owner from now on.
    void watchNames();
    virtual void onName(const std::string& busName);

    /// Calls `onChange` when a player, maybe another than this command's, says that something changed.
    void watchChanges();
    virtual void onChange();

    /// Runs `work` unless the command is over by then. One at a time.
    void after(Seconds delay, std::function<void()> work);
    /// Forgets that work.
    void stopWaiting();
    [[nodiscard]] Seconds now() const;

    void end();
    /// The same with a line in the log.
    void fail(const std::string& line);
    [[nodiscard]] bool isOver() const { return _isOver; }

    [[nodiscard]] const MprisDesk& desk() const { return _desk; }

private Q_SLOTS:
    void nameOwnerChanged(const QString& name, const QString& before, const QString& owner);
    void propertiesChanged();

private:
    void ignoreSignals();

    const MprisDesk& _desk;
    Subscription _timer;
    bool _watchesNames = false;
    bool _watchesChanges = false;
    bool _isOver = false;
};

} // namespace selvane
