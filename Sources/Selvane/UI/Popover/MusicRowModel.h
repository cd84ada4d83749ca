#pragma once

#include "Selvane/UI/Popover/MenuChoices.h"
#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace selvane {

class AppModel;

/// The row that chooses the sound to work by and turns it on and off. Main thread.
class MusicRowModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its popover.")

    /// The source's symbol.
    Q_PROPERTY(QString symbol READ symbol NOTIFY changed FINAL)
    /// The source's name, or the sound's.
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY changed FINAL)
    Q_PROPERTY(Extra extra READ extra NOTIFY changed FINAL)
    Q_PROPERTY(QString openTooltip READ openTooltip NOTIFY changed FINAL)
    Q_PROPERTY(QString volumeLabel READ volumeLabel CONSTANT FINAL)
    /// From 0 to 1.
    Q_PROPERTY(double volume READ volume WRITE setVolume NOTIFY changed FINAL)
    Q_PROPERTY(QString soundSymbol READ soundSymbol NOTIFY changed FINAL)
    Q_PROPERTY(QString soundTooltip READ soundTooltip NOTIFY changed FINAL)
    /// False if there is nothing to turn on.
    Q_PROPERTY(bool canPlay READ canPlay NOTIFY changed FINAL)

    // The menu
    Q_PROPERTY(QString pickerLabel READ pickerLabel CONSTANT FINAL)
    Q_PROPERTY(selvane::MenuChoices* sounds READ sounds CONSTANT FINAL)
    Q_PROPERTY(selvane::MenuChoices* sources READ sources CONSTANT FINAL)

public:
    /// What stands between the menu and the sound button.
    enum Extra {
        Nothing,
        OpenPlayer,
        Volume,
    };
    Q_ENUM(Extra)

    /// `model` outlives the row.
    explicit MusicRowModel(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] Extra extra() const;
    /// Empty if there is no player to open.
    [[nodiscard]] QString openTooltip() const;
    [[nodiscard]] QString volumeLabel() const;
    [[nodiscard]] double volume() const;
    void setVolume(double volume);
    [[nodiscard]] QString soundSymbol() const;
    [[nodiscard]] QString soundTooltip() const;
    [[nodiscard]] bool canPlay() const;
    [[nodiscard]] QString pickerLabel() const;
    [[nodiscard]] MenuChoices* sounds() { return &_sounds; }
    [[nodiscard]] MenuChoices* sources() { return &_sources; }

    /// Plays the ambient sound of that row of `sounds` from now on.
    Q_INVOKABLE void chooseSound(int row);
    /// Lets the source of that row of `sources` play from now on.
    Q_INVOKABLE void chooseSource(int row);
    Q_INVOKABLE void openPlayer();
    Q_INVOKABLE void toggleSound();

Q_SIGNALS:
    void changed();

private:
    void refresh();

    AppModel& _model;
    MenuChoices _sounds;
    MenuChoices _sources;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
