import QtQuick
import QtQuick.Templates as T
import Selvane.Controls

/// A switch with its label to the left. `toggled` tells that the user has changed `checked`.
T.AbstractButton {
    id: root

    property string tooltip: ""
    property string accessibleName: text

    function flip() {
        root.toggle();
        root.toggled();
    }

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(18, Math.ceil(implicitContentHeight))
    rightPadding: text === "" ? 32 : 42
    checkable: true
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: accessibleName
    Accessible.description: enabled ? tooltip : Theme.unavailable
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: if (root.enabled) root.flip()
    Accessible.onToggleAction: if (root.enabled) root.flip()

    contentItem: Text {
        text: root.text
        color: Theme.primaryText
        opacity: root.enabled ? 1 : 0.4
        font.pixelSize: Theme.callout
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    indicator: SwitchShape {
        x: root.width - width + 4
        y: Math.round((root.height - height) / 2)
        position: root.checked ? 1 : 0
        opacity: root.enabled ? 1 : 0.4
        trackOff: Theme.ink(0.12)
        trackOn: Theme.solidPrimary
        knobOff: "white"
        knobOn: Theme.textOnSolidPrimary
        edgeColor: Theme.hairline
        ringed: root.visualFocus
        ringColor: Theme.focusRing

        Behavior on position {
            SpringMotion {
                response: 0.2
                dampingFraction: 0.85
            }
        }
    }

    PressKeys {
        onPressed: root.flip()
    }

    HoverTip {
        text: root.tooltip
        visible: root.enabled && !root.pressed && (root.hovered || root.visualFocus)
    }
}
