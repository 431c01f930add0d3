pragma ComponentBehavior: Bound

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
    readonly property bool isFiltered: model.filters.length > 0
    // Selected, and left out of the list by the search or a filter.
    readonly property double hiddenSelected: isFiltered ? model.selectedCount - model.shownSelectedCount : 0
    readonly property double offeredCount: hiddenSelected > 0 ? model.shownSelectedCount : model.selectedCount
    readonly property double offeredBytes: hiddenSelected > 0 ? model.shownSelectedBytes : model.selectedBytes
    readonly property bool canClean: !isWorking && !appState.isScanning
    // Scanning again would not help.
    readonly property bool isStuck: appState.scanFailed !== "" && !appState.isScanning

    readonly property bool isBare: isStuck && appState.homeFolders.length > 0

    function find() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    function selectAll() {
        model.selectAll();
    }

    function deselectAll() {
        model.deselectAll();
    }

    function clean(count: double, bytes: double, verb: string, goAhead: var) {
        large.ask(model.isLarge(count, bytes), Texts.counted("consent.to_trash", count).arg(Texts.bytes(bytes)), verb,
                  goAhead);
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
            run: root.model
            isWorking: root.isWorking
            isUndoing: root.model.isUndoing
            done: root.model.progressDone
            total: root.model.progressTotal
            detail: pace === "" ? root.model.progressText : pace
            outcome: root.model.resultText
            resultNote: root.model.resultNote
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
                    appState: root.appState
                    isFiltered: root.isFiltered
                    onExplainAsked: row => explain.show(row)
                }
            }

            PreviewPanel {
                id: panel

                anchors.right: parent.right
                y: root.isNarrow ? parent.height - height : 0
                // In a wide window the names of categories are whole.
                width: root.isNarrow ? parent.width : root.isWide ? 300 : 250
                height: implicitHeight
                isWide: root.isNarrow
                currentFree: root.model.currentFreeBytes
                selected: root.offeredBytes
                projectedFree: root.model.currentFreeBytes + root.offeredBytes
                action: root.model.isCleaning
                        ? qsTr("action.cleaning")
                        : (root.hiddenSelected > 0 ? qsTr("cleanup.clean_shown") : qsTr("cleanup.clean_count")).arg(
                              Texts.count(root.offeredCount))
                actionEnabled: root.offeredCount > 0 && root.canClean
                otherAction: root.hiddenSelected > 0 && root.canClean
                             ? qsTr("cleanup.clean_all").arg(Texts.count(root.model.selectedCount)) : ""
                otherNote: root.hiddenSelected > 0 ? Texts.counted("cleanup.hidden_selected", root.hiddenSelected) : ""
                onActed: root.clean(root.offeredCount, root.offeredBytes, action, root.hiddenSelected > 0
                                    ? root.model.cleanShown : root.model.cleanSelected)
                onOtherActed: root.clean(root.model.selectedCount, root.model.selectedBytes, otherAction,
                                         root.model.cleanSelected)
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
            // Its content fills it, and has no size of its own.
            implicitWidth: 0
            implicitHeight: 0
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

    LargeRunQuestion {
        id: large
    }

    OnDemand {
        id: completed

        AlertDialog {
            title: qsTr("cleanup.complete_title")
            message: root.model.resultText
            note: root.model.resultNote
            details: root.model.messages
            extraText: qsTr("action.open_trash")
            onExtraChosen: root.appState.openTrash()
            onClosed: list.forceActiveFocus()
        }
    }

    OnDemand {
        id: explain

        property string text: ""

        function show(row: int) {
            text = root.model.explanation(row);
            open();
        }

        AlertDialog {
            title: qsTr("cleanup.why")
            message: explain.text
            onClosed: list.forceActiveFocus()
        }
    }
}
