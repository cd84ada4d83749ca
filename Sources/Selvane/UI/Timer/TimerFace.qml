pragma ComponentBehavior: Bound

import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The large dial: what is left, how far the phase has come, which phase it is and where it stands in the cycle.
Item {
    id: root

    required property TimerFaceModel model

    implicitWidth: 240
    implicitHeight: model.frameHeight

    Behavior on implicitHeight {
        SpringMotion {
            response: 0.5
            dampingFraction: 1
        }
    }

    FaceStyle {
        anchors.fill: parent
        chosen: root.model.style === TimerFaceModel.Ring

        RingFace {
            anchors.centerIn: parent
            model: root.model
        }
    }

    FaceStyle {
        anchors.fill: parent
        chosen: root.model.style === TimerFaceModel.Bar

        BarFace {
            anchors.centerIn: parent
            model: root.model
        }
    }

    FaceStyle {
        anchors.fill: parent
        chosen: root.model.style === TimerFaceModel.Minimal

        MinimalFace {
            anchors.centerIn: parent
            model: root.model
        }
    }
}
