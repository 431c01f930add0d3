pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// Every run with what it moved, where from and where to; each can be brought back.
Page {
    id: root

    required property AppState appState
    required property HistoryModel model

    readonly property bool isEmpty: model.runCount === 0

    function find() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    function undo() {
        const first = list.itemAtIndex(0) as HistoryEntry;
        if (first && first.canRestore && !model.isRestoring)
            model.restoreRun(0);
    }

    // A run unfolds, an item is chosen, and what is chosen comes back.
    function toggle(row: int) {
        const entry = list.itemAtIndex(row) as HistoryEntry;
        if (!entry)
            return;
        if (entry.isRun)
            root.model.toggleExpanded(row);
        else if (!entry.isFoot)
            root.model.toggleChosen(row);
        else if (!root.model.isRestoring)
            root.model.restoreChosen(row);
    }

    title: qsTr("nav.history")
    subtitle: isEmpty ? qsTr("history.subtitle_empty") : qsTr("history.subtitle")
    actions: [
        SearchField {
            id: search

            implicitWidth: 220
            visible: !root.isEmpty
            text: root.model.searchText
            onTextEdited: searchDelay.restart()
            onTextChanged: if (text === "" && root.model.searchText !== "") searchDelay.restart()
        },
        MenuButton {
            visible: !root.isEmpty
            label: qsTr("map.kind")
            keys: root.model.kindKeys
            current: root.model.kind
            onChosen: index => root.model.kind = index
        }
    ]

    Component.onCompleted: model.figures.isShown = true
    // The model may go first when the program ends.
    Component.onDestruction: if (model) model.figures.isShown = false

    Timer {
        id: searchDelay

        interval: 120
        onTriggered: root.model.searchText = search.text
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        RunStrip {
            Layout.fillWidth: true
            isWorking: root.model.isRestoring
            isUndoing: true
            done: root.model.progressDone
            total: root.model.progressTotal
            detail: root.model.progressText
            outcome: root.model.resultText
            resultNote: root.model.resultNote
            onCancelAsked: root.model.cancel()
            onDismissed: root.model.clearResult()
        }

        Notice {
            Layout.fillWidth: true
            visible: !root.model.isRestoring && root.model.messages.length > 0
            isWarning: true
            text: Texts.counted("history.not_restored", root.model.messages.length)
            detail: Texts.firstLines(root.model.messages, 4)
            action: root.model.messages.length > 4 ? qsTr("history.show_all_warnings") : ""
            onActed: warnings.open()
        }

        Notice {
            Layout.fillWidth: true
            // The strip names the first few.
            visible: root.model.renamedItems.length > 3
            text: qsTr("history.renamed_title")
            detail: Texts.firstLines(root.model.renamedItems, 4)
            action: root.model.renamedItems.length > 4 ? qsTr("history.show_all_warnings") : ""
            onActed: renamed.open()
        }

        FigureCards {
            Layout.fillWidth: true
            Layout.fillHeight: false
            visible: !root.isEmpty
            isKnown: root.model.figures.isKnown
            movedBytes: root.model.figures.movedBytes
            restoredBytes: root.model.figures.restoredBytes
            inTrashBytes: root.model.figures.inTrashBytes
            weeks: root.model.figures.weeks
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            RowList {
                id: list

                anchors.fill: parent
                visible: count > 0
                section.property: "day"
                // The list makes no component that is bound to its file for a section.
                section.delegate: Qt.createComponent("DayHead.qml")
                label: qsTr("nav.history")
                model: root.model
                canLook: true
                onRowToggled: row => root.toggle(row)
                onRangeAsked: (from, to) => root.model.chooseRange(from, to)
                onLookAsked: row => {
                    if (!root.appState.preview.look(root.model.placeAt(row)))
                        root.toggle(row);
                }
                onRowMenuAsked: row => menu.showFor(row, true)
                onRowFolded: (row, open) => {
                    const entry = itemAtIndex(row) as HistoryEntry;
                    if (entry && entry.isRun && entry.expanded !== open)
                        root.model.toggleExpanded(row);
                }
                delegate: HistoryEntry {
                    width: list.width
                    isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
                    isOutlined: root.model.searchText === ""
                    isBusy: root.model.isRestoring
                    onToggled: {
                        list.forceActiveFocus(Qt.MouseFocusReason);
                        list.showsCurrent = false;
                        list.currentIndex = index;
                        list.act();
                    }
                    onRangeAsked: {
                        list.currentIndex = index;
                        root.model.chooseRange(list.anchor, index);
                    }
                    onRestoreAsked: isRun ? root.model.restoreRun(index) : root.model.restoreChosen(index)
                    onOpenFolderAsked: root.model.openContainingFolder(index)
                    onMenuAsked: menu.showFor(index, false)
                }
            }

            Card {
                anchors.fill: parent
                visible: root.model.isLoaded && list.count === 0
                flush: true

                EmptyState {
                    anchors.fill: parent
                    drawing: root.isEmpty ? "history" : "search"
                    title: root.isEmpty ? qsTr("history.empty_title") : ""
                    text: root.isEmpty ? qsTr("history.empty_text") : qsTr("history.nothing_matches")
                    action: root.isEmpty ? "" : qsTr("action.clear_search")
                    onActed: {
                        search.clear();
                        root.model.searchText = "";
                        root.model.kind = 0;
                    }
                }
            }
        }
    }

    ItemMenu {
        id: menu

        property bool canRestore: false
        property bool isRun: false

        function showFor(row: int, byKey: bool) {
            const entry = list.itemAtIndex(row) as HistoryEntry;
            list.currentIndex = row;
            canRestore = (entry?.canRestore ?? false) && !root.model.isRestoring;
            isRun = entry?.isRun ?? true;
            show(root.model.placeAt(row), entry, byKey);
        }

        appState: root.appState

        ChoiceItem {
            isChoice: false
            enabled: menu.canRestore
            symbol: "undo"
            text: menu.isRun ? qsTr("history.restore_run") : qsTr("history.restore")
            onTriggered: menu.isRun ? root.model.restoreRun(list.currentIndex)
                                    : root.model.restoreEntry(list.currentIndex)
        }
    }

    OnDemand {
        id: warnings

        AlertDialog {
            title: Texts.counted("history.not_restored", root.model.messages.length)
            message: qsTr("history.warnings_text")
            details: root.model.messages
        }
    }

    OnDemand {
        id: renamed

        AlertDialog {
            title: qsTr("history.renamed_title")
            details: root.model.renamedItems
        }
    }
}
