#pragma once

#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace selvane {

class AppSettings;
class Appearance;

/// How the program's windows look now: what the desktop asks for, and what the user set. Main thread.
class Look final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one look of its windows.")

    /// Light text on a dark ground: as the user set it, else as the desktop asks.
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed FINAL)
    Q_PROPERTY(bool isHighContrast READ isHighContrast NOTIFY changed FINAL)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY changed FINAL)
    Q_PROPERTY(Glass glass READ glass NOTIFY changed FINAL)

public:
    /// What capsules are made of.
    enum Glass {
        /// Nothing shines through.
        Flat,
        Clear,
        Regular,
        /// Regular with a white tint.
        Tinted,
    };
    Q_ENUM(Glass)

    /// Both arguments outlive the look.
    Look(AppSettings& settings, Appearance& appearance, QObject* parent = nullptr);

    [[nodiscard]] bool isDark() const { return _state.isDark; }
    [[nodiscard]] bool isHighContrast() const { return _state.isHighContrast; }
    [[nodiscard]] bool reducesMotion() const { return _state.reducesMotion; }
    [[nodiscard]] Glass glass() const { return _state.glass; }

Q_SIGNALS:
    /// At least one of the properties has another value.
    void changed();

private:
    struct State {
        bool isDark = false;
        bool isHighContrast = false;
        bool reducesMotion = false;
        Glass glass = Flat;

        bool operator==(const State&) const = default;
    };

    [[nodiscard]] State read() const;
    void refresh();

    AppSettings& _settings;
    Appearance& _appearance;
    State _state;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
