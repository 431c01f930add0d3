pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The last runs, each with Undo while it can be undone.
Card {
    id: root

    required property AppState appState
    required property OverviewModel model

    readonly property var runs: model.recentRuns ?? []

    implicitHeight: layout.implicitHeight + 2 * padding - 6

    ColumnLayout {
        id: layout

        width: parent.width
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.bottomMargin: 10

            HeadingText {
                Layout.fillWidth: true
                text: qsTr("dashboard.recent_runs")
            }

            LinkButton {
                visible: root.runs.length > 0
                implicitHeight: 22
                text: qsTr("dashboard.all_runs")
                onClicked: root.appState.selectedNavigation = AppNavigationItem.History
            }
        }

        Repeater {
            model: root.runs

            RunLine {}
        }

        Divider {
            Layout.fillWidth: true
            visible: root.runs.length === 0
        }

        BodyText {
            Layout.fillWidth: true
            Layout.topMargin: 12
            Layout.bottomMargin: 4
            visible: root.runs.length === 0
            color: Theme.muted
            text: qsTr("dashboard.no_runs_text")
            wrapMode: Text.Wrap
        }
    }

    component RunLine: ColumnLayout {
        id: run

        required property var modelData

        Layout.fillWidth: true
        spacing: 0

        Divider {
            Layout.fillWidth: true
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.preferredHeight: 44
            spacing: 12

            BodyText {
                Layout.preferredWidth: 190
                Layout.minimumWidth: 100
                text: Texts.moment(run.modelData.date)
            }

            BodyText {
                Layout.fillWidth: true
                text: qsTr(run.modelData.kindKey) + " · " + Texts.counted("count.items", run.modelData.count)
                color: Theme.muted
            }

            BodyText {
                text: Texts.bytes(run.modelData.bytes)
                font.weight: Font.DemiBold
            }

            Item {
                Layout.preferredWidth: Math.max(78, undo.implicitWidth)
                Layout.preferredHeight: 30

                LinkButton {
                    id: undo

                    anchors.right: parent.right
                    visible: run.modelData.canUndo
                    symbol: "undo"
                    text: qsTr("dashboard.undo")
                    onClicked: root.model.undo(run.modelData.id)
                }

                CaptionText {
                    anchors.right: parent.right
                    anchors.rightMargin: 8
                    anchors.verticalCenter: parent.verticalCenter
                    visible: !run.modelData.canUndo
                    text: run.modelData.stateKey ? qsTr(run.modelData.stateKey) : ""
                }
            }
        }
    }
}
