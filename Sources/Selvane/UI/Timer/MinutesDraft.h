#pragma once

#include "Selvane/UI/Timer/TimerFaceModel.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace selvane {

/// A number of minutes that the user is typing. The typing is cancelled where the timer starts or goes to
/// another phase by itself; a command that the user gives in the same window saves it first. Main thread.
///
/// There is no upper bound besides three digits: the bounds of a length belong to the settings.
class MinutesDraft : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// Whose length is typed. It is told the number, and must outlive the typing. Null for none.
    Q_PROPERTY(selvane::TimerFaceModel* face READ face WRITE setFace NOTIFY faceChanged FINAL)
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY isEditingChanged FINAL)
    /// What is typed so far. Whatever is written here, only the first three numbers of it stay.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    /// What the field is called.
    Q_PROPERTY(QString label READ label CONSTANT FINAL)

public:
    explicit MinutesDraft(QObject* parent = nullptr) : QObject(parent) {}

    /// Begins with what is left, in whole minutes; halves round up.
    Q_INVOKABLE void startEditing(double remainingSeconds);
    /// Ends the typing and takes the number as the length, unless it is none. Nothing if nobody is typing.
    Q_INVOKABLE void save() { finish(Ending::save); }
    /// Ends the typing; the length stays as it was.
    Q_INVOKABLE void cancel() { finish(Ending::cancel); }

    /// The field got the keyboard, or lost it, which commits as Return does.
    Q_INVOKABLE void focusChanged(bool hasFocus);

    /// How wide the field is for digits of a font of this size, in pixels of the window: enough for two
    /// digits of most fonts, and for whatever stands in it.
    Q_INVOKABLE [[nodiscard]] static double fieldWidth(double size, double contentWidth);

    [[nodiscard]] TimerFaceModel* face() const { return _face; }
    void setFace(TimerFaceModel* face);
    [[nodiscard]] bool isEditing() const { return _isEditing; }
    [[nodiscard]] const QString& text() const { return _text; }
    void setText(const QString& text);
    [[nodiscard]] QString label() const { return QStringLiteral("Minutes"); }

    /// The first three of those characters of the text that are numbers, in any script.
    [[nodiscard]] static QString cleaned(const QString& text);
    /// The number that the text is in decimal digits, if it is above 0.
    [[nodiscard]] static std::optional<int> minutes(const QString& text);

Q_SIGNALS:
    void faceChanged();
    void isEditingChanged();
    /// Also when a text was written here of which something was left out.
    void textChanged();
    /// The typing ended while the field had the keyboard, which nothing has now.
    void keyboardFreed();

private:
    enum class Ending { save, cancel };
    void finish(Ending ending);
    /// The face has changed.
    void follow();
    [[nodiscard]] bool canEdit() const { return _face && _face->canEdit(); }

    QPointer<TimerFaceModel> _face;
    /// What the length is of that is being typed.
    TimerFaceModel::Phase _phase = TimerFaceModel::Focus;
    bool _isEditing = false;
    bool _hasKeyboard = false;
    QString _text;
};

} // namespace selvane
