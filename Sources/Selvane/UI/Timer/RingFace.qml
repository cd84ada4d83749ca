import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The timer face as a ring with the time in it.
Item {
    id: root

    required property TimerFaceModel model

    implicitWidth: 184
    implicitHeight: 184

    RingBezel {
        anchors.fill: parent
        ink: Theme.solidPrimary
        lift: Theme.trackLift
    }

    SpringValue {
        id: strength

        target: root.model.strength
        response: 0.5
        animated: !Theme.reducesMotion
    }

    RingArc {
        anchors.centerIn: parent
        progress: root.model.progress
        isRunning: root.model.isRunning
        reducesMotion: Theme.reducesMotion
        ink: Theme.solidPrimary
        opacity: strength.value
    }

    Column {
        anchors.centerIn: parent

        PhaseGlyph {
            anchors.horizontalCenter: parent.horizontalCenter
            bottomPadding: 2
            model: root.model
        }

        EditableTime {
            anchors.horizontalCenter: parent.horizontalCenter
            model: root.model
            size: 40
            maximumWidth: 126
        }

        FaceDashes {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: 6
            model: root.model
        }

        FaceCaption {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: 6
            words: root.model.caption
            isSoft: root.model.captionFades
        }
    }
}
