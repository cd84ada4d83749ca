#pragma once

#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <vector>

namespace selvane {

class AppModel;
class Scheduler;
class WindowCoordinator;
namespace SessionNote {
struct Note;
}

/// The line under the task picker, in step with the model. While it is shown it also keeps up with the clock.
/// Main thread.
class SessionNoteModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its popover.")

    /// Empty if there is nothing to tell; so are all others then.
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed FINAL)
    Q_PROPERTY(bool isEmphasized READ isEmphasized NOTIFY changed FINAL)
    Q_PROPERTY(bool hasAction READ hasAction NOTIFY changed FINAL)
    /// Something was or may be lost.
    Q_PROPERTY(bool isAlert READ isAlert NOTIFY changed FINAL)

public:
    /// What is given outlives the note; `windows` may be null.
    SessionNoteModel(AppModel& model, Scheduler& scheduler, WindowCoordinator* windows,
                     QObject* parent = nullptr);
    ~SessionNoteModel() override;

    [[nodiscard]] QString text() const;
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] bool isEmphasized() const;
    [[nodiscard]] bool hasAction() const;
    [[nodiscard]] bool isAlert() const;

    /// What a click does.
    Q_INVOKABLE void act();

    void refresh();
    /// Keeps up with the clock from here on.
    void willShow();
    void didHide();

Q_SIGNALS:
    void changed();

private:
    AppModel& _model;
    Scheduler& _scheduler;
    WindowCoordinator* _windows;
    std::unique_ptr<SessionNote::Note> _note;
    bool _isShown = false;
    bool _isRecoveryNoticeDismissed = false;
    std::vector<Subscription> _subscriptions;
    Subscription _minute;
};

} // namespace selvane
