#pragma once

#include "Selvane/UI/Progress/HeatmapData.h"
#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <vector>

namespace selvane {

class AppModel;
class Scheduler;

/// What the progress tab shows: the streak, today's goal, and the focus of the last days. Counted when it is
/// asked for, and anew only when the history, the settings or the day have changed; while nobody looks, not
/// at all. Main thread.
class ProgressModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its progress.")

    /// The user sees the tab, so that changes are told at once.
    Q_PROPERTY(bool isShown READ isShown WRITE setShown NOTIFY shownChanged FINAL)

    Q_PROPERTY(QString streak READ streak NOTIFY changed FINAL)
    Q_PROPERTY(QString streakLabel READ streakLabel CONSTANT FINAL)
    Q_PROPERTY(QString streakDescription READ streakDescription NOTIFY changed FINAL)
    Q_PROPERTY(QString milestone READ milestone NOTIFY changed FINAL)
    Q_PROPERTY(int todayMinutes READ todayMinutes NOTIFY changed FINAL)
    Q_PROPERTY(int dailyGoalMinutes READ dailyGoalMinutes NOTIFY changed FINAL)
    Q_PROPERTY(QString best READ best NOTIFY changed FINAL)
    Q_PROPERTY(QString freezes READ freezes NOTIFY changed FINAL)
    Q_PROPERTY(QString freezesTooltip READ freezesTooltip CONSTANT FINAL)
    /// Empty if nothing is followed.
    Q_PROPERTY(QString score READ score NOTIFY changed FINAL)
    Q_PROPERTY(QString scoreTooltip READ scoreTooltip CONSTANT FINAL)
    Q_PROPERTY(selvane::HeatmapData heatmap READ heatmap NOTIFY changed FINAL)

public:
    /// The model and the scheduler outlive this one.
    ProgressModel(AppModel& model, Scheduler& scheduler, QObject* parent = nullptr);
    ~ProgressModel() override;

    [[nodiscard]] bool isShown() const { return _isShown; }
    void setShown(bool shown);
    /// Takes over what may have changed unheard: the day, the zone.
    void refresh();

    [[nodiscard]] QString streak() const;
    [[nodiscard]] QString streakLabel() const;
    [[nodiscard]] QString streakDescription() const;
    [[nodiscard]] QString milestone() const;
    [[nodiscard]] int todayMinutes() const;
    [[nodiscard]] int dailyGoalMinutes() const;
    [[nodiscard]] QString best() const;
    [[nodiscard]] QString freezes() const;
    [[nodiscard]] QString freezesTooltip() const;
    [[nodiscard]] QString score() const;
    [[nodiscard]] QString scoreTooltip() const;
    [[nodiscard]] HeatmapData heatmap() const;

Q_SIGNALS:
    void shownChanged();
    void changed();

private:
    struct Figures;

    /// Brings the figures up to date. True if they were not.
    bool bringUpToDate() const;
    [[nodiscard]] const Figures& figures() const;
    void historyChanged();
    void noticeDay();
    void awaitNextDay();

    AppModel& _model;
    Scheduler& _scheduler;
    mutable std::unique_ptr<Figures> _figures;
    /// The history has changed since the figures were counted.
    mutable bool _isHistoryNew = true;
    bool _isShown = false;
    /// Only while the tab is seen.
    Subscription _nextDay;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
