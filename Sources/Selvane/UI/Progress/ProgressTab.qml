import QtQuick
import Selvane.Controls
import Selvane.Progress

/// The popover's page of what the user has done: the streak, today's goal, and the focus of the last weeks.
Item {
    id: root

    required property ProgressModel model

    implicitWidth: 348
    implicitHeight: 236

    Component.onDestruction: model.isShown = false

    Binding {
        target: root.model
        property: "isShown"
        value: root.visible && root.Window.visibility !== Window.Hidden
    }

    TipArea {
        id: streak

        x: 16
        y: 8
        width: streakLabel.x + streakLabel.width
        height: 40

        name: root.model.streakDescription
        tip: root.model.milestone

        Symbol {
            id: flame

            // The flame is narrower than its place; its edge stands above that of the figures below.
            x: -4
            anchors.verticalCenter: parent.verticalCenter
            name: "flame.fill"
            size: 20
            weight: Symbol.Semibold
            color: Theme.primaryText
        }

        Text {
            id: streakNumber

            anchors.left: flame.right
            anchors.leftMargin: 3
            anchors.verticalCenter: parent.verticalCenter
            text: root.model.streak
            color: Theme.primaryText
            font.pixelSize: 24
            font.weight: Font.DemiBold
        }

        Text {
            id: streakLabel

            anchors.left: streakNumber.right
            anchors.leftMargin: 6
            anchors.baseline: streakNumber.baseline
            text: root.model.streakLabel
            color: Theme.secondaryText
            font.pixelSize: Theme.callout
        }
    }

    GoalRing {
        anchors.right: heatmap.right
        y: streak.y
        minutes: root.model.todayMinutes
        goal: root.model.dailyGoalMinutes
    }

    Row {
        x: streak.x
        y: 56
        height: 13
        spacing: 14

        MetaStat {
            symbol: "trophy"
            name: root.model.best
        }

        MetaStat {
            symbol: "snowflake"
            name: root.model.freezes
            tip: root.model.freezesTooltip
        }

        MetaStat {
            visible: root.model.score !== ""
            symbol: "scope"
            name: root.model.score
            tip: root.model.scoreTooltip
        }
    }

    HeatmapView {
        id: heatmap

        x: streak.x
        y: 79
        days: root.model.heatmap
        weeks: 18
        cell: 12
        gap: 4
        offeredWidth: 316
    }

    HeatmapLegend {
        anchors.right: heatmap.right
        y: 212
    }
}
