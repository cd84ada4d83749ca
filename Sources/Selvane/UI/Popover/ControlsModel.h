#pragma once

#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace selvane {

class AppModel;

/// The three buttons that drive the timer. Main thread.
class ControlsModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its popover.")

    Q_PROPERTY(QString resetLabel READ resetLabel CONSTANT FINAL)
    Q_PROPERTY(QString resetTooltip READ resetTooltip CONSTANT FINAL)
    Q_PROPERTY(bool canReset READ canReset NOTIFY changed FINAL)
    Q_PROPERTY(QString primaryLabel READ primaryLabel NOTIFY changed FINAL)
    Q_PROPERTY(QString skipLabel READ skipLabel CONSTANT FINAL)
    Q_PROPERTY(QString skipTooltip READ skipTooltip NOTIFY changed FINAL)

public:
    /// `model` outlives the controls.
    explicit ControlsModel(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] QString resetLabel() const;
    [[nodiscard]] QString resetTooltip() const;
    [[nodiscard]] bool canReset() const { return _canReset; }
    [[nodiscard]] QString primaryLabel() const { return _primaryLabel; }
    [[nodiscard]] QString skipLabel() const;
    [[nodiscard]] QString skipTooltip() const { return _skipTooltip; }

    Q_INVOKABLE void reset();
    /// Starts, pauses or resumes, whichever the timer's state calls for.
    Q_INVOKABLE void toggle();
    Q_INVOKABLE void skip();

Q_SIGNALS:
    void changed();
    /// The timer gets one of the commands next.
    void aboutToCommand();

private:
    void refresh();

    AppModel& _model;
    bool _canReset = false;
    QString _primaryLabel;
    QString _skipTooltip;
    Subscription _timer;
};

} // namespace selvane
