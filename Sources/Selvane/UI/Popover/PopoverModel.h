#pragma once

#include "Selvane/UI/Controls/Look.h"
#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace selvane {

class AppModel;
class Appearance;

/// What the popover shows of the model, ready for display, and the commands of its controls. Main thread.
class PopoverModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its popover.")

    Q_PROPERTY(QString phaseTitle READ phaseTitle NOTIFY timerChanged FINAL)
    Q_PROPERTY(QString sessionStatus READ sessionStatus NOTIFY timerChanged FINAL)
    /// The countdown's text: "24:13".
    Q_PROPERTY(QString time READ time NOTIFY timerChanged FINAL)
    /// The same for a screen reader.
    Q_PROPERTY(QString timeDescription READ timeDescription NOTIFY timerChanged FINAL)
    Q_PROPERTY(bool isPaused READ isPaused NOTIFY timerChanged FINAL)
    Q_PROPERTY(QString primaryLabel READ primaryLabel NOTIFY timerChanged FINAL)
    Q_PROPERTY(QString resetLabel READ resetLabel CONSTANT FINAL)
    Q_PROPERTY(QString resetTooltip READ resetTooltip CONSTANT FINAL)
    Q_PROPERTY(bool canReset READ canReset NOTIFY timerChanged FINAL)
    Q_PROPERTY(QString skipLabel READ skipLabel CONSTANT FINAL)
    Q_PROPERTY(QString skipTooltip READ skipTooltip NOTIFY timerChanged FINAL)
    Q_PROPERTY(QString quitLabel READ quitLabel CONSTANT FINAL)
    Q_PROPERTY(QString quitTooltip READ quitTooltip CONSTANT FINAL)
    Q_PROPERTY(QString quitDescription READ quitDescription CONSTANT FINAL)
    Q_PROPERTY(QString name READ name CONSTANT FINAL)
    /// How far the day has come; while something can't be saved, what and why.
    Q_PROPERTY(QString footer READ footer NOTIFY footerChanged FINAL)
    Q_PROPERTY(bool hasProblem READ hasProblem NOTIFY footerChanged FINAL)
    Q_PROPERTY(selvane::Look* look READ look CONSTANT FINAL)
    Q_PROPERTY(bool isComposited READ isComposited NOTIFY appearanceChanged FINAL)

public:
    /// Both arguments outlive the popover's model.
    PopoverModel(AppModel& model, Appearance& appearance, QObject* parent = nullptr);

    /// Takes over what may have changed unheard since the popover was last seen: the day, the zone, the
    /// desktop.
    void prepareToShow();

    [[nodiscard]] QString phaseTitle() const;
    [[nodiscard]] QString sessionStatus() const;
    [[nodiscard]] QString time() const;
    [[nodiscard]] QString timeDescription() const;
    [[nodiscard]] bool isPaused() const;
    [[nodiscard]] QString primaryLabel() const;
    [[nodiscard]] QString resetLabel() const;
    [[nodiscard]] QString resetTooltip() const;
    [[nodiscard]] bool canReset() const;
    [[nodiscard]] QString skipLabel() const;
    [[nodiscard]] QString skipTooltip() const;
    [[nodiscard]] QString quitLabel() const;
    [[nodiscard]] QString quitTooltip() const;
    [[nodiscard]] QString quitDescription() const;
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString footer() const;
    [[nodiscard]] bool hasProblem() const;
    [[nodiscard]] Look* look() { return &_look; }
    [[nodiscard]] bool isComposited() const;

    Q_INVOKABLE void toggle();
    Q_INVOKABLE void reset();
    Q_INVOKABLE void skip();
    /// The user wants the popover gone.
    Q_INVOKABLE void cancel();
    /// The user wants the program gone.
    Q_INVOKABLE void quit();

Q_SIGNALS:
    void timerChanged();
    void footerChanged();
    void appearanceChanged();
    /// The popover comes before the user, perhaps again.
    void aboutToShow();
    void cancelled();
    void quitRequested();

private:
    void refresh();

    AppModel& _model;
    Appearance& _appearance;
    Look _look;
    /// Kept, since counting it reads the whole history.
    QString _today;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
