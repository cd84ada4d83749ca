pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Timer

/// A chip for each preset of lengths. A preset is told by its place in the presets; none is -1.
Row {
    id: root

    property int active: -1
    property real fontSize: 11

    signal select(preset: int)

    spacing: 6

    PresetChoices {
        id: choices
    }

    Repeater {
        model: choices.titles

        PresetChip {
            id: chip

            text: chip.modelData
            accessibleName: choices.summaries[chip.index]
            fontSize: root.fontSize
            isActive: root.active === chip.index
            onClicked: root.select(chip.index)
        }
    }
}
