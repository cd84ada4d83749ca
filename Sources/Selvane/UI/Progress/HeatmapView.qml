import QtQuick
import Selvane.Controls
import Selvane.Progress

/// The focus of past weeks, a square for each day, with the words of the day under the pointer or the keyboard's cursor.
HeatmapCanvas {
    id: root

    ink: Theme.solidPrimary
    lift: Theme.trackLift
    labelInk: Theme.secondaryText

    Accessible.role: Accessible.Chart
    Accessible.name: summary
    Accessible.description: cursorTip
    Accessible.focusable: true

    Rectangle {
        x: root.cursorSquare.x - 3
        y: root.cursorSquare.y - 3
        width: root.cursorSquare.width + 6
        height: root.cursorSquare.height + 6
        radius: width * 0.3
        visible: root.cursorTip !== ""
        color: "transparent"
        border.width: 2
        border.color: Theme.focusRing
    }

    Item {
        x: root.tipSquare.x
        y: root.tipSquare.y
        width: root.tipSquare.width
        height: root.tipSquare.height

        HoverTip {
            text: root.tip
            delay: root.isTipOfPointer ? 500 : 0
            visible: root.tip !== ""
        }
    }
}
