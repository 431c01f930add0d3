import QtQuick
import QtQuick.Layouts
import Orvane

// One condition of a plan, typed.
Sheet {
    id: root

    required property AgentModel model
    property var chip: null

    // As AgentModel.reading has it.
    function ask(chip: var) {
        root.chip = chip;
        field.text = chip.value;
        field.problem = "";
        open();
        field.edit();
    }

    function accept() {
        field.problem = root.model.change(root.chip.condition, field.text);
        if (field.problem === "")
            close();
    }

    title: chip?.name ?? ""
    sheetWidth: 420

    ColumnLayout {
        width: parent.width
        spacing: 8

        SheetLabel {
            Layout.fillWidth: true
            text: root.chip?.title ?? ""
        }

        CheckedField {
            id: field

            label: root.chip?.title ?? ""
            placeholder: root.chip?.isNumber ? qsTr("rules.no_limit") : "pdf, docx"
            digitsOnly: root.chip?.isNumber ?? false
            onEdited: text => {
                field.text = text;
                field.problem = "";
            }
            Keys.onReturnPressed: root.accept()
            Keys.onEnterPressed: root.accept()
        }
    }

    buttons: [
        PrimaryButton {
            text: qsTr("agent.look_again")
            onClicked: root.accept()
        },
        PlainButton {
            text: qsTr("action.cancel")
            onClicked: root.close()
        }
    ]
}
