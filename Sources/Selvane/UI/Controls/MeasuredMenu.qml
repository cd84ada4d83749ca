import QtQuick.Templates as T
import Selvane.Controls

/// A menu as its rows know it.
T.Menu {
    id: root

    readonly property MenuMeasure measure: MenuMeasure {
        menu: root
    }
}
