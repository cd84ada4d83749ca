import QtQuick

/// Where the choices of PillTabs lie, side by side and equally wide.
Item {
    id: root

    required property int count
    required property int currentIndex
    required property Component label

    readonly property real segment: count > 0 ? width / count : 0

    signal chosen(int index)

    /// The nearest choice that there is.
    function choose(index: int) {
        if (count > 0)
            chosen(Math.max(0, Math.min(index, count - 1)));
    }
}
