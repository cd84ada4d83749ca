import QtQuick

/// Capsules that stand beside each other. Drawn glass has nothing to merge: the group is its bare content.
Item {
    id: root

    implicitWidth: childrenRect.width
    implicitHeight: childrenRect.height
}
