#include "Selvane/Platform/Linux/SingleInstance.h"

#include "Selvane/Platform/Linux/ActivationToken.h"

#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusAbstractAdaptor>
#include <QtDBus/QDBusMessage>

#include <utility>

namespace selvane {

namespace {

const auto instanceName = QLatin1String("com.lorbin.selvane");
const auto instancePath = QLatin1String("/com/lorbin/selvane");
const auto applicationInterface = QLatin1String("org.freedesktop.Application");
const auto busName = QLatin1String("org.freedesktop.DBus");
const auto busPath = QLatin1String("/org/freedesktop/DBus");

/// The user's leave to take the focus, in the platform data of a call.
const auto tokenKey = QLatin1String("activation-token");

/// The counterpart of X11 in the platform data. It can't be given to Qt, which takes it from the environment
/// when it connects to the server, and only then.
const auto startKey = QLatin1String("desktop-startup-id");

/// How long after the main loop's first turn the message may come for which the bus made this process. The
/// bus hands it over as soon as it has given the name.
constexpr Seconds startPatience{3};

} // namespace

class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    explicit ApplicationAdaptor(SingleInstance* instance)
        : QDBusAbstractAdaptor(instance), _instance(*instance) {}

public Q_SLOTS:
    void Activate(const QVariantMap& platformData) {
        const std::string token = platformData.value(tokenKey).toString().toStdString();
        if (!token.empty())
            ActivationToken::leave(token);
        if (!_instance.isStart() && _instance.onActivate)
            _instance.onActivate();
        ActivationToken::drop();
        const std::string start = platformData.value(startKey).toString().toStdString();
        if (!start.empty() && _instance.onNamedStart)
            _instance.onNamedStart(start);
    }
    // The program opens no documents and has no actions of its own: to the user both are a start.
    void Open(const QStringList&, const QVariantMap& platformData) { Activate(platformData); }
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap& platformData) {
        Activate(platformData);
    }

private:
    SingleInstance& _instance;
};

SingleInstance::SingleInstance(const QDBusConnection& sessionBus, Scheduler& scheduler, Start start)
    : _bus(sessionBus), _scheduler(scheduler), _startIsToBeHeard(start == Start::byBus) {
    new ApplicationAdaptor(this);
    // However long it takes until the loop runs.
    if (_startIsToBeHeard)
        _scheduler.post(_lifetime.guard([this] { _startEnds = _scheduler.now() + startPatience; }));
}

SingleInstance::~SingleInstance() {
    if (!_isFirst)
        return;
    _bus.unregisterObject(instancePath);
    auto release = QDBusMessage::createMethodCall(busName, busPath, busName, QStringLiteral("ReleaseName"));
    release << QString(instanceName);
    _bus.send(release);
}

SingleInstance::Claim SingleInstance::claim() {
    if (_isFirst)
        return Claim::first;
    if (!_bus.isConnected())
        return Claim::noBus;
    if (!_bus.registerObject(instancePath, this, QDBusConnection::ExportAdaptors))
        return Claim::refused;
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    constexpr uint alreadyOwner = 4;
    auto request = QDBusMessage::createMethodCall(busName, busPath, busName, QStringLiteral("RequestName"));
    request << QString(instanceName) << doNotQueue;
    const QDBusMessage reply = _bus.call(request);
    const bool isAnswered = reply.type() == QDBusMessage::ReplyMessage;
    const uint result = reply.arguments().value(0).toUInt();
    _isFirst = isAnswered && (result == primaryOwner || result == alreadyOwner);
    if (_isFirst)
        return Claim::first;
    _bus.unregisterObject(instancePath);
    return isAnswered ? Claim::second : Claim::refused;
}

bool SingleInstance::activateFirst(std::chrono::milliseconds patience) {
    QVariantMap platformData;
    if (qEnvironmentVariableIsSet(ActivationToken::variable))
        platformData.insert(tokenKey, qEnvironmentVariable(ActivationToken::variable));
    auto activate = QDBusMessage::createMethodCall(instanceName, instancePath, applicationInterface,
                                                   QStringLiteral("Activate"));
    activate << platformData;
    // The name may be installed for activation by the bus; only a process that runs already is asked.
    activate.setAutoStartService(false);
    const QDBusMessage reply = _bus.call(activate, QDBus::Block, static_cast<int>(patience.count()));
    return reply.type() == QDBusMessage::ReplyMessage;
}

bool SingleInstance::isStart() {
    return std::exchange(_startIsToBeHeard, false) && (!_startEnds || _scheduler.now() < *_startEnds);
}

} // namespace selvane

#include "SingleInstance.moc"
