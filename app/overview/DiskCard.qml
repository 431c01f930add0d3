pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The disk as a ring with its figures beside it: in its middle what one press frees, and what is worth a look only
// beside it.
Card {
    id: root

    required property AppState appState
    signal reviewAsked

    readonly property bool hasResult: appState.hasScanned && !appState.isScanning
                                      && appState.proposedBytes + appState.reviewBytes > 0

    implicitHeight: 220

    Ring {
        id: ring

        x: 10
        anchors.verticalCenter: parent.verticalCenter
        used: root.appState.usedBytes
        free: root.appState.freeBytes
        reclaimable: root.appState.proposedBytes
        figure: root.appState.hasScanned || root.appState.isScanning
                ? Texts.bytes(root.appState.proposedBytes)
                : Texts.percent(root.appState.usedBytes / Math.max(1, root.appState.totalBytes))
        caption: root.appState.hasScanned || root.appState.isScanning ? qsTr("dashboard.reclaimable_now")
                                                                      : qsTr("dashboard.used")
        summary: qsTr("dashboard.ring_summary").arg(Texts.bytes(root.appState.usedBytes)).arg(
                     Texts.bytes(root.appState.proposedBytes)).arg(Texts.bytes(root.appState.freeBytes))
    }

    ColumnLayout {
        anchors.left: ring.right
        anchors.leftMargin: 38
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        Legend {
            label: qsTr("dashboard.used")
            value: Texts.bytes(root.appState.usedBytes)
            swatch: Theme.used
        }

        Legend {
            label: qsTr("dashboard.reclaimable")
            value: root.appState.hasScanned || root.appState.isScanning ? Texts.bytes(root.appState.proposedBytes)
                                                                        : "–"
            swatch: Theme.accent
        }

        Legend {
            visible: root.appState.reviewBytes > 0
            label: qsTr("dashboard.worth_a_look")
            value: Texts.bytes(root.appState.reviewBytes)
            swatch: Theme.review
        }

        Legend {
            label: qsTr("dashboard.free")
            value: Texts.bytes(root.appState.freeBytes)
            swatch: Theme.line
        }

        Divider {
            Layout.fillWidth: true
            Layout.topMargin: 2
        }

        CaptionText {
            Layout.fillWidth: true
            visible: !root.hasResult
            text: qsTr("dashboard.promise")
            wrapMode: Text.Wrap
        }

        // Nothing moves there before it was seen. The screen's one primary action is the scan.
        PlainButton {
            visible: root.hasResult
            symbol: "cleanup"
            text: qsTr("dashboard.review").arg(Texts.bytes(root.appState.proposedBytes > 0 ? root.appState.proposedBytes
                                                                                           : root.appState.reviewBytes))
            onClicked: root.reviewAsked()
        }
    }

    component Legend: RowLayout {
        id: legend

        property string label
        property string value
        property color swatch

        Layout.fillWidth: true
        spacing: 10

        Rectangle {
            implicitWidth: 10
            implicitHeight: 10
            radius: 3
            color: legend.swatch
        }

        BodyText {
            Layout.fillWidth: true
            text: legend.label
        }

        BodyText {
            text: legend.value
            font.weight: Font.DemiBold
        }
    }
}
