#include "Selvane/UI/Timer/SymbolChoices.h"

#include "Selvane/App/SettingChoices.h"
#include "Selvane/UI/QtText.h"

#include <algorithm>

namespace selvane {

SymbolChoices::SymbolChoices(QObject* parent) : QObject(parent), _names{QString()} {
    for (const std::string_view name : symbolChoices)
        _names.append(qtText(name));
}

QString SymbolChoices::symbol(const QString& name) const {
    return name.isEmpty() ? QStringLiteral("circle.slash") : name;
}

QString SymbolChoices::label(const QString& name) const {
    return name.isEmpty() ? QStringLiteral("No icon") : name;
}

int SymbolChoices::indexOf(const QString& name) const {
    return std::max(static_cast<int>(_names.indexOf(name)), 0);
}

int SymbolChoices::neighbour(int index, int right, int down) const {
    const int column = index % columns() + right;
    const int target = index + right + down * columns();
    if (column < 0 || column >= columns() || target < 0 || target >= _names.size())
        return index;
    return target;
}

} // namespace selvane
