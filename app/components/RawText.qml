import QtQuick
import QtQuick.Templates as T
import Orvane

// Text word for word, as it went over the wire; it can be selected and copied.
Rectangle {
    id: root

    property string text: ""
    property string label: ""
    property int maxHeight: 320

    implicitHeight: Math.min(maxHeight, area.contentHeight + 24)
    radius: Theme.controlRadius
    color: Theme.background
    border.color: area.activeFocus ? Theme.accent : Theme.line

    Flickable {
        id: scroll

        anchors.fill: parent
        anchors.margins: 12
        clip: true
        contentHeight: area.contentHeight
        boundsBehavior: Flickable.StopAtBounds

        T.ScrollBar.vertical: ScrollHint {}

        TextEdit {
            id: area

            width: scroll.width - 8
            readOnly: true
            selectByMouse: true
            activeFocusOnTab: true
            text: root.text
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAnywhere
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.inkOnAccent
            font.family: "monospace"
            font.pixelSize: Theme.captionSize
            Accessible.role: Accessible.EditableText
            Accessible.name: root.label
            Accessible.readOnly: true
        }
    }
}
