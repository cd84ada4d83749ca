import QtQuick
import Selvane.Controls

/// A symbol whose parts light up one after another while something plays.
Symbol {
    id: root

    required property bool playing

    property int step: 0

    readonly property bool moves: playing && parts > 0 && Window.active && !Theme.reducesMotion

    level: moves ? step : -1

    // A few steps a second: the machine sleeps in between.
    Timer {
        interval: 350
        repeat: true
        running: root.moves
        onTriggered: root.step = (root.step + 1) % (root.parts + 1)
    }
}
