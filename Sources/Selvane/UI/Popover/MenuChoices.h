#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace selvane {

/// A run of like entries in a menu, of which some may be in force. Main thread.
class MenuChoices : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the model of its menu.")

public:
    struct Choice {
        QString title;
        bool isChecked = false;

        friend bool operator==(const Choice&, const Choice&) = default;
    };

    enum Role { TitleRole = Qt::UserRole, IsCheckedRole };
    Q_ENUM(Role)

    explicit MenuChoices(QObject* parent = nullptr) : QAbstractListModel(parent) {}

    /// Rows come and go at the end only, and those before it take other entries: a menu that makes all its
    /// rows anew loses the order in which they and its separators stand.
    void setChoices(std::vector<Choice> choices);
    [[nodiscard]] const std::vector<Choice>& choices() const { return _choices; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<Choice> _choices;
};

} // namespace selvane
