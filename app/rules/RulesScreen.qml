pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The cleanup rules: switched on and off, written, tried and run.
Page {
    id: root

    required property AppState appState
    required property RulesModel model

    readonly property bool isBusy: model.isWorking || model.isPreviewing

    function undo() {
        if (model.canUndo && !isBusy)
            model.undo();
    }

    function startWork() {
        if (!isBusy)
            model.previewRule(-1);
    }

    Component.onCompleted: if (model.editor.isOpen) editor.open()
    title: qsTr("nav.rules")
    subtitle: Texts.counted("rules.status", model.enabledCount).arg(Texts.counted("count.rules", model.ruleCount))
    actions: [
        IconButton {
            implicitWidth: Theme.controlHeight
            implicitHeight: Theme.controlHeight
            ink: Theme.text
            fill: hovered || down ? Theme.accentSoft : Theme.surface
            outline: Theme.line
            symbol: "more"
            text: qsTr("action.more")
            onClicked: more.open()

            ChoiceMenu {
                id: more

                y: parent.height + 6

                ChoiceItem {
                    isChoice: false
                    symbol: "refresh"
                    text: qsTr("rules.reset")
                    onTriggered: resetAlert.open()
                }
            }
        },
        PlainButton {
            visible: root.model.suggestions.length > 0
            text: qsTr("suggestion.title")
            trailingSymbol: "chevron-down"
            Accessible.role: Accessible.ButtonMenu
            onClicked: suggestions.open()

            ChoiceMenu {
                id: suggestions

                y: parent.height + 6
                x: Math.min(0, parent.width - width)

                Repeater {
                    model: root.model.suggestions

                    ChoiceItem {
                        required property var modelData

                        isChoice: false
                        symbol: "plus"
                        text: modelData.title
                        Accessible.description: modelData.note
                        onTriggered: root.model.addSuggested(modelData.name)
                    }
                }
            }
        },
        PlainButton {
            symbol: "plus"
            text: qsTr("rules.add")
            onClicked: root.model.add()
        },
        PlainButton {
            enabled: !root.isBusy && root.model.enabledCount > 0
            text: qsTr("rules.preview")
            onClicked: preview.ask(-1)
        },
        PrimaryButton {
            enabled: !root.isBusy && root.model.enabledCount > 0
            symbol: "play"
            text: Texts.counted("rules.run_enabled", root.model.enabledCount)
            // The button says what moves before it moves.
            onClicked: preview.ask(-1)
        }
    ]

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        RunStrip {
            Layout.fillWidth: true
            run: root.model
            isWorking: root.model.isWorking
            workTitle: qsTr("rules.running")
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
            visible: root.model.error !== ""
            isWarning: true
            text: qsTr("rules.not_stored")
            detail: root.model.error
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.messages.length > 0 && !root.isBusy
            isWarning: true
            text: Texts.firstLines(root.model.messages, 4)
        }

        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            flush: true

            RowList {
                id: list

                anchors.fill: parent
                label: qsTr("nav.rules")
                model: root.model
                onRowToggled: row => {
                    const entry = itemAtIndex(row) as RuleEntry;
                    if (entry)
                        root.model.setEnabled(row, !entry.isEnabled);
                }
                onRowMenuAsked: row => menu.showFor(row, true)
                delegate: RuleEntry {
                    width: list.width
                    isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
                    isBusy: root.isBusy
                    onToggled: root.model.setEnabled(index, !isEnabled)
                    onEditAsked: root.model.edit(index)
                    onPreviewAsked: preview.ask(index)
                    onRunAsked: preview.ask(index)
                    onRemoveAsked: removeAlert.ask(id, name)
                    onMenuAsked: menu.showFor(index, false)
                }
            }

            EmptyState {
                anchors.fill: parent
                visible: list.count === 0
                drawing: "rules"
                text: qsTr("rules.empty_text")
                action: qsTr("rules.add")
                symbol: "plus"
                onActed: root.model.add()
            }
        }
    }

    ChoiceMenu {
        id: menu

        // As long as it is in view.
        property RuleEntry entry: null

        function showFor(row: int, byKey: bool) {
            list.currentIndex = row;
            entry = list.itemAtIndex(row) as RuleEntry;
            if (byKey && entry)
                popup(entry, 60, entry.height);
            else
                popup();
        }

        Repeater {
            model: menu.entry?.offers ?? []

            ChoiceItem {
                required property var modelData

                isChoice: false
                enabled: !root.isBusy
                symbol: modelData.symbol
                text: qsTr(modelData.key)
                onTriggered: modelData.run()
            }
        }
    }

    Connections {
        target: root.model.editor

        function onOpened() {
            if (root.model.editor.isOpen && !editor.sheet)
                editor.open();
        }
    }

    OnDemand {
        id: editor

        RuleEditorSheet {
            model: root.model
            visible: root.model.editor.isOpen
            onClosed: {
                root.model.closeEditor();
                list.forceActiveFocus();
            }
        }
    }

    OnDemand {
        id: preview

        // Shows what the rule of the row would take, or all that are on for -1.
        function ask(row: int) {
            root.model.previewRule(row);
            open();
        }

        RulePreviewSheet {
            appState: root.appState
            model: root.model
            onClosed: {
                root.model.closePreview();
                list.forceActiveFocus();
            }
        }
    }

    OnDemand {
        id: resetAlert

        AlertDialog {
            title: qsTr("rules.reset_title")
            message: qsTr("rules.reset_text")
            confirmText: qsTr("rules.reset")
            rejectText: qsTr("action.cancel")
            onConfirmed: root.model.reset()
        }
    }

    OnDemand {
        id: removeAlert

        property string rule
        property string name

        function ask(rule: string, name: string) {
            removeAlert.rule = rule;
            removeAlert.name = name;
            open();
        }

        AlertDialog {
            title: qsTr("rules.remove_title")
            message: qsTr("rules.remove_text").arg(removeAlert.name)
            confirmText: qsTr("rules.remove")
            rejectText: qsTr("action.cancel")
            onConfirmed: root.model.remove(removeAlert.rule)
        }
    }
}
