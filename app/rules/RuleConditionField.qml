pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// One condition of a rule, as its row in the editor has it.
RowLayout {
    id: root

    required property int index
    required property string titleKey
    required property int input
    required property string example
    required property string text
    required property string problemKey
    property int labelWidth: 166
    property var allCategories: []
    readonly property bool isNumber: input === RuleEditor.Number || input === RuleEditor.Megabytes
    readonly property bool isCategories: input === RuleEditor.Categories
    signal edited(string text)
    signal folderAsked

    function toggled(category: string): string {
        const chosen = root.text === "" ? [] : root.text.split(", ");
        const at = chosen.indexOf(category);
        if (at < 0)
            chosen.push(category);
        else
            chosen.splice(at, 1);
        return chosen.join(", ");
    }

    SheetLabel {
        Layout.preferredWidth: root.labelWidth
        Layout.topMargin: root.isCategories ? 0 : lineCount > 1 ? -2 : 8
        text: qsTr(root.titleKey)
    }

    CheckedField {
        visible: !root.isCategories
        label: qsTr(root.titleKey)
        placeholder: root.isNumber ? qsTr("rules.no_limit") : root.example
        digitsOnly: root.isNumber
        text: root.text
        problem: root.problemKey
        onEdited: text => root.edited(text)
    }

    IconButton {
        Layout.alignment: Qt.AlignTop
        Layout.leftMargin: 5 - root.spacing
        visible: root.input === RuleEditor.FolderText
        implicitWidth: 36
        implicitHeight: 36
        symbol: "folder-open"
        text: qsTr("action.choose_folder")
        onClicked: root.folderAsked()
    }

    GridLayout {
        Layout.fillWidth: true
        visible: root.isCategories
        columns: 2
        columnSpacing: 12
        rowSpacing: 4

        Repeater {
            model: root.isCategories ? root.allCategories : []

            TriStateBox {
                required property string modelData

                Layout.fillWidth: true
                Layout.preferredWidth: 100
                labelShown: true
                text: qsTr("category." + modelData)
                checkState: root.text.split(", ").indexOf(modelData) >= 0 ? Qt.Checked : Qt.Unchecked
                onToggleAsked: root.edited(root.toggled(modelData))
            }
        }
    }
}
