pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// One folder, what would move where, and nothing until it is applied.
Page {
    id: root

    required property AppState appState
    required property OrganizeModel model

    readonly property bool isBusy: model.isWorking || model.isSearching
    readonly property bool isEmpty: model.moveCount === 0

    function undo() {
        if (model.canUndo && !isBusy)
            model.undo();
    }

    function takeFolder(url: string): bool {
        if (!isBusy)
            model.chooseFolder(url);
        return true;
    }

    function selectAll() {
        model.selectAll(true);
    }

    function deselectAll() {
        model.selectAll(false);
    }

    function startWork() {
        if (model.folder !== "" && !isBusy)
            model.analyze();
    }

    title: qsTr("nav.organize")
    subtitle: isEmpty ? qsTr("organize.subtitle")
                      : Texts.counted("organize.moves", model.moveCount) + " · " + Texts.counted(
                            "cleanup.items_selected", model.selectedCount)
    actions: [
        PlainButton {
            visible: !root.isEmpty
            enabled: !root.isBusy
            text: qsTr("organize.analyze_again")
            onClicked: root.model.analyze()
        },
        PrimaryButton {
            visible: !root.isEmpty
            enabled: root.model.selectedCount > 0 && !root.isBusy
            symbol: "organize"
            text: qsTr("organize.apply_count").arg(Texts.count(root.model.selectedCount)).arg(
                      Texts.bytes(root.model.selectedBytes))
            onClicked: large.ask(root.model.isLarge(root.model.selectedCount, root.model.selectedBytes), Texts.counted(
                                     "consent.to_folders", root.model.selectedCount).arg(
                                     Texts.bytes(root.model.selectedBytes)), text, root.model.apply)
        }
    ]

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        OrganizeSetup {
            Layout.fillWidth: true
            model: root.model
            enabled: !root.isBusy
        }

        ProgressStrip {
            Layout.fillWidth: true
            visible: root.model.isSearching
            title: qsTr("organize.analyzing")
            figures: root.model.progressText
            onCancelAsked: root.model.cancel()
        }

        RunStrip {
            Layout.fillWidth: true
            run: root.model
            isWorking: root.model.isWorking
            workTitle: qsTr("organize.applying")
            done: root.model.progressDone
            total: root.model.progressTotal
            detail: pace === "" ? root.model.progressText : pace
            outcome: root.model.resultText
            resultNote: root.model.resultNote
            canUndo: root.model.canUndo
            undoLabel: qsTr("dashboard.undo")
            onCancelAsked: root.model.cancel()
            onUndoAsked: root.model.undo()
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.messages.length > 0 && !root.isBusy
            isWarning: true
            text: Texts.firstLines(root.model.messages, 4)
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.notices.length > 0 && !root.isBusy
            text: Texts.firstLines(root.model.notices, 8)
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.learned !== ""
            text: root.model.learned
            action: qsTr("organize.forget")
            onActed: root.model.forgetLearned()
        }

        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            flush: true

            RowList {
                id: list

                anchors.fill: parent
                visible: !root.isEmpty
                label: qsTr("nav.organize")
                model: root.model
                canLook: true
                onRowToggled: row => root.model.toggle(row)
                onLookAsked: row => {
                    if (!root.appState.preview.look(root.model.placeAt(row)))
                        root.model.toggle(row);
                }
                onRowMenuAsked: row => menu.show(root.model.placeAt(row), itemAtIndex(row), true)
                onRowFolded: (row, open) => {
                    const entry = itemAtIndex(row) as OrganizeEntry;
                    if (entry && entry.kind === 0 && entry.expanded !== open)
                        root.model.toggleExpanded(row);
                }
                delegate: OrganizeEntry {
                    width: list.width
                    isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
                    onTouched: {
                        list.forceActiveFocus(Qt.MouseFocusReason);
                        list.currentIndex = index;
                        list.showsCurrent = false;
                    }
                    onToggled: root.model.toggle(index)
                    onFolded: root.model.toggleExpanded(index)
                    onRenameAsked: rename.ask(index, name)
                    onMenuAsked: menu.show(root.model.placeAt(index), this, false)
                }
            }

            EmptyState {
                anchors.fill: parent
                visible: root.isEmpty
                drawing: root.model.hasAnalyzed && !root.model.isSearching ? "clean" : "organize"
                title: root.model.hasAnalyzed && !root.isBusy ? qsTr("organize.tidy_title") : ""
                text: root.model.hasAnalyzed && !root.isBusy ? qsTr("organize.tidy_text")
                                                             : root.model.folder === "" ? qsTr("organize.empty_text")
                                                                                      : qsTr("organize.chosen_text")
                action: root.isBusy ? "" : root.model.folder === "" ? qsTr("organize.choose_folder") : qsTr("organize.analyze")
                symbol: root.model.folder === "" ? "folder" : "search"
                onActed: root.model.folder === "" ? picker.open() : root.model.analyze()
            }
        }
    }

    Sheet {
        id: rename

        property int row: -1

        function ask(row: int, name: string) {
            rename.row = row;
            field.text = name;
            open();
            field.forceActiveFocus();
            field.selectAll();
        }

        function accept() {
            if (field.text.trim() === "")
                return;
            root.model.renameGroup(row, field.text.trim());
            close();
        }

        title: qsTr("organize.rename_title")
        onClosed: list.forceActiveFocus()

        ColumnLayout {
            width: parent.width
            spacing: 8

            InputField {
                id: field

                Layout.fillWidth: true
                focus: true
                label: qsTr("organize.rename_title")
                isWrong: text.trim() === ""
                onAccepted: rename.accept()
            }

            CaptionText {
                Layout.fillWidth: true
                text: qsTr("organize.rename_note")
                wrapMode: Text.Wrap
            }
        }

        buttons: [
            PrimaryButton {
                enabled: field.text.trim() !== ""
                text: qsTr("organize.rename")
                onClicked: rename.accept()
            },
            PlainButton {
                text: qsTr("action.cancel")
                onClicked: rename.close()
            }
        ]
    }

    ItemMenu {
        id: menu

        appState: root.appState
        canKeep: true
        onKeepAsked: root.model.keep(list.currentIndex)
    }

    LargeRunQuestion {
        id: large
    }

    PickFolder {
        id: picker

        onPicked: url => root.model.chooseFolder(url)
    }
}
