#include "Selvane/Platform/Linux/Mpris.h"

#include "Selvane/Platform/Linux/KnownPlayers.h"
#include "SelvaneCore/Text.h"

#include <QtCore/QStringList>
#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusVariant>

#include <algorithm>

namespace selvane::Mpris {

namespace {

/// More playlists than anybody has.
constexpr uint all = 10'000;

QDBusMessage message(const std::string& name, const char* interface, const char* method,
                     const QVariantList& arguments) {
    auto result = QDBusMessage::createMethodCall(QString::fromStdString(name), QString::fromLatin1(path),
                                                 QString::fromLatin1(interface), QString::fromLatin1(method));
    result.setArguments(arguments);
    result.setAutoStartService(false);
    return result;
}

/// The value of a property that was asked for.
QVariant value(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {};
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

} // namespace

QDBusMessage call(const std::string& name, const char* interface, const char* method,
                  const QVariantList& arguments) {
    return message(name, interface, method, arguments);
}

QDBusMessage get(const std::string& name, const char* interface, const char* property) {
    return message(name, "org.freedesktop.DBus.Properties", "Get",
                   {QString::fromLatin1(interface), QString::fromLatin1(property)});
}

QDBusMessage listNames() {
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListNames"));
}

std::vector<std::string> players(const QDBusMessage& reply) {
    std::vector<std::string> result;
    for (const QString& name : reply.arguments().value(0).toStringList()) {
        if (name.startsWith(
                QLatin1String(KnownPlayers::prefix.data(), static_cast<int>(KnownPlayers::prefix.size()))))
            result.push_back(name.toStdString());
    }
    return result;
}

bool isPlaying(const QDBusMessage& reply) {
    return value(reply).toString() == QLatin1String("Playing");
}

bool isTrue(const QDBusMessage& reply) {
    return value(reply).toBool();
}

QDBusMessage getPlaylists(const std::string& name) {
    return message(name, playlists, "GetPlaylists", {uint{0}, all, QStringLiteral("Alphabetical"), false});
}

std::optional<QString> playlist(const QDBusMessage& reply, std::string_view called) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a(oss)"))
        return std::nullopt;
    const std::string wanted = Text::lowercased(called);
    std::optional<QString> exact;
    std::optional<QString> similar;
    // Read to its end, or Qt keeps it.
    const auto list = reply.arguments().value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QDBusObjectPath id;
        QString name;
        QString icon;
        list.beginStructure();
        list >> id >> name >> icon;
        list.endStructure();
        const std::string text = name.toStdString();
        if (!exact && text == called)
            exact = id.path();
        if (!similar && Text::lowercased(text) == wanted)
            similar = id.path();
    }
    list.endArray();
    return exact ? exact : similar;
}

QString activePlaylist(const QDBusMessage& reply) {
    const QVariant property = value(reply);
    if (property.userType() != qMetaTypeId<QDBusArgument>())
        return {};
    const auto argument = property.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(b(oss))"))
        return {};
    bool isActive = false;
    QDBusObjectPath id;
    QString name;
    QString icon;
    argument.beginStructure();
    argument >> isActive;
    argument.beginStructure();
    argument >> id >> name >> icon;
    argument.endStructure();
    argument.endStructure();
    return isActive ? id.path() : QString();
}

Outcome outcome(const QDBusMessage& reply) {
    if (reply.type() == QDBusMessage::ReplyMessage)
        return Outcome::answered;
    const QString error = reply.errorName();
    const auto is = [&error](const char* name) {
        return error == QLatin1String("org.freedesktop.DBus.Error.") + QLatin1String(name);
    };
    if (is("NoReply") || is("Timeout") || is("TimedOut"))
        return Outcome::silent;
    if (is("ServiceUnknown") || is("NameHasNoOwner") || is("Disconnected") || reply.errorName().isEmpty())
        return Outcome::gone;
    return Outcome::refused;
}

} // namespace selvane::Mpris
