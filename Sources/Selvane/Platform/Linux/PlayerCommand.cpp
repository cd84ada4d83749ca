#include "Selvane/Platform/Linux/PlayerCommand.h"

#include "Selvane/Platform/Linux/DBusCall.h"
#include "SelvaneCore/Log.h"

#include <chrono>
#include <utility>

namespace selvane {

namespace {

const auto busPath = QLatin1String("/org/freedesktop/DBus");
const auto busInterface = QLatin1String("org.freedesktop.DBus");
const auto ownerSignal = QLatin1String("NameOwnerChanged");
const auto playerPath = QLatin1String(Mpris::path);
const auto propertiesInterface = QLatin1String("org.freedesktop.DBus.Properties");
const auto changeSignal = QLatin1String("PropertiesChanged");

} // namespace

PlayerCommand::PlayerCommand(const MprisDesk& desk) : _desk(desk) {}

PlayerCommand::~PlayerCommand() {
    ignoreSignals();
}

void PlayerCommand::ask(const QDBusMessage& message, std::function<void(const QDBusMessage&)> answered,
                        Silence silence) {
    // Qt answers nothing then.
    if (!_desk.bus.isConnected())
        return end();
    callAsync(
        _desk.bus, message, this,
        [this, name = message.service().toStdString(), answered = std::move(answered),
         silence](const QDBusMessage& reply) {
            if (_isOver)
                return;
            switch (Mpris::outcome(reply)) {
            case Mpris::Outcome::answered:
            case Mpris::Outcome::refused:
                return answered(reply);
            case Mpris::Outcome::silent:
                return silence == Silence::isAnAnswer ? answered(reply) : failSilent(name);
            case Mpris::Outcome::gone:
                return end();
            }
        },
        std::chrono::ceil<std::chrono::milliseconds>(_desk.patience.answer));
}

void PlayerCommand::watchNames() {
    // From any sender, as below: naming one would make Qt wait for the bus's answer who that is.
    QDBusConnection bus = _desk.bus;
    _watchesNames = bus.connect(QString(), busPath, busInterface, ownerSignal, this,
                                SLOT(nameOwnerChanged(QString, QString, QString)));
}

void PlayerCommand::onName(const std::string&) {}

void PlayerCommand::watchChanges() {
    if (_watchesChanges)
        return;
    QDBusConnection bus = _desk.bus;
    _watchesChanges = bus.connect(QString(), playerPath, propertiesInterface, changeSignal, this,
                                  SLOT(propertiesChanged()));
}

void PlayerCommand::onChange() {}

void PlayerCommand::ignoreSignals() {
    QDBusConnection bus = _desk.bus;
    if (std::exchange(_watchesNames, false))
        bus.disconnect(QString(), busPath, busInterface, ownerSignal, this,
                       SLOT(nameOwnerChanged(QString, QString, QString)));
    if (std::exchange(_watchesChanges, false))
        bus.disconnect(QString(), playerPath, propertiesInterface, changeSignal, this,
                       SLOT(propertiesChanged()));
}

void PlayerCommand::after(Seconds delay, std::function<void()> work) {
    _timer = _desk.scheduler.after(delay, std::move(work));
}

void PlayerCommand::stopWaiting() {
    _timer.end();
}

Seconds PlayerCommand::now() const {
    return _desk.scheduler.now();
}

void PlayerCommand::abandon() {
    onEnd = {};
    end();
}

void PlayerCommand::end() {
    if (std::exchange(_isOver, true))
        return;
    _timer.end();
    ignoreSignals();
    // It replaces itself by nothing when it drops this command.
    if (const auto ended = std::exchange(onEnd, {}))
        ended();
}

void PlayerCommand::fail(const std::string& line) {
    if (_isOver)
        return;
    Log::line(line);
    end();
}

void PlayerCommand::failSilent(const std::string& busName) {
    fail(busName + " doesn't answer");
}

void PlayerCommand::nameOwnerChanged(const QString& name, const QString&, const QString& owner) {
    if (!_isOver && !owner.isEmpty() && !name.startsWith(QLatin1Char(':')))
        onName(name.toStdString());
}

void PlayerCommand::propertiesChanged() {
    if (!_isOver)
        onChange();
}

} // namespace selvane
