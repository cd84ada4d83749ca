import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The timer face as a time above a bar.
Column {
    id: root

    required property TimerFaceModel model

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 6

        PhaseGlyph {
            anchors.verticalCenter: parent.verticalCenter
            model: root.model
        }

        FaceCaption {
            anchors.verticalCenter: parent.verticalCenter
            words: root.model.caption
            isSoft: root.model.captionFades
        }
    }

    Item {
        width: 1
        height: 2
    }

    EditableTime {
        anchors.horizontalCenter: parent.horizontalCenter
        model: root.model
        size: 52
    }

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 220
        height: 20

        Rectangle {
            y: 10
            width: 220
            height: 8
            radius: 4
            color: Theme.track(0.08)
        }

        SpringValue {
            id: strength

            target: root.model.strength
            response: 0.5
            animated: !Theme.reducesMotion
        }

        BarFill {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: 4
            progress: root.model.progress
            isRunning: root.model.isRunning
            reducesMotion: Theme.reducesMotion
            ink: Theme.solidPrimary
            opacity: strength.value
        }
    }

    FaceDashes {
        anchors.horizontalCenter: parent.horizontalCenter
        topPadding: 12
        model: root.model
    }
}
