import QtQuick
import Selvane.Controls
import Selvane.Popover

/// The one line that says what matters now. Without anything to say it keeps its place.
Item {
    id: root

    required property SessionNoteModel model

    // What is drawn: the former note until it has faded.
    property string words: model.text
    property string symbol: model.symbol
    property bool emphasized: model.isEmphasized

    readonly property color ink: emphasized ? Theme.primaryText : Theme.secondaryText
    readonly property int fading: Theme.reducesMotion || !Window.active ? 0 : 100

    implicitWidth: Math.min(Math.ceil(line.implicitWidth), 316)
    implicitHeight: 16
    activeFocusOnTab: model.hasAction

    Keys.onSpacePressed: root.model.act()
    Keys.onReturnPressed: root.model.act()
    Keys.onEnterPressed: root.model.act()

    Accessible.role: model.isAlert ? Accessible.AlertMessage : model.hasAction ? Accessible.Button : Accessible.StaticText
    Accessible.name: model.text
    Accessible.focusable: model.hasAction
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
        visible: root.activeFocus
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

    MouseArea {
        id: hover

        anchors.fill: parent
        hoverEnabled: true
        cursorShape: root.model.hasAction ? Qt.PointingHandCursor : Qt.ArrowCursor
        onClicked: root.model.act()
    }

    HoverTip {
        text: label.truncated ? root.model.text : ""
        visible: hover.containsMouse || root.activeFocus
    }
}
