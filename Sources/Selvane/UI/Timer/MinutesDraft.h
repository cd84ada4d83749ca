#pragma once

#include "Selvane/UI/Timer/TimerFaceModel.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace selvane {

/// A number of minutes that the user is typing. Main thread.
///
/// There is no upper bound besides three digits: the bounds of a length belong to the settings.
class MinutesDraft : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// Whether there may be typing at all; it is cancelled where that ends.
    Q_PROPERTY(bool canEdit READ canEdit WRITE setCanEdit NOTIFY canEditChanged FINAL)
    /// Whose length is typed; the typing is cancelled where another comes.
    Q_PROPERTY(selvane::TimerFaceModel::Phase phase READ phase WRITE setPhase NOTIFY phaseChanged FINAL)
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY isEditingChanged FINAL)
    /// What is typed so far. Whatever is written here, only the first three numbers of it stay.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    /// What the field is called.
    Q_PROPERTY(QString label READ label CONSTANT FINAL)

public:
    explicit MinutesDraft(QObject* parent = nullptr) : QObject(parent) {}

    /// Begins with what is left, in whole minutes; halves round up.
    Q_INVOKABLE void startEditing(double remainingSeconds);
    /// Ends the typing and commits the number, unless it is none. Nothing if nobody is typing.
    Q_INVOKABLE void save() { finish(Ending::save); }
    /// Ends the typing; the length stays as it was.
    Q_INVOKABLE void cancel() { finish(Ending::cancel); }

    /// The field got the keyboard, or lost it, which commits as Return does.
    Q_INVOKABLE void focusChanged(bool hasFocus);

    /// How wide the field is for digits of a font of this size, in pixels of the window: enough for two
    /// digits of most fonts, and for whatever stands in it.
    Q_INVOKABLE [[nodiscard]] static double fieldWidth(double size, double contentWidth);

    [[nodiscard]] bool canEdit() const { return _canEdit; }
    void setCanEdit(bool canEdit);
    [[nodiscard]] TimerFaceModel::Phase phase() const { return _phase; }
    void setPhase(TimerFaceModel::Phase phase);
    [[nodiscard]] bool isEditing() const { return _isEditing; }
    [[nodiscard]] const QString& text() const { return _text; }
    void setText(const QString& text);
    [[nodiscard]] QString label() const { return QStringLiteral("Minutes"); }

    /// The first three of those characters of the text that are numbers, in any script.
    [[nodiscard]] static QString cleaned(const QString& text);
    /// The number that the text is in decimal digits, if it is above 0.
    [[nodiscard]] static std::optional<int> minutes(const QString& text);

Q_SIGNALS:
    void canEditChanged();
    void phaseChanged();
    void isEditingChanged();
    /// Also when a text was written here of which something was left out.
    void textChanged();
    void committed(int minutes);
    /// The typing ended while the field had the keyboard, which nothing has now.
    void keyboardFreed();

private:
    enum class Ending { save, cancel };
    void finish(Ending ending);

    bool _canEdit = false;
    TimerFaceModel::Phase _phase = TimerFaceModel::Focus;
    bool _isEditing = false;
    bool _hasKeyboard = false;
    QString _text;
};

} // namespace selvane
