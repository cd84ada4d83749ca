#pragma once

#include "Support/Journal.h"
#include "Support/PrivateBus.h"

#include <QtCore/QTimer>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusVariant>
#include <QtDBus/QDBusVirtualObject>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace selvane::test {

/// A playlist, as MPRIS hands it over.
struct FakePlaylist {
    QDBusObjectPath id;
    QString name;
    QString icon;
};
inline QDBusArgument& operator<<(QDBusArgument& argument, const FakePlaylist& playlist) {
    argument.beginStructure();
    argument << playlist.id << playlist.name << playlist.icon;
    argument.endStructure();
    return argument;
}
inline const QDBusArgument& operator>>(const QDBusArgument& argument, FakePlaylist& playlist) {
    argument.beginStructure();
    argument >> playlist.id >> playlist.name >> playlist.icon;
    argument.endStructure();
    return argument;
}

/// The playlist that is active, if any is.
struct FakeMaybePlaylist {
    bool isThere = false;
    FakePlaylist playlist;
};
inline QDBusArgument& operator<<(QDBusArgument& argument, const FakeMaybePlaylist& maybe) {
    argument.beginStructure();
    argument << maybe.isThere << maybe.playlist;
    argument.endStructure();
    return argument;
}
inline const QDBusArgument& operator>>(const QDBusArgument& argument, FakeMaybePlaylist& maybe) {
    argument.beginStructure();
    argument >> maybe.isThere >> maybe.playlist;
    argument.endStructure();
    return argument;
}

} // namespace selvane::test

Q_DECLARE_METATYPE(selvane::test::FakePlaylist)
Q_DECLARE_METATYPE(selvane::test::FakeMaybePlaylist)

namespace selvane::test {

/// A music player that others drive, with the habits that a test gives it. What it is told is noted, as
/// "Play", "OpenUri spotify:track:x", "ActivatePlaylist Focus".
class FakeMprisPlayer final : public QDBusVirtualObject {
public:
    /// `name` stands behind "org.mpris.MediaPlayer2.". It isn't on the bus yet.
    FakeMprisPlayer(PrivateBus& bus, std::string name) : _bus(bus.connect()), _name(std::move(name)) {
        qDBusRegisterMetaType<FakePlaylist>();
        qDBusRegisterMetaType<QList<FakePlaylist>>();
        qDBusRegisterMetaType<FakeMaybePlaylist>();
    }
    ~FakeMprisPlayer() override { quit(); }

    enum class Habit { asToldByMpris, staysPaused, startsLate, stopsLate, neverAnswers, toggles };

    Habit onLink = Habit::asToldByMpris;
    Habit onPlaylist = Habit::asToldByMpris;
    Habit onPlay = Habit::asToldByMpris;
    /// How often it refuses a Play before it does that.
    int refusals = 0;
    /// How many orders it forgets before it does any of that.
    int forgets = 0;
    bool answers = true;
    bool tellsChanges = true;
    bool hasPlaylists = true;
    bool canRaise = true;
    /// Whether it heeds a Pause.
    bool pauses = true;
    /// Below the name there is nothing that could be asked for.
    bool isReady = true;
    /// How often it was asked or told anything.
    int messages = 0;
    bool isPlaying = false;
    std::vector<std::string> playlists{"Work", "Focus", "focus", "Caf\xc3\xa9"};
    /// The place of the active one in `playlists`; none below zero.
    int active = -1;
    Journal journal;

    void run() {
        _bus.registerVirtualObject(QStringLiteral("/org/mpris/MediaPlayer2"), this);
        _bus.registerService(busName());
    }
    void quit() {
        _bus.unregisterService(busName());
        _bus.unregisterObject(QStringLiteral("/org/mpris/MediaPlayer2"));
    }

    void setPlaying(bool plays) {
        if (std::exchange(isPlaying, plays) == plays || !tellsChanges)
            return;
        auto change = QDBusMessage::createSignal(QStringLiteral("/org/mpris/MediaPlayer2"),
                                                 QStringLiteral("org.freedesktop.DBus.Properties"),
                                                 QStringLiteral("PropertiesChanged"));
        change << QStringLiteral("org.mpris.MediaPlayer2.Player")
               << QVariantMap{{QStringLiteral("PlaybackStatus"), status()}} << QStringList();
        _bus.send(change);
    }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        ++messages;
        if (!answers) {
            message.setDelayedReply(true);
            return true;
        }
        if (!isReady)
            return false;
        const QString method = message.member();
        const QVariantList& arguments = message.arguments();
        if (method == QLatin1String("Get"))
            return get(message, connection);
        std::string entry = method.toStdString();
        QVariantList result;
        if (method == QLatin1String("GetPlaylists")) {
            if (!hasPlaylists)
                return false;
            QList<FakePlaylist> list;
            for (std::size_t index = 0; index < playlists.size(); ++index)
                list.append(playlist(index));
            connection.send(message.createReply(QVariant::fromValue(list)));
            return true;
        }
        if (method == QLatin1String("ActivatePlaylist")) {
            const QString id = arguments.value(0).value<QDBusObjectPath>().path();
            active = id.mid(id.lastIndexOf(QLatin1Char('/')) + 1).toInt();
            entry += " " + playlists.at(static_cast<std::size_t>(active));
            obey(onPlaylist);
        } else if (method == QLatin1String("OpenUri")) {
            entry += " " + arguments.value(0).toString().toStdString();
            obey(onLink);
        } else if (method == QLatin1String("Play")) {
            if (refusals-- > 0) {
                journal.note(entry);
                connection.send(message.createErrorReply(QDBusError::Failed, QStringLiteral("not yet")));
                return true;
            }
            obey(onPlay);
        } else if (method == QLatin1String("Pause")) {
            setPlaying(isPlaying && !pauses);
        }
        journal.note(entry);
        connection.send(message.createReply());
        return true;
    }

private:
    [[nodiscard]] QString busName() const {
        return QStringLiteral("org.mpris.MediaPlayer2.") + QString::fromStdString(_name);
    }
    [[nodiscard]] QString status() const {
        return isPlaying ? QStringLiteral("Playing") : QStringLiteral("Paused");
    }
    [[nodiscard]] FakePlaylist playlist(std::size_t index) const {
        return {QDBusObjectPath(QStringLiteral("/list/%1").arg(index)),
                QString::fromStdString(playlists.at(index)), QString()};
    }

    void obey(Habit habit) {
        if (forgets-- > 0)
            return;
        switch (habit) {
        case Habit::asToldByMpris:
            return setPlaying(true);
        case Habit::staysPaused:
            return setPlaying(false);
        case Habit::startsLate:
            return QTimer::singleShot(std::chrono::milliseconds{300}, this, [this] { setPlaying(true); });
        case Habit::stopsLate:
            return QTimer::singleShot(std::chrono::milliseconds{300}, this, [this] { setPlaying(false); });
        case Habit::toggles:
            return setPlaying(!isPlaying);
        case Habit::neverAnswers:
            answers = false;
        }
    }

    bool get(const QDBusMessage& message, const QDBusConnection& connection) {
        const QString property = message.arguments().value(1).toString();
        QVariant value;
        if (property == QLatin1String("PlaybackStatus"))
            value = status();
        else if (property == QLatin1String("CanRaise"))
            value = canRaise;
        else if (property == QLatin1String("ActivePlaylist") && hasPlaylists)
            value = QVariant::fromValue(
                active < 0 ? FakeMaybePlaylist{false, {QDBusObjectPath(QStringLiteral("/")), {}, {}}}
                           : FakeMaybePlaylist{true, playlist(static_cast<std::size_t>(active))});
        else
            return false;
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
        return true;
    }

    QDBusConnection _bus;
    std::string _name;
};

} // namespace selvane::test
