import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// One of the choices of PillTabs. Its parent is the strip of them.
T.AbstractButton {
    id: root

    required property int index
    required property string modelData

    readonly property PillTabStrip strip: parent as PillTabStrip
    readonly property bool selected: strip !== null && strip.currentIndex === index

    x: strip !== null ? index * strip.segment : 0
    width: strip !== null ? strip.segment : 0
    height: strip !== null ? strip.height : 0
    text: modelData
    focusPolicy: Qt.NoFocus
    hoverEnabled: true

    Accessible.role: Accessible.PageTab
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: root.clicked()

    onClicked: strip.chosen(index)

    contentItem: Loader {
        sourceComponent: root.strip !== null ? root.strip.label : null
        onLoaded: (item as PillTabLabel).tab = root
    }
}
