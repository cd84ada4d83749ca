#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The symbols that may stand for a phase, as a grid offers them: first none, then the others. Main thread.
class SymbolChoices : public QObject {
    Q_OBJECT
    QML_ELEMENT

    /// What the settings keep for each tile.
    Q_PROPERTY(QStringList names READ names CONSTANT FINAL)
    /// What stands for the empty choice where no symbol does.
    Q_PROPERTY(QString noneWord READ noneWord CONSTANT FINAL)
    Q_PROPERTY(int columns READ columns CONSTANT FINAL)

public:
    explicit SymbolChoices(QObject* parent = nullptr);

    [[nodiscard]] const QStringList& names() const { return _names; }
    [[nodiscard]] QString noneWord() const { return QStringLiteral("None"); }
    [[nodiscard]] int columns() const { return 6; }

    /// What is drawn on the tile of that name.
    Q_INVOKABLE [[nodiscard]] QString symbol(const QString& name) const;
    /// What the tile is called.
    Q_INVOKABLE [[nodiscard]] QString label(const QString& name) const;
    /// The tile of that name; the first if there is none.
    Q_INVOKABLE [[nodiscard]] int indexOf(const QString& name) const;
    /// The tile so many columns to the right and rows down; the same one where there is none.
    Q_INVOKABLE [[nodiscard]] int neighbour(int index, int columns, int rows) const;

private:
    QStringList _names;
};

} // namespace selvane
