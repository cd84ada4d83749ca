import QtQuick

/// Where the choices of PillTabs lie, side by side and equally wide.
Item {
    id: root

    required property int count
    required property int currentIndex
    required property Component label

    readonly property real segment: count > 0 ? width / count : 0

    signal chosen(int index)
}
