pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The list of keyboard shortcuts.
Sheet {
    id: root

    readonly property var rows: [
        ["Ctrl+1 … Ctrl+0", qsTr("shortcuts.sections")], ["Ctrl+F", qsTr("shortcuts.search")],
        ["Ctrl+R, F5", qsTr("shortcuts.start")], ["Ctrl+A", qsTr("action.select_all")],
        ["Ctrl+Shift+A", qsTr("action.deselect_all")], ["Shift+↑, Shift+↓", qsTr("shortcuts.range")],
        ["Enter", qsTr("shortcuts.act")], ["Space", qsTr("shortcuts.look")], ["←, →", qsTr("shortcuts.fold")],
        ["Menu, Shift+F10", qsTr("shortcuts.menu")], ["Ctrl+Z", qsTr("shortcuts.undo")],
        ["Ctrl+?", qsTr("shortcuts.title")], ["Ctrl+Q", qsTr("tray.quit")]
    ]

    title: qsTr("shortcuts.title")

    GridLayout {
        width: parent.width
        columns: 2
        columnSpacing: 20
        rowSpacing: 8

        Repeater {
            model: 2 * root.rows.length

            BodyText {
                required property int index

                readonly property bool isKey: index % 2 === 0

                Layout.fillWidth: !isKey
                text: root.rows[Math.floor(index / 2)][index % 2]
                font.weight: isKey ? Font.DemiBold : Font.Normal
                wrapMode: isKey ? Text.NoWrap : Text.Wrap
            }
        }
    }

    buttons: [
        PrimaryButton {
            focus: true
            text: qsTr("action.close")
            onClicked: root.close()
        }
    ]
}
