import QtQuick
import QtQuick.Templates as T
import Orvane

// One line of text that can be typed.
T.TextField {
    id: root

    // Also its name, unless `label` is given.
    property string placeholder: ""
    property string label: placeholder
    // Set where what is typed does not hold; the outline shows it.
    property bool isWrong: false

    implicitWidth: 200
    implicitHeight: Theme.controlHeight
    leftPadding: 12
    rightPadding: 12
    topPadding: 0
    bottomPadding: 0
    verticalAlignment: TextInput.AlignVCenter
    color: enabled ? Theme.text : Theme.disabled
    font.pixelSize: Theme.textSize
    selectionColor: Theme.accent
    selectedTextColor: Theme.inkOnAccent
    selectByMouse: true
    hoverEnabled: true
    activeFocusOnTab: true
    Accessible.name: root.label
    Accessible.role: Accessible.EditableText
    Accessible.editable: true

    Text {
        x: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height
        verticalAlignment: Text.AlignVCenter
        visible: root.length === 0 && root.preeditText === ""
        text: root.placeholder
        color: Theme.muted
        font: root.font
        elide: Text.ElideRight
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.surface
        border.width: root.activeFocus ? 2 : 1
        border.color: root.isWrong ? Theme.review : root.activeFocus ? Theme.accent : Theme.line
    }
}
