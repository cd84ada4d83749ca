pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls

/// A time in cells of equal width, so that it doesn't tremble with fonts whose digits differ in width.
Row {
    id: root

    required property string time
    property int pixelSize: 56
    property color color: Theme.primaryText

    readonly property real cellWidth: Math.max(...Array.from("0123456789", digit => metrics.advanceWidth(digit)))

    FontMetrics {
        id: metrics

        font.pixelSize: root.pixelSize
        font.weight: Font.DemiBold
    }

    Repeater {
        model: root.time.length

        Text {
            id: cell

            required property int index
            readonly property string character: root.time.charAt(index)

            width: character === ":" ? implicitWidth : root.cellWidth
            text: character
            color: root.color
            font.pixelSize: root.pixelSize
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }
    }
}
