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
                            "duplicates.can_go", model.selectedCount) + " · " + qsTr("duplicates.one_stays")
    actions: [
        PlainButton {
            text: qsTr("duplicates.folders")
            trailingSymbol: "chevron-down"
            enabled: !root.model.isSearching && !root.model.isWorking
            Accessible.role: Accessible.ButtonMenu
            onClicked: rootsMenu.open()

            ChoiceMenu {
                id: rootsMenu

                y: parent.height + 6
                x: Math.min(0, parent.width - width)

                Repeater {
                    model: root.model.roots

                    ChoiceItem {
                        required property var modelData

                        text: modelData.name
                        isCurrent: modelData.included
                        Accessible.role: Accessible.CheckBox
                        onTriggered: root.model.setRootIncluded(modelData.path, !modelData.included)
                    }
                }

                Repeater {
                    model: root.model.references

                    ChoiceItem {
                        required property var modelData

                        text: qsTr("keep.compared").arg(modelData.name)
                        isCurrent: true
                        Accessible.role: Accessible.CheckBox
                        onTriggered: root.model.removeReference(modelData.path)
                    }
                }

                ChoiceItem {
                    isChoice: false
                    symbol: "plus"
                    text: qsTr("keep.compare_with")
                    onTriggered: picker.open()
                }
            }

            PickFolder {
                id: picker

                onPicked: url => root.model.addReference(url)
            }
        },
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
        PrimaryButton {
            visible: !root.isEmpty
            enabled: root.model.selectedCount > 0 && !root.model.isWorking && !root.model.isSearching
            symbol: "trash"
            text: qsTr("duplicates.clean_count").arg(Texts.count(root.model.selectedCount)).arg(
                      Texts.bytes(root.model.selectedBytes))
            onClicked: large.ask(root.model.isLarge(root.model.selectedCount, root.model.selectedBytes), Texts.counted(
                                     "consent.to_trash", root.model.selectedCount).arg(
                                     Texts.bytes(root.model.selectedBytes)), text, root.model.cleanSelected)
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
            isWorking: root.model.isWorking
            done: root.model.progressDone
            total: root.model.progressTotal
            detail: root.model.progressText
            outcome: root.model.resultText
            resultNote: root.model.resultNote
            canUndo: root.model.canUndo
            onCancelAsked: root.model.cancel()
            onUndoAsked: root.model.undo()
        }

        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            flush: true

            RowList {
                id: list

                anchors.fill: parent
                visible: !root.isEmpty
                label: qsTr("nav.duplicates")
                model: root.model
                onRowToggled: row => root.model.toggle(row)
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
                anchors.fill: parent
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

        ChoiceItem {
            isChoice: false
            symbol: "lock"
            text: qsTr("keep.keep")
            onTriggered: root.model.keep(list.currentIndex)
        }
    }

    LargeRunQuestion {
        id: large
    }

    AlertDialog {
        id: completed

        title: qsTr("duplicates.complete_title")
        message: root.model.resultText
        note: root.model.resultNote
        details: root.model.messages
        extraText: qsTr("action.open_trash")
        onExtraChosen: root.appState.openTrash()
        onClosed: list.forceActiveFocus()
    }
}
