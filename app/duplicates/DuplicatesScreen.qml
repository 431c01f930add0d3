pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// Sets of identical files; of each, one copy stays.
Page {
    id: root

    required property AppState appState
    required property DuplicatesModel model

    readonly property bool isEmpty: model.groupCount === 0
    // Selected, and left out of the list by the search.
    readonly property double hiddenSelected: model.selectedCount - model.shownSelectedCount
    readonly property bool canClean: !model.isWorking && !model.isSearching

    function find() {
        tools.find();
    }

    function clean(count: double, bytes: double, verb: string, goAhead: var) {
        large.ask(model.isLarge(count, bytes), Texts.counted("consent.to_trash", count).arg(Texts.bytes(bytes)), verb,
                  goAhead);
    }

    function undo() {
        if (model.canUndo && !model.isWorking)
            model.undo();
    }

    function startWork() {
        if (!model.isSearching && !model.isWorking)
            model.search();
    }

    title: qsTr("nav.duplicates")
    subtitle: isEmpty ? qsTr("duplicates.subtitle")
                      : Texts.counted("duplicates.groups", model.groupCount) + " · " + Texts.counted(
                            "duplicates.can_go", model.selectedCount)
    aside: isEmpty ? "" : qsTr("duplicates.one_stays")
    actions: [
        MenuButton {
            label: qsTr("duplicates.keep_label")
            enabled: !root.model.isSearching && !root.model.isWorking
            keys: root.model.keepKeys
            current: root.model.keepStrategy
            onChosen: index => {
                if (index === root.model.keepKeys.length - 1)
                    keepPicker.open();
                else
                    root.model.keepStrategy = index;
            }
        },
        PlainButton {
            visible: !root.isEmpty
            enabled: !root.model.isWorking && !root.model.isSearching
            text: qsTr("duplicates.scan_again")
            onClicked: root.model.search()
        },
        PlainButton {
            visible: root.hiddenSelected > 0
            enabled: root.canClean
            text: qsTr("cleanup.clean_all").arg(Texts.count(root.model.selectedCount))
            onClicked: root.clean(root.model.selectedCount, root.model.selectedBytes, text, root.model.cleanSelected)
        },
        PrimaryButton {
            visible: !root.isEmpty
            enabled: root.model.shownSelectedCount > 0 && root.canClean
            symbol: "trash"
            text: root.hiddenSelected > 0
                  ? qsTr("cleanup.clean_shown").arg(Texts.count(root.model.shownSelectedCount))
                  : qsTr("duplicates.clean_count").arg(Texts.count(root.model.selectedCount)).arg(
                        Texts.bytes(root.model.selectedBytes))
            onClicked: root.clean(root.model.shownSelectedCount, root.model.shownSelectedBytes, text,
                                  root.model.cleanShown)
        }
    ]

    Connections {
        target: root.model

        function onCleaned() {
            toast.close();
            completed.open();
        }

        function onRefusalChanged() {
            if (root.model.refusal !== "")
                toast.show(root.model.refusal, "");
            else
                toast.close();
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        ProgressStrip {
            readonly property double done: root.model.stageFiles - root.model.filesLeft

            Layout.fillWidth: true
            visible: root.model.isSearching
            title: [qsTr("duplicates.stage_listing"), qsTr("duplicates.stage_beginnings"),
                    qsTr("duplicates.stage_contents")][root.model.stage] ?? ""
            value: root.model.stage > 0 && root.model.stageFiles > 0 ? done / root.model.stageFiles : -1
            figures: root.model.stage > 0
                     ? Texts.counted("duplicates.progress", root.model.stageFiles).arg(Texts.count(done)).arg(
                           Texts.bytes(root.model.bytesLeft))
                     : Texts.counted("count.files", root.model.filesFound)
            detail: qsTr("duplicates.pipeline")
            onCancelAsked: root.model.cancel()
        }

        RunStrip {
            Layout.fillWidth: true
            run: root.model
            isWorking: root.model.isWorking
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
            visible: root.hiddenSelected > 0
            text: Texts.counted("cleanup.hidden_selected", root.hiddenSelected)
            action: qsTr("action.clear_search")
            onActed: tools.clear()
        }

        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            flush: true

            DuplicateTools {
                id: tools

                width: parent.width
                model: root.model
                canFind: !root.isEmpty || root.model.searchText !== ""
            }

            RowList {
                id: list

                anchors.top: tools.bottom
                anchors.bottom: parent.bottom
                width: parent.width
                visible: !root.isEmpty
                label: qsTr("nav.duplicates")
                model: root.model
                canLook: true
                onRowToggled: row => root.model.toggle(row)
                onLookAsked: row => root.appState.preview.look(root.model.placeAt(row))
                onRowMenuAsked: row => menu.show(root.model.placeAt(row), itemAtIndex(row), true)
                onRowFolded: (row, open) => {
                    const entry = itemAtIndex(row) as DuplicateEntry;
                    if (entry && entry.kind === 0 && entry.expanded !== open)
                        root.model.toggleExpanded(row);
                }
                delegate: DuplicateEntry {
                    width: list.width
                    isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
                    onTouched: {
                        list.forceActiveFocus(Qt.MouseFocusReason);
                        list.currentIndex = index;
                        list.showsCurrent = false;
                    }
                    onToggled: root.model.toggle(index)
                    onFolded: root.model.toggleExpanded(index)
                    onOpenFolderAsked: root.model.openContainingFolder(index)
                    onKeepAsked: root.model.keep(index)
                    onMenuAsked: menu.show(root.model.placeAt(index), this, false)
                }
            }

            EmptyState {
                anchors.fill: list
                visible: !root.isEmpty && list.count === 0
                drawing: "search"
                text: qsTr("duplicates.nothing_matches")
                action: qsTr("action.clear_search")
                onActed: tools.clear()
            }

            EmptyState {
                anchors.fill: list
                visible: root.isEmpty
                drawing: root.model.hasSearched && !root.model.isSearching ? "clean" : "duplicates"
                title: root.model.isSearching ? "" : root.model.hasSearched ? qsTr("duplicates.none_title")
                                                                            : qsTr("duplicates.empty_title")
                text: root.model.isSearching ? qsTr("dashboard.scanning_text")
                                             : root.model.hasSearched ? qsTr("duplicates.none_text")
                                                                      : qsTr("duplicates.empty_text")
                symbol: "search"
                action: root.model.isSearching ? "" : qsTr("duplicates.search")
                onActed: root.model.search()
            }
        }
    }

    PickFolder {
        id: keepPicker

        onPicked: url => root.model.keepIn(url)
    }

    Toast {
        id: toast
    }

    ItemMenu {
        id: menu

        appState: root.appState
        canKeep: true
        onKeepAsked: root.model.keep(list.currentIndex)

        ChoiceItem {
            isChoice: false
            symbol: "duplicates"
            text: qsTr("duplicates.compare")
            onTriggered: {
                compare.row = list.currentIndex;
                compare.open();
            }
        }
    }

    OnDemand {
        id: compare

        property int row: 0

        CompareSheet {
            copies: root.model.copiesAt(compare.row)
            onClosed: list.forceActiveFocus()
        }
    }

    LargeRunQuestion {
        id: large
    }

    OnDemand {
        id: completed

        AlertDialog {
            title: qsTr("duplicates.complete_title")
            message: root.model.resultText
            note: root.model.resultNote
            details: root.model.messages
            extraText: qsTr("action.open_trash")
            onExtraChosen: root.appState.openTrash()
            onClosed: list.forceActiveFocus()
        }
    }
}
