import QtQuick
import Selvane.Controls

/// What a tab shows. Made when it is first selected, and kept.
Item {
    id: root

    required property bool selected
    default property Component content
    property Item made: null

    function makeIfSelected() {
        if (selected && made === null)
            made = content.createObject(root) as Item;
    }

    anchors.fill: parent
    opacity: selected ? 1 : 0
    visible: opacity > 0
    enabled: selected

    onSelectedChanged: makeIfSelected()
    Component.onCompleted: makeIfSelected()

    Behavior on opacity {
        SpringMotion {
            response: 0.5
            dampingFraction: 0.85
        }
    }
}
