#include "Selvane/UI/Popover/MenuChoices.h"

#include <algorithm>
#include <utility>

namespace selvane {

void MenuChoices::setChoices(std::vector<Choice> choices) {
    if (choices == _choices)
        return;
    if (std::ranges::equal(choices, _choices, {}, &Choice::title, &Choice::title)) {
        _choices = std::move(choices);
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {IsCheckedRole});
        return;
    }
    beginResetModel();
    _choices = std::move(choices);
    endResetModel();
}

int MenuChoices::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_choices.size());
}

QVariant MenuChoices::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Choice& choice = _choices[static_cast<std::size_t>(index.row())];
    switch (role) {
    case TitleRole:
        return choice.title;
    case IsCheckedRole:
        return choice.isChecked;
    default:
        return {};
    }
}

QHash<int, QByteArray> MenuChoices::roleNames() const {
    return {{TitleRole, "title"}, {IsCheckedRole, "isChecked"}};
}

} // namespace selvane
