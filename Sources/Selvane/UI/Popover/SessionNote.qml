import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The one line that says what matters now. Without anything to say it keeps its place.
Item {
    id: root

    required property SessionNoteModel model

    readonly property bool hasAction: model.hasAction

    // What is drawn: the former note until it has faded.
    property string words: model.text
    property string symbol: model.symbol
    property bool emphasized: model.isEmphasized

    readonly property color ink: emphasized ? Theme.primaryText : Theme.secondaryText
    readonly property int fading: Theme.reducesMotion || !Window.active ? 0 : 100

    /// The note had the keyboard and has no use for it any more.
    signal released

    implicitWidth: Math.min(Math.ceil(line.implicitWidth), 316)
    implicitHeight: 16
    activeFocusOnTab: hasAction

    onHasActionChanged: if (!hasAction && activeFocus) released()

    Keys.onSpacePressed: root.model.act()
    Keys.onReturnPressed: root.model.act()
    Keys.onEnterPressed: root.model.act()

    Accessible.role: hasAction ? Accessible.Button : model.isAlert ? Accessible.AlertMessage : Accessible.StaticText
    Accessible.name: model.text
    Accessible.focusable: hasAction
    Accessible.ignored: model.text === ""
    Accessible.onPressAction: root.model.act()

    Behavior on words {
        SequentialAnimation {
            NumberAnimation {
                target: line
                property: "opacity"
                to: 0
                duration: root.fading
            }

            PropertyAction {}

            NumberAnimation {
                target: line
                property: "opacity"
                to: 1
                duration: root.fading * 1.5
            }
        }
    }

    Behavior on symbol {
        SequentialAnimation {
            PauseAnimation {
                duration: root.fading
            }

            PropertyAction {}
        }
    }

    Behavior on emphasized {
        SequentialAnimation {
            PauseAnimation {
                duration: root.fading
            }

            PropertyAction {}
        }
    }

    RoundedShape {
        anchors.fill: parent
        anchors.leftMargin: -8
        anchors.rightMargin: -8
        spread: 4
        radius: 4
        visible: root.activeFocus && root.hasAction
        ringed: true
        ringColor: Theme.focusRing
    }

    Row {
        id: line

        anchors.centerIn: parent
        spacing: 4

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol !== ""
            name: root.symbol
            size: Theme.caption
            weight: Symbol.Regular
            color: root.ink
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, 316 - x)
            text: root.words
            textFormat: Text.PlainText
            color: root.ink
            font.pixelSize: Theme.caption
            maximumLineCount: 1
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }

    // Without an action a press is one beside the controls.
    MouseArea {
        anchors.fill: parent
        enabled: root.hasAction
        onClicked: root.model.act()
    }

    HoverHandler {
        id: hover

        cursorShape: root.hasAction ? Qt.PointingHandCursor : Qt.ArrowCursor
    }

    HoverTip {
        text: label.truncated ? root.model.text : ""
        visible: hover.hovered || root.activeFocus
    }
}
