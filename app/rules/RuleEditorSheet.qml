pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// Writes or changes a rule. Checks the text as it is typed, and counts the files that the rule would take.
Sheet {
    id: root

    required property RulesModel model

    readonly property RuleEditor editor: model.editor
    // Part of the rule to a key of the string table.
    readonly property var problems: editor.problems
    readonly property string problem: problems.trigger ?? problems.name ?? ""

    onOpened: {
        nameField.isTouched = false;
        nameField.edit();
    }
    title: editor.isNew ? qsTr("rules.new_title") : qsTr("rules.edit_title")
    sheetWidth: 680
    hint: problem !== "" ? qsTr(problem)
                         : editor.matchCount < 0
                          ? qsTr("rules.counting")
                          : qsTr("rules.matches").arg(Texts.counted("count.files", editor.matchCount)).arg(
                                Texts.bytes(editor.matchBytes))
    hintColor: problem !== "" ? Theme.review : Theme.accent

    GridLayout {
        width: parent.width
        columns: 2
        columnSpacing: 16
        rowSpacing: 10

        SheetLabel {
            id: nameLabel

            text: qsTr("rules.name")
        }

        CheckedField {
            id: nameField

            label: qsTr("rules.name")
            text: root.editor.name
            problem: root.problems.name ?? ""
            onEdited: text => root.editor.name = text
        }

        SheetLabel {
            text: qsTr("rules.description")
        }

        CheckedField {
            label: qsTr("rules.description")
            text: root.editor.description
            onEdited: text => root.editor.description = text
        }

        Repeater {
            model: root.editor

            RuleConditionField {
                Layout.columnSpan: 2
                Layout.fillWidth: true
                labelWidth: nameLabel.Layout.preferredWidth
                spacing: 16
                allCategories: root.editor.allCategories
                onEdited: text => root.editor.edit(index, text)
                onFolderAsked: {
                    folderPicker.row = index;
                    folderPicker.open();
                }
            }
        }

        SheetLabel {
            text: qsTr("rules.action")
        }

        RowLayout {
            Layout.fillWidth: true

            MenuButton {
                Layout.alignment: Qt.AlignTop
                label: qsTr("rules.action")
                keys: root.editor.actionKeys
                current: root.editor.action
                onChosen: index => root.editor.action = index
            }

            CheckedField {
                visible: root.editor.action === 1
                label: qsTr("rules.action_folder")
                placeholder: "~/Documents/Archive"
                text: root.editor.actionPath
                problem: root.problems.path ?? ""
                onEdited: text => root.editor.actionPath = text
            }

            IconButton {
                Layout.alignment: Qt.AlignTop
                visible: root.editor.action === 1
                implicitWidth: 36
                implicitHeight: 36
                symbol: "folder-open"
                text: qsTr("action.choose_folder")
                onClicked: actionPicker.open()
            }
        }
    }

    PickFolder {
        id: folderPicker

        property int row: -1

        onPicked: url => root.editor.edit(row, url)
    }

    PickFolder {
        id: actionPicker

        onPicked: url => root.editor.actionPath = url
    }

    buttons: [
        PrimaryButton {
            enabled: root.editor.canSave
            text: qsTr("action.save")
            onClicked: root.model.save()
        },
        PlainButton {
            text: qsTr("action.cancel")
            onClicked: root.model.closeEditor()
        }
    ]
}
