import QtQuick
import Selvane.Controls
import Selvane.Tasks

/// A thin bar that shows what part of a list is seen, while that changes or the pointer is there.
ScrollTrack {
    id: root

    required property ListView view

    implicitWidth: 10
    visible: partSeen < 1
    partSeen: view.visibleArea.heightRatio
    partAbove: view.visibleArea.yPosition
    onScrolled: partAbove => view.contentY = view.originY + partAbove * view.contentHeight

    SpringValue {
        id: presence

        target: root.view.movingVertically || root.pressed || root.hovered ? 1 : 0
        response: 0.25
        animated: !Theme.reducesMotion
    }

    Rectangle {
        x: 3
        y: root.thumbY
        width: 4
        height: root.thumbHeight
        radius: 2
        color: Theme.mark(root.pressed ? 0.5 : root.hovered ? 0.4 : 0.25)
        opacity: presence.value
    }
}
