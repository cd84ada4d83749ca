#pragma once

#include "Selvane/UI/Controls/Look.h"
#include "Selvane/UI/Controls/Palette.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The palette as views read it: all colours change at once when the look does. Without a look everything is
/// light, flat and in motion. Main thread.
class ThemeValues : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// What the windows follow; set by the first of them, which outlives no view.
    Q_PROPERTY(selvane::Look* look READ look WRITE setLook NOTIFY changed FINAL)

    Q_PROPERTY(bool dark READ dark NOTIFY changed FINAL)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed FINAL)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY changed FINAL)
    /// What capsules are made of.
    Q_PROPERTY(selvane::Look::Glass glass READ glass NOTIFY changed FINAL)

    /// What a screen reader says of a control that can't be used now. Qt 6.4 has no state for that in views.
    Q_PROPERTY(QString unavailable READ unavailable CONSTANT FINAL)

    Q_PROPERTY(QColor surface READ surface NOTIFY changed FINAL)
    Q_PROPERTY(QColor backdrop READ backdrop NOTIFY changed FINAL)
    Q_PROPERTY(QColor popup READ popup NOTIFY changed FINAL)
    Q_PROPERTY(QColor card READ card NOTIFY changed FINAL)
    Q_PROPERTY(QColor cardPressed READ cardPressed NOTIFY changed FINAL)
    Q_PROPERTY(QColor selectedSegment READ selectedSegment NOTIFY changed FINAL)
    Q_PROPERTY(QColor inverse READ inverse NOTIFY changed FINAL)

    Q_PROPERTY(QColor hairline READ hairline NOTIFY changed FINAL)
    Q_PROPERTY(QColor windowEdge READ windowEdge NOTIFY changed FINAL)
    Q_PROPERTY(QColor focusRing READ focusRing NOTIFY changed FINAL)
    Q_PROPERTY(QColor segmentShadow READ segmentShadow NOTIFY changed FINAL)
    Q_PROPERTY(QColor popupShadow READ popupShadow NOTIFY changed FINAL)

    Q_PROPERTY(QColor primary READ primary NOTIFY changed FINAL)
    Q_PROPERTY(QColor solidPrimary READ solidPrimary NOTIFY changed FINAL)
    /// `onSolidPrimary`, under a name that QML doesn't take for a handler of signals.
    Q_PROPERTY(QColor textOnSolidPrimary READ textOnSolidPrimary NOTIFY changed FINAL)
    Q_PROPERTY(QColor primaryText READ primaryText NOTIFY changed FINAL)
    Q_PROPERTY(QColor secondaryText READ secondaryText NOTIFY changed FINAL)
    Q_PROPERTY(QColor promptText READ promptText NOTIFY changed FINAL)
    Q_PROPERTY(QColor tertiaryText READ tertiaryText NOTIFY changed FINAL)

    Q_PROPERTY(double markLift READ markLift NOTIFY changed FINAL)
    Q_PROPERTY(double trackLift READ trackLift NOTIFY changed FINAL)

public:
    explicit ThemeValues(QObject* parent = nullptr);

    [[nodiscard]] Look* look() const { return _look; }
    void setLook(Look* look);

    [[nodiscard]] QString unavailable() const;
    [[nodiscard]] bool dark() const;
    [[nodiscard]] bool highContrast() const;
    [[nodiscard]] bool reducesMotion() const;
    [[nodiscard]] Look::Glass glass() const;

    /// The color on the way from one to another, at 0 the first, at 1 the second and beyond that no further.
    [[nodiscard]] Q_INVOKABLE static QColor blended(const QColor& from, const QColor& to, double part);

    /// An opacity on a scale that begins at the lift instead of at 0.
    [[nodiscard]] Q_INVOKABLE static double lifted(double opacity, double lift);

    [[nodiscard]] const QColor& surface() const { return _palette.surface; }
    [[nodiscard]] const QColor& backdrop() const { return _palette.backdrop; }
    [[nodiscard]] const QColor& popup() const { return _palette.popup; }
    [[nodiscard]] const QColor& card() const { return _palette.card; }
    [[nodiscard]] const QColor& cardPressed() const { return _palette.cardPressed; }
    [[nodiscard]] const QColor& selectedSegment() const { return _palette.selectedSegment; }
    [[nodiscard]] const QColor& inverse() const { return _palette.inverse; }
    [[nodiscard]] const QColor& hairline() const { return _palette.hairline; }
    [[nodiscard]] const QColor& windowEdge() const { return _palette.windowEdge; }
    [[nodiscard]] const QColor& focusRing() const { return _palette.focusRing; }
    [[nodiscard]] const QColor& segmentShadow() const { return _palette.segmentShadow; }
    [[nodiscard]] const QColor& popupShadow() const { return _palette.popupShadow; }
    [[nodiscard]] const QColor& primary() const { return _palette.primary; }
    [[nodiscard]] const QColor& solidPrimary() const { return _palette.solidPrimary; }
    [[nodiscard]] const QColor& textOnSolidPrimary() const { return _palette.onSolidPrimary; }
    [[nodiscard]] const QColor& primaryText() const { return _palette.primaryText; }
    [[nodiscard]] const QColor& secondaryText() const { return _palette.secondaryText; }
    [[nodiscard]] const QColor& promptText() const { return _palette.promptText; }
    [[nodiscard]] const QColor& tertiaryText() const { return _palette.tertiaryText; }
    [[nodiscard]] double markLift() const { return _palette.markLift; }
    [[nodiscard]] double trackLift() const { return _palette.trackLift; }

Q_SIGNALS:
    void changed();

private:
    void lookChanged();

    QPointer<Look> _look;
    Palette _palette;
};

} // namespace selvane
