import QtQuick
import Selvane.Controls

/// Moves a number as a spring does; at once where the user wants no motion.
NumberAnimation {
    id: root

    property alias response: spring.response
    property alias dampingFraction: spring.dampingFraction

    readonly property Spring spring: Spring {
        id: spring
    }

    duration: Theme.reducesMotion ? 0 : spring.duration
    easing: spring.curve
}
