import QtQuick
import Selvane.Controls
import Selvane.Timer

/// The large dial: what is left, how far the phase has come, which phase it is and where it stands in the cycle.
Item {
    id: root

    required property TimerFaceModel model

    implicitWidth: 240
    implicitHeight: frame.value

    SpringValue {
        id: frame

        target: root.model.frameHeight
        response: 0.5
        animated: !Theme.reducesMotion
    }

    FaceStyle {
        anchors.fill: parent
        source: Qt.resolvedUrl("RingFace.qml")
        model: root.model
        chosen: root.model.style === TimerFaceModel.Ring
    }

    FaceStyle {
        anchors.fill: parent
        source: Qt.resolvedUrl("BarFace.qml")
        model: root.model
        chosen: root.model.style === TimerFaceModel.Bar
    }

    FaceStyle {
        anchors.fill: parent
        source: Qt.resolvedUrl("MinimalFace.qml")
        model: root.model
        chosen: root.model.style === TimerFaceModel.Minimal
    }
}
