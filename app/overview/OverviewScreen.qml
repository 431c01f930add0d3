pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// Where the disk stands: the ring, the figures, what is reclaimable, and the last runs.
Page {
    id: root

    required property AppState appState
    required property OverviewModel model
    required property MapModel map

    readonly property bool hasResult: appState.hasScanned && !appState.isScanning
    // Under the other figures, beside the disk.
    readonly property bool showsTrashAbove: isWide && model.trashCount > 0

    function startWork() {
        if (!appState.isScanning)
            appState.startScan();
    }

    function undo() {
        const run = (model.recentRuns ?? []).find(run => run.canUndo);
        if (run)
            model.undo(run.id);
    }

    title: qsTr("nav.overview")
    subtitle: appState.isScanning
              ? qsTr("dashboard.scanning_text")
              : appState.hasScanned
                ? qsTr("dashboard.last_scan").arg(Texts.momentInText(appState.lastScanDate)).arg(
                      Texts.counted("count.files", appState.scannedFiles)).arg(
                      Texts.counted("count.in_folders", appState.scannedFolders))
                : appState.earlierScanDate > 0
                  ? qsTr("dashboard.last_sums").arg(Texts.momentInText(appState.earlierScanDate)).arg(
                        Texts.bytes(appState.earlierScanBytes))
                  : qsTr("dashboard.no_scan")
    actions: [
        PrimaryButton {
            enabled: !root.appState.isScanning
            symbol: "search"
            text: root.appState.isScanning ? qsTr("action.scanning") : qsTr("action.scan")
            onClicked: root.appState.startScan()
        }
    ]

    Component.onCompleted: model.reloadTrash()

    ScrollColumn {
        OnlyWhen {
            holds: root.appState.isScanning

            ProgressStrip {
                Layout.fillWidth: true
                title: qsTr("action.scanning")
                figures: Texts.counted("count.items", root.appState.scanItems)
                detail: root.appState.scanStatus
                onCancelAsked: root.appState.cancelScan()
            }
        }

        OnlyWhen {
            holds: root.appState.scanFailed !== "" && !root.appState.isScanning

            Notice {
                Layout.fillWidth: true
                isWarning: true
                text: root.appState.scanFailed
                action: qsTr("cleanup.choose_folders")
                onActed: root.appState.selectedNavigation = AppNavigationItem.Settings
            }
        }

        Item {
            id: figures

            readonly property int lowHeight: 102
            // The cards beside the disk's, or below it.
            readonly property real besideX: root.isNarrow ? 0 : Math.round((width + Theme.gap)
                                                                        * (root.showsTrashAbove ? 0.46 : 0.63))
            readonly property real besideY: root.isNarrow ? disk.height + Theme.gap : 0
            readonly property real besideWidth: width - besideX
            readonly property bool arePaired: root.isNarrow || root.showsTrashAbove
            readonly property real lowWidth: arePaired ? Math.floor((besideWidth - Theme.gap) / 2) : besideWidth

            Layout.fillWidth: true
            implicitHeight: root.isNarrow ? besideY + lowHeight : disk.height

            DiskCard {
                id: disk

                width: root.isNarrow ? parent.width : figures.besideX - Theme.gap
                height: implicitHeight
                appState: root.appState
                onReviewAsked: root.model.showArea("", "")
            }

            FigureCard {
                x: figures.besideX
                y: figures.besideY
                width: figures.lowWidth
                height: figures.lowHeight
                caption: qsTr("dashboard.lifetime_reclaimed")
                figure: Texts.bytes(root.appState.lifetimeReclaimedBytes)
                note: root.model.runCount > 0
                      ? qsTr("dashboard.runs_since").arg(Texts.counted("count.runs", root.model.runCount)).arg(
                            Texts.day(root.model.firstRunDate))
                      : qsTr("dashboard.no_runs_yet")
            }

            FigureCard {
                x: figures.arePaired ? figures.besideX + figures.lowWidth + Theme.gap : figures.besideX
                y: figures.arePaired ? figures.besideY : figures.lowHeight + Theme.gap
                width: figures.lowWidth
                height: figures.lowHeight
                caption: qsTr("dashboard.next_cleanup")
                figure: root.model.nextScheduledRun > 0 ? Texts.moment(root.model.nextScheduledRun)
                                                       : qsTr("dashboard.not_scheduled")
                note: root.model.nextScheduledRun > 0
                      ? Texts.counted("count.rules", root.model.enabledRules) + " · "
                        + qsTr(root.model.scheduleFrequencyKey)
                      : qsTr("dashboard.not_scheduled_note")
            }

            OnlyWhen {
                holds: root.showsTrashAbove

                TrashCard {
                    x: figures.besideX
                    y: figures.lowHeight + Theme.gap
                    width: figures.besideWidth
                    height: figures.lowHeight
                    appState: root.appState
                    model: root.model
                }
            }
        }

        OnlyWhen {
            holds: root.model.trashCount > 0 && !root.showsTrashAbove

            TrashCard {
                Layout.fillWidth: true
                appState: root.appState
                model: root.model
            }
        }

        OnlyWhen {
            holds: root.map.daysUntilFull > 0

            Notice {
                Layout.fillWidth: true
                isWarning: true
                text: qsTr("map.full_soon").arg(Texts.counted("count.days", root.map.daysUntilFull))
                detail: root.map.grownFolders.length > 0
                        ? qsTr("map.mostly").arg(root.map.grownFolders[0].name + " (+" + Texts.bytes(
                                                     root.map.grownFolders[0].bytes) + ")") : ""
            }
        }

        LoadedWhen {
            Layout.fillWidth: true
            holds: root.map.hasGrowth
            file: Qt.resolvedUrl("GrowthCard.qml")
            properties: ({model: root.map})
        }

        MapCard {
            Layout.fillWidth: true
            model: root.map
        }

        ReclaimableCard {
            Layout.fillWidth: true
            appState: root.appState
            model: root.model
        }

        RunsCard {
            Layout.fillWidth: true
            appState: root.appState
            model: root.model
        }
    }

    component FigureCard: Card {
        id: figureCard

        property alias caption: content.caption
        property alias figure: content.figure
        property alias note: content.note

        Figure {
            id: content

            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
        }
    }
}
