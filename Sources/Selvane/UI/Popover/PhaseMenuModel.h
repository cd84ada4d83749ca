#pragma once

#include "Selvane/UI/Popover/MenuChoices.h"
#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace selvane {

class AppModel;

/// The menu that shows and selects the phase. Main thread.
class PhaseMenuModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its popover.")

    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString tooltip READ tooltip NOTIFY changed FINAL)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY changed FINAL)
    Q_PROPERTY(QString pickerLabel READ pickerLabel CONSTANT FINAL)
    Q_PROPERTY(selvane::MenuChoices* phases READ phases CONSTANT FINAL)
    /// A phase under way can't be changed.
    Q_PROPERTY(bool canSelect READ canSelect NOTIFY changed FINAL)
    /// Why nothing can be selected: one line, or none.
    Q_PROPERTY(QStringList hints READ hints NOTIFY changed FINAL)

public:
    /// `model` outlives the menu.
    explicit PhaseMenuModel(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString tooltip() const;
    [[nodiscard]] QString accessibleName() const;
    [[nodiscard]] QString pickerLabel() const;
    [[nodiscard]] MenuChoices* phases() { return &_phases; }
    [[nodiscard]] bool canSelect() const { return _canSelect; }
    [[nodiscard]] QStringList hints() const;

    /// Selects the phase of that row of `phases`. Nothing while a phase is under way.
    Q_INVOKABLE void select(int row);

Q_SIGNALS:
    void changed();

private:
    void refresh();

    AppModel& _model;
    MenuChoices _phases;
    QString _title;
    bool _canSelect = false;
    Subscription _timer;
};

} // namespace selvane
