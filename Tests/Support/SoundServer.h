#pragma once

#include "Support/EndWithTest.h"
#include "Support/EnvironmentVariable.h"
#include "Support/PrivateBus.h"
#include "Support/TemporaryFolder.h"

#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QStringList>

#include <sys/types.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace selvane::test {

enum class SoundSystem { pulseAudio, pipeWire };

/// A sound server of the test's own with one device, which nobody hears and which can be recorded. What the
/// test itself plays goes there, or nowhere as long as the server doesn't run. Ends with the object, which
/// outlives everything that plays: what libpulse reads in the environment changes with it.
///
///     SoundServer server(SoundSystem::pulseAudio);
///     ASSERT_TRUE(server.start());
///     Recording recording;
class SoundServer {
public:
    explicit SoundServer(SoundSystem system) : _system(system) {
        std::filesystem::permissions(_folder.path(), std::filesystem::perms::owner_all);
    }
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;
    ~SoundServer() { kill(); }

    /// Where programs look for the server.
    [[nodiscard]] std::filesystem::path socket() const { return _folder.path() / "pulse/native"; }

    /// Starts it and waits until it answers. False if it doesn't.
    [[nodiscard]] bool start() {
        // A session manager that is busy at its start may never connect anything with anything.
        for (int attempt = 1; attempt <= 3; ++attempt) {
            if (startOnce())
                return true;
            kill();
        }
        return false;
    }

    /// Ends it without a farewell.
    void kill() {
        for (auto process = _processes.rbegin(); process != _processes.rend(); ++process) {
            (*process)->kill();
            (*process)->waitForFinished();
        }
        _processes.clear();
        // By these the next start is seen.
        std::error_code ignored;
        for (const auto& file : {socket(), pipeWireSocket()})
            std::filesystem::remove(file, ignored);
    }

    /// Its processes do nothing until they are let go on, but they are there.
    void freeze() const { signal(SIGSTOP); }
    void goOn() const { signal(SIGCONT); }

    /// Has `pactl` tell the server something. False if that is refused.
    [[nodiscard]] static bool control(const std::vector<const char*>& words) {
        QStringList arguments;
        for (const char* const word : words)
            arguments.append(QString::fromLatin1(word));
        arguments.removeAll(QString());
        QProcess pactl;
        endWithTest(pactl);
        pactl.start(QStringLiteral("pactl"), arguments);
        return pactl.waitForFinished(20'000) && pactl.exitStatus() == QProcess::NormalExit &&
               pactl.exitCode() == 0;
    }

    /// Takes the one device away, and gives the server such a one again.
    [[nodiscard]] bool removeDevice() { return control({"unload-module", "module-null-sink"}); }
    [[nodiscard]] bool addDevice() {
        // One that takes back what it played already would hand its recorders something else.
        const bool takesBack = _system == SoundSystem::pulseAudio;
        return control({"load-module", "module-null-sink", "sink_name=hall", "rate=48000", "format=float32le",
                        "channels=2", takesBack ? "norewinds=1" : ""}) &&
               answers();
    }

private:
    void signal(int number) const {
        for (const auto& process : _processes)
            ::kill(static_cast<pid_t>(process->processId()), number);
    }

    [[nodiscard]] bool startOnce() {
        switch (_system) {
        case SoundSystem::pulseAudio:
            // A device that takes back what it played already would hand its recorders something else.
            run("pulseaudio",
                {"-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "-L",
                 "module-null-sink sink_name=hall rate=48000 format=float32le channels=2 norewinds=1", "-L",
                 "module-native-protocol-unix auth-anonymous=1"});
            return waitFor(socket()) && answers();
        case SoundSystem::pipeWire:
            run("pipewire", {});
            if (!waitFor(pipeWireSocket()))
                return false;
            run("wireplumber", {});
            run("pipewire-pulse", {});
            return waitFor(socket()) && addDevice();
        }
        return false;
    }

    [[nodiscard]] std::filesystem::path pipeWireSocket() const { return _folder.path() / "pipewire-0"; }

    void run(const char* program, const std::vector<const char*>& words) {
        QStringList arguments;
        for (const char* const word : words)
            arguments.append(QString::fromLatin1(word));
        auto process = std::make_unique<QProcess>();
        endWithTest(*process);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), _bus.address());
        process->setProcessEnvironment(environment);
        process->setStandardErrorFile(QProcess::nullDevice());
        process->setStandardOutputFile(QProcess::nullDevice());
        process->start(QString::fromLatin1(program), arguments);
        process->waitForStarted();
        _processes.push_back(std::move(process));
    }

    static bool waitFor(const std::filesystem::path& file) {
        return waitUntil([&file] { return std::filesystem::exists(file); });
    }

    /// Whether the device is there and connected with whoever asks for it.
    static bool answers() {
        QProcess parec;
        endWithTest(parec);
        const auto hears = [&parec] {
            // One that came too early is gone.
            if (parec.state() == QProcess::NotRunning)
                parec.start(QStringLiteral("parec"), {QStringLiteral("--device=hall.monitor")});
            return parec.bytesAvailable() > 0;
        };
        const bool records = waitUntil(hears, std::chrono::seconds{10});
        parec.kill();
        parec.waitForFinished();
        return records;
    }

    SoundSystem _system;
    TemporaryFolder _folder;
    EnvironmentVariable _place{"XDG_RUNTIME_DIR", _folder.path().string()};
    EnvironmentVariable _home{"HOME", _folder.path().string()};
    EnvironmentVariable _other{"PULSE_SERVER", std::nullopt};
    PrivateBus _bus;
    std::vector<std::unique_ptr<QProcess>> _processes;
};

} // namespace selvane::test
