#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The presets of lengths in the order in which they are offered; a preset is known by its place there. Main
/// thread.
class PresetChoices : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// "25 / 5"
    Q_PROPERTY(QStringList titles READ titles CONSTANT FINAL)
    /// "25 min focus, 5 min breaks, 15 min long break"
    Q_PROPERTY(QStringList summaries READ summaries CONSTANT FINAL)

public:
    explicit PresetChoices(QObject* parent = nullptr);

    [[nodiscard]] const QStringList& titles() const { return _titles; }
    [[nodiscard]] const QStringList& summaries() const { return _summaries; }

private:
    QStringList _titles;
    QStringList _summaries;
};

} // namespace selvane
