#pragma once

#include "SelvaneCore/DayKey.h"
#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace selvane {

class AppModel;
class Scheduler;
class WindowCoordinator;

/// The streak, and the menu of what the popover itself has no room for. Main thread.
class HeaderModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its popover.")

    Q_PROPERTY(QString streak READ streak NOTIFY streakChanged FINAL)
    /// A streak that is still at risk today looks faint.
    Q_PROPERTY(bool isTodayMet READ isTodayMet NOTIFY streakChanged FINAL)
    Q_PROPERTY(QString streakTooltip READ streakTooltip NOTIFY streakChanged FINAL)
    Q_PROPERTY(QString moreLabel READ moreLabel CONSTANT FINAL)
    Q_PROPERTY(bool isUpdateAvailable READ isUpdateAvailable NOTIFY updaterChanged FINAL)

    // The menu's entries, in its order.
    Q_PROPERTY(QString statisticsLabel READ statisticsLabel CONSTANT FINAL)
    Q_PROPERTY(QString statisticsShortcut READ statisticsShortcut CONSTANT FINAL)
    Q_PROPERTY(QString settingsLabel READ settingsLabel CONSTANT FINAL)
    Q_PROPERTY(QString settingsShortcut READ settingsShortcut CONSTANT FINAL)
    Q_PROPERTY(QString whatsNewLabel READ whatsNewLabel CONSTANT FINAL)
    Q_PROPERTY(QString updateLabel READ updateLabel NOTIFY updaterChanged FINAL)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY updaterChanged FINAL)
    Q_PROPERTY(QString quitLabel READ quitLabel CONSTANT FINAL)
    Q_PROPERTY(QString quitShortcut READ quitShortcut CONSTANT FINAL)

public:
    /// What is given outlives the header; `windows` may be null.
    HeaderModel(AppModel& model, Scheduler& scheduler, WindowCoordinator* windows, QObject* parent = nullptr);

    /// Counts the streak anew, and keeps up with the days until `didHide`.
    void willShow();
    void didHide();

    [[nodiscard]] QString streak() const;
    [[nodiscard]] bool isTodayMet() const { return _isTodayMet; }
    [[nodiscard]] QString streakTooltip() const;
    [[nodiscard]] QString moreLabel() const;
    [[nodiscard]] bool isUpdateAvailable() const;
    [[nodiscard]] QString statisticsLabel() const;
    [[nodiscard]] QString statisticsShortcut() const;
    [[nodiscard]] QString settingsLabel() const;
    [[nodiscard]] QString settingsShortcut() const;
    [[nodiscard]] QString whatsNewLabel() const;
    [[nodiscard]] QString updateLabel() const;
    [[nodiscard]] bool canCheckForUpdates() const;
    [[nodiscard]] QString quitLabel() const;
    [[nodiscard]] QString quitShortcut() const;

    Q_INVOKABLE void openStatistics();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void openWhatsNew();
    Q_INVOKABLE void checkForUpdates();
    /// The user wants the program gone.
    Q_INVOKABLE void quit();

Q_SIGNALS:
    void streakChanged();
    void updaterChanged();
    void quitRequested();

private:
    void refresh();
    void noticeDay();

    AppModel& _model;
    Scheduler& _scheduler;
    WindowCoordinator* _windows;
    bool _isShown = false;
    /// The day for which the streak was counted.
    DayKey _day;
    int _streak = 0;
    bool _isTodayMet = false;
    /// Only while the header is seen.
    Subscription _nextDay;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
