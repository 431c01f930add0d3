pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// Writes or changes a rule. Checks the text as it is typed, and counts the files that the rule would take.
Sheet {
    id: root

    required property RulesModel model

    readonly property RuleEditor editor: model.editor
    // Field to a key of the string table.
    readonly property var problems: editor.problems
    readonly property string problem: problems.rule ?? problems.name ?? ""
    readonly property var categories: editor.categories

    function toggleCategory(name: string) {
        const current = root.categories.slice();
        const at = current.indexOf(name);
        if (at < 0)
            current.push(name);
        else
            current.splice(at, 1);
        root.editor.categories = current;
    }

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

        FieldLabel {
            text: qsTr("rules.name")
        }

        Field {
            id: nameField

            label: qsTr("rules.name")
            text: root.editor.name
            problem: root.problems.name ?? ""
            onEdited: text => root.editor.name = text
        }

        FieldLabel {
            text: qsTr("rules.description")
        }

        Field {
            label: qsTr("rules.description")
            text: root.editor.description
            onEdited: text => root.editor.description = text
        }

        FieldLabel {
            text: qsTr("rules.folder")
        }

        RowLayout {
            Layout.fillWidth: true

            Field {
                label: qsTr("rules.folder")
                placeholder: "~/Downloads"
                text: root.editor.folder
                problem: root.problems.folder ?? ""
                onEdited: text => root.editor.folder = text
            }

            IconButton {
                Layout.alignment: Qt.AlignTop
                implicitWidth: 36
                implicitHeight: 36
                symbol: "folder-open"
                text: qsTr("action.choose_folder")
                onClicked: folderPicker.open()
            }
        }

        FieldLabel {
            text: qsTr("rules.extensions")
        }

        Field {
            label: qsTr("rules.extensions")
            placeholder: "dmg, pkg, iso"
            text: root.editor.extensions
            problem: root.problems.extensions ?? ""
            onEdited: text => root.editor.extensions = text
        }

        FieldLabel {
            Layout.topMargin: 0
            text: qsTr("rules.categories")
        }

        GridLayout {
            Layout.fillWidth: true
            columns: 2
            columnSpacing: 12
            rowSpacing: 4

            Repeater {
                model: root.editor.allCategories

                TriStateBox {
                    required property string modelData

                    Layout.fillWidth: true
                    Layout.preferredWidth: 100
                    labelShown: true
                    text: qsTr("category." + modelData)
                    checkState: root.categories.indexOf(modelData) >= 0 ? Qt.Checked : Qt.Unchecked
                    onToggleAsked: root.toggleCategory(modelData)
                }
            }
        }

        FieldLabel {
            text: qsTr("rules.minimum_age")
        }

        Field {
            label: qsTr("rules.minimum_age")
            placeholder: qsTr("rules.no_limit")
            digitsOnly: true
            text: root.editor.minimumAgeDays < 0 ? "" : "" + root.editor.minimumAgeDays
            problem: root.problems.minimumAgeDays ?? ""
            onEdited: text => root.editor.minimumAgeDays = text === "" ? -1 : parseInt(text)
        }

        FieldLabel {
            text: qsTr("rules.minimum_size")
        }

        Field {
            label: qsTr("rules.minimum_size")
            placeholder: qsTr("rules.no_limit")
            digitsOnly: true
            text: root.editor.minimumSizeBytes < 0 ? "" : "" + Math.round(root.editor.minimumSizeBytes / 1e6)
            problem: root.problems.minimumSizeBytes ?? ""
            onEdited: text => root.editor.minimumSizeBytes = text === "" ? -1 : parseInt(text) * 1e6
        }

        FieldLabel {
            text: qsTr("rules.pattern")
        }

        Field {
            label: qsTr("rules.pattern")
            text: root.editor.namePattern
            problem: root.problems.namePattern ?? ""
            onEdited: text => root.editor.namePattern = text
        }

        FieldLabel {
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

            Field {
                visible: root.editor.action === 1
                label: qsTr("rules.action_folder")
                placeholder: "~/Documents/Archive"
                text: root.editor.actionPath
                problem: root.problems.actionPath ?? ""
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

        onPicked: url => root.editor.folder = url
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

    component FieldLabel: BodyText {
        Layout.preferredWidth: 150
        Layout.alignment: Qt.AlignTop
        Layout.topMargin: lineCount > 1 ? -2 : 8
        wrapMode: Text.Wrap
    }

    component Field: ColumnLayout {
        id: field

        property alias label: input.label
        property alias placeholder: input.placeholder
        property alias text: input.text
        property bool digitsOnly: false
        // A key of the string table. A field that is not filled yet is not called wrong.
        property string problem: ""
        property bool isTouched: false
        readonly property bool isWrong: problem !== "" && (isTouched || text !== "")
        signal edited(string text)

        function edit() {
            input.forceActiveFocus();
        }

        Layout.fillWidth: true
        spacing: 2

        InputField {
            id: input

            Layout.fillWidth: true
            isWrong: field.isWrong
            inputMethodHints: field.digitsOnly ? Qt.ImhDigitsOnly : Qt.ImhNone
            maximumLength: field.digitsOnly ? 7 : 400
            onTextEdited: {
                field.isTouched = true;
                if (field.digitsOnly)
                    text = text.replace(/[^0-9]/g, "");
                field.edited(text);
            }
        }

        CaptionText {
            Layout.fillWidth: true
            visible: field.isWrong
            text: field.isWrong ? qsTr(field.problem) : ""
            color: Theme.review
            wrapMode: Text.Wrap
        }
    }
}
