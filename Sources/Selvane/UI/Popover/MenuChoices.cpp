#include "Selvane/UI/Popover/MenuChoices.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace selvane {

void MenuChoices::setChoices(std::vector<Choice> choices) {
    if (choices == _choices)
        return;
    const auto before = static_cast<std::ptrdiff_t>(_choices.size());
    const auto after = static_cast<std::ptrdiff_t>(choices.size());
    if (after < before) {
        beginRemoveRows({}, static_cast<int>(after), static_cast<int>(before) - 1);
        _choices.erase(_choices.begin() + after, _choices.end());
        endRemoveRows();
    }
    const std::ptrdiff_t kept = std::min(before, after);
    if (kept > 0 && !std::equal(_choices.begin(), _choices.end(), choices.begin(), choices.begin() + kept)) {
        std::copy_n(choices.begin(), kept, _choices.begin());
        Q_EMIT dataChanged(index(0), index(static_cast<int>(kept) - 1));
    }
    if (after > before) {
        beginInsertRows({}, static_cast<int>(before), static_cast<int>(after) - 1);
        _choices = std::move(choices);
        endInsertRows();
    }
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
