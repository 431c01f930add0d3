import QtQuick
import QtQuick.Layouts
import Orvane

// One line of text, and below it the problem with what was typed.
ColumnLayout {
    id: root

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
        isWrong: root.isWrong
        inputMethodHints: root.digitsOnly ? Qt.ImhDigitsOnly : Qt.ImhNone
        maximumLength: root.digitsOnly ? 7 : 400
        onTextEdited: {
            root.isTouched = true;
            if (root.digitsOnly)
                text = text.replace(/[^0-9]/g, "");
            root.edited(text);
        }
    }

    CaptionText {
        Layout.fillWidth: true
        visible: root.isWrong
        text: root.isWrong ? qsTr(root.problem) : ""
        color: Theme.review
        wrapMode: Text.Wrap
    }
}
