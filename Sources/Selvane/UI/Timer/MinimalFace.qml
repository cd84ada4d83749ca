import QtQuick
import Selvane.Timer

/// The timer face as a time alone.
Column {
    id: root

    required property TimerFaceModel model

    PhaseGlyph {
        anchors.horizontalCenter: parent.horizontalCenter
        model: root.model
    }

    EditableTime {
        anchors.horizontalCenter: parent.horizontalCenter
        model: root.model
        size: 60
    }

    FaceDashes {
        anchors.horizontalCenter: parent.horizontalCenter
        topPadding: 6
        model: root.model
    }

    FaceCaption {
        anchors.horizontalCenter: parent.horizontalCenter
        topPadding: 8
        words: root.model.caption
        isSoft: root.model.captionFades
    }
}
