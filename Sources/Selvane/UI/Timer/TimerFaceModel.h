#pragma once

#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <vector>

namespace selvane {

class AppModel;
class AppSettings;
struct TimerFaceState;

/// What a timer face shows, ready for display, and what its two editors change. Main thread. Every window
/// makes its own.
class TimerFaceModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A window makes the model of its timer face.")

    Q_PROPERTY(Style style READ style NOTIFY styleChanged FINAL)
    /// How high the face is in the style.
    Q_PROPERTY(double frameHeight READ frameHeight NOTIFY styleChanged FINAL)
    Q_PROPERTY(Phase phase READ phase NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY stateChanged FINAL)
    Q_PROPERTY(bool isPaused READ isPaused NOTIFY stateChanged FINAL)
    /// The share of the phase that is over, from 0 to 1.
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged FINAL)
    /// How strong the arc or the bar stands.
    Q_PROPERTY(double strength READ strength NOTIFY stateChanged FINAL)
    /// "24:13"
    Q_PROPERTY(QString time READ time NOTIFY timeChanged FINAL)
    /// "24:13 remaining"
    Q_PROPERTY(QString timeLabel READ timeLabel NOTIFY timeChanged FINAL)
    /// "FOCUS"
    Q_PROPERTY(QString caption READ caption NOTIFY stateChanged FINAL)
    /// Whether the present word takes the place of the former one softly: a pause does, another phase is
    /// there at once. It is told before the word.
    Q_PROPERTY(bool captionFades READ captionFades NOTIFY captionFadesChanged FINAL)
    Q_PROPERTY(int cyclePosition READ cyclePosition NOTIFY stateChanged FINAL)
    Q_PROPERTY(int cycleLength READ cycleLength NOTIFY stateChanged FINAL)

    /// Whether the user may type another length now.
    Q_PROPERTY(bool canEdit READ canEdit NOTIFY stateChanged FINAL)
    Q_PROPERTY(QString editTooltip READ editTooltip CONSTANT FINAL)
    Q_PROPERTY(QString editHint READ editHint CONSTANT FINAL)

    /// The symbol above the time; empty for none.
    Q_PROPERTY(QString glyph READ glyph NOTIFY glyphChanged FINAL)
    /// The symbol that the user chose for the phase; empty for none.
    Q_PROPERTY(QString symbol READ symbol NOTIFY glyphChanged FINAL)
    Q_PROPERTY(QString iconLabel READ iconLabel NOTIFY stateChanged FINAL)
    Q_PROPERTY(QString iconTitle READ iconTitle NOTIFY stateChanged FINAL)
    Q_PROPERTY(QString iconTooltip READ iconTooltip CONSTANT FINAL)
    Q_PROPERTY(QString iconHint READ iconHint CONSTANT FINAL)

public:
    enum Style { Ring, Bar, Minimal };
    Q_ENUM(Style)

    enum Phase { Focus, ShortBreak, LongBreak };
    Q_ENUM(Phase)

    /// The face of the model's timer. The model outlives it.
    explicit TimerFaceModel(AppModel& model, QObject* parent = nullptr);
    /// A face at rest that shows the style that the settings choose; nothing can be typed. The settings
    /// outlive it.
    explicit TimerFaceModel(AppSettings& settings, QObject* parent = nullptr);
    ~TimerFaceModel() override;

    [[nodiscard]] Style style() const;
    [[nodiscard]] double frameHeight() const;
    [[nodiscard]] Phase phase() const;
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] bool isPaused() const;
    [[nodiscard]] double progress() const;
    [[nodiscard]] double strength() const;
    [[nodiscard]] QString time() const { return _time; }
    [[nodiscard]] QString timeLabel() const;
    [[nodiscard]] QString caption() const;
    [[nodiscard]] bool captionFades() const { return _captionFades; }
    [[nodiscard]] int cyclePosition() const;
    [[nodiscard]] int cycleLength() const;
    [[nodiscard]] bool canEdit() const;
    [[nodiscard]] QString editTooltip() const;
    [[nodiscard]] QString editHint() const;
    [[nodiscard]] QString glyph() const;
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString iconLabel() const;
    [[nodiscard]] QString iconTitle() const;
    [[nodiscard]] QString iconTooltip() const;
    [[nodiscard]] QString iconHint() const;
    /// What is left, in seconds.
    Q_INVOKABLE [[nodiscard]] double remaining() const;

    /// Takes a new length for the present phase; nothing where `canEdit` is false.
    Q_INVOKABLE void setMinutes(int minutes);
    /// Takes another symbol for the present phase, or none.
    Q_INVOKABLE void chooseSymbol(const QString& name);
    /// The user turns to something else, so that what is being typed counts as it is.
    void endTyping() { Q_EMIT typingEnded(); }

Q_SIGNALS:
    void styleChanged();
    void captionFadesChanged();
    void stateChanged();
    void progressChanged();
    void timeChanged();
    void glyphChanged();
    void typingEnded();

private:
    TimerFaceModel(AppSettings& settings, std::function<TimerFaceState()> source, QObject* parent);
    void refresh();

    AppSettings& _settings;
    /// Absent for a face that only shows a style.
    AppModel* _model = nullptr;
    std::function<TimerFaceState()> _source;
    std::unique_ptr<TimerFaceState> _state;
    QString _time;
    bool _captionFades = false;
    QString _glyph;
    QString _symbol;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
