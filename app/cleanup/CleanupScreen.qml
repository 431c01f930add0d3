import QtQuick
import QtQuick.Layouts
import Orvane

// The result of a scan, by category; ticked items go to the Trash.
Page {
    id: root

    required property AppState appState
    required property CleanupModel model
    required property OverviewModel overview

    readonly property bool isEmpty: model.itemCount === 0
    readonly property bool isWorking: model.isCleaning || model.isUndoing
    readonly property bool isFiltered: model.searchText !== "" || model.riskFilter >= 0 || model.categoryFilter !== ""
                                       || model.folderFilter !== ""
    // Scanning again would not help.
    readonly property bool isStuck: appState.scanFailed !== "" && !appState.isScanning

    readonly property bool isBare: isStuck && appState.homeFolders.length > 0

    function find() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    function selectRecommended() {
        model.selectRecommended();
    }

    function deselectAll() {
        model.deselectAll();
    }

    function undo() {
        if (model.canUndo && !isWorking)
            model.undo();
    }

    function startWork() {
        if (!appState.isScanning && !isWorking)
            appState.startScan();
    }

    title: qsTr("nav.cleanup")
    subtitle: isEmpty
              ? appState.isScanning ? qsTr("dashboard.scanning_text")
                                    : appState.hasScanned ? qsTr("cleanup.nothing_title") : qsTr("dashboard.no_scan")
              : Texts.counted("cleanup.items_found", model.itemCount) + " · " + Texts.counted(
                    "cleanup.items_selected", model.selectedCount)
    actions: [
        SearchField {
            id: search

            visible: !root.isEmpty
            text: root.model.searchText
            onTextEdited: searchDelay.restart()
            onTextChanged: if (text === "" && root.model.searchText !== "") searchDelay.restart()
        },
        MenuButton {
            visible: !root.isEmpty
            label: qsTr("cleanup.filter_by_risk")
            keys: root.model.riskKeys
            current: root.model.riskFilter + 1
            onChosen: index => root.model.riskFilter = index - 1
        },
        MenuButton {
            visible: !root.isEmpty
            label: qsTr("cleanup.sort_by")
            keys: root.model.sortKeys
            current: root.model.sort
            onChosen: index => root.model.sort = index
        },
        PlainButton {
            visible: !root.isEmpty
            enabled: !root.isWorking
            text: root.appState.isScanning ? qsTr("action.cancel") : qsTr("action.scan")
            onClicked: root.appState.isScanning ? root.appState.cancelScan() : root.appState.startScan()
        }
    ]

    Timer {
        id: searchDelay

        interval: 120
        onTriggered: root.model.searchText = search.text
    }

    Connections {
        target: root.model

        function onCleaned() {
            completed.open();
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        ProgressStrip {
            Layout.fillWidth: true
            visible: root.appState.isScanning
            title: qsTr("action.scanning")
            figures: Texts.counted("count.items", root.appState.scanItems)
            detail: root.appState.scanStatus
            onCancelAsked: root.appState.cancelScan()
        }

        RunStrip {
            Layout.fillWidth: true
            isWorking: root.isWorking
            isUndoing: root.model.isUndoing
            done: root.model.progressDone
            total: root.model.progressTotal
            detail: root.model.progressText
            outcome: root.model.resultText
            canUndo: root.model.canUndo
            onCancelAsked: root.model.cancel()
            onUndoAsked: root.model.undo()
        }

        Notice {
            Layout.fillWidth: true
            visible: root.isStuck && !root.isEmpty
            isWarning: true
            text: root.appState.scanFailed
            action: qsTr("cleanup.choose_folders")
            onActed: root.appState.selectedNavigation = AppNavigationItem.Settings
        }

        Notice {
            Layout.fillWidth: true
            visible: root.appState.keptText !== "" && !root.appState.isScanning
            text: root.appState.keptText
            action: qsTr("nav.settings")
            onActed: root.appState.selectedNavigation = AppNavigationItem.Settings
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: !root.isEmpty

            Card {
                anchors.fill: parent
                anchors.rightMargin: root.isNarrow ? 0 : panel.width + Theme.gap
                anchors.bottomMargin: root.isNarrow ? panel.height + Theme.gap : 0
                flush: true

                CleanupList {
                    id: list

                    anchors.fill: parent
                    screen: root
                    model: root.model
                    isFiltered: root.isFiltered
                    onExplainAsked: row => explain.show(row)
                }
            }

            PreviewPanel {
                id: panel

                anchors.right: parent.right
                y: root.isNarrow ? parent.height - height : 0
                width: root.isNarrow ? parent.width : 250
                height: implicitHeight
                isWide: root.isNarrow
                currentFree: root.model.currentFreeBytes
                selected: root.model.selectedBytes
                projectedFree: root.model.projectedFreeBytes
                action: root.model.isCleaning ? qsTr("action.cleaning")
                                              : qsTr("cleanup.clean_count").arg(Texts.count(root.model.selectedCount))
                actionEnabled: root.model.selectedCount > 0 && !root.isWorking && !root.appState.isScanning
                onActed: root.model.cleanSelected()
            }

            CategoriesCard {
                anchors.right: parent.right
                width: panel.width
                y: panel.height + Theme.gap
                // It ends with the list where next to nothing lacks.
                height: room - implicitHeight < 44 ? room : implicitHeight
                visible: !root.isNarrow && shown.length > 1
                room: parent.height - y
                areas: root.overview.areas
            }
        }

        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: root.isEmpty

            ScrollColumn {
                anchors.fill: parent
                visible: root.isBare

                HomeFolders {
                    Layout.fillWidth: true
                    Layout.margins: 24
                    appState: root.appState
                }
            }

            EmptyState {
                anchors.fill: parent
                visible: !root.isBare
                drawing: root.appState.isScanning ? "scan"
                                                  : root.isStuck ? "error"
                                                                                    : root.appState.hasScanned ? "clean"
                                                                                                               : "scan"
                title: root.isStuck || root.appState.isScanning ? ""
                                                                : root.appState.hasScanned ? qsTr("cleanup.nothing_title")
                                                                                           : qsTr("cleanup.empty_title")
                text: root.isStuck ? root.appState.scanFailed
                                   : root.appState.isScanning ? qsTr("dashboard.scanning_text")
                                                              : root.appState.hasScanned ? qsTr("cleanup.nothing_text")
                                                                                         : qsTr("cleanup.empty_text")
                symbol: root.isStuck ? "folder" : "search"
                action: root.isStuck ? qsTr("cleanup.choose_folders")
                                     : root.appState.isScanning ? qsTr("action.scanning") : qsTr("action.scan")
                actionEnabled: !root.appState.isScanning
                onActed: {
                    if (root.isStuck)
                        root.appState.selectedNavigation = AppNavigationItem.Settings;
                    else
                        root.appState.startScan();
                }
            }
        }
    }

    AlertDialog {
        id: completed

        title: qsTr("cleanup.complete_title")
        message: root.model.resultText
        note: qsTr("cleanup.space_note")
        details: root.model.messages
        extraText: qsTr("action.open_trash")
        onExtraChosen: root.appState.openTrash()
        onClosed: list.forceActiveFocus()
    }

    AlertDialog {
        id: explain

        function show(row: int) {
            message = root.model.explanation(row);
            open();
        }

        title: qsTr("cleanup.why")
        onClosed: list.forceActiveFocus()
    }
}
