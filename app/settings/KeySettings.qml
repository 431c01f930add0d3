pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The keys of language models, stored or not and never shown, and the model on this computer.
SettingsCard {
    id: root

    required property SettingsModel model
    required property TidyModel tidy

    title: qsTr("settings.models_title")
    note: qsTr("settings.models_note")

    Repeater {
        model: root.model.keys

        SettingRow {
            id: row

            required property var modelData

            label: modelData.name
            // Qt tells no name of a field that hides what is typed.
            Accessible.role: Accessible.Grouping
            Accessible.name: qsTr("settings.key_of").arg(modelData.name)
            note: modelData.isStored ? qsTr("settings.key_stored") : qsTr("settings.key_missing")

            InputField {
                id: field

                visible: !row.modelData.isStored
                implicitWidth: 220
                echoMode: TextInput.Password
                placeholder: qsTr("settings.key_placeholder")
                label: qsTr("settings.key_of").arg(row.modelData.name)
                onAccepted: store.clicked()
            }

            PlainButton {
                id: store

                visible: !row.modelData.isStored
                enabled: field.text.trim() !== ""
                text: qsTr("settings.store_key")
                Accessible.name: text + ": " + row.modelData.name
                onClicked: {
                    root.model.storeKey(row.modelData.account, field.text.trim());
                    field.clear();
                }
            }

            PlainButton {
                visible: row.modelData.isStored
                text: qsTr("settings.remove_key")
                Accessible.name: text + ": " + row.modelData.name
                onClicked: root.model.removeKey(row.modelData.account)
            }
        }
    }

    CaptionText {
        Layout.fillWidth: true
        visible: text !== ""
        text: root.model.keyError
        color: Theme.review
        wrapMode: Text.Wrap
    }

    Divider {
        Layout.fillWidth: true
    }

    SettingRow {
        label: qsTr("settings.local_model")
        note: qsTr("settings.local_model_note")

        InputField {
            implicitWidth: 260
            label: qsTr("settings.local_model")
            placeholder: "http://127.0.0.1:11434"
            text: root.model.modelAddress
            isWrong: root.model.modelError !== ""
            onEditingFinished: root.model.modelAddress = text.trim()
        }
    }

    SettingRow {
        label: qsTr("settings.model_name")
        note: qsTr("settings.model_name_note")

        InputField {
            implicitWidth: 260
            label: qsTr("settings.model_name")
            text: root.model.modelName
            onEditingFinished: root.model.modelName = text.trim()
        }
    }

    CaptionText {
        Layout.fillWidth: true
        visible: text !== ""
        text: root.model.modelError !== "" ? root.model.modelError
                                           : root.model.isModelNew
                                             ? qsTr("settings.model_next_start")
                                             : root.model.modelAddress === ""
                                               ? ""
                                               : root.tidy.isAvailable ? qsTr("settings.model_answers")
                                                                       : root.tidy.unavailableReason
        color: root.model.modelError !== "" ? Theme.review : Theme.muted
        wrapMode: Text.Wrap
    }
}
